"""Runs tavrinctl as a caller does. TAVRINCTL is the command, one that runs under Wine by default; what it prints is
looked at as it is, in octets."""
import atexit
import os
import pathlib
import shlex
import subprocess
import tempfile
import unittest

TOP = pathlib.Path(__file__).resolve().parents[2]
COMMAND = shlex.split(os.environ.get("TAVRINCTL", f"{TOP}/script/wine {TOP}/build/windows/tavrinctl.exe"))
UNDER_WINE = COMMAND[-1].endswith(".exe")
LIMIT = 120


if UNDER_WINE:
    # Wine ends with its last program and takes a while to begin anew; this one waits until the tests are over. What
    # Wine starts for itself keeps the first program's pipes open, so that one has to be this one, and no other is
    # started before it says that it is there.
    LASTING = subprocess.Popen([*COMMAND[:-1], "cmd", "/k", "echo", "ready"], stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    while (line := LASTING.stdout.readline()) and b"ready" not in line:
        pass
    atexit.register(LASTING.wait)
    atexit.register(LASTING.stdin.close)


class Result:
    def __init__(self, done):
        self.code = done.returncode
        self.octets = done.stdout
        self.out = done.stdout.decode()
        self.err = done.stderr.decode()

    def __repr__(self):
        return f"exit code {self.code}\n{self.out}\n{self.err}"


def start(*words, **more):
    """Starts it; the caller closes what it opened."""
    return subprocess.Popen([*COMMAND, *map(str, words)], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, **more)


def run(*words, text=b"", **more):
    """Runs it to its end, with `text` as its standard input."""
    return Result(subprocess.run([*COMMAND, *map(str, words)], input=text, capture_output=True, timeout=LIMIT,
                                 check=False, **more))


def own_path(path):
    """The path in the form that the program needs."""
    return "Z:" + str(path).replace("/", "\\") if UNDER_WINE else str(path)


class FolderCase(unittest.TestCase):
    """A test with a folder of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def file(self, name, octets):
        path = self.folder / name
        path.write_bytes(octets if isinstance(octets, bytes) else octets.encode())
        return path
