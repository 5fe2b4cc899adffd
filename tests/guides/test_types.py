"""docs/spec-files.md has a row and a section for every type of entry, with the sample's own entry and its picture."""
import re
import unittest

from guide import TOP, fences

GUIDE = (TOP / "docs/spec-files.md").read_text()
SECTIONS = dict(re.findall(r"^### `(\w+)`\n(.*?)(?=^#)", GUIDE, re.M | re.S))
KINDS = (TOP / "src/specfile/spec_text.h").read_text()
SAMPLE = (TOP / "examples/spec_files/agent.spec").read_text()


class Types(unittest.TestCase):
    def test_every_type_has_a_section_and_a_row(self):
        types = sorted(set(re.findall(r'^    \{\.type = "(\w+)"', KINDS, re.M)) - {"string"})
        self.assertEqual(sorted(SECTIONS), types)
        self.assertEqual(sorted(re.findall(r"^\| \[`(\w+)`\]\(#", GUIDE, re.M)), types)

    def test_every_section_has_one_picture_and_one_entry_of_the_sample(self):
        for name, section in SECTIONS.items():
            with self.subTest(type=name):
                self.assertEqual(len(re.findall(r'^<img src="pictures/.+\.png" ', section, re.M)), 1)
                entry, = fences(section, "subspec")
                self.assertIn(entry, SAMPLE)


if __name__ == "__main__":
    unittest.main()
