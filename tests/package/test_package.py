"""What script/package makes: contents, checksums, bill of materials, the same bytes again, signatures."""
import hashlib
import json
import pathlib
import re
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as xml
import zipfile

import packing
import resources

EPOCH = "1700000001"  # 2023-11-14 22:13:21 UTC
NAME = "tavrinconfig-9.8.7-windows-x64"


def debian_version(name):
    return subprocess.check_output(["dpkg-query", "-W", "-f", "${Version}", name], text=True)


def setUpModule():
    temporary = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(temporary.cleanup)
    Packed.folder = pathlib.Path(temporary.name)
    packing.pack(Packed.folder, "--version", "9.8.7", SOURCE_DATE_EPOCH=EPOCH)


class Packed(unittest.TestCase):
    folder = None

    def file(self, ending):
        return self.folder / (NAME + ending)


class Package(Packed):
    def test_files(self):
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()),
                         ["SHA256SUMS", NAME + "-setup.exe", NAME + ".spdx.json", NAME + ".zip"])

    def test_checksums(self):
        wanted = "".join(f"{hashlib.sha256(self.file(ending).read_bytes()).hexdigest()}  {NAME}{ending}\n"
                         for ending in ("-setup.exe", ".spdx.json", ".zip"))
        self.assertEqual((self.folder / "SHA256SUMS").read_text(), wanted)

    def test_is_the_same_elsewhere_later_and_for_another_person(self):
        with tempfile.TemporaryDirectory() as folder:
            again = pathlib.Path(folder) / "a folder"
            packing.pack(again, "--version", "9.8.7", umask=0o077, SOURCE_DATE_EPOCH=EPOCH, TZ="Asia/Tokyo",
                         LC_ALL="C.UTF-8")
            for path in self.folder.iterdir():
                self.assertEqual((again / path.name).read_bytes(), path.read_bytes(), path.name)

    def test_installer_says_what_it_is_and_asks_for_administrator_rights(self):
        found = resources.Resources(self.file("-setup.exe"))
        texts = resources.version_texts(found.only(resources.VERSION, 1))
        self.assertEqual(texts["FileDescription"], "Installs Tavrin Configuration")
        self.assertEqual(texts["ProductVersion"], "9.8.7")
        levels = xml.fromstring(found.only(resources.MANIFEST, 1)).iter(
            "{urn:schemas-microsoft-com:asm.v3}requestedExecutionLevel")
        self.assertEqual([level.attrib["level"] for level in levels], ["requireAdministrator"])


class Archive(Packed):
    def setUp(self):
        self.archive = zipfile.ZipFile(self.file(".zip"))
        self.addCleanup(self.archive.close)

    def test_contents(self):
        names = self.archive.namelist()
        self.assertEqual(names, sorted(names))
        self.assertEqual([name for name in names if "/pictures/" not in name], [
            f"tavrinconfig-9.8.7/{file}" for file in (
                "LICENSE-runtime.txt", "LICENSE.txt", "guides/administrator.md", "guides/protocol.md",
                "guides/spec-files.md", "tavrinconfig.exe")])

    def test_program_is_the_built_one(self):
        self.assertEqual(self.archive.read("tavrinconfig-9.8.7/tavrinconfig.exe"), packing.BUILT.read_bytes())

    def test_times_and_rights_are_fixed(self):
        for entry in self.archive.infolist():
            self.assertEqual(entry.date_time, (2023, 11, 14, 22, 13, 20), entry.filename)  # even seconds only
            self.assertEqual(entry.external_attr >> 16, 0o644, entry.filename)

    def test_guides_lead_to_what_is_packed(self):
        names, links = self.archive.namelist(), 0
        for guide in (name for name in names if name.endswith(".md")):
            for link in re.findall(r"\]\(([^)#]+)[^)]*\)", self.archive.read(guide).decode()):
                links += 1
                self.assertTrue(":" in link or f"tavrinconfig-9.8.7/guides/{link}" in names, f"{guide}: {link}")
        self.assertGreater(links, 10)


