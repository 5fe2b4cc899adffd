"""Writes the manual page of tavrinctl, made from its guide: cmark-gfm does the most, here the guide becomes one page
of the system's manual.

usage: man.py VERSION <docs/tavrinctl.md >tavrinctl.1      (the date is SOURCE_DATE_EPOCH)
"""
import datetime
import os
import re
import subprocess
import sys

HEAD = r""".TH TAVRINCTL 1 "{date}" "tavrinctl {version}" "User Commands"
.SH NAME
tavrinctl \- check spec files of Tavrin Agents, and show and change their settings
.SH DESCRIPTION
"""
FENCE = re.compile(r"^ *```.*?^ *```$", re.M | re.S)


def flat_table(found):
    """A table as a list: a terminal has no room for columns of sentences."""
    rows = [[cell.strip() for cell in re.split(r"(?<!\\)\|", line.strip().strip("|"))] for line in found[0].splitlines()]
    return "".join(f"- {row[0]}: {'; '.join(cell for cell in row[1:] if cell)}\n" for row in rows[2:])


def flat_prose(text):
    """Without the title, the contents, pictures and links to other guides; headings one level higher."""
    text = re.sub(r"\A# .*\n|^!\[.*\]\(.*\)\n", "", text, flags=re.M)
    text = re.sub(r"^- \[[^\]]*\]\(#[^)]*\)\n", "", text, flags=re.M)
    text = re.sub(r"\[([^\]]*)\]\((?!https?:)[^)]*\)", r"\1", text)
    text = re.sub(r"(?:^\|.*\|\n)+", flat_table, text, flags=re.M)
    return re.sub(r"^#(#+ .*)", lambda found: found[1].upper() if found[1].startswith("# ") else found[1], text,
                  flags=re.M)


def page(version, guide, date):
    parts, start = [], 0
    for fence in FENCE.finditer(guide):
        parts += [flat_prose(guide[start:fence.start()]), fence[0]]
        start = fence.end()
    text = "".join([*parts, flat_prose(guide[start:])])
    made = subprocess.run(["cmark-gfm", "--to", "man"], input=text, capture_output=True, text=True, check=True).stdout
    # Code blocks as they are, code in sentences bold, as manual pages have it.
    made = re.sub(r"^\.IP\n\.nf\n\\f\[C\]\n(.*?)^\\f\[\]\n\.fi$", r".PP\n.RS 4\n.nf\n\1.fi\n.RE", made, flags=re.M | re.S)
    made = made.replace(r"\f[C]", r"\fB").replace(r"\f[]", r"\fR")
    # Not every tool that shows manual pages is told their encoding.
    made = re.sub(r"[^\x00-\x7f]", lambda found: rf"\[u{ord(found[0]):04X}]", made)
    return HEAD.format(date=date, version=version) + made


if __name__ == "__main__":
    when = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc).date()
    sys.stdout.write(page(sys.argv[1], sys.stdin.read(), when))
