// The compiled half of the filters_common package. The package's
// __init__.py re-exports everything registered here together with the
// pure-Python vocabulary (IntEnums, FiltersError) it is built on.
#include <pybind11/pybind11.h>

#include "kinds_py.h"
#include "model_py.h"

PYBIND11_MODULE(_filters_common, module) {
  module.doc() =
      "Filter groups, entries, matches and actions of libfilter_common, "
      "with the library's own checks, wire bytes and dumps.";
  FiltersCommon::python::bindKinds(module);
  FiltersCommon::python::bindModel(module);
  FiltersCommon::python::bindGroups(module);
}
