// The kinds that hold one scalar value, plus the DSCP view of MatchToS and
// the two-field VLAN info.
#include "FiltersCommon/filter_matches.h"
#include "filter_matches.pb.h"
#include "matches/match_internal.h"

using FiltersCommon::match_internal::endLine;
using FiltersCommon::match_internal::kAllBare;
using FiltersCommon::match_internal::kBareParams;
using FiltersCommon::match_internal::kBareTypeAndParams;
using FiltersCommon::match_internal::kFlushed;
using FiltersCommon::match_internal::printFlag;
using FiltersCommon::match_internal::printHead;
using FiltersCommon::match_internal::printHex;
using FiltersCommon::match_internal::printSigned;
using FiltersCommon::match_internal::printTagging;
using FiltersCommon::match_internal::printUnsigned;

// One row per scalar kind: the class, its stored member and accessor, the
// MatchPB field that carries it, how its value prints, the label of its
// parameter line and which lines of its block end bare. The kind writes
// `type_` and the field, reads the field back cut to the member's width (an
// absent field reads as 0), and compares the member.
// clang-format off
#define FILTERS_SCALAR_MATCH_KINDS(X)                                          \
  X(MatchTPID,               tpid_,       getTPID,                  tpid_,              printHex,      "TPID: 0x",                        kFlushed)           \
  X(MatchL2SrcEntryType,     entryType_,  getL2SrcEntryType,        l2_src_,            printSigned,   "L2 Src Entry Type: ",             kFlushed)           \
  X(MatchVlanTagging,        tagging_,    getTagging,               vlan_tagging_,      printTagging,  "Tagging: ",                       kFlushed)           \
  X(MatchIpProtocol,         protocol_,   getIpProtocol,            ipprotocol_,        printUnsigned, "Ip Protocol: ",                   kFlushed)           \
  X(MatchPacketRes,          resolution_, getPktRes,                packet_resolution_, printSigned,   "Pkt Resolution: ",                kFlushed)           \
  X(MatchMplsTerm,           terminated_, getMplsTerm,              mpls_terminated_,   printFlag,     "Mpls Terminated status: ",        kFlushed)           \
  X(MatchToS,                tos_,        getToS,                   tos_,               printUnsigned, "ToS: ",                           kFlushed)           \
  X(MatchIngressStpState,    state_,      getIngressStpState,       ingress_stp_state_, printUnsigned, "IngressStpState: ",               kFlushed)           \
  X(MatchTTL,                ttl_,        getTTL,                   ttl_,               printUnsigned, "TTL: ",                           kFlushed)           \
  X(MatchVrfId,              vrfId_,      getVrfId,                 vrf_id_,            printUnsigned, "Match VRF ID: ",                  kAllBare)           \
  X(MatchDrop,               dropFlag_,   getDropFlag,              drop_flag_,         printFlag,     "Match Drop: ",                    kBareTypeAndParams) \
  X(MatchMyStationHit,       hitFlag_,    getHitFlag,               hit_flag_,          printFlag,     "Match MyStationHit: ",            kBareTypeAndParams) \
  X(MatchForwardingType,     fwdType_,    getForwardingType,        fwd_type_,          printSigned,   "Forwarding Type: ",               kFlushed)           \
  X(MatchCPUInjectedPackets, injected_,   getInjected,              injected_flag_,     printFlag,     "Match Injected?: ",               kFlushed)           \
  X(MatchL2DestHit,          hitFlag_,    getMatchL2DestHit,        hit_flag_,          printFlag,     "Match MatchL2DestHit: ",          kBareParams)        \
  X(MatchL3SrcRouteHit,      hitFlag_,    getMatchL3SrcRouteHit,    hit_flag_,          printFlag,     "Match MatchL3SrcRouteHit: ",      kBareParams)        \
  X(MatchVirtualPortClass,   classId_,    getMatchVirtualPortClass, class_id_,          printUnsigned, "Match  MatchVirtualPortClass: ", kBareParams)
// clang-format on

#define FILTERS_DEFINE_SCALAR_MATCH(Class, member, getter, field, print,      \
                                    label, ends)                              \
  void FiltersCommon::Class::convertToMatchPB(MatchPB* pb) const {            \
    Match::convertToMatchPB(pb);                                              \
    pb->set_##field(member);                                                  \
  }                                                                           \
  void FiltersCommon::Class::convertFromMatchPB(MatchPB const* pb) {          \
    member = static_cast<decltype(member)>(pb->field());                      \
  }                                                                           \
  bool FiltersCommon::Class::operator==(Class const& other) const {           \
    return member == other.member;                                            \
  }                                                                           \
  std::ostream& operator<<(std::ostream& os, FiltersCommon::Class const& m) { \
    printHead(os, FILTERS_MATCH_HEADER(Class), m, ends) << "      " label;    \
    print(os, m.getter());                                                    \
    return endLine(os, ends.bareParams);                                      \
  }

FILTERS_SCALAR_MATCH_KINDS(FILTERS_DEFINE_SCALAR_MATCH)

#undef FILTERS_DEFINE_SCALAR_MATCH
#undef FILTERS_SCALAR_MATCH_KINDS

namespace FiltersCommon {

// Through its own comparison a DSCP match ignores the two low ToS bits; the
// base comparison sees all eight.
bool MatchDSCP::operator==(MatchDSCP const& other) const {
  return getDSCP() == other.getDSCP();
}

void MatchVlanInfo::convertToMatchPB(MatchPB* pb) const {
  Match::convertToMatchPB(pb);
  pb->set_vlan_info_svc_vlan_type_(vlanInfo_.svcVlanType);
  pb->set_vlan_info_proto_cpu_vlan_type_(vlanInfo_.protoCpuVlanType);
}

void MatchVlanInfo::convertFromMatchPB(MatchPB const* pb) {
  vlanInfo_.svcVlanType = pb->vlan_info_svc_vlan_type_();
  vlanInfo_.protoCpuVlanType = pb->vlan_info_proto_cpu_vlan_type_();
}

bool MatchVlanInfo::operator==(MatchVlanInfo const& other) const {
  return match_internal::sameBytes(vlanInfo_, other.vlanInfo_);
}

}  // namespace FiltersCommon

std::ostream& operator<<(std::ostream& os, FiltersCommon::MatchDSCP const& m) {
  printHead(os, FILTERS_MATCH_HEADER(MatchDSCP), m) << "      DSCP: ";
  printUnsigned(os, m.getDSCP());
  return os << std::endl;
}

std::ostream& operator<<(std::ostream& os,
                         FiltersCommon::MatchVlanInfo const& m) {
  FiltersCommon::vlan_info_t const info = m.getVlanInfo();
  printHead(os, FILTERS_MATCH_HEADER(MatchVlanInfo), m)
      << "      SVC VLAN Type: " << info.svcVlanType << std::endl;
  return os << "      Protocol2CPU VLAN Type: " << info.protoCpuVlanType
            << std::endl;
}
