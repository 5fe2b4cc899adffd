"""What the finished program file says about itself: how Windows protects it, what it imports, what it gives away.

TAVRIN_PROGRAM names another file than the one that script/build made.
"""
import os
import pathlib
import re
import unittest

import pe_file

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAM = pathlib.Path(os.environ.get("TAVRIN_PROGRAM", TOP / "build/windows/tavrinconfig.exe"))

# All of Windows itself. The first group is loaded from the system's folder alone, whatever lies beside the
# program: they are known DLLs. The manifest says which comctl32 is meant. The last group is loaded only
# after the program has closed its own folder to the search: iphlpapi.dll since it is looked for by name.
KNOWN_DLLS = {"advapi32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "user32.dll", "ws2_32.dll"}
MANIFEST_DLLS = {"comctl32.dll"}
LATE_DLLS = {"comdlg32.dll", "iphlpapi.dll", "shell32.dll"}


def program_source():
    """The window's source without comments and texts; tavrinctl has calls of its own."""
    source = ""
    for path in sorted((TOP / "src").rglob("*")):
        if path.suffix in (".cpp", ".h") and not {"substitute", "ctl"} & set(path.parts):
            source += path.read_text()
    return re.sub(r'//[^\n]*|"(?:[^"\\\n]|\\.)*"', "", source)


def reasons():
    """(DLL, function) -> why it is imported though the program's source does not name it."""
    found = {}
    for line in (pathlib.Path(__file__).parent / "imports.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            dll, function, reason = line.split(None, 2)
            found[dll, function] = reason
    return found


class Program(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.file = pe_file.PeFile(PROGRAM)

    def test_is_loaded_at_addresses_that_nobody_can_guess(self):
        wanted = pe_file.DYNAMIC_BASE | pe_file.HIGH_ENTROPY_VA
        self.assertEqual(self.file.dll_characteristics & wanted, wanted)
        self.assertFalse(self.file.characteristics & pe_file.RELOCS_STRIPPED)
        # Vtables and the like: without them the file could not be moved, whatever its flags say.
        self.assertGreater(len(self.file.relocated_addresses()), 500)

    def test_relocations_lie_in_sections(self):
        for address in self.file.relocated_addresses():
            self.assertTrue(any(s.address <= address <= s.address + s.size - 8 for s in self.file.sections), address)

    def test_runs_no_data(self):
        self.assertTrue(self.file.dll_characteristics & pe_file.NX_COMPAT)
        both = pe_file.EXECUTABLE | pe_file.WRITABLE
        self.assertEqual([s.name for s in self.file.sections if s.characteristics & both == both], [])

    def test_imports_windows_own_dlls_alone(self):
        self.assertEqual({dll for dll, _ in self.file.imports()}, KNOWN_DLLS | MANIFEST_DLLS)

    def test_names_no_other_dll(self):
        named = {name.decode().lower() for name in re.findall(rb"[\w.-]+\.dll\b", self.file.bytes, re.IGNORECASE)}
        self.assertEqual(named, KNOWN_DLLS | MANIFEST_DLLS | LATE_DLLS)

    def test_imports_nothing_without_need(self):
        source, known = program_source(), reasons()
        needless = [f"{dll} {function}" for dll, function in self.file.imports()
                    if (dll, function) not in known and not re.search(rf"\b{re.escape(function)}\b", source)]
        self.assertEqual(needless, [], "neither called in src/ nor in imports.txt")

    def test_reasons_are_of_use(self):
        source, imports = program_source(), set(self.file.imports())
        for dll, function in reasons():
            self.assertIn((dll, function), imports, "in imports.txt and not imported")
            called = re.search(rf"\b{re.escape(function)}\b", source)
            self.assertIsNone(called, f"{dll} {function} is in imports.txt and called in src/")

    def test_gives_no_folder_away(self):
        texts = [self.file.bytes, self.file.bytes.replace(b"\0", b"")]  # the latter for texts of 16 bits
        for text in texts:
            self.assertNotIn(str(TOP).encode(), text)
            self.assertEqual(re.findall(rb"(?<![\w/:.])/(?:[\w.+-]+/)+[\w.+-]*", text), [])
            self.assertEqual(re.findall(rb"\b[A-Za-z]:[\\/][\w.\\/-]{3,}", text), [])

    def test_carries_nothing_for_debuggers(self):
        self.assertEqual(self.file.directory[pe_file.DEBUG], (0, 0))
        self.assertEqual(self.file.symbol_table, 0)
        self.assertEqual([s.name for s in self.file.sections if s.name.startswith((".debug", "/"))], [])

    def test_does_not_tell_when_it_was_built(self):
        self.assertEqual(self.file.timestamp, 0)


if __name__ == "__main__":
    unittest.main()
