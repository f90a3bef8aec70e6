// Random filter entries and groups for the rule text tests, seeded and
// deterministic. Entries are built from wire messages, so they hold what only
// a peer can send (several redirect ports, ports beside excluded port types,
// values outside every enumeration, policers the constructors cannot make),
// and every field takes its extreme values often.
#ifndef FILTERSCOMMON_TESTS_RULES_TEST_SUPPORT_H_
#define FILTERSCOMMON_TESTS_RULES_TEST_SUPPORT_H_

#include <google/protobuf/descriptor.h>
#include <google/protobuf/dynamic_message.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "FiltersCommon/filter_explain.h"
#include "FiltersCommon/filters_common.h"
#include "filter_entries.pb.h"
#include "filter_groups.pb.h"
#include "limid/limid.h"
#include "policer/policer.h"

namespace rules_test {

using FiltersCommon::ActionPB;
using FiltersCommon::FiltersEntry;
using FiltersCommon::FiltersEntryPB;
using FiltersCommon::FiltersGroup;
using FiltersCommon::FiltersGroupPB;
using FiltersCommon::MatchPB;

class RandomModel {
 public:
  explicit RandomModel(uint32_t seed) : rng_(seed) {}

  std::mt19937& rng() { return rng_; }
  uint32_t below(uint32_t n) {
    return std::uniform_int_distribution<uint32_t>(0, n - 1)(rng_);
  }
  bool chance(uint32_t percent) { return below(100) < percent; }

  // A number of `bits` bits: zero, all ones or anything, about equally.
  uint32_t value(unsigned bits) {
    const uint64_t max = (uint64_t{1} << bits) - 1;
    switch (below(4)) {
      case 0:
        return 0;
      case 1:
        return static_cast<uint32_t>(max);
      default:
        return static_cast<uint32_t>(
            std::uniform_int_distribution<uint64_t>(0, max)(rng_));
    }
  }

  // An interface with a name, or a number that has none.
  limid_t interface() {
    switch (below(8)) {
      case 0:
        return limid_make(limid_type_ethernet, value(24));
      case 1:
        return limid_make(limid_type_lag, below(100));
      case 2:
        return limid_make(limid_type_mpls_vpws, value(24));
      case 3:
        return limid_make_bridgedomain(1 + below(2), value(20));
      case 4:
        return limid_make(limid_type_cpu, below(4));
      case 5:
        return limid_make_bridgedomain(3 + below(10), below(1000));
      default:
        return value(32);
    }
  }

  // An address of `size` bytes with a prefix mask or any mask.
  void address(std::size_t size, std::string* addr, std::string* mask) {
    addr->resize(size);
    mask->resize(size);
    for (char& c : *addr) c = static_cast<char>(value(8));
    if (chance(50)) {
      unsigned length = below(static_cast<uint32_t>(size * 8 + 1));
      for (char& c : *mask) {
        const unsigned bits = length >= 8 ? 8 : length;
        c = static_cast<char>(0xFF00u >> bits);
        length -= bits;
      }
    } else {
      for (char& c : *mask) c = static_cast<char>(value(8));
    }
  }

  void list(google::protobuf::RepeatedField<uint32_t>* out, unsigned bits,
            bool interfaces) {
    const uint32_t n = below(5);
    for (uint32_t i = 0; i < n; ++i) {
      // Repeat an earlier element now and then.
      if (i > 0 && chance(20)) {
        out->Add(out->Get(static_cast<int>(below(i))));
      } else {
        out->Add(interfaces ? interface() : value(bits));
      }
    }
  }

