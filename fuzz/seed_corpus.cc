// filters-fuzz-seeds OUTDIR [RULES_FILE...]: writes the starting corpus of
// every fuzz target into OUTDIR/<target>/, one file per seed. Nothing binary
// is kept in the repository; the seeds are made here from the library's own
// objects and messages:
//   - the demo group of filters-tool and small generated groups;
//   - every match and action kind alone, as the library writes it and with
//     every field of the message set;
//   - hand-made damage: repeated kinds, short address fields, unknown kinds,
//     stray trailing bytes, missing required fields, packed repeated fields,
//     an MPLS action with identifiers of the wrong types, a group of an
//     unknown stage or type;
//   - their JSON form and rule text, C-interface programs, policers, and
//     interface names and numbers.
// Each RULES_FILE given is added to the rule text corpus as it is, and so is
// each of its lines. OUTDIR/json.dict is a libFuzzer dictionary of the JSON
// form's field names.
#include <google/protobuf/descriptor.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_rule_text.h"
#include "c_api_makers.h"
#include "c_api_program.h"
#include "common/kinds.h"
#include "demo_group.h"
#include "filter_entries.pb.h"
#include "filter_groups.pb.h"
#include "filters_json.pb.h"
#include "json_form.h"
#include "limid/limid.h"
#include "policer/policer.h"
#if defined(FILTERS_FUZZ_WITH_WORKLOAD)
#include "workload.h"
#endif

