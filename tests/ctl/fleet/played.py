"""Machines of a played fleet: each is a Wine prefix with a registry and a service manager of its own, put into one of
many states. What is true of a machine is read past tavrinctl: from the registry, the service manager and the notes that
the agent takes of what it read when it started."""
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import time

import tool

HERE = pathlib.Path(__file__).resolve().parent
FRESH = tool.TOP / "build/wine-fresh/prefix"
AGENT = tool.TOP / "build/windows/sample_agent.exe"
TAVRINCTL = tool.TOP / "build/windows/tavrinctl.exe"
SPEC = tool.TOP / "examples/spec_files/agent.spec"
SECONDS = 120
# What is desired, as the registry holds it; nothing for a value that shall not be there.
DESIRED = {"ServerList": "10.9.0.2:5000", "Port": "5000", "Interval": "30", "Compress": "true", "Detail": "everything",
           "ModemPort": None}
ELSE = {"ServerList": "old.example", "Port": "5001", "Interval": "60", "Compress": "false", "Detail": "normal",
        "ModemPort": "COM1"}
CONFIGURATIONS = {"Tavrin Agent": {"values": {**DESIRED, "Port": 5000, "Compress": True}}}


def literal(text):
    return "-" if text is None else '"' + text.replace("\\", "\\\\") + '"'


class Machine:
    def __init__(self, name, folder):
        self.name, self.prefix = name, pathlib.Path(folder) / name
        self.disk = self.prefix / "drive_c"
        self.notes = self.disk / "notes.txt"
        self.command = [str(HERE / "on_machine"), str(self.prefix)]
        self.lasting = None

    def run(self, *words, check=True, **more):
        done = subprocess.run([*self.command, *map(str, words)], capture_output=True, timeout=SECONDS, check=False, **more)
        if check and done.returncode:
            raise RuntimeError(f"{self.name}: {words}: {done.returncode} {done.stdout} {done.stderr}")
        return done

    def begin(self):
        """Switches it on. Wine would end with its last program; this one waits until the machine is switched off."""
        subprocess.run(["cp", "-a", FRESH, self.prefix], check=True)
        environment = {**os.environ, "WINEPREFIX": str(self.prefix), "WINEDEBUG": "-all",
                       "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe="}
        self.lasting = subprocess.Popen(["wine", "cmd", "/k", "echo", "ready"], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=environment)
        while (line := self.lasting.stdout.readline()) and b"ready" not in line:
            pass
        self.import_reg({
            "SYSTEM\\CurrentControlSet\\Control\\ComputerName\\ActiveComputerName": {"ComputerName": self.name},
            "SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters": {"Hostname": self.name}})

    def end(self):
        if self.lasting:
            self.lasting.stdin.close()
            subprocess.run(["wineserver", "--kill"], env={**os.environ, "WINEPREFIX": str(self.prefix)}, check=False)
            self.lasting.wait(SECONDS)
            self.lasting.stdout.close()
        shutil.rmtree(self.prefix, ignore_errors=True)

    def import_reg(self, keys):
        """Keys with their values, each a text, nothing, or another literal of a .reg file."""
        lines = ["Windows Registry Editor Version 5.00"]
        for key, values in keys.items():
            lines += ["", f"[HKEY_LOCAL_MACHINE\\{key}]"]
            lines += [f'"{name}"={text[0] if isinstance(text, tuple) else literal(text)}' for name, text in values.items()]
        (self.disk / "import.reg").write_bytes("\r\n".join([*lines, ""]).encode("utf-16"))
        self.run("regedit", "/S", "C:\\import.reg")

    def set_values(self, values):
        self.import_reg({"SOFTWARE\\Tavrin\\Agent": values})

    def register_spec(self, path):
        self.import_reg({"SOFTWARE\\Tavrin\\TRConfig": {"Agent": tool.own_path(path)}})

    def install_agent(self, *behaviour, start="demand"):
        path = tool.own_path(AGENT)
        self.run("sc", "create", "TavrinAgent", "binpath=", f'"{path}" run TavrinAgent', "start=", start)
        self.run(path, "install", "--notes", "C:\\notes.txt", *behaviour)

    def start_agent(self):
        self.run("net", "start", "TavrinAgent")
        self.wait_for("started")

    def wait_for(self, line):
        limit = time.monotonic() + SECONDS
        while line not in self.noted():
            if time.monotonic() > limit:
                raise RuntimeError(f"{self.name}: the agent never notes {line}: {self.noted()}")
            time.sleep(0.05)

    def noted(self):
        return self.notes.read_text().splitlines() if self.notes.exists() else []

    def kill_an_apply(self):
        """Begins to apply the desired state and kills the program when the agent stops."""
        state = self.disk / "state.json"
        state.write_text(json.dumps({"schema": 1, "configurations": CONFIGURATIONS}))
        environment = {**os.environ, "WINEPREFIX": str(self.prefix), "WINEDEBUG": "-all"}
        process = subprocess.Popen(["wine", str(TAVRINCTL), "apply", "C:\\state.json"], stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL, env=environment, start_new_session=True)
        self.wait_for("stopping")
        os.killpg(process.pid, signal.SIGKILL)
        process.wait(SECONDS)
        self.wait_for("stopped")

    # What is true.

    def stored(self):
        """The literals of the agent's values in the registry."""
        self.run("regedit", "/E", "C:\\export.reg", "HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Agent")
        text = (self.disk / "export.reg").read_bytes().decode("utf-16")
        return dict(re.findall(r'^"(\w+)"=(.*)\r$', text, re.M))

    def drift(self):
        """The names of the values that are not as desired."""
        stored = self.stored()
        return sorted(name for name, text in DESIRED.items()
                      if stored.get(name) != (None if text is None else literal(text)))

    def service(self):
        """The state that the service manager reports."""
        done = self.run("sc", "query", "TavrinAgent", check=False)
        found = re.search(r"STATE\s*:\s*\d+\s+(\w+)", done.stdout.decode(errors="replace"))
        return found[1] if found else "missing"

    def agent_has_read(self):
        """What the agent has read of its settings when it started last."""
        notes = "\n".join(self.noted())
        last = notes.rpartition("started")[0].rpartition("stopped")[2] if "started" in notes else ""
        return dict(re.findall(r"^setting (\w+)=(.*)$", last, re.M))

    def is_well(self):
        """Whether values, service and what the running agent has read are all as desired."""
        read = self.agent_has_read()
        return not self.drift() and self.service() == "RUNNING" and all(
            read.get(name) == DESIRED[name] for name in ("ServerList", "Port"))


