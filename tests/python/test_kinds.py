"""The match and action classes: built from natural Python values, read back
through their properties, compared, hashed and printed."""

import copy
import ipaddress

import filters_common as fc
import pytest

from samples import ACTIONS, MATCHES


@pytest.mark.parametrize("name", sorted(MATCHES) + sorted(ACTIONS))
def test_repr_builds_an_equal_object(name):
    element = (MATCHES.get(name) or ACTIONS.get(name))()
    rebuilt = eval(repr(element), vars(fc))  # noqa: S307 - our own repr
    assert type(rebuilt) is type(element)
    assert rebuilt == element
    assert hash(rebuilt) == hash(element)


@pytest.mark.parametrize("name", sorted(MATCHES))
def test_match_kind_is_the_library_class_of_its_kind(name):
    match = MATCHES[name]()
    assert isinstance(match.kind, fc.MatchKind)
    expected = "MatchToS" if name == "MatchDSCP" else name
    assert fc.match_name(match.kind) == expected


@pytest.mark.parametrize("name", sorted(ACTIONS))
def test_action_kind_is_the_library_class_of_its_kind(name):
    action = ACTIONS[name]()
    assert isinstance(action.kind, fc.ActionKind)
    assert fc.action_name(action.kind) == name


def test_addresses_read_back_in_their_usual_form():
    m = fc.MatchSrcIPv4("10.0.0.0/8")
    assert (m.address, m.mask) == ("10.0.0.0", "255.0.0.0")
    m = fc.MatchDstIPv4(ipaddress.ip_network("192.168.0.0/16"))
    assert (m.address, m.mask) == ("192.168.0.0", "255.255.0.0")
    m = fc.MatchDstIPv4("10.1.2.3", 24)
    assert m.mask == "255.255.255.0"
    m = fc.MatchDstIPv6("2001:db8::/32")
    assert (m.address, m.mask) == ("2001:db8::", "ffff:ffff::")
    m = fc.MatchSrcMac("00:11:22:33:44:55")
    assert (m.address, m.mask) == ("00:11:22:33:44:55", "ff:ff:ff:ff:ff:ff")
    assert fc.ActionReplaceSrcMac("0:1:2:3:4:5").address == "00:01:02:03:04:05"


def test_address_forms_give_equal_matches():
    assert fc.MatchDstIPv4("10.1.0.0/16") == fc.MatchDstIPv4("10.1.0.0", "255.255.0.0")
    assert fc.MatchDstIPv4("10.1.0.0/16") == fc.MatchDstIPv4(
        ipaddress.IPv4Address("10.1.0.0"), ipaddress.IPv4Address("255.255.0.0"))
    assert fc.MatchDstIPv4("10.1.0.0/16") != fc.MatchDstIPv4("10.1.0.0")
    assert fc.MatchSrcMac(bytes(range(6))) == fc.MatchSrcMac("00:01:02:03:04:05")


def test_values_read_back():
    assert fc.MatchIngressPorts(["eth1", 7]).ports == [fc.MatchIngressPorts("eth1").ports[0], 7]
    assert fc.MatchIngressPorts(excluded_port_types=[fc.PortType.LAG_PORT]).excluded_port_types == [
        fc.PortType.LAG_PORT]
    assert fc.MatchExternalVlanId([10, 20, 10]).vlan_ids == {10, 20}
    assert fc.MatchPcp({1, 7}).pcps == {1, 7}
    assert fc.MatchTPID(0x88A8).value == 0x88A8
    assert fc.MatchIngressStpState(2).value is fc.StpState.LEARNING
    assert fc.MatchIpProtocol("tcp").value == 6
    assert fc.MatchDrop(True).value is True
    assert fc.MatchDstL4Port(80).port == 80 and fc.MatchDstL4Port(80).mask == 0xFFFF
    assert (fc.MatchDstL4PortRange(5, 9).min_port, fc.MatchDstL4PortRange(5, 9).max_port) == (5, 9)
    assert (fc.MatchVlanInfo(3, 4).svc_vlan_type, fc.MatchVlanInfo(3, 4).proto_cpu_vlan_type) == (3, 4)
    assert fc.MatchDSCP(46).dscp == 46 and fc.MatchDSCP(46).value == 46 << 2
    assert fc.ActionRedirect(["eth1", "eth2"]).ports == fc.MatchIngressPorts(["eth1", "eth2"]).ports
    mpls = fc.ActionMplsPortSet("vpws1", "lag2")
    assert (mpls.vpn_id, mpls.access_port) == (
        fc.MatchVirtualPort("vpws1").interface, fc.MatchVirtualPort("lag2").interface)
    assert fc.ActionCopyToCpuCancel(0).value is fc.CopyToCpuCancel.COPY_TO_CPU_CANCEL


