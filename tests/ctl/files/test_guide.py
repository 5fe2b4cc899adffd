"""docs/tavrinctl.md says what the program says of itself, and its examples are taken."""
import json
import re
import unittest

from tool import TOP, UNDER_WINE, FolderCase, own_path, run

GUIDE = (TOP / "docs/tavrinctl.md").read_text()


def fences(label):
    return re.findall(rf"^```{label}\n(.*?)^```$", GUIDE, re.M | re.S)


class Guide(FolderCase):
    def test_verbs_and_their_options(self):
        shown = [line[2:] for line in run("--help").out.splitlines() if line.startswith("  tavrinctl ")]
        listed = fences("text")[0].splitlines()
        self.assertEqual(shown, listed if UNDER_WINE else [line for line in listed if line.split()[1] in ("check", "template")])

    def test_exit_codes(self):
        codes = re.findall(r"^\| (\d) \| \S", GUIDE, re.M)
        self.assertEqual(codes, re.findall(r"^  (\d)  ", run("--help").out, re.M))

    def test_the_example_of_a_state_is_one(self):
        state = self.file("state.json", fences("json")[0])
        result = run("template", "--format", "reg", "--state", own_path(state), "--out", own_path(self.folder),
                     own_path(TOP / "examples/spec_files/agent.spec"))
        self.assertEqual(result.code, 0, result)
        text = (self.folder / "agent.reg").read_bytes().decode("utf-16")
        self.assertIn('"Port"="5000"\r\n', text)
        self.assertIn('"ServerList"="alpha.example,beta.example:5001"\r\n', text)
        self.assertIn('; "ModemPort" has no value\r\n', text)

    def test_the_examples_are_json(self):
        self.assertEqual([json.loads(each).get("schema") for each in fences("json")], [1, 1, None])


if __name__ == "__main__":
    unittest.main()
