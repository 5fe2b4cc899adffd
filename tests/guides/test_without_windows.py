"""What reads spec files and judges values needs no Windows, so that it can check them anywhere."""
import re
import unittest

from guide import TOP

SRC = TOP / "src"


def included(path, seen):
    """The files of src/ that this one includes, directly or by others."""
    for name in re.findall(r'^#include "([^"]+)"', (SRC / path).read_text(), re.M):
        if name not in seen:
            seen.add(name)
            included(name, seen)
    return seen


class WithoutWindows(unittest.TestCase):
    def test_the_text_of_a_spec_file_and_of_values_needs_no_window_and_no_registry(self):
        for path in (SRC / "specfile").iterdir():
            rooms = {name.split("/")[0] for name in included(path.relative_to(SRC), set())}
            with self.subTest(file=path.name):
                self.assertLessEqual(rooms, {"specfile", "base"})


if __name__ == "__main__":
    unittest.main()
