"""What docs/spec-files.md shows for installers: NSIS and WiX's compiler take it as it stands."""
import pathlib
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as xml

from guide import TOP, fences

GUIDE = (TOP / "docs/spec-files.md").read_text()
NSIS = """Target amd64-unicode
Name Example
OutFile example.exe
Page instfiles
UninstPage instfiles
Section
    WriteUninstaller "$INSTDIR\\uninstall.exe"
SectionEnd
{snippet}
"""
WIX = """<?xml version="1.0" encoding="utf-8"?>
<Wix xmlns="http://schemas.microsoft.com/wix/2006/wi">
<Product Id="11111111-2222-3333-4444-555555555555" Name="Example" Language="1033" Version="1.0.0"
         Manufacturer="Example" UpgradeCode="11111111-2222-3333-4444-555555555556">
<Package InstallerVersion="200" Compressed="yes" InstallScope="perMachine" Platform="x64"/>
<Media Id="1" Cabinet="example.cab" EmbedCab="yes"/>
<Directory Id="TARGETDIR" Name="SourceDir"><Directory Id="ProgramFiles64Folder"><Directory Id="HOME" Name="Example">
{snippet}
</Directory></Directory></Directory>
<Feature Id="All"><ComponentRef Id="SpecFile"/><ComponentRef Id="Settings"/></Feature>
</Product></Wix>
"""


def make(folder, name, frame, *command):
    """Makes an installer of the guide's snippet, named by the ending of `name`, in a folder."""
    snippet, = fences(GUIDE, name.partition(".")[2])
    (folder / "agent.spec").write_text("SOFTWARE\\Example\\Agent\nExample\n")
    (folder / name).write_text(frame.format(snippet=snippet))
    subprocess.run([*command, name], cwd=folder, capture_output=True, check=True)


def make_setup(folder):
    make(folder, "example.nsis", NSIS, "makensis", "-V2", "-WX")


class Snippets(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def test_nsis(self):
        make_setup(self.folder)
        self.assertTrue((self.folder / "example.exe").is_file())

    def test_wix(self):
        make(self.folder, "example.wxs", WIX, "wixl", "--arch", "x64", "-o", "example.msi")
        table = subprocess.check_output(["msiinfo", "export", "example.msi", "Registry"], cwd=self.folder, text=True)
        # The compiler ends keys with a backslash, which installing drops.
        self.assertIn("SOFTWARE\\Tavrin\\TRConfig\\\tExample\t[#AgentSpec]\tSpecFile", table)

    def test_wix_keeps_the_settings(self):
        """wixl passes over these attributes, so what they do shows on Windows alone."""
        snippet, = fences(GUIDE, "wxs")
        root = xml.fromstring(f"<all>{snippet}</all>")
        settings = [component.attrib for component in root.iter("Component")
                    if "SOFTWARE\\Example\\Agent" in [key.get("Key") for key in component.iter("RegistryKey")]]
        self.assertEqual([(each["NeverOverwrite"], each["Permanent"]) for each in settings], [("yes", "yes")])


if __name__ == "__main__":
    unittest.main()
