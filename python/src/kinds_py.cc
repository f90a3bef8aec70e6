// The 40 match and 21 action classes, registered from the one table of kinds
// (common/kinds.h) and given their Python arguments and properties by the
// family of their value in the rule language's table (rule_table.h).
//
// A value reaches the object the way rule text does: the arguments fill the
// kind's wire message, and the entry's own loader builds the object from it,
// so Python can build exactly the objects the wire can carry. The two
// classes whose constructors do more than the wire are built directly:
// MatchDSCP (shifts its value into the ToS byte) and ActionMplsPortSet
// (checks the interface types and throws std::invalid_argument, which
// becomes ValueError with the library's message).
#include "kinds_py.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "FiltersCommon/filter_names.h"
#include "common/kinds.h"
#include "filter_entries.pb.h"
#include "rule_table.h"
#include "rule_values.h"

namespace FiltersCommon {
namespace python {

std::shared_ptr<Match> copyMatch(const Match& match) {
  if (const auto* dscp = dynamic_cast<const MatchDSCP*>(&match)) {
    return std::make_shared<MatchDSCP>(*dscp);
  }
  switch (match.getType()) {
#define FILTERS_COPY_MATCH(kind, Class) \
  case kind:                            \
    return std::make_shared<Class>(static_cast<const Class&>(match));
    FILTERS_FOR_EACH_MATCH_KIND(FILTERS_COPY_MATCH)
#undef FILTERS_COPY_MATCH
  }
  return nullptr;
}

std::shared_ptr<Action> copyAction(const Action& action) {
  switch (action.getType()) {
#define FILTERS_COPY_ACTION(kind, Class) \
  case kind:                             \
    return std::make_shared<Class>(static_cast<const Class&>(action));
    FILTERS_FOR_EACH_ACTION_KIND(FILTERS_COPY_ACTION)
#undef FILTERS_COPY_ACTION
  }
  return nullptr;
}

filtersErr_t setMatchOf(FiltersEntry* entry, const Match& match) {
  if (const auto* dscp = dynamic_cast<const MatchDSCP*>(&match)) {
    return entry->setMatch(*dscp);
  }
  switch (match.getType()) {
#define FILTERS_SET_MATCH(kind, Class) \
  case kind:                           \
    return entry->setMatch(static_cast<const Class&>(match));
    FILTERS_FOR_EACH_MATCH_KIND(FILTERS_SET_MATCH)
#undef FILTERS_SET_MATCH
  }
  return FILTERS_ERR_INVALID;
}

filtersErr_t setActionOf(FiltersEntry* entry, const Action& action) {
  switch (action.getType()) {
#define FILTERS_SET_ACTION(kind, Class) \
  case kind:                            \
    return entry->setAction(static_cast<const Class&>(action));
    FILTERS_FOR_EACH_ACTION_KIND(FILTERS_SET_ACTION)
#undef FILTERS_SET_ACTION
  }
  return FILTERS_ERR_INVALID;
}

namespace {

using rules::Value;

// ---- Arguments ----

struct Param {
  const char* name;
  bool required;
};

// The parameters of a value family, in the order Python passes them.
std::vector<Param> paramsOf(Value value, bool withExcluded) {
  switch (value) {
    case Value::kNone:
      return {};
    case Value::kPorts:
      if (withExcluded)
        return {{"ports", false}, {"excluded_port_types", false}};
      return {{"ports", true}};
    case Value::kU16Set:
      return {{"vlan_ids", true}};
    case Value::kU8Set:
      return {{"pcps", true}};
    case Value::kNumber:
    case Value::kBool:
      return {{"value", true}};
    case Value::kInterface:
      return {{"interface", true}};
    case Value::kMac:
    case Value::kIPv4:
    case Value::kIPv6:
      return {{"address", true}, {"mask", false}};
    case Value::kMaskedPort:
      return {{"port", true}, {"mask", false}};
    case Value::kRange:
      return {{"min_port", true}, {"max_port", true}};
    case Value::kPair:
      return {{"svc_vlan_type", true}, {"proto_cpu_vlan_type", true}};
    case Value::kMplsPorts:
      return {{"vpn_id", true}, {"access_port", true}};
  }
  return {};
}

// The arguments by parameter, None for those not given; TypeError as
// Python raises it for a wrong call.
std::vector<py::object> bindArguments(const std::string& callee,
                                      const std::vector<Param>& params,
                                      const py::args& args,
                                      const py::kwargs& kwargs) {
  if (args.size() > params.size()) {
    throw py::type_error(callee + "() takes " + std::to_string(params.size()) +
                         " positional arguments but " +
                         std::to_string(args.size()) + " were given");
  }
  std::vector<py::object> bound(params.size(), py::none());
  for (std::size_t i = 0; i < args.size(); ++i) bound[i] = args[i];
  for (auto item : kwargs) {
    const std::string key = item.first.cast<std::string>();
    const auto at = std::find_if(params.begin(), params.end(),
                                 [&](const Param& p) { return key == p.name; });
    if (at == params.end()) {
      throw py::type_error(callee + "() got an unexpected keyword argument '" +
                           key + "'");
    }
    const std::size_t index = static_cast<std::size_t>(at - params.begin());
    if (index < args.size()) {
      throw py::type_error(callee + "() got multiple values for argument '" +
                           key + "'");
    }
    bound[index] = py::reinterpret_borrow<py::object>(item.second);
  }
  for (std::size_t i = 0; i < params.size(); ++i) {
    if (params[i].required && bound[i].is_none()) {
      throw py::type_error(callee + "() missing required argument '" +
                           params[i].name + "'");
    }
  }
  return bound;
}

// A number of a kind's row, by value or by its name in rule text.
uint32_t rowNumber(py::handle value, unsigned bits, const rules::Names* names,
                   const char* what) {
  if (names != nullptr && py::isinstance<py::str>(value)) {
    const std::string name = value.cast<std::string>();
    const auto number = names->find(name);
    if (!number) {
      throw py::value_error("'" + name + "' is not a known " + what +
                            "; expected a number or " + names->list());
    }
    return static_cast<uint32_t>(*number);
  }
  return static_cast<uint32_t>(toUnsigned(value, bits, what));
}

bool flagOf(py::handle value) {
  if (!py::isinstance<py::bool_>(value) && !py::isinstance<py::int_>(value)) {
    throw py::type_error("a flag must be a bool");
  }
  return value.cast<bool>();
}

std::size_t addressSize(Value value) {
  return value == Value::kMac ? 6 : value == Value::kIPv4 ? 4 : 16;
}

// Fills the fields of `row` in `pb` (a MatchPB or an ActionPB) from the
// bound arguments.
template <class PB>
void fillMessage(const rules::KindRow<PB>& row,
                 const std::vector<py::object>& arg, PB* pb) {
  const auto& f = row.fields;
  switch (row.value) {
    case Value::kNone:
    case Value::kMplsPorts:
      break;
    case Value::kPorts: {
      const bool excluded = f.mutableList2 != nullptr && !arg[1].is_none();
      if (excluded && !arg[0].is_none()) {
        throw py::value_error(
            "give either ports or excluded_port_types, not both");
      }
      if (excluded) {
        for (uint64_t type : toUnsignedList(arg[1], 32, "a port type")) {
          (pb->*f.mutableList2)()->Add(static_cast<uint32_t>(type));
        }
      } else if (!arg[0].is_none()) {
        for (limid_t port : toInterfaces(arg[0])) {
          (pb->*f.mutableList)()->Add(port);
        }
      }
      break;
    }
    case Value::kU16Set:
    case Value::kU8Set: {
      const unsigned bits = row.value == Value::kU16Set ? 16 : 8;
      for (uint64_t n : toUnsignedList(arg[0], bits, "a set member")) {
        (pb->*f.mutableList)()->Add(static_cast<uint32_t>(n));
      }
      break;
    }
    case Value::kNumber:
      (pb->*f.set)(rowNumber(arg[0], row.bits, row.names, "value"));
      break;
    case Value::kBool:
      (pb->*f.setFlag)(flagOf(arg[0]));
      break;
    case Value::kInterface:
      (pb->*f.set)(toInterface(arg[0]));
      break;
    case Value::kMac:
    case Value::kIPv4:
    case Value::kIPv6: {
      std::string address;
      std::string mask;
      toAddress(arg[0], arg[1], addressSize(row.value), &address, &mask);
      *(pb->*f.mutableBytes)() = address;
      if (f.mutableBytes2 != nullptr) {
        *(pb->*f.mutableBytes2)() = mask;
      } else if (mask != std::string(addressSize(row.value), '\xff')) {
        throw py::value_error("this address takes no mask");
      }
      break;
    }
    case Value::kMaskedPort:
      (pb->*f.set)(rowNumber(arg[0], 16, nullptr, "a port"));
      (pb->*f.set2)(arg[1].is_none()
                        ? 0xFFFFu
                        : rowNumber(arg[1], 16, nullptr, "a mask"));
      break;
    case Value::kRange:
      (pb->*f.set)(rowNumber(arg[0], 16, nullptr, "a port"));
      (pb->*f.set2)(rowNumber(arg[1], 16, nullptr, "a port"));
      break;
    case Value::kPair:
      (pb->*f.set)(rowNumber(arg[0], 32, nullptr, "a VLAN type"));
      (pb->*f.set2)(rowNumber(arg[1], 32, nullptr, "a VLAN type"));
      break;
  }
}

// The object the entry's loader builds from one message of kind `kind`.
std::shared_ptr<Match> loadMatch(const MatchPB& message) {
  FiltersEntryPB pb;
  pb.set_id_(0);
  pb.set_priority_(0);
  pb.set_policer_("");
  *pb.add_matches_() = message;
  FiltersEntry entry;
  entry.convertFromFiltersEntryPB(&pb);
  const auto held =
      entry.getMatches().find(static_cast<filtersMatch_t>(message.type_()));
  if (held == entry.getMatches().end()) {
    throw py::value_error("the library refused the match");
  }
  return copyMatch(*held->second);
}

std::shared_ptr<Action> loadAction(const ActionPB& message) {
  FiltersEntryPB pb;
  pb.set_id_(0);
  pb.set_priority_(0);
  pb.set_policer_("");
  *pb.add_actions_() = message;
  FiltersEntry entry;
  entry.convertFromFiltersEntryPB(&pb);
  const auto held =
      entry.getActions().find(static_cast<filtersAction_t>(message.type_()));
  if (held == entry.getActions().end()) {
    throw py::value_error("the library refused the action");
  }
  return copyAction(*held->second);
}

// ---- Properties ----

// The IntEnum of the numbers some kinds hold, by kind.
const char* matchEnumOf(int kind) {
  switch (kind) {
    case FILTERS_MATCH_L2_SRC_ENTRY_TYPE:
      return "L2SrcEntryType";
    case FILTERS_MATCH_VLAN_TAGGING:
      return "VlanTagging";
    case FILTERS_MATCH_PACKET_RES:
      return "PacketResolution";
    case FILTERS_MATCH_INGRESS_STP_STATE:
      return "StpState";
    case FILTERS_MATCH_FORWARDING_TYPE:
      return "ForwardingType";
    default:
      return nullptr;
  }
}
const char* actionEnumOf(int kind) {
  return kind == FILTERS_ACTION_COPY_TO_CPU_CANCEL ? "CopyToCpuCancel"
                                                   : nullptr;
}

MatchPB messageOf(const Match& match) {
  MatchPB pb;
  match.convertToMatchPB(&pb);
  return pb;
}
ActionPB messageOf(const Action& action) {
  ActionPB pb;
  action.convertToActionPB(&pb);
  return pb;
}

py::list numbers(const google::protobuf::RepeatedField<uint32_t>& list) {
  py::list out;
  for (uint32_t n : list) out.append(n);
  return out;
}

std::string hexText(uint64_t value) {
  std::string text;
  rules::appendHex(&text, value, 1);
  return text;
}

// Adds the read-only properties of `row`'s family to `cls`, and returns the
// arguments of its repr.
template <class Base, class Cls, class PB>
void addProperties(Cls& cls, const rules::KindRow<PB>& row,
                   const char* enumName) {
  using F = rules::Fields<PB>;
  const F f = row.fields;
  auto message = [](const Base& object) { return messageOf(object); };
  switch (row.value) {
    case Value::kNone:
    case Value::kMplsPorts:
      break;
    case Value::kPorts:
      cls.def_property_readonly(
          "ports",
          [f, message](const Base& o) {
            return numbers((message(o).*f.list)());
          },
          "The interfaces (limid numbers), in the order given.");
      if (f.list2 != nullptr) {
        cls.def_property_readonly(
            "excluded_port_types",
            [f, message](const Base& o) {
              py::list out;
              const PB pb = message(o);
              for (uint32_t t : (pb.*f.list2)()) {
                out.append(asEnum("PortType", t));
              }
              return out;
            },
            "The port types excluded, in the order given.");
      }
      break;
    case Value::kU16Set:
    case Value::kU8Set:
      cls.def_property_readonly(
          row.value == Value::kU16Set ? "vlan_ids" : "pcps",
          [f, message](const Base& o) {
            py::set out;
            const PB pb = message(o);
            for (uint32_t n : (pb.*f.list)()) out.add(py::int_(n));
            return out;
          },
          "The set of values.");
      break;
    case Value::kNumber:
      cls.def_property_readonly(
          "value",
          [f, message, enumName](const Base& o) -> py::object {
            const uint32_t n = (message(o).*f.get)();
            if (enumName != nullptr) return asEnum(enumName, n);
            return py::int_(n);
          },
          "The number the kind holds.");
      break;
    case Value::kBool:
      cls.def_property_readonly(
          "value",
          [f, message](const Base& o) { return (message(o).*f.flag)(); },
          "The flag the kind holds.");
      break;
    case Value::kInterface:
      cls.def_property_readonly(
          "interface",
          [f, message](const Base& o) { return (message(o).*f.get)(); },
          "The interface (limid number).");
      break;
    case Value::kMac:
    case Value::kIPv4:
    case Value::kIPv6: {
      const std::size_t size = addressSize(row.value);
      cls.def_property_readonly(
          "address",
          [f, message, size](const Base& o) {
            return addressText((message(o).*f.bytes)(), size);
          },
          "The address in its usual text form.");
      if (f.bytes2 != nullptr) {
        cls.def_property_readonly(
            "mask",
            [f, message, size](const Base& o) {
              return addressText((message(o).*f.bytes2)(), size);
            },
            "The mask in address form.");
      }
      break;
    }
    case Value::kMaskedPort:
      cls.def_property_readonly(
          "port", [f, message](const Base& o) { return (message(o).*f.get)(); },
          "The layer-4 port.");
      cls.def_property_readonly(
          "mask",
          [f, message](const Base& o) { return (message(o).*f.get2)(); },
          "The port mask (0xffff: exact port).");
      break;
    case Value::kRange:
      cls.def_property_readonly(
          "min_port",
          [f, message](const Base& o) { return (message(o).*f.get)(); },
          "The lowest port of the range.");
      cls.def_property_readonly(
          "max_port",
          [f, message](const Base& o) { return (message(o).*f.get2)(); },
          "The highest port of the range.");
      break;
    case Value::kPair:
      cls.def_property_readonly(
          "svc_vlan_type",
          [f, message](const Base& o) { return (message(o).*f.get)(); },
          "The SVC VLAN type.");
      cls.def_property_readonly(
          "proto_cpu_vlan_type",
          [f, message](const Base& o) { return (message(o).*f.get2)(); },
          "The protocol-to-CPU VLAN type.");
      break;
  }
}

// The arguments that rebuild `object`, as Python source.
template <class PB>
std::string reprArguments(const rules::KindRow<PB>& row, const PB& pb) {
  const auto& f = row.fields;
  auto numberText = [&row](uint64_t n) {
    return row.hex ? hexText(n) : std::to_string(n);
  };
  auto listText = [](const google::protobuf::RepeatedField<uint32_t>& list,
                     bool interfaces) {
    std::string text = "[";
    for (int i = 0; i < list.size(); ++i) {
      if (i > 0) text += ", ";
      text += interfaces ? quote(interfaceText(list.Get(i)))
                         : std::to_string(list.Get(i));
    }
    return text + "]";
  };
  switch (row.value) {
    case Value::kNone:
    case Value::kMplsPorts:
      return "";
    case Value::kPorts:
      if (f.list2 != nullptr && (pb.*f.list2)().size() > 0) {
        return "excluded_port_types=" + listText((pb.*f.list2)(), false);
      }
      return listText((pb.*f.list)(), true);
    case Value::kU16Set:
    case Value::kU8Set: {
      std::vector<uint32_t> sorted((pb.*f.list)().begin(),
                                   (pb.*f.list)().end());
      std::sort(sorted.begin(), sorted.end());
      sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
      if (sorted.empty()) return "set()";
      std::string text = "{";
      for (std::size_t i = 0; i < sorted.size(); ++i) {
        if (i > 0) text += ", ";
        text += std::to_string(sorted[i]);
      }
      return text + "}";
    }
    case Value::kNumber:
      return numberText((pb.*f.get)());
    case Value::kBool:
      return (pb.*f.flag)() ? "True" : "False";
    case Value::kInterface:
      return quote(interfaceText((pb.*f.get)()));
    case Value::kMac:
    case Value::kIPv4:
    case Value::kIPv6: {
      const std::size_t size = addressSize(row.value);
      const std::string mask =
          f.bytes2 != nullptr ? (pb.*f.bytes2)() : std::string(size, '\xff');
      return quote(maskedAddressText((pb.*f.bytes)(), mask, size));
    }
    case Value::kMaskedPort:
      if ((pb.*f.get2)() == 0xFFFF) return std::to_string((pb.*f.get)());
      return std::to_string((pb.*f.get)()) + ", " + hexText((pb.*f.get2)());
    case Value::kRange:
    case Value::kPair:
      return std::to_string((pb.*f.get)()) + ", " +
             std::to_string((pb.*f.get2)());
  }
  return "";
}

// What the constructor of a family takes, for the class docstrings.
std::string signatureOf(const std::vector<Param>& params) {
  std::string text = "(";
  for (std::size_t i = 0; i < params.size(); ++i) {
    if (i > 0) text += ", ";
    text += params[i].name;
    if (!params[i].required) text += "=None";
  }
  return text + ")";
}

const char* familyHelp(Value value) {
  switch (value) {
    case Value::kNone:
      return "It takes no value.";
    case Value::kPorts:
      return "ports: an interface or an iterable of interfaces, each a limid "
             "name such as 'eth1' or 'lag2' or a number; order and duplicates "
             "are kept.";
    case Value::kU16Set:
      return "vlan_ids: a VLAN id or an iterable of them (16-bit, unchecked).";
    case Value::kU8Set:
      return "pcps: a priority code point or an iterable of them (8-bit, "
             "unchecked).";
    case Value::kNumber:
      return "value: an int of the kind's width (an IntEnum member where the "
             "kind has named values).";
    case Value::kBool:
      return "value: a bool.";
    case Value::kInterface:
      return "interface: a limid name such as 'eth1' or a number.";
    case Value::kMac:
      return "address: '00:11:22:33:44:55' (optionally with '/len' or "
             "'/mask'), or 6 raw bytes; mask: an optional separate mask.";
    case Value::kIPv4:
      return "address: '10.0.0.0/8', '10.1.2.3' or an ipaddress object; "
             "mask: an optional separate mask ('255.0.0.0', an "
             "IPv4Address, or a prefix length).";
    case Value::kIPv6:
      return "address: '2001:db8::/32', '2001:db8::1' or an ipaddress object; "
             "mask: an optional separate mask or a prefix length.";
    case Value::kMaskedPort:
      return "port: the layer-4 port; mask: the port mask, 0xffff when "
             "omitted.";
    case Value::kRange:
      return "min_port, max_port: the bounds of the range (not reordered).";
    case Value::kPair:
      return "svc_vlan_type, proto_cpu_vlan_type: the two VLAN types.";
    case Value::kMplsPorts:
      return "vpn_id: an MPLS VPWS interface or a VPLS bridge domain; "
             "access_port: a LAG or an Ethernet port. ValueError for an "
             "interface of another type.";
  }
  return "";
}

// The comparisons, hash, copies and dump every class shares: the base
// comparison dispatches on the kind as the library does.
template <class Base, class Cls>
void addValueMethods(Cls& cls) {
  cls.def("__eq__", &equals<Base>, py::is_operator());
  cls.def("__ne__", &differs<Base>, py::is_operator());
  // Objects never change after construction, so they may be hashed: by
  // their wire message, which equal objects share.
  cls.def("__hash__", [](const Base& self) {
    return py::hash(py::bytes(messageOf(self).SerializeAsString()));
  });
}

template <class T, class Row>
std::string reprOf(const char* name, const Row& row, const T& object) {
  return std::string(name) + "(" + reprArguments(row, messageOf(object)) + ")";
}

// What tells the match classes from the action classes: their base, their
// message, their rows in the rule table and their loader.
struct MatchSide {
  using Base = Match;
  using Message = MatchPB;
  static constexpr const char* kWord = "match";
  static const auto& row(int kind) {
    return rules::matchRows()[static_cast<std::size_t>(kind)];
  }
  template <class Row>
  static bool hasSecondList(const Row& row) {
    return row.fields.list2 != nullptr;
  }
  static std::shared_ptr<Match> load(const MatchPB& pb) {
    return loadMatch(pb);
  }
  static auto enumOf(int kind) { return matchEnumOf(kind); }
};

struct ActionSide {
  using Base = Action;
  using Message = ActionPB;
  static constexpr const char* kWord = "action";
  static const auto& row(int kind) {
    return rules::actionRows()[static_cast<std::size_t>(kind)];
  }
  template <class Row>
  static bool hasSecondList(const Row&) {
    return false;
  }
  static std::shared_ptr<Action> load(const ActionPB& pb) {
    return loadAction(pb);
  }
  static auto enumOf(int kind) { return actionEnumOf(kind); }
};

// Binds one match or action class from its row of the rule table: the
// constructor takes the row's values, the properties read them back.
template <class Side, class T>
void bindKind(py::module_& module, const char* name, int kind) {
  using Base = typename Side::Base;
  const auto& row = Side::row(kind);
  const std::vector<Param> params =
      paramsOf(row.value, Side::hasSecondList(row));
  const std::string doc = std::string(name) + signatureOf(params) + "\n\nThe " +
                          Side::kWord + " of kind " + std::to_string(kind) +
                          ". " + familyHelp(row.value);
  py::class_<T, Base, std::shared_ptr<T>> cls(module, name, doc.c_str());
  const std::string callee = name;
  const std::string init_doc = std::string("Builds the ") + Side::kWord +
                               " from its Python values (see the class help).";
  cls.def(py::init([kind, params, callee](py::args args, py::kwargs kwargs) {
            const auto bound = bindArguments(callee, params, args, kwargs);
            typename Side::Message pb;
            pb.set_type_(static_cast<uint32_t>(kind));
            fillMessage(Side::row(kind), bound, &pb);
            return std::static_pointer_cast<T>(Side::load(pb));
          }),
          init_doc.c_str());
  addProperties<Base>(cls, row, Side::enumOf(kind));
  cls.def("__repr__", [name, kind](const T& self) {
    return reprOf(name, Side::row(kind), self);
  });
  const std::string str_doc =
      std::string("The library's dump of this ") + Side::kWord + ".";
  cls.def(
      "__str__", [](const T& self) { return dumpOf(self); }, str_doc.c_str());
}

template <class T>
void bindMatch(py::module_& module, const char* name, int kind) {
  bindKind<MatchSide, T>(module, name, kind);
}

template <class T>
void bindAction(py::module_& module, const char* name, int kind) {
  bindKind<ActionSide, T>(module, name, kind);
}

// ActionMplsPortSet through its own constructor: its interface checks and
// messages are the library's.
template <>
void bindAction<ActionMplsPortSet>(py::module_& module, const char* name,
                                   int kind) {
  const std::string doc =
      std::string(name) + "(vpn_id, access_port)\n\nThe action of kind " +
      std::to_string(kind) + ". " + familyHelp(Value::kMplsPorts);
  py::class_<ActionMplsPortSet, Action, std::shared_ptr<ActionMplsPortSet>> cls(
      module, name, doc.c_str());
  cls.def(py::init([](py::handle vpn, py::handle port) {
            return std::make_shared<ActionMplsPortSet>(toInterface(vpn),
                                                       toInterface(port));
          }),
          py::arg("vpn_id"), py::arg("access_port"),
          "Binds to the VPN `vpn_id` through `access_port`; ValueError with "
          "the library's message for an interface of the wrong type.");
  cls.def_property_readonly("vpn_id", &ActionMplsPortSet::getVpnId,
                            "The VPN interface (limid number).");
  cls.def_property_readonly("access_port",
                            &ActionMplsPortSet::getMplsAccessPort,
                            "The access port (limid number).");
  cls.def("__repr__", [name](const ActionMplsPortSet& self) {
    return std::string(name) + "(" + quote(interfaceText(self.getVpnId())) +
           ", " + quote(interfaceText(self.getMplsAccessPort())) + ")";
  });
  cls.def(
      "__str__", [](const ActionMplsPortSet& self) { return dumpOf(self); },
      "The library's dump of this action.");
}

}  // namespace

void bindKinds(py::module_& module) {
  py::class_<Match, std::shared_ptr<Match>> match(
      module, "Match",
      "The base of every match class. Matches are immutable values: they "
      "compare by content (as the library does, by kind first), hash, and "
      "print the library's dump with str().");
  match.def_property_readonly(
      "kind",
      [](const Match& self) { return asEnum("MatchKind", self.getType()); },
      "The match kind (MatchKind).");
  addValueMethods<Match>(match);
  match.def("__copy__", [](const Match& self) { return copyMatch(self); });
  match.def("__deepcopy__",
            [](const Match& self, py::object) { return copyMatch(self); });
  match.def("__str__", [](const Match& self) { return dumpOf(self); });

  py::class_<Action, std::shared_ptr<Action>> action(
      module, "Action",
      "The base of every action class: immutable values that compare by "
      "content, hash, and print the library's dump with str().");
  action.def_property_readonly(
      "kind",
      [](const Action& self) { return asEnum("ActionKind", self.getType()); },
      "The action kind (ActionKind).");
  addValueMethods<Action>(action);
  action.def("__copy__", [](const Action& self) { return copyAction(self); });
  action.def("__deepcopy__",
             [](const Action& self, py::object) { return copyAction(self); });
  action.def("__str__", [](const Action& self) { return dumpOf(self); });

#define FILTERS_BIND_MATCH(kind, Class) bindMatch<Class>(module, #Class, kind);
  FILTERS_FOR_EACH_MATCH_KIND(FILTERS_BIND_MATCH)
#undef FILTERS_BIND_MATCH
#define FILTERS_BIND_ACTION(kind, Class) \
  bindAction<Class>(module, #Class, kind);
  FILTERS_FOR_EACH_ACTION_KIND(FILTERS_BIND_ACTION)
#undef FILTERS_BIND_ACTION

  // MatchDSCP shares the ToS kind; it is built by its own constructor.
  py::class_<MatchDSCP, MatchToS, std::shared_ptr<MatchDSCP>> dscp(
      module, "MatchDSCP",
      "MatchDSCP(value)\n\nThe DSCP, held as the ToS byte it occupies "
      "(value << 2) under the ToS kind; read back from the wire it is a "
      "MatchToS.");
  dscp.def(py::init([](py::handle value) {
             return std::make_shared<MatchDSCP>(
                 static_cast<uint8_t>(toUnsigned(value, 8, "a DSCP")));
           }),
           py::arg("value"));
  dscp.def_property_readonly("dscp", &MatchDSCP::getDSCP,
                             "The DSCP: the six high bits of the ToS byte.");
  dscp.def("__repr__", [](const MatchDSCP& self) {
    return "MatchDSCP(" + std::to_string(self.getDSCP()) + ")";
  });
  dscp.def(
      "__str__", [](const MatchDSCP& self) { return dumpOf(self); },
      "The library's dump of this match.");
}

}  // namespace python
}  // namespace FiltersCommon
