"""Writes the manifests with which the Windows Package Manager finds a released installer: three files, in the layout
of its collection of packages.

usage: winget.py VERSION INSTALLER URL FOLDER      (URL: the address of the installer's folder; the date is
                                                    SOURCE_DATE_EPOCH)
"""
import datetime
import hashlib
import os
import pathlib
import sys

IDENTIFIER = "Tavrin.Configuration"
FORMAT = "1.6.0"

HEAD = """# yaml-language-server: $schema=https://aka.ms/winget-manifest.{kind}.{format}.schema.json
PackageIdentifier: {identifier}
PackageVersion: {version}
"""
TAIL = """ManifestType: {kind}
ManifestVersion: {format}
"""
BODIES = {
    "version": """DefaultLocale: en-US
""",
    "installer": """Platform:
- Windows.Desktop
MinimumOSVersion: 10.0.0.0
InstallerType: nullsoft
Scope: machine
InstallModes:
- interactive
- silent
InstallerSwitches:
  Silent: /S
  SilentWithProgress: /S
UpgradeBehavior: install
ElevationRequirement: elevatesSelf
ProductCode: TavrinConfiguration
ReleaseDate: {date}
ExpectedReturnCodes:
- InstallerReturnCode: 1
  ReturnResponse: cancelledByUser
- InstallerReturnCode: 3
  ReturnResponse: packageInUse
- InstallerReturnCode: 4
  ReturnResponse: alreadyInstalled
Installers:
- Architecture: x64
  InstallerUrl: {url}/{name}
  InstallerSha256: {digest}
""",
    "defaultLocale": """PackageLocale: en-US
Publisher: The tavrinconfig authors
PackageName: Tavrin Configuration
License: MIT
ShortDescription: Edits the settings of the Tavrin Agent and tests its servers.
Tags:
- configuration
- monitoring
""",
}
ENDINGS = {"version": "", "installer": ".installer", "defaultLocale": ".locale.en-US"}


def write(version, installer, url, folder):
    values = {
        "version": version, "identifier": IDENTIFIER, "format": FORMAT, "name": installer.name, "url": url.rstrip("/"),
        "digest": hashlib.sha256(installer.read_bytes()).hexdigest().upper(),
        "date": datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc).date(),
    }
    folder.mkdir(parents=True, exist_ok=True)
    for kind, body in BODIES.items():
        text = (HEAD + body + TAIL).format(kind=kind, **values)
        (folder / f"{IDENTIFIER}{ENDINGS[kind]}.yaml").write_text(text)


if __name__ == "__main__":
    write(sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3], pathlib.Path(sys.argv[4]))
