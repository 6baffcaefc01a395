"""The wall clock is stepped by hours, days or years during a run, in either direction."""

import calendar
import os
import struct
import time

from every_service import Ask, ExpectAnswers
from harness import (BUILD, NTP_EPOCH, SETTINGS, World, request, run_all, seconds_of,
                     wait_until)

PRELOAD = os.path.join(BUILD, "lib", "fake_clock_preload.so")
# 3 October 2002, 22:30:00 UTC.
MOMENT = 1033684200
HOUR = 3600
EVERY_SECOND = tuple(line.replace('"NO:59:Minute/s', '"NO:1:Second/s') for line in SETTINGS)


class SteppedClock:
    """A server whose wall clock stands at MOMENT, or runs from there, and can be stepped."""

    def __init__(self, world, runs=False):
        self._path = os.path.join(world.home, "step")
        self.step_to(0)
        environment = {"CVL_FAKE_TIME": f"{MOMENT}.250", "CVL_FAKE_STEP": self._path, "TZ": "UTC"}
        if runs:
            environment["CVL_FAKE_RUN"] = "1"
        self.server = world.server(preload=PRELOAD, attempts=1, environment=environment)
        self.server.wait_for_gate()

    def step_to(self, seconds):
        """Puts the clock so many seconds from where it would be; at once."""
        # Over the old bytes, in one piece: the server has them in its memory.
        file = os.open(self._path, os.O_WRONLY | os.O_CREAT, 0o644)
        os.pwrite(file, struct.pack("=q", seconds), 0)
        os.close(file)


def TestTheServicesAnswerWithTheNewTime():
    for step in (3 * HOUR, -5 * HOUR, 300 * 24 * HOUR, -20 * 365 * 24 * HOUR, 0):
        with World() as world:
            world.upstream()
            clock = SteppedClock(world)
            reference = seconds_of(clock.server.ask_ntp()[16:])
            clock.step_to(step)
            now = MOMENT + step
            reply = clock.server.ask_ntp()
            assert seconds_of(reply[32:]) == now, step
            assert seconds_of(reply[40:]) == now, step
            # The moment of the last synchronisation is what it was.
            assert seconds_of(reply[16:]) == reference == MOMENT
            assert struct.unpack("!I", Ask(37, "tcp", b""))[0] == now + NTP_EPOCH
            assert struct.unpack("!I", Ask(519, "tcp", b""))[0] == now
            text = Ask(13, "udp", b"x").decode("ascii")
            moment = time.strptime(text, "%A, %B %d, %Y %H:%M:%S-UTC")
            assert calendar.timegm(moment) == now, text
            assert clock.server.stop() == 0


def TestEveryLineGoesToTheFileOfItsDay():
    with World() as world:
        world.upstream()
        clock = SteppedClock(world)
        logs = os.path.join(world.home, "Logs")

        def Lines(day):
            with open(os.path.join(logs, f"CVLS{day}.LOG"), newline="", encoding="ascii") as log:
                return log.read().split("\r\n")[:-1]

        def ExpectLineOf(step, day, beginning):
            clock.step_to(step)
            before = len(Lines(day)) if os.path.exists(f"{logs}/CVLS{day}.LOG") else 0
            assert clock.server.ask_ntp() is not None
            wait_until(lambda: os.path.exists(f"{logs}/CVLS{day}.LOG")
                       and len(Lines(day)) > before, "the line of " + day)
            lines = Lines(day)
            assert lines[-1].startswith(beginning), lines[-1]
            assert len([line for line in lines if line.startswith("#")]) == 5, lines
            assert len(lines) == (before + 1 if before else 6), lines

        ExpectLineOf(0, "031002", "2002-10-03 22:30:00 ")
        ExpectLineOf(2 * HOUR, "041002", "2002-10-04 00:30:00 ")
        # Back to a day that has its file, and its header.
        ExpectLineOf(0, "031002", "2002-10-03 22:30:00 ")
        ExpectLineOf(-23 * HOUR, "021002", "2002-10-02 23:30:00 ")
        ExpectLineOf(2 * HOUR, "041002", "2002-10-04 00:30:00 ")
        assert sorted(os.listdir(logs)) == ["CVLS021002.LOG", "CVLS031002.LOG", "CVLS041002.LOG"]
        assert clock.server.stop() == 0


def TestTheScheduleGoesOnTickingAsIfNothingHadHappened():
    with World(settings=EVERY_SECOND) as world:
        upstream = world.upstream()
        clock = SteppedClock(world, runs=True)
        # The first one leaves at the start, the others at each second.
        upstream.wait_for_requests(3)
        for step in (5 * HOUR, -7 * HOUR, 0):
            clock.step_to(step)
            before = len(upstream.requests())
            moments = [moment for moment, _, _ in upstream.wait_for_requests(before + 4)]
            # None is missed, and none is made up for.
            assert moments[before + 3] - moments[before] > 1500, moments[before:]
            assert clock.server.ask_ntp() is not None
        assert clock.server.stop() == 0


def TestTheReferenceMomentFollowsWithTheNextSynchronisation():
    with World(settings=EVERY_SECOND) as world:
        world.upstream()
        clock = SteppedClock(world)
        for step in (5 * HOUR, -7 * HOUR):
            clock.step_to(step)
            wait_until(lambda: seconds_of(clock.server.ask_ntp()[16:]) == MOMENT + step,
                       "the new reference moment")
        assert clock.server.stop() == 0


def TestWhatHasNoNumberForAMomentIsSilentUntilTheClockIsBack():
    with World(settings=EVERY_SECOND) as world:
        upstream = world.upstream()
        clock = SteppedClock(world)
        for step in (40 * 365 * 24 * HOUR, -110 * 365 * 24 * HOUR):
            clock.step_to(step)
            before = len(upstream.requests())
            assert clock.server.ask_ntp(attempts=2, timeout=0.3) is None, step
            assert Ask(123, "tcp", request(), timeout=0.3) == b"", step
            assert Ask(37, "tcp", b"", timeout=0.3) == b"", step
            assert Ask(37, "udp", b"x", timeout=0.3) == b"", step
            assert Ask(13, "tcp", b"").endswith(b":00-UTC"), step
            upstream.wait_for_requests(before + 2)
        clock.step_to(0)
        ExpectAnswers()
        assert clock.server.stop() == 0


def TestAStepCostsNoTime():
    with World() as world:
        world.upstream()
        clock = SteppedClock(world, runs=True)
        for step in (30 * 365 * 24 * HOUR, -30 * 365 * 24 * HOUR, 0):
            clock.step_to(step)
            assert clock.server.ask_ntp(attempts=2) is not None
        used = clock.server.processor_time()
        time.sleep(2)  # two ticks
        assert clock.server.processor_time() - used < 0.5
        assert clock.server.stop() == 0


if __name__ == "__main__":
    run_all()
