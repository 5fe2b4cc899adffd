"""`diff`: which machines are not as desired, in four forms."""
import base64
import csv
import hashlib
import io
import json
import re
import unittest
from html.parser import HTMLParser

from tool import FolderCase, own_path, run

DESIRED = {"Interval": 60, "Compress": True, "ServerList": "alpha.example,beta.example:5001", "ModemPort": None}
CURRENT = {"Interval": {"value": "60", "title": "Interval", "kind": "Integer", "group": "Measuring"},
           "Compress": {"value": "true", "title": "Compress reports", "kind": "Boolean", "group": "Measuring"},
           "ServerList": {"value": "alpha.example,beta.example:5001", "title": "Server list", "kind": "ServerList"},
           "ModemPort": {"value": None, "title": "Modem port", "kind": "COM"},
           "Detail": {"value": "normal", "title": "Detail", "kind": "Options"}}


def state(values=None, name="Tavrin Agent", **more):
    return json.dumps({"schema": 1, "configurations": {name: {"values": DESIRED if values is None else values}}, **more})


def report(machine=None, pending=False, specs=(), service="running", start="automatic", configurations=None, **current):
    """What show --json prints on a machine; `current` are the values in which it is not CURRENT."""
    values = {**CURRENT, **{name: value if isinstance(value, dict) else {**CURRENT.get(name, {}), "value": value}
                            for name, value in current.items()}}
    whole = {"schema": 1}
    if machine is not None:
        whole["machine"] = {"name": machine, "tavrinctl": "0.1.0", "time": "2026-01-31T12:00:00Z"}
    whole["specFiles"] = [{"path": f"C:\\{at}.spec", "sha256": each} for at, each in enumerate(specs)]
    whole["configurations"] = {"Tavrin Agent": {
        "key": "SOFTWARE\\Tavrin\\Agent", "service": "TavrinAgent", "serviceState": service, "startType": start,
        "restartPending": pending, "values": values, "actions": []}} if configurations is None else configurations
    return json.dumps(whole)


class Diff(FolderCase):
    def diff(self, *reports, desired=None, options=(), code=0):
        """Each report is a text, which becomes a file, or the path of one."""
        paths = [each if not isinstance(each, str) else self.file(f"{at}.json", each) for at, each in enumerate(reports)]
        result = run("diff", *options, own_path(self.file("desired", desired or state())), *map(own_path, paths))
        self.assertEqual((result.code, result.err), (code, ""), result)
        return result.out

    def machines(self, *reports, **more):
        return json.loads(self.diff(*reports, options=["--format", "json"], **more))["machines"]

    def differences(self, desired, code=0, **current):
        machine, = self.machines(report("web1", **current), desired=state(desired), code=code)
        return machine["differences"].get("Tavrin Agent", {}), machine["problem"]


