"""Machines of a played fleet: each is a Wine prefix with a registry and a service manager of its own, put into one of
many states. What is true of a machine is read past tavrinctl: from the registry, the service manager and the notes that
the agent takes of what it read when it started."""
import dataclasses
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
    """As the registry's file has it; other types than texts are given as literals."""
    return text[0] if isinstance(text, tuple) else '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def dword(number):
    return (f"dword:{number:08x}",)


class Machine:
    def __init__(self, name, folder):
        self.name, self.prefix = name, pathlib.Path(folder) / name
        self.disk = self.prefix / "drive_c"
        self.notes = self.disk / "notes.txt"
        self.command = [str(HERE / "on_machine"), str(self.prefix)]
        self.environment = {**os.environ, "WINEPREFIX": str(self.prefix), "WINEDEBUG": "-all",
                            "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe="}
        self.environment.pop("DISPLAY", None)
        self.keys = {}
        self.lasting = None

    def run(self, *words, check=True):
        done = subprocess.run([*self.command, *map(str, words)], capture_output=True, timeout=SECONDS, check=False)
        if check and done.returncode:
            raise RuntimeError(f"{self.name}: {words}: {done.returncode} {done.stdout} {done.stderr}")
        return done

    def make(self):
        """Its disk and its registry. The files of 690 MiB are links; none is written to in its place."""
        self.prefix.mkdir()
        subprocess.run(["cp", "-a", "--link", FRESH / "drive_c", self.prefix], check=True)
        subprocess.run(["cp", "-a", *FRESH.glob("*.reg"), FRESH / "dosdevices", FRESH / ".update-timestamp", self.prefix],
                       check=True)

    def begin(self):
        """Switches it on, with the registry that it has by now; services that are to start do. The name of a machine is
        that of the host at this moment. Wine would end with its last program; this one waits for the end."""
        with (self.prefix / "system.reg").open("a") as file:
            for key, values in self.keys.items():
                file.write("\n[" + key.replace("\\", "\\\\") + "]\n")
                file.writelines(f'"{name}"={literal(text)}\n' for name, text in values.items() if text is not None)
        self.lasting = subprocess.Popen(
            ["unshare", "--uts", "sh", "-c", f"hostname {self.name} && exec wine cmd /k echo ready"], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=self.environment)
        while (line := self.lasting.stdout.readline()) and b"ready" not in line:
            pass

    def end(self):
        if self.lasting:
            self.lasting.stdin.close()
            subprocess.run(["wineserver", "--kill"], env=self.environment, check=False)
            self.lasting.wait(SECONDS)
            self.lasting.stdout.close()
        shutil.rmtree(self.prefix, ignore_errors=True)

    # Before it is switched on.

    def set_values(self, values):
        self.keys.setdefault("Software\\Tavrin\\Agent", {}).update(values)

    def register_spec(self, path):
        self.keys["Software\\Tavrin\\TRConfig"] = {"Agent": path and tool.own_path(path)}

    def install_agent(self, start=2, **behaviour):
        """As the service manager stores it: 2 starts with the machine, 3 on demand, 4 is disabled."""
        key = "System\\CurrentControlSet\\Services\\TavrinAgent"
        self.keys[key] = {"ImagePath": f'"{tool.own_path(AGENT)}" run TavrinAgent', "ObjectName": "LocalSystem",
                          "ErrorControl": dword(1), "Start": dword(start), "Type": dword(16)}
        self.keys[key + "\\Parameters"] = {"Notes": "C:\\notes.txt",
                                         **{name: dword(number) for name, number in behaviour.items()}}

    # While it is on.

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
        process = subprocess.Popen(["wine", str(TAVRINCTL), "apply", "C:\\state.json"], stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL, env=self.environment, start_new_session=True)
        self.wait_for("stopping")
        os.killpg(process.pid, signal.SIGKILL)
        process.wait(SECONDS)
        self.wait_for("stopped")

    def look(self):
        """What is true of it."""
        stored = self.stored()
        drift = sorted(name for name, text in DESIRED.items() if stored.get(name) != (text and literal(text)))
        read, service = self.agent_has_read(), self.service()
        has_read = all(read.get(name) == DESIRED[name] for name in ("ServerList", "Port"))
        return Truth(drift, service, is_well=not drift and service == "RUNNING" and has_read)

    def stored(self):
        """The literals of the agent's values in the registry."""
        self.run("regedit", "/E", "C:\\export.reg", "HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Agent")
        text = (self.disk / "export.reg").read_bytes().decode("utf-16")
        return dict(re.findall(r'^"(\w+)"=(.*)\r$', text, re.M))

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


@dataclasses.dataclass
class Truth:
    """The values that are not as desired, the state of the service, and whether both and what the running agent has read
    are as desired."""
    drift: list
    service: str
    is_well: bool


def some_of_else(chance):
    """Values that drift; a server is among them, so that an agent that was not restarted is noticed."""
    names = {"ServerList", *chance.sample(sorted(ELSE), chance.randint(1, 4))}
    return {name: ELSE[name] for name in sorted(names)}


def right(machine, chance):
    machine.install_agent()


def drifted(machine, chance):
    machine.set_values(some_of_else(chance))
    machine.install_agent()


def stopped(machine, chance):
    machine.set_values(chance.choice([{}, some_of_else(chance)]))
    machine.install_agent(start=3)


def disabled(machine, chance):
    machine.set_values(chance.choice([{}, some_of_else(chance)]))
    machine.install_agent(start=4)


def hanging(machine, chance):
    machine.set_values(some_of_else(chance))
    machine.install_agent(**chance.choice([{"RefuseStop": 1}, {"StopSeconds": 3600}]))


def without_agent(machine, chance):
    machine.set_values(chance.choice([{}, some_of_else(chance)]))


def without_spec_file(machine, chance):
    machine.install_agent()
    machine.register_spec(chance.choice([None, machine.disk / "nowhere.spec"]))


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
    machine.set_values({"Interval": dword(30), "Port": ("hex(b):88,13,00,00,00,00,00,00",),
                        "Detail": ("hex:01,02",), "Compress": (chance.choice(["hex(7):", "hex(0):"]) + octets,)})
    machine.install_agent()


def killed_before(machine, chance):
    machine.set_values(some_of_else(chance))
    machine.install_agent(StopSeconds=2)


STATES = [right, drifted, stopped, disabled, hanging, without_agent, without_spec_file, older_spec_file, other_types,
          killed_before]


def arrange(machine, state, chance):
    machine.make()
    machine.register_spec(SPEC)
    machine.set_values({"AgentName": machine.name, **DESIRED})
    state(machine, chance)
    machine.begin()
    if state not in (stopped, disabled, without_agent):
        machine.wait_for("started")
    if state is killed_before:
        machine.kill_an_apply()
