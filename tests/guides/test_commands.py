"""The commands and paths that the guides name exist, and so do the options; every script explains itself."""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

from guide import GUIDES, TOP, fences, prose

SCRIPTS = sorted(path for path in (TOP / "script").iterdir() if path.is_file())
CONFIGURED = json.loads((TOP / "CMakePresets.json").read_text())["configurePresets"]
PRESETS = {preset["name"] for preset in CONFIGURED if not preset.get("hidden")}
FOLDERS = ("src", "tests", "docs", "examples", "bench", "cmake", "package", "script")
# A pattern, or a placeholder.
PATTERN = re.compile(r"[*<{]|N[A-Z]")
RUNS_ANOTHER = ("script/wine", "script/isolated")


def commands(guide):
    """Code in a guide, one line each: spans, indented lines, shell blocks."""
    text = guide.read_text()
    for block in fences(text, "sh"):
        yield from block.splitlines()
    yield from re.findall(r"^    (\S.*)$", prose(text), re.M)
    yield from re.findall(r"`([^`\n]+)`", prose(text))


def words(command):
    """The words of a command, without the comment behind it."""
    return [word for part in re.split(r"\s#\s|&&", command)[:1 if " # " in command else None]
            for word in part.split()]


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def help_of(script):
    return output_of(TOP / "script/help", script)


def every_command():
    for guide in GUIDES:
        for command in commands(guide):
            yield guide.name, command, words(command)


class Commands(unittest.TestCase):
    def check(self, look):
        """Lets `look` judge the words of every command."""
        for guide, command, parts in every_command():
            with self.subTest(guide=guide, command=command):
                look(parts)

    def test_scripts_and_their_options_exist(self):
        def look(parts):
            for place, word in enumerate(parts):
                if not re.fullmatch(r"script/[a-z]+", word):
                    continue
                self.assertTrue(os.access(TOP / word, os.X_OK), f"no script {word}")
                for option in [] if word in RUNS_ANOTHER else parts[place + 1:]:
                    if option.startswith("--") and option != "--help":
                        self.assertIn(option.split("=")[0], help_of(word))
        self.check(look)

    def test_presets_exist(self):
        def look(parts):
            named = [after for word, after in zip(parts, parts[1:]) if word == "--preset"]
            if parts and parts[0] == "script/build":
                named += [word.partition(":")[0] for word in parts[1:] if re.fullmatch("[a-z]+(:.+)?", word)]
            self.assertLessEqual(set(named), PRESETS)
        self.check(look)

    def test_paths_exist(self):
        def look(parts):
            for word in parts:
                path = word.rstrip(".,:;")
                named = path.split("/")[0] in FOLDERS and "/" in path and not PATTERN.search(path)
                self.assertTrue(not named or (TOP / path).exists(), path)
        self.check(look)

    def test_suites_exist(self):
        suites = {f"{folder.name}_tests" for folder in (TOP / "tests").iterdir() if folder.is_dir()}

        def look(parts):
            self.assertLessEqual(set(re.findall(r"\b[a-z0-9]+_tests\b", " ".join(parts))), suites)
        self.check(look)

    def test_options_of_the_examples_exist(self):
        for example in ("examples/sample_server", "examples/probe"):
            known = output_of(sys.executable, TOP / example, "--help")

            def look(parts, example=example, known=known):
                for option in parts if example in parts[:2] else []:
                    if option.startswith("--"):
                        self.assertIn(option, known)
            self.check(look)


class Scripts(unittest.TestCase):
    def test_every_script_explains_itself(self):
        for script in SCRIPTS:
            with self.subTest(script=script.name):
                # Checked before the call, because a script that does not know the option would do its work.
                self.assertIn("--help", script.read_text())
                text = help_of(script.name)
                self.assertIn(f"usage: script/{script.name}", text)
                self.assertEqual(output_of(script, "--help").strip(), text.strip())

    def test_one_command_lists_them_all(self):
        listed = output_of(TOP / "script/help")
        named = [line.split()[0] for line in listed.splitlines()]
        self.assertEqual(named, [f"script/{script.name}" for script in SCRIPTS])

    def test_every_check_is_named_by_its_script(self):
        lists = "\n".join(path.read_text() for path in (TOP / "tests").rglob("CMakeLists.txt"))
        folders = re.search(r"foreach\(folder ([a-z ]+)\)", lists)[1].split()
        cases = re.findall(r"tavrin_netns_tests\(\w+ \w+\.py ([a-z_\s]+)\)", lists)
        suites = {f"{folder}_tests" for folder in folders} | {f"netns_{case}" for case in " ".join(cases).split()}
        suites |= set(re.findall(r"(?:tavrin_suite|tavrin_driven|tavrin_cases|tavrin_check|add_test)\((?:NAME )?([a-z]\w+) ", lists))
        suites |= set(re.findall(r"tavrin_fuzzer\((\w+) ", lists))
        named = set(re.findall(r"\w+", help_of("test")))
        self.assertGreater(len(suites), 25)
        self.assertEqual(suites - named, set())

    def test_hosted_machines_call_these_scripts(self):
        workflow = (TOP / ".github/workflows/ci.yml").read_text()
        called = re.findall(r"run: (script/\w+(?: --\w+)?)$", workflow, re.M)
        self.assertEqual(called, ["script/setup", "script/test --long"])
        release = (TOP / ".github/workflows/release.yml").read_text()
        self.assertEqual(re.findall(r"run: (script/.*)$", release, re.M), ["script/setup", "script/test --long", "script/package build/unsigned"])
        for option in re.findall(r"script/package (.*?)build/package", release, re.S)[0].split():
            if option.startswith("--"):
                self.assertIn(option, help_of("package"))
        self.assertIn('"$(dirname "$0")/../script/test"', (TOP / ".ci/run").read_text())

    def test_hosted_windows_runs_every_script_for_it(self):
        workflows = "".join(path.read_text() for path in (TOP / ".github/workflows").glob("*.yml"))
        called = set(re.findall(r"run: tests/windows/(\S+)", workflows))
        there = {path.name for path in (TOP / "tests/windows").iterdir()} - {"common.ps1", "sample.ps1"}
        self.assertEqual(called, there)
        named = re.findall(r"`(\w+\.ps1|suites)`", (TOP / "docs/contributing.md").read_text())
        self.assertEqual(set(named), there)

    def test_suites_run_where_they_were_not_built(self):
        """Runs all suites that were built, except those that need more than their own file."""
        with tempfile.TemporaryDirectory() as folder:
            for name, code in (("one_tests", 0), ("two_tests", 1), ("e2e_tests", 1), ("tour", 1)):
                suite = pathlib.Path(folder) / f"{name}.exe"
                suite.write_text(f"#!/bin/sh\necho '[==========] 7 tests from 2 test suites ran.'\nexit {code}\n")
                suite.chmod(0o755)
            done = subprocess.run([TOP / "tests/windows/suites", folder], cwd=folder, check=False, capture_output=True,
                                  text=True)
        self.assertEqual((done.returncode, done.stdout.splitlines()), (1, [
            "ok      one_tests: 7 tests", "FAILED  two_tests", "[==========] 7 tests from 2 test suites ran.",
            "2 suites, 1 failed"]))


if __name__ == "__main__":
    unittest.main()
