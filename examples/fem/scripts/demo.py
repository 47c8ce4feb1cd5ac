"""A walk through the example kernel on a real mesh: what a user asks, what a user gets wrong, and all of it again."""

import hashlib
import pathlib
import subprocess
import sys
import tempfile

import vexomu
from fem import session

MESH = pathlib.Path(__file__).parent.parent / "data" / "assembly.msh"
STEEL, ALUMINUM, STATIC, FREQUENCY = map(vexomu.Constant, ("STEEL", "ALUMINUM", "STATIC", "FREQUENCY"))

# What a fresh process does with a journal and this script: it runs the one, and tells with the other what came of it.
REPLAY = "import runpy, sys; runpy.run_path(sys.argv[1]); print(runpy.run_path(sys.argv[2])['text']())"


def text():
    """Everything in the session, to the last digit."""
    lines = []
    for model_name, model in session.models.items():
        lines.append(f"model {model_name}")
        for name, material in model.materials.items():
            lines.append(f"material {name}: {material.density!r}, {material.elasticModulus!r}")
        for name, part in model.parts.items():
            mesh = hashlib.sha256(part.coordinates().tobytes())
            for element in part.elements.values():
                mesh.update(f"{element.label}: {element.nodes};".encode())
            lines.append(f"part {name}: {part.description!r}, {part.material}, {part.nodes.keys()}, {mesh.hexdigest()}")
        for name, elements in model.sets.items():
            lines.append(f"set {name}: {[repr(element) for element in elements]}")
        for name, step in model.steps.items():
            lines.append(f"step {name}: {step.procedure}, {step.loads!r}")
            for field_name, field in step.fields.items():
                values = hashlib.sha256(field[:].tobytes()).hexdigest()
                lines.append(f"field {field_name}: {field.description!r}, {len(field)} values, {values}")
    return "\n".join(lines)


def number(value):
    """As the user wants numbers in reports."""
    return vexomu.formatNumber(value, "fieldReportFormat")


def report(part):
    (x0, y0, z0), (x1, y1, z1) = part.boundingBox()
    worst = part.worstElements()[0]
    print(f"{part.name:12}{len(part.nodes):7}{len(part.elements):10}  "
          f"{x1 - x0:6.1f} x {y1 - y0:5.1f} x {z1 - z0:5.1f}   {number(part.surfaceArea())}{number(part.volume())} "
          f"{worst.quality:.3f} (element {worst.label})")


def build():
    """Parts from the mesh file, materials, sets that span parts, and a step."""
    model = session.createModel("assembly")
    whole = model.createPart("whole", MESH)
    whole.description = "18 solids: plate, brackets, bolts, nuts, rod"
    print(f"{whole!r}: {whole.description}\n")

    # One part per body; the largest are the plate and its brackets.
    bodies = [model.createPart(f"body-{number}", path=MESH, body=number) for number in session.bodies(MESH)]
    bodies.sort(key=lambda body: body.volume(), reverse=True)
    print(f"{'part':12}{'nodes':>7}{'elements':>10}  {'size in mm':>22}{'area in mm2':>14}{'volume in mm3':>15}  worst quality")
    report(whole)
    for part in bodies[:4]:
        report(part)
    print(f"... and {len(bodies) - 4} smaller ones; {len(model.parts)} parts in all\n")

    model.createMaterial(STEEL, density=7.85e-9, elasticModulus=210e3)
    model.createMaterial(ALUMINUM, density=2.7e-9, elasticModulus=70e3)
    for part in bodies:
        part.material = ALUMINUM if part is bodies[0] else STEEL
    model.parts.changeKey(bodies[0].name, "plate")
    bodies[-1].translate(dz=2.5)
    print(f"{bodies[0]!r} of {bodies[0].material}, the rest of STEEL: "
          f"{1e3 * sum(body.mass() for body in bodies):.2f} kg")

    # The worst elements of two parts, one of them twice: a set counts each once when it is compressed.
    slivers = model.createSet("slivers", {body.name: [element.label for element in body.worstElements(3)]
                                          for body in bodies[:2]})
    slivers.add(slivers[0].part, labels=slivers[0].label)
    count = len(slivers)
    slivers.compress()
    print(f"{slivers!r}: {count} elements, compressed {len(slivers)}, of {' and '.join(slivers.parts)}")
    for element in slivers[:2]:
        print(f"  {element!r}: nodes {element.nodes}, quality {element.quality:.4f}")
    step = model.createStep("pressure", STATIC, loads={"slivers": 12.5})
    model.createStep("vibration", FREQUENCY)
    quality = step.createField("quality", "mean ratio of the elements of the whole, by label")
    quality.append([element.quality for element in whole.elements.values()])
    least, greatest = quality.extremes()
    print(f"steps {model.steps.keys()}; in the first one {step.loads}, "
          f"and a field of {len(quality)} values from {least:.3f} to {greatest:.3f}\n")

    print("elements by quality 0.0 to 1.0 in fifths:", whole.qualityHistogram(bins=5, limits=[0.0, 1.0]))
    print(f"center of all nodes: {whole.coordinates().mean(axis=0, dtype=float).round(2).tolist()}")
    # A program of the system works on the model's data, through a pipe.
    qualities = "".join(f"{value!r}\n" for value in quality)
    status, lines = vexomu.run("LC_ALL=C sort -g", input=qualities)
    print(f"median quality by sort, which ended with {status}: {lines.split()[len(whole.elements) // 2][:6]}\n")
    return model


