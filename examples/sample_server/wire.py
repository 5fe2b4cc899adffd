"""The octets between agent and server: tagged values, the negotiation's messages and the discovery datagram.

An element is identifier, length, content. Constructed elements have the length octet 80 (indefinite) and end
with the two octets 00 00; whatever a peer appends before them is skipped.
"""
import struct
import zlib

VERSION = 514

END, BOOLEAN, INTEGER, STRING, FILLER = 0x00, 0x01, 0x02, 0x04, 0x19
CLIENT_WANTS, SERVER_OFFERS, CLOSING, NACK = 0x60, 0x61, 0x62, 0x63
PRIVATE_KEY = 0xA1
INDEFINITE = 0x80

MAGIC = 0x12345678
REQUEST, ANSWER = 1, 2


class WireError(Exception):
    """The peer broke a rule of the protocol."""


class Reader:
    """Reads elements through `receive`, a function that returns exactly the requested number of octets."""

    def __init__(self, receive):
        self.receive = receive

    def octet(self):
        return self.receive(1)[0]

    def identifier(self):
        """The first identifier octet; a high tag number's further octets are dropped with the filler."""
        first = self.octet()
        while first == FILLER:
            first = self.octet()
        if first & 0x1F == 0x1F:
            while self.octet() & 0x80:
                pass
        return first

    def length(self):
        """A number of octets, or None for an indefinite length."""
        first = self.octet()
        if first == INDEFINITE:
            return None
        if first < 0x80:
            return first
        if first & 0x7F > 4:
            raise WireError("length of more than four octets")
        return int.from_bytes(self.receive(first & 0x7F), "big")

    def content(self, identifier, limit):
        found = self.identifier()
        if found != identifier:
            raise WireError(f"identifier {found:02x} where {identifier:02x} belongs")
        length = self.length()
        if length is None or length > limit:
            raise WireError(f"element {identifier:02x} is too long")
        return self.receive(length)

    def integer(self):
        return int.from_bytes(self.content(INTEGER, 4), "big", signed=True)

    def boolean(self):
        octets = self.content(BOOLEAN, 1)
        if not octets:
            raise WireError("boolean without content")
        return octets != b"\0"

    def text(self, limit):
        return self.content(STRING, limit).decode("latin-1")

    def open(self, identifier):
        """Enters a constructed element."""
        found = self.identifier()
        if found != identifier or self.length() is not None:
            raise WireError(f"no constructed element {identifier:02x}")

    def close(self):
        """Skips to the end of the constructed element entered last."""
        depth = 1
        while depth:
            if self.identifier() == END:
                if self.length() != 0:
                    raise WireError("end of contents with a length")
                depth -= 1
                continue
            length = self.length()
            if length is None:
                depth += 1
                continue
            while length:
                length -= len(self.receive(min(length, 4096)))


def read_client_wants(reader):
    """The agent's first message, as a dictionary in the order of its fields."""
    wants = {}
    reader.open(CLIENT_WANTS)
    wants["version"] = reader.integer()
    reader.open(PRIVATE_KEY)
    wants["name"] = reader.text(256)
    wants["domain"] = reader.text(1024)
    wants["id"] = reader.text(128)
    for flag in ("hasMasterKey", "hasHallmark", "testing"):
        wants[flag] = reader.boolean()
    reader.close()
    reader.close()
    return wants


def read_closing(reader):
    """The empty element that an agent sends after it has accepted an offer."""
    reader.open(CLOSING)
    reader.close()


def element(identifier, content):
    """A primitive element with its shortest length."""
    size = len(content)
    if size < 0x80:
        return bytes((identifier, size)) + content
    octets = size.to_bytes((size.bit_length() + 7) // 8, "big")
    return bytes((identifier, 0x80 | len(octets))) + octets + content


def constructed(identifier, *parts):
    return bytes((identifier, INDEFINITE)) + b"".join(parts) + b"\0\0"


def integer(value):
    """Two's complement in as few octets as possible; zero has none."""
    size = (value + (value < 0)).bit_length() // 8 + 1 if value else 0
    return element(INTEGER, value.to_bytes(size, "big", signed=True))


def boolean(value):
    return element(BOOLEAN, b"\1" if value else b"\0")


def text(value):
    return element(STRING, value.encode("latin-1", "replace"))


def server_offers(version, private_key=True, master_key=True, hallmark=False):
    key = [constructed(PRIVATE_KEY, boolean(master_key), boolean(hallmark))] if private_key else []
    return constructed(SERVER_OFFERS, integer(version), *key)


def negotiate_nack(reason):
    return constructed(NACK, text(reason))


def datagram(kind):
    """A discovery datagram: five words in network byte order, the last the CRC-32 of the others."""
    words = struct.pack(">4I", MAGIC, 5153, 5, kind)
    return words + struct.pack(">I", zlib.crc32(words))


def is_request(octets):
    return octets == datagram(REQUEST)
