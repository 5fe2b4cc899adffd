"""The playbook of examples/fleet, run by Ansible over a local connection: what it calls is the program under Wine."""
import json
import re
import shutil
import subprocess
import unittest

from machine_case import WITHOUT_DISPLAY, AgentCase, value
from tool import COMMAND, TOP, own_path

FLEET = TOP / "examples/fleet"


@unittest.skipUnless(shutil.which("ansible-playbook"), "Ansible is not installed, see script/setup")
class Playbook(AgentCase):
    def play(self, *words, state=FLEET / "agent.json", code=0):
        """Runs the playbook; returns how many tasks were ok, changed and failed."""
        given = {"tavrinctl": COMMAND, "state": own_path(state)}
        done = subprocess.run(
            ["ansible-playbook", "-i", "machine,", "-e", "ansible_connection=local", "-e",
             "ansible_python_interpreter=/usr/bin/python3", "-e",
             json.dumps(given), *words, FLEET / "playbook.yml"], capture_output=True, text=True, check=False,
            env={**WITHOUT_DISPLAY, "HOME": str(self.folder), "ANSIBLE_LOCAL_TEMP": str(self.folder), "LC_ALL": "C.UTF-8",
                 "ANSIBLE_NOCOLOR": "1", "PATH": "/usr/bin:/bin:/usr/local/bin"})
        self.printed = done.stdout + done.stderr
        self.assertEqual(done.returncode, code, self.printed)
        recap = dict(re.findall(r"(\w+)=(\d+)", done.stdout.split("PLAY RECAP")[1]))
        return int(recap["changed"]), int(recap["failed"])

    def test_the_first_run_changes_and_the_second_does_not(self):
        self.assertEqual(self.play("--check"), (1, 0))
        self.assertEqual(value("Interval"), "60")
        self.assertEqual(self.agents_notes(), [])
        self.assertEqual(self.play(), (1, 0))
        self.assertEqual((value("Interval"), value("Compress"), value("Detail"), value("ServerList")),
                         ("30", "true", "everything", "alpha.example,beta.example:5001"))
        self.assertEqual(self.agents_notes(), ["stopping", "stopped", "started"])
        self.assertEqual(self.play(), (0, 0))
        self.assertEqual(self.agents_notes(), ["stopping", "stopped", "started"])
        self.assertEqual(self.play("--check"), (0, 0))

    def test_a_refused_state_fails(self):
        bad = self.file("bad.json", '{"schema":1,"configurations":{"Tavrin Agent":{"values":{"Port":"x"}}}}')
        self.assertEqual(self.play(state=bad, code=2), (0, 1))
        self.assertIn("not a whole number", self.printed)


if __name__ == "__main__":
    unittest.main()
