"""What `check --state` finds in a state by its spec files alone, and the forms in which findings are printed."""
import hashlib
import json
import unittest

from tool import FolderCase, own_path, run

SPEC = """SOFTWARE\\Tavrin\\X
X
Agent
!G
$Interval
I
H
Integer
$Compress
B
H
Boolean
$Servers
S
H
ServerList
$Port
P
H
Integer
$Mode
O
H
Options
slow
fast
$Name
N
H
String
$Go
K
H
RemoveKey
"""


class StateCase(FolderCase):
    def check(self, configuration, *options, spec=SPEC):
        self.spec = self.file("x.spec", spec)
        self.state = self.file("state.json", configuration if isinstance(configuration, (str, bytes)) else json.dumps(
            {"schema": 1, "configurations": {"X": configuration}}))
        self.result = run("check", "--state", own_path(self.state), *options, own_path(self.spec))
        return self.result

    def finds(self, configuration, *findings, **more):
        result = self.check(configuration, **more)
        prefix = own_path(self.state) + ":1: "
        self.assertEqual(result.err, "")
        self.assertEqual(result.out.splitlines(), [prefix + each for each in findings])
        self.assertEqual(result.code, 4 if any(each.startswith("error: ") for each in findings) else 0)

    def finds_in(self, values, *findings):
        self.finds({"values": values}, *findings)


class Values(StateCase):
    def test_that_apply_accepts(self):
        self.finds_in({"I": "60", "b": True, "Servers": "a,b:1", "P": 5, "O": "slow", "N": None})

    def test_that_apply_refuses(self):
        self.finds_in(
            {"I": "060", "B": 1, "S": "a, b", "P": "0x1F", "O": "warp", "N": "☃", "Other": "1", "K": "1",
             "Interval": "1"},
            'error: X: I: "060" is invalid: a leading zero makes it octal for the agent; write 60',
            "error: X: B: expected true or false for the kind Boolean, found the number 1",
            'error: X: S: "a, b" is invalid: " b" contains a space; separate servers by a comma only',
            'error: X: P: "0x1F" is invalid: not in plain decimal digits; write 31',
            'error: X: O: "warp" is invalid: not one of the options "slow", "fast"',
            "error: X: N: the text does not fit the machine's code page 1252",
            'error: X: Other: unknown value; "tavrinctl show" lists them all',
            "error: X: K: this is a RemoveKey, which has no value that could be set; use the window",
            "error: X: Interval: the value is given twice")

    def test_of_other_types_are_for_machines_that_have_them(self):
        self.finds_in({"I": {"type": "REG_DWORD", "octets": "3c000000"}},
                      "warning: X: I: a value of the type REG_DWORD is accepted only on machines that already store it")

    def test_in_a_state_of_another_form(self):
        self.finds("{", "error: parse error at line 1, column 2: syntax error while parsing object key - unexpected end "
                   "of input; expected string literal")
        self.finds('{"schema": "1"}', 'error: the state\'s "schema" is not a number; write 1, without quotes')

    def test_that_are_no_utf8_are_not_echoed(self):
        self.finds(b'{"schema": 1, "configurations": {"X": {"values": {"N": "\xff"}}}}',
                   "error: parse error at line 1, column 57: syntax error while parsing value - invalid string: "
                   "ill-formed UTF-8 byte")


