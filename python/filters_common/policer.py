"""The policer library's classes under their own names: Policer, Mode,
Action (PolicerAction in the package) and their enumerations."""

from ._filters_common import Mode, Policer  # noqa: F401
from ._filters_common import PolicerAction as Action  # noqa: F401
from ._vocabulary import Color, ModeType  # noqa: F401
from ._vocabulary import PolicerActionType as ActionType  # noqa: F401
from ._vocabulary import PolicerStage as Stage  # noqa: F401

__all__ = ["Action", "ActionType", "Color", "Mode", "ModeType", "Policer", "Stage"]
