"""The findings of `check` in spec files, with their lines."""
import re
import unittest

from tool import TOP, UNDER_WINE, FolderCase, own_path, run

HEAD = "SOFTWARE\\Tavrin\\X\nX\n"
GROUP = HEAD + "!G\n"


def entry(title="A", name="V", text="Help.", *more):
    return "\n".join([f"${title}", name, text, *(more or ["String"]), ""])


class Check(FolderCase):
    def check(self, content, *options):
        path = self.file("x.spec", content)
        self.result = run("check", *options, own_path(path))
        self.assertEqual(self.result.err, "")
        prefix = own_path(path) + ":"
        lines = self.result.out.splitlines()
        for line in lines:
            self.assertRegex(line, "^" + re.escape(prefix) + r"\d+: (error|warning): \S")
        return [line.removeprefix(prefix) for line in lines]

    def finds(self, content, *findings, code=None):
        self.assertEqual(self.check(content), list(findings))
        wanted = 4 if any(": error: " in each for each in findings) else 0
        self.assertEqual(self.result.code, wanted if code is None else code)


class Fine(Check):
    def test_the_examples(self):
        files = sorted((TOP / "examples/spec_files").glob("*.spec")) + [TOP / "package/sample.spec"]
        result = run("check", *map(own_path, files))
        self.assertEqual((result.code, result.out, result.err), (0, "", ""))

    def test_every_kind_in_both_line_ends(self):
        text = (TOP / "examples/spec_files/agent.spec").read_text()
        self.finds(text.replace("\n", "\r\n").encode())


class Refused(Check):
    def test_unknown_type_stands_where_its_line_is(self):
        self.finds(GROUP + entry("A", "V", "Help.", "Text"), '7: error: Unknown type: "Text", for subspec A')

    def test_a_blank_behind_the_type_makes_it_unknown(self):
        self.finds(GROUP + entry("A", "V", "Help.", "Boolean "), '7: error: Unknown type: "Boolean ", for subspec A')

    def test_a_missing_type_takes_the_next_group_for_one(self):
        self.finds(GROUP + "$A\nV\nHelp.\n!G2\n", '7: error: Unknown type: "!G2", for subspec A')

    def test_a_file_that_ends_within_an_entry(self):
        self.finds(GROUP + "$A\nV\nHelp.\n", '4: error: Unknown type: "", for subspec A')
        self.finds(GROUP + "$A\n", '4: error: Unknown type: "", for subspec A')

    def test_an_old_file_that_ends_within_an_entry(self):
        self.finds("SOFTWARE\\X\n$A\n", "2: warning: the file ends before the value name of this entry")
        self.finds("SOFTWARE\\X\n$A\nV\n", "2: warning: the file ends before the help text of this entry")

    def test_a_second_service_name(self):
        self.finds(HEAD + "One\nTwo\n!G\n" + entry(), '4: error: Parse error: line "Two" not group start')

    ASTRAY = "a blank line ends the group, so the entry after it is not read"

    def test_a_blank_line_that_ends_the_group_is_named_once_and_at_its_line(self):
        self.finds(GROUP + entry() + "\n" + entry("B", "W") + entry("C", "X"), "8: error: " + self.ASTRAY)
        self.finds(GROUP + entry() + "\r\n\n" + entry("B", "W"), "8: error: " + self.ASTRAY)
        self.finds(HEAD + "Service\n!G\n" + entry() + "\n" + entry("B", "W"), "9: error: " + self.ASTRAY)

    def test_a_blank_line_before_a_last_title(self):
        self.finds(GROUP + entry() + "\n$B\n", "8: warning: " + self.ASTRAY)

    def test_what_is_wrong_in_the_next_group_is_found(self):
        self.finds(GROUP + entry() + "\n" + entry("B", "W") + "!H\n" + entry("C", "X", "Help.", "Text"),
                   "8: error: " + self.ASTRAY, '17: error: Unknown type: "Text", for subspec C')

    def test_a_blank_line_that_ends_the_group_of_an_old_file(self):
        words = "warning: the group ends here; the entries that follow are outside all groups"
        self.finds("SOFTWARE\\X\n!G\n" + entry() + "\n" + entry("B", "W"), "7: " + words)
        self.finds("SOFTWARE\\X\n!G\n" + entry() + "Service\n" + entry("B", "W"), "8: " + words)

    def test_lines_that_end_with_carriage_returns_alone(self):
        self.finds((GROUP + entry()).replace("\n", "\r"), "1: error: the lines end with a carriage return alone, so "
                   "the file is read as one line; end them with LF or CR LF")

    def test_an_entry_before_any_group(self):
        found = self.check(HEAD + "Service\n" + entry() + "!G\n" + entry("B", "W"))
        self.assertEqual(found[0], '4: error: Parse error: line "$A" not group start')

    def test_a_byte_order_mark(self):
        self.finds(b"\xef\xbb\xbf" + (GROUP + entry()).encode(),
                   "1: error: the file begins with a byte order mark, which is read as part of the key path")

    def test_utf16(self):
        words = ("1: error: the file is UTF-16; spec files have one byte per character, in the machine's code page",)
        self.finds((GROUP + entry()).encode("utf-16"), *words)
        self.finds(b"\xfe\xff" + (GROUP + entry()).encode("utf-16-be"), *words)

    def test_a_root_that_is_none(self):
        self.finds("HKEY_LOCAL_MACHINE\\SOFTWARE\\X\nX\n!G\n" + entry(),
                   '1: error: the key path begins with "HKEY_LOCAL_MACHINE"; it must begin with a key below '
                   "HKEY_LOCAL_MACHINE: SOFTWARE, SYSTEM or HARDWARE")

    def test_roots_in_any_letter_case_and_behind_backslashes(self):
        for root in ("\\\\Software\\X", "system", "HARDWARE\\X"):
            self.finds(root + "\nX\n!G\n" + entry())

    def test_no_key_path(self):
        self.finds("\\\\\nX\n!G\n" + entry(), "1: error: the key path is missing")

    def test_an_empty_file(self):
        self.finds("", "1: error: the key path is missing", "1: warning: the file has no entries, so the window "
                   "shows nothing to edit", "2: warning: the configuration has no name")

    def test_titles_that_the_connection_test_does_not_find(self):
        test = entry("T", "", "Tests.", "ConnectionTest", "A", "B", "T2", "E")
        self.finds(GROUP + entry() + entry("E", "Event", "Help.", "SignalEvent") + test,
                   "17: error: the connection test looks for an entry titled \"B\", and there is none",
                   "18: error: the connection test looks for an entry titled \"T2\", and there is none",
                   "19: error: the connection test uses the entry titled \"E\", but it has no value")

    def test_a_connection_test_does_not_find_itself(self):
        self.finds(GROUP + entry() + entry("T", "", "Tests.", "ConnectionTest", "A", "A", "A", "T"),
                   '15: error: the connection test looks for an entry titled "T", and there is none')

    def test_a_connection_test_cut_off(self):
        self.finds(GROUP + entry() + entry("T", "", "Tests.", "ConnectionTest", "A", "A"),
                   *["8: error: the file ends before the four titles of the connection test"] * 2)


    def test_no_port_for_a_scan(self):
        self.finds(GROUP + entry("A", "V", "Help.", "ServerList"),
                   '4: error: "Scan" looks for the port in an entry titled "Port", and there is none')

    def test_a_port_without_a_value(self):
        for kind in ("SignalEvent", "RemoveKey"):
            self.finds(GROUP + entry("A", "V", "Help.", "ServerList") + entry("Port", "W", "Help.", kind),
                       '8: error: "Scan" looks for the port in this entry, but it has no value')