def test_str_is_the_library_dump_of_the_object():
    assert str(fc.MatchTTL(64)) == (
        "    =MatchTTL=\n      Match Type ID: 26\n      TTL: 64\n")
    entry = fc.FiltersEntry(1)
    entry.set_match(fc.MatchTTL(64))
    assert str(fc.MatchTTL(64)) in str(entry)


def test_equality_is_by_value_and_kind():
    assert fc.MatchTTL(1) == fc.MatchTTL(1)
    assert fc.MatchTTL(1) != fc.MatchTTL(2)
    assert fc.MatchL2DestHit(True) != fc.MatchL3SrcRouteHit(True)
    assert fc.ActionSetPcp(3) != fc.ActionSetInnerPcp(3)
    assert fc.MatchTTL(1) != 1
    assert len({fc.MatchTTL(1), fc.MatchTTL(1), fc.MatchTTL(2)}) == 2
    assert copy.copy(fc.MatchSrcIPv4("1.2.3.4")) == fc.MatchSrcIPv4("1.2.3.4")
    assert copy.deepcopy(fc.MatchDSCP(3)) == fc.MatchDSCP(3)


def test_mpls_interface_types_raise_value_error_with_the_library_message():
    with pytest.raises(ValueError) as error:
        fc.ActionMplsPortSet("eth1", "eth2")
    assert str(error.value) == "ActionMplsPortSet: invalid vpn_id limid type"
    with pytest.raises(ValueError) as error:
        fc.ActionMplsPortSet("vpws1", "vpws2")
    assert str(error.value) == "ActionMplsPortSet: invalid mpls_access_port limid type"


def test_mpls_action_missing_from_the_wire_raises_value_error():
    from filters_common.wire import filter_entries_pb2

    message = filter_entries_pb2.FiltersEntryPB(id_=1, priority_=0, policer_=b"")
    message.actions_.add(type_=fc.ActionKind.MPLS_PORT_SET)
    with pytest.raises(ValueError) as error:
        fc.FiltersEntry.from_bytes(message.SerializeToString())
    assert str(error.value) == (
        "ActionMplsPortSet: ActionPB missing vpn_id and mpls_access_port")


@pytest.mark.parametrize(
    "build",
    [
        lambda: fc.MatchTTL("64"),
        lambda: fc.MatchTTL(1.5),
        lambda: fc.MatchSrcIPv4(10),
        lambda: fc.MatchIngressPorts([1.0]),
        lambda: fc.MatchPcp("3"),
        lambda: fc.MatchTTL(),
        lambda: fc.MatchTTL(1, 2),
        lambda: fc.MatchTTL(value=1, other=2),
        lambda: fc.MatchAll(1),
        lambda: fc.FiltersEntry("1"),
        lambda: fc.FiltersEntry(1).set_match(fc.ActionDeny()),
        lambda: fc.FiltersEntry(1).set_action(fc.MatchAll()),
        lambda: fc.FiltersEntry(1).set_match(None),
        lambda: fc.FiltersGroup(1).insert("entry"),
        lambda: fc.Match(),
        lambda: fc.Action(),
    ],
)
def test_wrong_python_types_raise_type_error(build):
    with pytest.raises(TypeError):
        build()


@pytest.mark.parametrize(
    "build",
    [
        lambda: fc.MatchSrcIPv4("10.0.0.0/33"),
        lambda: fc.MatchSrcIPv4("10.0.0"),
        lambda: fc.MatchSrcIPv4("10.0.0.0/8", "255.0.0.0"),
        lambda: fc.MatchSrcIPv6("10.0.0.1"),
        lambda: fc.MatchDstMac("00:11:22"),
        lambda: fc.MatchSrcPort("nosuchport"),
        lambda: fc.MatchIpProtocol("nosuchprotocol"),
        lambda: fc.MatchIngressPorts(["eth1"], excluded_port_types=[0]),
        lambda: fc.ActionReplaceDstMac("00:11:22:33:44:55/40"),
    ],
)
def test_bad_values_raise_value_error(build):
    with pytest.raises(ValueError):
        build()


@pytest.mark.parametrize(
    "build",
    [lambda: fc.MatchTTL(256), lambda: fc.MatchVrfId(-1), lambda: fc.MatchExternalVlanId(65536)],
)
def test_values_out_of_range_raise_overflow_error(build):
    with pytest.raises(OverflowError):
        build()


def test_objects_are_read_only():
    match = fc.MatchTTL(3)
    with pytest.raises(AttributeError):
        match.value = 4