def some_of_else(chance):
    """Values that drift; a server is among them, so that an agent that was not restarted is noticed."""
    names = {"ServerList", *chance.sample(sorted(ELSE), chance.randint(1, 4))}
    return {name: ELSE[name] for name in sorted(names)}


def right(machine, chance):
    machine.install_agent()
    machine.start_agent()


def drifted(machine, chance):
    machine.set_values(some_of_else(chance))
    right(machine, chance)


def stopped(machine, chance):
    machine.set_values(chance.choice([{}, some_of_else(chance)]))
    machine.install_agent()


def disabled(machine, chance):
    machine.set_values(chance.choice([{}, some_of_else(chance)]))
    machine.install_agent(start="disabled")


def hanging(machine, chance):
    machine.set_values(some_of_else(chance))
    machine.install_agent(*chance.choice([["--refuse-stop"], ["--stop-seconds", "3600"]]))
    machine.start_agent()


def without_agent(machine, chance):
    machine.set_values(chance.choice([{}, some_of_else(chance)]))


def without_spec_file(machine, chance):
    right(machine, chance)
    machine.import_reg({"SOFTWARE\\Tavrin\\TRConfig": {"Agent": chance.choice([None, "C:\\nowhere.spec"])}})


def older_spec_file(machine, chance):
    """Older than one of the entries, or only with another help text."""
    drifted(machine, chance)
    text = SPEC.read_text()
    entry = re.search(r"^\$Detail\n(?:.*\n){6}", text, re.M)[0]
    older = machine.disk / "older.spec"
    older.write_text(chance.choice([text.replace(entry, ""), text.replace("Seconds between", "Time between")]))
    machine.register_spec(older)


def other_types(machine, chance):
    octets = "".join(f"{byte:02x},00," for byte in b"true") + "00,00"
    machine.set_values({"Interval": ("dword:0000001e",), "Port": ("hex(b):88,13,00,00,00,00,00,00",),
                        "Detail": ("hex:01,02",), "Compress": (chance.choice(["hex(7):", "hex(0):"]) + octets,)})
    right(machine, chance)


def killed_before(machine, chance):
    machine.set_values(some_of_else(chance))
    machine.install_agent("--stop-seconds", "2")
    machine.start_agent()
    machine.kill_an_apply()


STATES = [right, drifted, stopped, disabled, hanging, without_agent, without_spec_file, older_spec_file, other_types,
          killed_before]


def arrange(machine, state, chance):
    machine.begin()
    machine.register_spec(SPEC)
    machine.set_values({"AgentName": machine.name, **DESIRED})
    state(machine, chance)
