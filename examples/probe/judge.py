"""How the tool reads a server's answer, and the texts with which it refuses one. Written from docs/protocol.md; it
shares no code with the tool or the sample server, so that a mistake in one cannot hide in another.
"""

OFFER, REFUSAL, PRIVATE_KEY = 0x61, 0x63, 0xA1
BOOLEAN, INTEGER, STRING, FILLER, END = 0x01, 0x02, 0x04, 0x19, 0x00
INDEFINITE = 0x80
LONGEST_REASON = 1024
TOOLS_PROTOCOL = 2  # the high octet of the version

INCOMPATIBLE = "Tavrin Server using incompatible protocol"
NO_PRIVATE_KEY = "Tavrin Server does not support private key authentication.  Upgrade the Tavrin Server."
WRONG_VERSION = ("Tavrin Server does not support our protocol version. Upgrade the Tavrin Server, or downgrade the "
                 "Tavrin Agent.")


class Complaint(Exception):
    """The answer breaks a rule. The text is the one that the tool shows."""


class Answer:
    """Decodes an answer. `receive` returns as many octets as it is asked for, or raises."""

    def __init__(self, receive):
        self.receive = receive

    def octet(self):
        return self.receive(1)[0]

    def tag(self):
        """A tag of one octet, or None for a longer one, which no message contains."""
        first = self.octet()
        while first == FILLER:
            first = self.octet()
        if first & 0x1F != 0x1F:
            return first
        while self.octet() & 0x80:
            pass
        return None

    def length(self):
        """A number, or None for an indefinite length."""
        first = self.octet()
        if first < 0x80:
            return first
        if first == INDEFINITE:
            return None
        if first > 0x84:
            raise Complaint("data out of range in read_length")
        return int.from_bytes(self.receive(first & 0x7F), "big")

    def value(self, tag, name, reader, fits):
        if self.tag() != tag:
            raise Complaint(f"Wrong tag, expected {name}")
        length = self.length()
        if length is None or not fits(length):
            raise Complaint(f"data out of range in {reader}")
        return self.receive(length)

    def boolean(self):
        return self.value(BOOLEAN, "BE_BOOLEAN", "read_bool", lambda length: length == 1) != b"\0"

    def integer(self):
        content = self.value(INTEGER, "BE_INTEGER", "read_signed_int", lambda length: length <= 4)
        number = int.from_bytes(content, "big", signed=True)
        if not 0 <= number <= 65535:
            raise Complaint("data out of range in read_signed_int")
        return number

    def text(self):
        return self.value(STRING, "BE_STRING", "read_string", lambda length: length <= LONGEST_REASON)

    def skip(self, ending):
        """Skips to the end of the open element. `ending` is the name of the place in the text about a wrong end."""
        depth = 0
        while True:
            tag = self.tag()
            length = self.length()
            if tag != END:
                depth += length is None
                left = length or 0
                while left:
                    left -= len(self.receive(min(left, 128)))
                continue
            if length != 0:
                raise Complaint("List not terminated correctly in " + ("read_devnode_list" if depth else ending))
            if depth == 0:
                return
            depth -= 1

    def enter(self, name):
        if self.length() is not None:
            raise Complaint(f"Definite length read in {name}")


def named(field, read):
    """Reads a field, and puts its name before the text of a complaint."""
    try:
        return read()
    except Complaint as complaint:
        raise Complaint(f"{field}: {complaint}") from None


def read_offer(answer, protocol):
    answer.enter("read_server_offers_incomplete")
    version = named("server_offers.version", answer.integer)
    if answer.tag() != PRIVATE_KEY:
        raise Complaint(NO_PRIVATE_KEY)
    answer.enter("read_server_private_key")
    named("server_private_key.hasMasterKey", answer.boolean)
    named("server_private_key.hasHallmark", answer.boolean)
    answer.skip("skip_to_eol")
    answer.skip("skip_to_eol")
    if version >> 8 != protocol:
        raise Complaint(WRONG_VERSION)


def read_refusal(answer):
    """The server's reason."""
    answer.enter("read_negotiate_nack")
    reason = named("negotiate_nack.reason", answer.text)
    answer.skip("skip_to_eol")
    return reason.split(b"\0")[0].decode("ascii", "backslashreplace")


def result_of(receive, protocol=TOOLS_PROTOCOL):
    """The result of an answer for an agent of this protocol: "accepted", or the tool's text, cut after 255 bytes."""
    answer = Answer(receive)
    try:
        tag = answer.tag()
        if tag == OFFER:
            read_offer(answer, protocol)
            return "accepted"
        if tag == REFUSAL:
            return f"Tavrin Server rejected us: {read_refusal(answer)}"[:255]
        return INCOMPATIBLE
    except Complaint as complaint:
        return str(complaint)[:255]
