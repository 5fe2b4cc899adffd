"""show, set and apply on a machine: what is in the registry afterwards, and what the agent has noticed."""
import json
import os
import random
import re
import shutil
import signal
import subprocess
import time
import unittest

from machine_case import AGENT, DISK, PENDING, WITHOUT_DISPLAY, AgentCase, MachineCase, exported, import_reg, unix_path, value, values, wine
from tool import TOP, own_path, start

RESTART = ["stopping", "stopped", "started"]


class Show(MachineCase):
    def test_a_table(self):
        out = re.sub(r"^(  service  TavrinAgent) \(\w+(, \w+)?\)$", r"\1", self.run_tool("show", "Tavrin Agent").out, flags=re.M)
        self.assertTrue(out.startswith(r"""Tavrin Agent
  key      HKEY_LOCAL_MACHINE\SOFTWARE\Tavrin\Agent
  service  TavrinAgent
  [Identity]
    AgentName                  String          web1
    AgentDomain                string          example
    DataFolder                 Directory       C:\windows\temp
    LogFile                    File            C:\windows\temp\tavrin_agent.log
  [Servers]
    ServerList                 ServerList      127.0.0.1
    Port                       Integer         5000
                               ConnectionTest  (no value)
"""), out)

    def test_all_configurations_by_name(self):
        shown = json.loads(self.run_tool("show", "--json").out)
        self.assertEqual(list(shown["configurations"]),
                         ["Legacy Agent", "Legacy Archive", "Tavrin Agent", "Tray Icon"])
        self.assertEqual(shown["configurations"]["Legacy Agent"]["values"]["StartDelay"],
                         {"value": "0x10", "group": "Start", "title": "Start delay", "kind": "Integer"})


class Change(AgentCase):
    def test_writes_what_differs_and_restarts_the_agent(self):
        report = json.loads(self.run_tool("set", "tavrin agent", "PORT=5001", "Agent name=web1", "--json").out)
        self.assertEqual(report["configurations"]["Tavrin Agent"]["values"], {
            "AgentName": {"before": "web1", "after": "web1", "changed": False},
            "Port": {"before": "5000", "after": "5001", "changed": True}})
        self.assertTrue(report["configurations"]["Tavrin Agent"]["restarted"])
        self.assertEqual(value("Port"), "5001")
        self.assertEqual(self.agents_notes(), RESTART)
        again = self.run_tool("set", "Tavrin Agent", "Port=5001")
        self.assertEqual((again.out, again.err), ("nothing to do: all values match\n", ""))
        self.assertEqual(self.agents_notes(), RESTART)

    def test_what_show_prints_apply_reads(self):
        shown = self.file("state.json", self.run_tool("show", "--json").octets)
        result = self.run_tool("apply", own_path(shown), "--exit-code")
        self.assertEqual(result.out, "nothing to do: all values match\n")
        self.run_tool("set", "Tavrin Agent", "Port=1", "Detail=errors", "Interval=")
        self.run_tool("apply", "-", text=shown.read_bytes())
        self.assertEqual(json.loads(self.run_tool("show", "--json").out)["configurations"],
                         json.loads(shown.read_bytes())["configurations"])

    def test_texts_beyond_ascii(self):
        self.run_tool("set", "Tavrin Agent", "AgentName=Zürich €")
        self.assertEqual(value("AgentName"), "Zürich €")
        refused = self.run_tool("set", "Tavrin Agent", "AgentName=北京", code=4)
        self.assertIn("the text does not fit the machine's code page", refused.err)
        self.assertIn("Zürich €", self.run_tool("show", "Tavrin Agent").out)

    def test_stars_and_quotes_are_taken_as_they_are(self):
        self.run_tool("set", "Tavrin Agent", 'AgentName=*.* "a b" =\\')
        self.assertEqual(value("AgentName").replace('\\"', '"'), '*.* "a b" =\\')

    def test_the_backup_brings_everything_back(self):
        import_reg(f"[HKEY_LOCAL_MACHINE\\{AGENT}]\n"
                   '"Port"=dword:00001388\n"AgentName"="北京"\n"AgentDomain"=hex(2):25,00,50,00,25,00,00,00\n'
                   '"DataFolder"=hex(1):61,00,0d,00,0a,00,62,00,00,00\n"LogFile"=hex:01,02,03\n"Interval"=-\n'
                   '"ServerList"="' + "x" * 3000 + '"\n')
        before = exported(AGENT)
        report = json.loads(self.run_tool(
            "set", "Tavrin Agent", "Port=5000", "AgentName=a", "AgentDomain=b", "DataFolder=c", "LogFile=d", "Interval=5",
            "ServerList=e", "Detail=normal", "--json").out)
        self.assertEqual(report["configurations"]["Tavrin Agent"]["values"]["Port"],
                         {"before": {"type": "REG_DWORD", "octets": "88130000"}, "after": "5000", "changed": True})
        self.assertNotEqual(exported(AGENT), before)
        self.assertEqual(unix_path(report["backup"]).read_bytes()[:2], b"\xff\xfe")
        wine("regedit", "/S", report["backup"])
        self.assertEqual(exported(AGENT), before)

