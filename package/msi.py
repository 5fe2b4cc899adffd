"""Writes the package for Windows Installer, which Group Policy and other tools install by themselves: every file of a
folder, and links in the Start menu. wixl makes it; what wixl makes up anew each time is replaced by what follows from
the contents, so that the same folder gives the same bytes.

usage: msi.py VERSION FOLDER ICON MSI      (the time is SOURCE_DATE_EPOCH)
"""
import hashlib
import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import uuid
from xml.sax.saxutils import quoteattr

# Never changes: by it a newer version finds the older one.
UPGRADE_CODE = uuid.UUID("8c1f5b8e-0b54-4b1b-a0c8-5e3e9c7a1d10")
# File -> its link in the Start menu.
LINKS = {"tavrinconfig.exe": "Tavrin Configuration", "guide.html": "Tavrin Configuration Guide"}

PRODUCT = """<?xml version="1.0" encoding="utf-8"?>
<Wix xmlns="http://schemas.microsoft.com/wix/2006/wi">
  <Product Id="{product}" Name="Tavrin Configuration" Language="1033" Version="{version}"
           Manufacturer="The tavrinconfig authors" UpgradeCode="{upgrade}">
    <Package InstallerVersion="200" Compressed="yes" InstallScope="perMachine" Description="Tavrin Configuration"/>
    <MajorUpgrade DowngradeErrorMessage="A newer version of Tavrin Configuration is installed."/>
    <Media Id="1" Cabinet="files.cab" EmbedCab="yes"/>
    <Icon Id="tavrin.ico" SourceFile="tavrin.ico"/>
    <Property Id="ARPPRODUCTICON" Value="tavrin.ico"/>
    <Property Id="ARPNOMODIFY" Value="1"/>
    <Property Id="ARPNOREPAIR" Value="1"/>
    <Directory Id="TARGETDIR" Name="SourceDir">
      <Directory Id="ProgramMenuFolder"/>
      <Directory Id="ProgramFiles64Folder">
        <Directory Id="INSTALLDIR" Name="Tavrin Configuration">{components}
        </Directory>
      </Directory>
    </Directory>
    <Feature Id="All" Level="1">{references}
    </Feature>
  </Product>
</Wix>
"""
COMPONENT = """
          <Component Id="{id}" Guid="{guid}" Win64="yes">
            <File Id="{id}" Source={source} KeyPath="yes"/>{link}
          </Component>"""
LINK = """
            <Shortcut Id="{id}.link" Directory="ProgramMenuFolder" Name="{name}" Target="[#{id}]"
                      WorkingDirectory="INSTALLDIR"/>"""


def identity(*words):
    """A number that follows from the words."""
    return str(uuid.uuid5(UPGRADE_CODE, " ".join(words))).upper()


def component(number, name):
    link = LINK.format(id=f"f{number}", name=LINKS[name]) if name in LINKS else ""
    return COMPONENT.format(id=f"f{number}", guid=identity("file", name), source=quoteattr(f"all/{name}"), link=link)


def source(version, names):
    """What wixl compiles. Its files lie side by side: the package has no folders in its folder."""
    components = "".join(component(number, name) for number, name in enumerate(names))
    references = "".join(f'\n      <ComponentRef Id="f{number}"/>' for number in range(len(names)))
    return PRODUCT.format(product=identity("product", version), version=version, upgrade=str(UPGRADE_CODE).upper(),
                          components=components, references=references)


# The summary of a package is a property set: a head, and pairs of a property's number and its place.
PROPERTY_SET = bytes.fromhex("fe ff 00 00")
SUMMARY = uuid.UUID("f29f85e0-4ff9-1068-ab91-08002b27b3d9").bytes_le
REVISION, CREATED, SAVED = 9, 12, 13
SECONDS_TO_1601 = 11644473600


def properties(octets):
    """Number of each property of the summary -> the place of its value."""
    start = octets.index(PROPERTY_SET)
    while octets[start + 28:start + 44] != SUMMARY:
        start = octets.index(PROPERTY_SET, start + 1)
    section = start + struct.unpack_from("<I", octets, start + 44)[0]
    count = struct.unpack_from("<I", octets, section + 4)[0]
    pairs = [struct.unpack_from("<II", octets, section + 8 + 8 * place) for place in range(count)]
    return {number: section + offset for number, offset in pairs}


def settle(octets, package_code, seconds):
    """Replaces the package's code and its times."""
    places = properties(octets)
    code = f"{{{package_code}}}".encode()
    length = struct.unpack_from("<I", octets, places[REVISION] + 4)[0]
    if octets[places[REVISION] + 8:][:length].rstrip(b"\0")[:1] != b"{" or length < len(code):
        raise SystemExit("msi: the package has no code where it belongs")
    octets[places[REVISION] + 8:places[REVISION] + 8 + len(code)] = code
    for number in (CREATED, SAVED):
        struct.pack_into("<Q", octets, places[number] + 4, (seconds + SECONDS_TO_1601) * 10_000_000)


def make(version, folder, icon, msi):
    names = sorted(path.name for path in folder.iterdir() if path.is_file())
    contents = hashlib.sha256(b"".join((folder / name).read_bytes() for name in names)).hexdigest()
    with tempfile.TemporaryDirectory() as work:
        work = pathlib.Path(work)
        (work / "all").symlink_to(folder.resolve())
        (work / "tavrin.ico").symlink_to(icon.resolve())
        (work / "package.wxs").write_text(source(version, names))
        subprocess.run(["wixl", "--arch", "x64", "-o", "package.msi", "package.wxs"], cwd=work, check=True)
        octets = bytearray((work / "package.msi").read_bytes())
    settle(octets, identity("package", version, contents), int(os.environ["SOURCE_DATE_EPOCH"]))
    msi.write_bytes(octets)


if __name__ == "__main__":
    make(sys.argv[1], *(pathlib.Path(argument) for argument in sys.argv[2:]))
