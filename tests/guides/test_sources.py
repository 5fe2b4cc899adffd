"""The rules for the sources of the program that a look at their text can check."""
import re
import unittest

from guide import TOP

SOURCES = sorted(path for path in (TOP / "src").rglob("*.[ch]*") if path.suffix in (".h", ".cpp"))
LONGEST = 300
# Lists of what several files of one kind define, a format each, and of what the build writes.
LISTS = ("src/ctl/template/formats.h", "src/ctl/diff/formats.h", "src/ctl/io/linux/code_pages.h")
SYSTEMS = ("windows", "linux")
FUNCTION = re.compile(r"^(?!using|return|else|typedef|friend|static_assert|namespace)[A-Za-z_][\w:<>,*& ]*[ *&](~?\w+)\([^;]*$",
                      re.M)
DECLARED = re.compile(r"^(?:\[\[noreturn\]\] )?(?!inline|constexpr|template|using|return|typedef|friend|#)"
                      r"[A-Za-z_][\w:<>,*& ]*[ *&\n](\w+)\(([^;{]*)\)(?: noexcept)?;", re.M)


def name(path):
    return path.relative_to(TOP).as_posix()


def sources_of(header):
    """Where its functions are defined: beside it, or once for each system below it."""
    beside = header.with_suffix(".cpp")
    below = [header.parent / system / beside.name for system in SYSTEMS]
    return [source for source in [beside, *below] if source.exists()]


class Sources(unittest.TestCase):
    def test_none_is_too_long_to_be_read_at_a_sitting(self):
        for path in SOURCES:
            with self.subTest(path=name(path)):
                self.assertLessEqual(len(path.read_text().splitlines()), LONGEST)

    def test_what_a_header_declares_its_source_defines(self):
        found = 0
        for header in SOURCES:
            if header.suffix != ".h" or name(header) in LISTS:
                continue
            text = "".join(source.read_text() for source in sources_of(header))
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
