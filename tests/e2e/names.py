"""Servers that the list gives by name."""

import os
import socket
import tempfile
import time

from harness import (PEER_ADDRESS, SERVER_ADDRESS, World, request, run, run_all, wait_until)


def BindOver(path, text):
    """Puts TEXT in place of the file PATH, inside this test's own mount namespace."""
    handle, name = tempfile.mkstemp()
    with os.fdopen(handle, "w", encoding="ascii") as file:
        file.write(text)
    os.chmod(name, 0o644)
    run("mount", "--bind", name, path)


def TestANameIsLookedUpAndAsked():
    BindOver("/etc/hosts", f"127.0.0.1 localhost\n{PEER_ADDRESS} time.test\n")
    with World(servers=("time.test", "time.test")) as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        assert server.stop() == 0


def TestRequestsAreAnsweredWhileTheResolverNeverAnswers():
    # Names go to a server that swallows every question.
    BindOver("/etc/resolv.conf", f"nameserver {PEER_ADDRESS}\noptions timeout:30 attempts:5\n")
    BindOver("/etc/nsswitch.conf", "hosts: dns\n")
    with World(servers=(PEER_ADDRESS, "slow.test", "slow.test")) as world:
        with world.peer_socket() as swallows:
            swallows.bind((PEER_ADDRESS, 53))
            upstream = world.upstream()
            server = world.server()
            # The draw finds the good server sooner or later; each try at the other takes
            # two seconds, in which the loop goes on.
            server.wait_for_gate()
            upstream.tell("one-byte")
            asked = 0
            longest_silence = 0.0
            begin = last_answer = time.monotonic()
            with world.peer_socket() as client:
                client.settimeout(0.3)
                client.connect((SERVER_ADDRESS, 123))
                while time.monotonic() < begin + 4:
                    client.send(request())
                    try:
                        client.recv(100)
                    except socket.timeout:  # millisecond 999
                        continue
                    now = time.monotonic()
                    longest_silence = max(longest_silence, now - last_answer)
                    last_answer = now
                    asked += 1
            assert asked > 100, asked
            # A lookup on the loop would have held an answer up for its 30 seconds.
            assert longest_silence < 2, longest_silence
            assert server.stop() == 0


def TestANameWithoutAnAnswerFailsTheRequestAfterAWhile():
    BindOver("/etc/hosts", "127.0.0.1 localhost\n")
    with World(servers=("nowhere.test",)) as world:
        server = world.server(environment={"CHRONVALE_TRACE": "1"})
        wait_until(lambda: ("udp", 123) in server.open_sockets(), "the listeners")
        assert server.ask_ntp(attempts=2, timeout=0.5) is None
        assert server.stop() == 0


if __name__ == "__main__":
    run_all()
