"""docs/settings-without-the-window.md: the state file is one, and the texts are those of the guide for spec files."""
import json
import re
import unittest

from guide import TOP, fences, tables

GUIDE = (TOP / "docs/settings-without-the-window.md").read_text()
SPEC_FILES = (TOP / "docs/spec-files.md").read_text()
SAMPLE = (TOP / "examples/spec_files/agent.spec").read_text().splitlines()


def types(text, column):
    """What stands in backquotes in the first column of the table with this column."""
    return [name for head, *rows in tables(text) if column in head for row in rows
            for name in re.findall(r"`(\w+)`", row[0])]


class Recipes(unittest.TestCase):
    def test_every_type_is_there(self):
        without_value = re.findall(r"^- `(\w+)` ", GUIDE, re.M)
        self.assertEqual(sorted(types(GUIDE, "text") + without_value), sorted(types(SPEC_FILES, "what is stored")))

    def test_states_name_values_of_the_sample(self):
        found, = (json.loads(block) for block in fences(GUIDE, "json"))
        self.assertEqual((found["schema"], list(found["configurations"])), (1, [SAMPLE[1]]))
        for name in found["configurations"][SAMPLE[1]]["values"]:
            self.assertIn(name, SAMPLE)


if __name__ == "__main__":
    unittest.main()
