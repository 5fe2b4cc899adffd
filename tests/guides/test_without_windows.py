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
        for name in ("spec_text", "value_forms", "value_text"):
            rooms = {path.split("/")[0] for suffix in (".h", ".cpp") for path in included(f"spec/{name}{suffix}", set())}
            with self.subTest(file=name):
                self.assertLessEqual(rooms, {"spec", "error"})

    def test_nothing_else_of_spec_comes_along(self):
        files = included("spec/value_text.cpp", set()) | included("spec/spec_text.cpp", set())
        self.assertEqual({path for path in files if path.startswith("spec/")},
                         {"spec/spec_text.h", "spec/value_forms.h", "spec/value_text.h"})


if __name__ == "__main__":
    unittest.main()
