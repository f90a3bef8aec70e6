// The Action base, the parameterless kinds, and the two operations that turn
// a kind value back into its class: equality and the dump.
#include "FiltersCommon/filter_actions.h"

#include "actions/action_dump.h"
#include "common/kinds.h"
#include "filter_actions.pb.h"

// The kinds without parameters. Their dump needs nothing but the kind, so
// any action of such a kind, even a bare Action built with its value, dumps
// as that kind.
#define FILTERS_FOR_EACH_PARAMETERLESS_ACTION(X) \
  X(ActionPermit)                                \
  X(ActionDeny)                                  \
  X(ActionCopyToCpu)                             \
  X(ActionRedirectCancel)                        \
  X(ActionBlackHole)                             \
  X(ActionCopyInnerPcp)                          \
  X(ActionL2ToCpuDrop)                           \
  X(ActionDoNotLearnMac)

namespace FiltersCommon {

Action::Action(filtersAction_t type) : type_(type) {}

Action::~Action() = default;

void Action::convertToActionPB(ActionPB* pb) const {
  pb->set_type_(static_cast<uint32_t>(type_));
}

void Action::convertFromActionPB(ActionPB const* /*pb*/) {}

ActionPermit::ActionPermit() : Action(FILTERS_ACTION_PERMIT) {}
bool ActionPermit::operator==(const ActionPermit& /*other*/) const {
  return true;
}

ActionDeny::ActionDeny() : Action(FILTERS_ACTION_DENY) {}

ActionCopyToCpu::ActionCopyToCpu() : Action(FILTERS_ACTION_COPY_TO_CPU) {}

ActionRedirectCancel::ActionRedirectCancel()
    : Action(FILTERS_ACTION_REDIRECT_CANCEL) {}
bool ActionRedirectCancel::operator==(
    const ActionRedirectCancel& /*other*/) const {
  return true;
}

ActionBlackHole::ActionBlackHole() : Action(FILTERS_ACTION_BLACK_HOLE) {}

ActionCopyInnerPcp::ActionCopyInnerPcp()
    : Action(FILTERS_ACTION_COPY_INNER_PCP) {}

ActionL2ToCpuDrop::ActionL2ToCpuDrop()
    : Action(FILTERS_ACTION_L2_TO_CPU_DROP) {}

ActionDoNotLearnMac::ActionDoNotLearnMac()
    : Action(FILTERS_ACTION_DO_NOT_LEARN_MAC) {}

namespace {

// The class whose operator== compares a kind: ActionBlockEgressPorts
// compares as the port list it inherits.
template <class Kind>
struct ComparedAs {
  using type = Kind;
};
template <>
struct ComparedAs<ActionBlockEgressPorts> {
  using type = ActionPorts;
};

// Compares two actions of kind Kind as that kind's class does (through the
// virtual slot where the class declares one). An object that is not of the
// class its kind names, such as a bare Action built with a catalogue value,
// has no parameters, so there is nothing more to compare.
template <class Kind>
bool equalAs(const Action& a, const Action& b) {
  using Class = typename ComparedAs<Kind>::type;
  const auto* x = dynamic_cast<const Class*>(&a);
  const auto* y = dynamic_cast<const Class*>(&b);
  return x == nullptr || y == nullptr || *x == *y;
}

template <class Kind>
constexpr bool kParameterless = false;
#define FILTERS_PARAMETERLESS(Kind) \
  template <>                       \
  constexpr bool kParameterless<Kind> = true;
FILTERS_FOR_EACH_PARAMETERLESS_ACTION(FILTERS_PARAMETERLESS)
#undef FILTERS_PARAMETERLESS

// Dumps `action` through its kind's operator<<. A kind without parameters
// needs only the kind value; for the others, an object that is not of the
// kind's class has no parameters to show and writes nothing.
template <class Kind>
std::ostream& dumpAs(std::ostream& os, const Action& action) {
  if constexpr (kParameterless<Kind>) {
    return action_dump::writeParameterless(os, action);
  } else {
    if (const auto* kind = dynamic_cast<const Kind*>(&action)) {
      ::operator<<(os, *kind);
    }
    return os;
  }
}

// Any port list of kind 3 dumps as ActionBlockEgressPorts, including an
// ActionPorts built directly with that kind.
template <>
std::ostream& dumpAs<ActionBlockEgressPorts>(std::ostream& os,
                                             const Action& action) {
  if (const auto* ports = dynamic_cast<const ActionPorts*>(&action)) {
    action_dump::writeBlockEgressPorts(os, *ports);
  }
  return os;
}

std::ostream& dumpByKind(std::ostream& os, const Action& action) {
  switch (action.getType()) {
#define FILTERS_DUMP_AS(value, Kind) \
  case value:                        \
    return dumpAs<Kind>(os, action);
    FILTERS_FOR_EACH_ACTION_KIND(FILTERS_DUMP_AS)
#undef FILTERS_DUMP_AS
    default:
      return os;  // a kind outside the catalogue has no dump
  }
}

}  // namespace

bool Action::operator==(const Action& other) const {
  if (type_ != other.type_) return false;
  switch (type_) {
#define FILTERS_EQUAL_AS(value, Kind) \
  case value:                         \
    return equalAs<Kind>(*this, other);
    FILTERS_FOR_EACH_ACTION_KIND(FILTERS_EQUAL_AS)
#undef FILTERS_EQUAL_AS
    default:
      return true;  // deliberately: kinds outside the catalogue are equal
  }
}

}  // namespace FiltersCommon

using FiltersCommon::action_dump::writeParameterless;

std::ostream& operator<<(std::ostream& os,
                         const FiltersCommon::Action& action) {
  return FiltersCommon::dumpByKind(os, action);
}

#define FILTERS_PARAMETERLESS_DUMP(Kind)                        \
  std::ostream& operator<<(std::ostream& os,                    \
                           const FiltersCommon::Kind& action) { \
    return writeParameterless(os, action);                      \
  }
FILTERS_FOR_EACH_PARAMETERLESS_ACTION(FILTERS_PARAMETERLESS_DUMP)
#undef FILTERS_PARAMETERLESS_DUMP
#undef FILTERS_FOR_EACH_PARAMETERLESS_ACTION
