"""The command line itself: help, wrong usage, and the output streams."""
import os
import re
import subprocess
import unittest

from tool import COMMAND, TOP, UNDER_WINE, FolderCase, own_path, run, start

ONLY_ON_WINDOWS = ["show", "set", "apply", "restore", "test", "scan", "dsc"]
VERBS = ["check", "show", "set", "apply", "restore", "test", "scan", "template", "diff", "dsc", "completion"] if UNDER_WINE else ["check", "template", "diff", "completion"]


class Help(unittest.TestCase):
    def test_lists_verbs_and_exit_codes(self):
        result = run("--help")
        self.assertEqual((result.code, result.err), (0, ""))
        self.assertEqual(re.findall(r"^  (\w+) +\S", result.out.split("\n\n")[1], re.M), VERBS)
        self.assertIs("Only on Windows: " + ", ".join(ONLY_ON_WINDOWS) + "\n" in result.out, not UNDER_WINE)
        self.assertEqual(re.findall(r"^  (\d)  ", result.out, re.M), list("01234567"))
        self.assertEqual(run("help").out, result.out)

    def test_of_each_verb(self):
        for verb in VERBS:
            result = run(verb, "--help")
            self.assertEqual((result.code, result.err), (0, ""), verb)
            self.assertTrue(result.out.startswith(f"usage: tavrinctl {verb}"), verb)

    def test_version(self):
        version = re.search(r"^project\(\w+ VERSION ([\d.]+)", (TOP / "CMakeLists.txt").read_text(), re.M)[1]
        self.assertEqual(run("--version").out, f"tavrinctl {version}\n")


class NotUnderstood(unittest.TestCase):
    def refuses(self, words, *arguments):
        result = run(*arguments)
        self.assertEqual((result.code, result.out), (2, ""), result)
        self.assertTrue(result.err.startswith("tavrinctl: " + words), result.err)

    def test_no_verb_and_an_unknown_one(self):
        self.refuses("missing command")
        self.refuses('unknown command "chekc"; see tavrinctl --help', "chekc")

    def test_options(self):
        self.refuses("unknown option --nothing", "check", "--nothing", "x")
        self.refuses("unknown option -x", "check", "-x", "y")
        self.refuses("check does not take --json", "check", "--json", "x")
        self.refuses("--code-page needs a value", "check", "x", "--code-page")
        self.refuses('--code-page takes a number from 1 to 65535, not "many"', "check", "--code-page", "many", "x")
        self.refuses("unknown code page 9", "check", "--code-page", "9", "x")

    def test_operands(self):
        self.refuses("check: missing arguments\nusage: tavrinctl check FILE... [--state STATE.json] "
                     "[--format text|json|sarif|github] [--code-page N]\n", "check")

    def test_required_options(self):
        self.refuses("template needs --format admx|gpp|reg\n", "template", "x")
        self.refuses("template needs --out FOLDER\n", "template", "x", "--format", "reg")
        self.refuses('"xml" is not valid for --format admx|gpp|reg', "template", "x", "--format", "xml")

    @unittest.skipIf(UNDER_WINE, "Windows has every command")
    def test_what_needs_windows_says_so(self):
        for verb in ONLY_ON_WINDOWS:
            self.refuses(f"{verb} needs Windows\n", verb, "--help")

    def test_what_stands_behind_two_dashes_is_no_option(self):
        self.assertIn("--json:1: error: cannot read: No such file or directory", run("check", "--", "--json").out)


class Streams(FolderCase):
    def many_findings(self):
        return own_path(self.file("x.spec", "SOFTWARE\nX\n!G\n" + "$A\nV\nH\nNone\n" * 20_000))

    @unittest.skipUnless(os.path.exists("/dev/full"), "there is no full disk to write to")
    def test_a_full_disk_is_a_failure(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([*COMMAND, "check", self.many_findings()], stdout=full, stderr=subprocess.PIPE,
                                  check=False)
        self.assertEqual((done.returncode, done.stderr.decode()),
                         (1, "tavrinctl: cannot write to the standard output\n"))

    def test_a_reader_that_is_gone_is_a_failure(self):
        with start("check", self.many_findings()) as process:
            process.stdin.close()
            process.stdout.close()
            process.wait(120)
        self.assertNotEqual(process.returncode, 0)

    def test_the_same_input_gives_the_same_octets(self):
        path = self.many_findings()
        self.assertEqual(run("check", path).octets, run("check", path).octets)


if __name__ == "__main__":
    unittest.main()
