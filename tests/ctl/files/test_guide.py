"""docs/tavrinctl.md agrees with the program's help, and the program accepts its examples."""
import json
import re
import unittest

from tool import TOP, UNDER_WINE, FolderCase, own_path, run

GUIDE = (TOP / "docs/tavrinctl.md").read_text()


def fences(label):
    return re.findall(rf"^```{label}\n(.*?)^```$", GUIDE, re.M | re.S)


class Guide(FolderCase):
    def test_verbs_and_their_options(self):
        verbs = re.findall(r"^  (\w+) +\S", run("--help").out.split("\n\n")[1], re.M)
        listed = {line.split()[1]: line for line in fences("text")[0].splitlines()}
        self.assertEqual(verbs, [verb for verb in listed if UNDER_WINE or verb in verbs])
        for verb in verbs:
            self.assertEqual(run(verb, "--help").out.splitlines()[0], "usage: " + listed[verb])

    def test_every_option_has_a_row(self):
        rows = re.findall(r"^\| `(--[\w-]+)[^|]* \| (.*) \|$", GUIDE, re.M)
        for verb in re.findall(r"^  (\w+) +\S", run("--help").out.split("\n\n")[1], re.M):
            for option, about in re.findall(r"^  (--[\w-]+).*\n      (.*)$", run(verb, "--help").out, re.M):
                self.assertIn((option, about[0].upper() + about[1:] + "."), rows)

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
        self.assertIn('\r\n"ModemPort"=-\r\n', text)

    def test_the_examples_are_json(self):
        self.assertEqual([json.loads(each).get("schema") for each in fences("json")], [1, 1, 1, None])


if __name__ == "__main__":
    unittest.main()
