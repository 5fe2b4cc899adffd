"""A fleet of played machines in many states, brought into one desired state by the role of examples/fleet, twice. Then
what Ansible, the reports and diff say is compared with what is true, machine by machine: a machine that is called right
and is not is the failure that matters.

TAVRIN_FLEET is the number of machines, TAVRIN_FLEET_SEED chooses their states; see script/soak.
"""
import concurrent.futures
import csv
import itertools
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import time
import unittest

import played
import tool

FLEET = tool.TOP / "examples/fleet/ansible"
COUNT = int(os.environ.get("TAVRIN_FLEET", "4"))
SEED = int(os.environ.get("TAVRIN_FLEET_SEED", "1"))
# The controller compares with the program for Linux; where that is not built, with the one for Windows.
NATIVE = pathlib.Path(os.environ.get("TAVRIN_NATIVE", tool.TOP / "build/asan/tavrinctl"))
DIFF = [str(NATIVE)] if NATIVE.exists() else [
    str(played.HERE / "on_machine"), os.environ.get("TAVRIN_WINE_PREFIX", ""), str(played.TAVRINCTL)]


def draw(count, chance):
    """States for so many machines: each once before one comes again."""
    rounds = (chance.sample(played.STATES, len(played.STATES)) for _ in itertools.count())
    return list(itertools.islice(itertools.chain.from_iterable(rounds), count))


