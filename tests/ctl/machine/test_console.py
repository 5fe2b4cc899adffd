"""What tavrinctl writes on a console, read back from its screen."""
import unittest

from machine_case import AGENT, DISK, MachineCase, import_reg, wine
from tool import COMMAND, TOP, own_path

PROGRAM = own_path(COMMAND[-1])
ON_CONSOLE = TOP / "build/windows/tests/on_console.exe"


class Console(MachineCase):
    def shown(self, page, *words, code=0):
        """What the console shows, which keeps its code page."""
        first, second, *lines = wine(ON_CONSOLE, str(page), *words).stdout.splitlines()
        self.assertEqual((first, second), (f"exit code {code}", f"code page {page}"))
        return "\n".join(lines)

    def test_shows_every_letter_under_every_code_page(self):
        import_reg(f'[HKEY_LOCAL_MACHINE\\{AGENT}]\n"AgentDomain"="Zürich"\n')
        for page in (437, 1252, 65001):
            with self.subTest(page=page):
                self.assertRegex(self.shown(page, PROGRAM, "show", "Tavrin Agent"), r"(?m)AgentDomain.*Zürich$")
                self.assertIn('"Łódź"', self.shown(page, PROGRAM, "show", "Łódź", code=4))

    def test_the_console_reads_octets_by_its_code_page(self):
        """Otherwise the test above would show nothing."""
        (DISK / "city.txt").write_bytes("Zürich\r\n".encode())
        self.assertIn("Z├╝rich", self.shown(437, "cmd", "/c", "type", "C:\\city.txt"))


if __name__ == "__main__":
    unittest.main()
