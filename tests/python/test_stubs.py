"""Stubs made from the tables of a kernel's classes hold up before a type checker."""

import os
import pathlib
import subprocess
import sys

import pytest

EXAMPLE = pathlib.Path(__file__).parents[2] / "examples" / "fem" / "scripts" / "demo.py"
WRONG = """
from fem import session
session.models = session.models
session.createModle("m")
session.createModel()
session.createModel("m", nmae="x")
"""


@pytest.fixture(scope="module")
def stubs(tmp_path_factory):
    folder = tmp_path_factory.mktemp("stubs")
    subprocess.run([sys.executable, "-m", "vexomu_stubs", "fem", "--run", EXAMPLE, "--output", folder / "fem.pyi"],
                   check=True, capture_output=True)
    # What the build made stands first in the path; the checker is to see stubs alone.
    module = pathlib.Path(subprocess.run([sys.executable, "-c", "import vexomu_stubs as s; print(s.__file__)"],
                                         check=True, capture_output=True, text=True).stdout.strip())
    (folder / "vexomu.pyi").write_text(module.with_name("vexomu.pyi").read_text())
    return folder


def checked(stubs, *arguments):
    environment = {**os.environ, "MYPYPATH": str(stubs), "PYTHONPATH": "", "LD_PRELOAD": ""}
    run = subprocess.run([sys.executable, "-m", "mypy", "--cache-dir", stubs / "cache", *arguments], env=environment,
                         capture_output=True, text=True)
    return run.stdout.splitlines()


def test_the_stubs_and_the_example_pass(stubs):
    assert checked(stubs, "--strict", stubs / "vexomu.pyi", stubs / "fem.pyi")[-1].startswith("Success")
    assert checked(stubs, EXAMPLE)[-1].startswith("Success")


def test_the_stub_of_the_binding_says_what_it_has(stubs, tmp_path):
    (tmp_path / "allowed").write_text(r"vexomu\.ObjectSequence\.__(contains|iter)__")  # they work by __getitem__
    run = subprocess.run([sys.executable, "-m", "mypy.stubtest", "vexomu", "--allowlist", tmp_path / "allowed"],
                         env={**os.environ, "MYPYPATH": str(stubs)}, cwd=tmp_path, capture_output=True, text=True)
    assert run.returncode == 0, run.stdout + run.stderr


def test_misuse_is_found(stubs, tmp_path):
    (tmp_path / "wrong.py").write_text(WRONG)
    errors = [line.split("error: ")[1] for line in checked(stubs, tmp_path / "wrong.py") if "error: " in line]
    assert [error.split("  ")[0] for error in errors] == [
        'Property "models" defined in "Session" is read-only',
        '"Session" has no attribute "createModle"; maybe "createModel"?',
        'Missing positional argument "name" in call to "createModel" of "Session"',
        'Unexpected keyword argument "nmae" for "createModel" of "Session"',
    ]


def test_a_class_without_an_object_is_any():
    run = subprocess.run([sys.executable, "-m", "vexomu_stubs", "fem"], capture_output=True, text=True)
    assert "'Model' is Any: --run a script that makes an object of that class" in run.stderr
    assert "    def createModel(self, name: str) -> Model:" in run.stdout and "\nModel = Any\n" in run.stdout
