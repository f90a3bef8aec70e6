// Counter is one statistics counter of a filter entry: a 16-bit identifier,
// which is also its key in the entry, and what it counts.
//
// A plain value: copy and compare freely. Not synchronised; concurrent reads
// are safe, a write needs exclusive access.
#ifndef FILTERSCOMMON_FILTER_COUNTER_H_
#define FILTERSCOMMON_FILTER_COUNTER_H_

#include <cstdint>
#include <ostream>

#include "FiltersCommon/filter_export.h"

namespace FiltersCommon {

class CounterPB;

// What a counter counts. The numbers travel on the wire and never change.
enum counter_type_t : int32_t {
  // No type set; an entry refuses such a counter.
  COUNTER_TYPE_INVALID = 0,
  COUNTER_TYPE_PACKETS = 1,
  COUNTER_TYPE_OCTETS = 2,
  COUNTER_TYPE_RED_OCTETS = 3,
  COUNTER_TYPE_NOT_RED_OCTETS = 4,
  COUNTER_TYPE_YELLOW_OCTETS = 5,
  COUNTER_TYPE_NOT_YELLOW_OCTETS = 6,
  COUNTER_TYPE_GREEN_OCTETS = 7,
  COUNTER_TYPE_NOT_GREEN_OCTETS = 8
};

class FILTERS_EXPORT Counter {
 public:
  // Identifier 0, COUNTER_TYPE_INVALID.
  Counter();
  Counter(uint16_t id, counter_type_t type);
  // From the wire: the identifier keeps the low 16 bits of the 32-bit field,
  // the type is taken as it comes.
  Counter(const CounterPB& pb);  // NOLINT(google-explicit-constructor)

  uint16_t GetId() const { return id_; }
  counter_type_t GetType() const { return type_; }

  // Sets both required fields of `pb`.
  void Serialize(CounterPB* pb) const;

  bool operator==(const Counter& other) const;
  bool operator!=(const Counter& other) const { return !(*this == other); }

 private:
  uint16_t id_;
  counter_type_t type_;
};

// "ID: " and "Type: " lines, each ended by a bare line feed. The width set on
// the stream applies to the first label, so that a caller can indent it; the
// entry dump sets none.
FILTERS_EXPORT std::ostream& operator<<(std::ostream& os, const Counter& c);

}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_FILTER_COUNTER_H_
