"""The program reads the wall clock through the C library and nowhere else."""

import os

from harness import BUILD, World, request, run_all, seconds_of, wait_until

PRELOAD = os.path.join(BUILD, "lib", "fake_clock_preload.so")
# 3 October 2002, 12:00:00 UTC.
MOMENT = 1033646400


def FakedServer(world, milliseconds, **environment):
    return world.server(preload=PRELOAD, attempts=1,
                        environment={"CVL_FAKE_TIME": f"{MOMENT}.{milliseconds:03}", **environment})


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
    with World() as world:
        server = None
        try:
            server = FakedServer(world, 999)
        except AssertionError as refused:
            assert "run-time error 6: Overflow" in str(refused), refused
        assert server is None


def TestAStartInMillisecond998Serves():
    with World() as world:
        world.upstream()
        server = FakedServer(world, 998)
        server.wait_for_gate()
        assert server.ask_ntp(request(), attempts=1)[44:48] == bytes.fromhex("ff7dee91")
        assert server.stop() == 0


def TestARunningClockRunsOn():
    with World() as world:
        world.upstream()
        server = FakedServer(world, 0, CVL_FAKE_RUN="1")
        server.wait_for_gate()
        first = seconds_of(server.ask_ntp()[40:])
        wait_until(lambda: seconds_of(server.ask_ntp()[40:]) > first, "the next second")


if __name__ == "__main__":
    run_all()
