"""The role of examples/fleet, run by Ansible over a local connection on one machine: what it calls is the program under
Wine. test_fleet.py plays it on many."""
import json
import os
import re
import shutil
import subprocess
import unittest

from machine_case import WITHOUT_DISPLAY, AgentCase, value
from tool import COMMAND, TOP

FLEET = TOP / "examples/fleet/ansible"
DESIRED = json.loads((TOP / "examples/fleet/agent.json").read_text())["configurations"]
TAVRINCTL = [str(TOP / "tests/ctl/fleet/on_machine"), WITHOUT_DISPLAY["WINEPREFIX"], COMMAND[-1]]


@unittest.skipUnless(shutil.which("ansible-playbook"), "Ansible is not installed, see script/setup")
class Role(AgentCase):
    def play(self, *words, code=0, hosts="machine,", **variables):
        """Runs the playbook; returns of every machine that it began with, how many tasks changed and failed."""
        given = {"tavrin_agent_tavrinctl": TAVRINCTL, "tavrin_agent_configurations": DESIRED,
                 "tavrin_agent_test_connection": False, "ansible_connection": "local",
                 "ansible_python_interpreter": "/usr/bin/python3", **variables}
        done = subprocess.run(
            ["ansible-playbook", "-i", hosts, "-e", json.dumps(given), *words, FLEET / "roll_out.yml"], capture_output=True,
            text=True, check=False, env={**WITHOUT_DISPLAY, "HOME": str(self.folder), "ANSIBLE_LOCAL_TEMP": str(self.folder),
                                         "LC_ALL": "C.UTF-8", "ANSIBLE_NOCOLOR": "1", "ANSIBLE_PIPELINING": "1"})
        self.printed = done.stdout + done.stderr
        self.assertEqual(done.returncode, code, self.printed)
        return {name: (int(changed), int(failed)) for name, changed, failed in
                re.findall(r"^(\w+) +:.* changed=(\d+) .* failed=(\d+)", done.stdout, re.M)}

    def test_the_first_run_changes_and_the_second_does_not(self):
        self.assertEqual(self.play("--check"), {"machine": (1, 0)})
        self.assertEqual(value("Interval"), "60")
        self.assertEqual(self.agents_notes(), [])
        self.assertEqual(self.play(), {"machine": (1, 0)})
        self.assertEqual((value("Interval"), value("Compress"), value("Detail"), value("ServerList")),
                         ("30", "true", "everything", "alpha.example,beta.example:5001"))
        self.assertEqual(self.agents_notes(), ["stopping", "stopped", "started"])
        self.assertEqual(self.play(), {"machine": (0, 0)})
        self.assertEqual(self.agents_notes(), ["stopping", "stopped", "started"])
        self.assertEqual(self.play("--check"), {"machine": (0, 0)})

    def fatal_line(self):
        line, = re.findall(r"^(?:fatal|failed): .*", self.printed, re.M)
        return re.search(r'"msg": "(.*)"\}$', line)[1]

    def test_a_refused_state_fails_in_one_line(self):
        bad = {"Tavrin Agent": {"values": {"Port": "x"}}}
        self.assertEqual(self.play(code=2, tavrin_agent_configurations=bad), {"machine": (0, 1)})
        self.assertRegex(self.fatal_line(), "^tavrinctl apply: .*not a whole number.* [(]exit code 4[)]$")

    def test_a_program_that_is_missing_fails_in_one_line(self):
        self.assertEqual(self.play(code=2, tavrin_agent_tavrinctl=["/nowhere/tavrinctl"]), {"machine": (0, 1)})
        self.assertRegex(self.fatal_line(), "^tavrinctl apply: .*(No such file|Error executing)")

    def test_a_service_that_does_not_run_fails(self):
        self.stop_agent()
        self.assertEqual(self.play(code=2), {"machine": (1, 1)})
        self.assertEqual(self.fatal_line(), "The service of Tavrin Agent, TavrinAgent, is stopped (manual)")
        self.assertEqual(self.play(tavrin_agent_require_service=False), {"machine": (0, 0)})

    def test_no_other_batch_is_begun_when_a_connection_test_fails(self):
        refusing = {"Tavrin Agent": {"values": {"ServerList": "10.9.0.2:5001"}}}
        played = self.play(code=2, hosts="first,second,third", tavrin_agent_configurations=refusing,
                           tavrin_agent_test_connection=True)
        (TOP / "build/log/fleet-stop.txt").write_text(self.printed)
        self.assertEqual(played, {"first": (1, 1)})
        self.assertRegex(self.fatal_line(), "^tavrinctl test: .*Unknown agent.*[(]exit code 6[)]$")


@unittest.skipUnless(shutil.which("ansible-lint"), "ansible-lint is not installed, see script/setup")
class Lint(unittest.TestCase):
    def test_is_clean(self):
        done = subprocess.run(["ansible-lint", "--offline", "--nocolor", "-q", "-c", ".ansible-lint", "roll_out.yml", "report.yml",
                               "inventory.yml", "roles"], cwd=FLEET, capture_output=True, text=True, check=False,
                              env={**os.environ, "LC_ALL": "C.UTF-8", "ANSIBLE_NOCOLOR": "1"})
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main()
