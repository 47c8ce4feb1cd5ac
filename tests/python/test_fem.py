"""The example kernel on its real mesh, against the same quantities computed with numpy from the file itself."""

import inspect
import pathlib
import subprocess
import sys

import numpy
import pytest

import vexomu
from fem import session

ROOT = pathlib.Path(__file__).parents[2]
MESH = ROOT / "examples/fem/data/assembly.msh"


def read_tetrahedra(body):
    lines = MESH.read_text().split("\n")
    start, count = lines.index("$Nodes") + 2, int(lines[lines.index("$Nodes") + 1])
    nodes = {int(line.split()[0]): [float(word) for word in line.split()[1:]] for line in lines[start:start + count]}
    start, count = lines.index("$Elements") + 2, int(lines[lines.index("$Elements") + 1])
    rows = [[int(word) for word in line.split()] for line in lines[start:start + count]]
    corners = [[nodes[label] for label in row[-4:]] for row in rows if row[1] == 4 and body in (0, row[4])]
    return numpy.array(corners, dtype="f4").astype("f8")  # the kernel holds coordinates in single precision


@pytest.mark.parametrize("body", [0, 1, 11])
def test_measures_agree_with_numpy(body):
    model = session.createModel(f"numpy-{body}")
    part = model.createPart("part", MESH, body=body)
    corners = read_tetrahedra(body)
    assert len(part.elements) == len(corners)
    a, b, c, d = (corners[:, i] for i in range(4))
    volumes = numpy.einsum("ij,ij->i", numpy.cross(b - a, c - a), d - a) / 6
    assert part.volume() == pytest.approx(abs(volumes).sum(), rel=1e-12)
    low, high = part.boundingBox()
    assert numpy.allclose([low, high], [corners.min(axis=(0, 1)), corners.max(axis=(0, 1))])
    edges = sum(((corners[:, i] - corners[:, j]) ** 2).sum(axis=1) for i in range(4) for j in range(i))
    quality = numpy.sort(12 * numpy.cbrt((3 * volumes) ** 2) / edges * numpy.sign(volumes))
    worst = [element.quality for element in part.worstElements(5)]
    assert worst == pytest.approx(quality[:5].tolist(), rel=1e-12)
    assert part.qualityHistogram(bins=4) == tuple(numpy.histogram(quality, 4, (0, 1))[0])
    assert part.coordinates().tolist() == [list(point) for point in part.nodes.values()]


@pytest.fixture
def model():
    yield session.createModel("life")
    session.deleteModel("life")


def test_parts_are_renamed_moved_and_deleted(model):
    part, other = (model.createPart(name, MESH, body=1) for name in ("a", "b"))
    model.parts.changeKey("a", "c")
    assert model.parts.keys() == ["b", "c"] and model.parts["c"] == part
    assert repr(part) == "session.models['life'].parts['c']"
    for name, error, message in [("b", ValueError, "parts has 'b' already"), ("", ValueError, "name is empty")]:
        with pytest.raises(error, match=message):
            model.parts.changeKey("c", name)
    before = part.boundingBox()[0]
    part.translate(dy=2)
    assert numpy.subtract(part.boundingBox()[0], before).tolist() == pytest.approx([0, 2, 0], abs=1e-5)
    with pytest.raises(vexomu.RangeError, match="dz must be a Float in the range: -1000000000.0 <= dz <= 1000000000.0"):
        part.translate(dz=float("nan"))
    element = other.elements[other.elements.keys()[-1]]
    model.deletePart("b")
    for use in other.volume, lambda: element.quality:
        with pytest.raises(ReferenceError, match=r"session.models\['life'\].parts\['b'\] no longer exists"):
            use()


