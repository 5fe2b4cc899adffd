"""docs/protocol.md: every octet example goes through the sample server's own code."""
import re
import sys
import unittest

from guide import TOP, fences, tables

sys.path.insert(0, str(TOP / "examples/sample_server"))
import wire  # noqa: E402 (found by the line above)

GUIDE = (TOP / "docs/protocol.md").read_text()
OCTETS = re.compile(r"((?:[0-9A-F]{2} +)+)(also )?(integer|boolean|string)(?: (.*))?$")


def reader_of(octets):
    rest = bytearray(octets)

    def receive(count):
        if len(rest) < count:
            raise wire.WireError("cut off")
        piece = bytes(rest[:count])
        del rest[:count]
        return piece

    return wire.Reader(receive), rest


def lines(label):
    return [line for block in fences(GUIDE, label) for line in block.splitlines()]


def conversations():
    for block in fences(GUIDE, "conversation"):
        said = {"agent": [], "server": [], "result": []}
        for line in block.splitlines():
            who, rest = line.split(None, 1)
            said[who].append(rest)
        said["server"] = [" ".join(said["server"])]
        yield said


def octets_of_table(name):
    """The first column of the table whose first row is this element."""
    for head, *rows in tables(GUIDE):
        if head[0] == "octets" and rows[0][1] == name:
            return bytes.fromhex(" ".join(row[0] for row in rows))
    raise AssertionError(f"no table of {name}")


class Examples(unittest.TestCase):
    def test_elements(self):
        self.assertGreater(len(lines("elements")), 0)
        for line in lines("elements"):
            octets, also, kind, value = OCTETS.match(line).groups()
            octets = bytes.fromhex(octets)
            read, write, value = {
                "integer": (lambda reader: reader.integer(), wire.integer, value and int(value, 10)
                            if kind == "integer" else None),
                "boolean": (lambda reader: reader.boolean(), wire.boolean, value == "true"),
                "string": (lambda reader: reader.text(1024), wire.text, value or ""),
            }[kind]
            with self.subTest(line=line):
                reader, rest = reader_of(octets)
                self.assertEqual(read(reader), value)
                self.assertEqual(rest, b"")
                self.assertEqual(write(value) == octets, not also)

    def test_what_the_agent_says(self):
        for said in conversations():
            reader, rest = reader_of(bytes.fromhex(said["agent"][0]))
            self.assertEqual(wire.read_client_wants(reader), {
                "version": 514, "name": "web1", "domain": "", "id": "",
                "hasMasterKey": True, "hasHallmark": True, "testing": True})
            self.assertEqual(rest, b"")
            for closing in said["agent"][1:]:
                reader, rest = reader_of(bytes.fromhex(closing))
                wire.read_closing(reader)
                self.assertEqual(rest, b"")
            self.assertEqual(len(said["agent"]) == 2, said["result"] == ["accepted"])

    def test_what_other_agents_say(self):
        for line, (version, domain) in zip(lines("request"), ((514, ""), (515, ""), (514, "d" * 130)), strict=True):
            reader, rest = reader_of(bytes.fromhex(line))
            wants = wire.read_client_wants(reader)
            self.assertEqual((wants["version"], wants["domain"], rest), (version, domain, b""))

    def test_what_the_sample_server_says(self):
        said = {line for each in conversations() for line in each["server"]}
        long_reason = [each["result"][0] for each in conversations()][3].partition(": ")[2]
        self.assertGreaterEqual(len(long_reason), 128)
        for answer in (wire.server_offers(517), wire.server_offers(768), wire.negotiate_nack("no"),
                       wire.negotiate_nack(long_reason), wire.server_offers(514, private_key=False)):
            self.assertIn(answer.hex(" ").upper(), said)

    def test_tables_are_the_conversations(self):
        first = next(conversations())
        self.assertEqual(octets_of_table("request"), bytes.fromhex(first["agent"][0]))
        self.assertEqual(octets_of_table("offer"), bytes.fromhex(first["server"][0]))
        self.assertEqual(octets_of_table("refusal"), wire.negotiate_nack("no"))

    def test_datagrams(self):
        kinds = {}
        for line in lines("datagrams"):
            kind, octets = line.split(None, 1)
            kinds.setdefault(kind, []).append(bytes.fromhex(octets))
        self.assertEqual(kinds["request"], [wire.datagram(wire.REQUEST)])
        self.assertEqual(kinds["answer"][0], wire.datagram(wire.ANSWER))
        for octets in kinds["answer"] + kinds["dropped"][1:]:
            self.assertFalse(wire.is_request(octets))

    def test_table_of_datagrams(self):
        rows = next(rows for head, *rows in tables(GUIDE) if head[0] == "offset")
        request = "".join(re.match(r"[0-9A-F ]+", row[2])[0] for row in rows)
        self.assertEqual(bytes.fromhex(request), wire.datagram(wire.REQUEST))


if __name__ == "__main__":
    unittest.main()