namespace {

using FiltersCommon::ActionPB;
using FiltersCommon::FiltersEntry;
using FiltersCommon::FiltersEntryPB;
using FiltersCommon::FiltersGroup;
using FiltersCommon::FiltersGroupPB;
using FiltersCommon::MatchPB;

// The seeds of one target, by file name.
using Corpus = std::map<std::string, std::string>;

// ---- Values ----

const std::vector<policer::Policer>& samplePolicers() {
  static const std::vector<policer::Policer> policers = {
      policer::Policer(),
      policer::Policer(7, policer::STAGE_INGRESS,
                       policer::Mode::SrTcm(1000, 2000, 3000),
                       {policer::Action::Drop(policer::COLOR_RED)}),
      policer::Policer(8, policer::STAGE_EGRESS,
                       policer::Mode::TrTcm(10, 20, 30, 40),
                       {policer::Action::SetPcp(policer::COLOR_YELLOW, 5),
                        policer::Action::SetDscp(policer::COLOR_GREEN, 46)}),
      policer::Policer(9, policer::STAGE_NONE,
                       policer::Mode::TrTcmDs(1, 2, 3, 4),
                       {policer::Action::Drop(policer::COLOR_RED),
                        policer::Action::SetDscp(policer::COLOR_YELLOW, 10)}),
      policer::Policer(0xFFFFFFFE, policer::STAGE_INGRESS,
                       policer::Mode::Flow(0xFFFFFFFF, 0)),
  };
  return policers;
}

std::string policerBytes(size_t i) {
  return samplePolicers()[i % samplePolicers().size()].Serialize();
}

// A match message of `kind` with every field of the message set, so that
// whichever fields the kind reads carry a value.
MatchPB fullMatch(uint32_t kind) {
  MatchPB m;
  m.set_type_(kind);
  m.add_ports_(limid_make(limid_type_ethernet, 3));
  m.add_ports_(limid_make(limid_type_lag, 1));
  m.add_vlan_id_(100);
  m.add_vlan_id_(4095);
  m.set_tpid_(0x8100);
  m.set_mac_(std::string("\x02\x11\x22\x33\x44\x55", 6));
  m.set_l4port_param1_(22);
  m.set_mac_mask_(std::string("\xff\xff\xff\x00\x00\x00", 6));
  m.set_ipv4_(std::string("\x0a\x00\x00\x01", 4));
  m.add_pcp_(5);
  m.set_ipv4_mask_(std::string("\xff\xff\xff\x00", 4));
  m.set_ipv6_(std::string("\x20\x01\x0d\xb8", 4) + std::string(11, '\0') +
              "\x01");
  m.set_ipv6_mask_(std::string(8, '\xff') + std::string(8, '\0'));
  m.set_l2_src_(2);
  m.set_ipprotocol_(6);
  m.set_packet_resolution_(3);
  m.set_tos_(46 << 2);
  m.set_limid_(limid_make(limid_type_ethernet, 9));
  m.set_l4port_param2_(0xff00);
  m.set_ingress_stp_state_(2);
  m.add_excluded_port_types_(1);
  m.set_vlan_info_svc_vlan_type_(1);
  m.set_ttl_(64);
  m.set_vrf_id_(12);
  m.set_drop_flag_(true);
  m.set_fwd_type_(2);
  m.set_mpls_terminated_(true);
  m.set_vlan_tagging_(1);
  m.set_hit_flag_(true);
  m.set_injected_flag_(true);
  m.set_vlan_info_proto_cpu_vlan_type_(2);
  m.set_class_id_(77);
  return m;
}

// The wire carries the MPLS action's identifiers as interface indexes.
uint32_t ifindexOf(limid_t id) {
  uint32_t ifindex = 0;
  if (limid_to_ifindex(id, &ifindex) != 0) {
    throw std::logic_error("no ifindex for an identifier of an invalid type");
  }
  return ifindex;
}

// An action message of `kind` with every field set; the MPLS identifiers
// are of the types the action takes.
ActionPB fullAction(uint32_t kind) {
  ActionPB a;
  a.set_type_(kind);
  a.add_ports_(limid_make(limid_type_ethernet, 4));
  a.add_ports_(limid_make(limid_type_ethernet, 5));
  a.set_pcp_(3);
  a.set_pcp_and_queue_(0x35);
  a.set_dscp_(46);
  a.set_cosq_(7);
  a.set_cp2cpu_cancel_type_(1);
  a.set_mac_(std::string("\x02\xaa\xbb\xcc\xdd\xee", 6));
  a.set_l3_dest_id_(4242);
  a.set_vpn_id(ifindexOf(limid_make(limid_type_mpls_vpws, 7)));
  a.set_mpls_access_port(ifindexOf(limid_make(limid_type_lag, 2)));
  return a;
}

FiltersEntryPB entryMessage(uint32_t id, size_t policer) {
  FiltersEntryPB e;
  e.set_id_(id);
  e.set_priority_(100 + id);
  e.set_policer_(policerBytes(policer));
  return e;
}

std::string bytesOf(const google::protobuf::MessageLite& message) {
  return message.SerializePartialAsString();
}

// The bytes the library writes for what it reads from `bytes`; empty when
// it cannot load them (an MPLS action of the wrong types).
std::string canonicalEntry(const std::string& bytes) {
  try {
    std::string out;
    FiltersEntry(bytes).serialize(&out);
    return out;
  } catch (const std::invalid_argument&) {
    return std::string();
  }
}

std::string canonicalGroup(const std::string& bytes) {
  try {
    std::string out;
    FiltersGroup(bytes).serialize(&out);
    return out;
  } catch (const std::invalid_argument&) {
    return std::string();
  }
}

// A length-delimited field written by hand, for layouts the generated code
// never writes.
std::string varint(uint64_t value) {
  std::string out;
  while (value >= 0x80) {
    out.push_back(static_cast<char>((value & 0x7f) | 0x80));
    value >>= 7;
  }
  out.push_back(static_cast<char>(value));
  return out;
}

std::string lengthDelimited(uint32_t field, const std::string& payload) {
  return varint((field << 3) | 2) + varint(payload.size()) + payload;
}

std::string packed(uint32_t field, const std::vector<uint32_t>& values) {
  std::string payload;
  for (uint32_t v : values) payload += varint(v);
  return lengthDelimited(field, payload);
}

// ---- Entries ----

void addEntrySeeds(Corpus* entries) {
  uint32_t id = 1;
  const auto add = [&](const std::string& name, const std::string& bytes) {
    (*entries)[name] = bytes;
  };
  const auto kindName = [](const char* what, uint32_t kind) {
    char name[32];
    std::snprintf(name, sizeof name, "%s_%02u", what, kind);
    return std::string(name);
  };

  // Every kind alone, as given with every field and as the library keeps it.
#define SEED_MATCH(value, Class)                                     \
  {                                                                  \
    FiltersEntryPB e = entryMessage(id++, value);                    \
    *e.add_matches_() = fullMatch(value);                            \
    add(kindName("match_full", value), bytesOf(e));                  \
    add(kindName("match_alone", value), canonicalEntry(bytesOf(e))); \
  }
  FILTERS_FOR_EACH_MATCH_KIND(SEED_MATCH)
#undef SEED_MATCH
#define SEED_ACTION(value, Class)                                     \
  {                                                                   \
    FiltersEntryPB e = entryMessage(id++, value);                     \
    *e.add_actions_() = fullAction(value);                            \
    add(kindName("action_full", value), bytesOf(e));                  \
    add(kindName("action_alone", value), canonicalEntry(bytesOf(e))); \
  }
  FILTERS_FOR_EACH_ACTION_KIND(SEED_ACTION)
#undef SEED_ACTION

  // Everything at once: the library keeps what goes together.
  FiltersEntryPB all = entryMessage(500, 2);
#define SEED_ALL_MATCHES(value, Class) *all.add_matches_() = fullMatch(value);
  FILTERS_FOR_EACH_MATCH_KIND(SEED_ALL_MATCHES)
#undef SEED_ALL_MATCHES
#define SEED_ALL_ACTIONS(value, Class) *all.add_actions_() = fullAction(value);
  FILTERS_FOR_EACH_ACTION_KIND(SEED_ALL_ACTIONS)
#undef SEED_ALL_ACTIONS
  for (int c = 0; c <= 9; ++c) {
    auto* counter = all.add_counters_();
    counter->set_id(c);
    counter->set_type(c);
  }
  all.set_policer_parent_(policerBytes(3));
  add("every_kind", bytesOf(all));
  add("every_kind_kept", canonicalEntry(bytesOf(all)));

  // Repeated kinds: the same match and action twice with other values.
  FiltersEntryPB repeated = entryMessage(501, 1);
  *repeated.add_matches_() = fullMatch(9);
  MatchPB second = fullMatch(9);
  second.set_ipv4_(std::string("\xc0\xa8\x01\x01", 4));
  *repeated.add_matches_() = second;
  *repeated.add_actions_() = fullAction(5);
  ActionPB secondAction = fullAction(5);
  secondAction.set_pcp_(6);
  *repeated.add_actions_() = secondAction;
  auto* c1 = repeated.add_counters_();
  c1->set_id(1);
  c1->set_type(1);
  auto* c2 = repeated.add_counters_();
  c2->set_id(1);
  c2->set_type(2);
  add("repeated_kinds", bytesOf(repeated));

  // Short address fields.
  FiltersEntryPB shortFields = entryMessage(502, 0);
  MatchPB mac = fullMatch(4);
  mac.set_mac_("\x02\x11\x22");
  mac.set_mac_mask_("");
  *shortFields.add_matches_() = mac;
  MatchPB v4 = fullMatch(10);
  v4.set_ipv4_("\x0a");
  v4.set_ipv4_mask_("\xff\xff");
  *shortFields.add_matches_() = v4;
  MatchPB v6 = fullMatch(15);
  v6.set_ipv6_(std::string("\x20\x01\x0d\xb8\x00\x00\x00", 7));
  v6.set_ipv6_mask_("\xff");
  *shortFields.add_matches_() = v6;
  ActionPB replace = fullAction(12);
  replace.set_mac_("\x02");
  *shortFields.add_actions_() = replace;
  add("short_addresses", bytesOf(shortFields));
  FiltersEntryPB longFields = entryMessage(503, 0);
  MatchPB longMac = fullMatch(7);
  longMac.set_mac_(std::string(40, '\x5a'));
  *longFields.add_matches_() = longMac;
  MatchPB longV6 = fullMatch(14);
  longV6.set_ipv6_(std::string(33, '\x11'));
  *longFields.add_matches_() = longV6;
  add("long_addresses", bytesOf(longFields));

  // Unknown kinds, just beyond the last and far away.
  FiltersEntryPB unknown = entryMessage(504, 0);
  *unknown.add_matches_() = fullMatch(FILTERS_MATCH_LAST + 1);
  *unknown.add_matches_() = fullMatch(0xFFFFFFFF);
  *unknown.add_actions_() = fullAction(FILTERS_ACTION_LAST + 1);
  *unknown.add_actions_() = fullAction(0x80000000);
  auto* badCounter = unknown.add_counters_();
  badCounter->set_id(-1);
  badCounter->set_type(99);
  add("unknown_kinds", bytesOf(unknown));

  // Stray trailing bytes after a valid entry.
  const std::string kept = canonicalEntry(bytesOf(all));
  add("trailing_zero", kept + std::string(1, '\0'));
  add("trailing_garbage", kept + "\xff\xff\x07");
  add("truncated", kept.substr(0, kept.size() / 2));

  // Missing required fields: the entry's, a match's and an action's.
  FiltersEntryPB missing;
  MatchPB typeless;
  typeless.add_ports_(limid_make(limid_type_ethernet, 1));
  *missing.add_matches_() = typeless;
  ActionPB typelessAction;
  typelessAction.set_pcp_(4);
  *missing.add_actions_() = typelessAction;
  missing.add_counters_()->set_id(3);
  add("missing_required", bytesOf(missing));
  add("empty", std::string());

  // Packed repeated fields, which the library never writes but must read.
  std::string portsMatch = varint(1 << 3) + varint(1) +
                           packed(2, {limid_make(limid_type_ethernet, 1),
                                      limid_make(limid_type_ethernet, 2),
                                      limid_make(limid_type_lag, 3)});
  std::string vlanMatch = varint(1 << 3) + varint(2) + packed(3, {1, 2, 4094});
  std::string pcpMatch = varint(1 << 3) + varint(12) + packed(9, {0, 7});
  std::string blockAction = varint(1 << 3) + varint(3) +
                            packed(2, {limid_make(limid_type_ethernet, 8), 0});
  add("packed_repeated",
      bytesOf(entryMessage(505, 0)) + lengthDelimited(4, portsMatch) +
          lengthDelimited(4, vlanMatch) + lengthDelimited(4, pcpMatch) +
          lengthDelimited(5, blockAction));

  // An MPLS action with identifiers of the wrong interface types.
  FiltersEntryPB mpls = entryMessage(506, 0);
  ActionPB wrongMpls = fullAction(18);
  wrongMpls.set_vpn_id(ifindexOf(limid_make(limid_type_ethernet, 1)));
  wrongMpls.set_mpls_access_port(
      ifindexOf(limid_make(limid_type_mpls_vpws, 2)));
  *mpls.add_actions_() = wrongMpls;
  add("mpls_wrong_types", bytesOf(mpls));
  FiltersEntryPB vpls = entryMessage(507, 0);
  ActionPB vplsAction = fullAction(18);
  vplsAction.set_vpn_id(
      ifindexOf(limid_make_bridgedomain(limid_bridgedomain_type_vpls, 3)));
  vplsAction.set_mpls_access_port(
      ifindexOf(limid_make(limid_type_ethernet, 2)));
  *vpls.add_actions_() = vplsAction;
  add("mpls_vpls", bytesOf(vpls));

  // Damaged policers.
  FiltersEntryPB damaged = entryMessage(508, 0);
  damaged.set_policer_("\x08\xff\xff");
  damaged.set_policer_parent_(policerBytes(1) + "\x00\x01");
  add("damaged_policers", bytesOf(damaged));
}

// ---- Groups ----

std::string groupBytes(const FiltersGroup& group) {
  std::string bytes;
  group.serialize(&bytes);
  return bytes;
}

void addGroupSeeds(const Corpus& entries, Corpus* groups) {
  FiltersGroup demo = filters_tool::demoGroupHead();
  for (const filters_tool::DemoEntry& rule : filters_tool::demoEntries()) {
    static_cast<void>(demo.insertEntry(rule.entry));
  }
  (*groups)["demo_group"] = groupBytes(demo);

#if defined(FILTERS_FUZZ_WITH_WORKLOAD)
  for (uint32_t seed = 1; seed <= 4; ++seed) {
    (*groups)["workload_" + std::to_string(seed)] =
        groupBytes(*FiltersWorkload::makeGroup(4 * seed, seed));
  }
#endif

  // Every group type in every stage, holding every single-kind entry: the
  // group keeps those its type and stage allow.
  std::string everyEntry;
  for (const auto& [name, bytes] : entries) {
    if (name.rfind("match_full", 0) == 0 || name.rfind("action_full", 0) == 0) {
      everyEntry += lengthDelimited(5, bytes);
    }
  }
  for (uint32_t stage = 0; stage <= 3; ++stage) {
    for (uint32_t type = 0; type <= 14; ++type) {
      FiltersGroupPB head;
      head.set_id_(static_cast<uint32_t>(stage * 100 + type));
      head.set_priority_(type);
      head.set_stage_(stage);
      head.set_type_(type);
      const std::string raw = bytesOf(head) + everyEntry;
      char name[40];
      std::snprintf(name, sizeof name, "stage%u_type%02u", stage, type);
      (*groups)[std::string(name) + "_kept"] = canonicalGroup(raw);
      if (stage == 0) (*groups)[std::string(name) + "_full"] = raw;
    }
  }

  // Each hand-made entry in a permissive group.
  FiltersGroupPB lookup;
  lookup.set_id_(1);
  lookup.set_priority_(1);
  lookup.set_stage_(0);
  lookup.set_type_(1);
  for (const char* name :
       {"repeated_kinds", "short_addresses", "long_addresses", "unknown_kinds",
        "missing_required", "packed_repeated", "mpls_wrong_types",
        "damaged_policers", "every_kind"}) {
    (*groups)[std::string("with_") + name] =
        bytesOf(lookup) + lengthDelimited(5, entries.at(name));
  }

  // Unknown stage and type; missing required fields; a duplicate entry id.
  FiltersGroupPB odd;
  odd.set_id_(9);
  odd.set_priority_(9);
  odd.set_stage_(7);
  odd.set_type_(99);
  *odd.add_entries_() = entryMessage(1, 0);
  (*groups)["unknown_stage_type"] = bytesOf(odd);
  odd.set_stage_(0xFFFFFFFF);
  odd.set_type_(0x80000000);
  (*groups)["negative_stage_type"] = bytesOf(odd);
  FiltersGroupPB bare;
  bare.add_entries_();
  (*groups)["missing_required"] = bytesOf(bare);
  (*groups)["duplicate_ids"] =
      bytesOf(lookup) + lengthDelimited(5, entries.at("match_alone_00")) +
      lengthDelimited(5, entries.at("match_alone_00"));
  const std::string demoBytes = groupBytes(demo);
  (*groups)["trailing_zero"] = demoBytes + std::string(1, '\0');
  (*groups)["trailing_garbage"] = demoBytes + "\x2a\x05\x08";
  (*groups)["truncated"] = demoBytes.substr(0, demoBytes.size() * 2 / 3);
}

// ---- JSON and rule text ----

void addJsonAndRules(const Corpus& entries, const Corpus& groups, Corpus* json,
                     Corpus* rules) {
  for (const auto& [name, bytes] : groups) {
    FiltersGroupPB message;
    static_cast<void>(message.ParsePartialFromString(bytes));
    filters_tool::Notes notes;
    json->emplace("group_" + name, filters_tool::groupToJson(message, &notes));
    try {
      rules->emplace("group_" + name,
                     FiltersCommon::formatGroupRules(FiltersGroup(bytes)));
    } catch (const std::invalid_argument&) {
      // Not a group the library holds: no rule text for it.
    }
  }
  for (const auto& [name, bytes] : entries) {
    FiltersEntryPB message;
    static_cast<void>(message.ParsePartialFromString(bytes));
    filters_tool::Notes notes;
    json->emplace("entry_" + name, filters_tool::entryToJson(message, &notes));
    try {
      rules->emplace("entry_" + name,
                     FiltersCommon::formatEntryRule(FiltersEntry(bytes)));
    } catch (const std::invalid_argument&) {
      // As above.
    }
  }
  // JSON the printer never writes.
  (*json)["empty_object"] = "{}";
  (*json)["array"] = "[]";
  (*json)["unknown_field"] = R"({"id_": 1, "colour_": 2})";
  (*json)["camel_case"] =
      R"({"id": 3, "priority": 4, "stage": 2, "type": 3, "entries": [{"id": 1}]})";
  (*json)["policer_fields"] =
      R"({"id_": 5, "priority_": 1, "policer_": {"id": 7, "stage": 0, )"
      R"("mode": {"type": 1, "cir": 10, "cbs": 20, "pir": 30, "pbs": 40}, )"
      R"("actions": [{"color": 0, "type": 0}, {"color": 2, "type": 2, "dscp": 46}]}})";
  (*json)["policer_refused"] =
      R"({"id_": 5, "priority_": 1, "policer_": {"mode": {"type": 0, "pir": 3}}})";
  (*json)["policer_bytes"] =
      R"({"id_": 6, "priority_": 1, "policer_bytes_": "CP///w==", )"
      R"("policer_parent_bytes_": ""})";
  (*json)["numbers_as_strings"] =
      R"({"id_": "4294967295", "priority_": "0", "matches_": [{"type_": "9", )"
      R"("ipv4_": "CgAAAQ==", "ports_": ["1", 2]}]})";
  (*json)["byte_order_mark"] = "\xef\xbb\xbf{\"id_\": 1}";
  (*json)["nested_damage"] = R"({"entries_": [{"matches_": [{"type_": -1}]}]})";
}

// A libFuzzer dictionary of the JSON form: every field name of its
// messages, quoted as JSON writes it, in both spellings the parser takes.
std::string jsonDictionary() {
  std::set<std::string> tokens = {"{",     "}",  "[",    "]",
                                  ":",     ",",  "null", "true",
                                  "false", "-0", "1e9",  "\\u0000"};
  std::vector<const google::protobuf::Descriptor*> pending = {
      FiltersCommon::json::FiltersGroupJson::descriptor()};
  std::set<const google::protobuf::Descriptor*> seen;
  while (!pending.empty()) {
    const google::protobuf::Descriptor* message = pending.back();
    pending.pop_back();
    if (!seen.insert(message).second) continue;
    for (int i = 0; i < message->field_count(); ++i) {
      const google::protobuf::FieldDescriptor* field = message->field(i);
      tokens.insert("\"" + field->name() + "\":");
      tokens.insert("\"" + field->json_name() + "\":");
      if (field->message_type() != nullptr) {
        pending.push_back(field->message_type());
      }
    }
  }
  std::string dictionary;
  for (const std::string& token : tokens) {
    dictionary += "\"";
    for (const char c : token) {
      if (c == '"' || c == '\\') dictionary += '\\';
      dictionary += c;
    }
    dictionary += "\"\n";
  }
  return dictionary;
}

// ---- C-interface programs ----

void addProgramSeeds(Corpus* programs) {
  using fuzz_c_api::ProgramWriter;
  namespace c = fuzz_c_api;
  // Operands counting up, so that every maker gets distinct values.
  const auto operands = [](ProgramWriter& w, uint8_t count, uint8_t start) {
    for (uint8_t i = 0; i < count; ++i) {
      w.u8(static_cast<uint8_t>(start + 17 * i + 1));
    }
  };
  const auto head = [](ProgramWriter& w, uint8_t stage, uint8_t type) {
    w.u16(42);
    w.op(c::kGroupStage).u8(stage);
    w.op(c::kGroupType).u8(type);
    w.op(c::kNewEntry).u8(0).u8(1);
    w.op(c::kEntryPriority).u8(0).u32(1000);
  };

  // Each match maker: set, read back, insert, list, delete, remove.
  for (size_t i = 0; i < c::kMatchMakerCount; ++i) {
    const c::Maker& maker = c::kMatchMakers[i];
    ProgramWriter w;
    head(w, 0, static_cast<uint8_t>(i % 15));
    w.op(c::kSetMatch).u8(0).u8(static_cast<uint8_t>(i));
    operands(w, maker.operandBytes, static_cast<uint8_t>(i));
    w.op(c::kGetMatch).u8(0).u8(static_cast<uint8_t>(i));
    operands(w, maker.operandBytes, 0);
    w.op(c::kInsertEntry).u8(0);
    w.op(c::kGetEntries);
    w.op(c::kDeleteMatch).u8(0).u8(static_cast<uint8_t>(i));
    w.op(c::kRemoveEntry).u8(1);
    (*programs)[std::string("match_") + maker.name] = w.bytes();
  }
  for (size_t i = 0; i < c::kActionMakerCount; ++i) {
    const c::Maker& maker = c::kActionMakers[i];
    ProgramWriter w;
    head(w, static_cast<uint8_t>(i % 4), 3);
    w.op(c::kSetAction).u8(0).u8(static_cast<uint8_t>(i));
    operands(w, maker.operandBytes, static_cast<uint8_t>(i));
    w.op(c::kGetAction).u8(0).u8(static_cast<uint8_t>(i));
    operands(w, maker.operandBytes, 0);
    w.op(c::kInsertEntry).u8(0);
    w.op(c::kGetEntries);
    w.op(c::kDeleteAction).u8(0).u8(static_cast<uint8_t>(i));
    (*programs)[std::string("action_") + maker.name] = w.bytes();
  }

  // Several entries: copies, replacements, deletions, refusals and nulls.
  ProgramWriter mixed;
  head(mixed, 2, 3);
  mixed.op(c::kSetMatch).u8(0).u8(17);  // source IPv4
  operands(mixed, 4, 10);
  mixed.op(c::kSetAction).u8(0).u8(0);  // permit
  mixed.op(c::kCopyEntry).u8(0).u8(1);
  mixed.op(c::kNewEntry).u8(1).u8(2);
  mixed.op(c::kCopyEntry).u8(0).u8(2);
  mixed.op(c::kInsertEntry).u8(0);
  mixed.op(c::kInsertEntry).u8(1);
  mixed.op(c::kInsertEntry).u8(2);  // the same id again
  mixed.op(c::kGetEntries);
  mixed.op(c::kDeleteEntry).u8(2);
  mixed.op(c::kSetMatch).u8(2).u8(0);  // a null entry
  mixed.op(c::kGetAction).u8(3).u8(1);
  mixed.op(c::kRefusedNullUse).u8(0).u8(1);
  mixed.op(c::kRefusedNullUse).u8(1).u8(0);
  mixed.op(c::kRefusedNullUse).u8(2).u8(1);
  mixed.op(c::kGroupType).u8(16);
  mixed.op(c::kGroupStage).u8(5);
  mixed.op(c::kGroupPriority).u16(0xFFFF);
  mixed.op(c::kRemoveEntry).u8(1);
  mixed.op(c::kRemoveEntry).u8(1);
  mixed.op(c::kGetEntries);
  (*programs)["mixed"] = mixed.bytes();
  (*programs)["empty"] = std::string();
}

// ---- Platform inputs ----

void addPolicerSeeds(const Corpus& entries, Corpus* policers) {
  for (size_t i = 0; i < samplePolicers().size(); ++i) {
    (*policers)["policer_" + std::to_string(i)] = policerBytes(i);
  }
  for (const auto& [name, bytes] : entries) {
    FiltersEntryPB message;
    static_cast<void>(message.ParsePartialFromString(bytes));
    if (message.has_policer_()) {
      (*policers)["entry_" + name] = message.policer_();
    }
  }
  (*policers)["empty"] = std::string();
  (*policers)["trailing"] = policerBytes(2) + "\x00\xff";
}

void addLimidSeeds(Corpus* limids) {
  const limid_t ids[] = {
      limid_make(limid_type_ethernet, 3),
      limid_make(limid_type_ethernet, 0xFFFFFF),
      limid_make(limid_type_lag, 1),
      limid_make(limid_type_mpls_vpws, 7),
      limid_make_bridgedomain(limid_bridgedomain_type_vlan, 10),
      limid_make_bridgedomain(limid_bridgedomain_type_vpls, 0xFFFFF),
      limid_make_bridgedomain(7, 1),
      limid_make(limid_type_cpu, 0),
      limid_make(0, 5),
      limid_make(200, 5),
  };
  for (const limid_t id : ids) {
    char name[32];
    if (limid_to_intfname(id, name, sizeof name) == 0) {
      (*limids)[std::string("name_") + name] = name;
    }
    const std::string word = {static_cast<char>(id), static_cast<char>(id >> 8),
                              static_cast<char>(id >> 16),
                              static_cast<char>(id >> 24)};
    char label[32];
    std::snprintf(label, sizeof label, "id_%08x", id);
    (*limids)[label] = word;
    uint32_t ifindex = 0;
    if (limid_to_ifindex(id, &ifindex) == 0) {
      const std::string index = {
          static_cast<char>(ifindex), static_cast<char>(ifindex >> 8),
          static_cast<char>(ifindex >> 16), static_cast<char>(ifindex >> 24)};
      std::snprintf(label, sizeof label, "ifindex_%08x", ifindex);
      (*limids)[label] = index;
    }
  }
  for (const char* text :
       {"eth", "eth03", "eth-1", "eth+1", "eth 1", "ETH1", "eth16777216",
        "eth4294967297", "bd", "bd0", "vpls", "vpls1048576", "cpu", "lag1x",
        "vpws18446744073709551617"}) {
    (*limids)[std::string("text_") + text] = text;
  }
}

void addRulesFiles(int argc, char** argv, Corpus* rules) {
  for (int i = 2; i < argc; ++i) {
    std::ifstream in(argv[i], std::ios::binary);
    if (!in) throw std::runtime_error(std::string("cannot read ") + argv[i]);
    const std::string text((std::istreambuf_iterator<char>(in)),
                           std::istreambuf_iterator<char>());
    std::string name = argv[i];
    name = name.substr(name.find_last_of('/') + 1);
    (*rules)["file_" + name] = text;
    // Each of its lines alone as well.
    std::istringstream lines(text);
    std::string line;
    for (int n = 1; std::getline(lines, line); ++n) {
      (*rules)["file_" + name + "_line" + std::to_string(n)] = line;
    }
  }
}

// ---- Output ----

void makeDirectory(const std::string& path) {
  if (mkdir(path.c_str(), 0755) != 0 && errno != EEXIST) {
    throw std::runtime_error("cannot create " + path + ": " +
                             std::strerror(errno));
  }
}

void writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) throw std::runtime_error("cannot write " + path);
}

