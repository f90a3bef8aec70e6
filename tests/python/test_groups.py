"""FiltersGroup: header, entries, every refusal code with its name and
cause, the wire form and copies."""

import copy

import filters_common as fc
import pytest
from filters_common.wire import filter_groups_pb2


def _error(call):
    with pytest.raises(fc.FiltersError) as error:
        call()
    return error.value


def _entry(entry_id, *elements, policer=None):
    entry = fc.FiltersEntry(entry_id)
    for element in elements:
        if isinstance(element, fc.Match):
            entry.set_match(element)
        else:
            entry.set_action(element)
    if policer is not None:
        entry.policer = policer
    return entry


def test_new_group_header():
    group = fc.FiltersGroup(7)
    assert (group.id, group.priority, group.stage, group.type) == (7, 0, 0, 0)
    assert group.stage is fc.Stage.LOOKUP and group.type is fc.GroupType.NONE
    group.priority = 9
    group.stage = fc.Stage.INGRESS
    group.type = fc.GroupType.IPV4_L4
    assert (group.priority, group.stage, group.type) == (9, 2, 3)
    with pytest.raises(AttributeError):
        group.id = 3


def test_entries_mapping_length_iteration_and_membership():
    group = fc.FiltersGroup(1, stage=fc.Stage.INGRESS, type=fc.GroupType.IPV4_L4)
    for entry_id in (30, 10, 20):
        group.insert(_entry(entry_id, fc.ActionDeny()))
    assert len(group) == 3
    assert list(group.entries) == [10, 20, 30]
    assert [e.id for e in group] == [10, 20, 30]
    assert 20 in group and 21 not in group and "20" not in group
    group.insert(_entry(20, fc.ActionPermit()))
    assert group.entries[20].action(fc.ActionKind.PERMIT) == fc.ActionPermit()
    group.remove(20)
    assert list(group.entries) == [10, 30]
    with pytest.raises(TypeError):
        group.entries[5] = fc.FiltersEntry(5)


def test_match_not_allowed_by_the_type():
    group = fc.FiltersGroup(1, stage=fc.Stage.INGRESS, type=fc.GroupType.IPV6_VRF)
    error = _error(lambda: group.insert(_entry(1, fc.MatchSrcIPv4("10.0.0.1"))))
    assert error.code == fc.ErrorCode.MATCH_NOT_ALLOWED
    assert error.name == "FILTERS_ERR_MATCH_NOT_ALLOWED"
    assert error.cause == "match MatchSrcIPv4 (9) is not allowed in group type 8"
    assert len(group) == 0


def test_action_not_allowed_in_the_stage():
    group = fc.FiltersGroup(1, stage=fc.Stage.EGRESS, type=fc.GroupType.EGRESS_L2)
    error = _error(lambda: group.insert(_entry(1, fc.ActionRedirect("eth1"))))
    assert (error.code, error.name) == (-9, "FILTERS_ERR_ACTION_NOT_ALLOWED")
    assert "ActionRedirect" in error.cause
    assert error.cause == group.explain(_entry(1, fc.ActionRedirect("eth1"))).cause


def test_policer_of_another_stage():
    group = fc.FiltersGroup(1, stage=fc.Stage.INGRESS, type=fc.GroupType.IPV4_L4)
    policer = fc.Policer(3, fc.PolicerStage.EGRESS)
    error = _error(lambda: group.insert(_entry(1, policer=policer)))
    assert (error.code, error.name) == (-10, "FILTERS_ERR_POLICER_STAGE")
    assert error.cause == group.explain(_entry(1, policer=policer)).cause
    group.insert(_entry(1, policer=fc.Policer(3, fc.PolicerStage.INGRESS)))


def test_type_not_in_stage():
    group = fc.FiltersGroup(1, stage=fc.Stage.EGRESS)
    error = _error(lambda: setattr(group, "type", fc.GroupType.IPV4_L4))
    assert (error.code, error.name) == (-7, "FILTERS_ERR_TYPE_NOT_IN_STAGE")
    assert group.type == fc.GroupType.NONE
    with pytest.raises(fc.FiltersError) as raised:
        fc.FiltersGroup(1, stage=fc.Stage.EGRESS, type=fc.GroupType.IPV4_L4)
    assert raised.value.code == -7


