"""The native suites, built once over a shared library of the program; a change is compiled beside it.

The first build is never touched. What a change makes of objects, library and suites lies in a folder of its own
that is emptied for the next change.
"""
import json
import os
import pathlib
import re
import resource
import shlex
import shutil
import subprocess

TOP = pathlib.Path(__file__).resolve().parents[2]
BUILD = TOP / "build" / "mutate"
CHANGED = BUILD / "changed"
# Tests that take longer wait for something; they come last.
SLOW_SECONDS = 0.1
# What the sanitizers of the other builds notice, as far as it costs next to nothing: the changed file is compiled
# with checks that trap, and every block of memory is checked when it is freed; when nothing was noticed the suites
# run once more and lost memory is looked for.
CHECKS = ["-fsanitize=undefined", "-fno-sanitize=vptr", "-fsanitize-undefined-trap-on-error", "-fstack-protector-all",
          "-D_GLIBCXX_ASSERTIONS"]
CHECKED_MEMORY = {"LD_PRELOAD": "libc_malloc_debug.so.0", "MALLOC_CHECK_": "3", "MALLOC_PERTURB_": "165"}
LOST_MEMORY = {"LD_PRELOAD": "liblsan.so.0"}
MEMORY = 4 << 30  # a change may ask for memory without end


class Broken(Exception):
    """The suites do not pass without a change, or something does not build."""


