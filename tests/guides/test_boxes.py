"""docs/administrator.md lists every text that the window's program can show, and no other."""
import re
import unittest

from guide import TOP, tables

# value_text.cpp says why a value is refused that is set without the window; the window refuses none.
SOURCES = [path for path in sorted((TOP / "src").rglob("*.[ch]*"))
           if path.suffix in (".cpp", ".h") and not {"platform", "ctl"} & set(path.parts) and path.name != "value_text.cpp"]
STRING = r'"(?:[^"\\\n]|\\.)*"'
TOKENS = re.compile(rf"//[^\n]*|'(?:[^'\\]|\\.)+'|#include[^\n]*|(?P<text>{STRING}(?:\s*{STRING})*)|[;{{}}]")

# Texts in the sources that no user sees, and why.
NOT_SHOWN = {
    "Unable to open file:": "start-up passes over such a file; only other uses of the parser throw",
    "found_servers must not be NULL": "the program never leaves the result out",
    "Message too short:": "deliberately not reported",
    "Couldn't signal event": "thrown, and deliberately caught by nobody",
    "socket_close: Error at ioctlsocket:": "the exchange is over, so a failing close is dropped",
    "Error closing socket:": "likewise",
    "socket_flush returned error:": "a socket has nothing to flush",
    "socket_send did not send all data: length =": "the loop before it leaves nothing",
    "Couldn't open connection to server": "a connection without an error is there",
    "skip_value encountered end of list": "the callers look for the end first",
    "Message is longer than any message": "there is room for the longest message that is sent",
    "data out of range in write_signed_int": "the one number that is sent is in range",
    "encountered in read_server_offers_incomplete": "the caller has chosen the reader by this tag",
    "encountered in read_server_private_key": "likewise",
    "encountered in read_negotiate_nack": "likewise",
    "Wrong tag (": "likewise; the beginning of these three",
    "no name(": "the name of a network adapter, for whoever debugs",
    "Tavrin Configuration": "the title of the main window",
    "Tavrin Service Control": "the title of a wait window, which has no title bar",
    "Test Connection": "a button",
    "the lines end with a carriage return alone, so the file is read as one line; end them with LF or CR LF":
        "said by tavrinctl alone",
    "Please select a folder to use:": "inside the system's dialog for folders",
    "File selection...": "the title of the system's dialog for files",
}

# Texts that the program puts together from literals of several places.
COMPOSED = (
    "Cannot read out SOFTWARE\\Tavrin\\TRConfig",
    "not group start",
    "not subspec start",
    "Error reading value: Error parsing",
    "Error initializing socket subsystem: Error with wsastartup",
)


def statements(source):
    """Every literal with the text of its statement up to it."""
    start = 0
    for token in TOKENS.finditer(source):
        if token["text"]:
            literal = "".join(re.findall(STRING, token["text"])).replace('""', "")[1:-1]
            yield source[start:token.start()], literal
        elif token[0] in ";{}":
            start = token.end()


def pieces(text):
    """The fixed pieces of a text, without its placeholders."""
    text = text.replace(r"\"", '"').replace("\\\\", "\\").replace("`", "")
    parts = re.split(r"%[0-9.]*z?[a-z]|\\[nr]|\u2026|  +", text)
    parts = [re.sub(r"\s+", " ", part).strip(' ".:,()') for part in parts]
    return [part for part in parts if re.search(r"[A-Za-z]{3}", part)]


def texts_of_sources():
    """Pieces of every literal that contains a space; literals without one are names."""
    found = set()
    for path in SOURCES:
        for before, literal in statements(path.read_text()):
            if not re.search(r"\b(trace|fputs|static_assert)\(", before) and " " in literal:
                found.update(pieces(literal))
    return found


NOT_SHOWN_PIECES = {piece for text in NOT_SHOWN for piece in pieces(text)}
SHOWN_COLUMNS = ("caption", "text", "reason", "wait window")


def texts_of_guide():
    """The cells that quote the program."""
    for head, *rows in tables((TOP / "docs/administrator.md").read_text()):
        for row in rows:
            for title, cell in zip(head, row):
                if title in SHOWN_COLUMNS:
                    yield cell


class Boxes(unittest.TestCase):
    def test_every_text_is_in_the_guide(self):
        guide = re.sub(r"[ `]+", " ", (TOP / "docs/administrator.md").read_text())
        missing = [text for text in sorted(texts_of_sources() - NOT_SHOWN_PIECES) if text not in guide]
        self.assertEqual(missing, [])

    def test_the_guide_quotes_the_program(self):
        program = "\n".join(["Error", *texts_of_sources(), *COMPOSED])
        invented = [piece for cell in texts_of_guide() for piece in pieces(cell) if piece not in program]
        self.assertEqual(invented, [])

    def test_what_is_not_shown_is_still_there(self):
        self.assertEqual(sorted(NOT_SHOWN_PIECES - texts_of_sources()), [])


if __name__ == "__main__":
    unittest.main()