class Comparison(Diff):
    def test_the_form(self):
        out = self.diff(report("web1", Interval="30"), report("web2", pending=True), options=["--format", "json"])
        self.assertEqual(json.loads(out), {"schema": 1, "inSync": False, "machines": [
            {"machine": "web1", "inSync": False, "restartPending": False, "problem": None,
             "differences": {"Tavrin Agent": {"Interval": {"desired": "60", "current": "30"}}}},
            {"machine": "web2", "inSync": True, "restartPending": True, "problem": None, "differences": {}}]})

    def test_all_in_sync(self):
        out = json.loads(self.diff(report("web1"), options=["--format", "json", "--exit-code"]))
        self.assertTrue(out["inSync"])

    def test_drift_is_an_exit_code_only_when_asked_for(self):
        self.diff(report("web1", Interval="30"))
        self.diff(report("web1", Interval="30"), options=["--exit-code"], code=3)

    def test_names_in_any_letter_case_and_titles(self):
        self.assertEqual(self.differences({"INTERVAL": 30, "compress REPORTS": False}),
                         ({"Interval": {"desired": "30", "current": "60"},
                           "Compress": {"desired": "false", "current": "true"}}, None))
        machine, = self.machines(report("web1", Interval="30"), desired=state(name="TAVRIN agent"))
        self.assertEqual(list(machine["differences"]), ["Tavrin Agent"])

    def test_what_apply_would_store_is_in_sync(self):
        self.assertEqual(self.differences({"Compress": "TRUE"}), ({}, None))
        self.assertEqual(self.differences({"Interval": "60s"}),
                         ({"Interval": {"desired": "60s", "current": "60"}}, None))
        self.assertEqual(self.differences({"Interval": 60}, Interval="0x3C"),
                         ({"Interval": {"desired": "60", "current": "0x3C"}}, None))

    def test_values_that_are_not_set(self):
        self.assertEqual(self.differences({"Interval": 60}, Interval=None),
                         ({"Interval": {"desired": "60", "current": None}}, None))
        self.assertEqual(self.differences({"Interval": None}), ({"Interval": {"desired": None, "current": "60"}}, None))
        self.assertEqual(self.differences({"Interval": ""}, Interval=None),
                         ({"Interval": {"desired": "", "current": None}}, None))
        self.assertEqual(self.differences({"Interval": None}, Interval=""),
                         ({"Interval": {"desired": None, "current": ""}}, None))

    def test_other_types_are_never_in_sync(self):
        for current in ({"type": "REG_DWORD", "octets": "3c000000"}, {"type": "REG_DWORD", "value": "60"},
                        {"unreadable": "longer than 1,024 bytes"}):
            for desired in ("60", None, ""):
                found, problem = self.differences({"Interval": desired}, Interval=current)
                self.assertIsNone(problem)
                self.assertEqual(found["Interval"]["desired"], desired)
                self.assertEqual(dict(found["Interval"]["current"]), current)
        expanded = {"type": "REG_EXPAND_SZ", "value": "60"}
        self.assertEqual(self.differences({"Interval": "60"}, Interval=expanded),
                         ({"Interval": {"desired": "60", "current": {"value": "60", "type": "REG_EXPAND_SZ"}}}, None))
        self.assertEqual(self.differences({"Interval": "60"}, Interval={"type": "REG_SZ", "value": "60"}), ({}, None))

    def test_other_types_may_be_desired(self):
        for current in ({"type": "REG_DWORD", "octets": "3c000000"}, {"type": "REG_EXPAND_SZ", "value": "60"}):
            self.assertEqual(self.differences({"Interval": current}, Interval=current), ({}, None))
            found, _ = self.differences({"Interval": current}, Interval="60")
            self.assertEqual(found["Interval"], {"desired": current, "current": "60"})
        found, _ = self.differences({"Interval": {"type": "REG_DWORD", "octets": "3C000000"}},
                                    Interval={"type": "REG_DWORD", "octets": "3d000000"})
        self.assertEqual(found["Interval"]["desired"], {"type": "REG_DWORD", "octets": "3c000000"})

    def test_what_the_machine_does_not_have_is_a_problem(self):
        self.assertEqual(self.differences({"Nothing": None, "Interval": 1}, code=4),
                         ({"Interval": {"desired": "1", "current": "60"}}, 'no value "Nothing" in "Tavrin Agent"'))
        machine, = self.machines(report("web1", configurations={}), code=4)
        self.assertEqual((machine["inSync"], machine["problem"]), (False, 'no configuration "Tavrin Agent"'))
        _, problem = self.differences({"Interval": 60, "INTERVAL": 60}, code=4)
        self.assertEqual(problem, 'the desired state has "Interval" twice')

    def test_a_title_of_several_is_none(self):
        both = {name: {"value": "a", "title": "Twice", "kind": "String"} for name in ("First", "Second")}
        _, problem = self.differences({"Twice": "a"}, code=4, **both)
        self.assertEqual(problem, 'no value "Twice" in "Tavrin Agent"')

    def test_bare_values_and_members_of_a_later_version(self):
        machine, = self.machines(json.dumps({"schema": 1, "later": [1], "configurations": {
            "Tavrin Agent": {"later": True, "values": {"Interval": "60", "Compress": {"value": "true", "later": 1}}}}}),
            desired=state({"Interval": 60, "Compress": True}))
        self.assertTrue(machine["inSync"])
        self.assertEqual(machine["machine"], own_path(self.folder / "0.json"))

    def test_other_spec_files_are_those_that_most_do_not_have(self):
        machines = self.machines(*(report(name, specs=specs) for name, specs in
                                   (("odd", ["b"]), ("web1", ["a"]), ("web2", ["a"]), ("silent", []))))
        self.assertEqual([each.get("otherSpecFile") for each in machines], [True, None, None, None])
        self.assertEqual([each["inSync"] for each in machines], [True] * 4)


    def test_a_spec_file_that_the_desired_state_was_made_for(self):
        desired = json.dumps({"schema": 1, "configurations": {"Tavrin Agent": {
            "guards": {"sha256": "B" * 64}, "values": {"Interval": 60}}}})
        machines = self.machines(*(report(name, specs=specs) for name, specs in (
            ("odd", ["b" * 64, "c" * 64]), ("web1", ["a" * 64]), ("web2", ["a" * 64]), ("silent", []))), desired=desired)
        self.assertEqual([each.get("otherSpecFile") for each in machines], [None, True, True, None])

    def test_another_key_or_service_than_desired_is_a_problem(self):
        desired = {"schema": 1, "configurations": {"Tavrin Agent": {
            "guards": {"key": "software\\TAVRIN\\agent", "service": "TavrinAgent"}, "values": {"Interval": 60}}}}
        machine, = self.machines(report("web1"), desired=json.dumps(desired))
        self.assertTrue(machine["inSync"])
        desired["configurations"]["Tavrin Agent"]["guards"] = {"service": "Other"}
        machine, = self.machines(report("web1"), desired=json.dumps(desired), code=4)
        self.assertEqual(machine["problem"], 'the service is "TavrinAgent"; the desired state is for "Other"')


