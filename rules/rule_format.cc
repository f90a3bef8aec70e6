// Printing groups and entries as rule text. An entry line reads: identifier
// and priority, the matches in ascending kind, the counters, the policers,
// and the actions (the verdict) last.

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_rule_text.h"
#include "filter_entries.pb.h"
#include "rule_policer.h"
#include "rule_table.h"
#include "rule_values.h"

namespace FiltersCommon {
namespace rules {
namespace {

using Repeated = google::protobuf::RepeatedField<uint32_t>;

void appendNumber(std::string* out, uint32_t value, const Names* names,
                  bool hex, unsigned bits) {
  if (names != nullptr) {
    if (const char* name = names->find(value)) {
      out->append(name);
      return;
    }
  }
  if (hex) {
    appendHex(out, value, static_cast<int>(bits / 4));
  } else {
    appendUnsigned(out, value);
  }
}

// An ascending set, runs of three or more as ranges: "1,5-9,12".
void appendSet(std::string* out, const Repeated& values) {
  if (values.empty()) {
    out->append("none");
    return;
  }
  for (int i = 0; i < values.size();) {
    int last = i;
    while (last + 1 < values.size() && values[last + 1] == values[last] + 1) {
      ++last;
    }
    if (i > 0) out->push_back(',');
    appendUnsigned(out, values[i]);
    if (last >= i + 2) {
      out->push_back('-');
      appendUnsigned(out, values[last]);
      i = last + 1;
    } else {
      ++i;
    }
  }
}

// Interfaces in list order, then "!type" for each excluded port type.
void appendPorts(std::string* out, const Repeated& ports,
                 const Repeated* excluded, const Names* typeNames) {
  if (ports.empty() && (excluded == nullptr || excluded->empty())) {
    out->append("none");
    return;
  }
  bool first = true;
  for (uint32_t port : ports) {
    if (!first) out->push_back(',');
    first = false;
    appendInterface(out, port);
  }
  if (excluded == nullptr) return;
  for (uint32_t type : *excluded) {
    if (!first) out->push_back(',');
    first = false;
    out->push_back('!');
    appendNumber(out, type, typeNames, false, 32);
  }
}

void appendFlag(std::string* out, bool flag) {
  out->append(flag ? "true" : "false");
}

// The value of one kind, after its keyword and a blank.
template <class PB>
void appendValue(std::string* out, const KindRow<PB>& row, const PB& pb) {
  const Fields<PB>& f = row.fields;
  switch (row.value) {
    case Value::kNone:
      break;
    case Value::kPorts:
      appendPorts(out, (pb.*f.list)(),
                  f.list2 != nullptr ? &(pb.*f.list2)() : nullptr, row.names);
      break;
    case Value::kU16Set:
    case Value::kU8Set:
      appendSet(out, (pb.*f.list)());
      break;
    case Value::kNumber:
      appendNumber(out, (pb.*f.get)(), row.names, row.hex, row.bits);
      break;
    case Value::kBool:
      appendFlag(out, (pb.*f.flag)());
      break;
    case Value::kInterface:
      appendInterface(out, (pb.*f.get)());
      break;
    case Value::kMac:
      appendAddress(
          out, (pb.*f.bytes)(),
          f.bytes2 != nullptr ? (pb.*f.bytes2)() : std::string(6, '\xff'), 6);
      break;
    case Value::kIPv4:
      appendAddress(out, (pb.*f.bytes)(), (pb.*f.bytes2)(), 4);
      break;
    case Value::kIPv6:
      appendAddress(out, (pb.*f.bytes)(), (pb.*f.bytes2)(), 16);
      break;
    case Value::kMaskedPort:
      appendUnsigned(out, (pb.*f.get)());
      if ((pb.*f.get2)() != 0xFFFF) {
        out->push_back('/');
        appendHex(out, (pb.*f.get2)(), 4);
      }
      break;
    case Value::kRange:
      appendUnsigned(out, (pb.*f.get)());
      out->push_back('-');
      appendUnsigned(out, (pb.*f.get2)());
      break;
    case Value::kPair:
      appendUnsigned(out, (pb.*f.get)());
      out->push_back(':');
      appendUnsigned(out, (pb.*f.get2)());
      break;
    case Value::kMplsPorts: {
      // Both travel as interface indexes.
      limid_t vpn = 0;
      limid_t port = 0;
      limid_from_ifindex((pb.*f.get)(), &vpn);
      limid_from_ifindex((pb.*f.get2)(), &port);
      appendInterface(out, vpn);
      out->push_back(' ');
      appendInterface(out, port);
      break;
    }
  }
}

template <class PB>
void appendKind(std::string* out, const KindRow<PB>& row, const PB& pb) {
  out->push_back(' ');
  out->append(row.keyword);
  if (row.value != Value::kNone) {
    out->push_back(' ');
    appendValue(out, row, pb);
  }
}

// A MatchDSCP keeps its own class in a lone entry (a group's copy holds it
// as the MatchToS of its kind), so it is written with its own keyword: the
// DSCP, and ":n" for the two low ToS bits when they are set.
void appendDscp(std::string* out, const MatchDSCP& dscp) {
  out->append(" dscp ");
  appendUnsigned(out, dscp.getDSCP());
  if ((dscp.getToS() & 3) != 0) {
    out->push_back(':');
    appendUnsigned(out, dscp.getToS() & 3u);
  }
}

}  // namespace

void appendEntry(std::string* out, const FiltersEntry& entry,
                 FiltersEntryPB* pb) {
  pb->Clear();
  entry.convertToFiltersEntryPB(pb);
  out->append("entry ");
  appendUnsigned(out, entry.getId());
  out->append(" priority ");
  appendUnsigned(out, entry.getPriority());
  const auto& rows = matchRows();
  for (const MatchPB& match : pb->matches_()) {
    if (match.type_() >= rows.size()) continue;
    if (match.type_() == FILTERS_MATCH_TOS) {
      const auto held = entry.getMatches().find(FILTERS_MATCH_TOS);
      const auto* dscp = dynamic_cast<const MatchDSCP*>(held->second.get());
      if (dscp != nullptr) {
        appendDscp(out, *dscp);
        continue;
      }
    }
    appendKind(out, rows[match.type_()], match);
  }
  for (const auto& [id, counter] : entry.getCounters()) {
    out->append(" counter ");
    appendUnsigned(out, id);
    out->push_back(' ');
    if (const char* name = kCounterTypeNames.find(counter.GetType())) {
      out->append(name);
    } else {
      appendSigned(out, counter.GetType());
    }
  }
  if (entry.getPolicer() != policer::Policer()) {
    out->append(" policer ");
    appendPolicer(out, entry.getPolicer());
  }
  if (const auto parent = entry.getPolicerParent()) {
    out->append(" parent ");
    appendPolicer(out, *parent);
  }
  const auto& actionTable = actionRows();
  for (const ActionPB& action : pb->actions_()) {
    if (action.type_() >= actionTable.size()) continue;
    appendKind(out, actionTable[action.type_()], action);
  }
}

void appendGroupHeader(std::string* out, const FiltersGroup& group) {
  out->append("group ");
  appendUnsigned(out, group.getId());
  out->append(" priority ");
  appendUnsigned(out, group.getPriority());
  out->append(" stage ");
  appendSigned(out, group.getStage());
  out->append(" type ");
  appendSigned(out, group.getType());
  const char* stage = groupStageNames().find(group.getStage());
  const char* type = groupTypeNames().find(group.getType());
  if (stage != nullptr || type != nullptr) {
    out->append("  #");
    if (stage != nullptr) out->append(" stage ").append(stage);
    if (stage != nullptr && type != nullptr) out->push_back(',');
    if (type != nullptr) out->append(" type ").append(type);
  }
  out->push_back('\n');
}

}  // namespace rules

std::string formatEntryRule(const FiltersEntry& entry) {
  std::string out;
  FiltersEntryPB pb;
  rules::appendEntry(&out, entry, &pb);
  return out;
}

std::string formatGroupRules(const FiltersGroup& group) {
  std::string out;
  rules::appendGroupHeader(&out, group);
  FiltersEntryPB pb;
  for (const auto& [id, entry] : group.getEntriesRef()) {
    rules::appendEntry(&out, entry, &pb);
    out.push_back('\n');
  }
  return out;
}

}  // namespace FiltersCommon
