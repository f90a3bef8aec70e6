"""Interoperability with Python protocol buffers: filters_common.wire."""

import filters_common as fc
import pytest
from filters_common.wire import (
    filter_actions_pb2,
    filter_counter_pb2,
    filter_entries_pb2,
    filter_groups_pb2,
    filter_matches_pb2,
)


def _group():
    group = fc.FiltersGroup(3, stage=fc.Stage.INGRESS, type=fc.GroupType.IPV4_L4)
    entry = fc.FiltersEntry(5, priority=9)
    entry.set_match(fc.MatchDstIPv4("10.1.0.0/16"))
    entry.set_action(fc.ActionDeny())
    entry.set_counter(fc.Counter(4, fc.CounterType.PACKETS))
    group.insert(entry)
    return group


def test_to_message_reads_the_same_fields_as_the_bytes():
    group = _group()
    message = group.to_message()
    assert isinstance(message, filter_groups_pb2.FiltersGroupPB)
    assert (message.id_, message.priority_, message.stage_, message.type_) == (3, 0, 2, 3)
    assert len(message.entries_) == 1
    entry = message.entries_[0]
    assert (entry.id_, entry.priority_) == (5, 9)
    assert entry.matches_[0].type_ == fc.MatchKind.DST_IPV4
    assert entry.matches_[0].ipv4_ == bytes([10, 1, 0, 0])
    assert entry.matches_[0].ipv4_mask_ == bytes([255, 255, 0, 0])
    assert entry.actions_[0].type_ == fc.ActionKind.DENY
    assert (entry.counters_[0].id, entry.counters_[0].type) == (4, 1)
    assert message.SerializeToString() == group.serialize()


def test_message_built_in_python_loads_as_a_group():
    message = filter_groups_pb2.FiltersGroupPB(id_=8, priority_=2, stage_=2, type_=3)
    entry = message.entries_.add(id_=1, priority_=4, policer_=b"")
    entry.matches_.add(type_=fc.MatchKind.TTL, ttl_=5)
    entry.actions_.add(type_=fc.ActionKind.PERMIT)
    group = fc.FiltersGroup.from_message(message)
    expected = fc.FiltersGroup(8, priority=2, stage=2, type=3)
    wanted = fc.FiltersEntry(1, priority=4)
    wanted.set_match(fc.MatchTTL(5))
    wanted.set_action(fc.ActionPermit())
    expected.insert(wanted)
    assert group == expected


def test_entry_messages_round_trip():
    entry = _group().entry(5)
    message = entry.to_message()
    assert isinstance(message, filter_entries_pb2.FiltersEntryPB)
    assert fc.FiltersEntry.from_message(message) == entry


def test_from_message_refuses_other_types():
    with pytest.raises(TypeError):
        fc.FiltersGroup.from_message(filter_entries_pb2.FiltersEntryPB())
    with pytest.raises(TypeError):
        fc.FiltersEntry.from_message(b"")


def test_all_five_schemas_are_present():
    assert filter_matches_pb2.MatchPB.DESCRIPTOR.full_name == "FiltersCommon.MatchPB"
    assert filter_actions_pb2.ActionPB.DESCRIPTOR.full_name == "FiltersCommon.ActionPB"
    assert filter_counter_pb2.CounterPB.DESCRIPTOR.full_name == "FiltersCommon.CounterPB"
