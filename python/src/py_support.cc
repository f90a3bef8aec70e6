#include "py_support.h"

#include "FiltersCommon/filter_names.h"
#include "rule_values.h"

namespace FiltersCommon {
namespace python {

py::object vocabulary(const char* name) {
  // The module object stays cached by the import system; looking the
  // attribute up each time keeps no reference of our own past finalization.
  return py::module_::import("filters_common._vocabulary").attr(name);
}

void check(filtersErr_t code, std::optional<std::string> cause) {
  if (code == FILTERS_OK) return;
  py::object error = vocabulary("FiltersError")(
      static_cast<int>(code),
      cause ? py::object(py::str(*cause)) : py::object(py::none()));
  PyErr_SetObject(error.get_type().ptr(), error.ptr());
  throw py::error_already_set();
}

py::object asEnum(const char* enumName, int64_t value) {
  py::object type = vocabulary(enumName);
  py::object member = type.attr("_value2member_map_").attr("get")(value);
  if (member.is_none()) return py::int_(value);
  return member;
}

std::string enumSource(const char* enumName, int64_t value) {
  py::object member = asEnum(enumName, value);
  if (py::isinstance<py::int_>(member) && !py::hasattr(member, "name")) {
    return std::to_string(value);
  }
  return std::string(enumName) + "." + member.attr("name").cast<std::string>();
}

namespace {

// Integers only: bool is an int in Python but never a number here, and
// floats are refused rather than truncated.
bool isInteger(py::handle value) {
  return py::isinstance<py::int_>(value) && !py::isinstance<py::bool_>(value);
}

bool isAddressObject(py::handle value) {
  static const char* const kTypes[] = {"IPv4Address",   "IPv6Address",
                                       "IPv4Network",   "IPv6Network",
                                       "IPv4Interface", "IPv6Interface"};
  py::module_ ipaddress = py::module_::import("ipaddress");
  for (const char* type : kTypes) {
    if (py::isinstance(value, ipaddress.attr(type))) return true;
  }
  return false;
}

// `value` as address text, or raw bytes in `*raw`.
std::string addressInput(py::handle value, std::size_t size, bool* isRaw,
                         const char* what) {
  *isRaw = false;
  if (py::isinstance<py::str>(value)) return value.cast<std::string>();
  if (isAddressObject(value)) return py::str(value).cast<std::string>();
  if (py::isinstance<py::bytes>(value)) {
    std::string raw = value.cast<std::string>();
    if (raw.size() != size) {
      throw py::value_error(std::string(what) + " as bytes must be " +
                            std::to_string(size) + " bytes long, not " +
                            std::to_string(raw.size()));
    }
    *isRaw = true;
    return raw;
  }
  throw py::type_error(
      std::string(what) +
      " must be a string, an ipaddress object or bytes, not " +
      py::str(py::type::handle_of(value).attr("__name__")).cast<std::string>());
}

}  // namespace

limid_t toInterface(py::handle value) {
  if (isInteger(value)) {
    return static_cast<limid_t>(toUnsigned(value, 32, "an interface"));
  }
  if (py::isinstance<py::str>(value)) {
    const std::string text = value.cast<std::string>();
    const auto limid = rules::parseInterface(text);
    if (!limid) {
      throw py::value_error("'" + text +
                            "' is not an interface: expected a name such as "
                            "eth1, lag2 or vpls7, or a 32-bit number");
    }
    return *limid;
  }
  throw py::type_error(
      "an interface must be a name (str) or a number (int), not " +
      py::str(py::type::handle_of(value).attr("__name__")).cast<std::string>());
}

std::string interfaceText(limid_t limid) {
  std::string text;
  rules::appendInterface(&text, limid);
  return text;
}

std::vector<limid_t> toInterfaces(py::handle value) {
  std::vector<limid_t> limids;
  if (isInteger(value) || py::isinstance<py::str>(value)) {
    limids.push_back(toInterface(value));
    return limids;
  }
  if (!py::isinstance<py::iterable>(value)) {
    throw py::type_error("expected an interface or an iterable of interfaces");
  }
  for (py::handle item : value) limids.push_back(toInterface(item));
  return limids;
}

uint64_t toUnsigned(py::handle value, unsigned bits, const char* what) {
  if (!isInteger(value)) {
    throw py::type_error(std::string(what) + " must be an int, not " +
                         py::str(py::type::handle_of(value).attr("__name__"))
                             .cast<std::string>());
  }
  const py::int_ number = py::reinterpret_borrow<py::int_>(value);
  const uint64_t max = bits >= 64 ? ~0ULL : (1ULL << bits) - 1;
  if (number < py::int_(0) || number > py::int_(max)) {
    const std::string message = std::string(what) + " must be from 0 to " +
                                std::to_string(max) + ", not " +
                                py::str(value).cast<std::string>();
    PyErr_SetString(PyExc_OverflowError, message.c_str());
    throw py::error_already_set();
  }
  return number.cast<uint64_t>();
}

int32_t toInt32(py::handle value, const char* what) {
  if (!isInteger(value)) {
    throw py::type_error(std::string(what) + " must be an int, not " +
                         py::str(py::type::handle_of(value).attr("__name__"))
                             .cast<std::string>());
  }
  const py::int_ number = py::reinterpret_borrow<py::int_>(value);
  if (number < py::int_(INT32_MIN) || number > py::int_(INT32_MAX)) {
    const std::string message =
        std::string(what) + " must fit in 32 signed bits";
    PyErr_SetString(PyExc_OverflowError, message.c_str());
    throw py::error_already_set();
  }
  return number.cast<int32_t>();
}

py::object readOnly(const py::dict& dict) {
  return py::module_::import("types").attr("MappingProxyType")(dict);
}

std::vector<uint64_t> toUnsignedList(py::handle value, unsigned bits,
                                     const char* what) {
  std::vector<uint64_t> numbers;
  if (isInteger(value)) {
    numbers.push_back(toUnsigned(value, bits, what));
    return numbers;
  }
  if (!py::isinstance<py::iterable>(value) || py::isinstance<py::str>(value)) {
    throw py::type_error(std::string(what) +
                         " must be an int or an iterable of ints");
  }
  for (py::handle item : value) numbers.push_back(toUnsigned(item, bits, what));
  return numbers;
}

void toAddress(py::handle address, py::handle mask, std::size_t size,
               std::string* bytes, std::string* maskBytes) {
  const char* name = rules::addressName(size);
  const std::string what = std::string("the ") + name + " address";
  bool raw = false;
  std::string text = addressInput(address, size, &raw, what.c_str());
  std::string error;
  std::size_t offset = 0;
  if (raw) {
    *bytes = text;
    *maskBytes = std::string(size, '\xff');
  } else if (!rules::parseAddress(text, size, bytes, maskBytes, &error,
                                  &offset)) {
    throw py::value_error("'" + text + "' is not a valid " + name +
                          " address: " + error);
  }
  if (mask.is_none()) return;
  if (!raw && text.find('/') != std::string::npos) {
    throw py::value_error("'" + text +
                          "' carries its own mask; give no second mask");
  }
  if (isInteger(mask)) {
    const uint64_t length = toUnsigned(mask, 8, "a prefix length");
    if (length > size * 8) {
      throw py::value_error("a prefix length must be from 0 to " +
                            std::to_string(size * 8));
    }
    std::string dummy;
    // The prefix mask exactly as the address notation builds it.
    const std::string zero = size == 6   ? "0:0:0:0:0:0"
                             : size == 4 ? "0.0.0.0"
                                         : "::";
    if (!rules::parseAddress(zero + "/" + std::to_string(length), size, &dummy,
                             maskBytes, &error, &offset)) {
      throw py::value_error(error);
    }
    return;
  }
  const std::string maskWhat = std::string("the ") + name + " mask";
  bool maskRaw = false;
  std::string maskText = addressInput(mask, size, &maskRaw, maskWhat.c_str());
  if (maskRaw) {
    *maskBytes = maskText;
    return;
  }
  std::string dummy;
  std::string fullMask;
  if (maskText.find('/') != std::string::npos ||
      !rules::parseAddress(maskText, size, maskBytes, &fullMask, &error,
                           &offset)) {
    throw py::value_error("'" + maskText + "' is not a valid " + name +
                          " mask");
  }
}

std::string addressText(const std::string& bytes, std::size_t size) {
  std::string text;
  rules::appendAddress(&text, bytes, std::string(size, '\xff'), size);
  return text;
}

std::string maskedAddressText(const std::string& bytes,
                              const std::string& maskBytes, std::size_t size) {
  std::string text;
  rules::appendAddress(&text, bytes, maskBytes, size);
  return text;
}

std::string quote(const std::string& text) {
  return py::repr(py::str(text)).cast<std::string>();
}

}  // namespace python
}  // namespace FiltersCommon