class LeftUndone(AgentCase):
    """What one run was not let finish, and the run after it."""

    def wait_for(self, condition, what):
        for _ in range(600):
            if condition():
                return
            time.sleep(0.1)
        self.fail(what)

    def slow_agent(self):
        self.stop_agent()
        self.agent_behaves("--stop-seconds", "5")
        self.start_agent()
        self.NOTES.write_bytes(b"")

    def test_a_kill_between_stop_and_start(self):
        self.slow_agent()
        process = start("set", "Tavrin Agent", "Port=5001", env=WITHOUT_DISPLAY)
        self.wait_for(lambda: "stopping" in self.agents_notes(), "the agent does not stop")
        process.kill()
        process.communicate(timeout=60)
        self.assertTrue(PENDING.exists())
        self.wait_for(lambda: "stopped" in self.agents_notes(), "the agent does not stop")
        self.run_tool("set", "Tavrin Agent", "Port=5001")
        self.assertEqual((value("Port"), self.agents_notes()), ("5001", RESTART))
        self.assertFalse(PENDING.exists())

    def test_ctrl_c_waits_for_the_restart(self):
        self.slow_agent()
        process = start("set", "Tavrin Agent", "Port=5001", env=WITHOUT_DISPLAY)
        self.wait_for(lambda: "stopping" in self.agents_notes(), "the agent does not stop")
        process.send_signal(signal.SIGINT)
        _, err = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 0, err)
        self.assertEqual((value("Port"), self.agents_notes()), ("5001", RESTART))
        self.assertFalse(PENDING.exists())


class DataFolder(MachineCase):
    """The folder for backups, lock and restarts that are still to be finished. Who may open it can be tested only on
    Windows, because Wine does not store access control lists."""

    PLACE = DISK / "ProgramData/Tavrin"

    def setUp(self):
        super().setUp()
        aside = self.PLACE.with_name("aside")
        if self.PLACE.exists():
            self.PLACE.rename(aside)
            self.addCleanup(aside.rename, self.PLACE)
        self.addCleanup(shutil.rmtree, self.PLACE, ignore_errors=True)

    def set_port(self, *options, code):
        return self.run_tool("set", "Tavrin Agent", "Port=5001", "--restart", "never", *options, code=code)

    def test_a_link_is_refused(self):
        self.PLACE.symlink_to(self.folder)
        self.addCleanup(self.PLACE.unlink)
        self.assertIn("C:\\ProgramData\\Tavrin is a link or a file; remove it and run tavrinctl again",
                      self.set_port(code=1).err)
        self.assertEqual((value("Port"), os.listdir(self.folder)), ("5000", []))

    @unittest.skipIf(os.getuid() != 0, "only root can give a folder away")
    def test_a_folder_of_somebody_else_is_refused(self):
        self.PLACE.mkdir()
        os.chown(self.PLACE, 12345, 12345)
        self.assertRegex(self.set_port(code=1).err, r"C:\\ProgramData\\Tavrin belongs to S-1-[-0-9]+, not to the "
                                                    "administrators; look at what is in it, remove it")
        self.assertEqual(value("Port"), "5000")

    def test_a_lock_file_that_somebody_put_into_an_open_folder(self):
        """While it is open elsewhere it counts as held; afterwards it is a lock file like any other."""
        self.PLACE.mkdir(mode=0o777)
        (self.PLACE / "lock").write_bytes(b"planted")
        with subprocess.Popen(["wine", "cmd", "/c", "cmd /k echo ready 2>C:\\ProgramData\\Tavrin\\lock"], env=WITHOUT_DISPLAY,
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE) as holder:
            self.assertIn(b"ready", holder.stdout.readline())
            self.assertEqual(self.set_port("--timeout", "1", code=1).err,
                             "tavrinctl: timed out waiting for another tavrinctl; nothing was written\n")
            self.assertEqual(value("Port"), "5000")
            holder.stdin.close()
            holder.stdout.read()
        self.set_port(code=0)
        self.assertEqual(value("Port"), "5001")


