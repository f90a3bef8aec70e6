// Registration of the model classes of the Python module: entries, counters
// and policers (model_py.cc), groups, differences, capability queries and
// names (group_py.cc).
#ifndef FILTERSCOMMON_PYTHON_MODEL_PY_H_
#define FILTERSCOMMON_PYTHON_MODEL_PY_H_

#include <pybind11/pybind11.h>

namespace FiltersCommon {
namespace python {

namespace py = pybind11;

// Counter, Mode, PolicerAction, Policer and FiltersEntry.
void bindModel(py::module_& module);
// FiltersGroup, GroupDiff, diff(), the capability queries and the names.
void bindGroups(py::module_& module);

}  // namespace python
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_PYTHON_MODEL_PY_H_
