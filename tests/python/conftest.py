"""Shared fixtures of the Python module's tests.

CTest puts the build tree's package first on PYTHONPATH and names the C++
reference program in FILTERS_CPP_REFERENCE (see CMakeLists.txt).
"""

import os
import subprocess

import pytest


class CppReference:
    """Runs python_cpp_reference, which prints what the C++ library makes of
    the same groups: bytes and dumps as hex."""

    def __init__(self, path):
        self.path = path
        self._samples = None

    def run(self, command, stdin=None):
        done = subprocess.run(
            [self.path, command],
            input=stdin,
            capture_output=True,
            text=True,
            check=True,
        )
        return done.stdout.splitlines()

    def samples(self):
        """{class name: (entry bytes, entry dump)} for one entry per class."""
        if self._samples is not None:
            return self._samples
        out = {}
        for line in self.run("samples"):
            name, data, dump = line.split(" ")
            out[name] = (bytes.fromhex(data), bytes.fromhex(dump).decode())
        self._samples = out
        return out

    def group(self):
        data, dump = self.run("group")
        return bytes.fromhex(data), bytes.fromhex(dump).decode()

    def load(self, data):
        """What C++ writes and prints after loading group bytes `data`."""
        out, dump = self.run("load", stdin=data.hex() + "\n")
        return bytes.fromhex(out), bytes.fromhex(dump).decode()


@pytest.fixture(scope="session")
def cpp():
    path = os.environ.get("FILTERS_CPP_REFERENCE")
    if not path:
        pytest.fail("FILTERS_CPP_REFERENCE is not set; run the tests through ctest")
    return CppReference(path)
