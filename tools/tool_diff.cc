#include "tool_diff.h"

#include <algorithm>
#include <vector>

#include "FiltersCommon/filter_rules.h"
#include "filter_groups.pb.h"

namespace filters_tool {
namespace {

using FiltersCommon::FiltersGroup;
using FiltersCommon::FiltersGroupHeader;

// The header line of a group with `header` as the rule printer writes it.
// The group is read from a message holding the header alone, which keeps
// the stage and type as they are even when they do not make a valid pair,
// and spares printing the entries.
std::string headerLine(const FiltersGroupHeader& header) {
  FiltersCommon::FiltersGroupPB message;
  message.set_id_(header.id);
  message.set_priority_(header.priority);
  message.set_stage_(static_cast<uint32_t>(header.stage));
  message.set_type_(static_cast<uint32_t>(header.type));
  const std::string text = FiltersCommon::formatGroupRules(
      FiltersGroup(message.SerializeAsString()));
  return text.substr(0, text.find('\n'));
}

}  // namespace

std::string groupDiffText(const FiltersGroup& from, const FiltersGroup& to) {
  const FiltersCommon::FiltersGroupDiff diff =
      FiltersCommon::diffGroups(from, to);
  std::string out;
  auto line = [&out](const char* sign, const std::string& text) {
    out += sign;
    out += text;
    out += '\n';
  };
  if (diff.headerChanged()) {
    line("- ", headerLine(diff.oldHeader()));
    line("+ ", headerLine(diff.newHeader()));
  }
  // The three lists are ascending and disjoint; walk their union in order.
  std::vector<FiltersCommon::filtersEntryId_t> ids;
  ids.reserve(diff.removed().size() + diff.added().size() +
              diff.changed().size());
  ids.insert(ids.end(), diff.removed().begin(), diff.removed().end());
  ids.insert(ids.end(), diff.added().begin(), diff.added().end());
  ids.insert(ids.end(), diff.changed().begin(), diff.changed().end());
  std::sort(ids.begin(), ids.end());
  const auto& before = from.getEntriesRef();
  for (FiltersCommon::filtersEntryId_t id : ids) {
    const auto old = before.find(id);
    if (old != before.end()) {
      line("- ", FiltersCommon::formatEntryRule(old->second));
    }
    if (const FiltersCommon::FiltersEntry* entry = diff.newEntry(id)) {
      line("+ ", FiltersCommon::formatEntryRule(*entry));
    }
  }
  return out;
}

}  // namespace filters_tool