class Stumbled(Check):
    def test_the_byte_that_ends_a_text(self):
        self.finds(GROUP + entry() + "\x1a", "8: warning: the file ends with the byte 0x1A")
        self.finds(GROUP + entry() + "\x1a\n" + entry("B"),
                   "8: warning: the byte 0x1A ends the text here; what follows is not read")

    def test_a_zero_byte(self):
        self.finds(GROUP + entry("A\0B"), "4: warning: a zero byte; the window shows the text only up to here")

    def test_utf8(self):
        self.finds(GROUP + entry("Größe"), "4: warning: this looks like UTF-8; the window reads one byte per character, "
                   "in the machine's code page")
        self.finds((GROUP + entry("Größe")).encode("latin-1"))
        # No character of UTF-8 begins with 0xC1.
        self.finds((GROUP + entry("Gr\xC1\x9Fe")).encode("latin-1"))
        self.assertEqual(self.check(GROUP + entry("Größe"), "--code-page", "65001"), [])

    def test_titles_twice(self):
        self.finds(GROUP + entry() + entry("A", "W"),
                   '8: warning: the title "A" is already in line 4; lookups find only that entry')

    def test_value_names_twice_in_any_letter_case_beyond_ascii(self):
        self.finds((GROUP + entry("A", "Größe") + entry("B", "GRÖßE")).encode("latin-1"),
                   '9: warning: the value name "GRÖßE" is already in line 5; the two entries overwrite each other\'s '
                   "value")

    def test_value_names_twice_in_any_letter_case(self):
        self.finds(GROUP + entry("A", "Value") + entry("B", "vALUE"),
                   '9: warning: the value name "vALUE" is already in line 5; the two entries overwrite each other\'s '
                   "value")

    def test_an_event_and_a_key_may_be_called_as_a_value(self):
        self.finds(GROUP + entry() + entry("B", "V", "Help.", "SignalEvent") + entry("C", "V", "Help.", "RemoveKey"))

    def test_an_ampersand(self):
        self.finds(GROUP + entry("Q&A", "V", "This & that."),
                   '4: warning: "&" in the title is not shown; it underlines the next letter',
                   '6: warning: "&" in the help text is not shown; it underlines the next letter')

    def test_an_ampersand_in_an_entry_of_unknown_type(self):
        self.finds(GROUP + entry("A & B", "V", "C & D", "Text"),
                   '4: warning: "&" in the title is not shown; it underlines the next letter',
                   '6: warning: "&" in the help text is not shown; it underlines the next letter',
                   '7: error: Unknown type: "Text", for subspec A & B')

    def test_an_ampersand_in_an_option_is_shown(self):
        self.finds(GROUP + entry("A", "V", "Help.", "Options", "Q&A"))

    def test_long_titles_and_help_texts(self):
        self.finds(GROUP + entry("T" * 28, "V", "word " * 50),
                   "4: warning: the title has 28 characters; the page shows about 27",
                   "6: warning: the help text takes about 9 lines; the page shows 6 in the smallest window")

    def test_six_lines_of_help_fit_and_seven_do_not(self):
        two_a_line, one_a_line, one_word = ("x" * 15 + " " + "x" * 16 + " "), "x" * 17 + " ", "x" * 32
        for six in two_a_line * 6, one_a_line * 6, one_word * 6:
            self.finds(GROUP + entry("A", "V", six.rstrip()))
        for seven in two_a_line * 7, one_a_line * 7, one_word * 6 + "x":
            self.finds(GROUP + entry("A", "V", seven.rstrip()),
                       "6: warning: the help text takes about 7 lines; the page shows 6 in the smallest window")

    def test_options(self):
        self.finds(GROUP + entry("A", "V", "Help.", "Options", "x" * 1024, "Y", "y", "y", ""),
                   "8: warning: the option has 1024 characters; only 1023 are stored",
                   '11: warning: the option "y" is already in line 10',
                   "12: warning: a blank line among the options is an option with an empty text")
        self.finds(GROUP + entry("A", "V", "Help.", "Options"), "7: warning: there are no options to choose from")

    def test_no_name_and_no_entries(self):
        self.finds("SOFTWARE\\X\n\n!G\n", "1: warning: the file has no entries, so the window shows nothing to edit",
                   "2: warning: the configuration has no name")

    def test_an_empty_value_name(self):
        self.finds(GROUP + entry("A", ""), "5: warning: the value name is empty, which means the key's default value")


