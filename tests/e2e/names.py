"""Servers that the list gives by name."""

import socket
import time

from harness import (PEER_ADDRESS, SERVER_ADDRESS, SETTINGS, World, bind_over, request, run_all,
                     wait_until)


def TestANameIsLookedUpAndAsked():
    bind_over("/etc/hosts", f"127.0.0.1 localhost\n{PEER_ADDRESS} time.test\n")
    with World(servers=("time.test", "time.test")) as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        assert server.stop() == 0


def Datagrams(endpoint):
    """How many datagrams wait at ENDPOINT; they are taken."""
    endpoint.setblocking(False)
    count = 0
    try:
        while endpoint.recv(2048):
            count += 1
    except BlockingIOError:
        pass
    return count


def TestRequestsAreAnsweredWhileTheResolverNeverAnswers():
    # Names go to a server that swallows every question.
    bind_over("/etc/resolv.conf", f"nameserver {PEER_ADDRESS}\noptions timeout:30 attempts:5\n")
    bind_over("/etc/nsswitch.conf", "hosts: dns\n")
    # A draw each second finds the good server sooner or later, and soon the others.
    settings = [line.replace('"NO:59:Minute/s:', '"YES:1:Second/s:') for line in SETTINGS]
    with World(servers=(PEER_ADDRESS, "slow.test", "slow.test"), settings=settings) as world:
        with world.peer_socket() as swallows, world.peer_socket() as client:
            swallows.bind((PEER_ADDRESS, 53))
            world.upstream()
            server = world.server()
            server.wait_for_gate()
            wait_until(lambda: Datagrams(swallows), "a question to the resolver")

            waits = []
            client.settimeout(0.3)
            client.connect((SERVER_ADDRESS, 123))
            end = time.monotonic() + 4
            while time.monotonic() < end:
                begin = time.monotonic()
                client.send(request())
                try:
                    client.recv(100)
                    waits.append(time.monotonic() - begin)
                except socket.timeout:  # millisecond 999, once in a second
                    continue
            # The resolver's 30 seconds aren't over; a lookup on the loop would have left
            # next to nobody an answer.
            assert len(waits) > 100, len(waits)
            waits.sort()
            assert waits[len(waits) * 99 // 100] < 0.1, waits[-10:]
            assert server.stop() == 0


def TestANameWithoutAnAnswerFailsTheRequestAfterAWhile():
    bind_over("/etc/hosts", "127.0.0.1 localhost\n")
    with World(servers=("nowhere.test",)) as world:
        server = world.server(environment={"CHRONVALE_TRACE": "1"})
        wait_until(lambda: ("udp", 123) in server.open_sockets(), "the listeners")
        assert server.ask_ntp(attempts=2, timeout=0.5) is None
        # The one trace of it, for whoever looks for the cause.
        server.errors.wait_for("^cvlserver: lookup of nowhere.test: .")
        assert server.stop() == 0


if __name__ == "__main__":
    run_all()
