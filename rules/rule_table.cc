#include "rule_table.h"

#include <cctype>

#include "FiltersCommon/filter_explain.h"
#include "FiltersCommon/filter_names.h"

namespace FiltersCommon {
namespace rules {

const char* Names::find(int64_t value) const {
  for (std::size_t i = 0; i < count; ++i) {
    if (names[i].value == value) return names[i].name;
  }
  return nullptr;
}

std::optional<int64_t> Names::find(std::string_view name) const {
  for (std::size_t i = 0; i < count; ++i) {
    if (name == names[i].name) return names[i].value;
  }
  return std::nullopt;
}

std::string Names::list() const {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) text += i + 1 == count ? " or " : ", ";
    text += names[i].name;
  }
  return text;
}

namespace {

#define FILTERS_NAMES(name, ...)            \
  const Name name##Array[] = {__VA_ARGS__}; \
  const Names name = {name##Array, sizeof name##Array / sizeof(Name)};

// The enumerators of filter_match_types.h and filter_action_types.h.
FILTERS_NAMES(kTaggingNames, {0, "untagged"}, {1, "single-tagged"},
              {2, "double-tagged"})
FILTERS_NAMES(kL2SrcNames, {0, "not-found"}, {1, "dynamic"}, {2, "static"})
FILTERS_NAMES(kResolutionNames, {0, "unknown"}, {1, "control"},
              {2, "l2-unicast"}, {3, "l2-unknown-unicast"}, {4, "l2-multicast"},
              {5, "l2-broadcast"}, {6, "l3-unicast"}, {7, "l3-multicast"},
              {8, "mpls"})
FILTERS_NAMES(kStpNames, {0, "disabled"}, {1, "blocking"}, {2, "learning"},
              {3, "forwarding"})
FILTERS_NAMES(kForwardingNames, {0, "l2-bridged"}, {1, "l3-routed"},
              {2, "mpls"})
FILTERS_NAMES(kCancelNames, {0, "copy-to-cpu"}, {1, "switch-to-cpu"})
// The IANA protocol numbers people write by name.
FILTERS_NAMES(kProtocolNames, {1, "icmp"}, {2, "igmp"}, {6, "tcp"}, {17, "udp"},
              {47, "gre"}, {50, "esp"}, {51, "ah"}, {58, "icmpv6"},
              {132, "sctp"})

using MF = Fields<MatchPB>;
using AF = Fields<ActionPB>;

MF matchNumber(uint32_t (MatchPB::*get)() const,
               void (MatchPB::*set)(uint32_t)) {
  MF f;
  f.get = get;
  f.set = set;
  return f;
}

MF matchFlag(bool (MatchPB::*flag)() const, void (MatchPB::*setFlag)(bool)) {
  MF f;
  f.flag = flag;
  f.setFlag = setFlag;
  return f;
}

MF matchList(const MF::Repeated& (MatchPB::*list)() const,
             MF::Repeated* (MatchPB::*mutableList)()) {
  MF f;
  f.list = list;
  f.mutableList = mutableList;
  return f;
}

MF matchAddress(const std::string& (MatchPB::*bytes)() const,
                std::string* (MatchPB::*mutableBytes)(),
                const std::string& (MatchPB::*bytes2)() const,
                std::string* (MatchPB::*mutableBytes2)()) {
  MF f;
  f.bytes = bytes;
  f.mutableBytes = mutableBytes;
  f.bytes2 = bytes2;
  f.mutableBytes2 = mutableBytes2;
  return f;
}

MF l4Params() {
  MF f = matchNumber(&MatchPB::l4port_param1_, &MatchPB::set_l4port_param1_);
  f.get2 = &MatchPB::l4port_param2_;
  f.set2 = &MatchPB::set_l4port_param2_;
  return f;
}

MF ports(bool withExcluded) {
  MF f = matchList(&MatchPB::ports_, &MatchPB::mutable_ports_);
  if (withExcluded) {
    f.list2 = &MatchPB::excluded_port_types_;
    f.mutableList2 = &MatchPB::mutable_excluded_port_types_;
  }
  return f;
}

MF mac() {
  return matchAddress(&MatchPB::mac_, &MatchPB::mutable_mac_,
                      &MatchPB::mac_mask_, &MatchPB::mutable_mac_mask_);
}
MF ipv4() {
  return matchAddress(&MatchPB::ipv4_, &MatchPB::mutable_ipv4_,
                      &MatchPB::ipv4_mask_, &MatchPB::mutable_ipv4_mask_);
}
MF ipv6() {
  return matchAddress(&MatchPB::ipv6_, &MatchPB::mutable_ipv6_,
                      &MatchPB::ipv6_mask_, &MatchPB::mutable_ipv6_mask_);
}

MF hitFlag() { return matchFlag(&MatchPB::hit_flag_, &MatchPB::set_hit_flag_); }

MatchRow number(int kind, const char* keyword, MF fields, unsigned bits,
                const Names* names = nullptr, bool hex = false) {
  MatchRow row{kind, keyword, Value::kNumber, fields};
  row.bits = bits;
  row.names = names;
  row.hex = hex;
  return row;
}

AF actionNumber(uint32_t (ActionPB::*get)() const,
                void (ActionPB::*set)(uint32_t)) {
  AF f;
  f.get = get;
  f.set = set;
  return f;
}

ActionRow actionNumberRow(int kind, const char* keyword, AF fields,
                          unsigned bits, const Names* names = nullptr) {
  ActionRow row{kind, keyword, Value::kNumber, fields};
  row.bits = bits;
  row.names = names;
  return row;
}

AF actionPorts() {
  AF f;
  f.list = &ActionPB::ports_;
  f.mutableList = &ActionPB::mutable_ports_;
  return f;
}

AF actionMac() {
  AF f;
  f.bytes = &ActionPB::mac_;
  f.mutableBytes = &ActionPB::mutable_mac_;
  return f;
}

AF mplsPorts() {
  AF f = actionNumber(&ActionPB::vpn_id, &ActionPB::set_vpn_id);
  f.get2 = &ActionPB::mpls_access_port;
  f.set2 = &ActionPB::set_mpls_access_port;
  return f;
}

std::vector<MatchRow> buildMatchRows() {
  MatchRow ingress{1, "in-ports", Value::kPorts, ports(true)};
  ingress.names = &kPortTypeNames;
  MF vlanInfo = matchNumber(&MatchPB::vlan_info_svc_vlan_type_,
                            &MatchPB::set_vlan_info_svc_vlan_type_);
  vlanInfo.get2 = &MatchPB::vlan_info_proto_cpu_vlan_type_;
  vlanInfo.set2 = &MatchPB::set_vlan_info_proto_cpu_vlan_type_;
  MatchRow tpid =
      number(3, "tpid", matchNumber(&MatchPB::tpid_, &MatchPB::set_tpid_), 16,
             nullptr, true);
  const MF limid = matchNumber(&MatchPB::limid_, &MatchPB::set_limid_);
  const MF vlans = matchList(&MatchPB::vlan_id_, &MatchPB::mutable_vlan_id_);
  const MF pcps = matchList(&MatchPB::pcp_, &MatchPB::mutable_pcp_);
  return {
      {0, "all", Value::kNone, {}},
      ingress,
      {2, "vlan", Value::kU16Set, vlans},
      tpid,
      {4, "dst-mac", Value::kMac, mac()},
      {5, "dst-port", Value::kMaskedPort, l4Params()},
      {6, "src-port", Value::kMaskedPort, l4Params()},
      {7, "src-mac", Value::kMac, mac()},
      number(8, "l2-src-entry",
             matchNumber(&MatchPB::l2_src_, &MatchPB::set_l2_src_), 32,
             &kL2SrcNames),
      {9, "src-ip", Value::kIPv4, ipv4()},
      {10, "dst-ip", Value::kIPv4, ipv4()},
      {11, "internal-vlan", Value::kU16Set, vlans},
      {12, "pcp", Value::kU8Set, pcps},
      {13, "internal-pcp", Value::kU8Set, pcps},
      {14, "src-ip6", Value::kIPv6, ipv6()},
      {15, "dst-ip6", Value::kIPv6, ipv6()},
      number(16, "vlan-tagging",
             matchNumber(&MatchPB::vlan_tagging_, &MatchPB::set_vlan_tagging_),
             32, &kTaggingNames),
      number(17, "proto",
             matchNumber(&MatchPB::ipprotocol_, &MatchPB::set_ipprotocol_), 8,
             &kProtocolNames),
      number(18, "packet-res",
             matchNumber(&MatchPB::packet_resolution_,
                         &MatchPB::set_packet_resolution_),
             32, &kResolutionNames),
      {19, "mpls-terminated", Value::kBool,
       matchFlag(&MatchPB::mpls_terminated_, &MatchPB::set_mpls_terminated_)},
      number(20, "tos", matchNumber(&MatchPB::tos_, &MatchPB::set_tos_), 8),
      {21, "virtual-port", Value::kInterface, limid},
      {22, "out-ports", Value::kPorts, ports(false)},
      number(23, "stp-state",
             matchNumber(&MatchPB::ingress_stp_state_,
                         &MatchPB::set_ingress_stp_state_),
             32, &kStpNames),
      {24, "vlan-info", Value::kPair, vlanInfo},
      {25, "src-intf", Value::kInterface, limid},
      number(26, "ttl", matchNumber(&MatchPB::ttl_, &MatchPB::set_ttl_), 8),
      number(27, "vrf", matchNumber(&MatchPB::vrf_id_, &MatchPB::set_vrf_id_),
             16),
      {28, "drop-flag", Value::kBool,
       matchFlag(&MatchPB::drop_flag_, &MatchPB::set_drop_flag_)},
      {29, "my-station-hit", Value::kBool, hitFlag()},
      {30, "cpu-port", Value::kNone, {}},
      number(31, "fwd-type",
             matchNumber(&MatchPB::fwd_type_, &MatchPB::set_fwd_type_), 32,
             &kForwardingNames),
      {32, "dst-cpu", Value::kNone, {}},
      {33, "cpu-injected", Value::kBool,
       matchFlag(&MatchPB::injected_flag_, &MatchPB::set_injected_flag_)},
      {34, "dst-port-range", Value::kRange, l4Params()},
      {35, "l2-dst-hit", Value::kBool, hitFlag()},
      {36, "l3-src-route-hit", Value::kBool, hitFlag()},
      number(37, "virtual-port-class",
             matchNumber(&MatchPB::class_id_, &MatchPB::set_class_id_), 32),
      {38, "unknown-dst-ip", Value::kNone, {}},
  };
}

std::vector<ActionRow> buildActionRows() {
  const AF pcp = actionNumber(&ActionPB::pcp_, &ActionPB::set_pcp_);
  const AF cosq = actionNumber(&ActionPB::cosq_, &ActionPB::set_cosq_);
  return {
      {0, "permit", Value::kNone, {}},
      {1, "deny", Value::kNone, {}},
      {2, "copy-to-cpu", Value::kNone, {}},
      {3, "block-out-ports", Value::kPorts, actionPorts()},
      actionNumberRow(4, "cancel-cpu",
                      actionNumber(&ActionPB::cp2cpu_cancel_type_,
                                   &ActionPB::set_cp2cpu_cancel_type_),
                      32, &kCancelNames),
      actionNumberRow(5, "set-pcp", pcp, 8),
      actionNumberRow(6, "set-pcp-queue",
                      actionNumber(&ActionPB::pcp_and_queue_,
                                   &ActionPB::set_pcp_and_queue_),
                      8),
      actionNumberRow(7, "set-inner-pcp", pcp, 8),
      actionNumberRow(8, "set-dscp",
                      actionNumber(&ActionPB::dscp_, &ActionPB::set_dscp_), 8),
      actionNumberRow(9, "cos-queue", cosq, 8),
      actionNumberRow(10, "cpu-cos-queue", cosq, 8),
      {11, "redirect", Value::kPorts, actionPorts()},
      {12, "set-dst-mac", Value::kMac, actionMac()},
      {13, "redirect-cancel", Value::kNone, {}},
      {14, "set-src-mac", Value::kMac, actionMac()},
      actionNumberRow(
          15, "l3-switch",
          actionNumber(&ActionPB::l3_dest_id_, &ActionPB::set_l3_dest_id_), 32),
      {16, "black-hole", Value::kNone, {}},
      {17, "copy-inner-pcp", Value::kNone, {}},
      {18, "mpls-port-set", Value::kMplsPorts, mplsPorts()},
      {19, "l2-to-cpu-drop", Value::kNone, {}},
      {20, "no-learn", Value::kNone, {}},
  };
}

// "FILTERS_STAGE_INGRESS" less `prefix`, lower case, '-' for '_'.
std::string ruleName(const char* enumerator, std::string_view prefix) {
  std::string name(enumerator);
  if (name.compare(0, prefix.size(), prefix) == 0) name.erase(0, prefix.size());
  for (char& c : name) {
    c = c == '_'
            ? '-'
            : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return name;
}

// Names built from the library's enumerator names; kept alive for the
// process, since Names points into them.
struct BuiltNames {
  std::vector<std::string> strings;
  std::vector<Name> names;
  Names table{};

  template <class T>
  BuiltNames(const std::vector<T>& values, const char* (*nameOf)(T),
             std::string_view prefix) {
    strings.reserve(values.size());
    for (T value : values) strings.push_back(ruleName(nameOf(value), prefix));
    for (std::size_t i = 0; i < values.size(); ++i) {
      names.push_back({values[i], strings[i].c_str()});
    }
    table = {names.data(), names.size()};
  }
};

}  // namespace

FILTERS_NAMES(kPortTypeNames, {0, "cpu"}, {1, "front-panel"}, {2, "lag"},
              {3, "virtual"})
FILTERS_NAMES(kCounterTypeNames, {0, "invalid"}, {1, "packets"}, {2, "octets"},
              {3, "red-octets"}, {4, "not-red-octets"}, {5, "yellow-octets"},
              {6, "not-yellow-octets"}, {7, "green-octets"},
              {8, "not-green-octets"})
FILTERS_NAMES(kPolicerStageNames, {0, "ingress"}, {1, "egress"}, {2, "none"})
FILTERS_NAMES(kPolicerModeNames, {0, "srtcm"}, {1, "trtcm"}, {2, "trtcm-ds"},
              {3, "flow"}, {4, "none"})
FILTERS_NAMES(kColorNames, {0, "red"}, {1, "yellow"}, {2, "green"})

#undef FILTERS_NAMES

const std::vector<MatchRow>& matchRows() {
  static const std::vector<MatchRow> rows = buildMatchRows();
  return rows;
}

const std::vector<ActionRow>& actionRows() {
  static const std::vector<ActionRow> rows = buildActionRows();
  return rows;
}

const Names& groupStageNames() {
  static const BuiltNames built(knownGroupStages(), &filtersStageName,
                                "FILTERS_STAGE_");
  return built.table;
}

const Names& groupTypeNames() {
  static const BuiltNames built(knownGroupTypes(), &filtersTypeName,
                                "FILTERS_TYPE_");
  return built.table;
}

}  // namespace rules
}  // namespace FiltersCommon
