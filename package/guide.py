"""Writes the guide that is packed: one HTML file with chapters made from Markdown, pictures inside, nothing loaded from
anywhere. cmark-gfm makes the chapters; here they are put together, and links between them lead to their places.

usage: guide.py VERSION CHAPTER... >FILE      (CHAPTER: a Markdown file; its first heading is the chapter's title)
"""
import base64
import html
import pathlib
import re
import subprocess
import sys

STYLE = """
body { font: 16px/1.5 "Segoe UI", Tahoma, sans-serif; color: #1c1c1c; max-width: 50em; margin: 0 auto; padding: 1em; }
h1, h2 { border-bottom: 1px solid #ccc; padding-bottom: .2em; }
h2 { margin-top: 3em; }
table { border-collapse: collapse; margin: 1em 0; }
th, td { border: 1px solid #ccc; padding: .3em .7em; text-align: left; vertical-align: top; }
code, pre { font-family: Consolas, "DejaVu Sans Mono", monospace; font-size: 90%; background: #f2f2f2; }
pre { padding: .7em; overflow-x: auto; }
img { max-width: 100%; }
@media print { h2 { page-break-before: always; } pre { white-space: pre-wrap; } }
"""

PAGE = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>Tavrin Configuration {version}</title>
<style>{style}</style>
</head>
<body>
<h1>Tavrin Configuration {version}</h1>
<ul>
{contents}
</ul>
<p>Files named <code>examples/…</code> and <code>script/…</code> are part of the program's source code.</p>
{chapters}</body>
</html>
"""


def slug(heading):
    """A heading as links write it: letters, digits, hyphens and underscores in lower case."""
    return re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def text_of(markup):
    return html.unescape(re.sub(r"<[^>]+>", "", markup))


class Book:
    def __init__(self, files):
        self.chapters = {file.resolve(): slug(file.stem) for file in files}
        self.titles = {}
        self.bodies = [self.body(file) for file in self.chapters]

    def body(self, file):
        made = subprocess.run(["cmark-gfm", "--extension", "table", "--to", "html", file], capture_output=True,
                              text=True, check=True).stdout
        made = re.sub(r"<h([1-5])>(.*?)</h\1>", lambda found: self.heading(file, *found.groups()), made, flags=re.S)
        made = re.sub(r'<a href="([^"]*)">(.*?)</a>', lambda found: self.link(file, *found.groups()), made, flags=re.S)
        return re.sub(r'<img src="([^"]*)"', lambda found: self.picture(file, found[1]), made)

    def heading(self, file, level, content):
        """A chapter's title is a heading of the second level in the book."""
        if level == "1":
            self.titles[file] = content
            return f'<h2 id="{self.chapters[file]}">{content}</h2>'
        return f'<h{int(level) + 1} id="{self.chapters[file]}.{slug(text_of(content))}">{content}</h{int(level) + 1}>'

    def link(self, file, target, content):
        """A link to a file that is not packed leads nowhere for the reader: its words stay."""
        if re.match(r"https?:", target):
            return f'<a href="{target}">{content}</a>'
        name, _, anchor = html.unescape(target).partition("#")
        chapter = self.chapters.get((file.parent / name).resolve() if name else file)
        if chapter is None:
            return content
        place = f"{chapter}.{slug(anchor)}" if anchor else chapter
        return f'<a href="#{place}">{content}</a>'

    @staticmethod
    def picture(file, source):
        octets = base64.b64encode((file.parent / source).read_bytes()).decode()
        return f'<img src="data:image/png;base64,{octets}"'

    def page(self, version):
        contents = "\n".join(f'<li><a href="#{self.chapters[file]}">{title}</a></li>'
                             for file, title in self.titles.items())
        return PAGE.format(version=version, style=STYLE, contents=contents, chapters="\n".join(self.bodies))


if __name__ == "__main__":
    sys.stdout.reconfigure(encoding="utf-8")
    sys.stdout.write(Book([pathlib.Path(file) for file in sys.argv[2:]]).page(html.escape(sys.argv[1])))
