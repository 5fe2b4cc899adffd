"""Writes the guide that is packed: one HTML file with chapters made from Markdown, pictures inside, nothing loaded from
anywhere. cmark-gfm converts the chapters; this script joins them and adjusts the links between them. The
frame is guide.html, its looks are guide.css, and guide.js filters the contents.

usage: guide.py VERSION CHAPTER... >FILE      (CHAPTER: a Markdown file; its first heading is the chapter's title)
"""
import base64
import html
import pathlib
import re
import subprocess
import sys

HERE = pathlib.Path(__file__).parent
SHORT_ROWS, SHORT_LETTERS = 8, 500  # A table with no more is printed on one page.
DEEPEST = 4  # A heading below this level of the book is not in the contents.
TYPES = {".png": "png", ".svg": "svg+xml"}


def slug(heading):
    """A heading as links write it: letters, digits, hyphens and underscores in lower case."""
    return re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def text_of(markup):
    return html.unescape(re.sub(r"<[^>]+>", "", markup))


def breakable(code):
    """A long path or address may be continued on the next line behind a separator, an option never behind a hyphen."""
    code = re.sub(r"\S{18,}", lambda word: re.sub(r"([\\/,_])(?=\w)", r"\1<wbr>", word[0]), code)
    return re.sub(r"(?<!\S)--\w\S*", r'<span class="word">\g<0></span>', code)


def labelled(table):
    """The table in a box that scrolls; its cells carry the titles of their columns, for narrow screens."""
    heads = [html.escape(text_of(head), quote=True) for head in re.findall(r"<th(?: [^>]*)?>(.*?)</th>", table, re.S)]
    rows = table.count("<tr>") - 1
    is_short = rows <= SHORT_ROWS and len(text_of(table)) <= SHORT_LETTERS
    columns = iter(heads * rows)
    table = re.sub("<td", lambda _: f'<td data-label="{next(columns)}"', table)
    classes = ["table", *["wide"] * (len(heads) > 2), *["short"] * is_short]
    return f'<div class="{" ".join(classes)}">{table}</div>'


def block(content):
    """Long lines continue on the next line, with a hanging indent, and not behind a hyphen."""
    whole = re.sub(r"\S*-\S*", r'<span class="word">\g<0></span>', content)
    lines = "".join(f'<span class="line">{line}</span>' for line in whole.splitlines(keepends=True))
    return f"<pre><code>{lines}</code></pre>"


def picture(file, source, attributes):
    path = file.parent / source
    data = f"data:image/{TYPES[path.suffix]};base64,{base64.b64encode(path.read_bytes()).decode()}"
    return f'<p class="picture"><img src="{data}"{attributes}></p>'


class Book:
    def __init__(self, files):
        self.chapters = {file.resolve(): slug(file.stem) for file in files}
        self.headings = []  # level in the book, place, content
        self.bodies = [self.body(file) for file in self.chapters]

    def body(self, file):
        # Without "unsafe", cmark-gfm drops the HTML of the pictures; the chapters are the project's own.
        made = subprocess.run(["cmark-gfm", "--unsafe", "--extension", "table", "--to", "html", file],
                              capture_output=True, text=True, check=True).stdout
        made = re.sub(r"<h([1-5])>(.*?)</h\1>", lambda found: self.heading(file, *found.groups()), made, flags=re.S)
        made = re.sub(r'<a href="([^"]*)">(.*?)</a>', lambda found: self.link(file, *found.groups()), made, flags=re.S)
        made = re.sub(r"<table>.*?</table>", lambda found: labelled(found[0]), made, flags=re.S)
        made = re.sub(r"<pre><code[^>]*>(.*?)</code></pre>", lambda found: block(found[1]), made, flags=re.S)
        made = re.sub(r"(?<!<pre>)<code>([^<\n]*)</code>", lambda found: f"<code>{breakable(found[1])}</code>", made)
        return re.sub(r'(?:<p>)?<img src="([^"]*)"(.*?)>(?:</p>)?', lambda found: picture(file, *found.groups()), made)

    def heading(self, file, level, content):
        """A chapter's title is a heading of the second level in the book."""
        chapter = self.chapters[file]
        place = chapter if level == "1" else f"{chapter}.{slug(text_of(content))}"
        self.headings.append((int(level) + 1, place, content))
        return f'<h{int(level) + 1} id="{place}">{content}</h{int(level) + 1}>'

    def link(self, file, target, content):
        """Keeps only the text of a link to a file that is not packed."""
        if re.match(r"https?:", target):
            return f'<a href="{target}">{content}</a>'
        name, _, anchor = html.unescape(target).partition("#")
        chapter = self.chapters.get((file.parent / name).resolve() if name else file)
        if chapter is None:
            return content
        place = f"{chapter}.{slug(anchor)}" if anchor else chapter
        return f'<a href="#{place}">{content}</a>'

    def contents(self, level=2, headings=None):
        """The list of the headings of this level, each with the list of those below it."""
        headings = self.headings if headings is None else headings
        starts = [place for place, heading in enumerate(headings) if heading[0] == level]
        items = [self.item(headings[start], headings[start + 1:end])
                 for start, end in zip(starts, [*starts[1:], len(headings)])]
        return f"<ul>{''.join(items)}</ul>\n" if items else ""

    def item(self, heading, below):
        level, place, content = heading
        link = f'<a href="#{place}">{content}</a>'
        inner = self.contents(level + 1, below) if level < DEEPEST else ""
        if level > 2 or not inner:
            return f"<li>{link}{inner}</li>\n"
        return f"<li><details><summary>{link}</summary>{inner}</details></li>\n"

    def page(self, version):
        parts = {name: (HERE / f"guide.{name}").read_text(encoding="utf-8") for name in ("html", "css", "js")}
        return parts["html"].format(version=version, style=parts["css"], script=parts["js"], contents=self.contents(),
                                    chapters="\n".join(self.bodies))


if __name__ == "__main__":
    sys.stdout.reconfigure(encoding="utf-8")
    sys.stdout.write(Book([pathlib.Path(file) for file in sys.argv[2:]]).page(html.escape(sys.argv[1])))
