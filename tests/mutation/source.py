"""A C++ source as far as changes to it need: which characters are code, and where statements begin and end."""
import re

TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'|^[ \t]*#(?:\\\n|[^\n])*'
                   r"|__attribute__\(\((?:[^()]|\([^()]*\))*\)\)", re.S | re.M)
# A digit separator is no quote: what begins like a character and follows a digit is left alone.
SEPARATOR = re.compile(r"(?<=[0-9A-Fa-f])'(?=[0-9A-Fa-f])")
DECLARES_SCOPE = re.compile(r"\b(?:class|struct|union|enum|namespace)\b[^()]*$")
LABEL = re.compile(r"\b(?:case\s[\w:']+|default)$")
BEFORE_STATEMENT = re.compile(r"(?:\b(?:if|while|for|switch)\s*(?:constexpr\s*)?|\bcatch\s*)$")


class Source:
    """`code` is the text with comments, directives and the insides of literals blanked out, character by character;
    `strings` and `characters` are the places of the literals."""

    def __init__(self, text):
        self.text = text
        self.strings, self.characters = [], []
        self.code = TOKEN.sub(self._blank, SEPARATOR.sub("0", text))

    def _blank(self, match):
        found = match.group()
        if found[0] == '"':
            self.strings.append(match.span())
        elif found[0] == "'":
            self.characters.append(match.span())
        else:
            return re.sub(r"[^\n]", " ", found)
        return found[0] + "S" * (len(found) - 2) + found[0]

    def line(self, place):
        return self.text.count("\n", 0, place) + 1

    def lines(self, start, end):
        """Start and end of the whole lines that the piece touches."""
        start = self.text.rfind("\n", 0, start) + 1
        end = self.text.find("\n", end)
        return start, len(self.text) if end < 0 else end

    def closing(self, opening):
        """The place of the bracket that closes the one at `opening`."""
        depth = 0
        for place in range(opening, len(self.code)):
            if self.code[place] in "([{":
                depth += 1
            elif self.code[place] in ")]}":
                depth -= 1
                if depth == 0:
                    return place
        return len(self.code)

    def end_of_operand(self, place):
        """Where the expression that begins at `place` ends: before a comma, a semicolon, a colon or a bracket that
        was opened before it."""
        while place < len(self.code) and self.code[place] not in ",;)]}:":
            if self.code.startswith("::", place + 1):
                place += 3
                continue
            place = self.closing(place) + 1 if self.code[place] in "([{" else place + 1
        return place

    def statements(self):
        """Start and end, the semicolon included, of every simple statement in a function's body."""
        stack, start = [("scope", 0)], 0
        for place, character in enumerate(self.code):
            if character == "(":
                stack.append(("head" if BEFORE_STATEMENT.search(self.code[:place][-40:]) else "round", start))
            elif character == ")":
                kind, outer = stack.pop()
                # Behind a lambda among the arguments goes on the statement around it.
                start = place + 1 if kind == "head" else outer
            elif character == "{":
                stack.append((self._kind_of_brace(start, place), start))
                if stack[-1][0] != "value":
                    start = place + 1
            elif character == "}":
                if stack.pop()[0] != "value":
                    start = place + 1
            elif character == ";" and stack[-1][0] != "head":
                if stack[-1][0] == "body":
                    yield self._begin(start, place), place + 1
                start = place + 1
            elif character == ":" and stack[-1][0] == "body" and LABEL.search(self.code[start:place]):
                if self.code[place + 1] != ":":
                    start = place + 1

    def _kind_of_brace(self, start, place):
        before = self.code[start:place].rstrip()
        if DECLARES_SCOPE.search(before):
            return "scope"
        # A body follows the brackets of its parameters or head, a lambda's its own, or a word such as `else`.
        opens_body = before == "" or before[-1] in ")]" or re.search(
            r"\b(?:else|do|try|const|noexcept|override)$|->\s*[\w:*& ]+$", before)
        return "body" if opens_body else "value"

    def _begin(self, start, end):
        blank = re.match(r"\s*(?:else\b\s*|do\b\s*)?", self.code[start:end])
        return start + blank.end()
