"""The program reads the wall clock through the C library and nowhere else."""

import calendar
import os
import struct
import subprocess

from every_service import Ask, CLIENT_REQUEST
from harness import BIN, BUILD, DEADLINE, World, request, run_all, seconds_of, wait_until

PRELOAD = os.path.join(BUILD, "lib", "fake_clock_preload.so")
# 3 October 2002, 12:00:00 UTC.
MOMENT = 1033646400


def FakedServer(world, milliseconds, moment=MOMENT, **environment):
    return world.server(preload=PRELOAD, attempts=1,
                        environment={"CVL_FAKE_TIME": f"{moment}.{milliseconds:03}", **environment})


def ExpectNoStart(moment, milliseconds=250):
    """A start at MOMENT ends with run-time error 6."""
    with World() as world:
        ended = subprocess.run(
            [os.path.join(BIN, "cvlserver")], capture_output=True, text=True, timeout=DEADLINE,
            check=False, env=dict(os.environ, CHRONVALE_HOME=world.home, LD_PRELOAD=PRELOAD,
                                  CVL_FAKE_TIME=f"{moment}.{milliseconds:03}"))
        assert (ended.returncode, ended.stderr) == (
            1, "cvlserver: run-time error 6: Overflow\n"), (moment, ended)


def SecondsAt(*date):
    return calendar.timegm(date)


def TestTheFakedMomentIsOnTheWire():
    with World() as world:
        world.upstream()
        server = FakedServer(world, 250)
        server.wait_for_gate()
        reply = server.ask_ntp(attempts=1)
        stamp = bytes.fromhex("c146afc0400a0a0a")
        assert reply[16:24] == stamp, reply[16:24].hex()
        assert reply[32:40] == stamp
        assert reply[40:48] == stamp


def TestTheZoneIsAppliedToTheFakedMoment():
    for zone in ("America/New_York", "Asia/Kathmandu", "Australia/Lord_Howe", "Etc/UTC"):
        with World() as world:
            world.upstream()
            server = FakedServer(world, 250, TZ=zone)
            server.wait_for_gate()
            assert seconds_of(server.ask_ntp(attempts=1)[40:]) == MOMENT, zone


def TestTheLogIsNamedForTheFakedDay():
    with World() as world:
        world.upstream()
        server = FakedServer(world, 250)
        server.wait_for_gate()
        wait_until(lambda: os.listdir(os.path.join(world.home, "Logs")) == ["CVLS031002.LOG"],
                   "the log of 3 October 2002")


def TestAStartInMillisecond999EndsWithRunTimeError6():
    ExpectNoStart(MOMENT, 999)


def TestAStartInMillisecond998Serves():
    with World() as world:
        world.upstream()
        server = FakedServer(world, 998)
        server.wait_for_gate()
        assert server.ask_ntp(request(), attempts=1)[44:48] == bytes.fromhex("ff7dee91")
        assert server.stop() == 0


def TestAStartNeedsAClockFromAugust1978ToFebruary2036():
    first = SecondsAt(1978, 8, 3, 0, 0, 0)
    end = SecondsAt(2036, 2, 7, 6, 28, 16)
    for moment in (0, first - 1, end, SecondsAt(2100, 1, 1, 0, 0, 0)):
        ExpectNoStart(moment)
    for moment in (first, end - 1):
        with World() as world:
            world.upstream()
            server = FakedServer(world, 250, moment)
            server.wait_for_gate()
            assert seconds_of(server.ask_ntp(attempts=1)[40:]) == moment
            assert server.stop() == 0


class SteppedServer:
    """A server whose wall clock shows MOMENT until a test sets it."""

    def __init__(self, world):
        self._path = os.path.join(world.home, "step")
        self.put_clock_to(MOMENT)
        self.server = FakedServer(world, 250, CVL_FAKE_STEP=self._path, TZ="UTC")
        self.server.wait_for_gate()

    def put_clock_to(self, moment):
        file = os.open(self._path, os.O_WRONLY | os.O_CREAT, 0o644)
        os.pwrite(file, struct.pack("=q", moment - MOMENT), 0)
        os.close(file)


def TestNtpAndTimeEndInFebruary2036():
    with World() as world:
        world.upstream()
        clock = SteppedServer(world)
        end = SecondsAt(2036, 2, 7, 6, 28, 16)
        clock.put_clock_to(end - 1)
        assert clock.server.ask_ntp()[40:44] == b"\xff" * 4
        assert Ask(37, "tcp", b"") == b"\xff" * 4
        clock.put_clock_to(end)
        assert clock.server.ask_ntp(attempts=2, timeout=0.3) is None
        assert Ask(37, "tcp", b"") == b""
        assert Ask(37, "udp", b"x", timeout=0.3) == b""
        # The others go on.
        assert struct.unpack("!I", Ask(519, "tcp", b""))[0] == end
        assert b"February 07, 2036 06:28:16" in Ask(13, "tcp", b"")
        assert len(Ask(3777, "udp", CLIENT_REQUEST)) == 24
        assert clock.server.stop() == 0


def TestUnixTimeEndsInJanuary2038():
    # No server starts in 2038, but one that was started before 2036 may still run.
    with World() as world:
        world.upstream()
        clock = SteppedServer(world)
        end = SecondsAt(2038, 1, 19, 3, 14, 8)
        clock.put_clock_to(end - 1)
        assert Ask(519, "tcp", b"") == b"\x7f\xff\xff\xff"
        clock.put_clock_to(end)
        assert Ask(519, "tcp", b"") == bytes(4)
        assert clock.server.stop() == 0


def TestARunningServerOutlastsAClockThatNoStartTakes():
    with World() as world:
        world.upstream()
        clock = SteppedServer(world)
        clock.put_clock_to(0)
        assert seconds_of(clock.server.ask_ntp()[40:]) == 0
        clock.put_clock_to(SecondsAt(2100, 1, 1, 0, 0, 0))
        assert clock.server.ask_ntp(attempts=2, timeout=0.3) is None
        clock.put_clock_to(MOMENT)
        assert seconds_of(clock.server.ask_ntp()[40:]) == MOMENT
        assert clock.server.stop() == 0


def TestARunningClockRunsOn():
    with World() as world:
        world.upstream()
        server = FakedServer(world, 0, CVL_FAKE_RUN="1")
        server.wait_for_gate()
        first = seconds_of(server.ask_ntp()[40:])
        wait_until(lambda: seconds_of(server.ask_ntp()[40:]) > first, "the next second")


if __name__ == "__main__":
    run_all()
