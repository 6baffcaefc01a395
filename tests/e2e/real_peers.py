"""A real time server as the upstream, and real clients."""

import os
import re
import socket
import subprocess

from harness import (BIN, PEER_ADDRESS, SERVER_ADDRESS, World, request, run_all,
                     wait_until)


def Chronyd(world, words, *directives):
    """Starts chronyd without any right to touch a clock; ends with the world."""
    return subprocess.Popen(world.on_peer("chronyd", "-x", "-u", "root", "-d", *words,
                                          *directives), stdout=subprocess.DEVNULL,
                            stderr=subprocess.DEVNULL)


def WithChronydUpstream(world):
    chronyd = Chronyd(world, ("-L", "3"), "local stratum 8", f"allow {SERVER_ADDRESS}",
                      f"bindaddress {PEER_ADDRESS}", "cmdport 0",
                      "bindcmdaddress /", f"pidfile {world.home}/chronyd.pid")
    assert chronyd.poll() is None
    return chronyd


def ChronydAnswers():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as client:
        client.settimeout(0.2)
        client.connect((PEER_ADDRESS, 123))
        try:
            client.send(request())
            return client.recv(100)
        except OSError:
            return None


def TestChronydAsTheUpstreamOpensTheGate():
    with World(servers=(PEER_ADDRESS, PEER_ADDRESS)) as world:
        chronyd = WithChronydUpstream(world)
        # It is asked once in an hour, so that the first request must find it ready.
        wait_until(ChronydAnswers, "chronyd")
        server = world.server()
        server.wait_for_gate()
        assert server.stop() == 0
        chronyd.terminate()
        chronyd.wait()


def TestNtpdigReadsTheTime():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()

        def Ask():
            done = subprocess.run(world.on_peer("ntpdig", "-t", "3", SERVER_ADDRESS),
                                  capture_output=True, text=True, check=False)
            return done.stdout if done.returncode == 0 else None

        answer = wait_until(Ask, "an answer to ntpdig")
        found = re.search(r"([+-]\d+\.\d+) \+/- (\d+\.\d+) " + re.escape(SERVER_ADDRESS), answer)
        assert found, answer
        # The machine asks itself. A whole second carries 10 ms of fraction, and a second that
        # turns over between two readings nearly a second.
        assert abs(float(found.group(1))) < 1.1, answer
        assert " s2 " in answer, answer


def TestChronydAsAClientReadsTheTime():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()

        def Ask():
            done = subprocess.run(
                world.on_peer("chronyd", "-Q", "-x", "-u", "root", "-t", "8",
                              f"server {SERVER_ADDRESS} iburst maxsamples 1", "cmdport 0",
                              f"pidfile {world.home}/client.pid"),
                capture_output=True, text=True, check=False)
            text = done.stdout + done.stderr
            return text if "System clock wrong by" in text else None

        answer = wait_until(Ask, "an answer to chronyd -Q")
        wrong_by = float(re.search(r"System clock wrong by (-?\d+\.\d+) seconds", answer).group(1))
        assert abs(wrong_by) < 1.1, answer


def TestOurOwnClientAgrees():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()

        def Ask():
            done = subprocess.run([os.path.join(BIN, "cvlquery"), "ntp", SERVER_ADDRESS],
                                  capture_output=True, text=True, check=False)
            return done.stdout if done.returncode == 0 else None

        answer = wait_until(Ask, "an answer to cvlquery")
        assert answer.count("stratum          2") == 2, answer


if __name__ == "__main__":
    run_all()
