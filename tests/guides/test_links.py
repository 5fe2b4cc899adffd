"""Every link and picture in the guides leads somewhere, every picture is shown, and the drawing is right."""
import html
import re
import subprocess
import unittest

from guide import GUIDES, TOP, fences, prose

LARGEST_PICTURES = 300 * 1024
# The place that hosts the repository has its releases there.
HOSTED = {"../../releases"}
# The window's pictures say how wide they are shown.
WINDOW = re.compile(r'^<img src="([^"]+)" width="(\d+)" alt="[^"]+">$', re.M)


def anchor_of(heading):
    """What a link to the heading looks like: letters, digits, hyphens and underscores in lower case."""
    return re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def anchors(guide):
    return {anchor_of(heading) for heading in re.findall(r"^#+ +(.*)$", prose(guide.read_text()), re.M)}


def links(guide):
    text = re.sub(r"`[^`]*`", "", prose(guide.read_text()))
    return re.findall(r"\]\(([^)\s]+)\)", text) + [source for source, _ in WINDOW.findall(text)]


class Links(unittest.TestCase):
    def test_every_link_leads_somewhere(self):
        for guide in GUIDES:
            for link in links(guide):
                name, _, anchor = link.partition("#")
                if link in HOSTED:
                    continue
                target = (guide.parent / name) if name else guide
                with self.subTest(guide=guide.name, link=link):
                    self.assertTrue(target.is_file())
                    self.assertTrue(not anchor or anchor in anchors(target), "no such heading")

    def test_headings_of_one_guide_differ(self):
        for guide in GUIDES:
            headings = re.findall(r"^#+ +(.*)$", prose(guide.read_text()), re.M)
            if guide.name != "CHANGELOG.md":
                self.assertEqual(len(headings), len(anchors(guide)), guide.name)

    def test_every_guide_is_found_from_the_readme(self):
        found, new = set(), {TOP / "README.md"}
        while new:
            found |= new
            new = {(guide.parent / link.partition("#")[0]).resolve() for guide in new for link in links(guide)}
            new = (new & set(GUIDES)) - found
        self.assertEqual([guide.name for guide in GUIDES if guide not in found], [])

    def test_every_picture_is_shown(self):
        shown = {(guide.parent / link).resolve() for guide in GUIDES for link in links(guide)}
        pictures = list((TOP / "docs/pictures").iterdir())
        self.assertEqual([picture.name for picture in pictures if picture not in shown], [])
        self.assertLess(sum(picture.stat().st_size for picture in pictures), LARGEST_PICTURES)

    def test_the_pictures_of_the_window_are_sharp_on_dense_screens(self):
        found = [((guide.parent / source).resolve(), int(width))
                 for guide in GUIDES for source, width in WINDOW.findall(guide.read_text())]
        self.assertEqual(sorted({file for file, _ in found}), sorted((TOP / "docs/pictures").glob("*.png")))
        for file, width in found:
            self.assertEqual(int.from_bytes(file.read_bytes()[16:20], "big"), 2 * width, file.name)

    def test_the_session_in_the_picture_is_there_as_text(self):
        picture = (TOP / "docs/pictures/session.svg").read_text()
        session = html.unescape(re.search("<desc>(.*?)</desc>", picture, re.S)[1])
        self.assertIn("> tavrinctl set", session)
        self.assertEqual(fences((TOP / "README.md").read_text(), "text"), [session + "\n"])

    def test_the_drawing_shows_what_includes_what(self):
        command = [TOP / "script/house", "--check"]
        checked = subprocess.run(command, capture_output=True, text=True, check=False)
        self.assertEqual((checked.returncode, checked.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main()
