// Helpers shared by the parts of the Python module: turning refusal codes
// into FiltersError, numbers into the module's IntEnums, and Python values
// (strings, ipaddress objects, integers, iterables) into the library's
// values and back.
//
// Everything here runs with the interpreter lock held, as every pybind11
// call does; nothing keeps state besides the cached Python objects of the
// pure-Python half of the package, which live as long as the interpreter.
#ifndef FILTERSCOMMON_PYTHON_PY_SUPPORT_H_
#define FILTERSCOMMON_PYTHON_PY_SUPPORT_H_

#include <pybind11/pybind11.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "FiltersCommon/filter_types.h"
#include "limid/limid.h"

namespace FiltersCommon {
namespace python {

namespace py = pybind11;

// An attribute of the pure-Python module filters_common._vocabulary (the
// IntEnums, FiltersError, the small record types), imported on first use.
py::object vocabulary(const char* name);

// Raises FiltersError for a refusal `code` when it is not 0. `cause` is the
// library's explanation, when it has one.
void check(filtersErr_t code, std::optional<std::string> cause = std::nullopt);

// Raises RuleTextError listing `errors` (RuleError values of the rule text
// compiler).
template <class Errors>
[[noreturn]] void raiseRuleErrors(const Errors& errors) {
  py::list list;
  for (const auto& err : errors) {
    list.append(vocabulary("RuleTextLocation")(err.file, err.line, err.column,
                                               err.message));
  }
  py::object error = vocabulary("RuleTextError")(list);
  PyErr_SetObject(error.get_type().ptr(), error.ptr());
  throw py::error_already_set();
}

// `value` as a member of the IntEnum `enumName`, or as a plain int when the
// enumeration has no such member (a group read from the wire keeps any
// stage and type it was given).
py::object asEnum(const char* enumName, int64_t value);

// `value` as Python source: "Color.GREEN" for a member of the IntEnum
// `enumName`, the number otherwise.
std::string enumSource(const char* enumName, int64_t value);

// __eq__ and __ne__ of a class by T::operator==: NotImplemented for an
// object of another type, so that Python falls back as for its own types.
template <class T>
py::object equals(const T& a, py::object b) {
  if (!py::isinstance<T>(b)) {
    return py::reinterpret_borrow<py::object>(Py_NotImplemented);
  }
  return py::bool_(a == b.cast<const T&>());
}
template <class T>
py::object differs(const T& a, py::object b) {
  if (!py::isinstance<T>(b)) {
    return py::reinterpret_borrow<py::object>(Py_NotImplemented);
  }
  return py::bool_(!(a == b.cast<const T&>()));
}

// The dump the library's operator<< writes for `value`.
template <class T>
std::string dumpOf(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

// An interface given as a limid name ("eth1", "lag2") or an integer.
limid_t toInterface(py::handle value);
// The interface as the notation that reads back as it: its name, or its
// number in hex.
std::string interfaceText(limid_t limid);
// One interface, or an iterable of them, as a list.
std::vector<limid_t> toInterfaces(py::handle value);

// An unsigned integer of `bits` bits; TypeError for a non-integer,
// OverflowError out of range. `names` may map names to numbers too.
uint64_t toUnsigned(py::handle value, unsigned bits, const char* what);

// A signed 32-bit integer (an enumeration value); TypeError for a
// non-integer, OverflowError out of range.
int32_t toInt32(py::handle value, const char* what);

// A read-only view (types.MappingProxyType) of `dict`.
py::object readOnly(const py::dict& dict);

// One number, or an iterable of numbers, of `bits` bits.
std::vector<uint64_t> toUnsignedList(py::handle value, unsigned bits,
                                     const char* what);

// An address of `size` bytes (6 MAC, 4 IPv4, 16 IPv6) with its mask, both as
// raw bytes in network order. `address` is a string ("10.0.0.0/8",
// "10.1.2.3/255.0.0.255", "00:11:22:33:44:55"), an ipaddress object or raw
// bytes; `mask`, when not None, a string, an ipaddress object, raw bytes or
// a prefix length, and then `address` must carry no mask of its own.
void toAddress(py::handle address, py::handle mask, std::size_t size,
               std::string* bytes, std::string* maskBytes);
// The address alone, in its usual form ("10.1.2.3", "2001:db8::",
// "00:11:22:33:44:55").
std::string addressText(const std::string& bytes, std::size_t size);
// The address with its mask as rule text writes it: nothing for a full mask,
// "/len" for a prefix, "/mask" otherwise.
std::string maskedAddressText(const std::string& bytes,
                              const std::string& maskBytes, std::size_t size);

// A Python string literal of `text` (for repr).
std::string quote(const std::string& text);

}  // namespace python
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_PYTHON_PY_SUPPORT_H_
