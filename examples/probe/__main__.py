"""Tests a Tavrin Server: acts as the tool and as other agents, holds the conversations of docs/protocol.md, looks for the
server as a scan does, prints every octet, and says what is right and what is wrong.

    python3 examples/probe HOST PORT [--expect accepted|refused] [--name NAME] [--domain DOMAIN]

It needs only Python 3.9. Exit codes: 0 everything is right, 1 something is wrong, 2 wrong usage.
"""
import argparse
import dataclasses
import socket
import sys
import time

from judge import TOOLS_PROTOCOL, Complaint, result_of

OFFERED = "accepted"
REFUSED = "Tavrin Server rejected us: "
WRONG_VERSION = "Tavrin Server does not support our protocol version."
CLOSING = bytes.fromhex("62 80 00 00")
REQUEST = bytes.fromhex("12345678 00001421 00000005 00000001 F0F1B34C")
NO_REQUEST = bytes.fromhex("12345678 00001421 00000006 00000001 F0F1B34C")


# --- what an agent sends --------------------------------------------------------------------------------------------

def string(text):
    octets = text.encode("ascii")
    if len(octets) < 0x80:
        return bytes((4, len(octets))) + octets
    size = (len(octets).bit_length() + 7) // 8
    return bytes((4, 0x80 | size)) + len(octets).to_bytes(size, "big") + octets


def request(name, domain, version="02 02 02 02", more_in_key="", more_in_request=""):
    return (bytes.fromhex(f"60 80 {version} A1 80") + string(name) + string(domain) +
            bytes.fromhex(f"04 00 01 01 01 01 01 01 01 01 01 {more_in_key} 00 00 {more_in_request} 00 00"))


@dataclasses.dataclass
class Conversation:
    title: str
    octets: bytes
    how: str = "whole"  # how the octets are sent
    wanted: str = "the same"  # what the result must be
    protocol: int = TOOLS_PROTOCOL  # the agent's protocol; it accepts only offers of this one


