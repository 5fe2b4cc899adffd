"""Single changes of a source, each of which some test should notice."""
import dataclasses
import re

from source import Source

FLIPPED = {"==": ["!="], "!=": ["=="], "<": ["<=", ">"], "<=": ["<", ">"], ">": [">=", "<"], ">=": [">", "<"],
           "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"],
           "&": ["|"], "|": ["&"], "^": ["&"], "<<": [">>"], ">>": ["<<"],
           "+=": ["-="], "-=": ["+="], "|=": ["&="], "&=": ["|="], "<<=": [">>="], ">>=": ["<<="]}
COMPARISONS = {"==", "!=", "<", "<=", ">", ">=", "&&", "||"}
# With blanks around, as the formatter writes operators and neither templates nor references.
OPERATOR = re.compile(r"(?<=\s)(?:" + "|".join(sorted(map(re.escape, FLIPPED), key=len, reverse=True)) + r")(?=\s)")
NUMBER = re.compile(r"(?<![\w.])(0[xX][0-9A-Fa-f]+|\d+)(?=[uUlL]*\b)(?!\.)")
WORDS = {"true": "false", "false": "true", "TRUE": "FALSE", "FALSE": "TRUE"}
FLAGS = re.compile(r"\b[A-Za-z_][\w:]*(?:\s\|\s+[A-Za-z_][\w:]*)+|\b[A-Za-z_][\w:]*(?:\s+\|\s[A-Za-z_][\w:]*)+")
NAMED = re.compile(r"(?:(?<=[(,=])|(?<=\breturn)|(?<=\bcase))\s*\b(k[A-Z]\w*|[A-Z][A-Z0-9_]{2,})(?=\s*[,);:])")
IGNORED = re.compile(r"\bSendMessageA\([\w()]+, \w+, (0), (0)\)")
CONDITION = re.compile(r"\b(?:if|while) \(")
DECLARED = re.compile(r"^(?:const\s+)?[\w:]+(?:<[^<>]*>)?[\s*&]+(?:const\s+)?(\w+)\s*=\s")
SHORT = 12
NOT_SIMPLE = re.compile(r"(?:const|constexpr|static|static_assert|auto|using|typedef|class|struct|enum|template|"
                        r"friend|extern|goto|case|default|while)\b|[{}]")
DECLARATION = re.compile(r"[\w:]+(?:<.*>)?[\s*&]+(?:const\s+)?\w+\s*(?:[=;{(\[]|$)", re.S)


@dataclasses.dataclass(frozen=True)
class Change:
    """`start` to `end` of the text become `replacement`."""
    start: int
    end: int
    replacement: str
    kind: str

    def applied(self, text):
        return text[:self.start] + self.replacement + text[self.end:]

    def shown(self, source):
        """The lines concerned before and after, each as one line; with a short one goes what stands before it."""
        start, end = source.lines(self.start, self.end)
        while start > 0 and len(source.text[start:end].strip()) < SHORT:
            start = source.text.rfind("\n", 0, start - 1) + 1
        before = source.text[start:end]
        after = source.text[start:self.start] + self.replacement + source.text[self.end:end]
        return " ".join(before.split()), " ".join(after.split())


def conditions(source):
    for match in CONDITION.finditer(source.code):
        start, end = match.end(), source.closing(match.end() - 1)
        condition = source.text[start:end]
        declared = DECLARED.match(condition)
        if ";" in source.code[start:end]:
            start += source.code[start:end].rindex(";") + 2
            condition = source.text[start:end]
        elif declared:
            yield Change(end, end, f"; !({declared.group(1)})", "condition negated")
            continue
        if not re.fullmatch(r"![\w.:()>-]+", condition):  # where that is all, signs() does it
            yield Change(start, end, f"!({condition})", "condition negated")


def loops(source):
    for match in re.finditer(r"\bfor \(", source.code):
        parts = source.code[match.end():source.closing(match.end() - 1)].split(";")
        if len(parts) == 3 and parts[1].strip():
            start = match.end() + len(parts[0]) + 1
            end = start + len(parts[1])
            yield Change(start, end, f" !({source.text[start:end].strip()})", "condition negated")


def choices(source):
    for match in re.finditer(r"\s\?\s", source.code):
        colon = source.end_of_operand(match.end())
        end = source.end_of_operand(colon + 1)
        if source.code[colon:colon + 1] == ":":
            first, second = source.text[match.end():colon].strip(), source.text[colon + 1:end].strip()
            yield Change(match.end(), end, f"{second} : {first}", "choice swapped")


