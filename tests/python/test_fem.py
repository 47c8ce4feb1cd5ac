"""The example kernel on its real mesh, against the same quantities computed with numpy from the file itself."""

import pathlib
import subprocess
import sys

import numpy
import pytest

from fem import session

ROOT = pathlib.Path(__file__).parents[2]
MESH = ROOT / "examples/fem/data/assembly.msh"


def read_tetrahedra(body):
    lines = MESH.read_text().split("\n")
    start, count = lines.index("$Nodes") + 2, int(lines[lines.index("$Nodes") + 1])
    nodes = {int(line.split()[0]): [float(word) for word in line.split()[1:]] for line in lines[start:start + count]}
    start, count = lines.index("$Elements") + 2, int(lines[lines.index("$Elements") + 1])
    rows = [[int(word) for word in line.split()] for line in lines[start:start + count]]
    return numpy.array([[nodes[label] for label in row[-4:]] for row in rows if row[1] == 4 and body in (0, row[4])])


@pytest.mark.parametrize("body", [0, 1, 11])
def test_measures_agree_with_numpy(body):
    model = session.createModel(f"numpy-{body}")
    part = model.createPart("part", MESH, body=body)
    corners = read_tetrahedra(body)
    assert part.elementCount == len(corners)
    a, b, c, d = (corners[:, i] for i in range(4))
    volumes = numpy.einsum("ij,ij->i", numpy.cross(b - a, c - a), d - a) / 6
    assert part.volume() == pytest.approx(abs(volumes).sum(), rel=1e-12)
    low, high = part.boundingBox()
    assert numpy.allclose([low, high], [corners.min(axis=(0, 1)), corners.max(axis=(0, 1))])
    edges = sum(((corners[:, i] - corners[:, j]) ** 2).sum(axis=1) for i in range(4) for j in range(i))
    quality = numpy.sort(12 * numpy.cbrt((3 * volumes) ** 2) / edges * numpy.sign(volumes))
    worst = [quality for _, quality in part.worstElements(5)]
    assert worst == pytest.approx(quality[:5].tolist(), rel=1e-12)
    assert part.qualityHistogram(bins=4) == tuple(numpy.histogram(quality, 4, (0, 1))[0])
    assert part.coordinates().shape == (part.nodeCount, 3)


def test_parts_are_renamed_moved_and_deleted():
    model = session.createModel("life")
    part, other = (model.createPart(name, MESH, body=1) for name in ("a", "b"))
    part.name = "c"
    assert model.partNames == ("b", "c") and repr(part) == "session.model('life').part('c')" and model.part("c") == part
    for name, message in [("b", "there is a part named 'b' already"), ("", "a part needs a name")]:
        with pytest.raises(ValueError, match=message):
            part.name = name
    before = part.boundingBox()[0]
    part.translate(dy=2)
    assert numpy.subtract(part.boundingBox()[0], before).tolist() == pytest.approx([0, 2, 0])
    session.deleteModel("life")
    with pytest.raises(ReferenceError, match="session.model\\('life'\\).part\\('b'\\) no longer exists"):
        other.volume()


def test_the_demo_ends_well():
    run = subprocess.run([sys.executable, ROOT / "examples/fem/scripts/demo.py"], capture_output=True, text=True)
    assert run.returncode == 0, run.stdout + run.stderr
    assert "AccessError: session.model('assembly').part('body-1') no longer exists" in run.stdout