def err(model):
    """Every kind of mistake; the number of those that did not come back as they should."""
    print("What goes wrong comes back as the script's own error:")
    whole, lost = model.parts["whole"], model.parts["body-1"]
    model.deletePart("body-1")
    mistakes = [
        (lambda: whole.worstElements("three"), TypeError, "worstElements[0]; found string, expecting int32"),
        (lambda: model.createPart("x"), TypeError,
         "createPart; not all required arguments specified; expected 2, got 1"),
        (lambda: whole.translate(dw=1.0), TypeError, "translatekeyword error on dw"),
        (lambda: whole.nodes[10**6], KeyError, "no key 1000000"),
        (lambda: setattr(whole, "material", vexomu.Constant("WOOD")), TypeError,
         "material[0]; found WOOD, expecting STEEL, ALUMINUM or TITANIUM"),
        (lambda: whole.qualityHistogram(bins=0), ValueError,
         "bins must be an Integer in the range: 1 <= bins <= 10000"),
        (lambda: model.createPart("whole", MESH), ValueError,
         "session.models['assembly'].parts has 'whole' already"),
        (lambda: model.createSet("a.b"), ValueError, "invalid name"),
        (lambda: setattr(whole, "name", "all"), AttributeError, "name is read-only"),
        (lambda: session.bodies("missing.msh"), FileNotFoundError,
         "[Errno 2] IOError: missing.msh: No such file or directory: 'missing.msh'"),
        (lambda: lost.volume(), ReferenceError, "session.models['assembly'].parts['body-1'] no longer exists"),
    ]
    surprises = 0
    for mistake, expected, message in mistakes:
        try:
            mistake()
            print("  nothing was raised where", expected.__name__, "was due")
            surprises += 1
        except Exception as error:  # the point of the exercise: every kind is shown
            print(f"  {type(error).__name__}: {error}")
            surprises += not isinstance(error, expected) or str(error) != message
    return surprises


def main():
    with tempfile.TemporaryDirectory() as folder:
        journal = pathlib.Path(folder) / "journal.py"
        vexomu.startJournal(journal)
        surprises = err(build())
        vexomu.stopJournal()
        lines = journal.read_text().splitlines()
        replayed = subprocess.run([sys.executable, "-c", REPLAY, journal, __file__], stdout=subprocess.PIPE, text=True)
    print(f"\nThe journal of it all has {len(lines)} lines, the last of which are",
          *[line if len(line) < 130 else line[:127] + "..." for line in lines[-3:]], sep="\n  ")
    is_same = replayed.returncode == 0 and replayed.stdout == text() + "\n"
    print("Replayed in a fresh process it", "builds an equal model." if is_same else "DOES NOT build an equal model.")
    session.deleteModel("assembly")
    if surprises or not is_same:
        sys.exit(f"{surprises} of the mistakes were not what they should have been" if surprises else 1)


if __name__ == "__main__":
    main()
