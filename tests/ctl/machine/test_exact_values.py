"""Values of every type come back as they were: through `restore`, and through a .reg file made of this machine."""
import json
import unittest

from machine_case import AGENT, DISK, AgentCase, MachineCase, exported, import_reg, unix_path, value, windows_path, wine
from tool import TOP, own_path

RESTART = ["stopping", "stopped", "started"]
TYPED = (f"[HKEY_LOCAL_MACHINE\\{AGENT}]\n"
         '"Port"=dword:00001388\n"AgentName"="北京"\n"AgentDomain"=hex(2):25,00,50,00,25,00,00,00\n'
         '"DataFolder"=hex(1):61,00,0d,00,0a,00,62,00,00,00\n"LogFile"=hex:01,02,ff\n"Interval"=-\n'
         '"Detail"=hex(7):61,00,00,00,62,00,00,00,00,00\n"ServerList"="' + "x" * 3000 + '"\n')
PLAIN = ("Port=5000", "AgentName=a", "AgentDomain=b", "DataFolder=c", "LogFile=d", "Interval=5", "Detail=normal",
         "ServerList=e")


class Restore(AgentCase):
    def setUp(self):
        super().setUp()
        import_reg(TYPED)
        self.before = exported(AGENT)
        self.backup = json.loads(self.run_tool("set", "Tavrin Agent", *PLAIN, "--json").out)["backup"]
        self.changed = exported(AGENT)
        self.assertNotEqual(self.changed, self.before)
        self.NOTES.write_bytes(b"")

    def test_the_newest_backup_and_then_the_one_of_the_restore(self):
        report = json.loads(self.run_tool("restore", "--last", "--json").out)
        self.assertEqual(exported(AGENT), self.before)
        self.assertEqual(self.agents_notes(), RESTART)
        self.assertNotEqual(report["backup"], self.backup)
        self.run_tool("restore", "--last", "--restart", "never")
        self.assertEqual(exported(AGENT), self.changed)

    def test_a_file_that_is_named(self):
        self.assertIn("Port: 5000 -> 5000 (REG_DWORD)", self.run_tool("restore", self.backup, "--what-if").out)
        self.assertEqual((exported(AGENT), self.agents_notes()), (self.changed, []))
        self.run_tool("restore", self.backup, "--restart", "never")
        self.assertEqual(exported(AGENT), self.before)
        self.assertEqual(self.run_tool("restore", self.backup).out, "nothing to do: all values match\n")

    def test_another_file_writes_nothing(self):
        path = self.file("other.reg", unix_path(self.backup).read_bytes().replace(
            "=dword:".encode("utf-16-le"), "=word:".encode("utf-16-le")))
        self.assertIn(" was not written by tavrinctl", self.run_tool("restore", own_path(path), code=4).err)
        result = self.run_tool("restore", own_path(self.folder / "none.reg"), code=1)
        self.assertIn("none.reg: cannot read: No such file or directory", result.err)
        self.assertEqual((exported(AGENT), self.agents_notes()), (self.changed, []))


class RegFileOfThisMachine(MachineCase):
    def test_it_brings_every_value_back(self):
        import_reg(TYPED)
        before = exported(AGENT)
        spec = own_path(TOP / "examples/spec_files/agent.spec")
        self.run_tool("template", "--format", "reg", "--out", windows_path(DISK / "templates"), spec)
        self.run_tool("set", "Tavrin Agent", *(word for word in PLAIN if word != "Interval=5"), "--restart", "never")
        self.assertEqual(value("Port"), "5000")
        self.assertNotEqual(exported(AGENT), before)
        wine("regedit", "/S", windows_path(DISK / "templates/agent.reg"))
        self.assertEqual(exported(AGENT), before)


if __name__ == "__main__":
    unittest.main()
