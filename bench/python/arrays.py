"""A million numbers between Python and the kernel, beside what numpy does with them.

Prints a Google Benchmark style JSON object, so that the summary reads every result alike.
"""

import json
import random
import statistics
import sys
import time

import numpy
import vexomu
from bench_kernel import store

ROUNDS = 31
NUMBERS = numpy.random.default_rng(1).random(1_000_000)
ROWS = NUMBERS.reshape(1000, 1000).tolist()
store.keep(NUMBERS)

kept = {"numbers": NUMBERS.copy()}


def keep_in_numpy():
    kept["numbers"] = NUMBERS.copy()  # as the kernel does, it has the new array before it gives the old one up


ACTIONS = {
    "in_kernel": lambda: store.keep(NUMBERS),
    "in_numpy": keep_in_numpy,
    "out_kernel": lambda: store.give().copy(),
    "copy_numpy": lambda: kept["numbers"].copy(),  # read as seldom as the kernel's: the cache knows what is read often
    "lists_kernel": lambda: vexomu.array(ROWS, "d"),
    "lists_numpy": lambda: numpy.array(ROWS),
}


def main():
    times = {name: [] for name in ACTIONS}
    order = list(ACTIONS.items())
    for _ in range(ROUNDS):
        random.shuffle(order)  # what ran before decides what the caches hold
        for name, action in order:
            action()  # each finds the memory that it needs where it left it, whatever ran before
            start = time.perf_counter()
            result = action()
            times[name].append((time.perf_counter() - start) * 1e6)
            del result
    json.dump({"benchmarks": [{"run_name": f"python_arrays/{name}", "aggregate_name": "median",
                               "cpu_time": statistics.median(values), "time_unit": "us"}
                              for name, values in times.items()]}, sys.stdout, indent=1)


if __name__ == "__main__":
    main()