def test_unknown_stage():
    group = fc.FiltersGroup(1)
    error = _error(lambda: setattr(group, "stage", 9))
    assert (error.code, error.name) == (-8, "FILTERS_ERR_UNKNOWN_STAGE")
    assert group.stage == 0


def test_unknown_type_of_a_group_read_from_the_wire():
    message = filter_groups_pb2.FiltersGroupPB(id_=1, priority_=0, stage_=2, type_=99)
    group = fc.FiltersGroup.from_message(message)
    assert group.type == 99
    error = _error(lambda: group.insert(_entry(1)))
    assert (error.code, error.name) == (-4, "FILTERS_ERR_INVALID")
    assert error.cause == group.explain(_entry(1)).cause


def test_remove_of_a_missing_entry():
    error = _error(lambda: fc.FiltersGroup(1).remove(4))
    assert (error.code, error.name) == (-3, "FILTERS_ERR_NOT_FOUND")


def test_stage_change_refused_by_an_entry_names_it():
    group = fc.FiltersGroup(1, stage=fc.Stage.INGRESS, type=fc.GroupType.NONE)
    group.insert(_entry(4, fc.ActionRedirect("eth1")))
    error = _error(lambda: setattr(group, "stage", fc.Stage.EGRESS))
    assert error.code == -9
    assert error.cause.startswith("entry 4: ")
    assert group.stage == fc.Stage.INGRESS and len(group) == 1


def test_explain_gives_the_insertion_code_without_changing_anything():
    group = fc.FiltersGroup(1, stage=fc.Stage.INGRESS, type=fc.GroupType.IPV4_L4)
    code, cause = group.explain(_entry(1, fc.MatchTTL(3)))
    assert code == fc.ErrorCode.OK and cause == "fits group stage 2, type 3"
    assert len(group) == 0
    assert fc.caps.explain(2, 8, _entry(1, fc.MatchTTL(3))).code == -6


def test_from_bytes_drops_refused_entries_silently():
    message = filter_groups_pb2.FiltersGroupPB(id_=5, priority_=1, stage_=3, type_=5)
    message.entries_.add(id_=1, priority_=0, policer_=b"").actions_.add(
        type_=fc.ActionKind.REDIRECT, ports_=[1])
    message.entries_.add(id_=2, priority_=0, policer_=b"").actions_.add(
        type_=fc.ActionKind.DENY)
    group = fc.FiltersGroup.from_bytes(message.SerializeToString())
    assert list(group.entries) == [2]
    assert fc.FiltersGroup.from_bytes(b"") == fc.FiltersGroup(0)


def test_bytes_round_trip_equality_and_copies():
    group = fc.FiltersGroup(3, priority=4, stage=fc.Stage.VLAN, type=fc.GroupType.L2_VLAN)
    group.insert(_entry(1, fc.MatchPcp({1, 2}), fc.ActionSetPcpAndQueue(5)))
    loaded = fc.FiltersGroup.from_bytes(group.serialize())
    assert loaded == group and str(loaded) == str(group)
    for twin in (copy.copy(group), copy.deepcopy(group)):
        assert twin == group
        twin.remove(1)
        assert twin != group and len(group) == 1
    assert str(group).startswith("=FiltersGroup=\n  ID: 3\n  Priority: 4\n  Stage: 1\n  Type: 6\n")
    assert repr(group) == "<FiltersGroup 3 priority 4 stage 1 type 6, 1 entries>"


def test_group_identifier_is_16_bits():
    with pytest.raises(OverflowError):
        fc.FiltersGroup(65536)
    with pytest.raises(TypeError):
        fc.FiltersGroup("1")


def test_comparison_with_other_types_is_false_not_an_error():
    assert fc.FiltersGroup(1) != 1
    assert not fc.FiltersGroup(1) == "group"
    assert fc.FiltersEntry(1) != fc.FiltersGroup(1)
    assert fc.MatchAll() != fc.ActionPermit()
