"""Reads the results of one run of the benchmarks and prints each goal with the measured ratio.

usage: summary.py RESULT.json...
"""

import json
import sys

# How the names of what is measured by the clock on the wall end.
CHILDREN = "iterations:1/manual_time"
COPIES = "iterations:1/repeats:5/manual_time"

# What is measured, the peers it is measured against (the fastest counts), and the highest ratio that meets the goal.
GOALS = [
    ("call from C++, beside a fast-call C function", "call_kernel", ["call_cpython_fast_call"], 0.80),
    ("call from C++, beside PyArg_ParseTupleAndKeywords", "call_kernel", ["call_cpython_format"], None),
    ("call from Python, beside pybind11", "python_call/kernel", ["python_call/pybind11"], 0.50),
    ("call from Python, beside a fast-call C function", "python_call/kernel", ["python_call/cpython_fast_call"], 1.30),
    ("call from Python, beside PyArg_ParseTupleAndKeywords", "python_call/kernel", ["python_call/cpython_format"], None),
    ("copy of ten mixed values", "copy_kernel", ["copy_variant", "copy_python"], 0.50),
    ("comparison of ten mixed values", "compare_kernel", ["compare_variant", "compare_python"], 0.90),
    ("text of ten mixed values", "text_kernel", ["text_variant", "text_python"], 0.90),
    ("100,000 values written, beside cereal", "write_kernel", ["write_cereal"], 0.15),
    ("100,000 values read, beside cereal", "read_kernel", ["read_cereal"], 0.20),
    ("dictionary of 8 keys: find, beside absl::btree_map", "dictionary_find_kernel/8", ["dictionary_find_absl/8"], 0.90),
    ("dictionary of 64 keys: find, beside absl::btree_map", "dictionary_find_kernel/64", ["dictionary_find_absl/64"], 0.90),
    ("dictionary of 10,000 keys: find, beside absl::btree_map", "dictionary_find_kernel/10000", ["dictionary_find_absl/10000"], 0.90),
    ("dictionary of 8 keys: insert, beside std::map", "dictionary_insert_kernel/8", ["dictionary_insert_std/8"], 0.90),
    ("dictionary of 64 keys: insert, beside std::map", "dictionary_insert_kernel/64", ["dictionary_insert_std/64"], 0.90),
    ("dictionary of 10,000 keys: insert, beside std::map", "dictionary_insert_kernel/10000", ["dictionary_insert_std/10000"], 0.90),
    ("1 million doubles from a numpy array, beside its copy, kept", "python_arrays/in_kernel", ["python_arrays/in_numpy"], None),
    ("the same back, and copied", "python_arrays/out_kernel", ["python_arrays/copy_numpy"], None),
    ("1 million doubles from lists, beside numpy", "python_arrays/lists_kernel", ["python_arrays/lists_numpy"], 1.00),
    ("20-character name matched, beside PCRE2's machine code", "match_kernel", ["match_jit"], 1.10),
    ("the same with the pattern looked up", "match_cache_kernel", ["match_jit"], 2.00),
    ("the same, beside RE2 and std::regex", "match_cache_kernel", ["match_re2", "match_std"], 1.00),
    ("10 kB line split, beside a loop around machine code", "split_kernel", ["split_jit"], 1.00),
    ("the same, beside RE2 and std::regex", "split_kernel", ["split_re2", "split_std"], 1.00),
    ("substitution in it, beside a loop around machine code", "substitute_kernel", ["substitute_jit"], 1.00),
    ("the same, beside RE2 and std::regex", "substitute_kernel", ["substitute_re2", "substitute_std"], 1.00),
    *(
        (f"a label found, {keys}, {order}", f"table_find/{row}/kernel", [f"table_find/{row}/flat_hash_map"], goal)
        for keys in ("consecutive", "gaps")
        for order, goal in (("in_order", 0.10), ("random", 0.20))
        for row in [f"{keys}/{order}"]
    ),
    ("a label found, sparse, random", "table_find/sparse/random/kernel", ["table_find/sparse/random/flat_hash_map"], None),
    ("the same, beside flat_map", "table_find/sparse/random/kernel", ["table_find/sparse/random/flat_map"], None),
    ("labels appended to a table", "table_append/kernel", ["table_append/flat_map"], 0.90),
    ("class id found", "uint_find/class_ids/random/kernel", ["uint_find/class_ids/random/unordered_map"], 0.80),
    ("uint found, consecutive", "uint_find/consecutive/random/kernel", ["uint_find/consecutive/random/flat_hash_map"], 0.50),
    ("uint found, one in 16", "uint_find/one_in_16/random/kernel", ["uint_find/one_in_16/random/flat_hash_map"], 0.90),
    ("uints walked over", "uint_iterate/consecutive/kernel", ["uint_iterate/consecutive/btree_map"], 0.50),
    ("the same, one in 16", "uint_iterate/one_in_16/kernel", ["uint_iterate/one_in_16/btree_map"], 0.50),
    ("class ids walked over", "uint_iterate/class_ids/kernel", ["uint_iterate/class_ids/btree_map"], 0.50),
    *(
        (f"{count:,} names, tree {what}", f"tree_{what}/{count}/kernel", [f"tree_{what}/{count}/map"], 1.00)
        for what in ("find", "insert")
        for count in (8, 64, 10000, 1000000)
    ),
    *((f"runs compressed, {keys}", f"compress/{keys}/kernel", [f"compress/{keys}/map"], None) for keys in ("gaps", "sparse")),
    ("1 million array elements read in order", "array_read_kernel", ["array_read_vector"], None),
    ("the same in a function that is given the array", "array_read_elsewhere_kernel", ["array_read_elsewhere_vector"], None),
    ("1 million array elements changed in order", "array_write_kernel", ["array_write_vector"], None),
    ("1 million array elements appended", "array_append_kernel", ["array_append_vector"], None),
    ("100,000 array elements read in random order", "array_anywhere_kernel", ["array_anywhere_vector"], None),
    *(
        (f"{batch} uids taken and released", f"uid_kernel/{batch}", [f"uid_{peer}/{batch}" for peer in ("make_shared", "malloc", "boost_pool")], 0.90)
        for batch in (100, 500, 1000)
    ),
    ("1000 uids, beside what any thread may call", "uid_kernel/1000", ["uid_make_shared/1000", "uid_malloc/1000"], None),
    *(
        row
        for notation in ("automatic", "engineering", "scientific")
        for ours in [f"format/{notation}/kernel"]
        for row in (
            (f"1 million {notation} texts, beside snprintf", ours, [f"format/{notation}/snprintf"], 0.60),
            (f"1 million {notation} texts, beside std::to_chars", ours, [f"format/{notation}/by_hand"], 1.05),
            (f"1 million {notation} texts, beside fmt", ours, [f"format/{notation}/fmt"], None),
        )
    ),
    ("1 million points appended to a list", "points/list/kernel", ["points/list/vector"], None),
    ("the same, beside doubles", "points/list/kernel", ["points/list/vector_of_doubles"], None),
    ("1 million points appended to a fixed array", "points/fixed/kernel", ["points/fixed/vector"], None),
    ("the same, beside doubles", "points/fixed/kernel", ["points/fixed/vector_of_doubles"], None),
    ("program run, beside posix_spawn", f"Spawn/kernel/{CHILDREN}", [f"Spawn/posix_spawn/{CHILDREN}"], 1.03),
    ("program run from Python, beside subprocess.run", "python_run/kernel", ["python_run/subprocess"], 1.00),
    ("file of 1 GB copied, beside cp", f"Copy/kernel/{COPIES}", [f"Copy/cp/{COPIES}"], None),
    ("10,000,000 doubles written in blocks, beside SQLite", "store_write<Kernel>/real_time", ["store_write<Sqlite>/real_time"], 1.05),
    ("the same, appended one by one", "store_write<KernelOneByOne>/real_time", ["store_write<Sqlite>/real_time"], 1.05),
    ("in blocks, beside SQLite with the engine's settings", "store_write<Kernel>/real_time", ["store_write<SqliteByEngine>/real_time"], None),
    ("10,000,000 doubles read in order, beside SQLite", "store_read<Kernel>/real_time", ["store_read<Sqlite>/real_time"], 1.10),
    ("the same, beside SQLite with the engine's settings", "store_read<Kernel>/real_time", ["store_read<SqliteByEngine>/real_time"], None),
    ("10,000,000 doubles read in order, beside HDF5", "store_read<Kernel>/real_time", ["store_read<Hdf5>/real_time"], None),
    ("100,000 random doubles, beside HDF5", "store_random<Kernel>/real_time", ["store_random<Hdf5>/real_time"], 0.60),
    ("100,000 random doubles, beside plain reads", "store_random<Kernel>/real_time", ["store_random<Plain>/real_time"], None),
    ("100,000 small objects saved, beside SQLite", "objects_save<Kernel>/real_time", ["objects_save<Sqlite>/real_time"], None),
    ("100,000 small objects loaded, beside SQLite", "objects_load<Kernel>/real_time", ["objects_load<Sqlite>/real_time"], None),
]


def main():
    times = {}
    for path in sys.argv[1:]:
        with open(path, encoding="utf-8") as file:
            for row in json.load(file)["benchmarks"]:
                if row.get("aggregate_name") == "median":
                    clock = "real_time" if row["run_name"].endswith("/manual_time") else "cpu_time"
                    times[row["run_name"]] = (row[clock], row["time_unit"])
    print(f"{'what':54}{'time':>12}{'peer':>12}{'ratio':>8}{'goal':>7}")
    for what, ours, peers, goal in GOALS:
        if ours not in times or any(peer not in times for peer in peers):
            continue
        time, unit = times[ours]
        best = min(times[peer][0] for peer in peers)
        ratio = time / best
        verdict = "" if goal is None else f"{goal:7.2f}  {'met' if ratio <= goal else 'missed'}"
        print(f"{what:54}{time:9.0f} {unit}{best:9.0f} {unit}{ratio:8.2f}{verdict}")


if __name__ == "__main__":
    main()
