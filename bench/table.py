"""Prints measurements as one table, with the goals of bench/goals.py.

usage: table.py FILE...

A file is one of Google Benchmark's, or {"samples": [{"name", "unit", "values"}]} with seconds ("s"), bytes
("B") or calls ("calls"). A measurement named WORK/PROGRAM is one of several of the same work; so is what a benchmark counts as
"bytes". The time of Google Benchmark's that counts is the processor's, unless the benchmark took its own.
"""
import json
import os
import re
import statistics
import sys
from collections import defaultdict

from goals import OURS, WORKS

SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}
SCALES = {
    "s": ((1, "s"), (1e-3, "ms"), (1e-6, "µs"), (1e-9, "ns")),
    "B": ((1024 * 1024, "MiB"), (1024, "KiB"), (1, "B")),
    "calls": ((1, "calls"),),
}
HEADINGS = ("work", "program", "median", "spread", "best", "times ours", "goal")


def google_samples(runs):
    for run in runs:
        if run.get("run_type") != "iteration" or run.get("error_occurred"):
            continue
        own_time = run["name"].endswith("/manual_time")
        name = re.sub(r"/(min_time:|iterations:|repeats:|manual_time).*", "", run["name"])
        if "bytes" in run:
            yield name, "B", [run["bytes"]]
        else:
            yield name, "s", [run["real_time" if own_time else "cpu_time"] * SECONDS[run["time_unit"]]]


def samples_of(path):
    if os.path.getsize(path) == 0:  # a filter left nothing to run
        return []
    with open(path, encoding="utf-8") as file:
        content = json.load(file)
    if "benchmarks" in content:
        return list(google_samples(content["benchmarks"]))
    return [(sample["name"], sample["unit"], sample["values"]) for sample in content["samples"]]


def shown(value, unit):
    scale, name = next((pair for pair in SCALES[unit] if value >= pair[0]), SCALES[unit][-1])
    return f"{value / scale:.3g} {name}" if value / scale < 1000 else f"{value / scale:,.0f} {name}"


def spread(values):
    """Half the distance between the quartiles, in percent of the median."""
    if len(values) < 3:
        return ""
    low, middle, high = statistics.quantiles(values, n=4)
    return f"±{(high - low) / 2 / middle * 100:.0f}%" if middle else ""


def judged(work, medians):
    for goal in work.goals:
        judgement = goal.judge(medians)
        if judgement is None:
            continue
        reached, number = judgement
        yield f"{goal.text}: {number}{'' if reached else ', MISSED'}"


def rows_of(work, programs):
    medians = {who: statistics.median(values) for who, (_, values) in programs.items()}
    goals = list(judged(work, medians))
    order = sorted(programs, key=lambda who: (who != OURS, int(who) if who.isdigit() else medians[who]))
    first = order[0]
    for index, who in enumerate(order):
        unit, values = programs[who]
        ratio = f"{medians[who] / medians[first]:.2f}" if index else ""
        yield (work.name if index == 0 else "", who, shown(medians[who], unit), spread(values), shown(min(values), unit), ratio,
               goals[index] if index < len(goals) else "")


def main():
    measured = defaultdict(dict)
    for path in sys.argv[1:]:
        for name, unit, values in samples_of(path):
            work, _, who = name.rpartition("/")
            measured[work].setdefault(who, (unit, []))[1].extend(values)
    table = [HEADINGS]
    for work in WORKS:
        if work.name in measured:
            table += rows_of(work, measured.pop(work.name))
    if measured:
        sys.exit(f"table.py: not in the table: {', '.join(measured)}")
    widths = [max(len(row[column]) for row in table) for column in range(len(HEADINGS))]
    for row in table:
        cells = [cell.rjust(width) if 1 < column < 6 else cell.ljust(width)
                 for column, (cell, width) in enumerate(zip(row, widths))]
        print("  ".join(cells).rstrip())


if __name__ == "__main__":
    main()
