"""Reads the resources of a 64-bit Windows program file: icons, version and manifest."""
import collections
import struct

import pe_file

ICON, GROUP_ICON, VERSION, MANIFEST = 3, 14, 16, 24  # kinds of resources

Picture = collections.namedtuple("Picture", "width height bits data")


class Resources:
    """What lies under `self.found[kind, name]`: a list of octets, one item a language; names are numbers or texts."""

    def __init__(self, path):
        program = pe_file.PeFile(path)
        self.file = program.bytes
        self.root = program.offset_of(program.directory[pe_file.RESOURCES][0])
        self.found = collections.defaultdict(list)
        for kind, kind_offset in self._entries(self.root):
            for name, name_offset in self._entries(kind_offset):
                for _, leaf in self._entries(name_offset):
                    start, size = struct.unpack_from("<II", self.file, leaf)
                    self.found[kind, name].append(self.file[program.offset_of(start) :][:size])

    def _entries(self, table):
        """Name and place of what a table of the resource tree lists."""
        named, numbered = struct.unpack_from("<HH", self.file, table + 12)
        for place in range(named + numbered):
            name, offset = struct.unpack_from("<II", self.file, table + 16 + 8 * place)
            yield self._name(name), self.root + (offset & 0x7FFFFFFF)

    def _name(self, name):
        if not name & 0x80000000:
            return name
        start = self.root + (name & 0x7FFFFFFF)
        (length,) = struct.unpack_from("<H", self.file, start)
        return self.file[start + 2 : start + 2 + 2 * length].decode("utf-16-le")

    def only(self, kind, name):
        """The one resource of this kind and name. Windows looks for names in capital letters."""
        (data,) = self.found.get((kind, name.upper() if isinstance(name, str) else name), [])
        return data

    def icon(self, name):
        """The pictures of an icon, with the sizes that its list gives."""
        data = self.only(GROUP_ICON, name)
        pictures = []
        for place in range(struct.unpack_from("<H", data, 4)[0]):
            width, height, _, _, _, bits, _, number = struct.unpack_from("<4BHHIH", data, 6 + 14 * place)
            # The list has one octet for a size: 0 stands for 256.
            pictures.append(Picture(width or 256, height or 256, bits, self.only(ICON, number)))
        return pictures


def version_texts(data):
    """The names and texts of a version resource, in any block."""
    texts = {}

    def walk(start, end):
        while start < end:
            length, value_length, kind = struct.unpack_from("<HHH", data, start)
            name_end = start + 6
            while data[name_end : name_end + 2] != b"\0\0":
                name_end += 2
            name = data[start + 6 : name_end].decode("utf-16-le")
            value = (name_end + 2 + 3) & ~3
            octets = value_length * 2 if kind == 1 else value_length
            if kind == 1 and value_length:
                texts[name] = data[value : value + octets].decode("utf-16-le").rstrip("\0")
            walk((value + octets + 3) & ~3, start + length)
            start = (start + length + 3) & ~3

    walk(0, len(data))
    return texts
