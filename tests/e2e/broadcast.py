"""Requests to the subnet's broadcast address are answered, from the server's own address."""

import socket
import time

from harness import DEADLINE, SERVER_ADDRESS, SETTINGS, World, request, run_all

BROADCAST = "10.77.0.255"
IP_AND_UDP = 28
# Port, smallest request that is answered, datagrams of the answer, and the most bytes that may
# leave at the level of IP for each that comes in.
SERVICES = ((13, b"", 1, 2.9), (37, b"", 4, 4.2), (123, request(), 1, 1.0),
            (3777, b"CVLC1" + bytes(19), 1, 1.0))


def Ask(world, port, packet, datagrams):
    """The lengths of what comes back, and nothing where one of them is missing."""
    with world.peer_socket() as client:
        client.setsockopt(socket.SOL_SOCKET, socket.SO_BROADCAST, 1)
        client.bind(("10.77.0.2", 0))
        client.settimeout(2)
        client.sendto(packet, (BROADCAST, port))
        lengths = []
        try:
            while len(lengths) < datagrams:
                answer, sender = client.recvfrom(2048)
                assert sender == (SERVER_ADDRESS, port), sender
                lengths.append(len(answer))
        except socket.timeout:
            return []  # in millisecond 999
        return lengths


def TestABroadcastIsAnsweredWithFewBytesForEachThatCame():
    with World(settings=SETTINGS) as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        for port, packet, datagrams, most in SERVICES:
            end = time.monotonic() + DEADLINE
            lengths = []
            while not lengths and time.monotonic() < end:
                lengths = Ask(world, port, packet, datagrams)
            assert len(lengths) == datagrams, port
            into, out = IP_AND_UDP + len(packet), sum(lengths) + datagrams * IP_AND_UDP
            print(f"port {port}: {into} bytes in, {out} bytes out, {out / into:.2f}", flush=True)
            assert out / into <= most, (port, out / into)
        assert server.stop() == 0


if __name__ == "__main__":
    run_all()
