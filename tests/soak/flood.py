"""Servers that send without end what an agent must skip or has already counted.

usage: flood.py --port PORT

Each flood lasts ten seconds, a minute with TAVRIN_SOAK set. At PORT a negotiation's answer opens one element in another,
at PORT + 1 it holds fields of 16 MiB each, and at PORT + 2 every address of the asker's network answers a scan, again
and again.
"""
import argparse
import ipaddress
import os
import pathlib
import select
import socket
import socketserver
import sys
import threading
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "examples/sample_server"))
import wire  # noqa: E402 (found by the line above)

SECONDS = 60 if os.environ.get("TAVRIN_SOAK") else 10
IP_TRANSPARENT = 19  # any address may be sent from; the module socket has no name for it
# An offer up to the end of its key: what follows belongs to an element that the agent does not know.
OFFER = wire.server_offers(wire.VERSION)[:-2]
OPENED = b"\xA2\x80" * 32768
FIELD = 1 << 24


def say(text):
    print(text, flush=True)


def deepen(connection):
    connection.sendall(OPENED)
    return len(OPENED)


def widen(connection):
    connection.sendall(b"\x04\x84" + FIELD.to_bytes(4, "big") + bytes(FIELD))
    return FIELD


class Flood(socketserver.BaseRequestHandler):
    def handle(self):
        # All that the agent sends, so that nothing is left unread when the connection is closed.
        wire.read_client_wants(wire.Reader(lambda count: self.request.recv(count, socket.MSG_WAITALL)))
        self.request.sendall(OFFER)
        sent, end = 0, time.monotonic() + SECONDS
        while time.monotonic() < end:
            sent += self.server.more(self.request)
        say(f"{self.server.more.__name__}: {sent >> 20} MiB")


def serve(port, more):
    socketserver.ThreadingTCPServer.daemon_threads = socketserver.ThreadingTCPServer.allow_reuse_address = True
    server = socketserver.ThreadingTCPServer(("", port), Flood)
    server.more = more
    threading.Thread(target=server.serve_forever, daemon=True).start()


def answering_socket(address):
    answering = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    answering.setsockopt(socket.IPPROTO_IP, IP_TRANSPARENT, 1)
    answering.bind((str(address), 0))
    return answering


def answer_scan(asker):
    hosts = ipaddress.ip_network(f"{asker[0]}/24", strict=False).hosts()
    sockets = [answering_socket(host) for host in hosts if str(host) != asker[0]]
    sent, end = 0, time.monotonic() + SECONDS
    while time.monotonic() < end:
        for each in sockets:
            each.sendto(wire.datagram(wire.ANSWER), asker)
        sent += len(sockets)
    say(f"answers: {sent}")


def answer_scans(port):
    heard = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    heard.bind(("", port))
    say(f"ready on {port - 2}")
    while True:
        answer_scan(heard.recvfrom(64)[1])
        # The same scan asks three times, in every network.
        while select.select([heard], [], [], 3)[0]:
            heard.recv(64)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--port", type=int, required=True)
    first = parser.parse_args().port
    serve(first, deepen)
    serve(first + 1, widen)
    answer_scans(first + 2)