  void match(MatchPB* m, uint32_t kind) {
    m->set_type_(kind);
    switch (kind) {
      case 1:
        list(m->mutable_ports_(), 32, true);
        if (chance(50))
          list(m->mutable_excluded_port_types_(), chance(50) ? 2 : 32, false);
        break;
      case 22:
        list(m->mutable_ports_(), 32, true);
        break;
      case 2:
      case 11:
        list(m->mutable_vlan_id_(), 16, false);
        break;
      case 12:
      case 13:
        list(m->mutable_pcp_(), chance(50) ? 3 : 8, false);
        break;
      case 3:
        m->set_tpid_(value(16));
        break;
      case 4:
      case 7:
        address(6, m->mutable_mac_(), m->mutable_mac_mask_());
        break;
      case 9:
      case 10:
        address(4, m->mutable_ipv4_(), m->mutable_ipv4_mask_());
        break;
      case 14:
      case 15:
        address(16, m->mutable_ipv6_(), m->mutable_ipv6_mask_());
        break;
      case 5:
      case 6:
      case 34:
        m->set_l4port_param1_(value(16));
        m->set_l4port_param2_(chance(40) ? 0xFFFF : value(16));
        break;
      case 8:
        m->set_l2_src_(enumValue());
        break;
      case 16:
        m->set_vlan_tagging_(enumValue());
        break;
      case 17:
        m->set_ipprotocol_(chance(30) ? 6 : value(8));
        break;
      case 18:
        m->set_packet_resolution_(enumValue());
        break;
      case 19:
        m->set_mpls_terminated_(chance(50));
        break;
      case 20:
        m->set_tos_(value(8));
        break;
      case 21:
      case 25:
        m->set_limid_(interface());
        break;
      case 23:
        m->set_ingress_stp_state_(enumValue());
        break;
      case 24:
        m->set_vlan_info_svc_vlan_type_(value(32));
        m->set_vlan_info_proto_cpu_vlan_type_(value(32));
        break;
      case 26:
        m->set_ttl_(value(8));
        break;
      case 27:
        m->set_vrf_id_(value(16));
        break;
      case 28:
        m->set_drop_flag_(chance(50));
        break;
      case 29:
      case 35:
      case 36:
        m->set_hit_flag_(chance(50));
        break;
      case 31:
        m->set_fwd_type_(enumValue());
        break;
      case 33:
        m->set_injected_flag_(chance(50));
        break;
      case 37:
        m->set_class_id_(value(32));
        break;
      default:  // 0, 30, 32, 38: no value
        break;
    }
  }

  void action(ActionPB* a, uint32_t kind) {
    a->set_type_(kind);
    switch (kind) {
      case 3:
      case 11:
        list(a->mutable_ports_(), 32, true);
        break;
      case 4:
        a->set_cp2cpu_cancel_type_(chance(50) ? below(2) : value(32));
        break;
      case 5:
      case 7:
        a->set_pcp_(value(8));
        break;
      case 6:
        a->set_pcp_and_queue_(value(8));
        break;
      case 8:
        a->set_dscp_(value(8));
        break;
      case 9:
      case 10:
        a->set_cosq_(value(8));
        break;
      case 12:
      case 14: {
        std::string mask;
        address(6, a->mutable_mac_(), &mask);
        break;
      }
      case 15:
        a->set_l3_dest_id_(value(32));
        break;
      case 18: {
        // The action refuses other interface types by throwing.
        const limid_t vpn = chance(50)
                                ? limid_make(limid_type_mpls_vpws, value(24))
                                : limid_make_bridgedomain(2, value(20));
        const limid_t port = chance(50)
                                 ? limid_make(limid_type_lag, value(24))
                                 : limid_make(limid_type_ethernet, value(24));
        uint32_t index = 0;
        limid_to_ifindex(vpn, &index);
        a->set_vpn_id(index);
        limid_to_ifindex(port, &index);
        a->set_mpls_access_port(index);
        break;
      }
      default:
        break;
    }
  }

  // A 32-bit enumeration value: a named one, or one outside every table.
  uint32_t enumValue() { return chance(60) ? below(4) : value(32); }

  // A policer: the default, one the constructors make, or one only bytes
  // make (a mode or colour action outside the factories).
  policer::Policer policer(int32_t stage) {
    using policer::Mode;
    const uint32_t kind = below(4);
    if (kind == 0) return policer::Policer();
    const Mode modes[] = {
        Mode(), Mode::SrTcm(value(32), value(32), value(32)),
        Mode::TrTcm(value(32), value(32), value(32), value(32)),
        Mode::TrTcmDs(value(32), value(32), value(32), value(32)),
        Mode::Flow(value(32), value(32))};
    std::set<policer::Action> actions;
    for (uint32_t n = below(4); n > 0; --n) {
      const auto color =
          static_cast<policer::Color>(chance(80) ? below(3) : value(32));
      switch (below(3)) {
        case 0:
          actions.insert(policer::Action::Drop(color));
          break;
        case 1:
          actions.insert(
              policer::Action::SetPcp(color, static_cast<uint8_t>(value(8))));
          break;
        default:
          actions.insert(
              policer::Action::SetDscp(color, static_cast<uint8_t>(value(8))));
          break;
      }
    }
    policer::Policer made(chance(20) ? policer::Policer::kInvalidId : value(32),
                          static_cast<policer::Stage>(stage), modes[below(5)],
                          actions);
    if (kind == 3) {
      if (auto odd = oddPolicer(made)) return *odd;
    }
    return made;
  }

