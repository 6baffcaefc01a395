"""Strangers who send in the name of the upstream, more than the loop guard lets through."""

import time

from forging import Flood, Forger
from harness import DEADLINE, PEER_ADDRESS, World, run_all, wait_until

STARTS_UNDER_FLOOD = 8
SYNCHRONISATIONS = 20


def GotThrough(server):
    """How many of the upstream's datagrams got through that weren't taken as a reply."""
    return sum(1 for line in server.log_lines() if line.split()[2] == PEER_ADDRESS)


class Upstream:
    """An upstream that answers on demand."""

    def __init__(self, world):
        self._socket = world.peer_socket()
        self._socket.bind((PEER_ADDRESS, 123))
        self._socket.settimeout(DEADLINE)

    def await_request(self):
        """Waits for a request. Returns its sender and the reply to it."""
        asked, sender = self._socket.recvfrom(2048)
        return sender, bytes(24) + asked[40:48] + bytes(8) + bytes.fromhex("c1b6b0c000000000")

    def send(self, sender, reply):
        self._socket.sendto(reply, sender)

    def close(self):
        self._socket.close()


def TestAFloodInTheNameOfTheUpstreamKeepsTheGateOfNoStartShut():
    with World() as world:
        upstream = Upstream(world)
        forger = Forger(world)
        flood = Flood(forger, rate=3000)
        lines = 0
        try:
            for _ in range(STARTS_UNDER_FLOOD):
                server = world.server()
                sender, reply = upstream.await_request()
                wait_until(lambda: GotThrough(server) >= lines + 50, "the guard's limit")
                upstream.send(sender, reply)
                # It is not asked again for an hour.
                server.wait_for_gate()
                assert server.stop() == 0
                lines = GotThrough(server)
        finally:
            flood.stop()
        forger.close()
        upstream.close()


def TestSixtyForgedDatagramsBeforeEachReplyLoseNoSynchronisation():
    with World() as world:
        upstream = Upstream(world)
        forger = Forger(world)
        for _ in range(SYNCHRONISATIONS):
            server = world.server()
            sender, reply = upstream.await_request()
            forger.send_and_wait(60)
            upstream.send(sender, reply)
            server.wait_for_gate()
            assert server.stop() == 0
        forger.close()
        upstream.close()


def TestACopyOfTheReplyIsLimitedLikeAnyOtherDatagram():
    with World() as world:
        upstream = Upstream(world)
        server = world.server()
        sender, reply = upstream.await_request()
        upstream.send(sender, reply)
        server.wait_for_gate()
        began = time.monotonic()
        for _ in range(200):
            upstream.send(sender, reply)
        assert server.ask_ntp() is not None  # in its turn, after the copies
        most = 50 * (int(time.monotonic() - began) + 2)
        assert 50 <= GotThrough(server) <= most, GotThrough(server)
        assert server.stop() == 0
        upstream.close()


if __name__ == "__main__":
    run_all()
