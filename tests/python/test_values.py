"""Values cross between Python and the kernel and come back as they were."""

import math
import pathlib
import subprocess
import sys

import numpy
import pytest

import vexomu
from probe import shelf


@pytest.mark.parametrize("value", [
    None, 0, -1, 2**30 - 1, 2**30, -2**30, 2**31 - 1, -2**31, 2**31, 2**32 - 1,
    0.0, -0.0, 1.5, 1e300, 5e-324, math.inf, -math.inf, math.nan, 1 + 2j,
    "", "text", "it's \\ and \n", "zero\0byte", "caf\u00e9 \U0001f680", "sixteen bytes...", "x" * 100000,
    (), (1,), (1, ("a", (2.5, None))), [], [1, "b", [3]], {}, {"k": 1, "l": [1, 2]}, {-5: (1,), 1: "a"},
])
def test_a_value_comes_back_equal_and_of_its_kind(value):
    back = shelf.echo(value)
    assert repr(back) == repr(value) and type(back) is type(value)


def test_text_that_is_not_utf8_survives():
    text = b"a\xffb".decode("utf-8", "surrogateescape")
    assert shelf.echo(text) == text
    with pytest.raises(UnicodeEncodeError):
        shelf.echo("\ud800")


def test_path_like_objects_are_text_and_ranges_lists():
    assert shelf.echo([pathlib.PurePosixPath("a/b.txt"), range(2, 7, 3), range(0)]) == ["a/b.txt", [2, 5], []]
    with pytest.raises(ZeroDivisionError):
        shelf.echo(type("Broken", (), {"__fspath__": lambda self: 1 // 0})())


@pytest.mark.parametrize("number", [2**32, -2**31 - 1, 10**30, numpy.int64(2**40)])
def test_integers_that_do_not_fit_overflow(number):
    with pytest.raises(OverflowError, match="int does not fit in 32 bits"):
        shelf.echo(number)
    with pytest.raises(OverflowError):
        shelf.echo({number if isinstance(number, int) else int(number): 1})


@pytest.mark.parametrize("scalar, expected", [
    (numpy.int8(-3), -3), (numpy.int16(7), 7), (numpy.int32(9), 9), (numpy.int64(11), 11), (numpy.uint32(2**31), 2**31),
    (numpy.uint8(200), 200), (numpy.float32(0.5), 0.5), (numpy.float64(0.1), 0.1), (numpy.bool_(True), 1), (True, 1),
    (numpy.complex64(1 + 2j), 1 + 2j), (numpy.array(-5, dtype=">i2"), -5),
])
def test_numpy_scalars_and_booleans_are_numbers(scalar, expected):
    back = shelf.echo(scalar)
    assert back == expected and type(back) is type(expected)


@pytest.mark.parametrize("array", [
    numpy.arange(6, dtype="i4").reshape(2, 3), numpy.array([0.1, 0.2]), numpy.ones((2, 2, 2), dtype="f4"),
    numpy.arange(10, dtype="f8")[::-2], numpy.arange(6, dtype=">i4").reshape(2, 3)[:, ::2], numpy.ones((), dtype=">f8")[None],
    numpy.asfortranarray(numpy.arange(6.0).reshape(2, 3)), numpy.zeros((0,)),
])
def test_numeric_arrays_keep_shape_kind_and_elements_and_outlive_the_value(array):
    back = [shelf.echo(array), shelf.echo(array * 2)][0]
    assert isinstance(back, numpy.ndarray) and back.dtype == array.dtype.newbyteorder("=") and back.shape == array.shape
    assert (back == array).all()


def test_without_numpy_an_array_is_a_buffer():
    program = """
import array, sys
sys.modules["numpy"] = None
from probe import shelf
back = shelf.echo(array.array("d", [1, 2.5]))
print(back, memoryview(back).tolist(), shelf.echo(back), shelf.echo(memoryview(bytes(1001))))
"""
    run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True)
    assert run.stdout == "array([1.0, 2.5], 'd') [1.0, 2.5] array([1.0, 2.5], 'd') <vexomu.Array of 1001 elements>\n"


def test_integer_arrays_of_other_widths_become_int32_or_overflow():
    assert shelf.echo(numpy.array([1, -2], dtype="i8")).tolist() == [1, -2]
    assert shelf.echo(numpy.array([1, 255], dtype="u1")).dtype == numpy.int32
    for large in (numpy.array([2**31], dtype="i8"), numpy.broadcast_to(0.0, (70000, 70000))):
        with pytest.raises(OverflowError):
            shelf.echo(large)
    for strange in (numpy.array(["a"]), numpy.zeros(3, dtype="V0"), numpy.datetime64("2026-11-21"), numpy.ones(2, "c8")):
        with pytest.raises(TypeError):
            shelf.echo(strange)


def test_constants_are_texts_that_show_their_bare_name():
    assert repr(vexomu.ON) == "ON" and vexomu.ON == "ON"
    back = shelf.echo([vexomu.OFF, vexomu.Path(".a..b"), vexomu.TypeName("Part")])
    assert [type(item) for item in back] == [vexomu.Constant, vexomu.Path, vexomu.TypeName]
    assert [str(item) for item in back] == ["OFF", ".a..b", "Part"]
    assert repr([shelf.constant(vexomu.ON), shelf.constant(True), shelf.constant(value=0)]) == "[ON, ON, OFF]"


@pytest.mark.parametrize("value, message", [
    (b"bytes", "a bytes has no value that the kernel understands"),
    ({1, 2}, "a set has no value that the kernel understands"),
    (object(), "a object has no value that the kernel understands"),
    ({"a": 1, 2: 3}, "dictionary keys must be all str or all int, not str and int"),
    ({2: 3, "a": 1}, "dictionary keys must be all str or all int, not int and str"),
    ({(1,): 2}, "dictionary keys must be str or int, not tuple"),
])
def test_values_without_a_counterpart_are_type_errors(value, message):
    for argument in (value, [value], {"k": value}):
        with pytest.raises(TypeError) as caught:
            shelf.echo(argument)
        assert str(caught.value) == message


def test_cycles_and_deep_nesting_end_in_an_error():
    cycle = []
    cycle.append(cycle)
    cyclic_dict = {}
    cyclic_dict["self"] = [cyclic_dict]
    deep = 1
    for _ in range(100000):
        deep = (deep,)
    for value in (cycle, cyclic_dict, deep):
        with pytest.raises(ValueError, match="value nested deeper than 200 levels"):
            shelf.echo(value)
    allowed = 1
    for _ in range(190):
        allowed = [allowed]
    assert shelf.echo(allowed) == allowed


def test_a_conversion_that_changes_the_list_is_noticed():
    items = []

    class Shrinking:
        def __index__(self):
            items.clear()
            return 1

    items.extend([Shrinking(), 2, 3])
    with pytest.raises(RuntimeError, match="list changed size"):
        shelf.echo(items)


def test_a_value_python_has_no_kind_for_is_a_type_error():
    with pytest.raises(TypeError, match="a value of type expression cannot be shown to Python"):
        shelf.expression()


@pytest.mark.parametrize("values, kind, expected", [
    ([[1, 2], (3, 4)], "i", numpy.array([[1, 2], [3, 4]], "i4")),
    ((1, 2.5), "f", numpy.array([1, 2.5], "f4")),
    ([], "d", numpy.empty(0)),
    ([[]], "d", numpy.empty((1, 0))),
    (2.5, "d", numpy.array(2.5)),
    ([numpy.float32(1.5), 2], "d", numpy.array([1.5, 2])),
    (numpy.arange(3), "f", numpy.arange(3, dtype="f4")),
])
def test_an_array_is_made_of_what_its_text_holds(values, kind, expected):
    array = vexomu.array(values, kind)
    assert (array.dtype, array.shape) == (expected.dtype, expected.shape)
    assert (array == expected).all()


@pytest.mark.parametrize("values, kind, error", [
    ([[1], [2, 3]], "i", RuntimeError), ("x", "d", TypeError), ([1], "q", ValueError), ([1.5], "i", RuntimeError),
    (1.5, "i", RuntimeError), (2**31, "i", RuntimeError), ([2**31], "i", RuntimeError), ([["a"]], "d", RuntimeError), ([2**70], "d", OverflowError), (None, "d", TypeError),
])
def test_no_array_is_made_of_anything_else(values, kind, error):
    with pytest.raises(error):
        vexomu.array(values, kind)
