"""Who judges a change, and what their answers mean."""
import subprocess
import unittest

from suites import CASES, PROGRAM, TOP, Suites
from trial import verdict


def played_suites():
    """Two rooms in the library, one in that of the command line, which is linked into two suites and a program."""
    suites = Suites.__new__(Suites)
    suites.targets = {"base_tests": "tests/base_tests", "ctl_tests": "tests/ctl_tests",
                      "pages_tests": "tests/pages_tests", CASES: PROGRAM}
    suites.parts = {"libtavrin.so": {"base.o", "pages.o"}, "libtavrin_ctl.so": {"ctl.o"}, "tests/base_tests": set(),
                    "tests/ctl_tests": set(), "tests/pages_tests": set(), PROGRAM: {"its_base.o", "its_ctl.o"}}
    suites.links = {"tests/base_tests": ["libtavrin.so"], "tests/pages_tests": ["libtavrin.so"],
                    "tests/ctl_tests": ["libtavrin_ctl.so", "libtavrin.so"], PROGRAM: ["its_base.o", "its_ctl.o"]}
    suites.processor_seconds = {"base_tests": 1, "ctl_tests": 2, "pages_tests": 3, CASES: 4}
    suites.slow = {"base_tests": [], "ctl_tests": ["A.Wait"], "pages_tests": [], CASES: []}
    return suites


class Order(unittest.TestCase):
    def judges(self, source, *changed):
        return played_suites().order(TOP / "src" / source, set(changed))

    def test_the_command_line_by_its_suites_alone(self):
        self.assertEqual(self.judges("ctl/diff/csv.cpp", "ctl.o", "its_ctl.o"),
                         [("ctl_tests", False), (CASES, False), ("ctl_tests", True)])

    def test_the_own_room_first(self):
        self.assertEqual([name for name, _ in self.judges("pages/actions.cpp", "pages.o")],
                         ["pages_tests", "base_tests", "ctl_tests", "ctl_tests"])

    def test_what_the_finished_command_line_holds_by_its_cases_too(self):
        self.assertIn((CASES, False), self.judges("base/text.cpp", "base.o", "its_base.o"))


class Verdict(unittest.TestCase):
    def said(self, code, output=""):
        return verdict("x", subprocess.CompletedProcess([], code, output))

    def test_of_a_suite_that_ended(self):
        self.assertEqual(self.said(0, "[  PASSED  ] 3 tests."), "")
        self.assertEqual(self.said(1, "[ RUN      ] A.B\n[  FAILED  ] A.B (0 ms)\n"), "x: A.B")
        self.assertEqual(self.said(1, ".F\n====\nFAIL: test_a (test_x.Case.test_a)\n"), "x: test_a")
        self.assertEqual(self.said(-11, "[ RUN      ] A.B\n"), "x: ends abnormally")
        self.assertEqual(self.said(-24), "x: takes too long")


if __name__ == "__main__":
    unittest.main()