// Writes each distinct seed once, under the first name it has.
void write(const std::string& dir, const Corpus& corpus) {
  makeDirectory(dir);
  std::set<std::string> written;
  for (const auto& [name, bytes] : corpus) {
    if (!written.insert(bytes).second) continue;
    writeFile(dir + "/" + name, bytes);
  }
  std::cout << dir << ": " << written.size() << " seeds\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: filters-fuzz-seeds OUTDIR [RULES_FILE...]\n";
    return 2;
  }
  try {
    const std::string out = argv[1];
    Corpus entries;
    Corpus groups;
    Corpus json;
    Corpus rules;
    Corpus programs;
    Corpus policers;
    Corpus limids;
    addEntrySeeds(&entries);
    addGroupSeeds(entries, &groups);
    addJsonAndRules(entries, groups, &json, &rules);
    addRulesFiles(argc, argv, &rules);
    addProgramSeeds(&programs);
    addPolicerSeeds(entries, &policers);
    addLimidSeeds(&limids);

    makeDirectory(out);
    write(out + "/group", groups);
    write(out + "/entry", entries);
    write(out + "/json", json);
    write(out + "/rules", rules);
    write(out + "/c_api", programs);
    write(out + "/policer", policers);
    write(out + "/limid", limids);
    writeFile(out + "/json.dict", jsonDictionary());
  } catch (const std::exception& error) {
    std::cerr << "filters-fuzz-seeds: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
