"""Models and processes that are killed, fields and memory: the script that shows it ends well."""

import os
import pathlib
import subprocess
import sys

import pytest

SCRIPT = pathlib.Path(__file__).parents[2] / "examples/fem/scripts/saving.py"


@pytest.mark.skipif("asan" in os.environ.get("LD_PRELOAD", ""), reason="a sanitizer needs memory of its own")
def test_killed_processes_leave_the_last_model_and_a_field_outgrows_memory():
    run = subprocess.run([sys.executable, SCRIPT], capture_output=True, text=True)
    assert run.returncode == 0, run.stdout + run.stderr
    assert "98 records, no faults" in run.stdout
