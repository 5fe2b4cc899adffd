"""Writes the package for Windows Installer, which Group Policy and other tools install by themselves: every file of a
folder, links in the Start menu, App Paths, and the folder on the machine's PATH. wixl makes it; msi_tables.py adds what
wixl cannot write; what wixl makes up anew each time is replaced by what follows from the contents, so that the same
folder gives the same bytes.

usage: msi.py VERSION FOLDER ICON MSI      (the time is SOURCE_DATE_EPOCH)
"""
import hashlib
import os
import pathlib
import subprocess
import sys
import tempfile
import uuid
from xml.sax.saxutils import quoteattr

import msi_summary
import msi_tables

# Must never change: a newer version finds the older one by this code.
UPGRADE_CODE = uuid.UUID("8c1f5b8e-0b54-4b1b-a0c8-5e3e9c7a1d10")
# What else belongs to a file: its link in the Start menu, and the name by which "Run" finds it.
LINKS = {"tavrinconfig.exe": "Tavrin Configuration", "guide.html": "Tavrin Configuration Guide"}
APP_PATHS = {"tavrinconfig.exe"}

# SETUPVERSION: what the other installer, installer.nsi, leaves in the list of installed programs.
PRODUCT = """<?xml version="1.0" encoding="utf-8"?>
<Wix xmlns="http://schemas.microsoft.com/wix/2006/wi">
  <Product Id="{product}" Name="Tavrin Configuration" Language="1033" Version="{version}"
           Manufacturer="The tavrinconfig authors" UpgradeCode="{upgrade}">
    <Package InstallerVersion="500" Compressed="yes" InstallScope="perMachine" Description="Tavrin Configuration"/>
    <MajorUpgrade DowngradeErrorMessage="A newer version of Tavrin Configuration is installed."/>
    <Property Id="SETUPVERSION">
      <RegistrySearch Id="setup" Root="HKLM" Name="DisplayVersion" Type="raw" Win64="yes"
                      Key="Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\TavrinConfiguration"/>
    </Property>
    <Condition Message="Tavrin Configuration [SETUPVERSION] was installed by its setup program. Remove it in the list of installed programs, then install this package.">Installed OR NOT SETUPVERSION</Condition>
    <Media Id="1" Cabinet="files.cab" EmbedCab="yes"/>
    <Icon Id="tavrin.ico" SourceFile="tavrin.ico"/>
    <Property Id="ARPPRODUCTICON" Value="tavrin.ico"/>
    <Property Id="ARPNOMODIFY" Value="1"/>
    <Property Id="ARPNOREPAIR" Value="1"/>
    <Directory Id="TARGETDIR" Name="SourceDir">
      <Directory Id="ProgramMenuFolder"/>
      <Directory Id="ProgramFiles64Folder">
        <Directory Id="INSTALLDIR" Name="Tavrin Configuration">{components}
          <Component Id="folder" Guid="{folder}" Win64="yes">
            <CreateFolder/>
          </Component>
          <Component Id="path" Guid="{path}" Win64="yes">
            <CreateFolder/>
          </Component>
        </Directory>
      </Directory>
    </Directory>
    <Feature Id="Program" Level="1">
      <ComponentRef Id="folder"/>{references}
    </Feature>
    <Feature Id="Path" Level="1">
      <ComponentRef Id="path"/>
    </Feature>
  </Product>
</Wix>
"""
COMPONENT = """
          <Component Id="{id}" Guid="{guid}" Win64="yes">
            <File Id="{id}" Source={source} KeyPath="yes"/>{extras}
          </Component>"""
LINK = """
            <Shortcut Id="{id}.link" Directory="ProgramMenuFolder" Name="{name}" Target="[#{id}]"
                      WorkingDirectory="INSTALLDIR"/>"""
APP_PATH = """
            <RegistryValue Root="HKLM" Key="Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\{name}"
                           Type="string" Value="[#{id}]"/>"""


def identity(*words):
    """A GUID that is computed from the words."""
    return str(uuid.uuid5(UPGRADE_CODE, " ".join(words))).upper()


class Source:
    """What wixl compiles. A file is named by its number among the sorted names, a folder by its first file's."""

    def __init__(self, version, folder):
        self.version = version
        self.folder = folder
        self.names = sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.is_file())

    def component(self, name):
        number = f"f{self.names.index(name)}"
        extras = LINK.format(id=number, name=LINKS[name]) if name in LINKS else ""
        extras += APP_PATH.format(id=number, name=name) if name in APP_PATHS else ""
        return COMPONENT.format(id=number, guid=identity("file", name), source=quoteattr(f"all/{name}"), extras=extras)

    def directory(self, place=""):
        """Components and folders of a folder of the package, given by its path with a slash at its end."""
        inside = [name for name in self.names if name.startswith(place)]
        made = "".join(self.component(name) for name in inside if "/" not in name[len(place):])
        for below in sorted({name[len(place):].split("/")[0] for name in inside if "/" in name[len(place):]}):
            first = next(index for index, name in enumerate(self.names) if name.startswith(f"{place}{below}/"))
            depth = place.count("/")
            made += (f'\n          <Directory Id="d{first}.{depth}" Name={quoteattr(below)}>'
                     f'{self.directory(f"{place}{below}/")}\n          </Directory>')
        return made

    def text(self):
        references = "".join(f'\n      <ComponentRef Id="f{number}"/>' for number in range(len(self.names)))
        return PRODUCT.format(product=identity("product", self.version), version=self.version,
                              upgrade=str(UPGRADE_CODE).upper(), folder=identity("folder"), path=identity("path"),
                              components=self.directory(), references=references)

    def digest(self):
        octets = b"".join((self.folder / name).read_bytes() for name in self.names)
        return hashlib.sha256("\n".join(self.names).encode() + octets).hexdigest()


def make(version, folder, icon, msi):
    source = Source(version, folder)
    with tempfile.TemporaryDirectory() as work:
        work = pathlib.Path(work)
        (work / "all").symlink_to(folder.resolve())
        (work / "tavrin.ico").symlink_to(icon.resolve())
        (work / "package.wxs").write_text(source.text())
        subprocess.run(["wixl", "--arch", "x64", "-o", "package.msi", "package.wxs"], cwd=work, check=True)
        msi_tables.complete(work / "package.msi", {f"f{number}": folder / name
                                                   for number, name in enumerate(source.names)})
        octets = bytearray((work / "package.msi").read_bytes())
    msi_summary.settle(octets, identity("package", version, source.digest()), int(os.environ["SOURCE_DATE_EPOCH"]))
    msi.write_bytes(octets)


if __name__ == "__main__":
    make(sys.argv[1], *(pathlib.Path(argument) for argument in sys.argv[2:]))
