"""Reads what a Windows program file says about itself. Only 64-bit files; the numbers are those of the format."""
import collections
import struct

IMPORTS, RESOURCES, RELOCATIONS, DEBUG, DELAYED_IMPORTS = 1, 2, 5, 6, 13  # places in the directory

RELOCS_STRIPPED = 0x0001  # file characteristics
HIGH_ENTROPY_VA, DYNAMIC_BASE, NX_COMPAT = 0x0020, 0x0040, 0x0100  # DLL characteristics
EXECUTABLE, WRITABLE = 0x20000000, 0x80000000  # section characteristics
DIR64 = 10  # a relocation of 64 bits

Section = collections.namedtuple("Section", "name address size offset file_size characteristics")


class PeFile:
    def __init__(self, path):
        self.bytes = path.read_bytes()
        header = self._number("<I", 0x3C)
        if self.bytes[:2] != b"MZ" or self.bytes[header : header + 4] != b"PE\0\0":
            raise ValueError(f"{path} is no program file")
        self._read_headers(header)

    def _number(self, form, offset):
        return struct.unpack_from(form, self.bytes, offset)[0]

    def _read_headers(self, header):
        (_, count, self.timestamp, self.symbol_table, _, optional_size,
         self.characteristics) = struct.unpack_from("<HHIIIHH", self.bytes, header + 4)
        optional = header + 24
        if self._number("<H", optional) != 0x20B:
            raise ValueError("no 64-bit program")
        self.subsystem, self.dll_characteristics = struct.unpack_from("<HH", self.bytes, optional + 68)
        self.directory = [struct.unpack_from("<II", self.bytes, optional + 112 + 8 * place) for place in range(16)]
        self.sections = [self._read_section(optional + optional_size + 40 * i) for i in range(count)]

    def _read_section(self, offset):
        name, size, address, file_size, file_offset = struct.unpack_from("<8sIIII", self.bytes, offset)
        return Section(name.rstrip(b"\0").decode(), address, size, file_offset, file_size,
                       self._number("<I", offset + 36))

    def offset_of(self, address):
        """Where in the file an address lies."""
        for section in self.sections:
            if section.address <= address < section.address + section.file_size:
                return section.offset + address - section.address
        raise ValueError(f"address {address:#x} is in no section")

    def _text(self, address):
        start = self.offset_of(address)
        return self.bytes[start : self.bytes.index(b"\0", start)].decode()

    def imports(self):
        """Pairs of DLL (in small letters) and function; an import by number is '#' and the number."""
        found = []
        table = self.offset_of(self.directory[IMPORTS][0])
        while (entry := struct.unpack_from("<5I", self.bytes, table)) != (0, 0, 0, 0, 0):
            dll = self._text(entry[3]).lower()
            found += [(dll, name) for name in self._imported_names(self.offset_of(entry[0] or entry[4]))]
            table += 20
        return found

    def _imported_names(self, offset):
        while (entry := self._number("<Q", offset)) != 0:
            yield f"#{entry & 0xFFFF}" if entry >> 63 else self._text(entry + 2)
            offset += 8

    def relocated_addresses(self):
        """The addresses of all 64-bit relocations."""
        address, size = self.directory[RELOCATIONS]
        found, offset = [], self.offset_of(address) if size else 0
        end = offset + size
        while offset < end:
            page, block_size = struct.unpack_from("<II", self.bytes, offset)
            for entry in struct.unpack_from(f"<{(block_size - 8) // 2}H", self.bytes, offset + 8):
                if entry >> 12 == DIR64:
                    found.append(page + (entry & 0xFFF))
            offset += block_size
        return found
