"""A server on a test network: answers every agent in the way that MANNER names, until it is ended.

usage: server.py MANNER PORT
"""
import socket
import sys

OFFER = bytes.fromhex("61 80 02 02 02 05 A1 80 01 01 01 01 01 00 00 00 00 00")
REFUSAL = bytes.fromhex("63 80 04 02 6E 6F 00 00")
LONGEST = 4096


def hear_end(agent):
    while agent.recv(LONGEST):
        pass


def patient(agent):
    """Reads the request, sends an offer, and reads to the end."""
    agent.recv(LONGEST)
    agent.sendall(OFFER)
    hear_end(agent)


def offer_heard(agent):
    agent.recv(LONGEST)
    agent.sendall(OFFER)


def refuse_heard(agent):
    agent.recv(LONGEST)
    agent.sendall(REFUSAL)


def offer_unheard(agent):
    agent.sendall(OFFER)


def refuse_unheard(agent):
    agent.sendall(REFUSAL)


def offer_and_listen(agent):
    """Closes at once what it sends on, before it has heard anything."""
    agent.sendall(OFFER)
    agent.shutdown(socket.SHUT_WR)
    hear_end(agent)


MANNERS = {each.__name__: each
           for each in (patient, offer_heard, refuse_heard, offer_unheard, refuse_unheard, offer_and_listen)}


def main(manner, port):
    with socket.create_server(("0.0.0.0", port), backlog=16) as server:
        print("ready", flush=True)
        while True:
            agent = server.accept()[0]
            try:
                MANNERS[manner](agent)
            except ConnectionError:
                pass  # it has gone: the next one
            agent.close()


if __name__ == "__main__":
    main(sys.argv[1], int(sys.argv[2]))
