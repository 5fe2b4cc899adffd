"""What a test that CTest ran counts as."""
import contextlib
import io
import json
import pathlib
import tempfile
import unittest
import xml.etree.ElementTree as xml

from counting import count_test, summary

PASSED, SKIPPED = {"name": "a", "classname": "S"}, {"name": "b", "classname": "S", "result": "SKIPPED"}
FAILED = {"name": "c", "classname": "S", "failures": [{"failure": "a reason"}]}


class Counting(unittest.TestCase):
    def counted(self, status, cases=None, output="", skipped=None):
        """The summary, and what was printed behind the first line."""
        with tempfile.TemporaryDirectory() as folder:
            results = pathlib.Path(folder) / "results"
            results.mkdir()
            if cases is not None:
                (results / "x_tests.json").write_text(
                    cases if isinstance(cases, str) else json.dumps({"testsuites": [{"testsuite": cases}]}))
            test = xml.Element("testcase", name="x_tests", status=status)
            xml.SubElement(test, "system-out").text = output
            if skipped:
                xml.SubElement(test, "skipped", message=skipped)
            with contextlib.redirect_stdout(io.StringIO()) as printed:
                counts = count_test(pathlib.Path(folder), test)
        return summary(counts), printed.getvalue().split("\n", 1)[1].strip()

    def test_every_case_of_a_report(self):
        self.assertEqual(self.counted("fail", [PASSED, SKIPPED, FAILED]),
                         ("1 passed, 1 failed, 1 skipped", "failed: S.c\nS.c:\na reason"))

    def test_a_crash_beside_what_was_reported(self):
        self.assertEqual(self.counted("fail", [PASSED], "what it said"),
                         ("1 passed, 1 failed, 0 skipped", "what it said"))

    def test_without_a_report_one_case(self):
        self.assertEqual(self.counted("run"), ("1 passed, 0 failed, 0 skipped", ""))
        self.assertEqual(self.counted("fail", output="why"), ("0 passed, 1 failed, 0 skipped", "why"))
        self.assertEqual(self.counted("notrun", skipped="SKIP_RETURN_CODE=77")[0], "0 passed, 0 failed, 1 skipped")

    def test_a_suite_that_leaves_none_or_a_broken_one(self):
        self.assertEqual(self.counted("run", output="[==========] Running")[0], "0 passed, 1 failed, 0 skipped")
        self.assertEqual(self.counted("run", "{")[0], "0 passed, 1 failed, 0 skipped")

    def test_a_program_that_is_not_there(self):
        self.assertEqual(self.counted("notrun", skipped="Unable to find executable")[0], "0 passed, 1 failed, 0 skipped")


if __name__ == "__main__":
    unittest.main()
