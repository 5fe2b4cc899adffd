"""What script/package makes: contents, checksums, bill of materials, the same bytes again, signatures."""
import hashlib
import html.parser
import importlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
import zipfile

import packing
import resources
import windows_installer

EPOCH = "1700000001"  # 2023-11-14 22:13:21 UTC
NAME = "tavrinconfig-9.8.7-windows-x64"
PROGRAMS = ["tavrinconfig.exe", "tavrinctl.exe"]
CHAPTERS = ["docs/administrator.md", "docs/settings-without-the-window.md", "docs/tavrinctl.md", "docs/spec-files.md",
            "docs/protocol.md", "CHANGELOG.md", "SECURITY.md"]
FLEET = sorted(path.relative_to(packing.TOP).as_posix() for path in (packing.TOP / "examples/fleet").rglob("*")
               if path.is_file() and path.name != "tavrin.dsc.resource.json")
CONTENTS = ["LICENSE-runtime.txt", "LICENSE.txt", "examples/agent.spec", *FLEET, "guide.html",
            "tavrin.dsc.resource.json", "tavrinconfig.exe", "tavrinctl.exe"]


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
                         ["SHA256SUMS", NAME + "-setup.exe", NAME + ".msi", NAME + ".spdx.json", NAME + ".zip"])

    def test_checksums(self):
        wanted = "".join(f"{hashlib.sha256(self.file(ending).read_bytes()).hexdigest()}  {NAME}{ending}\n"
                         for ending in ("-setup.exe", ".msi", ".spdx.json", ".zip"))
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


class Setup(Packed):
    """What keeps a setup that runs as SYSTEM from others."""

    def test_uses_no_plug_in(self):
        for name in ("installer.nsi", "installer_path.nsh"):
            self.assertNotIn("::", (packing.TOP / "package" / name).read_text())

    def test_is_not_made_by_a_weak_nsis(self):
        with tempfile.TemporaryDirectory() as folder:
            query = pathlib.Path(folder) / "dpkg-query"
            query.write_text("#!/bin/sh\necho 3.08-3\n")
            query.chmod(0o755)
            with self.assertRaisesRegex(RuntimeError, r"^package: the setup needs NSIS 3\.08-3\+deb12u1 or newer\n$"):
                packing.pack(pathlib.Path(folder) / "out", PATH=f"{folder}:{os.environ['PATH']}")


class Archive(Packed):
    def setUp(self):
        self.archive = zipfile.ZipFile(self.file(".zip"))
        self.addCleanup(self.archive.close)

    def test_contents(self):
        names = self.archive.namelist()
        self.assertEqual(names, sorted(names))
        self.assertEqual(names, [f"tavrinconfig-9.8.7/{file}" for file in CONTENTS])

    def test_programs_are_the_built_ones(self):
        for name in PROGRAMS:
            packed = self.archive.read(f"tavrinconfig-9.8.7/{name}")
            self.assertEqual(packed, (packing.BUILT.parent / name).read_bytes())

    def test_manifest_of_the_resource_has_the_packages_version(self):
        packed = json.loads(self.archive.read("tavrinconfig-9.8.7/tavrin.dsc.resource.json"))
        sample = json.loads((packing.TOP / "examples/fleet/tavrin.dsc.resource.json").read_text())
        self.assertEqual(packed, {**sample, "version": "9.8.7"})

    def test_licences_of_what_is_in_the_programs(self):
        text = self.archive.read("tavrinconfig-9.8.7/LICENSE-runtime.txt").decode()
        for owner in ("mingw-w64 project", "Niels Lohmann"):
            self.assertIn(owner, text)

    def test_licences_can_be_read_in_any_editor_of_windows(self):
        for name in ("LICENSE.txt", "LICENSE-runtime.txt"):
            text = self.archive.read(f"tavrinconfig-9.8.7/{name}")
            self.assertEqual((text.count(b"\r"), text.count(b"\n")), (text.count(b"\r\n"),) * 2, name)
            self.assertGreater(text.count(b"\n"), 15)

    def test_samples_are_those_of_the_sources(self):
        for name in ("examples/agent.spec", *FLEET):
            source = "examples/spec_files/agent.spec" if name == "examples/agent.spec" else name
            self.assertEqual(self.archive.read(f"tavrinconfig-9.8.7/{name}"), (packing.TOP / source).read_bytes())

    def test_times_and_rights_are_fixed(self):
        for entry in self.archive.infolist():
            self.assertEqual(entry.date_time, (2023, 11, 14, 22, 13, 20), entry.filename)  # even seconds only
            self.assertEqual(entry.external_attr >> 16, 0o644, entry.filename)


