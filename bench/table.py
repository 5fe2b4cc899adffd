"""Prints the results of benchmarks as one table.

A benchmark named WORK/NAME is one of several that do the same work; the one named tavrinconfig is this
project's, and the table says how many times as long each other takes.
"""
import json
import os
import sys

OURS = "tavrinconfig"
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def medians(path):
    """The median processor time of every benchmark of a result file, in nanoseconds."""
    if os.path.getsize(path) == 0:  # a filter left nothing to run
        return
    with open(path, encoding="utf-8") as file:
        for run in json.load(file)["benchmarks"]:
            if run.get("aggregate_name") == "median":
                yield run["run_name"], run["cpu_time"] * NANOSECONDS[run["time_unit"]]


def rows(times):
    """Each benchmark with its time and how it compares with ours."""
    for name, time in sorted(times.items()):
        work, _, who = name.rpartition("/")
        ours = times.get(f"{work}/{OURS}")
        ratio = f"{time / ours:.2f}" if ours and who != OURS else ""
        yield name, f"{time:,.1f}", ratio


def main():
    table = [("benchmark", "ns", "times ours")]
    for path in sys.argv[1:]:
        table += rows(dict(medians(path)))
    widths = [max(len(row[column]) for row in table) for column in range(3)]
    for name, time, ratio in table:
        print(f"{name:<{widths[0]}}  {time:>{widths[1]}}  {ratio:>{widths[2]}}".rstrip())


if __name__ == "__main__":
    main()
