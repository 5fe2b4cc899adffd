"""The package for Windows Installer: the tables that decide what becomes of a machine, and that played."""
import pathlib
import subprocess
import tempfile
import unittest

import older
import packing
import test_program_file
from windows_installer import Machine, Package, Refused

PROGRAMS = ["tavrinconfig.exe", "tavrinctl.exe"]
OLDER = (0, 0, 9, 0)
SETUP = (r"Software\Microsoft\Windows\CurrentVersion\Uninstall\TavrinConfiguration", "DisplayVersion")


def setUpModule():
    temporary = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(temporary.cleanup)
    folder = pathlib.Path(temporary.name)
    older.pack(folder / "older")
    packing.pack(folder / "newer")
    WindowsInstaller.older = Package(*folder.glob("older/*.msi"))
    WindowsInstaller.newer = Package(*folder.glob("newer/*.msi"))


class WindowsInstaller(unittest.TestCase):
    older = newer = None

    def setUp(self):
        self.current = tuple(map(int, test_program_file.project_version().split("."))) + (0,)

    def programs(self, machine):
        """Both programs on the disk, by their versions."""
        return [machine.disk.get(name) for name in PROGRAMS]


class Tables(WindowsInstaller):
    def test_programs_have_their_own_version_and_language(self):
        self.assertEqual({row[2]: row[4:6] for row in self.newer.table("File") if row[4] or row[5]},
                         {name: [test_program_file.project_version() + ".0", "1033"] for name in PROGRAMS})

    def test_old_product_is_removed_before_anything_is_installed_and_after_all_is_decided(self):
        deciding = ["FindRelatedProducts", "AppSearch", "LaunchConditions", "FileCost", "CostFinalize",
                    "RemoveExistingProducts", "CreateFolders", "InstallFiles", "WriteRegistryValues",
                    "WriteEnvironmentStrings", "InstallFinalize"]
        self.assertEqual([action for action in self.newer.sequence if action in deciding], deciding)

    def test_nothing_is_permanent_and_all_is_of_64_bits(self):
        self.assertEqual({row[3] for row in self.newer.table("Component")}, {"256"})
        self.assertNotIn("REINSTALLMODE", self.newer.properties)

    def test_folder_is_on_the_path_of_the_machine(self):
        self.assertEqual(self.newer.table("Environment"), [["path", "=-*PATH", "[~];[INSTALLDIR]", "path"]])
        self.assertEqual([row for row in self.newer.table("FeatureComponents") if row[0] == "Path"], [["Path", "path"]])
        self.assertEqual({row[0]: row[5] for row in self.newer.table("Feature")}, {"Program": "1", "Path": "1"})
        self.assertIn("RemoveEnvironmentStrings", self.newer.sequence)

    def test_window_is_found_by_its_name(self):
        program, = (row[0] for row in self.newer.table("File") if row[2] == "tavrinconfig.exe")
        self.assertEqual([row[1:] for row in self.newer.table("Registry")], [
            ["2", r"Software\Microsoft\Windows\CurrentVersion\App Paths\tavrinconfig.exe", "", f"[#{program}]",
             program]])

    def test_users_cannot_write_to_the_folder(self):
        self.assertEqual(self.newer.table("MsiLockPermissionsEx"), [
            ["folder", "INSTALLDIR", "CreateFolder", "D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FRFX;;;BU)", ""]])
        self.assertIn(["INSTALLDIR", "folder"], self.newer.table("CreateFolder"))
        self.assertIn(["Program", "folder"], self.newer.table("FeatureComponents"))
        summary = subprocess.check_output(["msiinfo", "suminfo", self.newer.path], text=True)
        self.assertIn("\nVersion: 500 (", summary)  # the first that knows this table

    def test_what_decides_reaches_the_process_that_has_the_rights(self):
        self.assertEqual(self.newer.properties["SecureCustomProperties"],
                         "INSTALLDIR;SETUPVERSION;WIX_DOWNGRADE_DETECTED;WIX_UPGRADE_DETECTED")


class Played(WindowsInstaller):
    def test_installed_and_removed(self):
        machine = Machine()
        machine.install(self.newer)
        self.assertEqual(set(machine.disk), set(self.newer.files))
        self.assertEqual(self.programs(machine), [self.current, self.current])
        machine.remove(self.newer)
        self.assertEqual(machine.disk, {})

    def test_upgraded(self):
        machine = Machine()
        machine.install(self.older)
        self.assertEqual(self.programs(machine), [OLDER, OLDER])
        machine.install(self.newer)
        self.assertEqual(machine.products, [self.newer])
        self.assertEqual(set(machine.disk), set(self.newer.files))
        self.assertEqual(self.programs(machine), [self.current, self.current])

    def test_upgrade_by_a_package_without_versions_would_leave_neither_program(self):
        """What the versions are there for."""
        machine = Machine()
        machine.install(self.older)
        for name in PROGRAMS:
            machine.disk[name] = OLDER
        bare = Package(self.newer.path)
        bare.files = {name: (code, ()) for name, (code, _) in bare.files.items()}
        machine.install(bare)
        self.assertEqual(self.programs(machine), [None, None])

    def test_repaired(self):
        machine = Machine()
        machine.install(self.newer)
        del machine.disk["tavrinctl.exe"]
        machine.disk["tavrinconfig.exe"] = OLDER
        del machine.disk["guide.html"]
        machine.repair(self.newer)
        self.assertEqual(set(machine.disk), set(self.newer.files))
        self.assertEqual(self.programs(machine), [self.current, self.current])

    def test_not_downgraded(self):
        machine = Machine()
        machine.install(self.newer)
        with self.assertRaisesRegex(Refused, "^A newer version of Tavrin Configuration is installed.$"):
            machine.install(self.older)
        self.assertEqual((machine.products, self.programs(machine)), ([self.newer], [self.current, self.current]))

    def test_over_files_of_the_archive(self):
        """Older ones and those of the same version are replaced, or are what would be installed; newer ones stay."""
        for version, left in ((OLDER, self.current), (self.current, self.current), ((9, 0, 0, 0), (9, 0, 0, 0))):
            machine = Machine(dict.fromkeys(PROGRAMS, version))
            machine.install(self.newer)
            self.assertEqual(self.programs(machine), [left, left])

    def test_not_beside_the_setup(self):
        machine = Machine({"tavrinconfig.exe": OLDER}, {SETUP: "0.0.9"})
        with self.assertRaisesRegex(Refused, r"^Tavrin Configuration 0\.0\.9 was installed by its setup program\. Remove"
                                             r" it in the list of installed programs, then install this package\.$"):
            machine.install(self.newer)
        self.assertEqual(machine.disk, {"tavrinconfig.exe": OLDER})

    def test_can_be_repaired_and_removed_whatever_else_is_there(self):
        machine = Machine()
        machine.install(self.newer)
        machine.found[SETUP] = "0.0.9"
        machine.repair(self.newer)
        machine.remove(self.newer)
        self.assertEqual(machine.disk, {})


if __name__ == "__main__":
    unittest.main()
