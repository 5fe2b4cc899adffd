"""The JSON Schemas of examples/fleet: they are valid, they know the examples, and they refuse what the program does."""
import json
import re
import unittest

import jsonschema

from tool import TOP

SCHEMAS = TOP / "examples/fleet/schemas"
GUIDE = (TOP / "docs/tavrinctl.md").read_text()


def schema(name):
    return json.loads((SCHEMAS / f"{name}.schema.json").read_text())


def complaints(name, instance):
    return [each.message for each in jsonschema.Draft202012Validator(schema(name)).iter_errors(instance)]


class Schemas(unittest.TestCase):
    def test_are_schemas(self):
        for name in ("state", "report"):
            jsonschema.Draft202012Validator.check_schema(schema(name))

    def test_know_the_examples(self):
        self.assertEqual(complaints("state", json.loads((TOP / "examples/fleet/agent.json").read_text())), [])
        state, report = (json.loads(each) for each in re.findall(r"^```json\n(.*?)^```$", GUIDE, re.M | re.S)[:2])
        self.assertEqual(complaints("state", state), [])
        self.assertEqual(complaints("report", report), [])

    def test_refuse_what_apply_refuses(self):
        def state(**members):
            return {"schema": 1, "configurations": {"A": {"values": {}, **members}}}

        self.assertEqual(complaints("state", state()), [])
        for wrong in (state(valeus={}), state(values={"V": []}), state(values={"V": 1.5}), state(values={"V": {}}),
                      state(values={"V": {"value": "1", "extra": 2}}), {"schema": 2, "configurations": {}},
                      {"configurations": {}}, {"schema": 1}, []):
            self.assertNotEqual(complaints("state", wrong), [], wrong)


if __name__ == "__main__":
    unittest.main()
