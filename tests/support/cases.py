"""Runs the unittest cases of a folder and reports each of them in GoogleTest's format, which script/test counts.

usage: cases.py REPORT FOLDER
"""
import json
import pathlib
import sys
import unittest


class Recording(unittest.TextTestResult):
    """What became of each case, by its name. A case with subtests fails once, with what each of them said."""

    def __init__(self, *arguments):
        super().__init__(*arguments)
        self.cases = {}

    def case_of(self, test):
        return self.cases.setdefault(test.id(), {"name": test.id(), "failures": []})

    def startTest(self, test):
        super().startTest(test)
        self.case_of(test)

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self.case_of(test)["result"] = "SKIPPED"

    def addSubTest(self, test, subtest, err):
        super().addSubTest(test, subtest, err)
        if err is not None:
            self.note(test, f"{subtest}\n{self._exc_info_to_string(err, test)}")

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self.note(test, self.failures[-1][1])

    def addError(self, test, err):
        """Also for a module that cannot be read and a class that cannot be set up."""
        super().addError(test, err)
        self.note(test, self.errors[-1][1])

    def addUnexpectedSuccess(self, test):
        super().addUnexpectedSuccess(test)
        self.note(test, "succeeds, which was not expected")

    def note(self, test, text):
        self.case_of(test)["failures"].append({"failure": text})


def main(report, folder):
    result = unittest.TextTestRunner(resultclass=Recording).run(unittest.defaultTestLoader.discover(folder))
    report = pathlib.Path(report)
    report.parent.mkdir(parents=True, exist_ok=True)
    report.write_text(json.dumps({"testsuites": [{"testsuite": list(result.cases.values())}]}))
    return 0 if result.cases and result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