def test_sets_follow_their_parts(model):
    a, b = (model.createPart(name, MESH, body=1) for name in ("a", "b"))
    first, second, third = a.elements.keys()[:3]
    chosen = model.createSet("s", {"b": [third, first]})
    chosen.add(a, (second,))
    chosen.add(b, labels=first)
    with pytest.raises(KeyError, match="parts\\['a'\\] has no element 1"):
        chosen.add(a, [first, 1])
    for wrong in ((first, [first]), ("a", first), (model, [first])):
        with pytest.raises(TypeError, match=r"add\[0\]; found \w+, expecting Part"):
            chosen.add(*wrong)
    model.parts.changeKey("b", "z")
    assert [element.label for element in chosen] == [third, first, second, first] and chosen[-1].part == b
    chosen.compress()
    assert repr(list(chosen[1:])) == f"[{b!r}.elements[{third}], {a!r}.elements[{second}]]" and chosen.parts == ("z", "a")
    model.deletePart("z")
    assert [element.label for element in chosen] == [second]
    stranger = session.createModel("other").createPart("a", MESH, body=1)
    with pytest.raises(ValueError, match="is no part of session.models\\['life'\\]"):
        chosen.add(stranger, first)
    parts = session.models["other"].parts
    session.deleteModel("other")
    with pytest.raises(ReferenceError, match=r"^session.models\['other'\].parts no longer exists$"):
        len(parts)


def test_materials_and_steps_take_constants(model):
    steel, static, frequency = map(vexomu.Constant, ("STEEL", "STATIC", "FREQUENCY"))
    part = model.createPart("a", MESH, body=1)
    with pytest.raises(ValueError, match="parts\\['a'\\] has no material"):
        part.mass()
    for create in model.createSet, model.createMaterial:  # a name, and a constant that is not a boolean one
        with pytest.raises(TypeError, match=r"\[0\]; found number, expecting "):
            create(1)
    with pytest.raises(KeyError, match="materials has no 'STEEL'"):
        part.material = steel
    with pytest.raises(vexomu.RangeError, match="density must be a Float > 0.0"):
        model.createMaterial(steel, 0.0)
    model.createMaterial(steel, 2.0)
    part.material = steel
    model.materials[steel].density *= 2
    assert part.mass() == 4 * part.volume() and model.materials.keys() == [part.material] == [steel]
    model.createSet("s")
    step = model.createStep("first", static, {"s": 1})
    model.sets.changeKey("s", "t")
    step.procedure = frequency
    assert step.loads == {"t": 1.0} and step.procedure == frequency
    for loads, error in [({"s": 1}, KeyError), ({"t": "much"}, ValueError), ({"t": 2, "u": 3}, KeyError)]:
        with pytest.raises(error):
            step.loads = loads
    assert step.loads == {"t": 1.0}


def test_what_was_renamed_still_works_and_says_so(model):
    with pytest.warns(DeprecationWarning, match="keyword solid is deprecated"):
        part = model.createPart("a", MESH, solid=1)
    label = part.nodes.keys()[0]
    with pytest.warns(DeprecationWarning, match=r"node is deprecated since 0.1; use nodes\[label\]"):
        assert part.node(label) == part.nodes[label]


def test_help_shows_the_parameters(model):
    assert str(inspect.signature(model.createSet)) == "(name, elements={})"
    part = model.createPart("a", MESH, body=1)
    assert str(inspect.signature(part.qualityHistogram)) == "(bins=10, limits=(0.0, 1.0))"
    assert str(inspect.signature(model.parts.changeKey)) == "(fromName, toName)"
    assert str(inspect.signature(part.volume)) + part.volume.__doc__ == "()Volume of all elements."


def test_the_demo_ends_well():
    run = subprocess.run([sys.executable, ROOT / "examples/fem/scripts/demo.py"], capture_output=True, text=True)
    assert run.returncode == 0, run.stdout + run.stderr
    assert "AccessError: session.models['assembly'].parts['body-1'] no longer exists" in run.stdout
    assert run.stdout.endswith("Replayed in a fresh process it builds an equal model.\n")