class Page(html.parser.HTMLParser):
    """What a page refers to, and its places."""

    def __init__(self, text):
        super().__init__()
        self.places, self.links, self.loaded, self.words = [], [], [], []
        self.open = []
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        if tag not in ("meta", "img", "br", "hr", "input", "wbr"):
            self.open.append(tag)
        self.places += [attrs["id"]] if "id" in attrs else []
        self.links += [attrs["href"]] if tag == "a" else []
        self.loaded += [attrs[name] for name in ("src", "href") if name in attrs and tag != "a"]

    def handle_startendtag(self, tag, attrs):
        self.handle_starttag(tag, attrs)

    def handle_endtag(self, tag):
        assert self.open.pop() == tag, tag

    def handle_data(self, data):
        self.words += [] if {"code", "style", "script"} & set(self.open) else [data]


class Guide(Packed):
    @classmethod
    def setUpClass(cls):
        with zipfile.ZipFile(cls.folder / (NAME + ".zip")) as archive:
            cls.text = archive.read("tavrinconfig-9.8.7/guide.html").decode()
        cls.page = Page(cls.text)

    def test_every_tag_is_closed(self):
        self.assertEqual(self.page.open, [])

    def test_every_link_leads_to_a_place_in_it(self):
        self.assertGreater(len(self.page.links), 50)
        self.assertEqual([link for link in self.page.links if link[1:] not in self.page.places], [])
        self.assertEqual({link[0] for link in self.page.links}, {"#"})

    def test_no_place_is_there_twice(self):
        self.assertEqual(len(self.page.places), len(set(self.page.places)))

    def test_loads_nothing(self):
        self.assertGreater(len(self.page.loaded), 10)
        embedded = ("data:image/png;base64,", "data:image/svg+xml;base64,")
        self.assertEqual([source[:60] for source in self.page.loaded if not source.startswith(embedded)], [])
        self.assertNotRegex(self.text, "<script [^>]|@import|url\\(|fetch\\(|XMLHttpRequest")

    def test_has_every_chapter(self):
        self.assertEqual(re.findall(r'<h2 id="([^"]+)">', self.text),
                         [pathlib.Path(name).stem.lower() for name in CHAPTERS])
        self.assertIn("<title>Tavrin Configuration 9.8.7</title>", self.text)

    def test_has_every_heading_table_and_picture_of_its_sources(self):
        headings = tables = pictures = 0
        for name in CHAPTERS:
            prose = re.sub(r"^ *```.*?^ *```$", "", (packing.TOP / name).read_text(), flags=re.M | re.S)
            headings += len(re.findall(r"^#+ ", prose, re.M))
            tables += len(re.findall(r"^\|[-|]+\|$", prose, re.M))
            pictures += len(re.findall(r"^!\[|^<img ", prose, re.M))
        found = [len(re.findall(pattern, self.text)) for pattern in ("<h[2-6]", "<table>", "<img ")]
        self.assertEqual(found, [headings, tables, pictures])

    def test_shows_no_markdown(self):
        self.assertEqual([words for words in self.page.words if re.search(r"\*\*|\]\(|^#+ |`|\|--", words)], [])


class WindowsInstaller(Packed):
    """The tables that decide about a machine are in test_windows_installer.py."""

    def test_has_the_files_of_the_archive(self):
        package = windows_installer.Package(self.file(".msi"))
        self.assertEqual(sorted(package.files), sorted(name.replace("/", "\\") for name in CONTENTS))

    def test_says_what_it_is(self):
        texts = windows_installer.Package(self.file(".msi")).properties
        self.assertEqual((texts["ProductName"], texts["ProductVersion"], texts["ALLUSERS"]),
                         ("Tavrin Configuration", "9.8.7", "1"))
        summary = subprocess.check_output(["msiinfo", "suminfo", self.file(".msi")], text=True)
        self.assertIn("Template: x64;1033\n", summary)
        self.assertIn("Created: Tue Nov 14 22:13:21 2023\n", summary)

    def test_codes_follow_from_version_and_contents(self):
        def codes(path):
            texts = dict(line.split("\t") for line in subprocess.check_output(
                ["msiinfo", "export", path, "Property"], text=True).splitlines()[3:])
            summary = subprocess.check_output(["msiinfo", "suminfo", path], text=True)
            return texts["ProductCode"], texts["UpgradeCode"], re.search(r"\{.*\}", summary)[0]
        with tempfile.TemporaryDirectory() as folder:
            packing.pack(pathlib.Path(folder), "--version", "9.8.8", SOURCE_DATE_EPOCH=EPOCH)
            later = codes(pathlib.Path(folder) / "tavrinconfig-9.8.8-windows-x64.msi")
        ours = codes(self.file(".msi"))
        self.assertEqual([one == other for one, other in zip(ours, later)], [False, True, False])
        self.assertEqual(ours[1], "{8C1F5B8E-0B54-4B1B-A0C8-5E3E9C7A1D10}")


