"""Rule text and group differences from Python."""

import filters_common as fc
import pytest

RULES = """\
group 3 priority 1 stage ingress type ipv4-l4
entry 1 priority 4 src-ip 10.0.0.0/8 deny
entry 2 ttl 1 permit counter 1 packets
"""


def _built():
    group = fc.FiltersGroup(3, priority=1, stage=fc.Stage.INGRESS, type=fc.GroupType.IPV4_L4)
    first = fc.FiltersEntry(1, priority=4)
    first.set_match(fc.MatchSrcIPv4("10.0.0.0/8"))
    first.set_action(fc.ActionDeny())
    second = fc.FiltersEntry(2)
    second.set_match(fc.MatchTTL(1))
    second.set_action(fc.ActionPermit())
    second.set_counter(fc.Counter(1, fc.CounterType.PACKETS))
    group.insert(first)
    group.insert(second)
    return group


def test_from_rules_builds_the_same_group_as_the_classes():
    assert fc.FiltersGroup.from_rules(RULES) == _built()


def test_to_rules_reads_back_as_the_same_group():
    group = _built()
    text = group.to_rules()
    assert text.startswith("group 3 priority 1 stage 2 type 3")
    assert fc.FiltersGroup.from_rules(text) == group
    entry = group.entry(1)
    assert entry.to_rules() == "entry 1 priority 4 src-ip 10.0.0.0/8 deny"
    assert fc.FiltersEntry.from_rules(entry.to_rules()) == entry


def test_rule_text_errors_carry_file_line_and_column():
    text = "group 3 priority 0 stage ingress type ipv6-vrf\nentry 1 src-ip 10.0.0.1 deny\n"
    with pytest.raises(fc.RuleTextError) as raised:
        fc.FiltersGroup.from_rules(text, "edge.rules")
    (error,) = raised.value.errors
    assert (error.file, error.line, error.column) == ("edge.rules", 2, 1)
    assert "-6 (FILTERS_ERR_MATCH_NOT_ALLOWED)" in error.message
    assert str(raised.value) == str(error)
    assert isinstance(raised.value, ValueError)


def test_diff_of_equal_groups_is_false():
    d = fc.diff(_built(), _built())
    assert not d
    assert (d.added, d.removed, d.changed) == ([], [], [])
    assert not d.header_changed


def test_diff_lists_added_removed_and_changed_entries_and_header():
    old = _built()
    new = _built()
    new.remove(1)
    changed = new.entry(2)
    changed.priority = 9
    new.insert(changed)
    new.insert(fc.FiltersEntry(7))
    new.priority = 2
    d = fc.diff(old, new)
    assert d
    assert (d.added, d.removed, d.changed) == ([7], [1], [2])
    assert d.priority_changed and not d.stage_changed and d.header_changed
    assert d.old_header == fc.GroupHeader(3, 1, fc.Stage.INGRESS, fc.GroupType.IPV4_L4)
    assert d.new_header.priority == 2
    assert d.new_entry(2) == changed and d.new_entry(1) is None
    target = _built()
    d.apply(target)
    assert target == new


def test_refused_apply_raises_and_leaves_the_group_unchanged():
    old = _built()
    new = _built()
    new.remove(1)
    d = fc.diff(old, new)
    target = _built()
    target.remove(1)
    before = fc.FiltersGroup.from_bytes(target.serialize())
    with pytest.raises(fc.FiltersError) as raised:
        d.apply(target)
    assert (raised.value.code, raised.value.name) == (-3, "FILTERS_ERR_NOT_FOUND")
    assert target == before
