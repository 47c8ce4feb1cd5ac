"""A walk through the example kernel on a real mesh: what a user asks, and what a user gets wrong."""

import pathlib
import sys

from fem import session

MESH = pathlib.Path(__file__).parent.parent / "data" / "assembly.msh"


def report(part):
    (x0, y0, z0), (x1, y1, z1) = part.boundingBox()
    label, quality = part.worstElements()[0]
    print(f"{part.name:12}{part.nodeCount:7}{part.elementCount:10}  {x1 - x0:6.1f} x {y1 - y0:5.1f} x {z1 - z0:5.1f}"
          f"{part.surfaceArea():13.1f}{part.volume():13.1f}   {quality:.3f} (element {label})")


def main():
    model = session.createModel("assembly")
    whole = model.createPart("whole", MESH)
    whole.description = "18 solids: plate, brackets, bolts, nuts, rod"
    print(f"{whole!r}: {whole.description}\n")

    # One part per body; the largest are the plate and its brackets.
    bodies = [model.createPart(f"body-{number}", path=MESH, body=number) for number in session.bodies(MESH)]
    print(f"{'part':12}{'nodes':>7}{'elements':>10}  {'size in mm':>22}{'area in mm2':>13}{'volume in mm3':>15}  worst quality")
    report(whole)
    for part in sorted(bodies, key=lambda body: body.volume(), reverse=True)[:4]:
        report(part)
    print(f"... and {len(bodies) - 4} smaller ones; {len(model.partNames)} parts in all\n")

    histogram = whole.qualityHistogram(bins=5, limits=[0.0, 1.0])
    print("elements by quality 0.0 to 1.0 in fifths:", histogram)
    worst = [label for label, _ in whole.worstElements(count=2)]
    for label, nodes, quality in whole.elements(worst, withQuality=True):
        print(f"element {label}: nodes {nodes}, quality {quality:.4f}")
    coordinates = whole.coordinates()
    print(f"center of all nodes: {coordinates.mean(axis=0).round(2).tolist()}\n")

    print("What goes wrong comes back as the script's own error:")
    lost = bodies[0]
    model.deletePart(lost.name)
    mistakes = [
        (lambda: whole.worstElements("three"), TypeError, "worstElements[0]; found string, expecting int32"),
        (lambda: whole.elements(), TypeError,
         "elements; not all required arguments specified; expected 1, got 0"),
        (lambda: whole.translate(dw=1.0), TypeError, "translatekeyword error on dw"),
        (lambda: whole.node(10**6), KeyError, "part 'whole' has no node 1000000"),
        (lambda: whole.qualityHistogram(bins=0), ValueError,
         "bins must be an Integer in the range: 1 <= bins <= 10000"),
        (lambda: model.createPart("whole", MESH), ValueError, "there is a part named 'whole' already"),
        (lambda: setattr(whole, "nodeCount", 0), AttributeError, "nodeCount is read-only"),
        (lambda: session.bodies("missing.msh"), FileNotFoundError,
         "[Errno 2] IOError: missing.msh: No such file or directory: 'missing.msh'"),
        (lambda: lost.volume(), ReferenceError, "session.model('assembly').part('body-1') no longer exists"),
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

    session.deleteModel("assembly")
    if surprises:
        sys.exit(f"{surprises} of these were not what they should have been")


if __name__ == "__main__":
    main()
