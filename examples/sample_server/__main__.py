"""A sample Tavrin Server: answers negotiations over TCP and discovery over UDP and prints what it received.

    python3 examples/sample_server [--bind ADDRESS] [--port PORT] [--mode MODE]

It ends on SIGTERM or Ctrl-C with exit code 0.
"""
import argparse
import signal
import socket
import socketserver
import sys
import threading
import time

import wire


def say(text):
    print(text, flush=True)


def receive_exactly(connection, count):
    octets = b""
    while len(octets) < count:
        piece = connection.recv(count - len(octets))
        if not piece:
            raise wire.WireError("the agent closed the connection")
        octets += piece
    return octets


def describe(wants):
    flags = [flag for flag in ("hasMasterKey", "hasHallmark", "testing") if wants[flag]]
    return (f'version {wants["version"]}, name "{wants["name"]}", domain "{wants["domain"]}", '
            f'id "{wants["id"]}", {" ".join(flags) or "no flags"}')


def answer_of(options):
    """The answer of the mode, and whether an agent that follows the protocol accepts it."""
    if options.mode == "refuse":
        return wire.negotiate_nack(options.reason), False
    if options.mode == "version":
        return wire.server_offers(options.version), options.version >> 8 == wire.VERSION >> 8
    if options.mode == "without-key":
        return wire.server_offers(wire.VERSION, private_key=False), False
    return wire.server_offers(wire.VERSION), True


class Negotiation(socketserver.BaseRequestHandler):
    """One agent's connection."""

    def handle(self):
        peer = "%s:%d" % self.client_address
        self.request.settimeout(30)
        reader = wire.Reader(lambda count: receive_exactly(self.request, count))
        try:
            say(f"{peer} wants: {describe(wire.read_client_wants(reader))}")
            answer, accepts = answer_of(self.server.options)
            time.sleep(self.server.options.delay)
            self.request.sendall(answer)
            say(f"{peer} was sent: {answer.hex(' ')}")
            if accepts:
                wire.read_closing(reader)
                say(f"{peer} sent the closing element")
        except (wire.WireError, OSError) as problem:
            say(f"{peer} failed: {problem}")


class Server(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True

    def __init__(self, options):
        self.options = options
        super().__init__((options.bind, options.port), Negotiation)


def answer_discovery(discovery):
    """Answers requests until the socket is closed."""
    while True:
        try:
            octets, peer = discovery.recvfrom(4096)
        except OSError:
            return
        if wire.is_request(octets):
            say("%s:%d looks for servers" % peer)
            try:
                discovery.sendto(wire.datagram(wire.ANSWER), peer)
            except OSError as problem:
                say(f"{peer[0]} gets no answer: {problem}")
        else:
            say(f"{peer[0]} sent {len(octets)} octets that are not a request: {octets[:32].hex(' ')}")


def parse_options(arguments):
    parser = argparse.ArgumentParser(prog="sample_server", description="A sample Tavrin Server.")
    parser.add_argument("--bind", default="0.0.0.0", help="address to listen on (default: all)")
    parser.add_argument("--port", type=int, default=5000, help="TCP and UDP port (default: 5000)")
    parser.add_argument("--mode", choices=("accept", "refuse", "version", "without-key"), default="accept",
                        help="the answer to every agent: an offer, a refusal, an offer of --version, or an "
                             "offer without a private key (default: accept)")
    parser.add_argument("--reason", default="This agent is not welcome.", help="the reason of a refusal (mode refuse)")
    parser.add_argument("--version", type=int, default=768, help="the version to offer (mode version; default: 768)")
    parser.add_argument("--delay", type=float, default=0, help="seconds to wait before each answer")
    parser.add_argument("--no-discovery", action="store_true", help="do not answer scans")
    return parser.parse_args(arguments)


def main(arguments):
    options = parse_options(arguments)
    with Server(options) as server, socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as discovery:
        options.port = server.server_address[1]
        if not options.no_discovery:
            discovery.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
            discovery.bind((options.bind, options.port))
            threading.Thread(target=answer_discovery, args=(discovery,), daemon=True).start()
        for number in (signal.SIGTERM, signal.SIGINT):
            # shutdown() waits for serve_forever(), which this very thread runs.
            signal.signal(number, lambda *_: threading.Thread(target=server.shutdown).start())
        say(f"ready on {options.bind}:{options.port}, mode {options.mode}")
        server.serve_forever(poll_interval=0.1)
    say("stopped")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
