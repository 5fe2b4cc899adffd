"""test and scan against sample servers at a neighbour's; see tests/e2e/stage for what each does."""
import json
import unittest

from machine_case import WITHOUT_DISPLAY, MachineCase
from tool import start


class Test(MachineCase):
    def with_servers(self, servers, *words, code):
        self.run_tool("set", "Tavrin Agent", "ServerList=" + servers, "--restart", "never")
        return self.run_tool("test", *words, code=code)

    def test_accepted(self):
        result = self.with_servers("10.9.0.2,10.9.1.9:5000", "Tavrin Agent", code=0)
        self.assertEqual((result.out, result.err), ("10.9.0.2:5000  accepted\n10.9.1.9:5000  accepted\n", ""))

    def test_waits_no_longer_than_it_may(self):
        # This one answers after three seconds, and accepts.
        result = self.with_servers("10.9.0.2:5004", "--timeout", "1", code=6)
        self.assertIn("10.9.0.2:5004  failed: ", result.out)

    def test_each_line_leaves_at_once(self):
        self.run_tool("set", "Tavrin Agent", "ServerList=10.9.0.2,10.9.0.2:5004", "--restart", "never")
        with start("test", "Tavrin Agent", env=WITHOUT_DISPLAY) as process:
            process.stdin.close()
            self.assertEqual(process.stdout.readline(), b"10.9.0.2:5000  accepted\n")
            self.assertIsNone(process.poll(), "the slow server has answered")
            self.assertEqual(process.stdout.readline(), b"10.9.0.2:5004  accepted\n")

    def test_names_are_looked_up(self):
        self.assertRegex(self.with_servers("localhost:1", "--timeout", "30", code=6).out,
                         r"^localhost:1  failed: Error connecting: ")

class Scan(MachineCase):
    def test_finds_the_servers(self):
        self.assertEqual(sorted(self.run_tool("scan").out.split()), ["10.9.0.2", "10.9.1.9"])
        found = json.loads(self.run_tool("scan", "--port", "5000", "--json").out)
        self.assertEqual((found["schema"], found["port"], sorted(found["servers"])), (1, 5000, ["10.9.0.2", "10.9.1.9"]))

if __name__ == "__main__":
    unittest.main()
