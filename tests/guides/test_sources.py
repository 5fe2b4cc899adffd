"""The rules for the sources of the program that a look at their text can check."""
import re
import unittest

from guide import TOP

SOURCES = sorted(path for path in (TOP / "src").rglob("*.[ch]*") if path.suffix in (".h", ".cpp"))
PROGRAM = [path for path in SOURCES if "substitute" not in path.parts]
LONGEST = 300
FUNCTION = re.compile(r"^(?!using|return|else|typedef|friend|static_assert|namespace)[A-Za-z_][\w:<>,*& ]*[ *&](~?\w+)\([^;]*$",
                      re.M)
DECLARED = re.compile(r"^(?:\[\[noreturn\]\] )?(?!inline|constexpr|template|using|return|typedef|friend|#)"
                      r"[A-Za-z_][\w:<>,*& ]*[ *&\n](\w+)\(([^;{]*)\)(?: noexcept)?;", re.M)


def name(path):
    return path.relative_to(TOP).as_posix()


class Sources(unittest.TestCase):
    def test_none_is_too_long_to_be_read_at_a_sitting(self):
        for path in SOURCES:
            with self.subTest(path=name(path)):
                self.assertLessEqual(len(path.read_text().splitlines()), LONGEST)

    def test_what_a_header_declares_its_source_defines(self):
        found = 0
        for header in PROGRAM:
            if header.suffix != ".h":
                continue
            source = header.with_suffix(".cpp")
            text = source.read_text() if source.exists() else ""
            for function, _ in DECLARED.findall(header.read_text()):
                found += 1
                with self.subTest(header=name(header), function=function):
                    self.assertRegex(text, rf"[ *&:]{function}\(")
        self.assertGreater(found, 50)

    def test_what_a_function_does_is_said_with_three_strokes(self):
        for path in SOURCES:
            lines = path.read_text().splitlines()
            for above, line in zip(lines, lines[1:]):
                if FUNCTION.match(line) and above.startswith("//"):
                    with self.subTest(path=name(path), function=line):
                        self.assertTrue(above.startswith("///"), above)


if __name__ == "__main__":
    unittest.main()
