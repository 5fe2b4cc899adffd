"""Templates: policies, preferences and .reg files of spec files."""
import hashlib
import json
import shutil
import subprocess
import unittest
import xml.etree.ElementTree as xml

from admx import SPACE, Template
from tool import TOP, FolderCase, own_path, run

KEY = "SOFTWARE\\Tavrin\\X"
HEAD = KEY + "\nX\n!G\n"
KINDS = """$Text
T
Help with <tags> & "quotes".
String
$Whole
I
Help.
Integer
$Yes or no
B
Help.
Boolean
$Choice
O
Help.
Options
red
<green> & "blue"
$Port
C
Help.
COM
$Folder
D
Help.
Directory
$File
F
Help.
File
txt
$Servers
S
Help.
ServerList
"""
NONE = """$Go away
Sub
Help.
RemoveKey
$Shout
Event
Help.
SignalEvent
$Test

Help.
ConnectionTest
Text
Text
Servers
Whole
"""


class TemplateCase(FolderCase):
    def make(self, form, content, *options, name="x.spec", code=0):
        path = self.file(name, content)
        self.result = run("template", "--format", form, "--out", own_path(self.folder / "out"), *options,
                          own_path(path))
        self.assertEqual(self.result.code, code, self.result)
        return self.folder / "out"

    def policies(self, content, *options):
        out = self.make("admx", content, *options)
        template = Template((out / "x.admx").read_bytes(), (out / "en-US/x.adml").read_bytes())
        self.assertEqual(template.problems(), [])
        return template

    def state_of(self, configurations):
        return own_path(self.file("state.json", json.dumps({"schema": 1, "configurations": configurations})))

    def state(self, **values):
        return self.state_of({"X": {"values": values}})


