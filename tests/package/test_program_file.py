"""What Windows reads from the finished program file: icon, version and manifest.

TAVRIN_PROGRAM names another file than the one that script/build made.
"""
import os
import pathlib
import re
import struct
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as xml

import resources

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAM = pathlib.Path(os.environ.get("TAVRIN_PROGRAM", TOP / "build/windows/tavrinconfig.exe"))

V1, V3 = "{urn:schemas-microsoft-com:asm.v1}", "{urn:schemas-microsoft-com:asm.v3}"
COMPATIBILITY = "{urn:schemas-microsoft-com:compatibility.v1}"
SETTINGS = "http://schemas.microsoft.com/SMI/"


def project_version():
    return re.search(r"^project\(\w+ VERSION ([\d.]+)", (TOP / "CMakeLists.txt").read_text(), re.MULTILINE)[1]


class ProgramFile(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.resources = resources.Resources(PROGRAM)


class Icon(ProgramFile):
    def test_has_every_size_that_windows_shows(self):
        sizes = [(p.width, p.height, p.bits) for p in self.resources.icon("tavrin")]
        self.assertEqual(sizes, [(size, size, 32) for size in (16, 20, 24, 32, 40, 48, 64, 256)])

    def test_pictures_are_as_large_as_the_list_says(self):
        for picture in self.resources.icon("tavrin")[:-1]:
            # A bitmap counts the rows of its mask too.
            self.assertEqual(struct.unpack_from("<III", picture.data), (40, picture.width, 2 * picture.height))

    def test_keeps_the_largest_as_png(self):
        data = self.resources.icon("tavrin")[-1].data
        self.assertEqual(data[:8], b"\x89PNG\r\n\x1a\n")
        self.assertEqual(struct.unpack_from(">II", data, 16), (256, 256))

    def test_is_drawn_from_the_vector_source(self):
        with tempfile.TemporaryDirectory() as folder:
            drawn = pathlib.Path(folder) / "drawn.ico"
            subprocess.run([TOP / "package/icon", drawn], check=True, stdout=subprocess.DEVNULL)
            self.assertEqual(drawn.read_bytes(), (TOP / "src/app/tavrin.ico").read_bytes(), "run package/icon")

    def test_is_the_one_icon(self):
        self.assertEqual([name for kind, name in self.resources.found if kind == resources.GROUP_ICON], ["TAVRIN"])


class Version(ProgramFile):
    def setUp(self):
        self.data = self.resources.only(resources.VERSION, 1)

    def test_numbers_are_the_projects(self):
        numbers = [int(part) for part in project_version().split(".")] + [0]
        start = self.data.index(struct.pack("<I", 0xFEEF04BD))
        _, _, file_high, file_low, product_high, product_low, mask, flags, system, kind = struct.unpack_from(
            "<10I", self.data, start)
        self.assertEqual([file_high >> 16, file_high & 0xFFFF, file_low >> 16, file_low & 0xFFFF], numbers)
        self.assertEqual((product_high, product_low), (file_high, file_low))
        self.assertEqual((mask, flags, system, kind), (0x3F, 0, 0x40004, 1))

    def test_texts(self):
        self.assertEqual(resources.version_texts(self.data), {
            "CompanyName": "The tavrinconfig authors",
            "FileDescription": "Tavrin Configuration",
            "FileVersion": project_version(),
            "InternalName": "tavrinconfig",
            "LegalCopyright": "Copyright (c) 2026 The tavrinconfig authors. MIT License.",
            "OriginalFilename": "tavrinconfig.exe",
            "ProductName": "Tavrin Agent",
            "ProductVersion": project_version(),
        })


class Manifest(ProgramFile):
    def setUp(self):
        self.root = xml.fromstring(self.resources.only(resources.MANIFEST, 1))

    def settings(self):
        """Name -> (year of its schema, value)."""
        found = {}
        for setting in self.root.find(f"{V3}application/{V3}windowsSettings"):
            space, name = setting.tag.lstrip("{").split("}")
            self.assertTrue(space.startswith(SETTINGS) and space.endswith("/WindowsSettings"), space)
            found[name] = (space[len(SETTINGS) :].split("/")[0], setting.text)
        return found

    def test_names_the_program_and_its_version(self):
        self.assertEqual(self.root.find(f"{V1}assemblyIdentity").attrib, {
            "type": "win32", "name": "Tavrin.Configuration", "version": project_version() + ".0",
            "processorArchitecture": "amd64"})

    def test_asks_for_administrator_rights(self):
        levels = [level.attrib for level in self.root.iter(f"{V3}requestedExecutionLevel")]
        self.assertEqual(levels, [{"level": "requireAdministrator", "uiAccess": "false"}])

    def test_asks_for_version_6_of_the_common_controls(self):
        needed = [identity.attrib for identity in self.root.iterfind(f"{V1}dependency/*/{V1}assemblyIdentity")]
        self.assertEqual(needed, [{
            "type": "win32", "name": "Microsoft.Windows.Common-Controls", "version": "6.0.0.0",
            "processorArchitecture": "amd64", "publicKeyToken": "6595b64144ccf1df", "language": "*"}])

    def test_names_windows_7_to_11(self):
        systems = [system.attrib["Id"] for system in self.root.iter(f"{COMPATIBILITY}supportedOS")]
        self.assertEqual(systems, [
            "{35138b9a-5d96-4fbd-8e2d-a2440225f93a}",  # 7
            "{4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38}",  # 8
            "{1f676c76-80e1-4239-95bb-83d0f6d0da78}",  # 8.1
            "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}",  # 10 and 11
        ])

    def test_leaves_enlarging_to_windows_and_the_code_page_alone(self):
        self.assertEqual(self.settings(), {
            "dpiAware": ("2005", "false"), "gdiScaling": ("2017", "true"), "longPathAware": ("2016", "true")})


if __name__ == "__main__":
    unittest.main()