class BillOfMaterials(Packed):
    def setUp(self):
        self.bill = json.loads(self.file(".spdx.json").read_text())
        self.packages = {package["name"]: package for package in self.bill["packages"]}

    def test_head(self):
        head = {key: self.bill[key] for key in ("spdxVersion", "dataLicense", "SPDXID", "name")}
        self.assertEqual(head, {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
                                "name": "tavrinconfig-9.8.7"})
        self.assertEqual(self.bill["creationInfo"]["created"], "2023-11-14T22:13:21Z")
        self.assertRegex(self.bill["documentNamespace"], r"^urn:sha256:[0-9a-f]{64}$")

    def test_parts_with_licences_and_versions(self):
        found = {name: (part["licenseDeclared"], part["versionInfo"]) for name, part in self.packages.items()}
        self.assertEqual(found, {
            "tavrinconfig.exe": ("MIT", "9.8.7"),
            NAME + ".zip": ("MIT", "9.8.7"),
            NAME + "-setup.exe": ("MIT", "9.8.7"),
            "GCC runtime libraries": ("GPL-3.0-or-later WITH GCC-exception-3.1",
                                      debian_version("gcc-mingw-w64-x86-64-win32")),
            "MinGW-w64 runtime": ("ZPL-2.1", debian_version("mingw-w64-x86-64-dev")),
            "NSIS installer stub": ("Zlib AND CPL-1.0", debian_version("nsis-common")),
        })

    def test_names_every_library_that_was_linked(self):
        text = packing.BUILT.with_suffix(".map").read_text(errors="replace")
        linked = {pathlib.Path(file).name for file in re.findall(r"^(/\S+\.a)\(", text, re.MULTILINE)}
        self.assertLess({"libstdc++.a", "libgcc.a", "libmingw32.a", "libmsvcrt.a"}, linked)
        named = " ".join(package.get("comment", "") for package in self.bill["packages"])
        self.assertEqual([file for file in sorted(linked) if file not in named], [])

    def test_refuses_a_library_of_unknown_origin(self):
        with tempfile.NamedTemporaryFile("w", suffix=".map") as linker_map:
            linker_map.write("\n/opt/other/libother.a(x.o)\n   x.o (y)\n\nDiscarded input sections\n")
            linker_map.flush()
            result = subprocess.run(["python3", packing.TOP / "package/materials.py", "9.8.7", packing.BUILT,
                                     linker_map.name], check=False, capture_output=True, text=True,
                                    env={"SOURCE_DATE_EPOCH": EPOCH, "PATH": "/usr/bin:/bin"})
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertEqual(result.stderr, "materials: /opt/other/libother.a was linked and belongs to no part that is "
                                        "known here\n")

    def test_checksums(self):
        files = {"tavrinconfig.exe": packing.BUILT, NAME + ".zip": self.file(".zip"),
                 NAME + "-setup.exe": self.file("-setup.exe")}
        for name, path in files.items():
            self.assertEqual(self.packages[name]["checksums"], [
                {"algorithm": "SHA256", "checksumValue": hashlib.sha256(path.read_bytes()).hexdigest()}])

    def test_relations_lead_to_what_is_named(self):
        known = {"SPDXRef-DOCUMENT"} | {package["SPDXID"] for package in self.bill["packages"]}
        related = set()
        for relation in self.bill["relationships"]:
            related |= {relation["spdxElementId"], relation["relatedSpdxElement"]}
        self.assertEqual(related, known)


class Signature(unittest.TestCase):
    """Without a time stamp: a time stamp server is on a real network."""

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        self.sign = packing.make_certificate(self.folder)
        self.output = packing.pack(self.folder / "packed", "--version", "9.8.7", **self.sign)

    def is_signed(self, file):
        return packing.is_signed(file, self.sign["TAVRIN_SIGN_CERTIFICATE"])

    def test_holds_for_program_and_installer_and_for_what_was_signed_alone(self):
        with zipfile.ZipFile(self.folder / "packed" / (NAME + ".zip")) as archive:
            program = pathlib.Path(archive.extract("tavrinconfig-9.8.7/tavrinconfig.exe", self.folder))
        installer = self.folder / "packed" / (NAME + "-setup.exe")
        self.assertTrue(self.is_signed(program))
        self.assertTrue(self.is_signed(installer))
        self.assertFalse(self.is_signed(packing.BUILT))
        changed = bytearray(program.read_bytes())
        changed[0x1000] ^= 1
        program.write_bytes(changed)
        self.assertFalse(self.is_signed(program))

    def test_works_in_a_folder_with_a_blank_in_its_name(self):
        clone = self.folder / "a clone"
        clone.symlink_to(packing.TOP)
        packing.pack(self.folder / "again", "--version", "9.8.7", top=clone, **self.sign)
        self.assertTrue(self.is_signed(self.folder / "again" / (NAME + "-setup.exe")))

    def test_says_that_the_time_stamp_is_missing(self):
        self.assertIn("sign: no time stamp: TAVRIN_SIGN_TIMESTAMP is not set\n", self.output)


if __name__ == "__main__":
    unittest.main()
