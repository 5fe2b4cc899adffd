"""docs/tavrinctl.md lists every message of tavrinctl, with its meaning and what to do, and no other."""
import re
import unittest

from guide import TOP, fences, tables
from test_boxes import pieces, statements

SOURCES = [*sorted((TOP / "src/ctl").rglob("*.[ch]*")), TOP / "src/specfile/value_text.cpp",
           TOP / "src/specfile/spec_text.cpp", TOP / "src/specfile/spec_text.h"]
GUIDE = (TOP / "docs/tavrinctl.md").read_text()

# Texts in the sources that are not messages, and what they are.
NO_MESSAGES = {
    "') words='": "bash",
    "Windows Registry Editor Version 5.00": "the first line of a .reg file",
    'Enabled stores "true" and Disabled "false"; the value stays': "the explanation of a policy",
    "Disabled deletes the value; one that was set stays": "likewise",
    "when the policy no longer applies. The agent reads it when its service starts": "likewise",
    "below HKEY_LOCAL_MACHINE\\": "likewise",
    "What is wrong with a spec file or a state": "the rule's description in SARIF",
    "'; expected": "taken out of the JSON library's texts",
    "; last read: '": "likewise",
    'Parse error: line "$': "compared, not printed",
    "Parse error: line": "the window's, in the guide for spec files",
    "Unknown type": "likewise",
    "for subspec": "likewise",
    "with a problem": "a count of diff",
    "in sync": "likewise",
    "another spec file": "a state of diff",
    "restart pending": "a state of show and diff",
    "(not set)": "shown in place of a value",
    "true or false": "put into the message about a value of another kind",
    "a text in quotes": "likewise",
    "the number": "likewise",
    "the boolean": "likewise",
    "the SHA-256 of the spec file": "put into the message about a guard",
    "an unknown user": "put into the message about the owner of a folder",
    "Machines with": "the explanation of a policy",
    "Only on Windows": "the list of commands on Linux",
    "shows, checks and changes the settings of the Tavrin Agent": "the first line of --help",
    'tavrinctl COMMAND --help" explains a command, its options and their defaults': "the last line of --help",
}

# What the network layer says, which the window's guide lists.
BELOW = ("Error initializing socket subsystem",)


def literals(source):
    """Every literal that is a text for people, with its statement up to it; without those that write XML or JSON."""
    source = re.sub(r'R"\(.*?\)"', '""', source, flags=re.S)
    for before, literal in statements(source):
        if not re.search(r"\.(usage|summary) = $", before) and not re.search(r"[<>]|=\\\"|\\n +\\\"", literal):
            yield before, literal


def texts_of_sources():
    """Pieces of at least two words, because a single word is the name of something, unless it is all of a message."""
    return {piece for path in SOURCES for before, literal in literals(path.read_text()) for piece in pieces(literal)
            if " " in piece or re.search(r"\b(Failure\{[\w:]+, |say\(|throw )$", before)}


def rows():
    """Message, meaning and what to do, of every table of messages. The examples of findings have a test of their own."""
    for head, *rows in tables(GUIDE):
        if head[0] in ("message", "finding"):
            yield from ([re.sub("^(error|warning): ", "", row[0]), *row[-2:]] for row in rows)


class Messages(unittest.TestCase):
    def test_every_message_has_a_row(self):
        listed = [row[0] for row in rows()] + [row[1] for head, *options in tables(GUIDE) if head[0] == "option"
                                               for row in options] + fences(GUIDE, "text")
        guide = re.sub(r"[ `]+", " ", "\n".join(listed)).lower()
        ignored = {piece for text in NO_MESSAGES for piece in pieces(text)}
        self.assertEqual([text for text in sorted(texts_of_sources() - ignored) if text.lower() not in guide], [])

    def test_what_is_no_message_is_still_there(self):
        found = {piece for path in SOURCES for _, literal in literals(path.read_text()) for piece in pieces(literal)}
        self.assertEqual([text for text in NO_MESSAGES if not found >= set(pieces(text))], [])

    def test_the_guide_quotes_the_program(self):
        program = "\n".join([*BELOW, *(piece for path in SOURCES for _, literal in literals(path.read_text())
                                       for piece in pieces(literal))])
        parts = [part for row in rows() for piece in pieces(row[0])
                 for part in ([piece] if piece in program else re.split("[;:,] ", piece))]
        self.assertEqual([part for part in parts if part not in program], [])

    def test_every_row_says_what_it_means_and_what_to_do(self):
        self.assertGreater(len(list(rows())), 100)
        self.assertEqual([row for row in rows() if "" in row], [])


if __name__ == "__main__":
    unittest.main()
