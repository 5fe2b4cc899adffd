"""The table of findings in docs/tavrinctl.md: `check` finds in each row's example what the row says."""
import re
import unittest

from tool import TOP, FolderCase, own_path, run

GUIDE = (TOP / "docs/tavrinctl.md").read_text()
HEAD = "SOFTWARE\\X / X / !G / "


def rows():
    """Finding and example."""
    table = re.search(r"^\| finding \|.*\n\|[-|]+\n((?:\|.*\n)+)", GUIDE, re.M)[1]
    return [[cell.strip() for cell in line.split("|")[1:3]] for line in table.splitlines()]


def octets(example):
    """The file that an example in backquotes stands for."""
    text = example.strip("`")
    text = HEAD + text if text.startswith("$") else text
    text = re.sub(r"\{(.+?)\}\*(\d+)", lambda found: found[1] * int(found[2]), text)
    lines = "\n".join(line.strip(" ") for line in re.split(" /(?= )", text)).encode()
    return re.sub(rb"<([0-9A-F ]+)>", lambda found: bytes.fromhex(found[1].decode()), lines)


class Findings(FolderCase):
    def test_every_example_has_the_finding_of_its_row(self):
        self.assertGreater(len(rows()), 30)
        files = {}
        for place, (finding, example) in enumerate(rows()):
            name = f"{place}.spec"
            files[name] = finding
            if example.startswith("`"):
                self.file(name, octets(example))
        printed = run("check", *(own_path(self.folder / name) for name in files)).out
        for name, finding in files.items():
            words = ".+".join(map(re.escape, finding.split("…")))
            with self.subTest(finding=finding):
                self.assertRegex(printed, rf"(?m)[\\/]{name}:\d+: {words}\r?$")


if __name__ == "__main__":
    unittest.main()