@unittest.skipUnless(shutil.which("ansible-playbook"), "Ansible is not installed, see script/setup")
class Fleet(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tool.TOP / "build/fleet"
        shutil.rmtree(cls.folder, ignore_errors=True)
        cls.folder.mkdir(parents=True)
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        chance = random.Random(SEED)
        cls.states = {}
        for number, state in enumerate(draw(COUNT, chance), 1):
            cls.states[played.Machine(f"web{number}", cls.folder)] = state
        for machine in cls.states:
            cls.addClassCleanup(machine.end)
        chances = [random.Random(chance.random()) for _ in cls.states]
        with concurrent.futures.ThreadPoolExecutor(4) as beside:
            list(beside.map(played.arrange, cls.states, cls.states.values(), chances))
        cls.inventory = cls.folder / "inventory.json"
        cls.write_inventory()

    @classmethod
    def write_inventory(cls):
        # A hanging agent hangs as well after the minute that the others get.
        hosts = {machine.name: {"tavrin_agent_tavrinctl": [*machine.command, str(played.TAVRINCTL)],
                                "tavrin_agent_timeout": 5 if state is played.hanging else 60}
                 for machine, state in cls.states.items()}
        cls.inventory.write_text(json.dumps({"all": {"hosts": hosts, "vars": {
            "ansible_connection": "local", "ansible_python_interpreter": "/usr/bin/python3",
            "tavrin_agent_configurations": played.CONFIGURATIONS,
            "tavrin_agent_reports": str(cls.folder / "reports"), "diff_command": DIFF}}}))

    def play(self, playbook, **variables):
        """Runs a playbook; returns what it printed and the recap of each machine."""
        begin = time.monotonic()
        done = subprocess.run(
            ["ansible-playbook", "-i", self.inventory, "-e", json.dumps(variables), FLEET / playbook], capture_output=True,
            text=True, check=False, env={**os.environ, "HOME": str(self.folder), "ANSIBLE_LOCAL_TEMP": str(self.folder / "tmp"),
                                         "LC_ALL": "C.UTF-8", "ANSIBLE_NOCOLOR": "1", "ANSIBLE_PIPELINING": "1",
                                         "ANSIBLE_FORKS": "8"})
        self.seconds = time.monotonic() - begin
        self.printed = done.stdout + done.stderr
        (tool.TOP / "build/log").mkdir(exist_ok=True)
        (tool.TOP / f"build/log/fleet-{playbook}.txt").write_text(self.printed)
        recap = re.findall(r"^(\w+) +: .*?changed=(\d+) +unreachable=(\d+) +failed=(\d+)", self.printed, re.M)
        return {name: {"changed": int(changed), "well": unreachable == failed == "0"}
                for name, changed, unreachable, failed in recap}

    def reports(self):
        """What `show` said, and what diff makes of it, by machine."""
        folder, = (self.folder / "reports").iterdir()
        shown = {path.stem: json.loads(path.read_text()) for path in folder.glob("*.json")}
        names = [f"{machine.name}.json" for machine in self.states]
        done = subprocess.run([*DIFF, "diff", "desired", *names, "--format", "json"], cwd=folder, capture_output=True,
                              text=True, check=False)
        self.assertIn(done.returncode, (0, 4), done.stderr)
        machines = json.loads(done.stdout)["machines"]
        return shown, dict(zip((machine.name for machine in self.states), machines))

    def look(self):
        """What is true of each machine."""
        with concurrent.futures.ThreadPoolExecutor(4) as beside:
            return dict(zip(self.states, beside.map(played.Machine.look, self.states)))

    def check(self, run, machine, truth, said, shown, compared):
        """Compares what Ansible, the report and diff say about one machine with what is true; returns a row about it."""
        drift, service, well = truth.drift, truth.service, truth.is_well
        row = [machine.name, self.states[machine].__name__, f"run {run}", "ok" if said["well"] else "failed",
               str(said["changed"]), compared["problem"] or ", ".join(compared["differences"].get("Tavrin Agent", [])) or "in sync",
               ", ".join(drift) or "right", service, "well" if well else "not well"]
        with self.subTest(machine=machine.name, state=row[1], run=run, row=row):
            self.assertLessEqual(said["well"], well, "a wrong green of Ansible")
            self.assertLessEqual(compared["inSync"], not drift, "a wrong green of diff")
            # A machine whose values cannot be read must not be reported as in sync.
            if row[1] != "without_spec_file":
                self.assertEqual(said["well"], well, "a wrong red of Ansible")
            if compared["problem"] is None:
                self.assertEqual(sorted(compared["differences"].get("Tavrin Agent", [])), drift)
                told = shown[machine.name]["configurations"]["Tavrin Agent"]
                self.assertEqual(told["serviceState"].upper(), service.replace("_", "").upper())
                self.assertEqual(shown[machine.name]["machine"]["name"].lower(), machine.name)
        return row

    def check_all(self, run):
        shown, compared = self.reports()
        return [self.check(run, machine, truth, self.said[machine.name], shown, compared[machine.name])
                for machine, truth in self.truths.items()]

    def test_everybody_says_what_is_true(self):
        rows = [["machine", "state", "", "Ansible", "changed", "diff", "registry", "service", "truth"]]
        self.truths = self.look()
        for run in (1, 2):
            before = {machine.name for machine, truth in self.truths.items()
                      if truth.is_well and self.states[machine] is not played.without_spec_file}
            self.said = self.play("roll_out.yml", batches=["100%"])
            self.assertEqual(set(self.said), {machine.name for machine in self.states}, self.printed)
            took = self.seconds
            for line in re.findall(r"^(?:fatal|failed): .*", self.printed, re.M):
                self.assertRegex(line, r'^fa\w+: \[\w+\]:? .*"msg": "[^\n]{10,300}"\}$', "a failure takes one line")
            self.play("report.yml")
            self.truths = self.look()
            rows += self.check_all(run)
            print(f"fleet: run {run}: {took / COUNT:.1f} s a machine to roll out, {self.seconds / COUNT:.1f} s to report")
            for name in before:
                self.assertEqual(self.said[name], {"changed": 0, "well": True}, "a machine that was right is left alone")
        widths = [max(len(row[at]) for row in rows) for at in range(len(rows[0]))]
        print("\n".join("  ".join(map(str.ljust, row, widths)).rstrip() for row in sorted(rows[1:], key=lambda row: row[0])))


if __name__ == "__main__":
    unittest.main()
