"""examples/probe: each conversation of docs/protocol.md ends as it says there, and misbehaving servers are found."""
import re
import socket
import socketserver
import subprocess
import sys
import threading
import time
import unittest

from guide import TOP
from test_octets import conversations, lines, wire

PROBE = TOP / "examples/probe"
sys.path.insert(0, str(PROBE))
from judge import Complaint, result_of  # noqa: E402 (found by the line above)

OFFER = bytes.fromhex("61 80 02 02 02 05 A1 80 01 01 01 01 01 00 00 00 00 00")
REFUSAL = bytes.fromhex("63 80 04 02 6E 6F 00 00")
CLOSING = "62 80 00 00"
ANSWER = bytes.fromhex("12345678 00001421 00000005 00000002 69F8E2F6")


def probe(port, *options):
    """The exit code and what is printed."""
    command = [sys.executable, str(PROBE), "127.0.0.1", str(port), "--timeout", "2", *options]
    run = subprocess.run(command, capture_output=True, text=True, check=False)
    return run.returncode, run.stdout


def verdicts(output):
    """Title of a conversation -> "right", or what is wrong."""
    parts = [part.splitlines() for part in output.strip().split("\n\n")]
    return {part[0]: re.sub(r"^ +(?:WRONG +)?", "", part[-1]) for part in parts[:-1]}


class Scripted(socketserver.ThreadingTCPServer):
    """A server that reads the request, sends what the test wants, and closes."""
    allow_reuse_address = daemon_threads = True

    def __init__(self, answer):
        self.answer = answer
        super().__init__(("127.0.0.1", 0), Answering)
        threading.Thread(target=self.serve_forever, args=(0.05,), daemon=True).start()

    def handle_error(self, *_):
        pass

    @property
    def port(self):
        return self.server_address[1]


class Answering(socketserver.BaseRequestHandler):
    def handle(self):
        wire.read_client_wants(wire.Reader(self.receive))
        self.request.sendall(self.server.answer)

    def receive(self, count):
        octets = b""
        while len(octets) < count:
            piece = self.request.recv(count - len(octets))
            if not piece:
                raise wire.WireError("hung up")
            octets += piece
        return octets


class OneAtATime(Scripted):
    """Accepts the next connection only when this one has ended."""

    def process_request(self, request, client_address):
        self.finish_request(request, client_address)
        self.shutdown_request(request)


class Judge(unittest.TestCase):
    def result(self, octets):
        rest = bytearray(octets)

        def receive(count):
            if len(rest) < count:
                raise Complaint("Peer closed connection unexpectedly")
            piece = bytes(rest[:count])
            del rest[:count]
            return piece
        return result_of(receive)

    def test_every_conversation_of_the_guide(self):
        for said in conversations():
            with self.subTest(result=said["result"]):
                self.assertEqual([self.result(bytes.fromhex(said["server"][0]))], said["result"])

    def test_more_answers_that_the_tool_refuses(self):
        for octets, text in (
                ("61 80 02 03 01 00 00", "server_offers.version: data out of range in read_signed_int"),
                ("61 80 02 01 FF", "server_offers.version: data out of range in read_signed_int"),
                ("61 85", "data out of range in read_length"),
                ("61 80 02 02 02 02 A1 02", "Definite length read in read_server_private_key"),
                ("61 80 02 02 02 02 A1 80 01 02", "server_private_key.hasMasterKey: data out of range in read_bool"),
                ("61 80 02 02 02 02 A1 80 01 01 00 01 80", "server_private_key.hasHallmark: data out of range in "
                 "read_bool"),
                ("61 80 02 02 02 02 A1 80 01 01 00 01 01 00 00 01", "List not terminated correctly in skip_to_eol"),
                ("61 80 02 02 02 02 A1 80 01 01 00 01 01 00 A2 80 00 80",
                 "List not terminated correctly in read_devnode_list"),
                ("63 08", "Definite length read in read_negotiate_nack"),
                ("63 80 02", "negotiate_nack.reason: Wrong tag, expected BE_STRING"),
                ("63 80 04 82 04 01", "negotiate_nack.reason: data out of range in read_string"),
                ("7F 21", "Tavrin Server using incompatible protocol")):
            with self.subTest(octets=octets):
                self.assertEqual(self.result(bytes.fromhex(octets)), text)

    def test_a_long_reason_is_cut(self):
        refusal = bytes.fromhex("63 80 04 82 04 00") + b"x" * 1024 + b"\0\0\0\0"
        self.assertEqual(self.result(refusal), "Tavrin Server rejected us: " + "x" * 228)


