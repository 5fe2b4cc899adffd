"""Has the negotiation run over a line that takes its time.

usage: handshake_test.py CASE PROGRAM...   (PROGRAM is negotiate_often, with what starts it)
Exit code 77: skipped, the reason is printed.
"""
import sys

import network
from line import Line, skip_without_device
from network import expect
from server import OFFER

PORT = 5153
TOOL, SERVER = "10.78.1.1", "10.78.1.2"
REQUEST = bytes.fromhex("60 80 02 02 02 02 A1 80 04 04 77 65 62 31 04 00 04 00 01 01 01 01 01 01 01 01 01 00 00 00 00")
CLOSING = bytes.fromhex("62 80 00 00")
OFTEN = 1000
LOST_SEND = "socket_send returned error in socket_write_buf: Bad error without sleep happened in socket_send(): "


def line_to(net, manner, delay, held=0.0):
    net.add_host("tool")
    net.add_host("server")
    line = Line(("tool", "server"), (TOOL, SERVER), delay, held)
    net.start("server", manner, PORT, "server.py")
    return line


def ends(program, times):
    """How often each end was reached."""
    lines = network.lines_of("tool", [*program, SERVER, str(PORT), str(times)])
    return {end: int(count) for count, end in (line.split(" ", 1) for line in lines)}


def two_round_trips(net, program):
    """After the connect the agent's octets go to the server twice, and the server's come back once. Nothing waits
    for an acknowledgement, which would come a fifth of a second later than the answer."""
    line = line_to(net, "patient", delay=0.01, held=0.2)
    expect("ends", ends(program, 5), {"accepted": 5})
    # The program ends before its last segments have come to the line.
    network.wait_until(lambda: len(line.ended_by("tool")) == 5, "a connection has no end")
    connections = line.connections()
    print("The segments of a handshake, as they come to the line, 10 ms from either end:")
    print("\n".join(map(str, connections[0])))
    expect("connections", len(connections), 5)
    for segments in connections:
        expect("octets on their way", [(each.sender, each.octets) for each in segments if each.octets],
               [("tool", REQUEST), ("server", OFFER), ("tool", CLOSING)])


def early_close(manner, end):
    """A server that closes as soon as it has answered. The agent must learn the answer each time."""
    def case(net, program):
        line_to(net, manner, delay=0.001)
        expect(manner, ends(program, OFTEN), {end: OFTEN})
    return case


def offer_unheard(net, program):
    """The server's system resets a connection that is closed with octets unread. The agent has the offer by then;
    whether it still gets rid of its closing element is a matter of luck, and it says so when it does not."""
    line_to(net, "offer_unheard", delay=0.001)
    found = ends(program, OFTEN)
    print(found)
    expect("ends", {end for end in found if end != "accepted" and not end.startswith(LOST_SEND)}, set())


CASES = {
    "two_round_trips": two_round_trips,
    "offer_heard": early_close("offer_heard", "accepted"),
    "refuse_heard": early_close("refuse_heard", "Tavrin Server rejected us: no"),
    "refuse_unheard": early_close("refuse_unheard", "Tavrin Server rejected us: no"),
    "offer_and_listen": early_close("offer_and_listen", "accepted"),
    "offer_unheard": offer_unheard,
}

if __name__ == "__main__":
    skip_without_device()
    network.run_isolated(CASES[sys.argv[1]], sys.argv[2:])
