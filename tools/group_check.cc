#include "group_check.h"

#include <map>
#include <set>
#include <stdexcept>
#include <vector>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_explain.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_names.h"
#include "filter_entries.pb.h"
#include "tool_input.h"

namespace filters_tool {

namespace {

using FiltersCommon::FILTERS_ERR_TYPE_NOT_IN_STAGE;
using FiltersCommon::FILTERS_OK;
using FiltersCommon::FiltersEntry;
using FiltersCommon::FiltersEntryPB;
using FiltersCommon::FiltersGroup;
using FiltersCommon::FiltersGroupPB;

// "1 entry", "2 entries".
std::string entries(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " entry" : " entries");
}

std::string codeText(FiltersCommon::filtersErr_t code) {
  return "code " + std::to_string(code) + " (" +
         FiltersCommon::filtersErrName(code) + ")";
}

// Notes on the matches and actions of `element` that the entry built from it
// lacks: unknown kinds, and matches the entry's own rules refuse. The loader
// drops both silently before the group sees the entry.
void noteDroppedKinds(const FiltersEntryPB& element, const FiltersEntry& entry,
                      const std::string& label, std::ostream& out) {
  std::set<uint32_t> matchKinds;
  for (const auto& match : element.matches_()) matchKinds.insert(match.type_());
  for (uint32_t kind : matchKinds) {
    const auto held = static_cast<FiltersCommon::filtersMatch_t>(kind);
    if (kind > FILTERS_MATCH_LAST) {
      out << label << ": note: match kind " << kind
          << " is unknown and ignored\n";
    } else if (entry.getMatches().count(held) == 0) {
      out << label << ": note: match " << FiltersCommon::filtersMatchName(held)
          << " (" << kind
          << ") is dropped by the entry's own rules (IPv4 beside IPv6 "
             "addresses, or a destination port beside a port range)\n";
    }
  }
  std::set<uint32_t> actionKinds;
  for (const auto& action : element.actions_()) {
    actionKinds.insert(action.type_());
  }
  for (uint32_t kind : actionKinds) {
    if (kind > FILTERS_ACTION_LAST) {
      out << label << ": note: action kind " << kind
          << " is unknown and ignored\n";
    }
  }
}

// The entry the loader builds from `element`.
FiltersEntry loadEntry(const FiltersEntryPB& element, int index,
                       const std::string& source) {
  FiltersEntry entry(0);
  try {
    entry.convertFromFiltersEntryPB(&element);
  } catch (const std::invalid_argument& error) {
    throw ToolError(source + ": entries_[" + std::to_string(index) +
                    "] (entry " + std::to_string(element.id_()) +
                    "): " + error.what() +
                    "; the library cannot load this group at all");
  }
  return entry;
}

// The identifiers the library itself keeps when it loads `message`.
std::set<FiltersCommon::filtersEntryId_t> loadedIds(
    const FiltersGroupPB& message) {
  std::string bytes;
  message.SerializePartialToString(&bytes);
  std::set<FiltersCommon::filtersEntryId_t> ids;
  const FiltersGroup group(bytes);
  for (const auto& held : group.getEntriesRef()) {
    ids.insert(held.first);
  }
  return ids;
}

}  // namespace

CheckResult checkGroup(const FiltersGroupPB& message, const std::string& source,
                       std::ostream& out) {
  // The loader takes stage and type as they come, without checks.
  const auto stage = static_cast<FiltersCommon::filtersGroupStage_t>(
      static_cast<int32_t>(message.stage_()));
  const auto type = static_cast<FiltersCommon::filtersGroupType_t>(
      static_cast<int32_t>(message.type_()));
  CheckResult result;
  result.total = message.entries__size();
  // Everything is loaded before anything is printed, so that a message the
  // library cannot load gives an error and no half report.
  std::vector<FiltersEntry> loaded;
  loaded.reserve(static_cast<std::size_t>(result.total));
  for (int i = 0; i < result.total; ++i) {
    loaded.push_back(loadEntry(message.entries_(i), i, source));
  }
  out << "Group " << (message.id_() & 0xFFFF) << ": stage " << stage
      << ", type " << type << ", " << entries(result.total) << " in " << source
      << '\n';
  const FiltersCommon::filtersErr_t pairCode =
      FiltersGroup(0).groupStageValidation(stage, type);
  if (pairCode == FILTERS_ERR_TYPE_NOT_IN_STAGE) {
    out << "note: stage " << stage << " does not allow type " << type
        << " (code " << pairCode << ", "
        << FiltersCommon::filtersErrName(pairCode)
        << "); the loader keeps both as read all the same\n";
  }

  // Identifier -> position in the message of the entry the group holds.
  std::map<FiltersCommon::filtersEntryId_t, int> kept;
  for (int i = 0; i < result.total; ++i) {
    const FiltersEntryPB& element = message.entries_(i);
    const FiltersEntry& entry = loaded[static_cast<std::size_t>(i)];
    const std::string label = "entry " + std::to_string(entry.getId());
    noteDroppedKinds(element, entry, label, out);
    const FiltersCommon::EntryExplanation why =
        FiltersCommon::explainEntry(stage, type, entry);
    if (why.code != FILTERS_OK) {
      out << label << ": dropped, " << codeText(why.code) << ": " << why.message
          << '\n';
      continue;
    }
    ++result.accepted;
    const bool replaces = kept.count(entry.getId()) != 0;
    kept[entry.getId()] = i;
    if (replaces) {
      ++result.replaced;
      out << label << ": accepted, replaces the earlier entry " << entry.getId()
          << '\n';
    } else {
      out << label << ": accepted\n";
    }
  }

  out << result.accepted << " of " << result.total << " entries accepted\n";
  if (result.replaced != 0) {
    out << "of which " << result.replaced
        << " replaced an earlier entry with the same id: the group keeps "
        << entries(kept.size()) << '\n';
  }

  std::set<FiltersCommon::filtersEntryId_t> expected;
  for (const auto& held : kept) expected.insert(held.first);
  if (loadedIds(message) != expected) {
    throw ToolError(source +
                    ": the library's loader keeps other entries than this "
                    "check found; please report this");
  }
  return result;
}

}  // namespace filters_tool
