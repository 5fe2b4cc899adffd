"""Times `tavrinctl diff` of 5,000 reports with 50 values each, and takes the most memory that it had.

usage: diff.py PROGRAM SAMPLES.json
"""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

MACHINES, VALUES, RUNS = 5000, 50, 9
NAMES = [f"Value{at}" for at in range(VALUES)]
TEXT = "some desired text"


def write_reports(folder):
    """One value of each machine drifts; returns the octets of all reports."""
    values = {name: {"value": TEXT, "group": "A group", "title": f"Title of {name}", "kind": "String"} for name in NAMES}
    total = 0
    for at in range(MACHINES):
        drifts = NAMES[at % VALUES]
        total += (folder / f"{at:04}.json").write_text(json.dumps({
            "schema": 1, "machine": {"name": f"web{at}", "tavrinctl": "1", "time": "2026-01-31T12:00:00Z"},
            "specFiles": [{"path": "C:\\agent.spec", "sha256": "a" * 64}], "configurations": {"Agent": {
                "key": "SOFTWARE\\Agent", "service": "Agent", "serviceState": "running", "startType": "automatic",
                "restartPending": False, "values": {**values, drifts: {**values[drifts], "value": "drifts"}}}}}))
    return total


def run(*words):
    """What it prints, its processor time and the most memory that it had when it began to print, in bytes: the memory that
    wait4 tells would be this program's own."""
    with subprocess.Popen(words, stdout=subprocess.PIPE) as process:
        printed = process.stdout.read(1)
        status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
        printed += process.stdout.read()
        _, ended, used = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(ended)
    if process.returncode:
        sys.exit(f"{words[0]} ended with code {process.returncode}")
    return printed, used.ru_utime + used.ru_stime, int(re.search(r"VmHWM:\s*(\d+) kB", status)[1]) * 1024


def compare(program, desired, folder):
    printed, seconds, memory = run(program, "diff", str(desired), str(folder), "--format", "json")
    drifts = [list(each["differences"]["Agent"]) for each in json.loads(printed)["machines"]]
    if drifts != [[NAMES[at % VALUES]] for at in range(MACHINES)]:
        sys.exit("diff misses a difference")
    return seconds, memory


def main(program, samples):
    with tempfile.TemporaryDirectory() as place:
        folder, desired = pathlib.Path(place) / "reports", pathlib.Path(place) / "desired.json"
        folder.mkdir()
        total = write_reports(folder)
        desired.write_text(json.dumps(
            {"schema": 1, "configurations": {"Agent": {"values": {name: TEXT for name in NAMES}}}}))
        seconds, memory = zip(*(compare(program, desired, folder) for _ in range(RUNS)))
        reading = [run("cat", *map(str, sorted(folder.iterdir())))[1] for _ in range(RUNS)]
    pathlib.Path(samples).write_text(json.dumps({"samples": [
        {"name": "diff of 5000 reports/tavrinconfig", "unit": "s", "values": seconds},
        {"name": "diff of 5000 reports/reading them", "unit": "s", "values": reading},
        {"name": "memory of that diff/tavrinconfig", "unit": "B", "values": memory},
        {"name": "memory of that diff/the reports", "unit": "B", "values": [total]}]}))


if __name__ == "__main__":
    main(*sys.argv[1:])
