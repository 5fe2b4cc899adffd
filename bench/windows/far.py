"""Runs a command on a host that is 20 ms away from fifty servers, whose acknowledgements come a fifth of a second later.

usage: far.py ANSWERING COMMAND...   (ANSWERING is bench/answering; the word SERVERS in the command becomes three:
how the servers' addresses begin, how many there are, and their port)
Exit code 77: there is no right to make such a network, or no device for it; the reason is printed.
"""
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "netns"))

import network  # noqa: E402
from line import Line, skip_without_device  # noqa: E402

COUNT = 50
PREFIX = "10.79."  # 10.79.1 is short for 10.79.0.1


def main(answering, command):
    skip_without_device()
    network.isolate()
    net = network.Network()
    for host in ("tool", "server"):
        net.add_host(host)
    Line(("tool", "server"), ("10.78.1.1", "10.78.1.2"), delay=0.01, held=0.2)
    network.ip("-n", "tool", "route", "add", "10.79.0.0/24", "dev", "line-tool")
    for number in range(1, COUNT + 1):
        network.ip("-n", "server", "address", "add", f"10.79.0.{number}/32", "dev", "lo")
    with subprocess.Popen(["setpriv", "--pdeathsig", "KILL", "ip", "netns", "exec", "server", answering, str(COUNT),
                           "10.79.0.1"], stdout=subprocess.PIPE, text=True) as servers:
        port = servers.stdout.readline().strip()
        at = command.index("SERVERS")
        command[at:at + 1] = [PREFIX, str(COUNT), port]
        code = subprocess.run(["ip", "netns", "exec", "tool", *command], check=False).returncode
        servers.kill()
    return code


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
