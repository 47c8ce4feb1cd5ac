"""Kernel objects in Python: names, calls, errors, and handles that outlive what they refer to."""

import copy
import gc
import os
import pickle
import pydoc
import subprocess
import sys
import weakref

import numpy
import pytest

import vexomu
from probe import shelf


def test_a_call_reaches_the_method_with_all_its_values():
    assert shelf.call(3, 2.5, "abc", labels=[1, 2, 3], flag=True) == (3, 2.5, "abc", 3, 1)
    assert shelf.call(name="n", width=1, count=7) == (7, 1.0, "n", 0, 0)
    assert shelf.call(3, 2.5, "abc", flag=False) == (3, 2.5, "abc", 0, 0)


@pytest.mark.parametrize("kind", [str, type("Derived", (str,), {})])
def test_keywords_are_told_apart_however_many_there_are(kind):
    names = [kind(f"name{i}") for i in range(600)]
    for name in [*names, *names]:
        with pytest.raises(TypeError) as caught:
            shelf.call(1, 1.0, "a", **{name: 1})
        assert str(caught.value) == f"callkeyword error on {name}"


@pytest.mark.parametrize("call, message", [
    (lambda: shelf.call("x", 1.0, "a"), "call[0]; found string, expecting int32"),
    (lambda: shelf.call(2**31, 1.0, "a"), "call[0]; found number, expecting int32"),
    (lambda: shelf.call(numpy.float64(2.0), 1.0, "a"), "call[0]; found number, expecting int32"),
    (lambda: shelf.call(count=1.5), "call['count']; found number, expecting number"),
    (lambda: shelf.call(1, width="x"), "call['width']; found string, expecting number"),
    (lambda: shelf.call(1, 1.0, "a", labels=[1, "b"]), "call['labels']; found list, expecting sequence of Integers"),
    (lambda: shelf.call(1, 1, "", labels=("a",)), "call['labels']; found sequence of Strings, expecting sequence of Integers"),
    (lambda: shelf.call(1, 1.0, "a", flag=2), "call['flag']; found number, expecting 0 or 1"),
    (lambda: shelf.holds(1), "holds[0]; found number, expecting Box"),
    (lambda: shelf.holds(box=shelf), "holds['box']; found Shelf, expecting Box"),
    (lambda: shelf.constant(2), "constant[0]; found number, expecting ON or OFF"),
    (lambda: shelf.constant(vexomu.TRUE), "constant[0]; found TRUE, expecting ON or OFF"),
    (lambda: shelf.constant(vexomu.Constant("ON\0")), "constant[0]; found ON\0, expecting ON or OFF"),
    (lambda: shelf.constant(value=vexomu.Constant("MAYBE")), "constant['value']; found MAYBE, expecting ON or OFF"),
])
def test_argument_errors_are_type_errors_with_exact_texts(call, message):
    with pytest.raises(TypeError) as caught:
        call()
    assert str(caught.value) == message


@pytest.mark.parametrize("kind, error, base, message", [
    ("value", ValueError, ValueError, "bad value"),
    ("key", vexomu.KeyError, KeyError, "no 'such' key"),
    ("index", IndexError, IndexError, "index 7"),
    ("name", NameError, NameError, "no name"),
    ("zero", ZeroDivisionError, ZeroDivisionError, "by zero"),
    ("overflow", OverflowError, OverflowError, "too big"),
    ("attribute", AttributeError, AttributeError, "read-only attributes"),
    ("access", vexomu.AccessError, ReferenceError, "part no longer exists"),
    ("color", vexomu.ColorError, ValueError, "blurple is not a valid color name."),
    ("font", vexomu.FontError, ValueError, "wingding is not a valid font."),
    ("brename", vexomu.BrenowNameError, ValueError, "name is empty"),
    ("range", vexomu.RangeError, ValueError, "width must be an Integer in the range: 1 <= width < 10"),
    ("text", RuntimeError, RuntimeError, "plain text"),
    ("root", RuntimeError, RuntimeError, ""),
    ("system", FileNotFoundError, OSError, "[Errno 2] IOError: \udc80: No such file or directory: '\\udc80'"),
    ("memory", MemoryError, MemoryError, ""),
    ("std", RuntimeError, RuntimeError, "std text"),
    ("foreign", RuntimeError, RuntimeError, "an exception of unknown type"),
])
def test_each_kernel_failure_is_the_right_python_error(kind, error, base, message):
    with pytest.raises(base) as caught:
        shelf.fail(kind)
    for value in caught.value, pickle.loads(pickle.dumps(caught.value)):
        assert type(value) is error and str(value) == message
    if base in (AttributeError, NameError, KeyError):
        assert caught.value.name == ("such" if kind == "key" else None)
        assert base is NameError or caught.value.obj is shelf


def test_an_error_is_pickled_without_what_cannot_be():
    for error in (vexomu.KeyError("no key"), vexomu.RangeError(1, "two"), vexomu.AccessError()):
        error.obj, error.name, error.other, error.itself = shelf, "key", vexomu.ColorError("inner"), error
        error.other.obj, error.other.outer = shelf, error
        again, deep, shallow = pickle.loads(pickle.dumps(error)), copy.deepcopy(error), copy.copy(error)
        for each in (again, deep, shallow):
            assert type(each) is type(error) and each.args == error.args and each.name == "key" and each is not error
            assert not hasattr(each, "obj")
        for each in (again, deep):
            assert each.itself is each and each.other.args == ("inner",) and each.other.outer is each
            assert not hasattr(each.other, "obj")
    assert pickle.loads(pickle.dumps(vexomu.FontError("plain"))).__dict__ == {}


