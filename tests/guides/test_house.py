"""What script/house complains about, and that no file of src/ is too long to be read at a sitting."""
import importlib.machinery
import importlib.util
import pathlib
import unittest

TOP = pathlib.Path(__file__).resolve().parents[2]
SCRIPT = TOP / "script/house"
LONGEST = 300


def loaded():
    loader = importlib.machinery.SourceFileLoader("house", str(SCRIPT))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("house", loader))
    loader.exec_module(module)
    return module


class House(unittest.TestCase):
    def complains(self, *pairs):
        return loaded().complaint(list(pairs))

    def test_nothing_is_wrong_with_arrows_that_run_downwards(self):
        self.assertIsNone(self.complains(("app/a.cpp", "app/a.h"), ("app/a.cpp", "pages/b.h"),
                                         ("ctl/c.cpp", "net/b.h"), ("pages/b.cpp", "window/d.h")))

    def test_no_room_uses_one_above_or_beside_it(self):
        self.assertEqual(self.complains(("service/a.cpp", "pages/b.h")), "house: service must not use pages")
        self.assertEqual(self.complains(("app/a.cpp", "ctl/b.h")), "house: app must not use ctl")
        self.assertEqual(self.complains(("app/a.cpp", "attic/b.h")), "house: app must not use attic")

    def test_what_is_used_without_windows_uses_none(self):
        self.assertEqual(self.complains(("ctl/a.cpp", "window/b.h")), "house: ctl must not use window")
        self.assertEqual(self.complains(("specfile/a.cpp", "platform/b.h")), "house: specfile must not use platform")

    def test_no_two_files_need_each_other(self):
        self.assertEqual(self.complains(("pages/a.cpp", "pages/b.h"), ("pages/b.cpp", "pages/a.h")),
                         "house: pages/a and pages/b need each other")

    def test_nor_do_more_by_each_other(self):
        self.assertEqual(self.complains(("pages/a.h", "pages/b.h"), ("pages/b.h", "pages/c.h"), ("pages/c.cpp", "pages/a.h"),
                                        ("pages/c.cpp", "net/d.h")),
                         "house: pages/a and pages/b and pages/c need each other")

    def test_a_source_may_use_what_its_header_is_used_by(self):
        self.assertIsNone(self.complains(("pages/a.cpp", "pages/b.h"), ("pages/a.cpp", "pages/c.h"),
                                         ("pages/b.cpp", "pages/c.h")))


class Sources(unittest.TestCase):
    def test_none_is_too_long(self):
        sources = [path for path in (TOP / "src").rglob("*") if path.suffix in (".h", ".cpp")]
        long = {path.name: len(path.read_text().splitlines()) for path in sources}
        self.assertGreater(len(long), 100)
        self.assertEqual({name: lines for name, lines in long.items() if lines > LONGEST}, {})


if __name__ == "__main__":
    unittest.main()
