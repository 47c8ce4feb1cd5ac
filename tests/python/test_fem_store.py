"""Models of the example kernel in files: what was saved comes back, and what cannot be done is said."""

import pathlib
import resource
import runpy
import shutil
import sqlite3
import subprocess
import sys

import numpy
import pytest

import vexomu
from fem import session

ROOT = pathlib.Path(__file__).parents[2]
SCRIPTS = ROOT / "examples/fem/scripts"
MESH = ROOT / "examples/fem/data/assembly.msh"
demo = runpy.run_path(SCRIPTS / "demo.py")
text = demo["text"]
REOPEN = "import runpy, sys; demo = runpy.run_path(sys.argv[1]); demo['session'].open(sys.argv[2]); print(demo['text']())"


@pytest.fixture(autouse=True)
def nothing():
    for name in session.models.keys():
        session.deleteModel(name)


@pytest.fixture
def small(tmp_path):
    """A saved model and its file."""
    model = session.createModel("small")
    model.createPart("part", MESH, body=1)
    model.createStep("step", vexomu.Constant("STATIC")).createField("field").append([float(i) for i in range(5000)])
    session.save(tmp_path / "small.vx")
    return model, tmp_path / "small.vx"


def reopened(file):
    run = subprocess.run([sys.executable, "-c", REOPEN, SCRIPTS / "demo.py", file], capture_output=True, text=True)
    return run.stdout.rstrip("\n") or run.stderr


def test_everything_comes_back(tmp_path):
    model = demo["build"]()
    before, first, second = text(), tmp_path / "a", tmp_path / "b"
    slivers, field = model.sets["slivers"], model.steps["pressure"].fields["quality"]
    session.save(first)
    assert text() == before == reopened(first) and session.file == str(first)
    assert slivers == model.sets["slivers"], "a save leaves the objects that scripts hold"
    # Changes and deletions of everything there is, into another file and back.
    model.deletePart("body-2")
    model.parts["plate"].translate(dx=0.5, dz=-1)
    model.parts.changeKey("body-3", "third")
    slivers.add(model.parts["third"], model.parts["third"].elements.keys()[:2])
    field.append(numpy.linspace(0, 1, 9000))
    after = text()
    session.save(second)
    assert text() == after == reopened(second) and reopened(first) == before
    field.append([7])
    model.steps["pressure"].createField("empty")
    session.save()
    assert reopened(second) == text() != after
    session.open(first)
    assert text() == before
    with pytest.raises(ReferenceError, match="slivers'] no longer exists"):
        slivers.compress()
    session.save(second)
    assert reopened(second) == before, "what was in the file is replaced"


def test_a_field_is_a_sequence(small):
    field = small[0].steps["step"].fields["field"]
    assert [field[0], field[-1], field[4999], len(field)] == [0, 4999, 4999, 5000]
    assert field[4998:].tolist() == [4998, 4999] and sum(field) == sum(range(5000))
    assert field.extremes() == (0, 4999)
    with pytest.raises(IndexError):
        field[5000]
    with pytest.raises(ValueError, match=r"fields\['none'\] is empty"):
        small[0].steps["step"].createField("none").extremes()


def test_files_that_cannot_be_opened_are_named_with_the_reason(small, tmp_path):
    before = text()
    file = small[1]
    rows = [
        (tmp_path / "missing", FileNotFoundError, "No such file"),
        (f"{file}\0", OSError, "Invalid argument"),
        (MESH, RuntimeError, "is not a store: it is a file of another format"),
    ]
    for path, error, message in rows:
        with pytest.raises(error, match=message) as caught:
            session.open(path)
        assert str(path) in str(caught.value) and text() == before and session.file == str(file)
    session.open(file, readOnly=True)
    assert text() == before
    with pytest.raises(RuntimeError, match=f"'{file}' was opened read-only"):
        session.save()
    field = session.models["small"].steps["step"].fields["field"]
    with pytest.raises(ValueError, match="takes no changes: save the session first"):
        field.append([1.0])
    session.save(tmp_path / "copy")
    assert reopened(tmp_path / "copy") == before


