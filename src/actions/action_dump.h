// Building blocks of the action dumps, shared by every kind's operator<<.
// A dump is a header line naming the class, the kind line, then one line per
// parameter, each "      <label>: <value>" and ended with std::endl. Values
// are written with the stream's own flags; callers widen 8-bit values so that
// they print as numbers rather than characters.
#ifndef FILTERSCOMMON_SRC_ACTIONS_ACTION_DUMP_H_
#define FILTERSCOMMON_SRC_ACTIONS_ACTION_DUMP_H_

#include <cstddef>
#include <ostream>

#include "FiltersCommon/filter_actions.h"

namespace FiltersCommon {
namespace action_dump {

// "    =<class name>=" and "      Action Type ID: <kind>".
std::ostream& writeHeader(std::ostream& os, const Action& action);

// The whole dump of a kind without parameters.
std::ostream& writeParameterless(std::ostream& os, const Action& action);

// One parameter line.
template <typename Value>
std::ostream& writeLine(std::ostream& os, const char* label,
                        const Value& value) {
  return os << "      " << label << ": " << value << std::endl;
}

// Fills `buffer` with the interface name of `limid`, cut to fit. An
// identifier without a name leaves an empty string, so the buffer always
// holds a terminated string whatever the limid library wrote on failure.
void interfaceName(limid_t limid, char* buffer, size_t size);

template <size_t N>
void interfaceName(limid_t limid, char (&buffer)[N]) {
  interfaceName(limid, buffer, N);
}

// The ActionBlockEgressPorts dump of any port-list action of that kind.
std::ostream& writeBlockEgressPorts(std::ostream& os,
                                    const ActionPorts& action);

}  // namespace action_dump
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_SRC_ACTIONS_ACTION_DUMP_H_
