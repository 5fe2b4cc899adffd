"""Writes the bill of materials (SPDX 2.3, JSON) of a package: the programs, what the linker took from other people's
libraries (its map file says so), what was compiled into them, and what makes the installer.

usage: materials.py --program PROGRAM MAP... VERSION FILE...      (FILE: the packages; the time is SOURCE_DATE_EPOCH)
"""
import argparse
import datetime
import hashlib
import json
import os
import pathlib
import re
import subprocess

GCC_LICENCE = "GPL-3.0-or-later WITH GCC-exception-3.1"

# Name of a part -> licence, supplier, and which of the linker's files belong to it.
PARTS = {
    "GCC runtime libraries": (GCC_LICENCE, "Free Software Foundation", r"/gcc/"),
    "libmd": ("BSD-3-Clause", "Guillem Jover", r"/libmd\.a$"),
    "GNU C Library": ("LGPL-2.1-or-later", "Free Software Foundation", r"/lib/x86_64-linux-gnu/"),
    "winpthreads": ("MIT AND BSD-3-Clause", "The mingw-w64 project", r"/lib(win)?pthread\.a$"),
    "MinGW-w64 runtime": ("ZPL-2.1", "The mingw-w64 project", r"/x86_64-w64-mingw32/lib/"),
}


# Header-only libraries, which leave no trace in a map. Program -> name, Debian package, licence, supplier.
JSON = ("JSON for Modern C++", "nlohmann-json3-dev", "MIT", "Niels Lohmann")
HEADERS = {"tavrinctl.exe": JSON, "tavrinctl": JSON}


def linked_files(linker_map):
    """The libraries and object files outside the project from which the linker took something."""
    found = set()
    text = linker_map.read_text(errors="replace")
    members, rest = text.split("\nDiscarded input sections", 1)
    found.update(re.findall(r"^(/\S+?)\(", members, re.MULTILINE))
    found.update(re.findall(r"^LOAD (/\S+\.o)$", rest, re.MULTILINE))
    return sorted({os.path.normpath(file) for file in found})


def linked_parts(linker_map):
    """Part -> the files that it stands for."""
    parts = {}
    for file in linked_files(linker_map):
        names = [name for name, (_, _, place) in PARTS.items() if re.search(place, file)]
        if not names:
            raise SystemExit(f"materials: {file} was linked and belongs to no part that is known here")
        parts.setdefault(names[0], []).append(file)
    return parts


def version_of(debian_package):
    return subprocess.check_output(["dpkg-query", "-W", "-f", "${Version}", debian_package], text=True)


def debian_version(file):
    """The Debian package that brought a file, and its version."""
    real = os.path.realpath(file)
    owner = subprocess.check_output(["dpkg", "-S", real], text=True).split(":")[0]
    return owner, version_of(owner)


def identifier(name):
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.]+", "-", name)


def package(name, version, licence, supplier, **more):
    return {"SPDXID": identifier(name), "name": name, "versionInfo": version, "licenseConcluded": licence,
            "licenseDeclared": licence, "copyrightText": "NOASSERTION", "downloadLocation": "NOASSERTION",
            "filesAnalyzed": False, "supplier": f"Organization: {supplier}", **more}


def file_package(path, version):
    digest = hashlib.sha256(path.read_bytes()).hexdigest()
    return package(path.name, version, "MIT", "The tavrinconfig authors", packageFileName=path.name,
                   checksums=[{"algorithm": "SHA256", "checksumValue": digest}])


def part_package(name, files):
    licence, supplier, _ = PARTS[name]
    versions = sorted({debian_version(file) for file in files})
    return package(name, ", ".join(sorted({version for _, version in versions})), licence, supplier,
                   sourceInfo="Debian: " + ", ".join(f"{owner} {version}" for owner, version in versions),
                   licenseComments="The texts of all licences are in LICENSE-runtime.",
                   comment="Linked: " + ", ".join(sorted({os.path.basename(file) for file in files})))


def installer_package():
    owner, version = debian_version("/usr/share/nsis/Stubs/lzma_solid-amd64-unicode")
    return package("NSIS installer stub", version, "Zlib AND CPL-1.0", "NSIS contributors",
                   sourceInfo=f"Debian: {owner} {version}",
                   comment="Its decompression code is under CPL-1.0, with the permission to be part of installers.")


def header_package(name, owner, licence, supplier):
    version = version_of(owner)
    return package(name, version, licence, supplier, sourceInfo=f"Debian: {owner} {version}",
                   licenseComments="The texts of all licences are in LICENSE-runtime.",
                   comment="Headers alone: compiled into the program.")


def relations(names):
    return [{"spdxElementId": identifier(one), "relationshipType": kind, "relatedSpdxElement": identifier(other)}
            for one, kind, other in names]


def document(version, programs, files):
    """`programs`: pairs of a program and its map."""
    linked = {program: linked_parts(linker_map) for program, linker_map in programs}
    parts = {}
    for found in linked.values():
        for name, places in found.items():
            parts[name] = sorted({*parts.get(name, []), *places})
    headers = {program: HEADERS[program.name] for program in linked if program.name in HEADERS}
    setups = [file for file in files if file.name.endswith("-setup.exe")]
    stub = installer_package()
    packages = [file_package(file, version) for file in [*linked, *files]]
    packages += [part_package(name, parts[name]) for name in sorted(parts)]
    packages += [header_package(*each) for each in headers.values()] + [stub] * bool(setups)
    links = [("DOCUMENT", "DESCRIBES", file.name) for file in files]
    links += [(file.name, "CONTAINS", program.name) for file in files for program in linked]
    links += [(program.name, "STATIC_LINK", name) for program in linked for name in sorted(linked[program])]
    links += [(program.name, "STATIC_LINK", each[0]) for program, each in headers.items()]
    links += [(file.name, "CONTAINS", stub["name"]) for file in setups]
    digest = hashlib.sha256(b"".join(file.read_bytes() for file in files)).hexdigest()
    created = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
    return {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
            "name": f"tavrinconfig-{version}",
            "documentNamespace": f"urn:sha256:{digest}",
            "creationInfo": {"created": created.strftime("%Y-%m-%dT%H:%M:%SZ"),
                             "creators": ["Organization: The tavrinconfig authors", "Tool: script/package"]},
            "packages": packages, "relationships": relations(links)}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", nargs=2, type=pathlib.Path, action="append", required=True)
    parser.add_argument("version")
    parser.add_argument("files", nargs="+", type=pathlib.Path)
    options = parser.parse_args()
    print(json.dumps(document(options.version, options.program, options.files), indent=2))


if __name__ == "__main__":
    main()
