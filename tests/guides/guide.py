"""The guides as the checks read them."""
import pathlib
import re

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
GUIDES = [TOP / "README.md", TOP / "CHANGELOG.md", TOP / "SECURITY.md", *sorted((TOP / "docs").glob("*.md"))]
FENCE = re.compile(r"^ *```(\S*)\n(.*?)^ *```$", re.M | re.S)


def fences(text, label):
    """The contents of the fenced blocks with this label."""
    return [content for found, content in FENCE.findall(text) if found == label]


def prose(text):
    """The guide without its fenced blocks."""
    return FENCE.sub("", text)


def tables(text):
    """Every table as a list of rows, each a list of cells; the first row is the head."""
    found = []
    for block in re.findall(r"(?:^\|.*\|\n)+", prose(text), re.M):
        rows = [[cell.strip() for cell in line.strip("|").split("|")] for line in block.splitlines()]
        found.append([rows[0], *rows[2:]])
    return found
