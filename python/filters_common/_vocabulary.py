"""The vocabulary of the filter model as Python types.

The numbers are the library's own (filter_types.h, filter_match_types.h,
filter_action_types.h, filter_counter.h and the policer library); every
enumeration is an ``enum.IntEnum``, so its members compare equal to the plain
numbers the library uses. Members are named after the C enumerators without
their common prefix (``FILTERS_MATCH_SRC_IPV4`` is ``MatchKind.SRC_IPV4``).

FiltersError and RuleTextError are the exceptions the module raises, and
Explanation, GroupHeader and RuleTextLocation the small records it returns.
"""

from __future__ import annotations

import enum
from typing import List, NamedTuple, Optional


class MatchKind(enum.IntEnum):
    """The kind of a match; each value belongs to one match class."""

    ALL = 0
    INGRESS_PORTS = 1
    EXTERNAL_VLAN_ID = 2
    TPID = 3
    DST_MAC = 4
    DST_L4_PORT = 5
    SRC_L4_PORT = 6
    SRC_MAC = 7
    L2_SRC_ENTRY_TYPE = 8
    SRC_IPV4 = 9
    DST_IPV4 = 10
    INTERNAL_VLAN_ID = 11
    PCP = 12
    INTERNAL_PCP = 13
    SRC_IPV6 = 14
    DST_IPV6 = 15
    VLAN_TAGGING = 16
    IP_PROTOCOL = 17
    PACKET_RES = 18
    MPLS_TERM = 19
    TOS = 20
    VIRTUAL_PORT = 21
    EGRESS_PORTS = 22
    INGRESS_STP_STATE = 23
    VLAN_INFO = 24
    SRC_PORT = 25
    TTL = 26
    VRF_ID = 27
    DROP = 28
    MY_STATION_HIT = 29
    CPU_PORT = 30
    FORWARDING_TYPE = 31
    DESTINATION_CPU = 32
    CPU_INJECTED_PACKETS = 33
    DST_L4_PORT_RANGE = 34
    L2_DEST_HIT = 35
    L3_SRC_ROUTE_HIT = 36
    VIRTUAL_PORT_CLASS = 37
    UNKNOWN_DEST_IP = 38


class ActionKind(enum.IntEnum):
    """The kind of an action; each value belongs to one action class."""

    PERMIT = 0
    DENY = 1
    COPY_TO_CPU = 2
    BLOCK_EGRESS_PORTS = 3
    COPY_TO_CPU_CANCEL = 4
    SET_PCP = 5
    SET_PCP_AND_QUEUE = 6
    SET_INNER_PCP = 7
    SET_DSCP = 8
    MAP_TO_COS_QUEUE = 9
    MAP_TO_CPU_COS_QUEUE = 10
    REDIRECT = 11
    REPLACE_DST_MAC = 12
    REDIRECT_CANCEL = 13
    REPLACE_SRC_MAC = 14
    L3_SWITCH = 15
    BLACK_HOLE = 16
    COPY_INNER_PCP = 17
    MPLS_PORT_SET = 18
    L2_TO_CPU_DROP = 19
    DO_NOT_LEARN_MAC = 20


class ErrorCode(enum.IntEnum):
    """The result codes of the library; every refusal is negative."""

    OK = 0
    NOT_FOUND = -3
    INVALID = -4
    REFUSED = -5
    MATCH_NOT_ALLOWED = -6
    TYPE_NOT_IN_STAGE = -7
    UNKNOWN_STAGE = -8
    ACTION_NOT_ALLOWED = -9
    POLICER_STAGE = -10


class Stage(enum.IntEnum):
    """The pipeline stage a group is programmed into."""

    LOOKUP = 0
    VLAN = 1
    INGRESS = 2
    EGRESS = 3


class GroupType(enum.IntEnum):
    """The kind of key a group's entries match on."""

    NONE = 0
    L2 = 1
    SOURCE_GUARD = 2
    IPV4_L4 = 3
    IPV4_QOS = 4
    EGRESS_L2 = 5
    L2_VLAN = 6
    L2_L4 = 7
    IPV6_VRF = 8
    QOS = 9
    IPV4 = 10
    CPU = 11
    LOOKUP_HIT = 12
    CPU_FORWARD = 13
    UNKNOWN_DEST = 14


