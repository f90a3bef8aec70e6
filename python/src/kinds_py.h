// The match and action classes of the Python module, and the copies that
// move them between Python objects and entries.
//
// Every Python match or action object owns its own C++ object through a
// shared pointer and never changes it: the classes have read-only
// properties, so sharing one object between Python references is safe. An
// entry always stores its own copy of what it is given, and hands out
// copies, so no Python object ever points into an entry.
#ifndef FILTERSCOMMON_PYTHON_KINDS_PY_H_
#define FILTERSCOMMON_PYTHON_KINDS_PY_H_

#include <pybind11/pybind11.h>

#include <memory>

#include "FiltersCommon/filter_entries.h"
#include "py_support.h"

namespace FiltersCommon {
namespace python {

// A copy of `match` of its own class (MatchDSCP included).
std::shared_ptr<Match> copyMatch(const Match& match);
std::shared_ptr<Action> copyAction(const Action& action);

// entry.setMatch/setAction with the class `match` really is.
filtersErr_t setMatchOf(FiltersEntry* entry, const Match& match);
filtersErr_t setActionOf(FiltersEntry* entry, const Action& action);

// Registers Match, Action and the classes of every kind in `module`.
void bindKinds(py::module_& module);

}  // namespace python
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_PYTHON_KINDS_PY_H_
