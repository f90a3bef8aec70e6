"""One Python-built object of every match and action class, with the same
values as the C++ samples of tests/groups_samples.cc, written here with
Python values (names, address strings, sets)."""

import ipaddress

import filters_common as fc

MATCHES = {
    "MatchAll": lambda: fc.MatchAll(),
    "MatchIngressPorts": lambda: fc.MatchIngressPorts(["eth1", "eth2"]),
    "MatchExternalVlanId": lambda: fc.MatchExternalVlanId(10),
    "MatchTPID": lambda: fc.MatchTPID(0x8100),
    "MatchDstMac": lambda: fc.MatchDstMac("00:11:22:33:44:01"),
    "MatchDstL4Port": lambda: fc.MatchDstL4Port(80),
    "MatchSrcL4Port": lambda: fc.MatchSrcL4Port(1024, 0xFF00),
    "MatchSrcMac": lambda: fc.MatchSrcMac("00:11:22:33:44:02", "00:11:22:33:44:f0"),
    "MatchL2SrcEntryType": lambda: fc.MatchL2SrcEntryType(fc.L2SrcEntryType.STATIC),
    "MatchSrcIPv4": lambda: fc.MatchSrcIPv4(ipaddress.IPv4Address("10.0.0.1")),
    "MatchDstIPv4": lambda: fc.MatchDstIPv4("10.1.0.0", "255.255.0.0"),
    "MatchInternalVlanId": lambda: fc.MatchInternalVlanId({20, 30}),
    "MatchPcp": lambda: fc.MatchPcp(3),
    "MatchInternalPcp": lambda: fc.MatchInternalPcp([1, 5]),
    "MatchSrcIPv6": lambda: fc.MatchSrcIPv6("2001:db8::1"),
    "MatchDstIPv6": lambda: fc.MatchDstIPv6(ipaddress.IPv6Address("2001:db8::2")),
    "MatchVlanTagging": lambda: fc.MatchVlanTagging(fc.VlanTagging.SINGLE_TAGGED),
    "MatchIpProtocol": lambda: fc.MatchIpProtocol(6),
    "MatchPacketRes": lambda: fc.MatchPacketRes(fc.PacketResolution.L3_UNICAST),
    "MatchMplsTerm": lambda: fc.MatchMplsTerm(True),
    "MatchToS": lambda: fc.MatchToS(0xB8),
    "MatchDSCP": lambda: fc.MatchDSCP(46),
    "MatchVirtualPort": lambda: fc.MatchVirtualPort("lag3"),
    "MatchEgressPorts": lambda: fc.MatchEgressPorts(["eth4"]),
    "MatchIngressStpState": lambda: fc.MatchIngressStpState(fc.StpState.FORWARDING),
    "MatchVlanInfo": lambda: fc.MatchVlanInfo(1, 2),
    "MatchSrcPort": lambda: fc.MatchSrcPort("eth5"),
    "MatchTTL": lambda: fc.MatchTTL(64),
    "MatchVrfId": lambda: fc.MatchVrfId(7),
    "MatchDrop": lambda: fc.MatchDrop(True),
    "MatchMyStationHit": lambda: fc.MatchMyStationHit(True),
    "MatchCpuPort": lambda: fc.MatchCpuPort(),
    "MatchForwardingType": lambda: fc.MatchForwardingType(fc.ForwardingType.L3_ROUTED),
    "MatchDestinationCpu": lambda: fc.MatchDestinationCpu(),
    "MatchCPUInjectedPackets": lambda: fc.MatchCPUInjectedPackets(True),
    "MatchDstL4PortRange": lambda: fc.MatchDstL4PortRange(1000, 2000),
    "MatchL2DestHit": lambda: fc.MatchL2DestHit(True),
    "MatchL3SrcRouteHit": lambda: fc.MatchL3SrcRouteHit(False),
    "MatchVirtualPortClass": lambda: fc.MatchVirtualPortClass(9),
    "MatchUnknownDestIp": lambda: fc.MatchUnknownDestIp(),
}

ACTIONS = {
    "ActionPermit": lambda: fc.ActionPermit(),
    "ActionDeny": lambda: fc.ActionDeny(),
    "ActionCopyToCpu": lambda: fc.ActionCopyToCpu(),
    "ActionBlockEgressPorts": lambda: fc.ActionBlockEgressPorts(["eth6", "eth7"]),
    "ActionCopyToCpuCancel": lambda: fc.ActionCopyToCpuCancel(
        fc.CopyToCpuCancel.SWITCH_TO_CPU_CANCEL
    ),
    "ActionSetPcp": lambda: fc.ActionSetPcp(3),
    "ActionSetPcpAndQueue": lambda: fc.ActionSetPcpAndQueue(0x35),
    "ActionSetInnerPcp": lambda: fc.ActionSetInnerPcp(2),
    "ActionSetDSCP": lambda: fc.ActionSetDSCP(46),
    "ActionMapToCosQueue": lambda: fc.ActionMapToCosQueue(4),
    "ActionMapToCpuCosQueue": lambda: fc.ActionMapToCpuCosQueue(7),
    "ActionRedirect": lambda: fc.ActionRedirect("eth8"),
    "ActionReplaceDstMac": lambda: fc.ActionReplaceDstMac("00:11:22:33:44:03"),
    "ActionRedirectCancel": lambda: fc.ActionRedirectCancel(),
    "ActionReplaceSrcMac": lambda: fc.ActionReplaceSrcMac("00:11:22:33:44:04"),
    "ActionL3Switch": lambda: fc.ActionL3Switch(100),
    "ActionBlackHole": lambda: fc.ActionBlackHole(),
    "ActionCopyInnerPcp": lambda: fc.ActionCopyInnerPcp(),
    "ActionMplsPortSet": lambda: fc.ActionMplsPortSet("vpws1", "eth9"),
    "ActionL2ToCpuDrop": lambda: fc.ActionL2ToCpuDrop(),
    "ActionDoNotLearnMac": lambda: fc.ActionDoNotLearnMac(),
}
