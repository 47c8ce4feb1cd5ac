"""The measured call from Python: the kernel object's method beside the same one bound in three other ways.

Prints a Google Benchmark style JSON object, so that the summary reads every result alike.
"""

import json
import statistics
import sys
import time

from bench_cpython import peer as by_hand
from bench_kernel import measured
from bench_pybind11 import peer as by_pybind11

CALLS = 20_000
ROUNDS = 41


def kernel(count):
    target = measured
    for _ in range(count):
        target.measure(7, 2.5, "a short name", labels=[1, 2, 3], flag=True)


def pybind11(count):
    target = by_pybind11
    for _ in range(count):
        target.measure(7, 2.5, "a short name", labels=[1, 2, 3], flag=True)


def cpython_format(count):
    target = by_hand
    for _ in range(count):
        target.measure_by_format(7, 2.5, "a short name", labels=[1, 2, 3], flag=True)


def cpython_fast_call(count):
    target = by_hand
    for _ in range(count):
        target.measure_by_fast_call(7, 2.5, "a short name", labels=[1, 2, 3], flag=True)


def main():
    loops = [kernel, pybind11, cpython_format, cpython_fast_call]
    times = {loop.__name__: [] for loop in loops}
    for loop in loops:
        loop(CALLS)
    for round_number in range(ROUNDS):
        for loop in loops[round_number % 4:] + loops[:round_number % 4]:
            start = time.perf_counter()
            loop(CALLS)
            times[loop.__name__].append((time.perf_counter() - start) / CALLS * 1e9)
    json.dump({"benchmarks": [{"run_name": f"python_call/{name}", "aggregate_name": "median",
                               "cpu_time": statistics.median(values), "time_unit": "ns"}
                              for name, values in times.items()]}, sys.stdout, indent=1)


if __name__ == "__main__":
    main()
