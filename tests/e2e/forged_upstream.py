"""Strangers who send in the name of the upstream, more than the loop guard lets through."""

import time

from forging import Flood, Forger
from harness import DEADLINE, PEER_ADDRESS, World, run_all, wait_until

STARTS_UNDER_FLOOD = 8
SYNCHRONISATIONS = 20


def GotThrough(server):
    """How many of the upstream's datagrams got through that weren't taken as a reply."""
    return sum(1 for line in server.log_lines() if line.split()[2] == PEER_ADDRESS)


def TestAFloodInTheNameOfTheUpstreamKeepsTheGateOfNoStartShut():
    with World() as world:
        upstream = world.upstream()
        forger = Forger(world)
        flood = Flood(forger, rate=3000)
        try:
            for number in range(STARTS_UNDER_FLOOD):
                server = world.server()
                # The only request of the run for an hour: its reply gets in, or none does.
                server.wait_for_gate()
                wait_until(lambda: GotThrough(server) >= 50 * (number + 1), "the guard's limit")
                assert server.stop() == 0
        finally:
            flood.stop()
        assert len(upstream.requests()) >= STARTS_UNDER_FLOOD
        forger.close()


def TestSixtyForgedDatagramsBeforeEachReplyLoseNoSynchronisation():
    with World() as world:
        forger = Forger(world)
        with world.peer_socket() as upstream:
            upstream.bind((PEER_ADDRESS, 123))
            upstream.settimeout(DEADLINE)
            for _ in range(SYNCHRONISATIONS):
                server = world.server()
                asked, sender = upstream.recvfrom(2048)
                forger.send_and_wait(60)
                reply = bytes(24) + asked[40:48] + bytes(8) + bytes.fromhex("c1b6b0c000000000")
                upstream.sendto(reply, sender)
                # It is not asked again for an hour.
                server.wait_for_gate()
                assert server.stop() == 0
        forger.close()


def TestACopyOfTheReplyIsLimitedLikeAnyOtherDatagram():
    with World() as world:
        with world.peer_socket() as upstream:
            upstream.bind((PEER_ADDRESS, 123))
            upstream.settimeout(DEADLINE)
            server = world.server()
            asked, sender = upstream.recvfrom(2048)
            reply = bytes(24) + asked[40:48] + bytes(8) + bytes.fromhex("c1b6b0c000000000")
            upstream.sendto(reply, sender)
            server.wait_for_gate()
            began = time.monotonic()
            for _ in range(200):
                upstream.sendto(reply, sender)
            assert server.ask_ntp() is not None  # in its turn, after the copies
            most = 50 * (int(time.monotonic() - began) + 2)
            assert 50 <= GotThrough(server) <= most, GotThrough(server)
            assert server.stop() == 0


if __name__ == "__main__":
    run_all()
