"""No memory grows across many build/serialize/load cycles."""

import gc
import os

import filters_common as fc

CYCLES = 100_000
WARM_UP = 5_000
# A leak of a single small object per cycle (a 32-byte allocation, a match
# copy, a dropped reference to a Python int) would add at least 3 MiB over
# the measured cycles; allocator and interpreter caches settle during the
# warm-up, so 1 MiB of noise is already generous.
TOLERANCE = 1 << 20


def _rss():
    with open("/proc/self/statm") as statm:
        return int(statm.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


def _cycle(i):
    group = fc.FiltersGroup(i & 0xFFFF, stage=fc.Stage.INGRESS, type=fc.GroupType.IPV4_L4)
    entry = fc.FiltersEntry(i, priority=i & 7)
    entry.set_match(fc.MatchSrcIPv4("10.0.0.0/8"))
    entry.set_match(fc.MatchDstL4Port(i & 0xFFFF))
    entry.set_action(fc.ActionRedirect(["eth1", "eth2"]))
    entry.set_counter(fc.Counter(1, fc.CounterType.PACKETS))
    entry.policer = fc.Policer(i, fc.PolicerStage.INGRESS, fc.Mode.flow(1, 2))
    group.insert(entry)
    try:
        group.insert(fc.FiltersEntry(i + 1, priority=0).__class__.from_bytes(b"\x08\x01"))
        group.remove(i + 12345678)
    except fc.FiltersError:
        pass
    loaded = fc.FiltersGroup.from_bytes(group.serialize())
    assert loaded == group
    return len(str(loaded)) + len(loaded.entries[i].matches)


def test_build_serialize_load_cycles_do_not_grow_memory():
    for i in range(WARM_UP):
        _cycle(i)
    gc.collect()
    before = _rss()
    for i in range(CYCLES):
        _cycle(i)
    gc.collect()
    grown = _rss() - before
    assert grown < TOLERANCE, f"resident memory grew by {grown} bytes"
