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
    settings = [line.replace('"NO:59:Minute/s:', '"NO:1:Second/s:') for line in SETTINGS]
    with World(settings=settings) as world:
        # The run begins with the first server. A refusal draws another one, and the region of
        # the settings has only one to draw.
        world.write_server_file([f"{PEER_ADDRESS}:::Known EU:::2:::", "slow.test:::Slow NA:::2:::"])
        with world.peer_socket() as swallows, world.peer_socket() as client:
            swallows.bind((PEER_ADDRESS, 53))
            upstream = world.upstream()
            server = world.server(environment={"CHRONVALE_TRACE": "1"})
            server.wait_for_gate()
            upstream.tell("one-byte")
            wait_until(lambda: Datagrams(swallows), "a question to the resolver")

            # A lookup on the loop would leave each request waiting for the resolver's 30 seconds.
            waits = []
            client.settimeout(1)
            client.connect((SERVER_ADDRESS, 123))
            for number in range(50):
                transmit = number.to_bytes(8, "big")
                begin = time.monotonic()
                client.send(request(transmit))
                try:
                    while client.recv(100)[24:32] != transmit:
                        pass
                except socket.timeout:  # millisecond 999, or no answer at all
                    pass
                waits.append(time.monotonic() - begin)
            # Half of them, since a busy machine may keep some waiting.
            assert sorted(waits)[len(waits) // 2] < 0.5, waits
            # None of them waited for an answer: the name still has none.
            assert not [line for line in server.errors.lines if "lookup of" in line]
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
