#include "FiltersCommon/filter_counter.h"

#include <iterator>

#include "filter_counter.pb.h"

namespace FiltersCommon {

Counter::Counter() : Counter(0, COUNTER_TYPE_INVALID) {}

Counter::Counter(uint16_t id, counter_type_t type) : id_(id), type_(type) {}

Counter::Counter(const CounterPB& pb)
    : Counter(static_cast<uint16_t>(pb.id()),
              static_cast<counter_type_t>(pb.type())) {}

void Counter::Serialize(CounterPB* pb) const {
  pb->set_id(id_);
  pb->set_type(type_);
}

bool Counter::operator==(const Counter& other) const {
  return id_ == other.id_ && type_ == other.type_;
}

std::ostream& operator<<(std::ostream& os, const Counter& c) {
  static const char* const kTypeNames[] = {
      "Invalid",           "Packets",        "Octets",
      "Red Octets",        "Not Red Octets", "Yellow Octets",
      "Not Yellow Octets", "Green Octets",   "Not Green Octets"};
  const int32_t type = c.GetType();
  const bool known =
      type >= 0 && type < static_cast<int32_t>(std::size(kTypeNames));
  // A width set by the caller pads the first label, as for any insertion.
  os << "ID: " << c.GetId() << '\n'
     << "Type: " << (known ? kTypeNames[type] : "Unknown") << '\n';
  return os;
}

}  // namespace FiltersCommon
