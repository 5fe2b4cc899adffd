"""Rules for policy templates that most schemas do not contain, but that the programs that read templates enforce."""
import re
import xml.etree.ElementTree as xml

SPACE = "{http://schemas.microsoft.com/GroupPolicy/2006/07/PolicyDefinitions}"
NAME = re.compile(r"^[A-Za-z0-9_]+$")
REVISION = re.compile(r"^\d{1,4}\.\d{1,5}$")
TOP = ["policyNamespaces", "resources", "supportedOn", "categories", "policies"]
POLICY = ["parentCategory", "supportedOn", "enabledValue", "disabledValue", "elements"]
CONTROLS = {"text": "textBox", "decimal": "decimalTextBox", "enum": "dropdownList", "boolean": "checkBox"}


def names(element):
    return [child.tag.removeprefix(SPACE) for child in element]


def in_order(found, order):
    return [order.index(name) for name in found] == sorted(order.index(name) for name in found)


class Template:
    """A template's two files; `problems` says what is wrong with them."""

    def __init__(self, admx, adml):
        self.octets = admx, adml
        self.admx, self.adml = xml.fromstring(admx), xml.fromstring(adml)
        self.policies = self.admx.findall(f"{SPACE}policies/{SPACE}policy")
        self.categories = self.admx.findall(f"{SPACE}categories/{SPACE}category")
        self.strings = {each.get("id"): each.text or "" for each in self.adml.iter(SPACE + "string")}
        self.presentations = {each.get("id"): each for each in self.adml.iter(SPACE + "presentation")}

    def problems(self):
        return [*self.heads(), *self.names(), *self.references(), *(each for policy in self.policies
                                                                      for each in self.policy(policy))]

    def heads(self):
        for octets in self.octets:
            if not octets.startswith(b'<?xml version="1.0" encoding="utf-8"?>\n'):
                yield "no declaration of UTF-8 at the start"
            octets.decode()
        if self.admx.tag != SPACE + "policyDefinitions" or self.adml.tag != SPACE + "policyDefinitionResources":
            yield "a wrong root"
        if names(self.admx) != TOP:
            yield f"parts {names(self.admx)}"
        if names(self.adml) != ["displayName", "description", "resources"]:
            yield f"parts {names(self.adml)}"
        if names(self.adml[2]) != ["stringTable", *(["presentationTable"] if self.presentations else [])]:
            yield f"tables {names(self.adml[2])}"
        if not self.policies:
            yield "no policy"
        least = self.admx.find(SPACE + "resources").get("minRequiredRevision")
        for revision in (self.admx.get("revision"), self.adml.get("revision"), least):
            if not REVISION.match(revision):
                yield f"revision {revision}"
        own = self.adml.get("revision").split(".")
        if own[0] != least.split(".")[0] or int(own[1]) < int(least.split(".")[1]):
            yield "the texts are older than the policies want them"
        if self.admx.get("schemaVersion") != "1.0" or self.adml.get("schemaVersion") != "1.0":
            yield "a wrong schema version"

    def names(self):
        definitions = [each.get("name") for each in self.admx.iter(SPACE + "definition")]
        strings = [each.get("id") for each in self.adml.iter(SPACE + "string")]
        elements = [each.get("id") for each in self.admx.iter() if each.get("id")]
        for kind in ([each.get("name") for each in self.policies], [each.get("name") for each in self.categories],
                     definitions, strings, [each.get("id") for each in self.adml.iter(SPACE + "presentation")], elements):
            yield from (f"name {name!r}" for name in kind if not NAME.match(name))
            if len({name.lower() for name in kind}) != len(kind):
                yield f"a name twice among {kind}"
        if len(self.admx.findall(f".//{SPACE}using")) != 0:
            yield "it uses another template"

    def references(self):
        categories = {each.get("name") for each in self.categories}
        definitions = {each.get("name") for each in self.admx.iter(SPACE + "definition")}
        used = set()
        for element in self.admx.iter():
            for value in element.attrib.values():
                match = re.fullmatch(r"\$\((string|presentation)\.(.+)\)", value)
                if match and match[2] not in (self.strings if match[1] == "string" else self.presentations):
                    yield f"reference {value}"
                if match:
                    used.add(match[2])
                elif "$(" in value:
                    yield f"reference {value}"
            if element.tag == SPACE + "parentCategory" and element.get("ref") not in categories:
                yield f"category {element.get('ref')}"
            if element.tag == SPACE + "supportedOn" and element.get("ref", "") not in definitions | {""}:
                yield f"supported on {element.get('ref')}"
        if used != set(self.strings) | set(self.presentations):
            yield f"unused: {set(self.strings) | set(self.presentations) - used}"

    def policy(self, policy):
        name = policy.get("name")
        if not in_order(names(policy), POLICY):
            yield f"{name}: order {names(policy)}"
        if names(policy)[:2] != ["parentCategory", "supportedOn"]:
            yield f"{name}: no category or support"
        if policy.get("class") != "Machine" or not policy.get("key") or policy.get("key").startswith(("\\", "HKEY")):
            yield f"{name}: class or key"
        elements = policy.find(SPACE + "elements")
        own = policy.get("valueName")
        if own == "":
            yield f"{name}: a value without a name"
        if own is not None and policy.find(f"{SPACE}enabledValue/{SPACE}string") is None:
            yield f"{name}: its own value would be a number"
        if (own is None) != (elements is not None):
            yield f"{name}: neither a value nor elements"
        yield from self.controls(policy, [] if elements is None else list(elements))

    def controls(self, policy, elements):
        name = policy.get("name")
        presentation = self.presentations.get((policy.get("presentation") or "")[len("$(presentation."):-1])
        controls = {} if presentation is None else {each.get("refId"): each for each in presentation}
        if {each.get("id") for each in elements} != set(controls):
            yield f"{name}: elements and controls differ"
        for element in elements:
            kind = element.tag.removeprefix(SPACE)
            if controls[element.get("id")].tag != SPACE + CONTROLS[kind]:
                yield f"{name}: a {kind} has another's control"
            yield from self.element(name, kind, element, controls[element.get("id")])

    def element(self, name, kind, element, control):
        if not element.get("valueName"):
            yield f"{name}: an element without a value"
        if kind == "text" and (element.get("maxLength") != "1023" or names(control)[0] != "label"):
            yield f"{name}: a text's limit or label"
        if kind == "decimal":
            if element.get("storeAsText") != "true":
                yield f"{name}: written as a number"
            if not {"minValue", "maxValue"} <= set(element.attrib) or control.get("defaultValue") is None:
                yield f"{name}: a number's range or default"
            elif not 0 <= int(element.get("minValue")) <= int(element.get("maxValue")) <= 4294967295:
                yield f"{name}: a number's range"
        if kind == "enum":
            items = [each.findtext(f"{SPACE}value/{SPACE}string") for each in element]
            if not items or None in items or len(set(items)) != len(items) or any(len(each) > 255 for each in items):
                yield f"{name}: a list's items"
            if control.get("noSort") != "true" or not 0 <= int(control.get("defaultItem")) < len(items):
                yield f"{name}: a list's order or default"
