"""Python builds the same bytes and dumps as the C++ library, and the C++
library loads what Python writes (and the other way round)."""

import filters_common as fc
import pytest

from samples import ACTIONS, MATCHES


def _entry_with(kind_value, element):
    entry = fc.FiltersEntry(kind_value)
    if isinstance(element, fc.Match):
        entry.set_match(element)
    else:
        entry.set_action(element)
    return entry


@pytest.mark.parametrize("name", sorted(MATCHES) + sorted(ACTIONS))
def test_every_class_serializes_and_dumps_like_cpp(cpp, name):
    reference = cpp.samples()
    element = (MATCHES.get(name) or ACTIONS.get(name))()
    assert type(element).__name__ == name
    entry = _entry_with(int(element.kind), element)
    data, dump = reference[name]
    assert entry.serialize() == data
    assert str(entry) == dump


def test_samples_cover_every_class(cpp):
    assert set(cpp.samples()) == set(MATCHES) | set(ACTIONS)
    assert len(MATCHES) == 40 and len(ACTIONS) == 21


def _reference_group():
    group = fc.FiltersGroup(42, priority=5, stage=fc.Stage.INGRESS,
                            type=fc.GroupType.IPV4_L4)
    web = fc.FiltersEntry(10, priority=100)
    web.set_match(fc.MatchSrcIPv4("10.0.0.0/8"))
    web.set_match(fc.MatchDstL4Port(443))
    web.set_action(fc.ActionPermit())
    web.set_counter(fc.Counter(1, fc.CounterType.PACKETS))
    web.set_counter(fc.Counter(2, fc.CounterType.OCTETS))
    web.policer = fc.Policer(
        7,
        fc.PolicerStage.INGRESS,
        fc.Mode.trtcm(1000, 2000, 3000, 4000),
        [fc.PolicerAction.drop(fc.Color.RED),
         fc.PolicerAction.set_dscp(fc.Color.YELLOW, 10)],
    )
    web.policer_parent = fc.Policer(8, fc.PolicerStage.INGRESS, fc.Mode.flow(5, 6))
    block = fc.FiltersEntry(3, priority=7)
    block.set_match(fc.MatchDstIPv4("192.168.1.1"))
    block.set_match(fc.MatchTTL(1))
    block.set_action(fc.ActionDeny())
    block.set_action(fc.ActionRedirect("eth4"))
    group.insert(web)
    group.insert(block)
    return group


def test_group_bytes_and_dump_equal_cpp(cpp):
    data, dump = cpp.group()
    group = _reference_group()
    assert group.serialize() == data
    assert str(group) == dump


def test_group_written_by_cpp_loads_in_python(cpp):
    data, dump = cpp.group()
    loaded = fc.FiltersGroup.from_bytes(data)
    assert loaded == _reference_group()
    assert str(loaded) == dump
    assert loaded.serialize() == data


def test_group_written_by_python_loads_in_cpp_and_back(cpp):
    group = _reference_group()
    group.remove(3)
    entry = fc.FiltersEntry(99, priority=1)
    entry.set_match(fc.MatchIpProtocol("udp"))
    entry.set_action(fc.ActionMapToCpuCosQueue(2))
    group.insert(entry)
    cpp_bytes, cpp_dump = cpp.load(group.serialize())
    assert cpp_bytes == group.serialize()
    assert cpp_dump == str(group)
    assert fc.FiltersGroup.from_bytes(cpp_bytes) == group
