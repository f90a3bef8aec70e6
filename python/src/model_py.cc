// FiltersEntry, FiltersGroup, Counter, the policer classes, the rule text,
// group differences, the capability queries and the names of numbers.
//
// Python objects own their C++ objects by value. Whatever crosses between a
// group or an entry and Python is copied, as the library itself copies on
// insertion: an entry taken from a group is the caller's own, and a match
// given to an entry is stored as the entry's copy.
#include <pybind11/operators.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "FiltersCommon/filter_explain.h"
#include "FiltersCommon/filter_group_diff.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_names.h"
#include "FiltersCommon/filter_rule_text.h"
#include "kinds_py.h"
#include "model_py.h"
#include "py_support.h"

namespace FiltersCommon {
namespace python {

namespace {

py::bytes bytesOf(const std::string& data) { return py::bytes(data); }

// The class of the protocol-buffers message `name` of filters_common.wire.
py::object wireClass(const char* module, const char* name) {
  return py::module_::import("filters_common.wire").attr(module).attr(name);
}

// The serialized bytes of a Python protocol-buffers message of class
// `expected`; TypeError for anything else.
std::string messageBytes(py::handle message, const char* module,
                         const char* name) {
  py::object expected = wireClass(module, name);
  if (!py::isinstance(message, expected)) {
    throw py::type_error(std::string("expected a filters_common.wire.") +
                         module + "." + name + " message");
  }
  return message.attr("SerializePartialToString")().cast<std::string>();
}

py::object toMessage(const std::string& bytes, const char* module,
                     const char* name) {
  py::object message = wireClass(module, name)();
  message.attr("ParseFromString")(py::bytes(bytes));
  return message;
}

std::string entrySerialized(const FiltersEntry& entry) {
  std::string out;
  entry.serialize(&out);
  return out;
}

void bindCounterAndPolicer(py::module_& m) {
  py::class_<Counter>(m, "Counter",
                      "Counter(id, type)\n\nOne statistics counter of an "
                      "entry: a 16-bit identifier and a CounterType.")
      .def(py::init([](py::handle id, py::handle type) {
             return Counter(static_cast<uint16_t>(toUnsigned(id, 16, "id")),
                            static_cast<counter_type_t>(toInt32(type, "type")));
           }),
           py::arg("id"), py::arg("type"))
      .def_property_readonly("id", &Counter::GetId, "The identifier.")
      .def_property_readonly(
          "type",
          [](const Counter& c) { return asEnum("CounterType", c.GetType()); },
          "What the counter counts (CounterType).")
      .def(py::self == py::self)
      .def(py::self != py::self)
      .def("__hash__",
           [](const Counter& c) {
             return py::hash(py::make_tuple(c.GetId(), int(c.GetType())));
           })
      .def("__repr__",
           [](const Counter& c) {
             return "Counter(" + std::to_string(c.GetId()) + ", " +
                    enumSource("CounterType", c.GetType()) + ")";
           })
      .def(
          "__str__", [](const Counter& c) { return dumpOf(c); },
          "The library's dump of the counter.");

  py::class_<policer::Mode>(
      m, "Mode",
      "A metering mode and its rates: Mode() is MODE_NONE; build the others "
      "with Mode.srtcm, Mode.trtcm, Mode.trtcm_ds and Mode.flow.")
      .def(py::init<>())
      .def_static("srtcm", &policer::Mode::SrTcm, py::arg("cir"),
                  py::arg("cbs"), py::arg("ebs"),
                  "Single-rate three-colour marker.")
      .def_static("trtcm", &policer::Mode::TrTcm, py::arg("cir"),
                  py::arg("cbs"), py::arg("pir"), py::arg("pbs"),
                  "Two-rate three-colour marker.")
      .def_static("trtcm_ds", &policer::Mode::TrTcmDs, py::arg("cir"),
                  py::arg("cbs"), py::arg("eir"), py::arg("ebs"),
                  "Two-rate three-colour marker, DiffServ flavour.")
      .def_static("flow", &policer::Mode::Flow, py::arg("cir"), py::arg("cbs"),
                  "Single-rate flow meter.")
      .def_property_readonly(
          "type",
          [](const policer::Mode& mode) {
            return asEnum("ModeType", mode.GetType());
          },
          "The metering algorithm (ModeType).")
      .def_property_readonly("cir", &policer::Mode::GetCir,
                             "Committed information rate.")
      .def_property_readonly("cbs", &policer::Mode::GetCbs,
                             "Committed burst size.")
      .def_property_readonly("ebs", &policer::Mode::GetEbs,
                             "Excess burst size.")
      .def_property_readonly("pir", &policer::Mode::GetPir,
                             "Peak information rate.")
      .def_property_readonly("pbs", &policer::Mode::GetPbs, "Peak burst size.")
      .def_property_readonly("eir", &policer::Mode::GetEir,
                             "Excess information rate.")
      .def(py::self == py::self)
      .def(py::self != py::self)
      .def("__repr__", [](const policer::Mode& mode) {
        const auto n = [](uint32_t v) { return std::to_string(v); };
        switch (mode.GetType()) {
          case policer::MODE_SRTCM:
            return "Mode.srtcm(" + n(mode.GetCir()) + ", " + n(mode.GetCbs()) +
                   ", " + n(mode.GetEbs()) + ")";
          case policer::MODE_TRTCM:
            return "Mode.trtcm(" + n(mode.GetCir()) + ", " + n(mode.GetCbs()) +
                   ", " + n(mode.GetPir()) + ", " + n(mode.GetPbs()) + ")";
          case policer::MODE_TRTCM_DS:
            return "Mode.trtcm_ds(" + n(mode.GetCir()) + ", " +
                   n(mode.GetCbs()) + ", " + n(mode.GetEir()) + ", " +
                   n(mode.GetEbs()) + ")";
          case policer::MODE_FLOW:
            return "Mode.flow(" + n(mode.GetCir()) + ", " + n(mode.GetCbs()) +
                   ")";
          default:
            return std::string("Mode()");
        }
      });

  py::class_<policer::Action>(
      m, "PolicerAction",
      "What a policer does to packets of one colour: PolicerAction.drop, "
      "PolicerAction.set_pcp or PolicerAction.set_dscp.")
      .def_static(
          "drop",
          [](py::handle color) {
            return policer::Action::Drop(
                static_cast<policer::Color>(toInt32(color, "color")));
          },
          py::arg("color"), "Drop packets of `color`.")
      .def_static(
          "set_pcp",
          [](py::handle color, py::handle pcp) {
            return policer::Action::SetPcp(
                static_cast<policer::Color>(toInt32(color, "color")),
                static_cast<uint8_t>(toUnsigned(pcp, 8, "pcp")));
          },
          py::arg("color"), py::arg("pcp"), "Rewrite the PCP of `color`.")
      .def_static(
          "set_dscp",
          [](py::handle color, py::handle dscp) {
            return policer::Action::SetDscp(
                static_cast<policer::Color>(toInt32(color, "color")),
                static_cast<uint8_t>(toUnsigned(dscp, 8, "dscp")));
          },
          py::arg("color"), py::arg("dscp"), "Rewrite the DSCP of `color`.")
      .def_property_readonly(
          "color",
          [](const policer::Action& a) {
            return asEnum("Color", a.GetColor());
          },
          "The colour the action applies to (Color).")
      .def_property_readonly(
          "type",
          [](const policer::Action& a) {
            return asEnum("PolicerActionType", a.GetType());
          },
          "What the action does (PolicerActionType).")
      .def_property_readonly("pcp", &policer::Action::GetPcp,
                             "The PCP written (SET_PCP), else 0.")
      .def_property_readonly("dscp", &policer::Action::GetDscp,
                             "The DSCP written (SET_DSCP), else 0.")
      .def(py::self == py::self)
      .def(py::self != py::self)
      .def(py::self < py::self)
      .def("__hash__",
           [](const policer::Action& a) {
             return py::hash(py::make_tuple(int(a.GetColor()), int(a.GetType()),
                                            a.GetPcp(), a.GetDscp()));
           })
      .def("__repr__", [](const policer::Action& a) {
        const std::string color = enumSource("Color", a.GetColor());
        switch (a.GetType()) {
          case policer::ACTION_SET_PCP:
            return "PolicerAction.set_pcp(" + color + ", " +
                   std::to_string(a.GetPcp()) + ")";
          case policer::ACTION_SET_DSCP:
            return "PolicerAction.set_dscp(" + color + ", " +
                   std::to_string(a.GetDscp()) + ")";
          default:
            return "PolicerAction.drop(" + color + ")";
        }
      });

  py::class_<policer::Policer>(
      m, "Policer",
      "Policer(id=0xFFFFFFFF, stage=PolicerStage.NONE, mode=Mode(), "
      "actions=())\n\nA traffic policer of the policer library: identifier, "
      "stage, mode and colour actions.")
      .def(py::init([](py::handle id, py::handle stage,
                       const policer::Mode& mode,
                       const std::vector<policer::Action>& actions) {
             return policer::Policer(
                 static_cast<uint32_t>(toUnsigned(id, 32, "id")),
                 static_cast<policer::Stage>(toInt32(stage, "stage")), mode,
                 std::set<policer::Action>(actions.begin(), actions.end()));
           }),
           py::arg("id") = policer::Policer::kInvalidId,
           py::arg("stage") = static_cast<int>(policer::STAGE_NONE),
           py::arg("mode") = policer::Mode(),
           py::arg("actions") = std::vector<policer::Action>())
      .def_property_readonly("id", &policer::Policer::GetId,
                             "The policer identifier.")
      .def_property_readonly(
          "stage",
          [](const policer::Policer& p) {
            return asEnum("PolicerStage", p.GetStage());
          },
          "Where the policer meters (PolicerStage).")
      .def_property_readonly("mode", &policer::Policer::GetMode,
                             "The metering mode (Mode).")
      .def_property_readonly(
          "actions",
          [](const policer::Policer& p) {
            return std::vector<policer::Action>(p.GetActions().begin(),
                                                p.GetActions().end());
          },
          "The colour actions, in the policer's order.")
      .def(
          "serialize",
          [](const policer::Policer& p) { return bytesOf(p.Serialize()); },
          "The policer library's own serialized form.")
      .def_static(
          "from_bytes",
          [](const py::bytes& data) {
            return policer::Policer(data.cast<std::string>());
          },
          py::arg("data"),
          "The policer read from its serialized form (never fails: what "
          "cannot be read keeps its default).")
      .def(py::self == py::self)
      .def(py::self != py::self)
      .def("__copy__", [](const policer::Policer& p) { return p; })
      .def("__deepcopy__",
           [](const policer::Policer& p, py::object) { return p; })
      .def("__repr__", [](const policer::Policer& p) {
        std::string actions = "[";
        bool first = true;
        for (const auto& a : p.GetActions()) {
          if (!first) actions += ", ";
          first = false;
          actions += py::repr(py::cast(a)).cast<std::string>();
        }
        actions += "]";
        return "Policer(" + std::to_string(p.GetId()) + ", " +
               enumSource("PolicerStage", p.GetStage()) + ", " +
               py::repr(py::cast(p.GetMode())).cast<std::string>() + ", " +
               actions + ")";
      });
}

void bindEntry(py::module_& m) {
  py::class_<FiltersEntry>(
      m, "FiltersEntry",
      "FiltersEntry(id=0, priority=0)\n\nOne rule of a filter group: at most "
      "one match per MatchKind, one action per ActionKind, counters, its own "
      "policer and an optional parent policer. The entry stores copies of "
      "what it is given and hands out copies; refusals raise FiltersError.")
      .def(py::init([](py::handle id, py::handle priority) {
             auto entry = std::make_unique<FiltersEntry>(
                 static_cast<filtersEntryId_t>(toUnsigned(id, 32, "id")));
             entry->setPriority(static_cast<filtersEntryPriority_t>(
                 toUnsigned(priority, 32, "priority")));
             return entry;
           }),
           py::arg("id") = 0, py::arg("priority") = 0)
      .def_property(
          "id", &FiltersEntry::getId,
          [](FiltersEntry& e, py::handle id) {
            e.setId(static_cast<filtersEntryId_t>(toUnsigned(id, 32, "id")));
          },
          "The 32-bit entry identifier (its key in a group).")
      .def_property(
          "priority", &FiltersEntry::getPriority,
          [](FiltersEntry& e, py::handle p) {
            e.setPriority(static_cast<filtersEntryPriority_t>(
                toUnsigned(p, 32, "priority")));
          },
          "The 32-bit priority.")
      // Matches.
      .def(
          "set_match",
          [](FiltersEntry& e, const Match& match) {
            check(setMatchOf(&e, match));
          },
          py::arg("match"),
          "Stores a copy of `match`, replacing one of its kind. FiltersError "
          "-4 (FILTERS_ERR_INVALID) for an IPv4 address match beside an IPv6 "
          "one, or a destination port beside a destination port range.")
      .def(
          "match",
          [](const FiltersEntry& e, py::handle kind) -> py::object {
            const auto held = e.getMatches().find(
                static_cast<filtersMatch_t>(toInt32(kind, "kind")));
            if (held == e.getMatches().end()) return py::none();
            return py::cast(copyMatch(*held->second));
          },
          py::arg("kind"), "A copy of the match of `kind`, or None.")
      .def(
          "delete_match",
          [](FiltersEntry& e, py::handle kind) {
            check(e.deleteMatch(
                static_cast<filtersMatch_t>(toInt32(kind, "kind"))));
          },
          py::arg("kind"),
          "Removes the match of `kind`; FiltersError -3 when none is held.")
      .def_property_readonly(
          "matches",
          [](const FiltersEntry& e) {
            py::dict out;
            for (const auto& held : e.getMatches()) {
              out[asEnum("MatchKind", held.first)] =
                  py::cast(copyMatch(*held.second));
            }
            return readOnly(out);
          },
          "A read-only mapping MatchKind -> copy of the match, ascending.")
      // Actions.
      .def(
          "set_action",
          [](FiltersEntry& e, const Action& action) {
            check(setActionOf(&e, action));
          },
          py::arg("action"),
          "Stores a copy of `action`, replacing one of its kind.")
      .def(
          "action",
          [](const FiltersEntry& e, py::handle kind) -> py::object {
            const auto held = e.getActions().find(
                static_cast<filtersAction_t>(toInt32(kind, "kind")));
            if (held == e.getActions().end()) return py::none();
            return py::cast(copyAction(*held->second));
          },
          py::arg("kind"), "A copy of the action of `kind`, or None.")
      .def(
          "delete_action",
          [](FiltersEntry& e, py::handle kind) {
            check(e.deleteAction(
                static_cast<filtersAction_t>(toInt32(kind, "kind"))));
          },
          py::arg("kind"),
          "Removes the action of `kind`; FiltersError -3 when none is held.")
      .def_property_readonly(
          "actions",
          [](const FiltersEntry& e) {
            py::dict out;
            for (const auto& held : e.getActions()) {
              out[asEnum("ActionKind", held.first)] =
                  py::cast(copyAction(*held.second));
            }
            return readOnly(out);
          },
          "A read-only mapping ActionKind -> copy of the action, ascending.")
      // Counters and policers.
      .def(
          "set_counter",
          [](FiltersEntry& e, const Counter& c) { check(e.setCounter(c)); },
          py::arg("counter"),
          "Stores `counter` under its identifier. FiltersError -4 for type 0 "
          "or for a type another held counter has.")
      .def(
          "counter",
          [](const FiltersEntry& e, py::handle id) -> py::object {
            const Counter* c =
                e.getCounter(static_cast<uint16_t>(toUnsigned(id, 16, "id")));
            if (c == nullptr) return py::none();
            return py::cast(*c);
          },
          py::arg("id"), "The counter `id`, or None.")
      .def(
          "delete_counter",
          [](FiltersEntry& e, py::handle id) {
            check(e.deleteCounter(
                static_cast<uint16_t>(toUnsigned(id, 16, "id"))));
          },
          py::arg("id"),
          "Removes counter `id`; FiltersError -5 (as the library answers) "
          "when none is held.")
      .def(
          "clear_counters", [](FiltersEntry& e) { e.deleteCounters(); },
          "Removes every counter.")
      .def_property_readonly(
          "counters",
          [](const FiltersEntry& e) {
            py::dict out;
            for (const auto& held : e.getCounters()) {
              out[py::int_(held.first)] = py::cast(held.second);
            }
            return readOnly(out);
          },
          "A read-only mapping counter id -> Counter, ascending.")
      .def_property(
          "policer", [](const FiltersEntry& e) { return e.getPolicer(); },
          [](FiltersEntry& e, const policer::Policer& p) { e.setPolicer(p); },
          "A copy of the entry's own policer; assigning stores a copy.")
      .def_property(
          "policer_parent",
          [](const FiltersEntry& e) -> py::object {
            const auto parent = e.getPolicerParent();
            if (!parent) return py::none();
            return py::cast(*parent);
          },
          [](FiltersEntry& e, const policer::Policer& p) {
            e.setPolicerParent(p);
          },
          "A copy of the parent policer, or None; assigning stores a fresh "
          "copy (there is no way to clear it, as in the library).")
      // Wire form and text.
      .def(
          "serialize",
          [](const FiltersEntry& e) { return bytesOf(entrySerialized(e)); },
          "The bytes of the entry's FiltersEntryPB message.")
      .def_static(
          "from_bytes",
          [](const py::bytes& data) {
            return FiltersEntry(data.cast<std::string>());
          },
          py::arg("data"),
          "The entry read from FiltersEntryPB bytes, as the library loads it: "
          "refused or unknown matches and actions are dropped silently.")
      .def(
          "to_message",
          [](const FiltersEntry& e) {
            return toMessage(entrySerialized(e), "filter_entries_pb2",
                             "FiltersEntryPB");
          },
          "The entry as a filters_common.wire FiltersEntryPB message.")
      .def_static(
          "from_message",
          [](py::handle message) {
            return FiltersEntry(
                messageBytes(message, "filter_entries_pb2", "FiltersEntryPB"));
          },
          py::arg("message"), "The entry read from a FiltersEntryPB message.")
      .def(
          "to_rules", [](const FiltersEntry& e) { return formatEntryRule(e); },
          "The entry as one line of rule text, without a newline.")
      .def_static(
          "from_rules",
          [](const std::string& text, const std::string& fileName) {
            std::vector<RuleError> errors;
            auto entry = compileEntryRule(text, fileName, &errors);
            if (!entry) raiseRuleErrors(errors);
            return std::move(*entry);
          },
          py::arg("text"), py::arg("file_name") = "<rules>",
          "The entry a line of rule text describes; RuleTextError listing "
          "every error otherwise.")
      .def(
          "__str__", [](const FiltersEntry& e) { return dumpOf(e); },
          "The library's dump of the entry.")
      .def("__repr__",
           [](const FiltersEntry& e) {
             return "<FiltersEntry " + std::to_string(e.getId()) + ": " +
                    formatEntryRule(e) + ">";
           })
      .def("__eq__", &equals<FiltersEntry>, py::is_operator())
      .def("__ne__", &differs<FiltersEntry>, py::is_operator())
      .def("__copy__", [](const FiltersEntry& e) { return FiltersEntry(e); })
      .def("__deepcopy__",
           [](const FiltersEntry& e, py::object) { return FiltersEntry(e); });
}

}  // namespace

void bindModel(py::module_& m) {
  bindCounterAndPolicer(m);
  bindEntry(m);
}

}  // namespace python
}  // namespace FiltersCommon