class Denied(AgentCase):
    def close(self, key, rights):
        """Denies everyone these rights to the key."""
        program = TOP / "build/windows/tests/close_key.exe"
        self.addCleanup(wine, program, key, "D:(A;;KA;;;WD)")
        wine(program, key, f"D:(D;;{rights};;;WD)(A;;KA;;;WD)")

    def test_a_key_that_may_not_be_written(self):
        self.close(AGENT, "0x2")
        result = self.run_tool("set", "Tavrin Agent", "Port=5001", code=5)
        self.assertEqual((result.out, result.err), (
            "", f"tavrinctl: access to the key HKEY_LOCAL_MACHINE\\{AGENT} is denied\n"))
        self.assertEqual((value("Port"), self.agents_notes()), ("5000", []))
        self.run_tool("set", "Tavrin Agent", "Port=5001", "--what-if")
        self.run_tool("set", "Tavrin Agent", "Port=5000")

    def test_a_key_that_may_not_be_read(self):
        self.close(AGENT, "0x1")
        self.run_tool("show", "Tavrin Agent", code=5)
        self.run_tool("test", code=5)
        self.run_tool("dsc", "get", code=5, text=b'{"name":"Tavrin Agent"}')

    def test_a_list_that_may_not_be_read(self):
        self.close("SOFTWARE\\Tavrin\\TRConfig", "0x1")
        self.run_tool("show", code=5)


class Together(AgentCase):
    def test_two_at_once(self):
        both = [start("set", "Tavrin Agent", word, env=WITHOUT_DISPLAY) for word in ("Port=5001", "Interval=61")]
        for each in both:
            _, err = each.communicate(timeout=120)
            self.assertEqual(each.returncode, 0, err)
        self.assertEqual((value("Port"), value("Interval")), ("5001", "61"))
        self.assertEqual(self.agents_notes(), RESTART * 2)


MANY = 1000


class Crash(MachineCase):
    """A machine with many values, and a program that is killed while it writes them."""

    def setUp(self):
        super().setUp()
        spec = self.file("many.spec", "SOFTWARE\\Tavrin\\Many\nMany\n!G\n" + "".join(
            f"$T{n}\nV{n}\nH\nString\n" for n in range(MANY)))
        import_reg("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\TRConfig]\n\"Many\"=\"%s\"\n\n"
                   "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Many]\n" % own_path(spec).replace("\\", "\\\\") + "".join(
                       f'"V{n}"="{"old " * 100}"\n' for n in range(MANY)))

    def desired(self, text):
        return self.file("desired.json", json.dumps({"schema": 1, "configurations": {"Many": {
            "values": {f"V{n}": text for n in range(MANY)}}}}))

    def backups(self):
        return set((DISK / "ProgramData/Tavrin/Backup").glob("*.reg"))

    def kill_among_the_writes(self, desired, delay):
        """Kills it some time after its backup is there, which comes right before the writes."""
        known = self.backups()
        process = start("apply", own_path(desired), env=WITHOUT_DISPLAY)
        while self.backups() == known and process.poll() is None:
            time.sleep(0.001)
        time.sleep(delay)
        process.kill()  # this program alone, and nothing that Wine keeps for the others
        process.communicate(timeout=60)

    def test_old_or_new_and_never_half(self):
        chance = random.Random(15)
        half_done = 0
        for turn in range(8):
            before, new = values("SOFTWARE\\Tavrin\\Many"), f"new {turn} " * 100
            self.kill_among_the_writes(self.desired(new), chance.random() * 0.1)
            after = values("SOFTWARE\\Tavrin\\Many")
            changed = [name for name in after if after[name] != before[name]]
            self.assertLessEqual({after[name] for name in changed}, {f'"{new}"'})
            self.assertEqual(len(after), MANY)
            half_done += 0 < len(changed) < MANY
        self.assertGreater(half_done, 0, "it was never killed among the writes")
        result = self.run_tool("apply", own_path(self.desired("done")), "--json")
        self.assertTrue(json.loads(result.out)["changed"])
        self.assertEqual(set(values("SOFTWARE\\Tavrin\\Many").values()), {'"done"'})


if __name__ == "__main__":
    unittest.main()
