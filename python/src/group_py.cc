// FiltersGroup, GroupDiff and the module functions over the library's
// tables: capability queries, explanations and names of numbers.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "FiltersCommon/filter_explain.h"
#include "FiltersCommon/filter_group_diff.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_names.h"
#include "FiltersCommon/filter_rule_text.h"
#include "model_py.h"
#include "py_support.h"

namespace FiltersCommon {
namespace python {

namespace {

filtersGroupStage_t toStage(py::handle value) {
  return static_cast<filtersGroupStage_t>(toInt32(value, "a stage"));
}
filtersGroupType_t toType(py::handle value) {
  return static_cast<filtersGroupType_t>(toInt32(value, "a group type"));
}

std::string serialized(const FiltersGroup& group) {
  std::string out;
  group.serialize(&out);
  return out;
}

py::object wireGroupClass() {
  return py::module_::import("filters_common.wire")
      .attr("filter_groups_pb2")
      .attr("FiltersGroupPB");
}

// The cause of a refused stage or type change: the explanation of the first
// held entry that would not fit, as insertEntry would give it.
std::optional<std::string> changeCause(const FiltersGroup& group,
                                       filtersGroupStage_t stage,
                                       filtersGroupType_t type,
                                       filtersErr_t code) {
  if (code == FILTERS_ERR_TYPE_NOT_IN_STAGE) {
    return "group type " + std::to_string(type) + " is not allowed in stage " +
           std::to_string(stage);
  }
  for (const auto& held : group.getEntriesRef()) {
    const EntryExplanation why = explainEntry(stage, type, held.second);
    if (why.code == code) {
      return "entry " + std::to_string(held.first) + ": " + why.message;
    }
  }
  return std::nullopt;
}

void setStage(FiltersGroup& group, py::handle value) {
  const filtersGroupStage_t stage = toStage(value);
  const filtersErr_t code = group.setStage(stage);
  if (code != FILTERS_OK) {
    check(code, changeCause(group, stage, group.getType(), code));
  }
}

void setType(FiltersGroup& group, py::handle value) {
  const filtersGroupType_t type = toType(value);
  const filtersErr_t code = group.setType(type);
  if (code != FILTERS_OK) {
    check(code, changeCause(group, group.getStage(), type, code));
  }
}

py::object explanationOf(const EntryExplanation& why) {
  return vocabulary("Explanation")(asEnum("ErrorCode", why.code), why.message);
}

template <class K>
py::object kindList(const std::optional<std::vector<K>>& kinds,
                    const char* enumName) {
  if (!kinds) return py::none();
  py::list out;
  for (K kind : *kinds) out.append(asEnum(enumName, kind));
  return out;
}

py::object headerOf(const FiltersGroupHeader& h) {
  return vocabulary("GroupHeader")(h.id, h.priority, asEnum("Stage", h.stage),
                                   asEnum("GroupType", h.type));
}

void bindGroup(py::module_& m) {
  py::class_<FiltersGroup>(
      m, "FiltersGroup",
      "FiltersGroup(id, *, priority=0, stage=Stage.LOOKUP, "
      "type=GroupType.NONE)\n\nOne filter group: a 16-bit identifier, a "
      "priority, a stage and a type, and entries keyed by entry identifier. "
      "The group keeps its entries consistent with its stage and type: a "
      "refused insertion or change raises FiltersError and leaves the group "
      "as it was. Entries go in and come out as copies.")
      .def(py::init([](py::handle id, py::handle priority, py::handle stage,
                       py::handle type) {
             auto group = std::make_unique<FiltersGroup>(
                 static_cast<filtersGroupId_t>(toUnsigned(id, 16, "id")));
             group->setPriority(static_cast<filtersGroupPriority_t>(
                 toUnsigned(priority, 16, "priority")));
             // Type 0 is not allowed in every stage, nor every type in stage
             // 0: when the stage cannot come first, the type does.
             const filtersGroupStage_t s = toStage(stage);
             const filtersGroupType_t t = toType(type);
             if (group->setStage(s) == FILTERS_OK) {
               setType(*group, type);
             } else {
               const filtersErr_t code = group->setType(t);
               if (code != FILTERS_OK)
                 check(code, changeCause(*group, group->getStage(), t, code));
               setStage(*group, stage);
             }
             return group;
           }),
           py::arg("id"), py::kw_only(), py::arg("priority") = 0,
           py::arg("stage") = 0, py::arg("type") = 0)
      .def_property_readonly("id", &FiltersGroup::getId,
                             "The 16-bit group identifier.")
      .def_property(
          "priority", &FiltersGroup::getPriority,
          [](FiltersGroup& g, py::handle p) {
            g.setPriority(static_cast<filtersGroupPriority_t>(
                toUnsigned(p, 16, "priority")));
          },
          "The 16-bit priority.")
      .def_property(
          "stage",
          [](const FiltersGroup& g) { return asEnum("Stage", g.getStage()); },
          &setStage,
          "The stage (Stage). Assigning checks it against the type and every "
          "entry; FiltersError on a refusal.")
      .def_property(
          "type",
          [](const FiltersGroup& g) {
            return asEnum("GroupType", g.getType());
          },
          &setType,
          "The group type (GroupType). Assigning checks it against the stage "
          "and every entry's matches; FiltersError on a refusal.")
      .def(
          "insert",
          [](FiltersGroup& g, const FiltersEntry& entry) {
            const filtersErr_t code = g.insertEntry(entry);
            if (code != FILTERS_OK) {
              check(code, explainEntry(g, entry).message);
            }
          },
          py::arg("entry"),
          "Stores a copy of `entry` under its identifier (replacing one held "
          "there). FiltersError with the code and cause of the refusal "
          "otherwise.")
      .def(
          "remove",
          [](FiltersGroup& g, py::handle id) {
            check(g.removeEntry(
                static_cast<filtersEntryId_t>(toUnsigned(id, 32, "id"))));
          },
          py::arg("entry_id"),
          "Removes entry `entry_id`; FiltersError -3 when none is held.")
      .def(
          "explain",
          [](const FiltersGroup& g, const FiltersEntry& entry) {
            return explanationOf(explainEntry(g, entry));
          },
          py::arg("entry"),
          "Explanation(code, cause): what insert(entry) would give, and why, "
          "without changing anything.")
      .def_property_readonly(
          "entries",
          [](const FiltersGroup& g) {
            py::dict out;
            for (const auto& held : g.getEntriesRef()) {
              out[py::int_(held.first)] = py::cast(FiltersEntry(held.second));
            }
            return readOnly(out);
          },
          "A read-only mapping entry id -> copy of the entry, ascending.")
      .def(
          "entry",
          [](const FiltersGroup& g, py::handle id) -> py::object {
            const auto& entries = g.getEntriesRef();
            const auto held = entries.find(
                static_cast<filtersEntryId_t>(toUnsigned(id, 32, "id")));
            if (held == entries.end()) return py::none();
            return py::cast(FiltersEntry(held->second));
          },
          py::arg("entry_id"), "A copy of entry `entry_id`, or None.")
      .def("__len__",
           [](const FiltersGroup& g) { return g.getEntriesRef().size(); })
      .def(
          "__iter__",
          [](const FiltersGroup& g) {
            py::list copies;
            for (const auto& held : g.getEntriesRef()) {
              copies.append(py::cast(FiltersEntry(held.second)));
            }
            return py::iter(copies);
          },
          "Iterates over copies of the entries in ascending identifier.")
      .def("__contains__",
           [](const FiltersGroup& g, py::handle id) {
             if (!py::isinstance<py::int_>(id)) return false;
             const py::int_ n = py::reinterpret_borrow<py::int_>(id);
             if (n < py::int_(0) || n > py::int_(UINT32_MAX)) return false;
             return g.getEntriesRef().count(n.cast<filtersEntryId_t>()) > 0;
           })
      .def(
          "serialize",
          [](const FiltersGroup& g) { return py::bytes(serialized(g)); },
          "The bytes of the group's FiltersGroupPB message.")
      .def_static(
          "from_bytes",
          [](const py::bytes& data) {
            return FiltersGroup(data.cast<std::string>());
          },
          py::arg("data"),
          "The group read from FiltersGroupPB bytes exactly as the library "
          "loads it: stage and type as they come, refused entries dropped "
          "silently.")
      .def(
          "to_message",
          [](const FiltersGroup& g) {
            py::object message = wireGroupClass()();
            message.attr("ParseFromString")(py::bytes(serialized(g)));
            return message;
          },
          "The group as a filters_common.wire FiltersGroupPB message.")
      .def_static(
          "from_message",
          [](py::handle message) {
            if (!py::isinstance(message, wireGroupClass())) {
              throw py::type_error(
                  "expected a filters_common.wire.filter_groups_pb2."
                  "FiltersGroupPB message");
            }
            return FiltersGroup(
                message.attr("SerializePartialToString")().cast<std::string>());
          },
          py::arg("message"),
          "The group read from a FiltersGroupPB message, as from_bytes.")
      .def(
          "to_rules", [](const FiltersGroup& g) { return formatGroupRules(g); },
          "The group as rule text: a header line and one line per entry.")
      .def_static(
          "from_rules",
          [](const std::string& text, const std::string& fileName) {
            std::vector<RuleError> errors;
            auto group = compileGroupRules(text, fileName, &errors);
            if (!group) raiseRuleErrors(errors);
            return FiltersGroup(*group);
          },
          py::arg("text"), py::arg("file_name") = "<rules>",
          "The group rule text describes; RuleTextError listing every error "
          "(with file, line and column) otherwise.")
      .def(
          "__str__", [](const FiltersGroup& g) { return dumpOf(g); },
          "The library's dump of the group.")
      .def("__repr__",
           [](const FiltersGroup& g) {
             return "<FiltersGroup " + std::to_string(g.getId()) +
                    " priority " + std::to_string(g.getPriority()) + " stage " +
                    std::to_string(g.getStage()) + " type " +
                    std::to_string(g.getType()) + ", " +
                    std::to_string(g.getEntriesRef().size()) + " entries>";
           })
      .def("__eq__", &equals<FiltersGroup>, py::is_operator())
      .def("__ne__", &differs<FiltersGroup>, py::is_operator())
      .def("__copy__", [](const FiltersGroup& g) { return FiltersGroup(g); })
      .def("__deepcopy__",
           [](const FiltersGroup& g, py::object) { return FiltersGroup(g); });
}

void bindDiff(py::module_& m) {
  py::class_<FiltersGroupDiff>(
      m, "GroupDiff",
      "The difference between two groups, from diff(old, new): false when "
      "they are equal. added, removed and changed list entry identifiers in "
      "ascending order; apply(group) replays the difference on a group.")
      .def("__bool__", [](const FiltersGroupDiff& d) { return !d.empty(); })
      .def_property_readonly(
          "added", &FiltersGroupDiff::added,
          "Identifiers held only by the new group, ascending.")
      .def_property_readonly(
          "removed", &FiltersGroupDiff::removed,
          "Identifiers held only by the old group, ascending.")
      .def_property_readonly("changed", &FiltersGroupDiff::changed,
                             "Identifiers of entries that differ, ascending.")
      .def_property_readonly(
          "old_header",
          [](const FiltersGroupDiff& d) { return headerOf(d.oldHeader()); },
          "GroupHeader(id, priority, stage, type) of the old group.")
      .def_property_readonly(
          "new_header",
          [](const FiltersGroupDiff& d) { return headerOf(d.newHeader()); },
          "GroupHeader(id, priority, stage, type) of the new group.")
      .def_property_readonly("id_changed", &FiltersGroupDiff::idChanged,
                             "Whether the identifiers differ.")
      .def_property_readonly("priority_changed",
                             &FiltersGroupDiff::priorityChanged,
                             "Whether the priorities differ.")
      .def_property_readonly("stage_changed", &FiltersGroupDiff::stageChanged,
                             "Whether the stages differ.")
      .def_property_readonly("type_changed", &FiltersGroupDiff::typeChanged,
                             "Whether the types differ.")
      .def_property_readonly("header_changed", &FiltersGroupDiff::headerChanged,
                             "Whether any header field differs.")
      .def(
          "new_entry",
          [](const FiltersGroupDiff& d, py::handle id) -> py::object {
            const FiltersEntry* e = d.newEntry(
                static_cast<filtersEntryId_t>(toUnsigned(id, 32, "id")));
            if (e == nullptr) return py::none();
            return py::cast(FiltersEntry(*e));
          },
          py::arg("entry_id"),
          "A copy of the new content of an added or changed entry, or None.")
      .def(
          "apply",
          [](const FiltersGroupDiff& d, FiltersGroup& group) {
            check(d.applyTo(&group));
          },
          py::arg("group"),
          "Applies the difference to `group` (its identifier is kept). "
          "FiltersError with the code of the first refused step otherwise, "
          "the group unchanged.")
      .def("__repr__", [](const FiltersGroupDiff& d) {
        const auto list = [](const std::vector<filtersEntryId_t>& ids) {
          return py::repr(py::cast(ids)).cast<std::string>();
        };
        return "<GroupDiff added=" + list(d.added()) +
               " removed=" + list(d.removed()) +
               " changed=" + list(d.changed()) +
               (d.headerChanged() ? " header changed>" : ">");
      });

  m.def(
      "diff",
      [](const FiltersGroup& a, const FiltersGroup& b) {
        return diffGroups(a, b);
      },
      py::arg("old"), py::arg("new"),
      "The GroupDiff that turns group `old` into group `new`.");
}

void bindTables(py::module_& m) {
  m.def(
      "known_stages",
      [] { return kindList(std::optional(knownGroupStages()), "Stage"); },
      "The stages the library's tables know, ascending.");
  m.def(
      "known_group_types",
      [] { return kindList(std::optional(knownGroupTypes()), "GroupType"); },
      "The group types the library's tables know, ascending.");
  m.def(
      "allowed_match_kinds",
      [](py::handle type) {
        return kindList(allowedMatchKinds(toType(type)), "MatchKind");
      },
      py::arg("type"),
      "The match kinds group type `type` allows, ascending; None for an "
      "unknown type.");
  m.def(
      "allowed_group_types",
      [](py::handle stage) {
        return kindList(allowedGroupTypes(toStage(stage)), "GroupType");
      },
      py::arg("stage"),
      "The group types stage `stage` allows, ascending; None for an unknown "
      "stage.");
  m.def(
      "allowed_action_kinds",
      [](py::handle stage) {
        return kindList(allowedActionKinds(toStage(stage)), "ActionKind");
      },
      py::arg("stage"),
      "The action kinds stage `stage` allows, ascending; None for an unknown "
      "stage.");
  m.def(
      "required_policer_stage",
      [](py::handle stage) -> py::object {
        const auto required = requiredPolicerStage(toStage(stage));
        if (!required) return py::none();
        return asEnum("PolicerStage", *required);
      },
      py::arg("stage"),
      "The policer stage an entry's own policer must have in `stage` (a "
      "policer of stage NONE fits every stage); None for an unknown stage.");
  m.def(
      "explain",
      [](py::handle stage, py::handle type, const FiltersEntry& entry) {
        return explanationOf(explainEntry(toStage(stage), toType(type), entry));
      },
      py::arg("stage"), py::arg("type"), py::arg("entry"),
      "Explanation(code, cause) of inserting `entry` into a group of `stage` "
      "and `type`.");

  m.def(
      "error_name",
      [](py::handle code) {
        return filtersErrName(static_cast<filtersErr_t>(toInt32(code, "code")));
      },
      py::arg("code"), "The symbolic name of an error code.");
  m.def(
      "error_description",
      [](py::handle code) {
        return filtersErrDescription(
            static_cast<filtersErr_t>(toInt32(code, "code")));
      },
      py::arg("code"), "What an error code means, in one line.");
  m.def(
      "match_name",
      [](py::handle kind) {
        return filtersMatchName(
            static_cast<filtersMatch_t>(toInt32(kind, "kind")));
      },
      py::arg("kind"), "The class name of a match kind.");
  m.def(
      "action_name",
      [](py::handle kind) {
        return filtersActionName(
            static_cast<filtersAction_t>(toInt32(kind, "kind")));
      },
      py::arg("kind"), "The class name of an action kind.");
  m.def(
      "stage_name",
      [](py::handle stage) { return filtersStageName(toStage(stage)); },
      py::arg("stage"), "The enumerator name of a stage.");
  m.def(
      "type_name",
      [](py::handle type) { return filtersTypeName(toType(type)); },
      py::arg("type"), "The enumerator name of a group type.");
}

}  // namespace

void bindGroups(py::module_& m) {
  bindGroup(m);
  bindDiff(m);
  bindTables(m);
}

}  // namespace python
}  // namespace FiltersCommon
