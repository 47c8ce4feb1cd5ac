"""A trivial program run from a script that holds a gigabyte, beside Python's own way; both take its output.

Prints a Google Benchmark style JSON object, so that the summary reads every result alike.
"""

import json
import statistics
import subprocess
import sys
import time

import vexomu

ROUNDS = 401
PROGRAM = "/bin/true"
MEMORY = bytearray(b"x") * (1 << 30)

ACTIONS = {
    "kernel": lambda: vexomu.run(PROGRAM),
    "subprocess": lambda: subprocess.run([PROGRAM], stdout=subprocess.PIPE, check=True),
}


def main():
    times = {name: [] for name in ACTIONS}
    for _ in range(ROUNDS):
        for name, action in ACTIONS.items():
            start = time.perf_counter()
            action()
            times[name].append((time.perf_counter() - start) * 1e6)
    json.dump({"benchmarks": [{"run_name": f"python_run/{name}", "aggregate_name": "median",
                               "cpu_time": statistics.median(values), "time_unit": "us"}
                              for name, values in times.items()]}, sys.stdout, indent=1)


if __name__ == "__main__":
    main()
