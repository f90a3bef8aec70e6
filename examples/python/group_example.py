#!/usr/bin/env python3
"""Builds, checks, serializes, loads, prints and diffs a filter group from
Python: the same steps as group_example.cc, with the Python module.

Run it with the package on the path, from a build tree:
    PYTHONPATH=build/python python3 examples/python/group_example.py
or with the package installed under the interpreter's prefix.
"""

import sys

import filters_common as fc


def main() -> int:
    # An ingress group of IPv4/L4 keys; stage first, then the type.
    group = fc.FiltersGroup(7, priority=3, stage=fc.Stage.INGRESS,
                            type=fc.GroupType.IPV4_L4)

    web = fc.FiltersEntry(1, priority=100)
    web.set_match(fc.MatchSrcIPv4("10.0.0.0/8"))
    web.set_match(fc.MatchDstL4Port(443))
    web.set_action(fc.ActionPermit())
    web.set_counter(fc.Counter(1, fc.CounterType.PACKETS))
    group.insert(web)

    # The group's type has no IPv6 match: the library refuses the entry and
    # says why.
    v6 = fc.FiltersEntry(2)
    v6.set_match(fc.MatchDstIPv6("2001:db8::/32"))
    v6.set_action(fc.ActionDeny())
    try:
        group.insert(v6)
    except fc.FiltersError as error:
        print(f"refused: {error.name} ({int(error.code)}): {error.cause}")

    # The wire bytes load back into an equal group.
    data = group.serialize()
    loaded = fc.FiltersGroup.from_bytes(data)
    assert loaded == group
    print(f"{len(data)} bytes, {len(loaded)} entries")
    print(loaded, end="")

    # The same group as rule text, and what changes when an entry is added.
    print(group.to_rules(), end="")
    newer = fc.FiltersGroup.from_rules(group.to_rules() + "entry 5 ttl 1 deny\n")
    change = fc.diff(group, newer)
    print(f"added {change.added}, removed {change.removed}, changed {change.changed}")
    change.apply(group)
    assert group == newer
    return 0


if __name__ == "__main__":
    sys.exit(main())
