"""What scripts do is written down as a script, and that script does it again in a fresh process."""

import math
import os
import pathlib
import random
import select
import subprocess
import sys

import numpy
import pytest

import vexomu
from probe import ledger, shelf

REPLAY = """
import runpy, sys
import probe
runpy.run_path(sys.argv[1])
sys.stdout.buffer.write(repr((probe.ledger.read(), probe.ledger.title)).encode("utf-8", "backslashreplace"))
"""


def replayed(path):
    return subprocess.run([sys.executable, "-c", REPLAY, path], check=True, capture_output=True).stdout


def done(first):
    """What was noted since, as a process that replays it sees it."""
    return repr((ledger.read()[first:], ledger.title)).encode("utf-8", "backslashreplace")


@pytest.fixture
def journal(tmp_path):
    path = tmp_path / "journal.py"
    vexomu.startJournal(path)
    yield path
    try:
        vexomu.stopJournal()
    except RuntimeError:
        pass


def lines(path):
    return [line for line in path.read_text().splitlines() if not line.startswith("from ")]


def test_only_what_succeeded_and_may_be_journaled_is_written(journal):
    ledger.record(1)
    with pytest.raises(RuntimeError):
        ledger.record(1, 2)
    with pytest.raises(OverflowError):
        ledger.record(1 << 40)
    ledger.read()
    ledger.title = "it's"
    with pytest.raises(TypeError):
        ledger.title = 5
    ledger.page().record((2,))
    assert lines(journal) == ["ledger.record(1)", r"ledger.title = 'it\'s'", "ledger.page()",
                              "ledger.record((2,))"]


VALUES = [0, -5, 4294967295, 0.1, 1e300, 5e-324, -0.0, math.nan, math.inf, -math.inf, True, None, 2 + 3j, "", "it's",
          'a "b" \\', "line\nnext\ttab\r\0end", "\x7f\x1b", "grün \u2028 \U0001f600", "\udc80\udcff", (), (1,),
          [1, [2.5, "x"], ()], {}, {"k": [1]}, {1: "one", -2: None}, vexomu.ON, vexomu.Constant("STEEL"),
          vexomu.Constant("two words"), vexomu.Path("a.b"), vexomu.TypeName("Part"), {"c": (vexomu.Constant("STEEL"),)},
          numpy.array([[1, 2], [3, 4]], dtype="i4"), numpy.array([0.1, math.nan], dtype="f4"), numpy.linspace(0, 1, 7),
          numpy.float32(0.1), numpy.int8(-3), numpy.int16(300), numpy.uint32(7), numpy.zeros((2, 0, 3)),
          *map(vexomu.Constant, ["None", "if", "v", "ledger", "float"])]


def test_every_kind_of_value_comes_back_equal(journal):
    first = len(ledger.read())
    for value in VALUES:
        ledger.record(value)
    ledger.title = "all"
    vexomu.stopJournal()
    assert journal.read_bytes().count(b"STEEL = Constant") == 1
    assert replayed(journal) == done(first)


def test_objects_that_only_a_script_has_are_variables_of_one_journal(journal, tmp_path):
    first = len(ledger.read())
    here = ledger.vector(1.5, y=2)
    there = ledger.vector(3)
    here.scale(2)
    for vector in (here, there, here):
        ledger.point(vector)
    ledger.title = "vectors"
    del here
    ledger.vector(9).scale(3)
    ledger.point(where=there + 1)  # the sum has no variable
    vexomu.stopJournal()
    assert lines(journal)[:3] == ["v = ledger.vector(1.5, y=2)", "v1 = ledger.vector(3)", "v.scale(2)"]
    assert lines(journal)[-1].startswith("# ledger.point(where=<")
    assert ledger.read()[first:-2] == (3.0, 4.0, 3.0, 0.0, 3.0, 4.0)
    assert replayed(journal) == repr((ledger.read()[first:-2], "vectors")).encode()
    vexomu.startJournal(tmp_path / "next.py")
    there.scale(2)
    assert lines(tmp_path / "next.py") == ["# <Vector object>.scale(2)"]


def test_an_object_whose_text_is_no_path_is_what_scripts_import(journal):
    shelf.echo(1)
    shelf.echo([shelf])
    shelf.add("a\n\0").describe()
    assert lines(journal)[:2] == ["shelf.echo(1)", "shelf.echo([shelf])"]
    assert lines(journal)[-1] == r"shelf.box('a\x0a\x00').describe()"


def test_random_sessions_replay_equal(tmp_path):
    for seed in range(5):
        chance = random.Random(seed)
        path = tmp_path / f"session{seed}.py"
        first = len(ledger.read())

        def value(depth=0):
            if depth < 3 and chance.random() < 0.4:
                items = [value(depth + 1) for _ in range(chance.randrange(4))]
                return chance.choice([list, tuple])(items)
            return chance.choice(VALUES[:21] + [chance.random(), chance.getrandbits(31), "x" * chance.randrange(40)])

        vexomu.startJournal(path)
        for _ in range(60):
            chance.choice([lambda: ledger.record(value()), lambda: setattr(ledger, "title", str(chance.random())),
                           lambda: ledger.point(ledger.vector(chance.random()))])()
        vexomu.stopJournal()
        assert replayed(path) == done(first)


def test_a_journal_that_cannot_be_written_says_so(journal, tmp_path):
    with pytest.raises(RuntimeError, match="a journal is being written already: .*journal.py"):
        vexomu.startJournal(tmp_path / "other.py")
    vexomu.stopJournal()
    with pytest.raises(RuntimeError, match="no journal is being written"):
        vexomu.stopJournal()
    with pytest.raises(FileNotFoundError):
        vexomu.startJournal(tmp_path / "missing" / "journal.py")
    if pathlib.Path("/dev/full").exists():
        with pytest.raises(OSError):
            vexomu.startJournal("/dev/full")
    reader, writer = os.pipe()
    os.set_blocking(writer, False)
    while select.select([], [writer], [], 0)[1]:
        os.write(writer, bytes(4096))
    with pytest.raises(BlockingIOError):
        vexomu.startJournal(writer)
    os.close(reader)
    vexomu.startJournal(journal)  # none of the failures left one open


def test_operators_reach_the_kernel():
    a, b = ledger.vector(3, 4), ledger.vector(1, 1)
    first = len(ledger.read())
    for vector in (a + b, a - b, -a, a + 1, 1 - a):
        ledger.point(vector)
    assert ledger.read()[first:] == (4.0, 5.0, 2.0, 3.0, -3.0, -4.0, 4.0, 5.0, -2.0, -3.0)
    assert abs(a) == float(a) == 5.0
    assert a and not ledger.vector(0)
    with pytest.raises(TypeError, match="^no int can be made of a vexomu.Vector$"):
        int(a)
    with pytest.raises(RuntimeError, match="^Error: Illegal operation for type$"):
        a * b
    with pytest.raises(RuntimeError, match=r"^Error: Illegal operation for type\.$"):
        -shelf
    with pytest.raises(RuntimeError, match="^Error: Cannot coerce.$"):
        shelf + 1
    with pytest.raises(TypeError, match="Vector"):
        a + "text"
    with pytest.raises(TypeError, match="unsupported operand"):
        a + object()
    assert (a + type("Other", (), {"__radd__": lambda self, left: left})()) is a