class Hostile(Check):
    def test_control_characters_are_shown_and_not_obeyed(self):
        self.finds(GROUP + entry("A", "V", "Help.", "\x1b[2J\x07"),
                   '7: error: Unknown type: "\\033[2J\\a", for subspec A')

    def test_octets_of_every_kind(self):
        found = self.check(bytes(range(256)) * 100)
        self.assertEqual((found[0], found[-1]), (
            "1: warning: a zero byte; the window shows the text only up to here",
            "2: warning: the byte 0x1A ends the text here; what follows is not read"))

    def test_a_hundred_thousand_entries_without_a_type(self):
        found = self.check(GROUP + "$A\n" * 100_000)
        self.assertEqual(found[0], '7: error: Unknown type: "$A", for subspec A')
        self.assertEqual(len(found), 25_000)


class Files(Check):
    def test_each_of_several(self):
        good = self.file("good.spec", GROUP + entry())
        bad = self.file("bad.spec", GROUP + entry("A", "V", "Help.", "Text"))
        result = run("check", own_path(bad), own_path(good), own_path(bad))
        line = own_path(bad) + ':7: error: Unknown type: "Text", for subspec A\n'
        self.assertEqual((result.code, result.out), (4, line * 2))

    def test_a_missing_file_does_not_keep_from_the_others(self):
        bad = self.file("bad.spec", GROUP + entry("A", "V", "Help.", "Text"))
        missing = own_path(self.folder / "none.spec")
        result = run("check", missing, own_path(bad))
        self.assertEqual(result.code, 4)
        self.assertEqual(result.out.splitlines(), [missing + ":1: error: cannot read: No such file or directory",
                                                   own_path(bad) + ':7: error: Unknown type: "Text", for subspec A'])

    def test_a_folder_is_no_file(self):
        result = run("check", own_path(self.folder))
        why = "Permission denied" if UNDER_WINE else "Is a directory"
        self.assertEqual((result.code, result.out), (4, f"{own_path(self.folder)}:1: error: cannot read: {why}\n"))

    def test_texts_come_out_in_utf8(self):
        path = self.file("x.spec", (GROUP + entry("A", "V", "Help.", "Größe")).encode("latin-1"))
        result = run("check", own_path(path))
        self.assertEqual(result.out, own_path(path) + ':7: error: Unknown type: "Größe", for subspec A\n')


if __name__ == "__main__":
    unittest.main()
