"""The enumerations agree with the library's own names and tables, and the
capability queries answer from the library's tables."""

import filters_common as fc
import pytest


def test_every_match_kind_has_its_class():
    assert [int(k) for k in fc.MatchKind] == list(range(39))
    for kind in fc.MatchKind:
        cls = fc.match_class(kind)
        assert cls.__name__ == fc.match_name(kind)
        assert issubclass(cls, fc.Match)


def test_every_action_kind_has_its_class():
    assert [int(k) for k in fc.ActionKind] == list(range(21))
    for kind in fc.ActionKind:
        assert fc.action_class(kind).__name__ == fc.action_name(kind)


def test_error_codes_carry_the_library_names():
    for code in fc.ErrorCode:
        name = "FILTERS_OK" if code == 0 else "FILTERS_ERR_" + code.name
        assert fc.error_name(code) == name
        error = fc.FiltersError(code)
        assert error.name == name and error.code is code
        assert str(error) == f"{name} ({int(code)}): {fc.error_description(code)}"


def test_stage_and_type_names_follow_the_library():
    for stage in fc.Stage:
        assert fc.stage_name(stage) == "FILTERS_STAGE_" + stage.name
    for group_type in fc.GroupType:
        assert fc.type_name(group_type) == "FILTERS_TYPE_" + group_type.name
    assert fc.caps.known_stages() == list(fc.Stage)
    assert fc.caps.known_group_types() == list(fc.GroupType)


def test_capabilities():
    assert fc.caps.allowed_match_kinds(fc.GroupType.NONE) == []
    assert fc.caps.allowed_match_kinds(fc.GroupType.IPV6_VRF) == [
        fc.MatchKind.ALL, fc.MatchKind.DST_IPV6, fc.MatchKind.VRF_ID]
    assert fc.caps.allowed_group_types(fc.Stage.EGRESS) == [
        fc.GroupType.NONE, fc.GroupType.EGRESS_L2]
    assert fc.caps.allowed_action_kinds(fc.Stage.EGRESS) == [
        fc.ActionKind.PERMIT, fc.ActionKind.DENY]
    assert fc.caps.required_policer_stage(fc.Stage.INGRESS) is fc.PolicerStage.INGRESS
    assert fc.caps.allowed_match_kinds(99) is None
    assert fc.caps.allowed_group_types(9) is None
    assert fc.caps.allowed_action_kinds(9) is None
    assert fc.caps.required_policer_stage(9) is None


def test_capabilities_agree_with_insertion():
    for group_type in fc.caps.known_group_types():
        allowed = set(fc.caps.allowed_match_kinds(group_type))
        for kind in (fc.MatchKind.TTL, fc.MatchKind.DST_IPV6):
            entry = fc.FiltersEntry(1)
            entry.set_match(fc.match_class(kind)(1) if kind == fc.MatchKind.TTL
                            else fc.MatchDstIPv6("::1"))
            code = fc.caps.explain(fc.Stage.LOOKUP, group_type, entry).code
            assert (code == 0) == (kind in allowed)


def test_filters_error_is_a_value_error_and_pickles():
    import pickle

    error = fc.FiltersError(-6, "why")
    assert isinstance(error, ValueError)
    again = pickle.loads(pickle.dumps(error))
    assert (again.code, again.name, again.cause) == (error.code, error.name, "why")


@pytest.mark.parametrize("module", ["filters_common", "filters_common.caps",
                                    "filters_common.policer", "filters_common.wire"])
def test_modules_have_docstrings(module):
    import importlib

    assert importlib.import_module(module).__doc__