class NoReports(Diff):
    def test_do_not_stop_the_others(self):
        other = 'not a report of "tavrinctl show --json": '
        bad = {
            "": "parse error at line 1, column 1: ",
            "{": "parse error at line 1, column 2: ",
            "[]": other + "not an object",
            "{}": other + 'no member "schema"',
            '{"schema": 2, "configurations": {}}': other + "schema 2; this program reads 1",
            '{"schema": 1}': other + 'no object "configurations"',
            '{"schema":1,"configurations":7}': other + 'no object "configurations"',
            '{"schema":1,"configurations":{"A":7}}': other + 'the configuration "A" is not an object',
            '{"schema":1,"configurations":{"A":{}}}': other + 'no object "values"',
            '{"schema":1,"configurations":{"A":{"values":{"V":{"before":"1","after":"2","changed":true}}}}}':
                other + 'the value "V" has no member "value"',
            '{"schema":1,"configurations":{"A":{"values":{"V":["x"]}}}}': other + 'the value "V" has no text'}
        machines = self.machines(*bad, self.folder / "none.json", report("web1"), code=4)
        self.assertEqual([each["machine"] for each in machines[:len(bad)]],
                         [own_path(self.folder / f"{at}.json") for at in range(len(bad))])
        self.assertEqual([each["inSync"] for each in machines], [False] * (len(bad) + 1) + [True])
        for each, problem in zip(machines, bad.values()):
            self.assertTrue(each["problem"].startswith(problem), each)
        self.assertEqual(machines[len(bad)]["problem"], "cannot read: No such file or directory")

    def test_are_worse_than_drift(self):
        self.diff("{}", report("web1", Interval="30"), options=["--exit-code"], code=4)

    def test_a_folder_stands_for_its_reports(self):
        folder = self.folder / "reports"
        folder.mkdir()
        machine, = self.machines(folder, code=4)
        self.assertEqual(machine["machine"], own_path(folder))
        for name in ("b", "a"):
            (folder / f"{name}.json").write_text(report(name))
        (folder / "notes.txt").write_text("no report")
        self.assertEqual([each["machine"] for each in self.machines(folder)], ["a", "b"])

    def test_no_desired_state_is_a_failure(self):
        path = own_path(self.file("x", report("web1")))
        self.assertEqual(run("diff", own_path(self.folder / "none"), path).code, 1)
        self.assertEqual(run("diff", own_path(self.file("bad", "{}")), path).code, 4)
        self.assertEqual(run("diff", path).code, 2)
        refused = run("diff", "--format", "xml", path, path)
        self.assertEqual(refused.code, 2)
        self.assertIn('"xml" is not valid for --format text|csv|json|html', refused.err)


