"""Writes what wixl leaves out of a package for Windows Installer, by msibuild: the versions of the programs, the folder
on the machine's PATH, and the rights of the folder.

Without File.Version an upgrade would take both programs away: while Windows Installer works out what to do, the program
on the disk, which has a version, wins against one without, and then the old package's removal deletes it.
"""
import struct
import subprocess

FIXED_INFO = struct.pack("<II", 0xFEEF04BD, 0x00010000)
TRANSLATION = "Translation\0".encode("utf-16-le")

# Only SYSTEM and administrators may write, wherever the folder lies; what is put in it inherits this.
RIGHTS = "D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FRFX;;;BU)"

# "=-*PATH": of the machine (*), set (=) when installing and taken away (-) when removing; "[~];" keeps what is there.
QUERIES = [
    # In an installation with a user interface, only these properties are passed from the user's process to the one
    # with administrator rights.
    "UPDATE `Property` SET `Value` = 'INSTALLDIR;SETUPVERSION;WIX_DOWNGRADE_DETECTED;WIX_UPGRADE_DETECTED'"
    " WHERE `Property` = 'SecureCustomProperties'",
    "CREATE TABLE `Environment` (`Environment` CHAR(72) NOT NULL, `Name` CHAR(255) NOT NULL LOCALIZABLE,"
    " `Value` CHAR(255) LOCALIZABLE, `Component_` CHAR(72) NOT NULL PRIMARY KEY `Environment`)",
    "INSERT INTO `Environment` (`Environment`, `Name`, `Value`, `Component_`)"
    " VALUES ('path', '=-*PATH', '[~];[INSTALLDIR]', 'path')",
    "INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('RemoveEnvironmentStrings', 3300)",
    "INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('WriteEnvironmentStrings', 5200)",
    "CREATE TABLE `MsiLockPermissionsEx` (`MsiLockPermissionsEx` CHAR(72) NOT NULL, `LockObject` CHAR(72) NOT NULL,"
    " `Table` CHAR(32) NOT NULL, `SDDLText` CHAR(0) NOT NULL, `Condition` CHAR(255)"
    " PRIMARY KEY `MsiLockPermissionsEx`)",
    "INSERT INTO `MsiLockPermissionsEx` (`MsiLockPermissionsEx`, `LockObject`, `Table`, `SDDLText`)"
    f" VALUES ('folder', 'INSTALLDIR', 'CreateFolder', '{RIGHTS}')",
]


def version_of(octets):
    """A program's version as the table has it, four numbers with dots; None for another file."""
    place = octets.find(FIXED_INFO)
    if octets[:2] != b"MZ" or place < 0:
        return None
    high, low = struct.unpack_from("<II", octets, place + 8)
    return ".".join(str(number) for number in (high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF))


def language_of(octets):
    place = octets.index(TRANSLATION) + len(TRANSLATION)
    return struct.unpack_from("<H", octets, (place + 3) & ~3)[0]


def complete(package, files):
    """`files`: what the package calls a file -> its path."""
    queries = list(QUERIES)
    for name, path in files.items():
        octets = path.read_bytes()
        if version := version_of(octets):
            queries.append(f"UPDATE `File` SET `Version` = '{version}', `Language` = '{language_of(octets)}'"
                           f" WHERE `File` = '{name}'")
    subprocess.run(["msibuild", package, *(word for query in queries for word in ("-q", query))], check=True)