class Policies(TemplateCase):
    def test_follow_the_rules_for_the_examples(self):
        files = sorted((TOP / "examples/spec_files").glob("*.spec"))
        result = run("template", "--format", "admx", "--out", own_path(self.folder), *map(own_path, files))
        self.assertEqual(result.code, 0, result)
        for file in files:
            admx, adml = self.folder / f"{file.stem}.admx", self.folder / "en-US" / f"{file.stem}.adml"
            self.assertEqual(Template(admx.read_bytes(), adml.read_bytes()).problems(), [], file)
            if shutil.which("xmllint"):
                subprocess.run(["xmllint", "--noout", admx, adml], check=True)

    def test_one_for_each_entry_with_a_value(self):
        template = self.policies(HEAD + KINDS + NONE)
        self.assertEqual([each.get("name") for each in template.policies], ["T", "I", "B", "O", "C", "D", "F", "S"])
        self.assertEqual({each.get("key") for each in template.policies}, {KEY})

    def test_kinds(self):
        template = self.policies(HEAD + KINDS)
        kinds = [next(iter(each.find(SPACE + "elements") or []), None) for each in template.policies]
        self.assertEqual([None if each is None else each.tag.removeprefix(SPACE) for each in kinds],
                         ["text", "decimal", None, "enum", "text", "text", "text", "text"])
        self.assertEqual(kinds[1].attrib, {"id": "Value_I", "valueName": "I", "required": "true", "minValue": "0",
                                           "maxValue": "2147483647", "storeAsText": "true"})

    def test_a_boolean_stores_true_and_false(self):
        policy = self.policies(HEAD + KINDS).policies[2]
        self.assertEqual((policy.get("valueName"), policy.findtext(f"{SPACE}enabledValue/{SPACE}string"),
                          policy.findtext(f"{SPACE}disabledValue/{SPACE}string")), ("B", "true", "false"))

    def test_options_keep_order_and_text(self):
        template = self.policies(HEAD + KINDS)
        items = template.policies[3].findall(f"{SPACE}elements/{SPACE}enum/{SPACE}item")
        self.assertEqual([each.findtext(f"{SPACE}value/{SPACE}string") for each in items],
                         ["red", '<green> & "blue"'])
        self.assertEqual([template.strings[f"Item_{n}_O"] for n in (1, 2)], ["red", '<green> & "blue"'])

    def test_texts(self):
        template = self.policies(HEAD + KINDS)
        self.assertEqual(template.strings["Title_T"], "Text")
        self.assertEqual(template.strings["Help_T"], 'Help with <tags> & "quotes".\n\nSets "T" below '
                         "HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\X. Disabled deletes the value; one that was set stays "
                         "when the policy no longer applies. The agent reads it when its service starts.")

    def test_a_category_for_the_configuration_and_each_group(self):
        template = self.policies(KEY + "\nX\n!One\n$A\nA\nH\nString\n!Empty\n!Two\n$B\nB\nH\nString\n")
        self.assertEqual([template.strings[each.get("name")] for each in template.categories], ["X", "One", "Two"])
        self.assertEqual([each.find(SPACE + "parentCategory").get("ref") for each in template.policies],
                         ["Group_1", "Group_2"])

    def test_an_old_file_without_groups(self):
        template = self.policies(KEY + "\n$A\nA\nH\n")
        self.assertEqual([template.strings[each.get("name")] for each in template.categories], ["x"])
        self.assertEqual(template.policies[0].find(SPACE + "parentCategory").get("ref"), "Configuration")

    def test_names_that_are_no_identifiers(self):
        names = ("a b", "a-b", "A_B", "Größe", "1", "a_b_2")
        template = self.policies(HEAD + "".join(f"$T{n}\n{name}\nH\nString\n" for n, name in enumerate(names)),
                                 "--code-page", "65001")
        self.assertEqual([each.get("name") for each in template.policies],
                         ["a_b", "a_b_2", "A_B_3", "Gr____e", "1", "a_b_2_2"])
        values = [each.get("valueName") for each in template.admx.iter(SPACE + "text")]
        self.assertEqual(values, list(names))

    def test_what_cannot_be_mapped_is_told(self):
        self.policies(HEAD + KINDS + NONE + "$None\nN\nH\nOptions\n$Long\nL\nH\nOptions\n" + "x" * 256 + "\n")
        path = own_path(self.folder / "x.spec")
        self.assertEqual(self.result.err.splitlines(), [
            f'tavrinctl: warning: {path}:39: "Go away" (RemoveKey) is left out: it removes a key, and a template '
            "only sets values",
            f'tavrinctl: warning: {path}:43: "Shout" (SignalEvent) is left out: it signals an event, and a template '
            "only sets values",
            f'tavrinctl: warning: {path}:47: "Test" (ConnectionTest) is left out: it tests a connection, and a template '
            "only sets values",
            f'tavrinctl: warning: {path}:55: "None" (Options) is left out: it has no options, and the list of a '
            "policy must not be empty",
            f'tavrinctl: warning: {path}:59: "Long" (Options) is left out: one of its options is longer than 255 '
            "characters, the limit of a policy's list"])

    def test_switches_alone_need_no_presentation(self):
        template = self.policies(HEAD + "$Yes or no\nB\nHelp.\nBoolean\n")
        self.assertEqual(len(template.policies), 1)
        self.assertEqual(list(template.adml.iter(SPACE + "presentationTable")), [])

    def left_out(self, spec, *told):
        template = self.policies(spec)
        path = own_path(self.folder / "x.spec")
        self.assertEqual(self.result.err.splitlines(), [f"tavrinctl: warning: {path}:{each}" for each in told])
        return template

    def test_the_default_value_of_a_key_is_left_out(self):
        template = self.left_out(HEAD + "$A\n\nH\nString\n$B\nB\nH\nString\n",
                                 '4: "A" (String) is left out: it is the default value of its key, and a policy needs '
                                 "the name of a value")
        self.assertEqual([each.get("name") for each in template.policies], ["B"])

    def test_what_xml_cannot_contain_is_left_out(self):
        reason = "is left out: one of its texts has a control character, which XML cannot contain"
        template = self.left_out(
            HEAD + "$A\x01\nA\nH\nString\n$B\nB\x02\nH\nString\n$C\nC\nH\x03\nString\n$D\nD\nH\nOptions\nd\x04\n"
            "$E\nE\nH\nString\n!G\x05\n$F\nF\nH\nString\n", f'4: "A\\001" (String) {reason}',
            f'8: "B" (String) {reason}', f'12: "C" (String) {reason}', f'16: "D" (Options) {reason}',
            f'26: "F" (String) {reason}')
        self.assertEqual([each.get("name") for each in template.policies], ["E"])

    def test_texts_come_from_the_code_page(self):
        template = self.policies((HEAD + "$Größe\nV\nH\nString\n").encode("latin-1"))
        self.assertEqual(template.strings["Title_V"], "Größe")
        template = self.policies((HEAD + "$Größe\nV\nH\nString\n").encode("cp850"), "--code-page", "850")
        self.assertEqual(template.strings["Title_V"], "Größe")

    def test_the_same_input_gives_the_same_octets(self):
        once = self.policies(HEAD + KINDS).octets
        self.assertEqual(once, self.policies(HEAD + KINDS).octets)

    def test_prints_the_names_of_the_files(self):
        out = self.make("admx", HEAD + KINDS)
        separator = "\\" if own_path("/").startswith("Z:") else "/"
        self.assertEqual(self.result.out.splitlines(), [own_path(out) + separator + "x.admx",
                                                        own_path(out) + separator + f"en-US{separator}x.adml"])


