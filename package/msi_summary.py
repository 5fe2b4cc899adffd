"""The summary of a package for Windows Installer: a property set, which is a head, and pairs of a property's number and
its place."""
import struct
import uuid

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
