#include "caps.h"

#include <string>
#include <vector>

#include "FiltersCommon/filter_explain.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_names.h"
#include "tool_input.h"

namespace filters_tool {

namespace {

using FiltersCommon::filtersAction_t;
using FiltersCommon::filtersGroupStage_t;
using FiltersCommon::filtersGroupType_t;
using FiltersCommon::filtersMatch_t;

// "0 to 3", from the first and last element of a non-empty list.
template <class T>
std::string span(const std::vector<T>& known) {
  return std::to_string(known.front()) + " to " + std::to_string(known.back());
}

template <class T>
void printNumbers(const std::vector<T>& numbers, std::ostream& out) {
  for (T number : numbers) out << ' ' << number;
  out << '\n';
}

const char* kindName(filtersMatch_t kind) {
  return FiltersCommon::filtersMatchName(kind);
}
const char* kindName(filtersAction_t kind) {
  return FiltersCommon::filtersActionName(kind);
}

// What a kind's name leaves unsaid: MatchDSCP shares the kind of MatchToS.
const char* aside(filtersMatch_t kind) {
  return kind == FiltersCommon::FILTERS_MATCH_TOS ? " (and MatchDSCP)" : "";
}
const char* aside(filtersAction_t) { return ""; }

// One kind a line, its number right-aligned, then its class name.
template <class Kind>
void printKinds(const char* title, const std::vector<Kind>& kinds,
                std::ostream& out) {
  out << "  " << title << " (" << kinds.size() << "):";
  if (kinds.empty()) out << " none";
  out << '\n';
  for (Kind kind : kinds) {
    out << (kind < 10 ? "     " : "    ") << kind << ' ' << kindName(kind)
        << aside(kind) << '\n';
  }
}

void printStage(filtersGroupStage_t stage, std::ostream& out) {
  const auto types = FiltersCommon::allowedGroupTypes(stage);
  const auto actions = FiltersCommon::allowedActionKinds(stage);
  const auto policerStage = FiltersCommon::requiredPolicerStage(stage);
  if (!types || !actions || !policerStage) {
    throw ToolError("caps: stage " + std::to_string(stage) +
                    " is unknown; the stages are " +
                    span(FiltersCommon::knownGroupStages()));
  }
  out << "Stage " << stage << " (" << FiltersCommon::filtersStageName(stage)
      << ")\n  group types (" << types->size() << "):";
  printNumbers(*types, out);
  out << "  policer: ";
  if (*policerStage == policer::STAGE_NONE) {
    out << "only a policer without stage (2, None)\n";
  } else {
    out << "policer stage " << *policerStage << " ("
        << FiltersCommon::filtersPolicerStageName(*policerStage)
        << "), or a policer without stage (2, None)\n";
  }
  printKinds("action kinds", *actions, out);
}

void printType(filtersGroupType_t type, std::ostream& out) {
  const auto matches = FiltersCommon::allowedMatchKinds(type);
  if (!matches) {
    throw ToolError("caps: type " + std::to_string(type) +
                    " is unknown; the types are " +
                    span(FiltersCommon::knownGroupTypes()));
  }
  out << "Type " << type << " (" << FiltersCommon::filtersTypeName(type)
      << ")\n  allowed in stages:";
  std::vector<filtersGroupStage_t> stages;
  for (filtersGroupStage_t stage : FiltersCommon::knownGroupStages()) {
    const auto types = FiltersCommon::allowedGroupTypes(stage);
    for (filtersGroupType_t allowed : *types) {
      if (allowed == type) stages.push_back(stage);
    }
  }
  printNumbers(stages, out);
  printKinds("match kinds", *matches, out);
}

}  // namespace

void printCaps(std::optional<filtersGroupStage_t> stage,
               std::optional<filtersGroupType_t> type, std::ostream& out) {
  if (!stage && !type) {
    for (filtersGroupStage_t each : FiltersCommon::knownGroupStages()) {
      printStage(each, out);
      out << '\n';
    }
    for (filtersGroupType_t each : FiltersCommon::knownGroupTypes()) {
      printType(each, out);
      out << '\n';
    }
    return;
  }
  if (stage) printStage(*stage, out);
  if (stage && type) out << '\n';
  if (type) printType(*type, out);
  if (stage && type) {
    const FiltersCommon::filtersErr_t code =
        FiltersCommon::FiltersGroup(0).groupStageValidation(*stage, *type);
    out << "\nType " << *type << " in stage " << *stage << ": ";
    if (code == FiltersCommon::FILTERS_OK) {
      out << "allowed\n";
    } else {
      out << "not allowed (code " << code << ", "
          << FiltersCommon::filtersErrName(code) << ")\n";
    }
  }
}

}  // namespace filters_tool