  // `base` with a mode parameter its mode does not use, an unknown mode or
  // an unknown colour action type, written through the policer's own
  // message (looked up by reflection in the descriptors the policer library
  // registers); nothing when the policer library registers none.
  std::optional<policer::Policer> oddPolicer(const policer::Policer& base) {
    const auto* type = google::protobuf::DescriptorPool::generated_pool()
                           ->FindMessageTypeByName("policer.PolicerPB");
    if (type == nullptr) return std::nullopt;
    std::unique_ptr<google::protobuf::Message> message(
        factory_.GetPrototype(type)->New());
    if (!message->ParseFromString(base.Serialize())) return std::nullopt;
    const auto* reflection = message->GetReflection();
    const auto* modeField = type->FindFieldByName("mode");
    const auto* actionsField = type->FindFieldByName("actions");
    if (modeField == nullptr || actionsField == nullptr) return std::nullopt;
    auto* mode =
        reflection->MutableMessage(message.get(), modeField, &factory_);
    const auto* modeType = mode->GetDescriptor();
    switch (below(3)) {
      case 0: {
        const char* params[] = {"cir", "cbs", "ebs", "pir", "pbs", "eir"};
        const auto* field = modeType->FindFieldByName(params[below(6)]);
        if (field != nullptr)
          mode->GetReflection()->SetUInt32(mode, field, 1 + below(1000));
        break;
      }
      case 1: {
        const auto* field = modeType->FindFieldByName("type");
        if (field != nullptr)
          mode->GetReflection()->SetInt32(mode, field,
                                          static_cast<int32_t>(value(32)));
        break;
      }
      default: {
        auto* action =
            reflection->AddMessage(message.get(), actionsField, &factory_);
        const auto* actionType = action->GetDescriptor();
        const auto set = [&](const char* name, int32_t v) {
          const auto* field = actionType->FindFieldByName(name);
          if (field == nullptr) return;
          if (field->cpp_type() ==
              google::protobuf::FieldDescriptor::CPPTYPE_INT32) {
            action->GetReflection()->SetInt32(action, field, v);
          } else {
            action->GetReflection()->SetUInt32(action, field,
                                               static_cast<uint32_t>(v));
          }
        };
        set("color", static_cast<int32_t>(below(3)));
        set("type", chance(50) ? 7 : 0);
        set("pcp", static_cast<int32_t>(below(8)));
        set("dscp", static_cast<int32_t>(below(64)));
        break;
      }
    }
    return policer::Policer(message->SerializeAsString());
  }

  // The message of an entry with the given match and action kinds, counters
  // and policers.
  FiltersEntryPB entryMessage(uint32_t id,
                              const std::vector<uint32_t>& matchKinds,
                              const std::vector<uint32_t>& actionKinds,
                              int32_t policerStage) {
    FiltersEntryPB pb;
    pb.set_id_(id);
    pb.set_priority_(value(32));
    pb.set_policer_(policer(policerStage).Serialize());
    if (chance(30))
      pb.set_policer_parent_(
          policer(static_cast<int32_t>(below(3))).Serialize());
    for (uint32_t kind : matchKinds) match(pb.add_matches_(), kind);
    for (uint32_t kind : actionKinds) action(pb.add_actions_(), kind);
    for (uint32_t n = below(4); n > 0; --n) {
      auto* counter = pb.add_counters_();
      counter->set_id(static_cast<int32_t>(value(16)));
      counter->set_type(chance(70) ? static_cast<int32_t>(below(9))
                                   : static_cast<int32_t>(value(32)));
    }
    return pb;
  }

