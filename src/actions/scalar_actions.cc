// The eight kinds that carry one number. They differ only in the field's
// width, the ActionPB field it travels in and the label of its dump line, so
// one row per kind drives the same wire and dump code.
#include <cstdint>

#include "FiltersCommon/filter_actions.h"
#include "actions/action_dump.h"
#include "filter_actions.pb.h"

namespace FiltersCommon {
namespace {

// Where a scalar kind keeps its value on the wire, and its dump label.
struct ScalarField {
  void (ActionPB::*set)(uint32_t);
  uint32_t (ActionPB::*get)() const;
  const char* label;
};

constexpr ScalarField kCancelType{&ActionPB::set_cp2cpu_cancel_type_,
                                  &ActionPB::cp2cpu_cancel_type_,
                                  "Cp2CPU Cancel type"};
// ActionSetPcp and ActionSetInnerPcp share pcp_, the CoS queue kinds cosq_.
constexpr ScalarField kPcp{&ActionPB::set_pcp_, &ActionPB::pcp_, "PCP"};
constexpr ScalarField kInnerPcp{&ActionPB::set_pcp_, &ActionPB::pcp_,
                                "Inner PCP"};
constexpr ScalarField kPcpAndQueue{&ActionPB::set_pcp_and_queue_,
                                   &ActionPB::pcp_and_queue_, "PCP_AND_QUEUE"};
constexpr ScalarField kDscp{&ActionPB::set_dscp_, &ActionPB::dscp_, "DSCP"};
constexpr ScalarField kCosQueue{&ActionPB::set_cosq_, &ActionPB::cosq_,
                                "CoS Queue"};
constexpr ScalarField kCpuCosQueue{&ActionPB::set_cosq_, &ActionPB::cosq_,
                                   "CPU CoS Queue"};
constexpr ScalarField kL3DestinationId{
    &ActionPB::set_l3_dest_id_, &ActionPB::l3_dest_id_, "L3 Destination ID"};

// Writes the kind and the value, zero-extended to 32 bits.
template <typename Value>
void scalarToWire(const Action& action, Value value, const ScalarField& field,
                  ActionPB* pb) {
  action.Action::convertToActionPB(pb);
  (pb->*field.set)(static_cast<uint32_t>(value));
}

// Reads the field, present or not (absent reads 0), cut to the width of the
// stored value.
template <typename Value>
void scalarFromWire(const ActionPB* pb, const ScalarField& field,
                    Value* value) {
  *value = static_cast<Value>((pb->*field.get)());
}

// Header, kind and the value as an unsigned number in the stream's base.
std::ostream& dumpScalar(std::ostream& os, const Action& action,
                         const ScalarField& field, unsigned int value) {
  action_dump::writeHeader(os, action);
  return action_dump::writeLine(os, field.label, value);
}

}  // namespace

// Everything of a scalar kind but its dump and equality: the constructor that
// stores its value unchanged, and its wire conversions through its row above.
#define FILTERS_SCALAR_KIND(Kind, kind, Value, member, field) \
  Kind::Kind(Value value) : Action(kind), member(value) {}    \
  void Kind::convertToActionPB(ActionPB* pb) const {          \
    scalarToWire(*this, member, field, pb);                   \
  }                                                           \
  void Kind::convertFromActionPB(ActionPB const* pb) {        \
    scalarFromWire(pb, field, &member);                       \
  }

FILTERS_SCALAR_KIND(ActionCopyToCpuCancel, FILTERS_ACTION_COPY_TO_CPU_CANCEL,
                    cp2cpuCancelParam_t, cancel_type_, kCancelType)
FILTERS_SCALAR_KIND(ActionSetPcp, FILTERS_ACTION_SET_PCP, unsigned char, pcp_,
                    kPcp)
FILTERS_SCALAR_KIND(ActionSetPcpAndQueue, FILTERS_ACTION_SET_PCP_AND_QUEUE,
                    unsigned char, pcp_and_queue_, kPcpAndQueue)
FILTERS_SCALAR_KIND(ActionSetInnerPcp, FILTERS_ACTION_SET_INNER_PCP,
                    unsigned char, inner_pcp_, kInnerPcp)
FILTERS_SCALAR_KIND(ActionSetDSCP, FILTERS_ACTION_SET_DSCP, unsigned char,
                    dscp_, kDscp)
FILTERS_SCALAR_KIND(ActionMapToCosQueue, FILTERS_ACTION_MAP_TO_COS_QUEUE,
                    unsigned char, cos_queue_, kCosQueue)
FILTERS_SCALAR_KIND(ActionMapToCpuCosQueue, FILTERS_ACTION_MAP_TO_CPU_COS_QUEUE,
                    unsigned char, cpu_cos_queue_, kCpuCosQueue)
FILTERS_SCALAR_KIND(ActionL3Switch, FILTERS_ACTION_L3_SWITCH, unsigned int,
                    l3_destination_id_, kL3DestinationId)
#undef FILTERS_SCALAR_KIND

// The one scalar kind whose equality is virtual.
bool ActionMapToCosQueue::operator==(const ActionMapToCosQueue& other) const {
  return cos_queue_ == other.cos_queue_;
}

}  // namespace FiltersCommon

using FiltersCommon::dumpScalar;

// The two names of cp2cpuCancelParam_t. A value from outside the enumeration
// (only a wire message can bring one) prints as its number instead of
// indexing past the table.
std::ostream& operator<<(std::ostream& os,
                         const FiltersCommon::ActionCopyToCpuCancel& action) {
  static const char* const kNames[] = {"COPY_TO_CPU_CANCEL",
                                       "SWITCH_TO_CPU_CANCEL"};
  const auto cancel = static_cast<uint32_t>(action.getCancelType());
  FiltersCommon::action_dump::writeHeader(os, action);
  if (cancel < 2) {
    return FiltersCommon::action_dump::writeLine(
        os, FiltersCommon::kCancelType.label, kNames[cancel]);
  }
  return FiltersCommon::action_dump::writeLine(
      os, FiltersCommon::kCancelType.label, static_cast<int>(cancel));
}

// The dumps of the scalar kinds that print their value as a plain number.
#define FILTERS_SCALAR_DUMP(Kind, getter, field)                          \
  std::ostream& operator<<(std::ostream& os,                              \
                           const FiltersCommon::Kind& action) {           \
    return dumpScalar(os, action, FiltersCommon::field, action.getter()); \
  }

FILTERS_SCALAR_DUMP(ActionSetPcp, getPcp, kPcp)
FILTERS_SCALAR_DUMP(ActionSetPcpAndQueue, getPcpAndQueue, kPcpAndQueue)
FILTERS_SCALAR_DUMP(ActionSetInnerPcp, getInnerPcp, kInnerPcp)
FILTERS_SCALAR_DUMP(ActionSetDSCP, getDSCP, kDscp)
FILTERS_SCALAR_DUMP(ActionMapToCosQueue, getCosQueue, kCosQueue)
FILTERS_SCALAR_DUMP(ActionL3Switch, getL3DestinationId, kL3DestinationId)
#undef FILTERS_SCALAR_DUMP

// Unlike every other dump line, the CPU CoS queue is always decimal, and the
// stream stays decimal afterwards; readers of these dumps rely on both.
std::ostream& operator<<(std::ostream& os,
                         const FiltersCommon::ActionMapToCpuCosQueue& action) {
  FiltersCommon::action_dump::writeHeader(os, action);
  os << std::dec;
  return FiltersCommon::action_dump::writeLine(
      os, FiltersCommon::kCpuCosQueue.label,
      static_cast<unsigned int>(action.getCpuCosQueue()));
}
