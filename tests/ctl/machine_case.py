"""A machine with the sample in its registry: real keys, the service manager, the sample agent, sample servers; see
tests/e2e/stage. tavrinctl runs without a display, so a box or a window would make it fail."""
import os
import pathlib
import subprocess
import time

import tool

PREFIX = pathlib.Path(os.environ.get("TAVRIN_WINE_PREFIX", tool.TOP / "build/wine"))
DISK = PREFIX / "drive_c"
# There while a restart of the agent is to be finished.
PENDING = DISK / "ProgramData/Tavrin/restart-tavrinagent"
AGENT = "SOFTWARE\\Tavrin\\Agent"
WITHOUT_DISPLAY = {**{name: value for name, value in os.environ.items() if name != "DISPLAY"}, "WINEPREFIX": str(PREFIX),
                   "WINEARCH": "win64", "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe="}
tool.COMMAND[:-1] = ["wine"]


def wine(*words, check=True):
    done = subprocess.run([tool.TOP / "script/wine", *words], text=True, capture_output=True, timeout=tool.LIMIT,
                          check=False)
    if check and done.returncode:
        raise RuntimeError(f"{words} ended with code {done.returncode}: {done.stdout}{done.stderr}")
    return done


def windows_path(path):
    """Of a file on the C: of this machine."""
    return "C:\\" + str(pathlib.Path(path).relative_to(DISK)).replace("/", "\\")


def unix_path(path):
    return DISK / path.removeprefix("C:\\").replace("\\", "/")


def import_reg(text):
    """Imports a .reg file with this text."""
    path = DISK / "import.reg"
    path.write_bytes(("Windows Registry Editor Version 5.00\r\n\r\n" + text.replace("\n", "\r\n")).encode("utf-16"))
    wine("regedit", "/S", windows_path(path))


def exported(key):
    """The key as the registry editor writes it."""
    path = DISK / "export.reg"
    wine("regedit", "/E", windows_path(path), "HKEY_LOCAL_MACHINE\\" + key)
    return path.read_bytes().decode("utf-16")


def values(key=AGENT):
    """Name and literal of every value, those of subkeys not."""
    lines = exported(key).split("\r\n\r\n")[1].splitlines()[1:]
    return dict(line.split("=", 1) for line in lines if "=" in line)


def value(name, key=AGENT):
    """The text of a value; nothing when there is none."""
    literal = values(key).get(f'"{name}"')
    return literal and literal[1:-1].replace("\\\\", "\\")


SEED = (tool.TOP / "examples/seed.reg").read_text().replace("REGEDIT4", "").replace(
    "@EXAMPLES@", tool.own_path(tool.TOP / "examples").replace("\\", "\\\\"))


class MachineCase(tool.FolderCase):
    """Begins with the sample as it is seeded."""

    def setUp(self):
        super().setUp()
        PENDING.unlink(missing_ok=True)
        import_reg("[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin]\n" + SEED)

    def run_tool(self, *words, code=0, text=b"", **more):
        result = tool.run(*words, text=text, env=WITHOUT_DISPLAY, **more)
        self.assertEqual(result.code, code, result)
        return result


class AgentCase(MachineCase):
    """And with the sample agent running, which notes what it does."""

    NOTES = DISK / "notes.txt"
    AGENT = tool.TOP / "build/windows/sample_agent.exe"
    is_plain = False

    def setUp(self):
        super().setUp()
        if not AgentCase.is_plain:
            wine(self.AGENT, "remove", check=False)
            self.agent_behaves()
            self.start_agent()
            AgentCase.is_plain = True
        self.NOTES.write_bytes(b"")

    def agent_behaves(self, *behaviour):
        """Makes it behave like this from its next start on. A service that was just removed blocks this for a while."""
        AgentCase.is_plain = False
        self.wait_until("the agent is installed", lambda: wine(
            self.AGENT, "install", "--notes", windows_path(self.NOTES), *behaviour, check=False).returncode == 0)

    def start_agent(self):
        self.NOTES.write_bytes(b"")
        wine("net", "start", "TavrinAgent")
        self.wait_until("the agent has started", lambda: "started" in self.agents_notes())

    def wait_until(self, what, holds):
        end = time.monotonic() + tool.LIMIT
        while not holds():
            self.assertLess(time.monotonic(), end, what)
            time.sleep(0.1)

    def stop_agent(self):
        AgentCase.is_plain = False
        wine("net", "stop", "TavrinAgent")
        self.NOTES.write_bytes(b"")

    def agents_notes(self):
        """What it did, without the settings that it read."""
        return [line for line in self.NOTES.read_text().splitlines() if not line.startswith("setting ")]
