"""A change, built beside the suites in a folder of its own, and judged by them."""
import pathlib
import re
import shlex
import shutil
import signal
import subprocess
import tempfile

from suites import BUILD, CASES, LIBRARIES, NO_NETWORK, PROGRAM, TOP, command_of, environment_of, run

# What the sanitizers of the other builds notice, as far as it costs next to nothing: the preset compiles with checks
# that trap, and every block of memory is checked when it is freed; when nothing was noticed the suites run once more
# and lost memory is looked for.
CHECKED_MEMORY = ["LD_PRELOAD=libc_malloc_debug.so.0", "MALLOC_CHECK_=3", "MALLOC_PERTURB_=165"]
LOST_MEMORY = ["LD_PRELOAD=liblsan.so.0"]
MEMORY = 4 << 30  # a change may ask for memory without end


class Trial:
    def __init__(self, suites, source, text):
        self.suites, self.source, self.text = suites, source, text
        self.changed = suites.made_of.get(source, set())
        self.built = {}

    def judge(self):
        """None: it does not compile; "": every test passes; else what noticed."""
        (BUILD / "changed").mkdir(exist_ok=True)
        with tempfile.TemporaryDirectory(dir=BUILD / "changed") as folder:
            self.folder = pathlib.Path(folder)
            self.place = self.folder / "src" / self.source.relative_to(TOP / "src")
            self.place.parent.mkdir(parents=True)
            self.place.write_text(self.text)
            order = self.suites.order(self.source, self.changed)
            if not all(self._build(library) for library in LIBRARIES):
                return None
            return self._judge(order)

    def _judge(self, order):
        for name, slow in order:
            if not self._build(self.suites.targets[name]):
                return None
            if noticed := self._run(name, slow, CHECKED_MEMORY):
                return noticed
        programs = [suite for suite in order if suite[0] != CASES]
        return next(filter(None, (self._run(*suite, LOST_MEMORY) for suite in programs)), "")

    def _build(self, target):
        """Compiles and links again what of a target is made of the changed file. False: that is not possible."""
        if target not in self.built:
            concerned = sorted(self.changed & self.suites.parts[target])
            self.built[target] = all(map(self._compile, concerned)) and (not concerned or self._link(target))
        return self.built[target]

    def _compile(self, made):
        target = self.folder / made
        if target.exists():
            return True
        target.parent.mkdir(parents=True, exist_ok=True)
        source, words = self.suites.objects[made]
        words = [str(target) if word == made else word for word in words]
        words[-1] = str(self.place if source == self.source else source)
        # The changed file stands before the one in src/.
        return run([words[0], f"-I{self.folder / 'src'}", *words[1:]]).returncode == 0

    def _link(self, target):
        place = self.folder / target
        place.parent.mkdir(parents=True, exist_ok=True)
        words = [str(place) if word == target else self._replaced(word) for word in self.suites.links[target]]
        return run(["sh", "-c", shlex.join(words).replace("'&&'", "&&")]).returncode == 0

    def _replaced(self, word):
        """The changed object in place of the built one; of an archive its objects, the changed ones among them."""
        if word.endswith(".a") and (parts := [part for part in self.suites.archived(word) if part in self.changed]):
            place = self.folder / pathlib.Path(word).name
            shutil.copy(BUILD / word, place)
            run(["ar", "r", str(place), *(str(self.folder / part) for part in parts)])
            return str(place)
        return str(self.folder / word) if word in self.changed else word

    def _run(self, name, slow, checks):
        """What noticed the change; empty when nothing did."""
        target = self.suites.targets[name]
        program = (self.folder if (self.folder / target).exists() else BUILD) / target
        tests = ":".join(self.suites.slow[name])
        seconds = round(10 + 5 * self.suites.processor_seconds[name])
        limits = ["prlimit", "--core=0", f"--cpu={seconds}:{seconds + 5}"]
        if checks == CHECKED_MEMORY:
            limits.append(f"--as={MEMORY}")
        # The checks are for the suite alone: the tools before it lose memory themselves.
        command = [*NO_NETWORK, *limits, "env", *(checks if name != CASES else []), *command_of(name, program)]
        if name != CASES:
            command.append(f"--gtest_filter={tests if slow else '-' + tests}")
        own = environment_of(program, LD_LIBRARY_PATH=str(self.folder), TMPDIR=str(self.folder))
        try:
            result = run(command, env=own, timeout=60 + 10 * self.suites.seconds[name])
        except subprocess.TimeoutExpired:
            return f"{name}: takes too long"
        return verdict(name, result)


def verdict(name, result):
    """What a suite that ended says of the change; nothing where all of it passed."""
    if result.returncode == 0:
        return ""
    failed = re.search(r"^(?:\[  FAILED  \]|FAIL:|ERROR:) ([\w/.]+)", result.stdout, re.M)
    if failed:
        return f"{name}: {failed.group(1)}"
    return f"{name}: {'takes too long' if result.returncode == -signal.SIGXCPU else 'ends abnormally'}"
