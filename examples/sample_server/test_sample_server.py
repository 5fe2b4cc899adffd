"""The server's self test: octets written out, and a whole negotiation and discovery over loopback.

    python3 -m unittest discover examples/sample_server
"""
import os
import signal
import socket
import subprocess
import sys
import unittest

import wire

FOLDER = os.path.dirname(os.path.abspath(__file__))
WANTS_WEB1 = bytes.fromhex("60 80 02 02 02 02 A1 80 04 04 77 65 62 31 04 00 04 00"
                           "01 01 01 01 01 01 01 01 01 00 00 00 00")
REQUEST = bytes.fromhex("12345678 00001421 00000005 00000001 F0F1B34C")


def reader_of(octets):
    rest = bytearray(octets)

    def receive(count):
        if len(rest) < count:
            raise wire.WireError("cut off")
        piece = bytes(rest[:count])
        del rest[:count]
        return piece

    return wire.Reader(receive), rest


class Octets(unittest.TestCase):
    def test_client_message(self):
        reader, rest = reader_of(WANTS_WEB1)
        self.assertEqual(wire.read_client_wants(reader), {
            "version": 514, "name": "web1", "domain": "", "id": "",
            "hasMasterKey": True, "hasHallmark": True, "testing": True})
        self.assertEqual(rest, b"")

    def test_client_message_cut_anywhere_is_refused(self):
        for size in range(len(WANTS_WEB1)):
            with self.assertRaises(wire.WireError):
                wire.read_client_wants(reader_of(WANTS_WEB1[:size])[0])

    def test_offer(self):
        self.assertEqual(wire.server_offers(517).hex(" "),
                         "61 80 02 02 02 05 a1 80 01 01 01 01 01 00 00 00 00 00")

    def test_offer_without_private_key(self):
        self.assertEqual(wire.server_offers(514, private_key=False).hex(" "), "61 80 02 02 02 02 00 00")

    def test_refusal(self):
        self.assertEqual(wire.negotiate_nack("no").hex(" "), "63 80 04 02 6e 6f 00 00")

    def test_closing(self):
        reader, rest = reader_of(bytes.fromhex("62 80 00 00"))
        wire.read_closing(reader)
        self.assertEqual(rest, b"")

    def test_integers(self):
        for value, octets in ((0, "02 00"), (1, "02 01 01"), (127, "02 01 7f"), (128, "02 02 00 80"),
                              (-1, "02 01 ff"), (-128, "02 01 80"), (-129, "02 02 ff 7f"), (514, "02 02 02 02"),
                              (32768, "02 03 00 80 00"), (65535, "02 03 00 ff ff")):
            self.assertEqual(wire.integer(value).hex(" "), octets)
            self.assertEqual(reader_of(bytes.fromhex(octets))[0].integer(), value)

    def test_long_texts(self):
        self.assertEqual(wire.text("a" * 127)[:2].hex(" "), "04 7f")
        self.assertEqual(wire.text("a" * 200)[:3].hex(" "), "04 81 c8")
        self.assertEqual(wire.text("a" * 256)[:4].hex(" "), "04 82 01 00")

    def test_filler_before_an_identifier(self):
        self.assertEqual(reader_of(bytes.fromhex("19 19 02 01 05"))[0].integer(), 5)

    def test_further_fields_are_skipped(self):
        reader, rest = reader_of(bytes.fromhex("62 80  02 01 07  7f 81 01 00  a1 80 04 01 78 00 00  00 00 2a"))
        wire.read_closing(reader)
        self.assertEqual(rest, b"\x2a")

    def test_discovery(self):
        self.assertEqual(wire.datagram(wire.REQUEST), REQUEST)
        self.assertTrue(wire.is_request(REQUEST))
        self.assertFalse(wire.is_request(REQUEST[:16]))
        answer = wire.datagram(wire.ANSWER)
        self.assertEqual(len(answer), 20)
        self.assertEqual(answer[:16].hex(" "), "12 34 56 78 00 00 14 21 00 00 00 05 00 00 00 02")


class Running(unittest.TestCase):
    """The command itself on a port of the system's choice."""

    def start(self, *options):
        command = [sys.executable, FOLDER, "--bind", "127.0.0.1", "--port", "0", *options]
        self.server = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.server.stdout.close)
        self.addCleanup(self.server.wait)
        self.addCleanup(self.server.kill)
        ready = self.server.stdout.readline()
        self.assertRegex(ready, r"^ready on 127\.0\.0\.1:\d+, mode ")
        self.port = int(ready.split(":")[1].split(",")[0])

    def negotiate(self, goodbye=b""):
        with socket.create_connection(("127.0.0.1", self.port), timeout=10) as connection:
            connection.sendall(WANTS_WEB1 + goodbye)
            answer = b""
            while piece := connection.recv(4096):
                answer += piece
        return answer.hex(" ")

    def stop(self):
        """Ends the server; what it printed since it was ready."""
        self.server.send_signal(signal.SIGTERM)
        lines = self.server.stdout.read().splitlines()
        self.assertEqual(self.server.wait(10), 0)
        self.assertEqual(lines.pop(), "stopped")
        return [line.split(" ", 1)[1] for line in lines]

    def test_accept(self):
        self.start()
        self.assertEqual(self.negotiate(bytes.fromhex("62 80 00 00")),
                         "61 80 02 02 02 02 a1 80 01 01 01 01 01 00 00 00 00 00")
        self.assertEqual(self.stop(), [
            'wants: version 514, name "web1", domain "", id "", hasMasterKey hasHallmark testing',
            "was sent: 61 80 02 02 02 02 a1 80 01 01 01 01 01 00 00 00 00 00", "sent the closing element"])

    def test_refuse(self):
        self.start("--mode", "refuse", "--reason", "no")
        self.assertEqual(self.negotiate(), "63 80 04 02 6e 6f 00 00")
        self.assertEqual(self.stop()[-1], "was sent: 63 80 04 02 6e 6f 00 00")

    def test_another_version(self):
        self.start("--mode", "version")
        self.assertEqual(self.negotiate(), "61 80 02 02 03 00 a1 80 01 01 01 01 01 00 00 00 00 00")

    def test_without_key(self):
        self.start("--mode", "without-key")
        self.assertEqual(self.negotiate(), "61 80 02 02 02 02 00 00")

    def test_rubbish_is_reported_and_the_next_agent_served(self):
        self.start()
        with socket.create_connection(("127.0.0.1", self.port), timeout=10) as connection:
            connection.sendall(b"GET / HTTP/1.0\r\n\r\n")
            try:
                self.assertEqual(connection.recv(1), b"")
            except ConnectionResetError:
                pass  # the server closes with octets unread, which may arrive first
        self.assertNotEqual(self.negotiate(bytes.fromhex("62 80 00 00")), "")
        self.assertEqual(self.stop()[0], "failed: no constructed element 60")

    def test_discovery(self):
        self.start()
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as agent:
            agent.settimeout(10)
            agent.sendto(b"hello", ("127.0.0.1", self.port))
            agent.sendto(REQUEST, ("127.0.0.1", self.port))
            answer, peer = agent.recvfrom(4096)
        self.assertEqual(peer, ("127.0.0.1", self.port))
        self.assertEqual(answer[:16].hex(" "), "12 34 56 78 00 00 14 21 00 00 00 05 00 00 00 02")
        self.assertIn("sent 5 octets that are not a request: 68 65 6c 6c 6f", self.stop())


if __name__ == "__main__":
    unittest.main()
