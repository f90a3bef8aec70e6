"""FiltersEntry: matches, actions, counters and policers, refusals, copies
and the lifetimes of what crosses between Python and the library."""

import copy
import gc

import filters_common as fc
import pytest


def _error(call):
    with pytest.raises(fc.FiltersError) as error:
        call()
    return error.value


def test_matches_are_kept_by_kind_in_a_read_only_mapping():
    entry = fc.FiltersEntry(1, priority=3)
    entry.set_match(fc.MatchTTL(9))
    entry.set_match(fc.MatchSrcIPv4("1.2.3.4"))
    entry.set_match(fc.MatchTTL(10))
    assert list(entry.matches) == [fc.MatchKind.SRC_IPV4, fc.MatchKind.TTL]
    assert entry.matches[fc.MatchKind.TTL] == fc.MatchTTL(10)
    assert entry.match(fc.MatchKind.TTL) == fc.MatchTTL(10)
    assert entry.match(fc.MatchKind.DROP) is None
    with pytest.raises(TypeError):
        entry.matches[fc.MatchKind.DROP] = fc.MatchDrop(True)
    entry.delete_match(fc.MatchKind.TTL)
    assert fc.MatchKind.TTL not in entry.matches


def test_dscp_is_held_under_the_tos_kind_with_its_own_class():
    entry = fc.FiltersEntry(1)
    entry.set_match(fc.MatchDSCP(10))
    held = entry.match(fc.MatchKind.TOS)
    assert type(held) is fc.MatchDSCP and held.dscp == 10


def test_refusals_raise_filters_error_with_code_and_name():
    entry = fc.FiltersEntry(1)
    error = _error(lambda: entry.delete_match(fc.MatchKind.TTL))
    assert (error.code, error.name) == (fc.ErrorCode.NOT_FOUND, "FILTERS_ERR_NOT_FOUND")
    assert isinstance(error, ValueError) and error.cause is None
    error = _error(lambda: entry.delete_action(fc.ActionKind.DENY))
    assert error.code == -3

    entry.set_match(fc.MatchSrcIPv4("1.2.3.4"))
    error = _error(lambda: entry.set_match(fc.MatchDstIPv6("::1")))
    assert (error.code, error.name) == (-4, "FILTERS_ERR_INVALID")
    entry.set_match(fc.MatchDstL4PortRange(1, 2))
    assert _error(lambda: entry.set_match(fc.MatchDstL4Port(80))).code == -4
    assert entry.match(fc.MatchKind.DST_IPV6) is None

    assert _error(lambda: entry.set_counter(fc.Counter(1, fc.CounterType.INVALID))).code == -4
    entry.set_counter(fc.Counter(1, fc.CounterType.PACKETS))
    assert _error(lambda: entry.set_counter(fc.Counter(2, fc.CounterType.PACKETS))).code == -4
    error = _error(lambda: entry.delete_counter(9))
    assert (error.code, error.name) == (fc.ErrorCode.REFUSED, "FILTERS_ERR_REFUSED")


def test_counters_and_policers():
    entry = fc.FiltersEntry(2)
    entry.set_counter(fc.Counter(5, fc.CounterType.OCTETS))
    entry.set_counter(fc.Counter(1, fc.CounterType.PACKETS))
    assert list(entry.counters) == [1, 5]
    assert entry.counter(5) == fc.Counter(5, fc.CounterType.OCTETS)
    assert entry.counter(5).type is fc.CounterType.OCTETS
    entry.delete_counter(5)
    assert entry.counter(5) is None
    entry.clear_counters()
    assert len(entry.counters) == 0

    assert entry.policer == fc.Policer()
    assert entry.policer.stage is fc.PolicerStage.NONE
    assert entry.policer_parent is None
    policer = fc.Policer(4, fc.PolicerStage.EGRESS, fc.Mode.srtcm(1, 2, 3),
                         [fc.PolicerAction.set_pcp(fc.Color.GREEN, 5)])
    entry.policer = policer
    entry.policer_parent = fc.Policer(9, fc.PolicerStage.INGRESS)
    assert entry.policer == policer
    assert entry.policer.mode.type is fc.ModeType.SRTCM
    assert (entry.policer.mode.cir, entry.policer.mode.cbs, entry.policer.mode.ebs) == (1, 2, 3)
    assert entry.policer.actions == [fc.PolicerAction.set_pcp(fc.Color.GREEN, 5)]
    assert entry.policer_parent.id == 9
    assert fc.Policer.from_bytes(policer.serialize()) == policer
    assert eval(repr(policer), vars(fc)) == policer  # noqa: S307 - our own repr


def test_policer_namespace_names_the_policer_library_classes():
    from filters_common import policer

    assert policer.Action is fc.PolicerAction
    assert policer.Policer is fc.Policer and policer.Mode is fc.Mode
    assert policer.Stage.EGRESS == 1 and policer.ActionType.SET_DSCP == 2


def test_entry_bytes_round_trip_and_dump():
    entry = fc.FiltersEntry(7, priority=2)
    entry.set_match(fc.MatchVrfId(3))
    entry.set_action(fc.ActionL3Switch(12))
    entry.set_counter(fc.Counter(1, fc.CounterType.PACKETS))
    loaded = fc.FiltersEntry.from_bytes(entry.serialize())
    assert loaded == entry
    assert str(loaded) == str(entry)
    assert str(entry).startswith("  =FiltersEntry=\n")


def test_equality_copies_and_repr():
    entry = fc.FiltersEntry(1)
    entry.set_action(fc.ActionDeny())
    twin = copy.copy(entry)
    deep = copy.deepcopy(entry)
    assert twin == entry and deep == entry
    twin.priority = 4
    assert twin != entry and entry.priority == 0
    assert "FiltersEntry 1" in repr(entry)


def test_a_match_added_to_an_entry_is_copied():
    match = fc.MatchIngressPorts(["eth1"])
    entry = fc.FiltersEntry(1)
    entry.set_match(match)
    held = entry.match(fc.MatchKind.INGRESS_PORTS)
    assert held == match and held is not match
    del match
    gc.collect()
    assert entry.match(fc.MatchKind.INGRESS_PORTS).ports == held.ports


def test_an_entry_taken_from_a_group_outlives_the_group():
    group = fc.FiltersGroup(1, stage=fc.Stage.INGRESS, type=fc.GroupType.IPV4_L4)
    entry = fc.FiltersEntry(5)
    entry.set_match(fc.MatchTTL(3))
    group.insert(entry)
    taken = group.entry(5)
    from_mapping = group.entries[5]
    from_iteration = next(iter(group))
    del group
    gc.collect()
    for held in (taken, from_mapping, from_iteration):
        assert held == entry
        assert held.match(fc.MatchKind.TTL) == fc.MatchTTL(3)


def test_changing_a_taken_entry_leaves_the_group_alone():
    group = fc.FiltersGroup(1, stage=fc.Stage.INGRESS, type=fc.GroupType.IPV4_L4)
    group.insert(fc.FiltersEntry(5))
    taken = group.entry(5)
    taken.set_match(fc.MatchTTL(3))
    assert group.entry(5).match(fc.MatchKind.TTL) is None
