"""The packages for Linux, after script/build static: their contents, the same bytes again, and the program where nothing
else is."""
import gzip
import json
import os
import pathlib
import re
import resource
import subprocess
import tarfile
import tempfile
import unittest

TOP = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = TOP / "build/static/tavrinctl"
VERSION = re.search(r"^project\(\w+ VERSION ([\d.]+)", (TOP / "CMakeLists.txt").read_text(), re.M)[1]
NAME = f"tavrinctl-{VERSION}-linux-x64"
EPOCH = "1700000001"  # 2023-11-14 22:13:21 UTC


def pack(folder, program=PROGRAM, **environment):
    return subprocess.run([TOP / "package/linux", program, VERSION, folder], check=False, capture_output=True, text=True,
                          env={**os.environ, "SOURCE_DATE_EPOCH": EPOCH, **environment})


def setUpModule():
    temporary = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(temporary.cleanup)
    Packed.folder = pathlib.Path(temporary.name)
    done = pack(Packed.folder)
    if done.returncode:
        raise RuntimeError(done.stderr)


class Packed(unittest.TestCase):
    folder = None

    def setUp(self):
        self.archive = tarfile.open(self.folder / f"{NAME}.tar.gz")
        self.addCleanup(self.archive.close)
        self.package = self.folder / f"tavrinctl_{VERSION}_amd64.deb"

    def text(self, name):
        return self.archive.extractfile(f"{NAME}/{name}").read().decode()