class Origins(StateCase):
    def test_an_unknown_configuration(self):
        self.finds(json.dumps({"schema": 1, "configurations": {"Y": {"values": {}}}}),
                   'error: none of the spec files has the configuration "Y"')

    def test_a_configuration_given_twice(self):
        self.finds(json.dumps({"schema": 1, "configurations": {"X": {"values": {}}, "x": {"values": {}}}}),
                   'error: the configuration "x" is given twice')

    def test_an_old_file_is_known_by_its_key(self):
        old = "SOFTWARE\\X\n$A\nA\nH\n"
        self.finds({"key": "software\\x", "values": {"A": "1"}}, spec=old)
        self.finds({"values": {"A": "1"}}, 'error: none of the spec files has the configuration "X"', spec=old)

    def test_guards_that_hold(self):
        digest = hashlib.sha256(SPEC.encode()).hexdigest()
        self.finds({"values": {}, "guards": {"key": "SOFTWARE\\Tavrin\\X", "service": "Agent", "sha256": digest}})

    def test_guards_that_do_not_hold(self):
        digest = hashlib.sha256(SPEC.encode()).hexdigest()
        self.finds({"values": {}, "guards": {"key": "K", "service": "S", "sha256": "00"}},
                   'error: X: a guard of the state does not hold: the key is "SOFTWARE\\Tavrin\\X" here, not "K"',
                   'error: X: a guard of the state does not hold: the service is "Agent" here, not "S"',
                   f'error: X: a guard of the state does not hold: the SHA-256 of the spec file is "{digest}" here, not "00"')

    def test_what_only_informs_is_a_warning(self):
        self.finds({"values": {}, "key": "K", "service": "Agent"},
                   'warning: X: the key is "SOFTWARE\\Tavrin\\X" here, not "K"')


class Formats(StateCase):
    WORDS = 'X: I: "5e3" is invalid: not a whole number'

    def report(self, form):
        return self.check({"values": {"I": "5e3"}}, "--format", form)

    def test_text_is_what_is_printed_without_one(self):
        text = self.report("text").out
        self.assertEqual(text, own_path(self.state) + ":1: error: " + self.WORDS + "\n")
        self.assertEqual(self.check({"values": {"I": "5e3"}}).out, text)

    def test_json(self):
        result = self.report("json")
        self.assertEqual(result.code, 4)
        self.assertEqual(json.loads(result.out), {"schema": 1, "errors": True, "files": [
            {"path": own_path(self.spec), "findings": []},
            {"path": own_path(self.state), "findings": [{"line": 1, "severity": "error", "text": self.WORDS}]}]})

    def test_sarif(self):
        log = json.loads(self.report("sarif").out)
        self.assertEqual((log["version"], len(log["runs"])), ("2.1.0", 1))
        driver = log["runs"][0]["tool"]["driver"]
        self.assertEqual((driver["name"], [rule["id"] for rule in driver["rules"]]), ("tavrinctl", ["check"]))
        result, = log["runs"][0]["results"]
        self.assertEqual((result["ruleId"], result["level"], result["message"]["text"]), ("check", "error", self.WORDS))
        place = result["locations"][0]["physicalLocation"]
        self.assertEqual(place["region"], {"startLine": 1})
        self.assertTrue(place["artifactLocation"]["uri"].startswith("file:///"))
        self.assertTrue(place["artifactLocation"]["uri"].endswith("/state.json"))

    def test_addresses_of_files(self):
        (self.folder / "a b").mkdir()
        self.file("a b/09azAZ-._~ü.spec", "")
        log = json.loads(run("check", "--format", "sarif", "a b/09azAZ-._~ü.spec", cwd=self.folder).out)
        uris = {each["locations"][0]["physicalLocation"]["artifactLocation"]["uri"] for each in log["runs"][0]["results"]}
        self.assertEqual(uris, {"a%20b/09azAZ-._~%C3%BC.spec"})

    def test_another_one(self):
        result = self.report("xml")
        self.assertEqual((result.code, result.out), (2, ""))
        self.assertIn('"xml" is not valid for --format text|json|sarif|github', result.err)

    def test_github(self):
        self.assertEqual(self.report("github").out,
                         "::error file=" + own_path(self.state).replace(":", "%3A") + ",line=1::" + self.WORDS + "\n")
        odd = self.file("a,b.spec", SPEC + "$100%\nT\nH\nText\n")
        self.assertIn('a%2Cb.spec,line=38::Unknown type: "Text", for subspec 100%25\n',
                      run("check", "--format", "github", own_path(odd)).out)


if __name__ == "__main__":
    unittest.main()
