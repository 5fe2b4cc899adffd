"""A line between two hosts that takes its time, and notes what passes.

Both ends are TUN devices; this process hands the packets on. So no module of the kernel is needed, and a peer that
delays its acknowledgements can be had as well: those that carry nothing else are held back on their way.
"""
import dataclasses
import fcntl
import heapq
import itertools
import os
import select
import struct
import threading
import time

import network

DEVICE = "/dev/net/tun"
SET_INTERFACE = 0x400454CA
TUN, NO_HEAD = 0x0001, 0x1000
TCP = 6
FIN, SYN, RST, ACK = 0x01, 0x02, 0x04, 0x10
NAMES = ((SYN, "SYN"), (FIN, "FIN"), (RST, "RST"), (ACK, "ACK"))


@dataclasses.dataclass(frozen=True)
class Segment:
    seconds: float  # since the line was made, when it came in
    sender: str
    ports: tuple
    number: int
    flags: int
    octets: bytes

    @property
    def only_acknowledges(self):
        return self.flags & (SYN | FIN | RST | ACK) == ACK and not self.octets

    def __str__(self):
        flags = " ".join(name for flag, name in NAMES if self.flags & flag)
        return f"{self.seconds * 1000:8.1f} ms  {self.sender:6}  {flags:7}  {self.octets.hex(' ')}".rstrip()


def segment_of(packet, sender, seconds):
    """None for anything but TCP over IPv4."""
    if packet[0] >> 4 != 4 or packet[9] != TCP:
        return None
    tcp = packet[(packet[0] & 15) * 4:struct.unpack_from(">H", packet, 2)[0]]
    source, target, number = struct.unpack_from(">HHI", tcp)
    return Segment(seconds, sender, (source, target), number, tcp[13], tcp[(tcp[12] >> 4) * 4:])


def skip_without_device():
    try:
        os.close(os.open(DEVICE, os.O_RDWR))
    except OSError as problem:
        network.skip(f"{DEVICE}: {problem.strerror}")


class Line:
    """Joins two hosts, whose addresses are those of a /30. Packets take `delay` seconds each way; what only
    acknowledges takes `held` seconds more from the second host."""

    def __init__(self, hosts, addresses, delay, held=0.0):
        self.hosts = hosts
        self.delay, self.held = delay, held
        self.segments = []
        self.begin = time.monotonic()
        self.waiting = []
        self.order = itertools.count()
        self.ends = [self.end(host, address) for host, address in zip(hosts, addresses)]
        threading.Thread(target=self.carry, daemon=True).start()

    @staticmethod
    def end(host, address):
        name = f"line-{host}"
        end = os.open(DEVICE, os.O_RDWR | os.O_NONBLOCK)
        fcntl.ioctl(end, SET_INTERFACE, struct.pack("16sH22x", name.encode(), TUN | NO_HEAD))
        network.ip("link", "set", name, "netns", host)
        network.ip("-n", host, "address", "add", address + "/30", "dev", name)
        network.ip("-n", host, "link", "set", name, "up")
        return end

    def take_in(self, side):
        packet = os.read(self.ends[side], 65536)
        now = time.monotonic()
        segment = segment_of(packet, self.hosts[side], now - self.begin)
        delay = self.delay
        if segment is not None:
            self.segments.append(segment)
            if side == 1 and segment.only_acknowledges:
                delay += self.held
        heapq.heappush(self.waiting, (now + delay, next(self.order), 1 - side, packet))

    def hand_out(self):
        while self.waiting and self.waiting[0][0] <= time.monotonic():
            _, _, side, packet = heapq.heappop(self.waiting)
            os.write(self.ends[side], packet)

    def carry(self):
        while True:
            patience = max(0, self.waiting[0][0] - time.monotonic()) if self.waiting else None
            for ready in select.select(self.ends, [], [], patience)[0]:
                self.take_in(self.ends.index(ready))
            self.hand_out()

    def ended_by(self, host):
        """The ports of the connections that this host has ended."""
        return {each.ports for each in self.segments if each.sender == host and each.flags & FIN}

    def connections(self):
        """The segments by connection, in order; what was sent again is left out."""
        found, seen = {}, set()
        for each in self.segments:
            place = (each.sender, each.ports, each.number, each.octets)
            if place not in seen or not each.octets:
                found.setdefault(tuple(sorted(each.ports)), []).append(each)
            seen.add(place)
        return list(found.values())