class Changelog(unittest.TestCase):
    def notes(self, version):
        return subprocess.run(["python3", packing.TOP / "package/notes.py", version], check=False, capture_output=True,
                              text=True)

    def test_newest_section_is_the_version_in_the_making(self):
        def first(name, pattern):
            return re.search(pattern, (packing.TOP / name).read_text(), re.M)[1]
        self.assertEqual(first("CHANGELOG.md", r"^## (\S+) - (?:unreleased|\d{4}-\d{2}-\d{2})$"),
                         first("CMakeLists.txt", r"^project\(\w+ VERSION (\S+)"))

    def test_notes_of_a_version(self):
        sys.path.insert(0, str(packing.TOP / "package"))
        self.addCleanup(sys.path.pop, 0)
        notes = importlib.import_module("notes").notes
        text = ("# Changes\n\nWords.\n\n## 1.2.4 - unreleased\n\n- New.\n\n"
                "## 1.2.3 - 2026-01-02\n\n### Added\n\n- This.\n")
        self.assertEqual(notes("1.2.3", text), "### Added\n\n- This.\n")
        for version, problem in (("1.2.4", 'notes: "## 1.2.4 - unreleased" has no date'),
                                 ("1.2", "notes: CHANGELOG.md has no section 1.2")):
            with self.assertRaises(SystemExit) as refused:
                notes(version, text)
            self.assertEqual(str(refused.exception), problem)

    def test_notes_of_no_version(self):
        found = self.notes("99.0.0")
        self.assertEqual((found.returncode, found.stdout), (1, ""))