def test_a_handle_whose_object_is_gone_raises_access_error():
    box = shelf.add("old")
    describe = box.describe
    key = {box: 1}
    shelf.remove()
    for use in (lambda: box.name, lambda: describe(), lambda: setattr(box, "name", "x"), lambda: repr(box),
                lambda: shelf.holds(box), lambda: shelf.echo(box)):
        with pytest.raises(ReferenceError) as caught:
            use()
        assert type(caught.value) is vexomu.AccessError
        assert str(caught.value) == "shelf.box('old') no longer exists"
    remover = type("Remover", (), {"__index__": lambda self: shelf.remove() or 1})()
    for use in (lambda box: box.describe(remover), lambda box: setattr(box, "name", remover),
                lambda box: box + remover, lambda box: remover - box):
        with pytest.raises(ReferenceError):  # while its argument is converted
            use(shelf.add("old"))
    assert box in key and isinstance(box, vexomu.Object)
    shelf.add("new")
    with pytest.raises(ReferenceError):
        box.name


def test_equality_and_hash_are_identity():
    first, again, loose = shelf.add("a"), shelf.box(), shelf.loose()
    assert first is not again and first == again and hash(first) == hash(again) and first != loose and first != 1
    assert shelf.holds(again) == 1 and shelf.holds(box=loose) == 0


def test_members_are_read_and_written_by_name():
    box = shelf.add("a")
    box.name = "b"
    assert box.name == "b" and box.size == 30 and repr(box) == "shelf.box('b')"
    with pytest.raises(AttributeError) as caught:
        box.size = 31
    assert str(caught.value) == "size is read-only" and caught.value.name == "size" and caught.value.obj is box
    with pytest.raises(TypeError, match=r"name\[0\]; found number, expecting string"):
        box.name = 5
    with pytest.raises(AttributeError, match="cannot be deleted"):
        del box.name


def test_unknown_names_carry_what_the_interpreter_needs_for_its_hint():
    box = shelf.add("a")
    with pytest.raises(AttributeError) as caught:
        box.nam
    assert caught.value.name == "nam" and caught.value.obj is box
    with pytest.raises(AttributeError):
        box.unknown = 1
    program = "from probe import shelf\nshelf.add('a').nam\n"
    run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True)
    assert "Did you mean: 'name'?" in run.stderr


def test_classes_follow_the_described_levels():
    plain, painted = shelf.loose(), shelf.add("a", painted=True)
    assert type(painted).__mro__[1] is type(plain) and isinstance(painted, vexomu.Object)
    assert type(painted).__name__ == "PaintedBox" and painted.describe() == "painted"
    assert type(plain).describe(painted) == "painted"
    assert {"name", "size", "describe"} <= set(dir(painted))
    assert "What the box is, and its paint." in pydoc.render_doc(painted)
    with pytest.raises(TypeError, match="cannot create"):
        type(plain)()
    for other in (1, shelf):
        with pytest.raises(TypeError, match="needs a 'vexomu.Box' object"):
            type(plain).describe(other)
        with pytest.raises(TypeError):
            type(plain).__dict__["name"].__set__(other, "n")
    with pytest.raises(TypeError, match="__class__"):
        plain.__class__ = type(shelf)


def test_python_owns_what_the_kernel_does_not_keep():
    loose = shelf.loose()
    watcher = weakref.ref(loose)
    assert loose.name == "loose"
    del loose
    gc.collect()
    assert watcher() is None


def test_deprecated_names_warn_or_are_unknown_when_not_permitted():
    with pytest.warns(DeprecationWarning, match="put is deprecated since 2.0; use add"):
        box = shelf.put("a")
    with pytest.warns(DeprecationWarning, match="label is deprecated since 2.0; use name"):
        assert box.label == "a"
    program = """
from probe import shelf
box = shelf.add('a')
for use in (lambda: shelf.put('a'), lambda: getattr(shelf, 'put'), lambda: box.label):
    try: use()
    except AttributeError as error: print(str(error).split()[0], error.name)
"""
    run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True,
                         env={**os.environ, "BRENOW_DEPRECATED": "OFF"})
    assert run.stderr + run.stdout == "'vexomu.Shelf' put\n'vexomu.Shelf' put\n'vexomu.Box' label\n"


@pytest.mark.skipif("asan" in os.environ.get("LD_PRELOAD", ""), reason="it knows no stack that only a part was taken off")
@pytest.mark.parametrize("work", ["vexomu.run('true')", "shelf.echo([Slow(), Slow()])"])
def test_threads_that_come_back_to_an_interpreter_at_its_end_do_not_end_the_process(work):
    program = f"""
import sys, threading, time, vexomu
from probe import shelf
class Slow:
    def __index__(self): return sum(range(1000))
def forever():
    while True: {work}
sys.setswitchinterval(1e-5)
for _ in range(3): threading.Thread(target=forever, daemon=True).start()
time.sleep(0.2)
"""
    run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True)
    assert (run.returncode, run.stderr) == (0, "")


def test_an_interpreter_within_the_process_does_not_take_the_kernel():
    program = """
import _xxsubinterpreters as interpreters
other = interpreters.create()
try: interpreters.run_string(other, "import probe")
except interpreters.RunFailedError as error: print(error)
interpreters.destroy(other)
from probe import shelf
print(shelf.echo([shelf]))
"""
    run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True)
    assert run.stderr + run.stdout == ("<class 'ImportError'>: vexomu is for the main interpreter of a process\n"
                                       "[<Shelf object>]\n")
