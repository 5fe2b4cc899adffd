"""The manifest of examples/fleet, and its commands called as an engine calls them: one process a step, the instance on
its standard input, JSON lines back."""
import json
import re
import unittest

from machine_case import AgentCase, value
from tool import TOP

MANIFEST = json.loads((TOP / "examples/fleet/tavrin.dsc.resource.json").read_text())
KNOWN = {"$schema", "type", "version", "description", "tags", "get", "set", "test", "export", "schema", "exitCodes"}
OF_COMMANDS = {"executable", "args", "input", "return", "implementsPretest", "requireSecurityContext"}
RESTART = ["stopping", "stopped", "started"]


class Engine(AgentCase):
    def call(self, operation, instance=None, what_if=False, code=0):
        """What the command prints, a line each; what it says on its standard error stream goes to self.said."""
        command = MANIFEST[operation]
        words = [*command["args"], *["--what-if"] * what_if]
        result = self.run_tool(*words, code=code, text=b"" if instance is None else json.dumps(instance).encode())
        self.said = [json.loads(line) for line in result.err.splitlines()]
        self.assertTrue(all(set(each) <= {"error", "warn", "info"} for each in self.said), result)
        lines = [json.loads(line) for line in result.out.splitlines()]
        if operation != "export" and code == 0:
            self.assertEqual(len(lines), 2 if command.get("return") == "stateAndDiff" else 1)
        return lines


class Manifest(unittest.TestCase):
    def test_has_what_is_known_and_required(self):
        self.assertLessEqual(set(MANIFEST), KNOWN)
        self.assertLessEqual({"$schema", "type", "version", "get", "schema"}, set(MANIFEST))
        self.assertRegex(MANIFEST["type"], r"^\w+(\.\w+){0,2}/\w+$")
        version = re.search(r"^project\(\w+ VERSION ([\d.]+)", (TOP / "CMakeLists.txt").read_text(), re.M)[1]
        self.assertEqual(MANIFEST["version"], version)

    def test_its_commands(self):
        for operation in ("get", "set", "test", "export"):
            self.assertLessEqual(set(MANIFEST[operation]), OF_COMMANDS, operation)
            # Words alone: whatIfArg, for one, is refused by engines before 3.2, and the whole manifest with it.
            self.assertEqual((MANIFEST[operation]["executable"], MANIFEST[operation]["args"]),
                             ("tavrinctl", ["dsc", operation]))


class Resource(Engine):
    DESIRED = {"name": "Tavrin Agent", "values": {"Port": 5001, "Compress": True, "Detail": "normal"}}

    def test_get(self):
        state, = self.call("get", {"name": "Tavrin Agent"})
        self.assertEqual((state["name"], state["service"], state["values"]["Port"]), ("Tavrin Agent", "TavrinAgent", "5000"))

    def test_what_an_engine_does(self):
        before, = self.call("test", self.DESIRED)
        self.assertIs(before["_inDesiredState"], False)
        would, diff = self.call("set", self.DESIRED, what_if=True)
        self.assertEqual((would["values"]["Port"], diff), ("5001", ["values"]))
        self.assertEqual((value("Port"), self.agents_notes()), ("5000", []))
        after, diff = self.call("set", self.DESIRED)
        self.assertEqual((after["values"], diff), ({"Port": "5001", "Compress": "true", "Detail": "normal"}, ["values"]))
        self.assertEqual((value("Port"), self.agents_notes()), ("5001", RESTART))
        self.assertIn({"info": "service TavrinAgent restarted"}, self.said)
        after, = self.call("test", self.DESIRED)
        self.assertIs(after["_inDesiredState"], True)
        self.assertEqual(self.call("set", self.DESIRED)[1], [])
        self.assertEqual(self.agents_notes(), RESTART)

    def test_export_gives_what_set_takes(self):
        instances = self.call("export")
        self.assertEqual([each["name"] for each in instances],
                         ["Legacy Agent", "Legacy Archive", "Tavrin Agent", "Tray Icon"])
        for instance in instances:
            self.assertIs(self.call("test", instance)[0]["_inDesiredState"], True)

    def test_a_failure_is_an_exit_code_and_words(self):
        self.assertEqual(self.call("set", {"name": "Tavrin Agent", "values": {"Port": "x"}}, code=4), [])
        self.assertEqual(len(self.said), 1)
        self.assertIn("not a whole number", self.said[0]["error"])
        self.assertIn(str(4), MANIFEST["exitCodes"])

    def test_the_schema_knows_every_property(self):
        schema = json.loads(self.run_tool(*MANIFEST["schema"]["command"]["args"]).out)
        state, = self.call("test", self.DESIRED)
        self.assertEqual(set(schema["properties"]), set(state))
        self.assertEqual(schema["required"], ["name"])


if __name__ == "__main__":
    unittest.main()