class Preferences(TemplateCase):
    def items(self, content, *options):
        out = self.make("gpp", content, *options)
        root = xml.fromstring((out / "x.xml").read_bytes())
        self.assertEqual((root.tag, root.get("clsid")), ("RegistrySettings", "{A3CCFC41-DFDB-43a5-8D26-0FE8B954DA51}"))
        return root

    def test_an_item_for_each_value_in_a_collection_for_each_group(self):
        root = self.items(HEAD + KINDS + NONE)
        self.assertEqual([each.get("name") for each in root], ["G"])
        self.assertEqual([each.get("name") for each in root[0]], ["T", "I", "B", "O", "C", "D", "F", "S"])
        item = root[0][0]
        self.assertEqual(item.find("Properties").attrib, {
            "action": "U", "displayDecimal": "0", "default": "0", "hive": "HKEY_LOCAL_MACHINE", "key": KEY, "name": "T",
            "type": "REG_SZ", "value": ""})
        self.assertEqual((item.get("clsid"), item.get("image"), item.get("status")),
                         ("{9CD4B2F4-923D-47f5-A062-E897DD1DAD50}", "2", "T"))

    def test_an_item_without_a_value_is_switched_off(self):
        root = self.items(HEAD + KINDS, "--state", self.state(T="a & <b>", i="5"))
        self.assertEqual({each.get("name"): each.get("disabled") for each in root[0]},
                         {"T": "0", "I": "0", "B": "1", "O": "1", "C": "1", "D": "1", "F": "1", "S": "1"})
        self.assertEqual([each.find("Properties").get("value") for each in root[0]][:3], ["a & <b>", "5", ""])

    def test_identifiers_are_well_formed_different_and_stay(self):
        uids = [each.get("uid") for each in self.items(HEAD + KINDS).iter() if each.get("uid")]
        self.assertEqual(len(set(uids)), 9)
        for uid in uids:
            self.assertRegex(uid, r"^\{[0-9A-F]{8}-[0-9A-F]{4}-8[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}\}$")
        changed = self.items(HEAD + "$Other\nOther\nH\nString\n" + KINDS)
        self.assertEqual([each.get("uid") for each in changed[0]][1:], uids[1:])

    def test_line_ends_survive(self):
        root = self.items(HEAD + KINDS, "--state", self.state(T="a\r\nb\tc"))
        self.assertEqual(root[0][0].find("Properties").get("value"), "a\r\nb\tc")


    def test_what_a_state_removes_is_an_item_that_deletes(self):
        root = self.items(HEAD + KINDS, "--state", self.state(T=None))
        item = root[0][0]
        self.assertEqual((item.get("name"), item.get("image"), item.get("disabled")), ("T", "3", "0"))
        self.assertEqual(item.find("Properties").attrib, {
            "action": "D", "displayDecimal": "0", "default": "0", "hive": "HKEY_LOCAL_MACHINE", "key": KEY, "name": "T",
            "type": "REG_SZ", "value": ""})

    def test_a_text_with_variables_keeps_its_type_and_octets_are_left_out(self):
        root = self.items(HEAD + KINDS, "--state", self.state(
            T={"value": "%TEMP%", "type": "REG_EXPAND_SZ"}, I={"type": "REG_DWORD", "octets": "01000000"}))
        self.assertEqual([each.get("name") for each in root[0]], ["T", "B", "O", "C", "D", "F", "S"])
        self.assertEqual([root[0][0].find("Properties").get(name) for name in ("type", "value")],
                         ["REG_EXPAND_SZ", "%TEMP%"])
        self.assertIn('"Whole" (Integer) is left out: its value is a REG_DWORD, whose octets only '
                      '--format reg can write',
                      self.result.err)

    def test_what_xml_cannot_contain_is_left_out(self):
        root = self.items(HEAD + "$A\nA\nH\nString\n$B\nB\x02\nH\nString\n$C\nC\nH\nString\n", "--state",
                          self.state(A="1\x01"))
        self.assertEqual([each.get("name") for each in root[0]], ["C"])
        self.assertEqual(self.result.err.count("which XML cannot contain"), 2)


