"""Regular expressions, number formats and programs, as scripts use them."""

import errno
import os
import random
import re
import threading

import pytest

import vexomu


def test_regular_expressions():
    assert vexomu.match(r"(\w+)=(\d+)?", "width=7;") == ("width=7", "width", "7")
    assert vexomu.match("x", "abc") is None
    assert vexomu.split(",", ",a,,b,") == ["a", "b", ""]
    assert vexomu.substitute("(.)a", "xaya", "[$1]") == "[x][x]"
    assert vexomu.substitute("a", "banana", "o", count=2) == "bonona"
    with pytest.raises(RuntimeError, match="^rgx_match: error in regex at offset"):
        vexomu.match("(", "x")
    with pytest.raises(RuntimeError, match="exec error"):
        vexomu.match("(a+)+$", "a" * 100000 + "b")
    with pytest.raises(TypeError):
        vexomu.match("x", 5)


def expanded(replacement, match):
    def part(reference):
        if reference[1].isdigit():
            return match[int(reference[1])] or "" if int(reference[1]) <= match.re.groups else ""
        return {"&": match[0], "`": match.string[:match.start()], "'": match.string[match.end():]}[reference[1]]

    return re.sub(r"\$([1-9]+|[&`'])", part, replacement)


def substituted(pattern, rest, replacement, count):
    """A fresh text after every match, as the rules say."""
    match = re.search(pattern, rest)
    result, text = "", expanded(replacement, match) if match else ""
    while match and count > 0:
        result += rest[:match.start()] + text
        if not rest:
            break
        result += rest[0] if match.end() == 0 else ""
        rest = rest[match.end() or 1:]
        match, count = re.search(pattern, rest), count - 1
    return result + rest


def pieces(pattern, rest):
    found = []
    while match := re.search(pattern, rest):
        found += [rest[:match.start()]] if match.start() > 0 else []
        if match.end() == 0:
            return "rgx_split: pattern matches the empty string"
        rest = rest[match.end():]
    return [*found, rest]


def split(pattern, text):
    try:
        return vexomu.split(pattern, text)
    except RuntimeError as error:
        return str(error)


def test_random_patterns_agree_with_the_steps_taken_by_another_engine():
    chance = random.Random(7)
    atoms = ["a", "b", "(a)", "(b|)", ".", "^", "$", "a*", "b?", r"\b", "(?<=a)", "[ab]+"]
    for _ in range(20000):
        pattern, text, replacement = ("".join(chance.choices(choices, k=chance.randrange(most)))
                                      for choices, most in [(atoms, 4), (["a", "b", " ", "ab"], 10), ("$120&`'x", 7)])
        count = chance.randrange(5)
        assert vexomu.substitute(pattern, text, replacement, count) == substituted(pattern, text, replacement, count)
        assert split(pattern, text) == pieces(pattern, text)


def test_number_formats_are_those_of_the_thread():
    vexomu.setNumberFormat("mine", "scientific", 2, keepPadding=False)
    assert vexomu.formatNumber(12345.678, "mine") == "1.23E+04"
    assert vexomu.formatNumber(0.000123).strip() == "123.E-06"
    failures = []

    def elsewhere():
        try:
            vexomu.formatNumber(1.0, "mine")
        except vexomu.KeyError as error:
            failures.append(error)

    thread = threading.Thread(target=elsewhere)
    thread.start()
    thread.join()
    assert len(failures) == 1
    with pytest.raises(ValueError, match="no notation 'roman'"):
        vexomu.setNumberFormat("mine", "roman", 2)


def test_programs(tmp_path):
    assert vexomu.run("sort -n", input="10\n9\n-1\n") == (0, "-1\n9\n10\n")
    assert vexomu.run("sh -c 'echo out; exit 3'") == (3, "out\n")
    assert vexomu.run("sh -c 'echo $A-$HOME'", env={"A": "1", "PATH": os.environ["PATH"]}) == (0, "1-\n")
    # Neither side waits for the other, be there much to write or a reader that stops.
    much = "x" * 63 + "\n"
    assert vexomu.run("cat", input=much * 100000) == (0, much * 100000)
    assert vexomu.run("head -n 1", input=much * 100000) == (0, much)
    # Output that is redirected goes where it is sent to.
    assert vexomu.run(f"sh -c 'echo out; echo error >&2; exit 4' > '{tmp_path}/a file' 2>&1") == (4, "")
    assert vexomu.run(f"cat >> '{tmp_path}/a file'", input="in\n") == (0, "")
    assert (tmp_path / "a file").read_text() == "out\nerror\nin\n"
    for name, number in [("missing", errno.ENOENT), ("zero\0byte", errno.EINVAL)]:
        with pytest.raises(OSError) as caught:
            vexomu.run(f"cat < '{tmp_path}/{name}'")
        assert caught.value.errno == number
    with pytest.raises(Exception, match="no-such-program"):
        vexomu.run("no-such-program")
    with pytest.raises(RuntimeError):
        vexomu.run("echo 'open quote")
    ownItems = type("OwnItems", (), {"items": lambda self: [1]})()  # not the pairs that they are taken for
    for wrong, error in [({"input": b"bytes"}, TypeError), ({"env": {"A=": "1"}}, ValueError),
                         ({"env": ownItems}, AttributeError)]:
        with pytest.raises(error):
            vexomu.run("cat", **wrong)
