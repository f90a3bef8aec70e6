"""Filter groups of libfilter_common from Python.

The classes are the library's own, with Python names: FiltersGroup,
FiltersEntry, the 40 match classes (MatchSrcIPv4, MatchDSCP, ...), the 21
action classes (ActionDeny, ActionRedirect, ...), Counter and the policer
library's Policer, Mode and PolicerAction. Every check is the library's:
a refusal raises FiltersError with the library's code, name and cause;
serialize() gives the library's exact bytes and str() its exact dump.

    >>> import filters_common as fc
    >>> group = fc.FiltersGroup(7, stage=fc.Stage.INGRESS,
    ...                         type=fc.GroupType.IPV4_L4)
    >>> entry = fc.FiltersEntry(1, priority=10)
    >>> entry.set_match(fc.MatchSrcIPv4("10.0.0.0/8"))
    >>> entry.set_action(fc.ActionDeny())
    >>> group.insert(entry)
    >>> fc.FiltersGroup.from_bytes(group.serialize()) == group
    True

Submodules: ``caps`` (what stages and group types allow), ``policer`` (the
policer library's classes under their own names) and ``wire`` (the
protocol-buffers messages compiled for Python).
"""

from ._vocabulary import (
    ActionKind,
    Color,
    CopyToCpuCancel,
    CounterType,
    ErrorCode,
    Explanation,
    FiltersError,
    ForwardingType,
    GroupHeader,
    GroupType,
    L2SrcEntryType,
    MatchKind,
    ModeType,
    PacketResolution,
    PolicerActionType,
    PolicerStage,
    PortType,
    RuleTextError,
    RuleTextLocation,
    Stage,
    StpState,
    VlanTagging,
)
from . import _filters_common
from ._filters_common import *  # noqa: F401,F403  (the compiled classes)
from ._filters_common import (
    Action,
    FiltersEntry,
    FiltersGroup,
    GroupDiff,
    Match,
    diff,
)
from . import caps, policer  # noqa: E402


def match_class(kind: int) -> type:
    """The class that owns match kind ``kind`` (MatchToS for the ToS kind)."""
    return getattr(_filters_common, _filters_common.match_name(MatchKind(kind)))


def action_class(kind: int) -> type:
    """The class that owns action kind ``kind``."""
    return getattr(_filters_common, _filters_common.action_name(ActionKind(kind)))

__all__ = sorted(
    name for name in dir() if not name.startswith("_") and name not in ("annotations",)
)

# The public classes are documented and pickled under the package's name,
# not under the private modules that define them.
for _name in __all__:
    _obj = globals()[_name]
    if isinstance(_obj, type) and _obj.__module__.startswith("filters_common._"):
        _obj.__module__ = "filters_common"
del _name, _obj
