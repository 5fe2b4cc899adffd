"""Plays the tool against a Tavrin Server: holds the conversations of docs/protocol.md with it, looks for it as a scan
does, prints every octet, and says what is right and what is not.

    python3 examples/probe HOST PORT [--expect accepted|refused] [--name NAME] [--domain DOMAIN]

It needs Python 3.9 and nothing else. Exit codes: 0 all is right, 1 something is wrong, 2 wrong usage.
"""
import argparse
import socket
import sys
import time

from judge import Complaint, result_of

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


def wishes(name, domain, version="02 02 02 02", more_in_key="", more_in_wishes=""):
    return (bytes.fromhex(f"60 80 {version} A1 80") + string(name) + string(domain) +
            bytes.fromhex(f"04 00 01 01 01 01 01 01 01 01 01 {more_in_key} 00 00 {more_in_wishes} 00 00"))


def conversations(name, domain):
    """Title, the octets of the agent, how they are sent, and what must come of it."""
    plain = wishes(name, domain)
    unknown = {"more_in_key": "04 01 78", "more_in_wishes": "A2 80 02 00 00 00"}
    return [
        ("the wishes as the tool sends them", plain, "whole", "expected"),
        ("octet by octet, as TCP may cut them", plain, "in pieces", "the same"),
        ("with elements that nobody knows before both ends", wishes(name, domain, **unknown), "whole", "the same"),
        ("with a domain of 130 octets", wishes(name, "d" * 130), "whole", "an answer"),
        ("from a later agent of the same protocol, version 515",
         wishes(name, domain, version="02 02 02 03"), "whole", "the same"),
        ("from an agent of another protocol, version 768",
         wishes(name, domain, version="02 02 03 00"), "whole", "an answer"),
        ("cut off in the middle, and hung up", plain[:len(plain) // 2], "and hang up", "nothing"),
        ("from no agent at all", b"GET / HTTP/1.0\r\n\r\n", "and hang up", "nothing"),
        ("as the tool sends them, after all that", plain, "whole", "the same"),
        ("as the tool sends them, while another connection says nothing", plain, "beside a silent one", "the same"),
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
            pass  # whether the server liked it is seen in what it answers

    def receive(self, count):
        """Exactly `count` octets, or at most 4096 of a longer element: what is skipped needs no memory."""
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

    def result(self):
        return result_of(self.receive)

    def rest(self):
        """What the server sends although the tool has heard enough."""
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
    """Prints, and remembers whether anything was wrong."""

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
        return None if kind != "no answer" else "neither a whole offer nor a whole refusal came"
    if wanted == "the same":
        return None if kind == first else f"the first conversation ended otherwise ({first})"
    if kind not in ("accepted", "refused"):
        return "the tool shows this as a failure"
    return None if wanted in ("expected", kind) else f"expected was: {wanted}"


def hold(connection, report, octets, how):
    """One conversation: the result, and what else is wrong."""
    connection.send(octets, how == "in pieces")
    report.octets("agent", octets)
    if how == "and hang up":
        return None, None
    result = connection.result()
    report.octets("server", connection.received)
    if result == OFFERED:
        connection.send(CLOSING, False)
        report.octets("agent", CLOSING)
    report.say(f"  result  {result}")
    rest = connection.rest()
    if not rest:
        return result, None
    report.octets("server", rest)
    return result, "the server goes on behind the end of its answer: the tool has closed, and nobody reads this"


def negotiate(options, report):
    first = None
    for title, octets, how, wanted in conversations(options.name, options.domain):
        report.say(f"\n{title}")
        silent = None
        try:
            silent = Connection(options.address, options.timeout) if how == "beside a silent one" else None
            connection = Connection(options.address, options.timeout)
        except OSError as problem:
            report.verdict(f"no connection: {problem}")
            continue
        result, problem = hold(connection, report, octets, how)
        connection.close()
        if silent:
            silent.close()
        if result is None:
            report.say("  whether the server minds is seen in the next conversations")
            continue
        if first is None:
            first, wanted = kind_of(result), options.expect or wanted
        report.verdict(problem or problem_of(result, wanted, first))


def is_answer(octets):
    words = [octets[place:place + 4].hex() for place in range(0, 16, 4)]
    return len(octets) >= 16 and (words[0], words[2], words[3]) == ("12345678", "00000005", "00000002")


def problem_of_answer(octets, sender, options):
    if not is_answer(octets):
        return "the tool drops this in silence"
    if sender != options.address[0]:
        return f"it comes from {sender}, which is what the tool would put into the list"
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
    report.say("\na datagram that is no request")
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
    parser = argparse.ArgumentParser(prog="probe", description="Plays the tool against a Tavrin Server.")
    parser.add_argument("host", help="name or IPv4 address")
    parser.add_argument("port", type=int)
    parser.add_argument("--expect", choices=("accepted", "refused"), help="how the server must answer this agent")
    parser.add_argument("--name", type=ascii_text(256), default="web1", help="the agent's name (default: web1)")
    parser.add_argument("--domain", type=ascii_text(1024), default="", help="the agent's domain (default: none)")
    parser.add_argument("--timeout", type=float, default=10,
                        help="seconds to wait for octets (default: 10; the tool waits 600)")
    parser.add_argument("--no-discovery", action="store_true", help="do not look for the server as a scan does")
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
