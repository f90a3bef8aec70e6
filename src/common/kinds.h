// The one table of match and action kinds: the value each kind reports and
// the class that owns it. Everything that turns a kind value back into a class
// (comparison and dump dispatch, the entry's copy and load factories, the C
// interface) expands these lists, so a kind is added in exactly one place.
//
// MatchDSCP has no row: it reports FILTERS_MATCH_TOS and is handled as a
// MatchToS wherever the class is chosen by value.
#ifndef FILTERSCOMMON_SRC_COMMON_KINDS_H_
#define FILTERSCOMMON_SRC_COMMON_KINDS_H_

#define FILTERS_FOR_EACH_MATCH_KIND(X) \
  X(0, MatchAll)                       \
  X(1, MatchIngressPorts)              \
  X(2, MatchExternalVlanId)            \
  X(3, MatchTPID)                      \
  X(4, MatchDstMac)                    \
  X(5, MatchDstL4Port)                 \
  X(6, MatchSrcL4Port)                 \
  X(7, MatchSrcMac)                    \
  X(8, MatchL2SrcEntryType)            \
  X(9, MatchSrcIPv4)                   \
  X(10, MatchDstIPv4)                  \
  X(11, MatchInternalVlanId)           \
  X(12, MatchPcp)                      \
  X(13, MatchInternalPcp)              \
  X(14, MatchSrcIPv6)                  \
  X(15, MatchDstIPv6)                  \
  X(16, MatchVlanTagging)              \
  X(17, MatchIpProtocol)               \
  X(18, MatchPacketRes)                \
  X(19, MatchMplsTerm)                 \
  X(20, MatchToS)                      \
  X(21, MatchVirtualPort)              \
  X(22, MatchEgressPorts)              \
  X(23, MatchIngressStpState)          \
  X(24, MatchVlanInfo)                 \
  X(25, MatchSrcPort)                  \
  X(26, MatchTTL)                      \
  X(27, MatchVrfId)                    \
  X(28, MatchDrop)                     \
  X(29, MatchMyStationHit)             \
  X(30, MatchCpuPort)                  \
  X(31, MatchForwardingType)           \
  X(32, MatchDestinationCpu)           \
  X(33, MatchCPUInjectedPackets)       \
  X(34, MatchDstL4PortRange)           \
  X(35, MatchL2DestHit)                \
  X(36, MatchL3SrcRouteHit)            \
  X(37, MatchVirtualPortClass)         \
  X(38, MatchUnknownDestIp)

#define FILTERS_FOR_EACH_ACTION_KIND(X) \
  X(0, ActionPermit)                    \
  X(1, ActionDeny)                      \
  X(2, ActionCopyToCpu)                 \
  X(3, ActionBlockEgressPorts)          \
  X(4, ActionCopyToCpuCancel)           \
  X(5, ActionSetPcp)                    \
  X(6, ActionSetPcpAndQueue)            \
  X(7, ActionSetInnerPcp)               \
  X(8, ActionSetDSCP)                   \
  X(9, ActionMapToCosQueue)             \
  X(10, ActionMapToCpuCosQueue)         \
  X(11, ActionRedirect)                 \
  X(12, ActionReplaceDstMac)            \
  X(13, ActionRedirectCancel)           \
  X(14, ActionReplaceSrcMac)            \
  X(15, ActionL3Switch)                 \
  X(16, ActionBlackHole)                \
  X(17, ActionCopyInnerPcp)             \
  X(18, ActionMplsPortSet)              \
  X(19, ActionL2ToCpuDrop)              \
  X(20, ActionDoNotLearnMac)

#endif  // FILTERSCOMMON_SRC_COMMON_KINDS_H_
