// Builders shared by the tests of the diagnostics API and of filters-tool:
// entries holding any chosen match and action kinds, with realistic values,
// and groups in any stage and type, including ones no setter accepts.
//
// Entries are built through the wire form, so that every kind is made by the
// library's own factory from a message whose every field carries a value;
// each kind keeps the fields it uses.
#ifndef FILTERSCOMMON_TESTS_TOOL_TEST_SUPPORT_H_
#define FILTERSCOMMON_TESTS_TOOL_TEST_SUPPORT_H_

#include <cstdint>
#include <string>
#include <vector>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "filter_entries.pb.h"
#include "filter_groups.pb.h"
#include "limid/limid.h"
#include "policer/policer.h"

namespace filters_test {

inline uint32_t eth(uint32_t index) {
  return limid_make(limid_type_ethernet, index);
}

// A match message of `kind` with every field set.
inline FiltersCommon::MatchPB fullMatchPB(uint32_t kind) {
  FiltersCommon::MatchPB pb;
  pb.set_type_(kind);
  pb.add_ports_(eth(1));
  pb.add_ports_(eth(2));
  pb.add_vlan_id_(10);
  pb.add_vlan_id_(20);
  pb.set_tpid_(0x8100);
  pb.set_mac_(std::string("\x00\x11\x22\x33\x44\x55", 6));
  pb.set_l4port_param1_(443);
  pb.set_mac_mask_(std::string(6, '\xff'));
  pb.set_ipv4_(std::string("\xc0\x00\x02\x01", 4));
  pb.add_pcp_(3);
  pb.add_pcp_(5);
  pb.set_ipv4_mask_(std::string("\xff\xff\xff\x00", 4));
  pb.set_ipv6_(std::string("\x20\x01\x0d\xb8", 4) + std::string(11, '\0') +
               "\x01");
  pb.set_ipv6_mask_(std::string(16, '\xff'));
  pb.set_l2_src_(1);
  pb.set_ipprotocol_(6);
  pb.set_packet_resolution_(2);
  pb.set_tos_(0xb8);
  pb.set_limid_(eth(3));
  pb.set_l4port_param2_(0xff00);
  pb.set_ingress_stp_state_(3);
  pb.set_vlan_info_svc_vlan_type_(1);
  pb.set_ttl_(64);
  pb.set_vrf_id_(7);
  pb.set_drop_flag_(true);
  pb.set_fwd_type_(1);
  pb.set_mpls_terminated_(true);
  pb.set_vlan_tagging_(1);
  pb.set_hit_flag_(true);
  pb.set_injected_flag_(true);
  pb.set_vlan_info_proto_cpu_vlan_type_(2);
  pb.set_class_id_(9);
  return pb;
}

// An action message of `kind` with every field set; the MPLS identifiers
// are valid interface indexes (a VPWS interface and an Ethernet port).
inline FiltersCommon::ActionPB fullActionPB(uint32_t kind) {
  FiltersCommon::ActionPB pb;
  pb.set_type_(kind);
  pb.add_ports_(eth(4));
  pb.add_ports_(eth(5));
  pb.set_pcp_(5);
  pb.set_pcp_and_queue_(0x35);
  pb.set_dscp_(46);
  pb.set_cosq_(4);
  pb.set_cp2cpu_cancel_type_(1);
  pb.set_mac_(std::string("\x02\x00\x00\x00\x00\x01", 6));
  pb.set_l3_dest_id_(1000);
  pb.set_vpn_id(1 << 4 | limid_type_mpls_vpws);
  pb.set_mpls_access_port(1 << 4 | limid_type_ethernet);
  return pb;
}

// A metering policer of `stage`, with a colour action of every type.
inline policer::Policer stagedPolicer(policer::Stage stage) {
  return policer::Policer(5, stage,
                          policer::Mode::TrTcm(1000, 2000, 3000, 4000),
                          {policer::Action::Drop(policer::COLOR_RED),
                           policer::Action::SetPcp(policer::COLOR_YELLOW, 2),
                           policer::Action::SetDscp(policer::COLOR_GREEN, 10)});
}

// The message of entry `id` holding one match of each of `matchKinds` and
// one action of each of `actionKinds`, with `policer` as its own policer.
inline FiltersCommon::FiltersEntryPB entryMessage(
    uint32_t id, const std::vector<uint32_t>& matchKinds,
    const std::vector<uint32_t>& actionKinds,
    const policer::Policer& policer = policer::Policer()) {
  FiltersCommon::FiltersEntryPB pb;
  pb.set_id_(id);
  pb.set_priority_(100 + id);
  pb.set_policer_(policer.Serialize());
  for (uint32_t kind : matchKinds) *pb.add_matches_() = fullMatchPB(kind);
  for (uint32_t kind : actionKinds) *pb.add_actions_() = fullActionPB(kind);
  return pb;
}

// The entry the library builds from entryMessage(...).
inline FiltersCommon::FiltersEntry entryWith(
    const std::vector<uint32_t>& matchKinds,
    const std::vector<uint32_t>& actionKinds,
    const policer::Policer& policer = policer::Policer()) {
  const FiltersCommon::FiltersEntryPB pb =
      entryMessage(1, matchKinds, actionKinds, policer);
  FiltersCommon::FiltersEntry entry(0);
  entry.convertFromFiltersEntryPB(&pb);
  return entry;
}

// An empty group of any `stage` and `type`, made as a receiver makes it:
// from a message, whose stage and type are taken without checks.
inline FiltersCommon::FiltersGroup groupIn(int32_t stage, int32_t type) {
  FiltersCommon::FiltersGroupPB pb;
  pb.set_id_(1);
  pb.set_priority_(0);
  pb.set_stage_(static_cast<uint32_t>(stage));
  pb.set_type_(static_cast<uint32_t>(type));
  FiltersCommon::FiltersGroup group(1);
  group.convertFromFiltersGroupPB(&pb);
  return group;
}

}  // namespace filters_test

#endif  // FILTERSCOMMON_TESTS_TOOL_TEST_SUPPORT_H_
