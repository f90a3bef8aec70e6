"""What the library's tables allow: group types per stage, match kinds per
group type, action kinds per stage and the policer stage each stage needs.

Every answer is a list of IntEnum members in ascending order, or None for a
stage or type the tables do not know.
"""

from ._filters_common import (  # noqa: F401
    allowed_action_kinds,
    allowed_group_types,
    allowed_match_kinds,
    explain,
    known_group_types,
    known_stages,
    required_policer_stage,
)

__all__ = [
    "allowed_action_kinds",
    "allowed_group_types",
    "allowed_match_kinds",
    "explain",
    "known_group_types",
    "known_stages",
    "required_policer_stage",
]