class Packages(Packed):
    def test_contents_of_the_archive(self):
        files = [(entry.name.removeprefix(f"{NAME}/"), entry.mode) for entry in self.archive if entry.isfile()]
        self.assertEqual(files, [("LICENSE", 0o644), ("LICENSE-runtime", 0o644), ("examples/agent.json", 0o644),
                                 ("examples/agent.spec", 0o644), ("examples/schemas/report.schema.json", 0o644),
                                 ("examples/schemas/state.schema.json", 0o644), ("tavrinctl", 0o755),
                                 ("tavrinctl.1", 0o644), ("tavrinctl.bash", 0o644)])
        self.assertEqual({(entry.uid, entry.gid, entry.mtime) for entry in self.archive}, {(0, 0, int(EPOCH))})

    def test_contents_of_the_package(self):
        listed = subprocess.check_output(["dpkg-deb", "--contents", self.package], text=True)
        files = [line.split()[-1] for line in listed.splitlines() if not line.startswith("d")]
        doc = "./usr/share/doc/tavrinctl"
        self.assertEqual(files, ["./usr/bin/tavrinctl", "./usr/share/bash-completion/completions/tavrinctl",
                                 f"{doc}/changelog.gz", f"{doc}/copyright", f"{doc}/examples/agent.json",
                                 f"{doc}/examples/agent.spec", f"{doc}/examples/schemas/report.schema.json",
                                 f"{doc}/examples/schemas/state.schema.json", "./usr/share/man/man1/tavrinctl.1.gz"])
        self.assertEqual({line.split()[1] for line in listed.splitlines()}, {"root/root"})

    def test_package_needs_no_other(self):
        fields = subprocess.check_output(["dpkg-deb", "--field", self.package], text=True)
        self.assertIn(f"Package: tavrinctl\nVersion: {VERSION}\nArchitecture: amd64\n", fields)
        self.assertNotIn("Depends", fields)

    def test_licences_of_what_is_in_the_program(self):
        text = self.text("LICENSE-runtime")
        owners = ["GNU Libc", "Niels Lohmann", "GCC RUNTIME LIBRARY EXCEPTION", "GNU LESSER GENERAL PUBLIC LICENSE",
                  "Guillem Jover"]
        self.assertEqual([owner for owner in owners if owner not in text], [])
        self.assertTrue(text.startswith("This program contains the GNU C Library"))

    def test_are_the_same_elsewhere_later_and_for_another_person(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(pack(folder, TZ="Asia/Tokyo", LC_ALL="C.UTF-8").returncode, 0)
            for path in self.folder.iterdir():
                self.assertEqual((pathlib.Path(folder) / path.name).read_bytes(), path.read_bytes(), path.name)

    def test_refuse_a_program_that_needs_libraries(self):
        done = pack(self.folder, program="/bin/true")
        self.assertEqual((done.returncode, done.stderr), (1, f"package: {os.path.realpath('/bin/true')} is not static\n"))


class BillOfMaterials(Packed):
    def test_parts_of_the_program(self):
        bill = json.loads((self.folder / f"{NAME}.spdx.json").read_text())
        licences = {part["name"]: part["licenseDeclared"] for part in bill["packages"]}
        self.assertEqual(licences, {
            "tavrinctl": "MIT", f"{NAME}.tar.gz": "MIT", self.package.name: "MIT", "JSON for Modern C++": "MIT",
            "GCC runtime libraries": "GPL-3.0-or-later WITH GCC-exception-3.1", "GNU C Library": "LGPL-2.1-or-later",
            "libmd": "BSD-3-Clause"})


class Manual(Packed):
    def shown(self):
        """As a terminal of 100 columns shows it, without overstriking."""
        page = self.text("tavrinctl.1")
        done = subprocess.run(["groff", "-man", "-Tutf8", "-ww", "-rLL=100n", "-P-c", "-P-b", "-P-u", "-P-o"], input=page,
                              capture_output=True, text=True, check=True)
        self.assertEqual(done.stderr, "")
        return done.stdout

    def test_is_the_guide(self):
        shown = self.shown()
        guide = (TOP / "docs/tavrinctl.md").read_text()
        for heading in re.findall(r"^## (.*)$", guide, re.M):
            self.assertIn(f"\n{heading.upper()}\n", shown)
        for line in re.search(r"^```text\n(tavrinctl check .*?)^```", guide, re.M | re.S)[1].splitlines():
            self.assertIn(line, shown)

    def test_has_no_pictures(self):
        shown = " ".join(self.shown().split())
        alternatives = re.findall(r"^!\[(.*?)\]", (TOP / "docs/tavrinctl.md").read_text(), re.M)
        self.assertEqual([text for text in alternatives if text[:30] in shown], [])
        self.assertTrue(alternatives)

    def test_says_what_it_is(self):
        page = self.text("tavrinctl.1")
        self.assertTrue(page.startswith(f'.TH TAVRINCTL 1 "2023-11-14" "tavrinctl {VERSION}"'))
        self.assertRegex(page, r"\n\.SH NAME\ntavrinctl \\- \w")

    def test_shows_no_markdown(self):
        shown = self.shown()
        self.assertEqual([line for line in shown.splitlines() if re.search(r"\]\(|^ *\|.*\||`|\*\*", line)], [])


class Program(Packed):
    def test_runs_where_nothing_else_is(self):
        """In a folder with itself and a spec file alone: no library, no table of characters, no time zone."""
        with tempfile.TemporaryDirectory() as root:
            root = pathlib.Path(root)
            (root / "tavrinctl").write_bytes(PROGRAM.read_bytes())
            (root / "tavrinctl").chmod(0o755)
            (root / "size.spec").write_bytes("SOFTWARE\\A\nA\n!G\n$Größe\nV\nH\nString\n".encode("cp850"))
            words = ["template", "--code-page", "850", "--format", "admx", "--out", "/out", "/size.spec"]
            done = subprocess.run(["unshare", "--map-root-user", "/usr/sbin/chroot", root, "/tavrinctl", *words], check=False,
                                  capture_output=True, text=True, env={})
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertIn("<string id=\"", (root / "out/en-US/size.adml").read_text())
            self.assertIn("Größe", (root / "out/en-US/size.adml").read_text())

    def test_compares_reports_without_holding_them_all(self):
        report = json.dumps({"schema": 1, "configurations": {"Agent": {"values": {"Port": "1", "Notes": "x" * 1_000_000}}}})
        with tempfile.TemporaryDirectory() as folder:
            folder = pathlib.Path(folder)
            (folder / "desired").write_text('{"schema": 1, "configurations": {"Agent": {"values": {"Port": 1}}}}')
            for at in range(40):
                (folder / f"{at}.json").write_text(report)
            # The reports have 40,000,000 octets.
            done = subprocess.run([PROGRAM, "diff", folder / "desired", folder], check=False, capture_output=True, text=True,
                                  preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_DATA, (20_000_000, 20_000_000)))
            self.assertIn("machines: 40, 40 in sync", done.stdout, done.stderr)

    def test_completion_is_its_own(self):
        own = subprocess.check_output([PROGRAM, "completion", "bash"], text=True)
        self.assertIn("tavrinctl", own)
        self.assertEqual(self.text("tavrinctl.bash"), own)

    def test_changelog_is_in_the_package(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run(["dpkg-deb", "--extract", self.package, folder], check=True)
            packed = pathlib.Path(folder) / "usr/share/doc/tavrinctl/changelog.gz"
            self.assertEqual(gzip.decompress(packed.read_bytes()), (TOP / "CHANGELOG.md").read_bytes())


if __name__ == "__main__":
    unittest.main()
