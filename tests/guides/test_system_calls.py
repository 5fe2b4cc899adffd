"""Holds docs/system-calls.md against the built program and the tests: every Windows function that the program
calls is on it, each with tests that exist and, where the table says so, run on both platforms."""
import pathlib
import re
import subprocess
import unittest

TOP = pathlib.Path(__file__).resolve().parents[2]
WINDOWS = TOP / "build" / "windows"
TOOLS = "x86_64-w64-mingw32-"
# The compiler's runtime is called by its standard names, not as Windows.
RUNTIME = {"msvcrt.dll"}
WINE_ONLY = {"e2e"}


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def imports():
    """The functions that the program file imports from Windows' own DLLs."""
    found, dll = set(), ""
    for line in output(TOOLS + "objdump", "-p", str(WINDOWS / "tavrinconfig.exe")).splitlines():
        if "DLL Name:" in line:
            dll = line.split()[-1]
        elif match := re.match(r"\t[0-9a-f]+\t\s*\d+\s+(\w+)", line):
            if dll not in RUNTIME:
                found.add(match[1])
    # What is loaded with its first call is not on that list.
    for definition in (TOP / "cmake").glob("*.def"):
        found.update(definition.read_text().split("EXPORTS")[1].split())
    return found


def wanted_by_our_code():
    """The names that the objects of our own sources leave for the linker."""
    objects = [WINDOWS / "libtavrin.a", *WINDOWS.glob("CMakeFiles/tavrinconfig.dir/src/app/*.obj")]
    names = set()
    for file in objects:
        if not file.name.endswith(".rc.obj"):
            names.update(re.findall(r" U (\w+)", output(TOOLS + "nm", "-u", str(file))))
    return {name.removeprefix("__imp_") for name in names}


def table():
    """Function, tests and where they ran, a row each."""
    text = (TOP / "docs" / "system-calls.md").read_text()
    rows = re.findall(r"^\| (\w+) \| [^|]+ \| ([^|]+) \| ([^|]+) \|$", text, re.MULTILINE)
    return [row for row in rows if row[0] != "function"]


def tests():
    """Each test's name with the file it stands in."""
    found = {}
    for file in (TOP / "tests").glob("*/*_test.cpp"):
        for suite, name in re.findall(r"^TEST(?:_F|_P)?\((\w+), (\w+)\)", file.read_text(), re.MULTILINE):
            found[f"{suite}.{name}"] = file
    return found


class SystemCalls(unittest.TestCase):
    def test_every_called_function_is_on_the_table_once(self):
        listed = [row[0] for row in table()]
        self.assertEqual(sorted(listed), sorted(imports() & wanted_by_our_code()))

    def test_every_test_exists_and_ran_where_the_table_says(self):
        known = tests()
        for function, names, where in table():
            for name in names.split(", "):
                with self.subTest(function=function, test=name):
                    file = known[name]
                    one_sided = file.parent.name in WINE_ONLY or file.name.endswith("_native_test.cpp")
                    self.assertEqual(where == "both", not one_sided)

    def test_every_test_of_the_platform_calls_its_function(self):
        known = tests()
        for function, names, _ in table():
            files = [known[name] for name in names.split(", ")]
            if function.startswith("__") or any(file.parent.name != "platform" for file in files):
                continue
            with self.subTest(function=function):
                self.assertTrue(any(re.search(rf"\b{function}\(", file.read_text()) for file in files))


if __name__ == "__main__":
    unittest.main()
