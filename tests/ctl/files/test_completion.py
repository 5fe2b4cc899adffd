"""What `completion` prints: bash completes by it, and the table for PowerShell has the same words."""
import re
import subprocess
import unittest

from tool import UNDER_WINE, FolderCase, run


class Bash(FolderCase):
    def completed(self, *words):
        script = self.file("tavrinctl.bash", run("completion", "bash").octets)
        line = " ".join(f"'{word}'" for word in ("tavrinctl", *words))
        done = subprocess.run(["bash", "-u", "-c", f". {script}; COMP_WORDS=({line}); COMP_CWORD={len(words)}; "
                               'COMPREPLY=(); _tavrinctl; printf "%s\\n" "${COMPREPLY[@]-}"'],
                              capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, ""), done)
        return done.stdout.split()

    def test_verbs(self):
        self.assertEqual(self.completed("ch"), ["check"])
        self.assertEqual(self.completed("--v"), ["--version"])
        self.assertIs("show" in self.completed(""), UNDER_WINE)

    def test_options_of_a_verb(self):
        self.assertEqual(self.completed("check", "x.spec", "--co"), ["--code-page"])
        self.assertEqual(self.completed("template", "--"), ["--help", "--format", "--out", "--state", "--code-page"])

    def test_words_of_an_option_and_of_a_verb(self):
        self.assertEqual(self.completed("template", "x.spec", "--format", ""), ["admx", "gpp", "reg"])
        self.assertEqual(self.completed("template", "x.spec", "--format", "r"), ["reg"])
        self.assertEqual(self.completed("completion", "p"), ["powershell"])

    def test_files_where_there_is_no_word(self):
        self.assertEqual(self.completed("check", "x.sp"), [])
        self.assertIn("complete -o default -F _tavrinctl tavrinctl\n", run("completion", "bash").out)


class PowerShell(unittest.TestCase):
    def test_has_the_words_of_bash(self):
        def table(shell, row):
            return {place: re.findall(r"[\w-]+", words) for place, words in re.findall(row, run("completion", shell).out, re.M)}

        powershell = table("powershell", r"^        '([^']*)' = (.*)$")
        self.assertEqual(powershell, table("bash", r"^        '([^']*)'\) words='([^']*)' ;;$"))
        self.assertEqual(powershell["completion"][:2], ["bash", "powershell"])

    def test_other_shells_are_refused(self):
        result = run("completion", "fish")
        self.assertEqual((result.code, result.out), (2, ""))
        self.assertIn('"fish" is not valid for completion\nusage: tavrinctl completion bash|powershell\n', result.err)


if __name__ == "__main__":
    unittest.main()
