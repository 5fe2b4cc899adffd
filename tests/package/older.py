#!/usr/bin/env python3
"""Packs what script/build windows left as version 0.0.9, for tests of upgrades: the programs say so too, and the
window's file has another length.

usage: tests/package/older.py FOLDER
"""
import pathlib
import shutil
import struct
import sys
import tempfile

import packing

VERSION = (0, 0, 9)
FIXED_INFO = struct.pack("<II", 0xFEEF04BD, 0x00010000)


def with_version(octets, version):
    """A program that says in its version resource that it has another version; three numbers."""
    octets = bytearray(octets)
    place = octets.index(FIXED_INFO) + len(FIXED_INFO)
    struct.pack_into("<II", octets, place, version[0] << 16 | version[1], version[2] << 16)
    return bytes(octets)


def pack(folder):
    with tempfile.TemporaryDirectory() as work:
        work = pathlib.Path(work)
        for name in ("tavrinconfig", "tavrinctl"):
            built = packing.BUILT.with_name(f"{name}.exe")
            (work / built.name).write_bytes(with_version(built.read_bytes(), VERSION))
            shutil.copy(built.with_suffix(".map"), work)
        with (work / packing.BUILT.name).open("ab") as window:
            window.write(b"older")
        return packing.pack(folder, "--version", ".".join(map(str, VERSION)), built=work / packing.BUILT.name)


if __name__ == "__main__":
    print(pack(sys.argv[1]), end="")