class Running(unittest.TestCase):
    def serve(self, answer, kind=Scripted):
        server = kind(answer)
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        return server.port

    def test_every_conversation_of_the_guide(self):
        for said in conversations():
            with self.subTest(result=said["result"]):
                _, output = probe(self.serve(bytes.fromhex(said["server"][0])), "--no-discovery")
                first = output.strip().split("\n\n")[0].splitlines()
                agent = [line.split(None, 1)[1] for line in first if line.startswith("  agent")]
                self.assertEqual(agent, said["agent"])
                result, = [line.split(None, 1)[1] for line in first if line.startswith("  result")]
                self.assertEqual([result], said["result"])

    def test_what_other_agents_say(self):
        _, output = probe(self.serve(OFFER), "--no-discovery")
        agents = [" ".join(line.split(None, 1)[1] for line in part.splitlines() if line.startswith("  agent"))
                  for part in output.split("\n\n")]
        for line in lines("request"):
            self.assertIn(f"{line} {CLOSING}", agents)

    def test_sample_server(self):
        for mode, expected, code in (
                ("accept", "accepted", 0), ("accept", "refused", 1), ("refuse", "refused", 0),
                ("refuse", "accepted", 1), ("version", "accepted", 1), ("without-key", "refused", 1)):
            command = [sys.executable, str(TOP / "examples/sample_server"), "--bind", "127.0.0.1", "--port", "0",
                       "--mode", mode]
            with self.subTest(mode=mode, expected=expected), \
                    subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as server:
                port = re.match(r"ready on 127\.0\.0\.1:(\d+)", server.stdout.readline())[1]
                found, output = probe(port, "--expect", expected)
                server.terminate()
                server.communicate()
                self.assertEqual(found, code, output)

    def conversation_of_another_protocol(self, answer):
        """Result and last octets of the agent of version 768 that gets this answer."""
        _, output = probe(self.serve(answer), "--no-discovery")
        part, = [part for part in output.split("\n\n") if "version 768" in part]
        agent = [line for line in part.splitlines() if line.startswith("  agent")]
        return re.search("  result  (.*)", part)[1], agent[-1].split(None, 1)[1], part.splitlines()[-1].strip()

    def test_an_agent_of_another_protocol_asks_for_an_upgrade(self):
        result, sent, verdict = self.conversation_of_another_protocol(OFFER)
        self.assertEqual(result, "Tavrin Server does not support our protocol version. Upgrade the Tavrin Server, or "
                                 "downgrade the Tavrin Agent.")
        self.assertNotEqual(sent, CLOSING)
        self.assertEqual(verdict, "right")

    def test_an_agent_of_another_protocol_accepts_its_own(self):
        result, sent, verdict = self.conversation_of_another_protocol(
            bytes.fromhex("61 80 02 02 03 05 A1 80 01 01 01 01 01 00 00 00 00 00"))
        self.assertEqual((result, sent, verdict), ("accepted", CLOSING, "right"))

    def test_a_server_that_accepts_is_right_in_all(self):
        _, output = probe(self.serve(OFFER), "--no-discovery")
        self.assertEqual(set(verdicts(output).values()),
                         {"right", "the next conversations show whether the server still works"})

    def test_a_server_that_goes_on_behind_its_answer(self):
        _, output = probe(self.serve(REFUSAL + b"abc"), "--no-discovery")
        self.assertIn("sends more after the end", verdicts(output)["the request as the tool sends it"])

    def test_a_server_that_takes_one_connection_at_a_time(self):
        code, output = probe(self.serve(OFFER, OneAtATime), "--no-discovery")
        self.assertEqual(code, 1)
        found = verdicts(output)["as the tool sends it, while another connection is silent"]
        self.assertEqual(found, "the first conversation had another result (accepted)")

    def test_a_server_that_wants_the_request_in_one_piece(self):
        class OnePiece(Scripted):
            def finish_request(self, request, client_address):
                if len(request.recv(4096)) > 30:
                    request.sendall(self.answer)
                time.sleep(0.1)
        _, output = probe(self.serve(OFFER, OnePiece), "--no-discovery")
        self.assertEqual(verdicts(output)["octet by octet, as TCP may deliver it"],
                         "the first conversation had another result (accepted)")

    def test_a_server_that_is_not_there(self):
        with socket.create_server(("127.0.0.1", 0)) as other:
            port = other.getsockname()[1]
        code, output = probe(port)
        self.assertEqual(code, 1)
        self.assertIn("no connection: ", output)
        self.assertIn("no answer within a second, three times", output)

    def discovery(self, answer):
        """Probes a server that answers every datagram."""
        port = self.serve(OFFER)
        udp = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.addCleanup(udp.close)
        udp.bind(("127.0.0.1", port))

        def reply():
            while True:
                try:
                    udp.sendto(answer, udp.recvfrom(4096)[1])
                except OSError:
                    return
        threading.Thread(target=reply, daemon=True).start()
        return verdicts(probe(port)[1])

    def test_discovery_that_answers_everything(self):
        found = self.discovery(ANSWER)
        self.assertEqual(found["a scan's request, to this address alone"], "right")
        self.assertEqual(found["a datagram that is not a request"], "it was answered")

    def test_discovery_with_a_wrong_answer(self):
        found = self.discovery(ANSWER[:15])
        self.assertEqual(found["a scan's request, to this address alone"], "the tool silently drops this answer")

    def test_usage(self):
        for wrong in (("0",), ("70000",), ("5000", "--name", "x" * 257), ("5000", "--name", "\u00e9")):
            command = [sys.executable, str(PROBE), "127.0.0.1", *wrong]
            self.assertEqual(subprocess.run(command, capture_output=True, check=False).returncode, 2)


if __name__ == "__main__":
    unittest.main()
