"""What becomes of a saved model: it is opened again, also after its process was killed, and its fields outgrow memory."""

import contextlib
import hashlib
import io
import pathlib
import random
import subprocess
import sys
import tempfile
import time

import numpy

import vexomu
from demo import build, session, text

KILLS = 5
VALUES = 10_000_000


def digest():
    return hashlib.sha256(text().encode()).hexdigest()


def show(file):
    session.open(file)
    print(digest())


def change(file):
    """Changes the model in a file and saves it, again and again; says what is about to be saved, and when it was."""
    session.open(file)
    model = session.models["assembly"]
    random_numbers = numpy.random.default_rng()
    while True:
        model.parts["plate"].translate(dx=0.125)
        model.steps["pressure"].fields["quality"].append(random_numbers.random(3000))
        print("saving", digest(), flush=True)
        session.save()
        print("saved", flush=True)


def large(file):
    """Writes and scans a field in a file; says how many megabytes of memory the process had at most."""
    field = session.createModel("large").createStep("step", vexomu.Constant("STATIC")).createField("field")
    session.save(file)  # from now on the field pages
    for start in range(0, VALUES, 100_000):
        field.append(numpy.arange(start, start + 100_000, dtype=float))
    session.save()
    session.open(file)
    field = session.models["large"].steps["step"].fields["field"]
    assert field.extremes() == (0, VALUES - 1)
    assert sum(numpy.sum(field[start:start + 100_000]) for start in range(0, VALUES, 100_000)) == sum(range(VALUES))
    status = pathlib.Path("/proc/self/status").read_text()
    print(int(status.split("VmHWM:")[1].split()[0]) // 1000)


def started(task, file):
    return subprocess.Popen([sys.executable, __file__, task, file], stdout=subprocess.PIPE, text=True)


def said(task, file):
    """What a fresh process prints."""
    return started(task, file).communicate()[0].strip()


def killed(file):
    """Kills a process that changes and saves the model in the file. The digests of what it saved last, and of what it was
    saving when it was killed, or None."""
    process = started("change", file)
    lines = [process.stdout.readline()]
    start = time.monotonic()
    lines.append(process.stdout.readline())
    seconds = time.monotonic() - start  # that a save takes
    lines.append(process.stdout.readline())
    time.sleep(random.uniform(0, seconds))
    process.kill()
    digests = ("".join(lines) + process.communicate()[0]).replace("saving ", "").split("\nsaved\n")
    return digests[-2], digests[-1].strip() or None


def main():
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "assembly.vx"
        with contextlib.redirect_stdout(io.StringIO()):  # what it shows was seen before
            build()
        session.save(file)
        is_equal = said("show", file) == digest()
        print(f"The model is saved in {file.stat().st_size // 1000} kB; a fresh process opens",
              "an equal one." if is_equal else "ANOTHER ONE.")
        within, lost = 0, 0
        for _ in range(KILLS):
            saved, saving = killed(file)
            within += saving is not None
            lost += said("show", file) not in (saved, saving)
        print(f"{KILLS} processes that changed and saved it were killed, {within} of them within a save: then a fresh process opens",
              f"ANOTHER MODEL {lost} TIMES." if lost else "the last one that was saved.")
        check = subprocess.run(["vexstore", "check", file], stdout=subprocess.PIPE, text=True)
        print("vexstore check:", check.stdout.strip().removeprefix(folder + "/"))
        megabytes = int(said("large", pathlib.Path(folder) / "large.vx"))
        print(f"A field of {VALUES // 1_000_000} million values is written and scanned by a process of {megabytes} MB at most.")
    if not is_equal or lost or check.returncode != 0 or megabytes >= 200:
        sys.exit(1)


if __name__ == "__main__":
    if len(sys.argv) == 1:
        main()
    else:
        {"show": show, "change": change, "large": large}[sys.argv[1]](sys.argv[2])
