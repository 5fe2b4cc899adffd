"""Prints the section of CHANGELOG.md about a version, for the page of its release; fails while the version is not dated.

usage: notes.py VERSION
"""
import pathlib
import re
import sys

CHANGELOG = pathlib.Path(__file__).resolve().parent.parent / "CHANGELOG.md"
DATE = r"\d{4}-\d{2}-\d{2}"


def notes(version, text):
    for section in re.split(r"^(?=## )", text, flags=re.M)[1:]:
        head, _, body = section.partition("\n")
        if head.startswith(f"## {version} - "):
            if not re.fullmatch(f"## {re.escape(version)} - {DATE}", head):
                raise SystemExit(f'notes: "{head}" has no date')
            return body.strip() + "\n"
    raise SystemExit(f"notes: CHANGELOG.md has no section {version}")


if __name__ == "__main__":
    sys.stdout.write(notes(sys.argv[1], CHANGELOG.read_text()))
