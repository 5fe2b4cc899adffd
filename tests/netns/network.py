"""Hosts in network namespaces, joined by bridges.

The calling process first moves into namespaces of its own for networks and mounts (`isolate`). All that is made
below lives in those and vanishes with the process, however it ends; and no way leads out to a real network.
"""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
TOP = HERE.parents[1]
PATIENCE = 30
SKIPPED = 77


def skip(reason):
    print("skipped:", reason)
    sys.exit(SKIPPED)


def isolate():
    """Restarts this program in its own namespaces; skips the test where that is not allowed."""
    if os.environ.get("TAVRIN_ISOLATED") == "yes":
        subprocess.run(["mount", "-t", "tmpfs", "tmpfs", "/run/netns"], check=True)
        return
    for tool in ("unshare", "ip", "setpriv"):
        if shutil.which(tool) is None:
            skip(f"there is no {tool}")
    own = ["unshare", "--net", "--mount"]
    trial = subprocess.run(own + ["sh", "-c", "mkdir -p /run/netns && mount -t tmpfs tmpfs /run/netns && "
                                              "ip netns add trial && ip link add name trial type bridge"],
                           capture_output=True, text=True, check=False)
    if trial.returncode != 0:
        skip("no right to make network namespaces: " + trial.stderr.strip())
    os.environ["TAVRIN_ISOLATED"] = "yes"
    os.execvp("unshare", own + [sys.executable, *sys.argv])


def ip(*arguments):
    return subprocess.run(["ip", *arguments], capture_output=True, text=True, check=True).stdout


def expect(what, actual, expected):
    if actual != expected:
        raise AssertionError(f"{what}: {actual} instead of {expected}")


def lines_of(host, command):
    """What a test program prints that ends well on this host, without the last line, which says so."""
    if is_for_windows(command):
        start_wine(host)
    run = subprocess.run(["ip", "netns", "exec", host, *command], capture_output=True, text=True, timeout=200,
                         check=False)
    lines = [line.strip() for line in run.stdout.splitlines()]
    if run.returncode != 0 or lines[-1:] != ["end"]:
        raise AssertionError(f"{command} ended with {run.returncode}: {run.stdout}{run.stderr}")
    return lines[:-1]


def wine_server(*arguments):
    run_unheard("wineserver", *arguments)


def run_unheard(*command):
    subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)


def start_wine(host):
    """Starts Wine on the host for as long as the test runs. Services that the program itself started would hold its
    output open, and a service that hangs would keep the test waiting."""
    for command in ("wineserver", "--persistent"), ("cmd", "/c", "exit"):
        run_unheard("ip", "netns", "exec", host, TOP / "script/wine", *command)


def is_for_windows(command):
    return any(word.endswith(".exe") for word in command)


def run_on_own_network(case, program):
    net = Network()
    try:
        case(net, program)
    finally:
        net.stop()


def run_isolated(case, program):
    """Runs the case, a function of a network and of the program, in namespaces of its own."""
    isolate()
    if not is_for_windows(program):
        run_on_own_network(case, program)
        return
    # Wine's server owns the sockets: one that runs outside would see the real network.
    os.environ["WINEPREFIX"] = os.environ["TAVRIN_WINE_PREFIX"]
    wine_server("--kill")
    wine_server("--wait")
    try:
        run_on_own_network(case, program)
    finally:
        wine_server("--kill")


def wait_until(condition, what):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            raise TimeoutError(what)
        time.sleep(0.02)


class Network:
    """Bridges in the outer namespace, each host in its own."""

    def __init__(self):
        self.wires = 0
        self.children = []

    def add_bridge(self, name):
        ip("link", "add", "name", name, "type", "bridge")
        ip("link", "set", name, "up")

    def add_host(self, name):
        ip("netns", "add", name)
        ip("-n", name, "link", "set", "lo", "up")

    def attach(self, host, bridge, address):
        """Joins the host to the bridge with an address like 10.77.1.2/24; returns the interface's name."""
        self.wires += 1
        inner, outer = f"wire{self.wires}", f"port{self.wires}"
        ip("link", "add", outer, "type", "veth", "peer", "name", inner, "netns", host)
        ip("link", "set", outer, "master", bridge, "up")
        ip("-n", host, "address", "add", address, "dev", inner)
        ip("-n", host, "link", "set", inner, "up")
        wait_until(lambda: self.is_up(host, inner) and self.forwards(outer), f"{host} is not attached to {bridge}")
        return inner

    @staticmethod
    def is_up(host, interface):
        return json.loads(ip("-j", "-n", host, "link", "show", interface))[0]["operstate"] == "UP"

    @staticmethod
    def forwards(port):
        return json.loads(ip("-j", "-d", "link", "show", port))[0]["linkinfo"]["info_slave_data"]["state"] == "forwarding"

    @staticmethod
    def cut_routes(host, interface):
        """Leaves the interface its address, but no way to its network."""
        ip("-n", host, "route", "flush", "dev", interface)
        ip("-n", host, "route", "flush", "table", "local", "dev", interface)

    def start(self, host, manner, port, program="host.py"):
        """Starts a host's answering; its output is what it hears."""
        with open(f"/run/netns/{host}.log", "w") as log:
            self.children.append(subprocess.Popen(
                ["setpriv", "--pdeathsig", "KILL", "ip", "netns", "exec", host, sys.executable, HERE / program,
                 manner, str(port)], stdout=log))
        wait_until(lambda: self.heard(host)[:1] == ["ready"], f"{host} does not start")

    @staticmethod
    def heard(host):
        return pathlib.Path(f"/run/netns/{host}.log").read_text().splitlines()

    def stop(self):
        for child in self.children:
            child.kill()
            child.wait()
