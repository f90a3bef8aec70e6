"""Whatever bytes or values Python passes, the interpreter survives: the
library's loaders take any bytes, and bad values raise Python exceptions."""

import random

import filters_common as fc
import pytest


def _mutations(data, count, seed):
    rng = random.Random(seed)
    for _ in range(count):
        mutated = bytearray(data)
        for _ in range(rng.randint(1, 4)):
            if mutated and rng.random() < 0.7:
                mutated[rng.randrange(len(mutated))] = rng.randrange(256)
            else:
                mutated.insert(rng.randrange(len(mutated) + 1), rng.randrange(256))
        if rng.random() < 0.3:
            del mutated[rng.randrange(len(mutated) + 1):]
        yield bytes(mutated)


def _sample_group():
    group = fc.FiltersGroup(9, stage=fc.Stage.LOOKUP, type=fc.GroupType.L2)
    entry = fc.FiltersEntry(1, priority=2)
    entry.set_match(fc.MatchIngressPorts(["eth1", "lag2"]))
    entry.set_match(fc.MatchDstMac("00:11:22:33:44:55/24"))
    entry.set_action(fc.ActionMplsPortSet("vpws1", "eth2"))
    entry.set_counter(fc.Counter(3, fc.CounterType.OCTETS))
    entry.policer = fc.Policer(1, fc.PolicerStage.NONE, fc.Mode.srtcm(1, 2, 3))
    group.insert(entry)
    return group


def test_mutated_group_bytes_load_or_raise_value_error():
    loaded = 0
    for data in _mutations(_sample_group().serialize(), 3000, seed=12):
        try:
            group = fc.FiltersGroup.from_bytes(data)
        except ValueError:
            continue  # a malformed MPLS action, as the library throws
        str(group)
        assert fc.FiltersGroup.from_bytes(group.serialize()) is not None
        loaded += 1
    assert loaded > 0


def test_mutated_entry_and_policer_bytes_load_or_raise_value_error():
    entry_bytes = _sample_group().entry(1).serialize()
    for data in _mutations(entry_bytes, 2000, seed=34):
        try:
            str(fc.FiltersEntry.from_bytes(data))
        except ValueError:
            pass
    for data in _mutations(_sample_group().entry(1).policer.serialize(), 2000, seed=56):
        repr(fc.Policer.from_bytes(data))


@pytest.mark.parametrize(
    "call",
    [
        lambda: fc.FiltersGroup.from_bytes("text"),
        lambda: fc.FiltersGroup.from_bytes(None),
        lambda: fc.FiltersEntry(1).match(None),
        lambda: fc.FiltersEntry(1).match(2**40),
        lambda: fc.FiltersGroup(1).remove(-1),
        lambda: fc.diff(fc.FiltersGroup(1), None),
        lambda: fc.caps.allowed_match_kinds("l2"),
    ],
)
def test_bad_arguments_raise_instead_of_crashing(call):
    with pytest.raises((TypeError, ValueError, OverflowError)):
        call()


def test_unknown_kinds_read_as_nothing():
    entry = fc.FiltersEntry(1)
    assert entry.match(1000) is None and entry.action(-1) is None
    with pytest.raises(fc.FiltersError):
        entry.delete_match(1000)
