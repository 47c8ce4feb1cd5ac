"""The README's example is the one that is built, and does what the README says."""

import pathlib

import pytest

from counter import counter

ROOT = pathlib.Path(__file__).parents[2]


def test_the_readme_shows_the_code_that_is_built():
    code = (ROOT / "examples/counter/counter.cpp").read_text(encoding="utf-8")
    assert code in (ROOT / "README.md").read_text(encoding="utf-8")
    assert code.count("\n") < 40


def test_the_example_counts_and_says_what_is_wrong():
    assert counter.add() == 1 and counter.add(amount=5) == 6 and counter.value == 6
    for arguments, message in [((0,), "amount must be an Integer >= 1"), (("x",), "add[0]; found string, expecting int32")]:
        with pytest.raises((ValueError, TypeError)) as caught:
            counter.add(*arguments)
        assert str(caught.value) == message
    with pytest.raises(AttributeError, match="value is read-only"):
        counter.value = 1