class PackageManager(unittest.TestCase):
    def test_manifests(self):
        with tempfile.TemporaryDirectory() as folder:
            folder = pathlib.Path(folder)
            packing.pack(folder, "--version", "9.8.7", "--url", "https://example.com/v9.8.7/",
                         SOURCE_DATE_EPOCH=EPOCH)
            found = {path.name: path.read_text() for path in (folder / "winget").iterdir()}
            digest = hashlib.sha256((folder / (NAME + "-setup.exe")).read_bytes()).hexdigest().upper()
        self.assertEqual(sorted(found), [f"Tavrin.Configuration{ending}.yaml"
                                         for ending in (".installer", ".locale.en-US", "")])
        for text in found.values():
            self.assertIn("\nPackageIdentifier: Tavrin.Configuration\nPackageVersion: 9.8.7\n", text)
            self.assertRegex(text, r"\nManifestType: \w+\nManifestVersion: 1\.6\.0\n$")
        installer = found["Tavrin.Configuration.installer.yaml"]
        self.assertIn(f"InstallerUrl: https://example.com/v9.8.7/{NAME}-setup.exe\n  InstallerSha256: {digest}\n",
                      installer)
        self.assertIn("\nReleaseDate: 2023-11-14\n", installer)
        # What the installer says of itself.
        source = (packing.TOP / "package/installer.nsi").read_text()
        self.assertIn(r'!define ENTRY "${PROGRAMS}\TavrinConfiguration"', source)
        self.assertIn("\nProductCode: TavrinConfiguration\n", installer)


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
            "tavrinctl.exe": ("MIT", "9.8.7"),
            NAME + ".zip": ("MIT", "9.8.7"),
            NAME + "-setup.exe": ("MIT", "9.8.7"),
            NAME + ".msi": ("MIT", "9.8.7"),
            "GCC runtime libraries": ("GPL-3.0-or-later WITH GCC-exception-3.1",
                                      debian_version("gcc-mingw-w64-x86-64-win32")),
            "MinGW-w64 runtime": ("ZPL-2.1", debian_version("mingw-w64-x86-64-dev")),
            "JSON for Modern C++": ("MIT", debian_version("nlohmann-json3-dev")),
            "NSIS installer stub": ("Zlib AND CPL-1.0", debian_version("nsis-common")),
        })

    def test_names_every_library_that_was_linked(self):
        maps = [(packing.BUILT.parent / name).with_suffix(".map") for name in PROGRAMS]
        text = "".join(each.read_text(errors="replace") for each in maps)
        linked = {pathlib.Path(file).name for file in re.findall(r"^(/\S+\.a)\(", text, re.MULTILINE)}
        self.assertLess({"libstdc++.a", "libgcc.a", "libmingw32.a", "libmsvcrt.a"}, linked)
        named = " ".join(package.get("comment", "") for package in self.bill["packages"])
        self.assertEqual([file for file in sorted(linked) if file not in named], [])

    def test_refuses_a_library_of_unknown_origin(self):
        with tempfile.NamedTemporaryFile("w", suffix=".map") as linker_map:
            linker_map.write("\n/opt/other/libother.a(x.o)\n   x.o (y)\n\nDiscarded input sections\n")
            linker_map.flush()
            result = subprocess.run(["python3", packing.TOP / "package/materials.py", "--program", packing.BUILT,
                                     linker_map.name, "9.8.7", packing.BUILT],
                                    check=False, capture_output=True, text=True,
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

    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.made = pathlib.Path(temporary.name)
        cls.certificate = packing.make_certificate(cls.made)
        cls.output = packing.pack(cls.made / "packed", "--version", "9.8.7", **cls.certificate)

    def setUp(self):
        """A copy of what was made once, for the test to do with as it likes."""
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        shutil.copytree(self.made, self.folder, dirs_exist_ok=True)
        self.sign = {name: path.replace(str(self.made), str(self.folder)) for name, path in self.certificate.items()}

    def is_signed(self, file):
        return packing.is_signed(file, self.sign["TAVRIN_SIGN_CERTIFICATE"])

    def packed_programs(self, folder):
        with zipfile.ZipFile(folder / (NAME + ".zip")) as archive:
            return [pathlib.Path(archive.extract(f"tavrinconfig-9.8.7/{name}", self.folder)) for name in PROGRAMS]

    def test_holds_for_program_installers_and_checksums(self):
        packed = self.folder / "packed"
        program, *others = self.packed_programs(packed)
        for file in (program, *others, packed / (NAME + "-setup.exe"), packed / (NAME + ".msi")):
            self.assertTrue(self.is_signed(file), file)
        self.assertFalse(self.is_signed(packing.BUILT))
        changed = bytearray(program.read_bytes())
        changed[0x1000] ^= 1
        program.write_bytes(changed)
        self.assertFalse(self.is_signed(program))
        self.assertTrue(packing.has_signature(packed / "SHA256SUMS", self.sign["TAVRIN_SIGN_CERTIFICATE"]))
        (packed / "SHA256SUMS").write_text("something else\n")
        self.assertFalse(packing.has_signature(packed / "SHA256SUMS", self.sign["TAVRIN_SIGN_CERTIFICATE"]))

    def test_comes_off_again(self):
        """So that anyone can compare a signed program with one that was built from the source."""
        for program in self.packed_programs(self.folder / "packed"):
            bare = self.folder / f"bare-{program.name}"
            subprocess.run(["osslsigncode", "remove-signature", "-in", program, "-out", bare], check=True,
                           capture_output=True)
            self.assertEqual(bare.read_bytes(), (packing.BUILT.parent / program.name).read_bytes())

    def test_is_made_by_a_key_that_nobody_can_read(self):
        token = packing.make_token(self.folder, self.sign["TAVRIN_SIGN_KEY"], "12345678")
        (self.folder / "key.pem").unlink()
        packed = self.folder / "by a token"
        packing.pack(packed, "--version", "9.8.7", **{**self.sign, **token})
        for file in (*self.packed_programs(packed), packed / (NAME + "-setup.exe"), packed / (NAME + ".msi")):
            self.assertTrue(self.is_signed(file), file)
        self.assertTrue(packing.has_signature(packed / "SHA256SUMS", self.sign["TAVRIN_SIGN_CERTIFICATE"]))

    def test_needs_the_pin_of_a_token(self):
        token = packing.make_token(self.folder, self.sign["TAVRIN_SIGN_KEY"], "12345678")
        (self.folder / "pin.txt").write_text("87654321\n")
        with self.assertRaises(RuntimeError):
            packing.pack(self.folder / "refused", "--version", "9.8.7", **{**self.sign, **token})

    def test_works_in_a_folder_with_a_blank_in_its_name(self):
        clone = self.folder / "a clone"
        clone.symlink_to(packing.TOP)
        packing.pack(self.folder / "again", "--version", "9.8.7", top=clone, **self.sign)
        self.assertTrue(self.is_signed(self.folder / "again" / (NAME + "-setup.exe")))

    def test_publishes_no_signature_without_a_time_stamp(self):
        packed = self.folder / "unstamped"
        with self.assertRaisesRegex(RuntimeError, "^package: published signatures need a time stamp: set "
                                                  "TAVRIN_SIGN_TIMESTAMP, or leave out --url\n$"):
            packing.pack(packed, "--version", "9.8.7", "--url", "https://example.com/v9.8.7/", **self.sign)
        self.assertFalse(packed.exists())

    def test_says_that_the_time_stamp_is_missing(self):
        self.assertIn("sign: no time stamp: TAVRIN_SIGN_TIMESTAMP is not set\n", self.output)


if __name__ == "__main__":
    unittest.main()
