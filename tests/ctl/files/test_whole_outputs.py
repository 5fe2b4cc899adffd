"""Whatever tavrinctl makes of the files in whole/, letter by letter as in the files beside them.

To change an output on purpose, change its file by hand, or look at each line of what TAVRIN_WRITE_WHOLE=1 writes there.
"""
import os
import pathlib
import re
import shutil
import unittest

from tool import TOP, FolderCase, run

WHOLE = pathlib.Path(__file__).with_name("whole")
VERSION = re.search(r"VERSION (\d+\.\d+\.\d+)", (TOP / "CMakeLists.txt").read_text())[1]


class WholeOutputs(FolderCase):
    def setUp(self):
        super().setUp()
        shutil.copytree(WHOLE, self.folder, dirs_exist_ok=True)

    def expect(self, name, text):
        text = text.replace(f'"version": "{VERSION}"', '"version": "VERSION"').replace("\r\n", "\n")
        if os.environ.get("TAVRIN_WRITE_WHOLE"):
            (WHOLE / name).write_text(text, encoding="utf-8", newline="")
        self.maxDiff = None
        self.assertEqual(text, (WHOLE / name).read_bytes().decode())

    def printed(self, *words, code=0):
        result = run(*words, cwd=self.folder)
        self.assertEqual((result.code, result.err), (code, ""), result)
        return result.out

    def made(self, form, path, encoding="utf-8"):
        run("template", "--format", form, "--out", "out", "x.spec", cwd=self.folder)
        return (self.folder / "out" / path).read_bytes().decode(encoding)

    def test_of_diff(self):
        for form, name in (("text", "diff.txt"), ("csv", "diff.csv"), ("json", "diff.json"), ("html", "diff.html")):
            with self.subTest(form=form):
                self.expect(name, self.printed("diff", "--format", form, "desired.json", "reports", code=4))

    def test_of_check(self):
        for form, name in (("text", "check.txt"), ("json", "check.json"), ("sarif", "check.sarif"),
                           ("github", "check.github")):
            with self.subTest(form=form):
                self.expect(name, self.printed("check", "--format", form, "wrong.spec", code=4))

    def test_of_template(self):
        self.expect("x.admx", self.made("admx", "x.admx"))
        self.expect("x.adml", self.made("admx", "en-US/x.adml"))
        self.expect("x.xml", self.made("gpp", "x.xml"))
        self.expect("x.reg.txt", self.made("reg", "x.reg", "utf-16"))

    def test_of_completion(self):
        for shell in ("bash", "powershell"):
            with self.subTest(shell=shell):
                text = self.printed("completion", shell)
                # Which commands there are depends on the system; test_completion.py plays them in a shell.
                self.expect(f"completion.{shell}", re.sub(r"(?m)^ {8}'.*\n", "", text))


if __name__ == "__main__":
    unittest.main()