def operators(source):
    for match in OPERATOR.finditer(source.code):
        around = source.code[:match.start()].rstrip()[-1:] + source.code[match.end():].lstrip()[:1]
        if match.group() in "+-" and '"' in around:
            continue  # joined texts
        kind = "comparison" if match.group() in COMPARISONS else "arithmetic"
        for other in FLIPPED[match.group()]:
            yield Change(*match.span(), other, kind)


def signs(source):
    for match in re.finditer(r"\+\+|--", source.code):
        yield Change(*match.span(), "--" if match.group() == "++" else "++", "arithmetic")
    for match in re.finditer(r"!(?=[\w(:])", source.code):
        yield Change(*match.span(), "", "condition negated")
    for match in re.finditer(r"(?<=[(\s])(?:-(?=[\w(])|~(?=[a-z(]))", source.code):
        yield Change(*match.span(), "", "arithmetic")


def is_overwritten(source, start, end):
    """Whether the constant is the first value of a variable whose address is what is used of it next."""
    declared = re.search(r"\w[\s*&]+(\w+)\s*=\s*$", source.code[:start])
    used = declared and re.search(rf"(.)\b{declared.group(1)}\b", source.code[end:])
    return bool(used) and source.code[end] == ";" and used.group(1) == "&"


def ignored(source):
    """Where the zeros stand that a message carries for nothing."""
    return {match.start(zero) for match in IGNORED.finditer(source.code) for zero in (1, 2)}


def constants(source):
    zeros = ignored(source)
    for match in NUMBER.finditer(source.code):
        if re.search(r"(?:\)|\bconst|\boverride|\bnoexcept)\s*=\s*$", source.code[:match.start()]):
            continue  # a pure function
        if is_overwritten(source, *match.span()) or match.start() in zeros:
            continue
        text = source.text[match.start(1):match.end(1)].replace("'", "")
        value = int(text, 16 if text[:2].lower() == "0x" else 8 if text[0] == "0" else 10)
        for other in [value + 1] + ([value - 1] if value > 0 else []):
            yield Change(*match.span(), str(other), "constant")
    for match in re.finditer(r"\b(?:true|false|TRUE|FALSE)\b", source.code):
        if not is_overwritten(source, *match.span()):
            yield Change(*match.span(), WORDS[match.group()], "constant")
    for match in NAMED.finditer(source.code):
        if match.group(1) not in WORDS:
            yield Change(*match.span(1), f"({match.group(1)} + 1)", "constant")


def flags(source):
    for match in FLAGS.finditer(source.code):
        names = list(re.finditer(r"[\w:]+", match.group()))
        for index, name in enumerate(names):
            start = names[index - 1].end() if index > 0 else name.start()
            end = name.end() if index > 0 else names[1].start()
            yield Change(match.start() + start, match.start() + end, "", "flag removed")


def literals(source):
    for start, _ in source.strings:
        if not re.search(r"\bextern\s*$", source.code[:start]):
            yield Change(start + 1, start + 1, "~", "text altered")
    for start, end in source.characters:
        yield Change(start, end, "'~'" if source.text[start:end] != "'~'" else "'!'", "text altered")


def ends_switch(source, start, end):
    return bool(re.search(r"\b(?:case|default)\b[^{}]*$", source.code[:start]) and
                re.match(r"\s*}", source.code[end:]))


def removals(source):
    for start, end in source.statements():
        statement = source.code[start:end - 1]
        word = re.match(r"\w*", statement).group()
        if word == "return":
            value = statement[6:].strip()
            if value not in ("", "0", "{}", "nullptr", "false", "FALSE"):
                yield Change(start, end, "return {};", "return emptied")
            elif not value:
                yield Change(start, end, ";", "statement removed")
        elif word in ("break", "continue", "throw"):
            if word != "break" or not ends_switch(source, start, end):
                yield Change(start, end, ";", "statement removed")
        elif statement and not NOT_SIMPLE.match(statement) and not DECLARATION.match(statement):
            yield Change(start, end, ";", "statement removed")


def changes_of(text):
    """Every change of the text, by place."""
    source = Source(text)
    found = {change for kind in (conditions, loops, choices, operators, signs, constants, flags, literals, removals)
             for change in kind(source)}
    return sorted(found, key=lambda change: (change.start, change.end, change.replacement, change.kind))