def run(command, **how):
    return subprocess.run(command, cwd=BUILD, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace", check=False, **how)


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Suites:
    def __init__(self):
        configured = subprocess.run(["cmake", "--preset", "mutate"], cwd=TOP, capture_output=True, text=True)
        if configured.returncode:
            raise Broken(configured.stdout + configured.stderr)
        self.names = sorted(set(re.findall(r"^tests/(\w+_tests):", self._ninja("-t", "targets", "all"), re.M)))
        built = run(["ninja", *(f"tests/{name}" for name in self.names)])
        if built.returncode:
            raise Broken(built.stdout[-4000:])
        rows = json.loads((BUILD / "compile_commands.json").read_text())
        # The command line compiles some sources once more for itself; the suites have the library's, which comes last.
        rows.sort(key=lambda row: "/tavrinctl.dir/" not in row["command"])
        self.compile = {pathlib.Path(row["file"]): shlex.split(row["command"]) for row in rows}
        self.link = {name: shlex.split(self._ninja("-t", "commands", target).splitlines()[-1])
                     for name, target in [("", "libtavrin.so"), *((name, f"tests/{name}") for name in self.names)]}
        self._read_dependencies()
        self._measure()

    def _ninja(self, *arguments):
        return run(["ninja", *arguments]).stdout

    def _read_dependencies(self):
        """Header -> sources that read it."""
        objects = {command[command.index("-o") + 1]: source for source, command in self.compile.items()}
        self.readers, reader = {}, None
        for line in self._ninja("-t", "deps").splitlines():
            if not line.startswith(" "):
                reader = objects.get(line.split(":")[0])
            elif reader is not None:
                self.readers.setdefault((BUILD / line.strip()).resolve(), []).append(reader)

    def _measure(self):
        """Runs every suite without a change: how long each test takes, and that it passes."""
        self.slow, self.seconds = {}, {}
        for name in self.names:
            report = BUILD / f"{name}.json"
            result = run([BUILD / "tests" / name, f"--gtest_output=json:{report}"], timeout=600)
            if result.returncode:
                raise Broken(f"{name} fails without a change:\n{result.stdout[-4000:]}")
            tests = {f"{suite['name']}.{case['name']}": float(case["time"].rstrip("s"))
                     for suite in json.loads(report.read_text())["testsuites"] for case in suite["testsuite"]}
            self.slow[name] = [test for test, seconds in tests.items() if seconds >= SLOW_SECONDS]
            self.seconds[name] = sum(tests.values())

    def order(self, source):
        """(suite, whether only its slow tests) in the order in which they most likely notice a change."""
        own = f"{source.parent.relative_to(TOP / 'src').parts[0]}_tests"
        names = sorted(self.names, key=lambda name: (name != own, self.seconds[name]))
        return [(name, False) for name in names] + [(name, True) for name in names if self.slow[name]]

    def judge(self, source, text):
        """Builds the suites with `text` in place of `source`. None: it does not compile; "": every test passes; else
        what noticed."""
        shutil.rmtree(CHANGED, ignore_errors=True)
        changed = CHANGED / "src" / source.relative_to(TOP / "src")
        changed.parent.mkdir(parents=True)
        changed.write_text(text)
        concerned = {source: changed} if source.suffix == ".cpp" else {
            reader: reader for reader in self.readers.get(source, [])}
        library = {reader: place for reader, place in concerned.items() if (TOP / "src") in reader.parents}
        if not self._compile(library) or not self._link("", "libtavrin.so"):
            return None
        built = set()
        for name, slow in self.order(source):
            if name not in built:
                own = {reader: place for reader, place in concerned.items() if self._belongs(reader, name)}
                if not self._compile(own):
                    return None
                if own and not self._link(name, f"tests/{name}"):
                    return None
                built.add(name)
            noticed = self._run(name, slow, CHECKED_MEMORY)
            if noticed:
                return noticed
        return next(filter(None, (self._run(*suite, LOST_MEMORY) for suite in self.order(source))), "")

    def _belongs(self, reader, suite):
        """Whether a test's source, or one of all tests' support, is linked into the suite."""
        objects = self.compile[reader]
        place = objects[objects.index("-o") + 1]
        return f"/{suite}.dir/" in place or "/tavrin_test_support.dir/" in place

    def _compile(self, sources):
        for source, place in sources.items():
            command = list(self.compile[source])
            target = CHANGED / command[command.index("-o") + 1]
            if target.exists():
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            command[command.index("-o") + 1] = str(target)
            command[-1] = str(place)
            # The changed file stands before the one in src/.
            if run([command[0], f"-I{CHANGED / 'src'}", *CHECKS, *command[1:]]).returncode:
                return False
        return True

    def _link(self, name, target):
        command = [self._replaced(word) for word in self.link[name]]
        place = CHANGED / target
        place.parent.mkdir(parents=True, exist_ok=True)
        command = [str(place) if word == target else word for word in command]
        return run(["sh", "-c", shlex.join(command).replace("'&&'", "&&")]).returncode == 0

    def _replaced(self, word):
        """The changed object in place of the built one; of an archive its objects, the changed ones first."""
        if word.endswith(".a") and (objects := sorted((CHANGED / "tests/CMakeFiles").glob(
                f"{pathlib.Path(word).stem.removeprefix('lib')}.dir/**/*.o"))):
            shutil.copy(BUILD / word, CHANGED / pathlib.Path(word).name)
            run(["ar", "r", str(CHANGED / pathlib.Path(word).name), *map(str, objects)])
            return str(CHANGED / pathlib.Path(word).name)
        return str(CHANGED / word) if word.endswith(".o") and (CHANGED / word).exists() else word

    def _run(self, name, slow, checks):
        """What noticed the change; empty when nothing did."""
        program = CHANGED / "tests" / name
        if not program.exists():
            program = BUILD / "tests" / name
        tests = ":".join(self.slow[name])
        environment = dict(os.environ, LD_LIBRARY_PATH=str(CHANGED), TMPDIR=str(CHANGED), **checks)
        try:
            result = run([program, "--gtest_fail_fast", f"--gtest_filter={tests if slow else '-' + tests}"],
                         env=environment, timeout=10 + 5 * self.seconds[name],
                         preexec_fn=limit_memory if checks == CHECKED_MEMORY else None)
        except subprocess.TimeoutExpired:
            return f"{name}: takes too long"
        if result.returncode == 0:
            return ""
        failed = re.search(r"\[  FAILED  \] ([\w/.]+)", result.stdout)
        return f"{name}: {failed.group(1)}" if failed else f"{name}: ends abnormally"
