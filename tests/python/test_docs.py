"""help() is useful: the module, every class and every public method and
property carry a description, not only a signature."""

import inspect
import re

import filters_common as fc
import pytest

CLASSES = [getattr(fc, n) for n in fc.__all__ if inspect.isclass(getattr(fc, n))]


SIGNATURE = re.compile(r"^\s*\w+\(.*\)( -> .*)?$")


def _described(doc):
    # pybind11 writes the signature line itself; a description is what
    # remains besides it.
    if not doc:
        return False
    return any(line.strip() and not SIGNATURE.match(line) for line in doc.splitlines())


@pytest.mark.parametrize("cls", CLASSES, ids=lambda c: c.__name__)
def test_class_and_members_are_described(cls):
    assert _described(cls.__doc__), cls.__name__
    for name, member in vars(cls).items():
        if name.startswith("_") or isinstance(member, type):
            continue
        if isinstance(member, property) or callable(member) or hasattr(member, "__func__"):
            doc = getattr(member, "__doc__", None)
            assert _described(doc), f"{cls.__name__}.{name}"


def test_module_functions_are_described():
    for name in fc.__all__:
        obj = getattr(fc, name)
        if callable(obj) and not inspect.isclass(obj):
            assert _described(obj.__doc__), name
