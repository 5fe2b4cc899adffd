"""What the report of a folder's cases says of each of them."""
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

CASES = """
import unittest

class Case(unittest.TestCase):
    def test_passes(self): pass
    def test_fails(self): self.fail("a reason")
    def test_breaks(self): raise OSError("a reason")
    @unittest.skip("a reason")
    def test_is_skipped(self): pass
    def test_fails_twice(self):
        for number in range(3):
            with self.subTest(number=number):
                self.assertEqual(number, 1)

class Never(unittest.TestCase):
    @classmethod
    def setUpClass(cls): raise OSError("a reason")
    def test_runs(self): pass
"""


class Report(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def report(self, text):
        """Exit code, and of each case its name, how often it failed and whether it was skipped."""
        (self.folder / "test_those.py").write_text(text)
        report = self.folder / "report.json"
        done = subprocess.run([sys.executable, pathlib.Path(__file__).with_name("cases.py"), report, self.folder],
                              capture_output=True, check=False)
        cases = json.loads(report.read_text())["testsuites"][0]["testsuite"]
        return done.returncode, [(case["name"], len(case["failures"]), "result" in case) for case in cases]

    def test_has_every_case(self):
        self.assertEqual(self.report(CASES), (1, [
            ("test_those.Case.test_breaks", 1, False), ("test_those.Case.test_fails", 1, False),
            ("test_those.Case.test_fails_twice", 2, False), ("test_those.Case.test_is_skipped", 0, True),
            ("test_those.Case.test_passes", 0, False), ("setUpClass (test_those.Never)", 1, False)]))

    def test_a_module_that_cannot_be_read_is_a_failed_case(self):
        self.assertEqual(self.report("import nothing_of_this_name"),
                         (1, [("unittest.loader._FailedTest.test_those", 1, False)]))

    def test_no_case_at_all_is_a_failure(self):
        self.assertEqual(self.report(""), (1, []))


if __name__ == "__main__":
    unittest.main()
