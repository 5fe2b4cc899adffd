"""A host on a test network: prints each request that it receives and answers it in the way that MANNER names.

usage: host.py MANNER PORT
"""
import socket
import struct
import sys

ANSWER = struct.pack(">4I", 0x12345678, 0, 5, 2)

MANNERS = {
    "silent": [],
    "good": [ANSWER],
    "twice": [ANSWER, ANSWER + b"a check word or anything else"],
    "rubbish": [
        b"",
        ANSWER[:15],
        struct.pack(">4I", 0x12345679, 5153, 5, 2),
        struct.pack(">4I", 0x12345678, 5153, 6, 2),
        struct.pack(">4I", 0x12345678, 5153, 5, 1),
        struct.pack("<4I", 0x12345678, 5153, 5, 2),
        ANSWER + bytes(5000),
    ],
}


def main(manner, port):
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as server:
        server.bind(("0.0.0.0", port))
        print("ready", flush=True)
        while True:
            request, scanner = server.recvfrom(65536)
            print(scanner[0], request.hex(), flush=True)
            for answer in MANNERS[manner]:
                server.sendto(answer, scanner)


if __name__ == "__main__":
    main(sys.argv[1], int(sys.argv[2]))