class Text(Diff):
    def test_a_table(self):
        self.assertEqual(self.diff(
            report("web1"), report("web2", Interval="30", Compress=None, pending=True),
            report("web3", service="stopped", start="disabled"), "{}", code=4).replace(own_path(self.folder / "3.json"), "FILE"),
            """\
MACHINE           STATE    VALUE             DESIRED           CURRENT
web1              in sync
web2              drift    Interval          60                30
                           Compress          true              (not set)
                           restart pending
web3              in sync  TavrinAgent: stopped, disabled
""" + ("FILE\n" if len(own_path(self.folder / "3.json")) > 16 else "") + """\
                  problem  not a report of "tavrinctl show --json": no member
                           "schema"

machines: 4, 2 in sync, 1 drift, 1 with a problem, 1 restart pending
""")

    def test_fits_eighty_columns(self):
        out = self.diff(report("a-machine-with-a-long-name.example", ServerList="ä" * 500, Interval="\x1b[2J\n"), code=0)
        self.assertLessEqual(max(map(len, out.splitlines())), 79)
        self.assertIn("\na-machine-with-a-long-name.example\n                  drift    Interval ", out)
        self.assertIn("ServerList        alpha.example...  äääääääääääää...\n", out)
        self.assertIn("\\033[2J", out)

    def test_several_configurations_are_named(self):
        desired = {"schema": 1, "configurations": {name: {"values": {"V": "1"}} for name in ("One", "Two")}}
        current = {name: {"values": {"V": "2"}} for name in ("One", "Two")}
        out = self.diff(report("web1", configurations=current), desired=json.dumps(desired))
        self.assertIn("web1              drift    [One]\n" + " " * 27 + "V                 1                 2\n" +
                      " " * 27 + "[Two]\n", out)


class Csv(Diff):
    def rows(self, *reports, **more):
        return list(csv.DictReader(io.StringIO(self.diff(*reports, options=["--format", "csv"], **more), newline="")))

    def test_a_row_for_each_difference(self):
        rows = self.rows(report("web1", Interval="30", Compress=None), report("web,2", pending=True), "{}", code=4)
        self.assertEqual([list(each.values()) for each in rows[:3]], [
            ["web1", "2026-01-31T12:00:00Z", "drift", "", "", "Tavrin Agent", "Interval", "60", "30"],
            ["web1", "2026-01-31T12:00:00Z", "drift", "", "", "Tavrin Agent", "Compress", "true", "(not set)"],
            ["web,2", "2026-01-31T12:00:00Z", "in sync", "", "restart pending", "", "", "", ""]])
        self.assertEqual((rows[3]["state"], rows[3]["machine"]), ("problem", own_path(self.folder / "2.json")))

    def test_no_cell_is_a_formula(self):
        found = [self.rows(report("web1", Interval=text))[0]["current"]
                 for text in ("=cmd|' /C calc'!A0", "-5", "-5+1", "-~5", "@SUM(1)", 'a "quote"')]
        self.assertEqual(found, ["'=cmd|' /C calc'!A0", "-5", "'-5+1", "'-~5", "'@SUM(1)", 'a "quote"'])