class RegFiles(TemplateCase):
    def text(self, content, *options):
        octets = (self.make("reg", content, *options) / "x.reg").read_bytes()
        self.assertEqual(octets[:2], b"\xff\xfe")
        return octets[2:].decode("utf-16-le")

    def test_values_and_what_has_none(self):
        state = self.state(T='C:\\a "b"', I=7, B=True, O=None)
        self.assertEqual(self.text(HEAD + KINDS, "--state", state).split("\r\n"), [
            "Windows Registry Editor Version 5.00", "", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\X]",
            '"T"="C:\\\\a \\"b\\""', '"I"="7"', '"B"="true"', '"O"=-', *[f'; "{name}" has no value' for name in "CDFS"],
            ""])

    def test_a_comment_is_one_line(self):
        text = self.text(HEAD + "$A\nA\tB\x02\nH\nString\n", "--state", self.state())
        self.assertIn('\r\n; "A B " has no value\r\n', text)

    def test_titles_name_values_as_they_do_for_apply(self):
        state = self.state(**{"Text": "a", "Yes or no": "TRUE"})
        self.assertEqual([line for line in self.text(HEAD + KINDS, "--state", state).split("\r\n") if "=" in line],
                         ['"T"="a"', '"B"="true"'])

    def test_types_and_octets_are_kept(self):
        state = self.state(T={"type": "REG_BINARY", "octets": "00ff"}, I={"type": "REG_DWORD", "octets": "3c000000"},
                           B={"type": "REG_MULTI_SZ", "octets": "6100000000000000"},
                           O={"value": "%A%", "type": "REG_EXPAND_SZ"}, C={"type": "type 4660", "octets": ""},
                           D={"type": "REG_QWORD", "octets": "0100000000000000"})
        self.assertEqual([line for line in self.text(HEAD + KINDS, "--state", state).split("\r\n") if "=" in line],
                         ['"T"=hex:00,ff', '"I"=dword:0000003c', '"B"=hex(7):61,00,00,00,00,00,00,00',
                          '"O"=hex(2):25,00,41,00,25,00,00,00', '"C"=hex(1234):', '"D"=hex(b):01,00,00,00,00,00,00,00'])

    def test_two_entries_with_one_value(self):
        text = self.text(HEAD + "$A\nV\nH\nString\n$B\nv\nH\nString\n", "--state", self.state(B="1"))
        self.assertEqual([line for line in text.split("\r\n") if "=" in line], ['"V"="1"', '"v"="1"'])

    def test_an_old_file_is_found_by_its_key(self):
        state = self.state_of({"Whatever": {"key": KEY, "values": {"A": "1"}}})
        self.assertIn('"A"="1"', self.text(KEY + "\n$A\nA\nH\n", "--state", state))

    def test_line_ends_and_the_default_value(self):
        text = self.text(KEY + "\nX\n!G\n$A\n\nH\nString\n", "--state", self.state(**{"": "a\nb"}))
        self.assertIn("\r\n@=hex(1):61,00,0a,00,62,00,00,00\r\n", text)


