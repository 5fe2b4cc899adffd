"""What package/guide.py makes of Markdown: contents, tables, code, links."""
import importlib.machinery
import importlib.util
import pathlib
import re
import tempfile
import unittest

TOP = pathlib.Path(__file__).resolve().parents[2]


def guide():
    loader = importlib.machinery.SourceFileLoader("guide_maker", str(TOP / "package/guide.py"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("guide_maker", loader))
    loader.exec_module(module)
    return module


class Guide(unittest.TestCase):
    def page(self, **chapters):
        """The page of these chapters: file name without its ending -> Markdown."""
        with tempfile.TemporaryDirectory() as folder:
            files = [pathlib.Path(folder) / f"{name}.md" for name in chapters]
            for file, text in zip(files, chapters.values()):
                file.write_text(text)
            return guide().Book(files).page("1.2.3")

    def contents(self, **chapters):
        found = re.search(r"<ul>.*</ul>", self.page(**chapters), re.S)[0]
        return re.sub(r"\s+", "", found)

    def test_contents_lists_sections_below_chapters(self):
        self.assertEqual(self.contents(one="# One\n\n## Two\n\n### Three\n\n#### Four\n\n## Five\n", six="# Six\n"), "".join((
            '<ul><li><details><summary><ahref="#one">One</a></summary><ul>',
            '<li><ahref="#one.two">Two</a><ul><li><ahref="#one.three">Three</a></li></ul></li>',
            '<li><ahref="#one.five">Five</a></li></ul></details></li>',
            '<li><ahref="#six">Six</a></li></ul>')))

    def test_links_between_chapters_lead_to_their_sections(self):
        page = self.page(one="# One\n\n[there](two.md#a-part), [out](other.md)\n", two="# Two\n\n## A part\n")
        self.assertIn('<p><a href="#two.a-part">there</a>, out</p>', page)

    def test_cells_carry_the_titles_of_their_columns(self):
        page = self.page(one="# One\n\n| a \"name\" | `b` | c |\n|---|---|---|\n| 1 | 2 | 3 |\n")
        self.assertEqual(re.findall(r'<td data-label="([^"]*)">(\d)', page),
                         [("a &quot;name&quot;", "1"), ("b", "2"), ("c", "3")])
        self.assertIn('<div class="table wide short"><table>', page)

    def test_a_long_table_may_be_printed_on_two_pages(self):
        page = self.page(one="# One\n\n| a | b |\n|---|---|\n" + "| 1 | 2 |\n" * 9)
        self.assertIn('<div class="table"><table>', page)

    def test_a_table_with_much_text_may_be_printed_on_two_pages(self):
        page = self.page(one=f"# One\n\n| a | b |\n|---|---|\n| {'x' * 250} | {'y' * 250} |\n")
        self.assertIn('<div class="table"><table>', page)

    def test_a_picture_is_inside_and_keeps_its_width(self):
        page = self.page(one=f'# One\n\n<img src="{TOP}/docs/pictures/page-text.png" width="436" alt="A page">\n')
        self.assertRegex(page, '<p class="picture"><img src="data:image/png;base64,[^"]+" width="436" alt="A page"></p>')

    def test_lines_wrap_and_options_stay_whole(self):
        page = self.page(one="# One\n\n```sh\nrun --what-if\n\nagain\n```\n")
        self.assertIn('<pre><code><span class="line">run <span class="word">--what-if</span>\n</span>'
                      '<span class="line">\n</span><span class="line">again\n</span></code></pre>', page)

    def test_a_long_path_breaks_behind_its_separators(self):
        page = self.page(one="# One\n\n`HKEY_LOCAL_MACHINE\\SOFTWARE` `C:\\short` `x --json`\n")
        self.assertIn("<code>HKEY_<wbr>LOCAL_<wbr>MACHINE\\<wbr>SOFTWARE</code> <code>C:\\short</code> "
                      '<code>x <span class="word">--json</span></code>', page)

    def test_frame_fits_small_screens_and_dark_ones(self):
        page = self.page(one="# One\n")
        self.assertIn('<meta name="viewport" content="width=device-width, initial-scale=1">', page)
        for medium in ("(min-width: 64em)", "(max-width: 40em)", "(prefers-color-scheme: dark)", "@media print"):
            self.assertIn(medium, page)

    def test_script_knows_the_frame(self):
        page = self.page(one="# One\n")
        for place in re.findall(r"getElementById\('(\w+)'\)", page):
            self.assertIn(f'id="{place}"', page)


if __name__ == "__main__":
    unittest.main()
