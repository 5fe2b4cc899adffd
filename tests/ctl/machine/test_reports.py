"""What show, set and apply print for programs: it has the form of its schema, and it survives PowerShell 5.1."""
import hashlib
import json
import re
import time
import unittest

import jsonschema

from machine_case import AGENT, AgentCase, import_reg, value
from tool import TOP

SCHEMAS = TOP / "examples/fleet/schemas"


class Reports(AgentCase):
    def report(self, schema, *words, **more):
        result = self.run_tool(*words, "--json", **more)
        self.assertTrue(result.octets.isascii())
        self.assertEqual(result.err, "")
        report = json.loads(result.out)
        jsonschema.Draft202012Validator(json.loads((SCHEMAS / f"{schema}.schema.json").read_text())).validate(report)
        return report

    def test_have_the_form_of_their_schemas(self):
        import_reg(f"[HKEY_LOCAL_MACHINE\\{AGENT}]\n"
                   '"Port"=dword:00001388\n"AgentDomain"=hex(2):25,00,50,00,25,00,00,00\n"LogFile"=hex:01,02,03\n'
                   '"DataFolder"=hex(7):61,00,00,00,62,00,00,00,00,00\n"Interval"=-\n"ServerList"="' + "x" * 3000 + '"\n')
        self.report("state", "show")
        self.report("report", "set", "Tavrin Agent", "Port=5000", "LogFile=a", "AgentDomain=b", "DataFolder=c",
                    "ServerList=d", "Interval=1", "--what-if")
        self.report("report", "set", "Tavrin Agent", "Port=5000", "LogFile=a", "AgentDomain=b", "DataFolder=c",
                    "ServerList=d", "Interval=1")

    def test_say_which_machine_and_when(self):
        before = time.time()
        shown = self.report("state", "show", "Tavrin Agent")
        version = re.search(r"^project\(\w+ VERSION ([\d.]+)", (TOP / "CMakeLists.txt").read_text(), re.M)[1]
        self.assertEqual(shown["machine"]["tavrinctl"], version)
        self.assertNotEqual(shown["machine"]["name"], "")
        said = time.mktime(time.strptime(shown["machine"]["time"] + "UTC", "%Y-%m-%dT%H:%M:%SZ%Z")) - time.timezone
        self.assertLessEqual(abs(said - before), 120)
        digest = hashlib.sha256((TOP / "examples/spec_files/agent.spec").read_bytes()).hexdigest()
        self.assertEqual([each["sha256"] for each in shown["specFiles"]], [digest])
        agent = shown["configurations"]["Tavrin Agent"]
        self.assertEqual((agent["serviceState"], agent["startType"], agent["restartPending"]),
                         ("running", "manual", False))

    def test_survive_both_conversions_of_powershell(self):
        self.run_tool("set", "Tavrin Agent", "AgentName=Zürich", "--restart", "never")
        for code_page in ("cp437", "cp850", "cp1252"):
            lines = self.run_tool("show", "Tavrin Agent", "--json").octets.decode(code_page).splitlines()
            self.run_tool("set", "Tavrin Agent", "AgentName=other", "--restart", "never")
            piped = "".join(line + "\r\n" for line in lines).encode("ascii", "replace")
            self.run_tool("apply", "-", "--restart", "never", text=piped)
            self.assertEqual(value("AgentName"), "Zürich")


if __name__ == "__main__":
    unittest.main()