class Refused(TemplateCase):
    def refuses(self, code, words, *arguments):
        self.result = result = run("template", *arguments)
        self.assertEqual((result.code, result.out), (code, ""), result)
        self.assertIn(words, result.err)
        self.assertFalse((self.folder / "out").exists())

    def test_formats_and_folders_left_out(self):
        path = own_path(self.file("x.spec", HEAD + KINDS))
        out = own_path(self.folder / "out")
        self.refuses(2, "template needs --format admx|gpp|reg", "--out", out, path)
        self.refuses(2, '"xml" is not valid for --format admx|gpp|reg', "--format", "xml", "--out", out, path)
        self.refuses(2, "template needs --out FOLDER", "--format", "admx", path)
        self.refuses(2, "template: missing arguments", "--format", "admx", "--out", out)

    def test_files_with_errors(self):
        out = ("--format", "admx", "--out", own_path(self.folder / "out"))
        bad = own_path(self.file("bad.spec", HEAD + "$A\nV\nH\nText\n"))
        self.refuses(4, bad + ':7: error: Unknown type: "Text", for subspec A', *out, bad)
        good = own_path(self.file("good.spec", HEAD + KINDS))
        missing = "cannot read: No such file or directory"
        self.refuses(4, "none.spec: " + missing, *out, own_path(self.folder / "none.spec"))
        self.refuses(1, "none.json: " + missing, *out, "--state", own_path(self.folder / "none.json"), good)

    def test_files_of_which_nothing_can_be_mapped(self):
        out = own_path(self.folder / "out")
        good = own_path(self.file("good.spec", HEAD + KINDS))
        for form, content, reason in (
                ("admx", HEAD + NONE, "it signals an event"), ("gpp", HEAD + NONE, "it removes a key"),
                ("reg", HEAD + NONE, "it tests a connection"), ("admx", HEAD + "$A\n\nH\nString\n", "default value"),
                ("admx", KEY + "\nX\x01\n!G\n$A\nA\nH\nString\n", "XML cannot contain"),
                ("admx", KEY + "\x01\nX\n!G\n$A\nA\nH\nString\n", "XML cannot contain"),
                *((each, "\nX\n!G\n$A\nA\nH\nString\n", "the spec file names no key") for each in ("admx", "gpp", "reg"))):
            with self.subTest(form=form, reason=reason):
                bad = own_path(self.file("bad.spec", content))
                self.refuses(4, bad + ": none of the entries can be mapped, so there is no template to write", "--format",
                             form, "--out", out, good, bad)
                self.assertIn(reason, self.result.err)

    def test_lines_that_end_with_carriage_returns_alone(self):
        bad = own_path(self.file("bad.spec", (HEAD + KINDS).replace("\n", "\r")))
        words = ":1: error: the lines end with a carriage return alone, so the file is read as one line; end them with LF or CR LF"
        self.refuses(4, bad + words, "--format", "reg", "--out", own_path(self.folder / "out"), bad)
        self.assertIn(bad + words, run("check", bad).out)

    def test_two_files_of_one_name(self):
        (self.folder / "sub").mkdir()
        one, other = self.file("x.spec", HEAD + KINDS), self.file("sub/X.spec", HEAD + KINDS)
        self.refuses(4, "would make templates with the same name", "--format", "gpp", "--out",
                     own_path(self.folder / "out"), own_path(one), own_path(other))

    def test_two_files_of_one_prefix(self):
        one, other = (own_path(self.file(name, HEAD + KINDS)) for name in ("a-b.spec", "A b.spec"))
        self.refuses(4, f'{one} and {other} would make templates with the same prefix "a_b"; rename one of them',
                     "--format", "admx", "--out", own_path(self.folder / "out"), one, other)
        result = run("template", "--format", "gpp", "--out", own_path(self.folder), one, other)
        self.assertEqual(result.code, 0, result)

    def test_a_folder_that_cannot_be_made(self):
        self.file("file", "")
        spec = own_path(self.file("x.spec", HEAD + KINDS))
        result = run("template", "--format", "reg", "--out", own_path(self.folder / "file" / "out"), spec)
        self.assertEqual((result.code, result.out), (1, ""), result)
        self.assertIn("the file cannot be written", result.err)


