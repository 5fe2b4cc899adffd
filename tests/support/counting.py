"""Counts what CTest ran, case by case."""
import collections
import json

# How many passed, failed and were skipped.
Counts = collections.Counter


def say(text):
    print(text, flush=True)


def summary(counts):
    return ", ".join(f"{counts[what]} {what}" for what in ("passed", "failed", "skipped"))


def cases_of(report):
    """The cases of a GoogleTest report, or of one of tests/support/cases.py."""
    suites = json.loads(report.read_text(errors="replace")).get("testsuites", [])
    return [case for suite in suites for case in suite["testsuite"]]


def count_cases(cases):
    def outcome(case):
        if case.get("failures"):
            return "failed"
        return "skipped" if case.get("result") == "SKIPPED" or case.get("status") == "NOTRUN" else "passed"
    return Counts(map(outcome, cases))


def name_of(case):
    return ".".join(filter(None, (case.get("classname"), case["name"])))


def failures(cases, output):
    """Every failed case by its name, then what they said; without a report, the end of what was printed."""
    failed = [case for case in cases if case.get("failures")]
    texts = [f"{name_of(case)}:\n{failure['failure']}" for case in failed for failure in case["failures"]]
    names = [f"failed: {name_of(case)}" for case in failed]
    return names + ["\n".join(texts or output.splitlines()[-40:])[:6000]]


def count_test(build, test):
    """Prints and counts one CTest test: by its report, or as one case."""
    name, status, output = test.get("name"), test.get("status"), test.findtext("system-out") or ""
    report, cases = build / "results" / f"{name}.json", []
    try:
        cases = cases_of(report)
        counts = count_cases(cases)
    except FileNotFoundError:
        counts = Counts(passed=1) if status == "run" and "[==========]" not in output else Counts()
        if any("SKIP_RETURN_CODE" in (skipped.get("message") or "") for skipped in test.iter("skipped")):
            counts = Counts(skipped=1)
    except ValueError:
        counts = Counts()
    # A test that crashed, hung or left no report counts as one more failure.
    if not counts["failed"] and (status == "fail" or not counts):
        counts["failed"] = 1
    say(f"{build.name}: {name}: {summary(counts)}")
    if counts["failed"]:
        say("\n".join(failures(cases, output)))
    return counts
