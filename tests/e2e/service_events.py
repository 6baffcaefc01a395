"""Pause, continue and stop, as signals bring them."""

import signal
import socket

from harness import SERVER_ADDRESS, World, request, run_all, wait_until


def TestAPauseSilencesTheServiceAndContinueBringsItBack():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        server.send_signal(signal.SIGUSR1)
        wait_until(lambda: server.ask_ntp(attempts=1, timeout=0.3) is None, "silence")
        # Twice, since a request in millisecond 999 is silent too.
        assert server.ask_ntp(attempts=2, timeout=0.3) is None
        with socket.create_connection((SERVER_ADDRESS, 123), 5) as client:
            assert client.recv(10) == b""
        server.send_signal(signal.SIGUSR2)
        wait_until(lambda: server.ask_ntp(attempts=1, timeout=0.3), "answers again")
        assert server.stop() == 0


def TestAConnectionAcceptedBeforeThePauseIsStillAnswered():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()

        def Ask():
            with socket.create_connection((SERVER_ADDRESS, 123), 5) as client:
                # A full exchange on another connection tells that ours has been accepted.
                wait_until(lambda: server.ask_tcp(request()), "a reply")
                server.send_signal(signal.SIGUSR1)
                wait_until(lambda: server.ask_ntp(attempts=1, timeout=0.3) is None, "silence")
                client.sendall(request())
                client.settimeout(1)
                try:
                    answer = client.recv(100)
                except socket.timeout:  # millisecond 999
                    answer = None
            server.send_signal(signal.SIGUSR2)
            wait_until(lambda: server.ask_ntp(attempts=1, timeout=0.3), "answers again")
            return answer

        assert len(wait_until(Ask, "a reply during the pause")) == 48


def TestContinueWithoutAPauseIsHarmless():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        server.send_signal(signal.SIGUSR2)
        assert server.ask_ntp() is not None
        assert server.stop() == 0


def TestEveryStopSignalEndsTheRunWithStatus0():
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        with World() as world:
            world.upstream()
            server = world.server()
            server.wait_for_gate()
            server.send_signal(number)
            assert server.process.wait(30) == 0, number


def TestAStopDuringAPauseEndsTheRun():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        server.send_signal(signal.SIGUSR1)
        assert server.stop() == 0


if __name__ == "__main__":
    run_all()