class Page(HTMLParser):
    """What a browser would see: elements with their attributes, the texts, the script."""

    def __init__(self, text):
        super().__init__()
        self.elements, self.texts, self.script, self.rows = [], [], "", []
        self.in_script = False
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        self.elements.append((tag, dict(attrs)))
        self.in_script = tag == "script"

    def handle_endtag(self, tag):
        self.in_script = False

    def handle_data(self, data):
        self.texts.append(data)
        if self.in_script:
            self.script += data


class Html(Diff):
    HOSTILE = "<script>alert(1)</script>\"'><img src=x onerror=alert(2)>&amp;\x01\u202e"

    def page(self, *reports, **more):
        self.octets = self.diff(*reports, options=["--format", "html"], **more)
        return Page(self.octets)

    def test_counts_and_a_row_for_each_machine(self):
        page = self.page(report("web1"), report("web2", Interval="30", pending=True), "{}", code=4)
        counts = re.findall(r'data-show="(\w+)" aria-pressed="false"><b>(\d+)</b>', self.octets)
        self.assertEqual(counts, [("all", "3"), ("sync", "1"), ("drift", "1"), ("problem", "1"), ("pending", "1"), ("spec", "0")])
        rows = [attributes["class"] for tag, attributes in page.elements if tag == "tr" and "class" in attributes]
        self.assertEqual(rows, ["all sync", "all drift pending", "all problem"])

    def test_values_stand_below_their_configuration(self):
        desired = {"schema": 1, "configurations": {name: {"values": {"V": "1", "W": "1"}} for name in ("One", "Two")}}
        current = {name: {"values": {"V": "2", "W": "a,b"}} for name in ("One", "Two")}
        page = self.page(report("web1", configurations=current), desired=json.dumps(desired))
        begin = page.texts.index("One")
        self.assertEqual("|".join(text for text in page.texts[begin:] if text.strip()).partition("|2026")[0],
                         "One|Desired|Current|V|1|2|W|1|a,|b|Two|Desired|Current|V|1|2|W|1|a,|b")

    def test_needs_nothing_from_elsewhere(self):
        page = self.page(report("web1"))
        for tag, attributes in page.elements:
            self.assertFalse({"src", "href", "srcset", "action"} & set(attributes), (tag, attributes))
        self.assertNotRegex(self.octets, r"https?:|url\(|@import")

    def test_its_policy_names_its_script(self):
        page = self.page(report("web1"))
        policy = next(attributes["content"] for _, attributes in page.elements if "http-equiv" in attributes)
        digest = base64.b64encode(hashlib.sha256(page.script.encode()).digest()).decode()
        self.assertEqual(policy, f"default-src 'none'; style-src 'unsafe-inline'; script-src 'sha256-{digest}'")

    def test_what_machines_say_is_text(self):
        plain = [tag for tag, _ in self.page(report("web1", Interval="30")).elements]
        configuration = {"service": self.HOSTILE, "serviceState": self.HOSTILE,
                         "values": {self.HOSTILE: {"value": self.HOSTILE, "title": "Interval"}}}
        hostile = report(self.HOSTILE, configurations={self.HOSTILE: configuration})
        desired = json.dumps({"schema": 1, "configurations": {self.HOSTILE: {"values": {"Interval": "1"}}}})
        page = self.page(hostile, desired=desired)
        self.assertEqual([tag for tag, _ in page.elements if tag != "p"], plain)
        self.assertFalse([attributes for _, attributes in page.elements if "onerror" in attributes])
        self.assertIn(self.HOSTILE.replace("\x01", "\\001"), page.texts)


if __name__ == "__main__":
    unittest.main()
