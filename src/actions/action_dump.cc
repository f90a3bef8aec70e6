// The parts every action dump shares: the header with the class name that
// the kind value names, the parameterless body and interface names.
#include "actions/action_dump.h"

#include "common/kinds.h"

namespace FiltersCommon {
namespace action_dump {
namespace {

const char* className(filtersAction_t type) {
  switch (type) {
#define FILTERS_ACTION_CLASS_NAME(value, Kind) \
  case value:                                  \
    return #Kind;
    FILTERS_FOR_EACH_ACTION_KIND(FILTERS_ACTION_CLASS_NAME)
#undef FILTERS_ACTION_CLASS_NAME
  }
  return "";
}

}  // namespace

std::ostream& writeHeader(std::ostream& os, const Action& action) {
  os << "    =" << className(action.getType()) << "=" << std::endl;
  return writeLine(os, "Action Type ID", static_cast<int>(action.getType()));
}

std::ostream& writeParameterless(std::ostream& os, const Action& action) {
  return writeHeader(os, action) << "      <no parameters>" << std::endl;
}

void interfaceName(limid_t limid, char* buffer, size_t size) {
  if (limid_to_intfname(limid, buffer, size) != 0) buffer[0] = '\0';
  buffer[size - 1] = '\0';
}

}  // namespace action_dump
}  // namespace FiltersCommon
