"""The native suites, built once over shared libraries of the programs: what they are made of, and how long they take.

This build is never touched; what a change makes of it, trial.py builds beside it.
"""
import json
import os
import pathlib
import re
import resource
import shlex
import subprocess
import sys
import time

TOP = pathlib.Path(__file__).resolve().parents[2]
BUILD = TOP / "build" / "mutate"
# What every suite, or those of the command line, are linked with; and the finished command line.
LIBRARIES = ("libtavrin.so", "libtavrin_ctl.so")
PROGRAM = "tavrinctl"
# The unittest cases that drive it.
CASES = "ctl_files"
# Tests that take longer wait for something; they come last.
SLOW_SECONDS = 0.1
# A change may send where the program never would: a test runs where no packet reaches a real network.
NO_NETWORK = ["unshare", "--map-root-user", "--net", "sh", "-c", 'ip link set lo up && exec "$@"', "sh"]


class Broken(Exception):
    """The suites do not pass without a change, or something does not build."""


def run(command, **how):
    return subprocess.run(command, **{"cwd": BUILD, **how}, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace", check=False)


def processor_seconds():
    """What the programs that ended took of the processor."""
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def command_of(suite, program):
    """Runs a suite, or the cases over the command line, until something fails."""
    if suite == CASES:
        return [sys.executable, "-B", "-m", "unittest", "discover", "--failfast", str(TOP / "tests/ctl/files")]
    return [str(program), "--gtest_fail_fast"]


def environment_of(program, **more):
    """The random user does the same each time, and less than usual."""
    return {**os.environ, "PYTHONPATH": str(TOP / "tests/ctl"), "TAVRINCTL": str(program), "TAVRIN_USER_SEED": "1",
            "TAVRIN_USER_SESSIONS": "100", **more}


class Suites:
    def __init__(self):
        configured = subprocess.run(["cmake", "--preset", "mutate"], cwd=TOP, capture_output=True, text=True)
        if configured.returncode:
            raise Broken(configured.stdout + configured.stderr)
        names = sorted(set(re.findall(r"^tests/(\w+_tests):", self._ninja("-t", "targets", "all"), re.M)))
        # Suite -> what is built for it.
        self.targets = {**{name: f"tests/{name}" for name in names}, CASES: PROGRAM}
        built = run(["ninja", *self.targets.values()])
        if built.returncode:
            raise Broken(built.stdout[-4000:])
        self._read_commands()
        self._read_dependencies()
        self.seconds, self.processor_seconds, self.slow = {}, {}, {}
        for name in self.targets:
            self._measure(name)

    def _ninja(self, *arguments):
        return run(["ninja", *arguments]).stdout

    def _read_commands(self):
        """Object -> its source and command; target -> the command that links it, and the objects that it holds."""
        self.objects = {}
        for row in json.loads((BUILD / "compile_commands.json").read_text()):
            words = shlex.split(row["command"])
            self.objects[words[words.index("-o") + 1]] = pathlib.Path(row["file"]), words
        self.links = {target: shlex.split(self._ninja("-t", "commands", target).splitlines()[-1])
                      for target in (*LIBRARIES, *self.targets.values())}
        self.parts = {target: {part for word in words for part in [word, *self.archived(word)] if part in self.objects}
                      for target, words in self.links.items()}

    def archived(self, word):
        """The objects in an archive that a link command names."""
        folder = f"/{pathlib.Path(word).stem.removeprefix('lib')}.dir/"
        return [made for made in self.objects if word.endswith(".a") and folder in made]

    def _read_dependencies(self):
        """File -> the objects that are made of it."""
        self.made_of = {}
        for made, (source, _) in self.objects.items():
            self.made_of.setdefault(source, set()).add(made)
        for line in self._ninja("-t", "deps").splitlines():
            if line and not line.startswith(" "):
                made = line.split(":")[0]
            elif line and made in self.objects:
                self.made_of.setdefault((BUILD / line.strip()).resolve(), set()).add(made)

    def _measure(self, name):
        """Runs a suite without a change: how long each test takes, and that it passes."""
        report, program = BUILD / f"{name}.json", BUILD / self.targets[name]
        report.write_text('{"testsuites": []}')
        before, start = processor_seconds(), time.monotonic()
        reporting = [] if name == CASES else [f"--gtest_output=json:{report}"]
        result = run([*NO_NETWORK, *command_of(name, program), *reporting], env=environment_of(program))
        if result.returncode:
            raise Broken(f"{name} fails without a change:\n{result.stdout[-4000:]}")
        self.seconds[name], self.processor_seconds[name] = time.monotonic() - start, processor_seconds() - before
        self.slow[name] = [f"{suite['name']}.{case['name']}" for suite in json.loads(report.read_text())["testsuites"]
                           for case in suite["testsuite"] if float(case["time"].rstrip("s")) >= SLOW_SECONDS]

    def order(self, source, changed):
        """(suite, whether only its slow tests) in the order in which they most likely notice a change, of those that
        have one of the changed objects."""
        own = f"{source.parent.relative_to(TOP / 'src').parts[0]}_tests"
        libraries = {library for library in LIBRARIES if changed & self.parts[library]}
        names = [name for name, target in self.targets.items()
                 if changed & self.parts[target] or libraries & set(self.links[target])]
        names.sort(key=lambda name: (name != own, self.processor_seconds[name]))
        return [(name, False) for name in names] + [(name, True) for name in names if self.slow[name]]