class CounterType(enum.IntEnum):
    """What a counter counts; an entry refuses INVALID."""

    INVALID = 0
    PACKETS = 1
    OCTETS = 2
    RED_OCTETS = 3
    NOT_RED_OCTETS = 4
    YELLOW_OCTETS = 5
    NOT_YELLOW_OCTETS = 6
    GREEN_OCTETS = 7
    NOT_GREEN_OCTETS = 8


class PortType(enum.IntEnum):
    """A kind of port an ingress port match can exclude."""

    CPU_PORT = 0
    FRONT_PANEL_PORT = 1
    LAG_PORT = 2
    VIRTUAL_PORT = 3


class VlanTagging(enum.IntEnum):
    """Whether a packet carries a VLAN tag; any non-zero value is tagged."""

    UNTAGGED = 0
    SINGLE_TAGGED = 1
    DOUBLE_TAGGED = 2


class L2SrcEntryType(enum.IntEnum):
    """How the L2 table holds the packet's source MAC."""

    NOT_FOUND = 0
    DYNAMIC = 1
    STATIC = 2


class PacketResolution(enum.IntEnum):
    """The packet class the switch resolved from its headers."""

    UNKNOWN = 0
    CONTROL = 1
    L2_UNICAST = 2
    L2_UNKNOWN_UNICAST = 3
    L2_MULTICAST = 4
    L2_BROADCAST = 5
    L3_UNICAST = 6
    L3_MULTICAST = 7
    MPLS = 8


class StpState(enum.IntEnum):
    """The spanning-tree state of the ingress port."""

    DISABLED = 0
    BLOCKING = 1
    LEARNING = 2
    FORWARDING = 3


class ForwardingType(enum.IntEnum):
    """How the packet is being forwarded."""

    L2_BRIDGED = 0
    L3_ROUTED = 1
    MPLS = 2


class CopyToCpuCancel(enum.IntEnum):
    """Which earlier CPU decision ActionCopyToCpuCancel takes back."""

    COPY_TO_CPU_CANCEL = 0
    SWITCH_TO_CPU_CANCEL = 1


class PolicerStage(enum.IntEnum):
    """Where in the pipeline a policer meters."""

    INGRESS = 0
    EGRESS = 1
    NONE = 2


class ModeType(enum.IntEnum):
    """The metering algorithm of a policer Mode."""

    SRTCM = 0
    TRTCM = 1
    TRTCM_DS = 2
    FLOW = 3
    NONE = 4


class Color(enum.IntEnum):
    """The colour a meter gives a packet."""

    RED = 0
    YELLOW = 1
    GREEN = 2


class PolicerActionType(enum.IntEnum):
    """What a PolicerAction does to packets of its colour."""

    DROP = 0
    SET_PCP = 1
    SET_DSCP = 2


def _error_name(code: int) -> str:
    from . import _filters_common

    return _filters_common.error_name(code)


def _error_description(code: int) -> str:
    from . import _filters_common

    return _filters_common.error_description(code)


class FiltersError(ValueError):
    """A refusal of the library.

    ``code`` is the negative result code (an ErrorCode member when the code
    is known), ``name`` its symbolic name ("FILTERS_ERR_MATCH_NOT_ALLOWED"),
    and ``cause`` the library's explanation of what was refused, or None
    where the library cannot tell.
    """

    def __init__(self, code: int, cause: Optional[str] = None) -> None:
        try:
            self.code: int = ErrorCode(code)
        except ValueError:
            self.code = code
        self.name: str = _error_name(code)
        self.cause: Optional[str] = cause
        detail = cause if cause is not None else _error_description(code)
        super().__init__(f"{self.name} ({int(code)}): {detail}")

    def __reduce__(self):
        return (type(self), (int(self.code), self.cause))


class RuleTextLocation(NamedTuple):
    """One error in rule text: where it is and what is wrong."""

    file: str
    line: int
    column: int
    message: str

    def __str__(self) -> str:
        return f"{self.file}:{self.line}:{self.column}: error: {self.message}"


class RuleTextError(ValueError):
    """Rule text that does not compile; ``errors`` lists every error found."""

    def __init__(self, errors: List[RuleTextLocation]) -> None:
        self.errors: List[RuleTextLocation] = list(errors)
        super().__init__("\n".join(str(e) for e in self.errors))

    def __reduce__(self):
        return (type(self), (self.errors,))


class Explanation(NamedTuple):
    """What inserting an entry into a group gives (``code``) and why."""

    code: int
    cause: str


class GroupHeader(NamedTuple):
    """The header fields of a group, as a GroupDiff records them."""

    id: int
    priority: int
    stage: int
    type: int