def conversations(name, domain):
    plain = request(name, domain)
    unknown = {"more_in_key": "04 01 78", "more_in_request": "A2 80 02 00 00 00"}
    return [
        Conversation("the request as the tool sends it", plain, wanted="expected"),
        Conversation("octet by octet, as TCP may deliver it", plain, how="in pieces"),
        Conversation("with unknown elements before both ends", request(name, domain, **unknown)),
        Conversation("with a domain of 130 octets", request(name, "d" * 130), wanted="an answer"),
        Conversation("from an agent of a later release of the same protocol, version 515",
                     request(name, domain, version="02 02 02 03")),
        Conversation("from an agent of another protocol, version 768",
                     request(name, domain, version="02 02 03 00"), wanted="an answer", protocol=3),
        Conversation("half a request, then the connection closes", plain[:len(plain) // 2], how="and hang up"),
        Conversation("a request of another protocol altogether, HTTP", b"GET / HTTP/1.0\r\n\r\n", how="and hang up"),
        Conversation("as the tool sends it, after all these", plain),
        Conversation("as the tool sends it, while another connection is silent", plain, how="beside a silent one"),
    ]


# --- a connection ---------------------------------------------------------------------------------------------------

class Connection:
    def __init__(self, address, timeout):
        self.socket = socket.create_connection(address, timeout)
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.timeout = timeout
        self.received = bytearray()

    def send(self, octets, in_pieces):
        try:
            for piece in ([bytes((octet,)) for octet in octets] if in_pieces else [octets]):
                self.socket.sendall(piece)
                time.sleep(0.002 if in_pieces else 0)
        except OSError:
            pass  # the server's answer shows whether it accepted this

    def receive(self, count):
        """Exactly `count` octets, but no more than 4096: an element that is skipped needs no memory."""
        count = min(count, 4096)
        start = len(self.received)
        while len(self.received) < start + count:
            try:
                piece = self.socket.recv(start + count - len(self.received))
            except socket.timeout:
                raise Complaint("Error receiving data: Timeout in socket_recv()") from None
            except OSError as problem:
                raise Complaint(f"Error receiving data: {problem}") from None
            if not piece:
                raise Complaint("Peer closed connection unexpectedly")
            self.received += piece
        return bytes(self.received[start:])

    def result(self, protocol):
        return result_of(self.receive, protocol)

    def rest(self):
        """What the server sends after the end of its answer, within a second."""
        end = time.monotonic() + min(self.timeout, 1)
        rest = b""
        while (left := end - time.monotonic()) > 0 and len(rest) < 256:
            self.socket.settimeout(left)
            try:
                piece = self.socket.recv(256)
            except OSError:
                break
            if not piece:
                break
            rest += piece
        return rest

    def close(self):
        self.socket.close()


# --- verdicts -------------------------------------------------------------------------------------------------------

class Report:
    """Prints the conversations and counts what is wrong."""

    def __init__(self):
        self.wrong = 0

    @staticmethod
    def say(text=""):
        print(text, flush=True)

    def octets(self, who, octets):
        for start in range(0, len(octets), 32):
            self.say(f"  {who:8}{octets[start:start + 32].hex(' ').upper()}")

    def verdict(self, problem):
        self.wrong += problem is not None
        self.say("  right" if problem is None else f"  WRONG   {problem}")


def kind_of(result):
    for kind, beginning in (("accepted", OFFERED), ("refused", REFUSED), ("another version", WRONG_VERSION)):
        if result.startswith(beginning):
            return kind
    return "no answer"


def problem_of(result, wanted, first):
    """What is wrong with a result, or None."""
    kind = kind_of(result)
    if wanted == "an answer":
        return None if kind != "no answer" else "no complete offer and no complete refusal arrived"
    if wanted == "the same":
        return None if kind == first else f"the first conversation had another result ({first})"
    if kind not in ("accepted", "refused"):
        return "the tool shows this as a failure"
    return None if wanted in ("expected", kind) else f"the result should be: {wanted}"


def hold(connection, report, conversation):
    """One conversation: the result, and what else is wrong."""
    connection.send(conversation.octets, conversation.how == "in pieces")
    report.octets("agent", conversation.octets)
    if conversation.how == "and hang up":
        return None, None
    result = connection.result(conversation.protocol)
    report.octets("server", connection.received)
    if result == OFFERED:
        connection.send(CLOSING, False)
        report.octets("agent", CLOSING)
    report.say(f"  result  {result}")
    if kind_of(result) == "no answer":
        return result, None  # without a complete answer, later octets mean nothing
    rest = connection.rest()
    if not rest:
        return result, None
    report.octets("server", rest)
    return result, "the server sends more after the end of its answer; the tool has closed and does not read it"


def negotiate(options, report):
    first = None
    for conversation in conversations(options.name, options.domain):
        report.say(f"\n{conversation.title}")
        silent, wanted = None, conversation.wanted
        try:
            if conversation.how == "beside a silent one":
                silent = Connection(options.address, options.timeout)
            connection = Connection(options.address, options.timeout)
        except OSError as problem:
            report.verdict(f"no connection: {problem}")
            continue
        result, problem = hold(connection, report, conversation)
        connection.close()
        if silent:
            silent.close()
        if result is None:
            report.say("  the next conversations show whether the server still works")
            continue
        if first is None:
            first, wanted = kind_of(result), options.expect or wanted
        report.verdict(problem or problem_of(result, wanted, first))


def is_answer(octets):
    words = [octets[place:place + 4].hex() for place in range(0, 16, 4)]
    return len(octets) >= 16 and (words[0], words[2], words[3]) == ("12345678", "00000005", "00000002")


def problem_of_answer(octets, sender, options):
    if not is_answer(octets):
        return "the tool silently drops this answer"
    if sender != options.address[0]:
        return f"it comes from {sender}, and the tool would add that address to the list"
    return None


def ask(options, report, request, wait):
    """Sends a datagram; the answer and its sender, or None."""
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as udp:
        udp.settimeout(wait)
        udp.sendto(request, options.address)
        report.octets("tool", request)
        try:
            octets, sender = udp.recvfrom(4096)
        except OSError:
            return None
        report.octets("server", octets)
        return octets, sender[0]


def discover(options, report):
    report.say("\na scan's request, to this address alone")
    for _ in range(3):
        answer = ask(options, report, REQUEST, 1)
        if answer:
            break
    report.verdict(problem_of_answer(*answer, options) if answer else "no answer within a second, three times")
    report.say("\na datagram that is not a request")
    answer = ask(options, report, NO_REQUEST, 1)
    report.verdict("it was answered" if answer else None)


# --- the command ----------------------------------------------------------------------------------------------------

def ascii_text(longest):
    def check(text):
        if not text.isascii() or len(text) > longest:
            raise argparse.ArgumentTypeError(f"ASCII, and at most {longest} characters")
        return text
    return check


def parse_options(arguments):
    parser = argparse.ArgumentParser(prog="probe",
                                     description="Tests a Tavrin Server by acting as the tool and as other agents.")
    parser.add_argument("host", help="name or IPv4 address")
    parser.add_argument("port", type=int, help="TCP and UDP port")
    parser.add_argument("--expect", choices=("accepted", "refused"), help="the right answer for this agent")
    parser.add_argument("--name", type=ascii_text(256), default="web1", help="the agent's name (default: web1)")
    parser.add_argument("--domain", type=ascii_text(1024), default="", help="the agent's domain (default: none)")
    parser.add_argument("--timeout", type=float, default=10,
                        help="seconds to wait for octets (default: 10; the tool waits 600)")
    parser.add_argument("--no-discovery", action="store_true", help="do not test the answer to a scan")
    options = parser.parse_args(arguments)
    if not 0 < options.port < 65536 or options.timeout <= 0:
        parser.error("the port is 1 to 65535, and the time-out more than 0")
    try:
        options.address = (socket.gethostbyname(options.host), options.port)
    except OSError as problem:
        parser.error(f"{options.host}: {problem}")
    return options


def main(arguments):
    options = parse_options(arguments)
    report = Report()
    negotiate(options, report)
    if not options.no_discovery:
        discover(options, report)
    report.say(f"\n{report.wrong or 'nothing'} wrong")
    return 1 if report.wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