def test_a_save_that_fails_leaves_file_and_session(small, tmp_path):
    model, file = small
    session.open(file)
    model = session.models["small"]
    before, field = text(), model.steps["step"].fields["field"]
    with pytest.raises(FileNotFoundError, match="no folder/x"):
        session.save(tmp_path / "no folder/x")
    locker = sqlite3.connect(file, isolation_level=None)
    locker.execute("BEGIN IMMEDIATE")
    model.createSet("new")
    with pytest.raises(RuntimeError, match="is in use: waited"):
        session.save()
    locker.rollback()
    # No room for more: what is new is kept in memory, and what had gone to the file comes back as it was saved.
    new = model.steps["step"].createField("new")
    new.append(numpy.arange(100000.0))
    field.append(numpy.arange(50000.0))
    room = resource.getrlimit(resource.RLIMIT_FSIZE)
    resource.setrlimit(resource.RLIMIT_FSIZE, (file.stat().st_size, room[1]))
    try:
        with pytest.raises(RuntimeError, match=f"'{file}' cannot be written"):
            session.save()
        with pytest.raises(RuntimeError, match="fresh' cannot be "):
            session.save(tmp_path / "fresh")
        with pytest.raises(RuntimeError, match=f"'{file}' cannot be "):
            field.append(numpy.arange(9e6))
        with pytest.raises(RuntimeError, match="changes of the array were rolled back"):
            field[4000]
        with pytest.raises(RuntimeError, match="was rolled back after a failure"):
            session.save()
    finally:
        resource.setrlimit(resource.RLIMIT_FSIZE, room)
    assert not (tmp_path / "fresh").exists() and reopened(file) == before
    assert new.extremes() == (0, 99999) and len(field) == 5000 and field.extremes() == (0, 4999)
    field.append([1])
    session.save()
    assert reopened(file) == text()
    file.unlink()
    model.createSet("newer")
    field.append([2])
    with pytest.raises(RuntimeError, match="it was moved, removed or replaced since it was opened"):
        session.save()
    session.save(tmp_path / "elsewhere")
    assert reopened(tmp_path / "elsewhere") == text()


def test_a_file_of_an_older_version_opens_and_is_saved_as_the_newest(tmp_path):
    # Written by this kernel when materials had no elastic modulus; tests/fem/data/README.md has the script.
    file = shutil.copy(ROOT / "tests/fem/data/version1.vx", tmp_path / "old")
    assert session.open(file) == ()
    model, steel = session.models["old"], vexomu.Constant("STEEL")
    material, part = model.materials[steel], model.parts["part"]
    assert (material.density, material.elasticModulus, part.material) == (7.85e-9, 0.0, steel)
    assert part.description == "two tetrahedra" and part.elements[8].nodes == (2, 30, 4, 5)
    assert [element.label for element in model.sets["both"]] == [8, 7]
    assert model.steps["load"].loads == {"both": 2.5} and list(model.steps["load"].fields["u"]) == [0.5, -1, 3]
    material.elasticModulus = 210e3
    session.save()
    assert reopened(file) == text() and "7.85e-09, 210000.0" in text()


@pytest.mark.parametrize("what", ["session.open(file); session.save()", "session.createModel('x'); session.save(file)"])
def test_another_session_that_saved_meanwhile_is_noticed(small, what):
    file = small[1]
    subprocess.run([sys.executable, "-c", f"import sys; from fem import session; file = sys.argv[1]; {what}", file],
                   check=True)
    saved = reopened(file)
    with pytest.raises(RuntimeError, match="was saved by another session after this one had opened it; open it again"):
        session.save()
    assert reopened(file) == saved
    session.open(file)
    session.save()


def test_a_file_stays_the_same_wherever_the_process_goes(small, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    session.save("here")
    monkeypatch.chdir("/")
    small[0].steps["step"].fields["field"].append(numpy.arange(50000.0))  # locks the file
    session.save(tmp_path / "here")
    assert session.file == str(tmp_path / "here") and reopened(tmp_path / "here") == text()


def test_a_journal_saves_and_opens_too(tmp_path):
    vexomu.startJournal(tmp_path / "journal.py")
    session.createModel("kept").createPart("part", MESH, body=1)
    session.save(tmp_path / "a")
    session.deleteModel("kept")
    session.open(tmp_path / "a")
    session.models["kept"].createSet("set", {"part": session.models["kept"].parts["part"].elements.keys()[:1]})
    session.save()
    vexomu.stopJournal()
    saved = reopened(tmp_path / "a")
    assert "set set" in saved
    (tmp_path / "a").unlink()
    subprocess.run([sys.executable, tmp_path / "journal.py"], check=True)
    assert reopened(tmp_path / "a") == saved
