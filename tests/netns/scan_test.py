"""Has the scan run on networks of several hosts.

usage: scan_test.py CASE PROGRAM...   (PROGRAM is scan_networks, with what starts it)
Exit code 77: skipped, the reason is printed.
"""
import sys

import network
from network import expect

PORT = 4747
REQUEST = "1234567800001421" "0000000500000001" "f0f1b34c"


def scan(program):
    """The networks that the program saw and the servers that it found."""
    lines = network.lines_of("tool", [*program, str(PORT), "10.77."])
    networks = [line.split()[-1] for line in lines if line.startswith("network: ")]
    return networks, [line.split()[-1] for line in lines if line.startswith("server: ")]


def tool_on_two_networks(net):
    net.add_host("tool")
    for number in (1, 2):
        net.add_bridge(f"lan{number}")
        net.attach("tool", f"lan{number}", f"10.77.{number}.1/24")


def add_unreachable(net):
    net.add_bridge("lan3")
    net.cut_routes("tool", net.attach("tool", "lan3", "10.77.3.1/24"))


def two_networks(net, program):
    """Hosts with no, double or invalid answers, good ones on both networks, and a network that cannot be reached."""
    tool_on_two_networks(net)
    add_unreachable(net)
    hosts = {"silent": (1, 11), "twice": (1, 12), "good": (1, 13), "rubbish": (2, 11), "other": (2, 12)}
    for name, (lan, number) in hosts.items():
        net.add_host(name)
        net.attach(name, f"lan{lan}", f"10.77.{lan}.{number}/24")
        net.start(name, "good" if name == "other" else name, PORT)
    networks, servers = scan(program)
    expect("networks", sorted(networks), ["10.77.1.1", "10.77.2.1", "10.77.3.1", "127.0.0.1"])
    expect("servers", sorted(servers), ["10.77.1.12", "10.77.1.13", "10.77.2.12"])
    for name, (lan, _) in hosts.items():
        expect(f"heard by {name}", net.heard(name), ["ready"] + [f"10.77.{lan}.1 {REQUEST}"] * 3)


def nobody_answers(net, program):
    tool_on_two_networks(net)
    expect("servers", scan(program)[1], [])


def unreachable_network(net, program):
    net.add_host("tool")
    add_unreachable(net)
    networks, servers = scan(program)
    expect("networks", sorted(networks), ["10.77.3.1", "127.0.0.1"])
    expect("servers", servers, [])


def no_network(net, program):
    """Without any address, the request goes to 255.255.255.255, to which there is no route."""
    net.add_host("tool")
    network.ip("-n", "tool", "address", "flush", "dev", "lo")
    networks, servers = scan(program)
    expect("networks", networks, ["0.0.0.0"])
    expect("servers", servers, [])


CASES = {each.__name__: each for each in (two_networks, nobody_answers, unreachable_network, no_network)}


if __name__ == "__main__":
    network.run_isolated(CASES[sys.argv[1]], sys.argv[2:])