class States(TemplateCase):
    """What `apply` refuses on every machine is in no template."""

    def refuses(self, configurations, *lines, spec=HEAD + KINDS + NONE):
        state = configurations if isinstance(configurations, str) else self.state_of(configurations)
        for form in ("gpp", "reg"):
            out = self.make(form, spec, "--state", state, code=4)
            self.assertFalse(out.exists())
            self.assertEqual(self.result.err.splitlines(), ["tavrinctl: nothing was written:", *map("  ".__add__, lines)])

    def test_values_that_apply_refuses(self):
        self.refuses(
            {"X": {"values": {"I": "060", "B": 1, "S": "a, b", "O": "warp", "T": "☃", "Other": "1", "Sub": "1",
                              "Whole": "1", "F": "x" * 1024}}},
            'X: I: "060" is invalid: a leading zero makes it octal for the agent; write 60',
            "X: B: expected true or false for the kind Boolean, found the number 1",
            'X: S: "a, b" is invalid: " b" contains a space; separate servers by a comma only',
            'X: O: "warp" is invalid: not one of the options "red", "<green> & "blue""',
            "X: T: the text does not fit the machine's code page 1252",
            'X: Other: unknown value; "tavrinctl show" lists them all',
            "X: Sub: this is a RemoveKey, which has no value that could be set; use the window",
            "X: Whole: the value is given twice",
            f'X: F: "{"x" * 80}" is invalid: longer than 1023 bytes')

    def test_configurations_that_no_spec_file_has(self):
        self.refuses({"X": {"values": {"T": "a"}}, "Y": {"values": {}}},
                     'none of the spec files has the configuration "Y"')

    def test_a_configuration_given_twice(self):
        self.refuses({"X": {"values": {"T": "a"}}, "x": {"values": {"T": "b"}}},
                     'the configuration "x" is given twice')

    def test_guards(self):
        self.refuses({"X": {"values": {}, "guards": {"sha256": "00"}}},
                     'X: a guard of the state does not hold: the SHA-256 of the spec file is '
                     f'"{hashlib.sha256((HEAD + KINDS + NONE).encode()).hexdigest()}" here, not "00"')

    def test_no_more_lines_than_help(self):
        state = self.state(**{f"Unknown{n}": "1" for n in range(30)})
        self.refuses(state, *(f'X: Unknown{n}: unknown value; "tavrinctl show" lists them all' for n in range(20)),
                     "and 10 more")

    def test_a_key_that_is_another_is_told(self):
        self.make("reg", HEAD + KINDS, "--state", self.state_of({"X": {"key": "SOFTWARE\\Y", "values": {"T": "a"}}}))
        self.assertEqual(self.result.err.splitlines(), [f'tavrinctl: warning: X: the key is "{KEY}" here, not "SOFTWARE\\Y"'])

    def test_policies_check_it_too(self):
        self.make("admx", HEAD + KINDS, "--state", self.state(I="060"), code=4)

    def test_an_unknown_type(self):
        out = self.make("reg", HEAD + KINDS, "--state", self.state(T={"type": "REG_TEXT", "octets": "00"}), code=4)
        self.assertIn('the value "T" has the unknown type "REG_TEXT"', self.result.err)
        self.assertFalse(out.exists())

    def test_the_code_page_is_the_one_of_the_machines(self):
        self.make("reg", HEAD + KINDS, "--code-page", "1251", "--state", self.state(T="Ж"))
        self.make("reg", HEAD + KINDS, "--code-page", "1252", "--state", self.state(T="Ж"), code=4)


if __name__ == "__main__":
    unittest.main()