  // Some of `kinds`, each with the given chance.
  std::vector<uint32_t> someOf(const std::vector<uint32_t>& kinds,
                               uint32_t percent) {
    std::vector<uint32_t> chosen;
    for (uint32_t kind : kinds) {
      if (chance(percent)) chosen.push_back(kind);
    }
    return chosen;
  }

  static std::vector<uint32_t> range(uint32_t n) {
    std::vector<uint32_t> all(n);
    for (uint32_t i = 0; i < n; ++i) all[i] = i;
    return all;
  }

  // A lone entry of any kinds (its matches pass the entry's own rules as the
  // loader applies them), and now and then a DSCP match of its own class.
  std::unique_ptr<FiltersEntry> entry() {
    const FiltersEntryPB pb =
        entryMessage(value(32), someOf(range(39), 25), someOf(range(21), 25),
                     static_cast<int32_t>(below(3)));
    auto entry = std::make_unique<FiltersEntry>();
    entry->convertFromFiltersEntryPB(&pb);
    policers(entry.get(), oddStage());
    if (chance(20)) {
      FiltersCommon::MatchDSCP dscp(static_cast<uint8_t>(below(64)));
      if (chance(30)) {
        MatchPB tos;
        tos.set_type_(20);
        tos.set_tos_(value(8));
        dscp.convertFromMatchPB(&tos);
      }
      entry->setMatch(dscp);
    }
    return entry;
  }

  // A policer stage: one of the three, or one no wire message carries.
  int32_t oddStage() {
    return chance(80) ? static_cast<int32_t>(below(3))
                      : static_cast<int32_t>(value(32));
  }

  // Policers set through the constructors, which can hold a stage or a
  // colour that the policer's bytes cannot carry.
  void policers(FiltersEntry* entry, int32_t stage) {
    if (chance(50)) entry->setPolicer(policer(stage));
    if (chance(20)) entry->setPolicerParent(policer(oddStage()));
  }

  // A group with a stage and type that fit (now and then ones that do not,
  // as a peer may send) and entries that its tables accept.
  std::unique_ptr<FiltersGroup> group(uint32_t entries) {
    FiltersGroupPB pb;
    pb.set_id_(value(16));
    pb.set_priority_(value(16));
    using Stage = FiltersCommon::filtersGroupStage_t;
    using Type = FiltersCommon::filtersGroupType_t;
    auto stage = static_cast<Stage>(below(4));
    auto types = FiltersCommon::allowedGroupTypes(stage).value();
    auto type = types[below(static_cast<uint32_t>(types.size()))];
    if (chance(10)) {
      stage =
          static_cast<Stage>(chance(50) ? -1 : static_cast<int32_t>(value(32)));
      type =
          static_cast<Type>(chance(50) ? static_cast<int32_t>(below(15)) : 99);
    }
    pb.set_stage_(static_cast<uint32_t>(stage));
    pb.set_type_(static_cast<uint32_t>(type));
    const auto matchKinds = FiltersCommon::allowedMatchKinds(type).value_or(
        std::vector<FiltersCommon::filtersMatch_t>{});
    const auto actionKinds = FiltersCommon::allowedActionKinds(stage).value_or(
        std::vector<FiltersCommon::filtersAction_t>{});
    std::vector<uint32_t> matches(matchKinds.begin(), matchKinds.end());
    std::vector<uint32_t> actions(actionKinds.begin(), actionKinds.end());
    const auto policerStage = FiltersCommon::requiredPolicerStage(stage);
    for (uint32_t i = 0; i < entries; ++i) {
      const int32_t ps =
          policerStage && chance(60) ? *policerStage : policer::STAGE_NONE;
      *pb.add_entries_() =
          entryMessage(chance(10) ? value(32) : below(1000),
                       someOf(matches, 40), someOf(actions, 40), ps);
    }
    std::string bytes;
    pb.SerializeToString(&bytes);
    return std::make_unique<FiltersGroup>(bytes);
  }

 private:
  std::mt19937 rng_;
  google::protobuf::DynamicMessageFactory factory_;
};

}  // namespace rules_test

#endif  // FILTERSCOMMON_TESTS_RULES_TEST_SUPPORT_H_
