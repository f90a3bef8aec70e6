"""The typed stub declares the module as it is: every name and member it
declares exists, and every public name of the module is declared."""

import ast
import pathlib

import filters_common as fc
import pytest

STUB = pathlib.Path(fc.__file__).with_name("__init__.pyi")


def _declarations():
    tree = ast.parse(STUB.read_text())
    names = {}
    for node in tree.body:
        if isinstance(node, ast.ClassDef):
            members = set()
            for item in node.body:
                if isinstance(item, (ast.FunctionDef, ast.AsyncFunctionDef)):
                    members.add(item.name)
                elif isinstance(item, ast.AnnAssign):
                    members.add(item.target.id)
            names[node.name] = members
        elif isinstance(node, ast.FunctionDef):
            names[node.name] = set()
        elif isinstance(node, ast.ImportFrom):
            for alias in node.names:
                if alias.asname and not alias.asname.startswith("_"):
                    names[alias.asname] = set()
    return names


DECLARED = _declarations()


def test_the_stub_and_py_typed_are_installed_beside_the_module():
    assert STUB.is_file()
    assert STUB.with_name("py.typed").is_file()


@pytest.mark.parametrize("name", sorted(DECLARED))
def test_every_declared_name_and_member_exists(name):
    obj = getattr(fc, name)
    for member in DECLARED[name]:
        assert hasattr(obj, member), f"{name}.{member}"


def test_every_public_name_is_declared():
    assert set(fc.__all__) - set(DECLARED) == set()


def test_the_stub_covers_every_match_and_action_class():
    classes = [n for n in DECLARED if n.startswith(("Match", "Action")) and n not in
               ("MatchKind", "ActionKind", "Match", "Action")]
    assert len(classes) == 61
