"""The scripts of examples/fleet. There is no PowerShell here: of its scripts, the desired state and the command are taken
and run, and every way to end is looked at in their text."""
import re
import shutil
import unittest

from machine_case import DISK, AgentCase, value, wine
from tool import TOP

FLEET = TOP / "examples/fleet"
INSTALLED = DISK / "Program Files/Tavrin Configuration/tavrinctl.exe"


class Scripts(AgentCase):
    def setUp(self):
        super().setUp()
        INSTALLED.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(TOP / "build/windows/tavrinctl.exe", INSTALLED)
        self.addCleanup(shutil.rmtree, INSTALLED.parent)

    def play(self, path, code):
        """What the script's line with tavrinctl does with the script's state."""
        text = (FLEET / path).read_text()
        desired = re.search(r"@'\n(.*?)\n'@", text, re.S)[1]
        words = re.search(r'& "\$env:ProgramW6432\\Tavrin Configuration\\tavrinctl.exe" (.*)$', text, re.M)[1].split()
        self.run_tool(*words, text=b"\xef\xbb\xbf" + desired.encode() + b"\r\n", code=code)
        self.assertTrue(text.endswith("if ($LASTEXITCODE -ne 0) { exit 1 }\nexit 0\n"))

    def test_detection_and_remediation(self):
        self.play("intune/detect.ps1", 3)
        self.assertEqual((value("Interval"), self.agents_notes()), ("60", []))
        self.play("intune/remediate.ps1", 0)
        self.assertEqual((value("Interval"), self.agents_notes()), ("30", ["stopping", "stopped", "started"]))
        self.play("intune/detect.ps1", 0)

    def start_up(self, state):
        folder = DISK / "start up"
        folder.mkdir(exist_ok=True)
        self.addCleanup(shutil.rmtree, folder, True)
        shutil.copy(FLEET / "start_up.cmd", folder)
        (folder / "agent.json").write_text(state)
        return wine("cmd", "/c", "C:\\start up\\start_up.cmd", check=False).returncode

    def test_the_start_up_script(self):
        self.assertEqual(self.start_up((FLEET / "agent.json").read_text()), 0)
        self.assertEqual((value("Interval"), value("Detail")), ("30", "everything"))
        self.assertEqual(self.start_up("{}"), 4)
        INSTALLED.unlink()
        self.assertNotEqual(self.start_up("{}"), 0)


if __name__ == "__main__":
    unittest.main()
