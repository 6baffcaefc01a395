"""The clients that people have at hand: rdate and nc; and inetd's services as a neighbour."""

import calendar
import os
import re
import socket
import subprocess
import time

from harness import PEER_ADDRESS, SERVER_ADDRESS, World, run_all, wait_until

DAYTIME = r"[A-Z][a-z]+day, [A-Z][a-z]+ \d\d, \d{4} \d\d:\d\d:\d\d-\S+"
JULIAN = r"\n\d{5} \d\d-\d\d-\d\d \d\d:\d\d:\d\d .*\n"


def Ask(world, *words):
    """Runs a client on the peer's machine; its end, with what it wrote."""
    return subprocess.run(world.on_peer(*words), stdin=subprocess.DEVNULL, capture_output=True,
                          text=True, env=dict(os.environ, TZ="UTC", LC_ALL="C"), timeout=30,
                          check=False)


def AnswerTo(world, *words):
    """What a client writes in the end: in millisecond 999 and before the gate it gets nothing."""
    def Try():
        done = Ask(world, *words)
        return done.returncode == 0 and done.stdout
    return wait_until(Try, "an answer to " + " ".join(words))


def ExpectPresentTime(text, pattern, before):
    moment = calendar.timegm(time.strptime(text, pattern))
    assert before - 1 <= moment <= time.time(), text


def TestRdatePrintsTheTimeOverTcp():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        before = int(time.time())
        answer = AnswerTo(world, "rdate", "-p", SERVER_ADDRESS)
        ExpectPresentTime(answer, "%a %b %d %H:%M:%S UTC %Y\n", before)
        assert [line for line in server.log_lines()
                if PEER_ADDRESS + " - CVLS5" in line and " 4 12 0 37 Time TCP" in line]


def TestRdatePrintsTheTimeOverNtp():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        before = int(time.time())
        answer = AnswerTo(world, "rdate", "-n", "-p", SERVER_ADDRESS)
        ExpectPresentTime(answer, "%a %b %d %H:%M:%S UTC %Y\n", before)


def TestRdateOverUdpGetsItsFourBytesOneByOne():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        # It wants the four in one datagram, and makes nothing of a single byte.
        done = Ask(world, "rdate", "-u", "-p", SERVER_ADDRESS)
        assert done.returncode == 1 and done.stdout == "", done
        assert "Could not read data" in done.stderr, done
        wait_until(lambda: [line for line in server.log_lines() if " 37 Time UDP" in line],
                   "the line of the request")


def TestNcReadsDaytimeOverTcpAndTheServerHangsUp():
    with World() as world:
        world.upstream()
        server = world.server(environment={"TZ": "UTC"})
        server.wait_for_gate()
        before = int(time.time())
        # nc without a time limit ends when the server closes.
        answer = AnswerTo(world, "nc", "-d", SERVER_ADDRESS, "13")
        assert re.fullmatch(DAYTIME, answer), repr(answer)
        ExpectPresentTime(answer.rsplit("-", 1)[0], "%A, %B %d, %Y %H:%M:%S", before)


def TestNcReadsDaytimeOverUdp():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        client = subprocess.Popen(world.on_peer("nc", "-u", SERVER_ADDRESS, "13"),
                                  stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        try:
            client.stdin.write(b"what time is it?\n")
            client.stdin.flush()
            answer = client.stdout.read1(1000).decode("ascii")
        finally:
            client.kill()
            client.wait()
        assert re.fullmatch(DAYTIME, answer), repr(answer)
        wait_until(lambda: [line for line in server.log_lines()
                            if f" {len(answer)} 17 0 13 DayTime UDP - " in line],
                   "the line of the request")


def TestNcReadsTheJulianTextWhereItIsChosen():
    with World() as world:
        world.write_settings([f'"{name}"="{value}"' for name, value in
                              dict(world.read_settings(), UseJulian="YES").items()])
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        answer = AnswerTo(world, "nc", "-d", SERVER_ADDRESS, "13")
        assert re.fullmatch(JULIAN, answer), repr(answer)


class Inetd:
    """An ordinary time and daytime server on the peer's machine."""

    def __init__(self, world):
        configuration = os.path.join(world.home, "inetd.conf")
        with open(configuration, "w", encoding="ascii") as file:
            file.write("time stream tcp nowait root internal\n"
                       "daytime dgram udp wait root internal\n")
        self.process = subprocess.Popen(world.on_peer("inetutils-inetd", "-d", configuration),
                                        stderr=subprocess.DEVNULL)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()


def TestRdateReadsTheSameAsFromInetd():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        with Inetd(world):
            def SameTwice():
                theirs = AnswerTo(world, "rdate", "-p", PEER_ADDRESS)
                return theirs == AnswerTo(world, "rdate", "-p", SERVER_ADDRESS)
            # The second may turn over between the two.
            wait_until(SameTwice, "the same time from both", 5)


def TestAForgedDatagramSetsNoLoopGoingWithAnotherDaytimeServer():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()

        def Exchanges():
            return len([line for line in server.log_lines() if " 13 DayTime UDP" in line])

        def Forge():
            # The port is inetd's, which lets itself be shared, and gets what comes back.
            with world.peer_socket() as forger:
                forger.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
                forger.bind((PEER_ADDRESS, 13))
                forger.sendto(b"", (SERVER_ADDRESS, 13))
            return Exchanges() > 20

        with Inetd(world):
            AnswerTo(world, "rdate", "-p", PEER_ADDRESS)
            wait_until(Forge, "answers that answer each other")

            def HasEnded():
                seen = Exchanges()
                for _ in range(10):  # each takes many times the way there and back
                    AnswerTo(world, "nc", "-d", SERVER_ADDRESS, "13")
                return seen == Exchanges()

            wait_until(HasEnded, "the end of the loop", 10)
            assert server.stop() == 0


if __name__ == "__main__":
    run_all()
