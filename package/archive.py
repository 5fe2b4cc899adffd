"""Packs a folder into a ZIP: in the order of the names, with one time for all.

usage: archive.py FOLDER NAME ZIP      (NAME: the folder in the archive; the time is SOURCE_DATE_EPOCH)
"""
import os
import pathlib
import sys
import time
import zipfile


def pack(folder, name, archive):
    when = time.gmtime(int(os.environ["SOURCE_DATE_EPOCH"]))[:6]
    with zipfile.ZipFile(archive, "w") as packed:
        for file in sorted(path for path in folder.rglob("*") if path.is_file()):
            entry = zipfile.ZipInfo(f"{name}/{file.relative_to(folder).as_posix()}", when)
            entry.external_attr = 0o644 << 16
            packed.writestr(entry, file.read_bytes(), zipfile.ZIP_DEFLATED, 9)


if __name__ == "__main__":
    pack(pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3])
