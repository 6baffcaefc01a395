"""Server files as nobody should supply them, and none at all."""

import os
import random
import subprocess

from harness import BIN, PEER_ADDRESS, SETTINGS, World, run_all, wait_until

GOOD = f"{PEER_ADDRESS}:::Server NA:::2:::".encode("ascii")
HEADER = b"".join(b"header %d\r\n" % number for number in range(1, 6))
SERVICES = {"NTP37": "37", "SNTP123": "123", "UNIX519": "519", "CVL3777": "3777", "DTS13": "13"}


def Put(world, content):
    with open(os.path.join(world.home, "QRB_CVLS4.CVL"), "wb") as file:
        file.write(content)


def StoredServices(world):
    stored = world.read_settings()
    return {name: stored[name] for name in SERVICES}


def ExpectServed(content):
    """A run with that file finds the good server in it."""
    with World() as world:
        Put(world, content)
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        assert server.stop() == 0


def ExpectNoServerFound(content):
    """A run with that file has settings and listeners, and nobody to ask."""
    with World() as world:
        Put(world, content)
        upstream = world.upstream()
        before = StoredServices(world)
        server = world.server()
        wait_until(lambda: ("udp", 13) in server.open_sockets(), "the listeners")
        assert server.ask_ntp(attempts=2, timeout=0.3) is None
        assert upstream.requests() == []
        assert server.stop() == 0
        after = StoredServices(world)
        assert after == before, (before, after)


def TestAMissingFileLeavesTheSettingsUnreadAndAStopPutsTheDefaultsOverThem():
    with World(servers=None) as world:
        world.write_settings(SETTINGS + ('"UseJulian"="YES"', '"OpenMinimized"="YES"'))
        world.upstream()
        server = world.server()
        assert server.open_sockets() == set()
        # The file comes too late for this run.
        Put(world, HEADER + GOOD)
        assert server.stop() == 0
        assert StoredServices(world) == {name: "NO:NO:NO:" + port
                                         for name, port in SERVICES.items()}
        stored = world.read_settings()
        assert stored["Settings"] == "YES:59:Minute/s:NA:0"
        assert stored["EnableLogging"] == "YES"
        assert stored["UseJulian"] == "YES"
        assert stored["OpenMinimized"] == "YES"


def TestADirectoryOfThatNameIsNoFile():
    with World(servers=None) as world:
        os.mkdir(os.path.join(world.home, "QRB_CVLS4.CVL"))
        server = world.server()
        assert server.open_sockets() == set()
        assert server.stop() == 0


def ExpectEnd(world, error, *wrapper):
    """A start, through WRAPPER if there is one, ends with that one line and status 1 and
    leaves the settings alone."""
    with open(os.path.join(world.home, "registry.reg"), "rb") as file:
        before = file.read()

    def Start():
        ended = subprocess.run([*wrapper, os.path.join(BIN, "cvlserver")],
                               env=dict(os.environ, CHRONVALE_HOME=world.home),
                               capture_output=True, text=True, timeout=30, check=False)
        assert ended.returncode == 1, ended
        # A start in millisecond 999 doesn't come as far.
        return ended.stderr if "error 6" not in ended.stderr else None

    line = wait_until(Start, "an end")
    assert line == f"cvlserver: run-time error {error}\n", line
    with open(os.path.join(world.home, "registry.reg"), "rb") as file:
        assert file.read() == before


def TestAnUnreadableFileEndsTheProgramAndLeavesTheSettingsAlone():
    with World() as world:
        os.chmod(os.path.join(world.home, "QRB_CVLS4.CVL"), 0)
        ExpectEnd(world, "70: Permission denied", "setpriv",
                  "--bounding-set=-dac_override,-dac_read_search",
                  "--inh-caps=-dac_override,-dac_read_search")


def TestTooManyServersEndTheProgramAndLeaveTheSettingsAlone():
    with World() as world:
        Put(world, HEADER + (GOOD + b"\r\n") * 301)
        ExpectEnd(world, "9: Subscript out of range")


def TestThreeHundredServersAreNotTooMany():
    ExpectServed(HEADER + (GOOD + b"\r\n") * 300)


def TestAPictureThatTheTableLacksEndsTheProgramAndLeavesTheSettingsAlone():
    with World() as world:
        Put(world, HEADER + GOOD.replace(b":::2:::", b":::36:::"))
        ExpectEnd(world, "380: Invalid property value")


def TestLinesThatAreNoServersMayBeAsManyAsTheyLike():
    ExpectServed(HEADER + GOOD + b"\r\n" + b"no server\r\n" * 5000)


def TestEachKindOfLineEndIsOne():
    for end in (b"\r\n", b"\n", b"\r"):
        ExpectServed((HEADER.replace(b"\r\n", end)) + GOOD + end)
    ExpectServed(HEADER + GOOD)


def TestAByteOrderMarkIsNoPartOfTheHeader():
    ExpectServed(b"\xef\xbb\xbf" + HEADER + GOOD)


def TestAnEmptyFileIsAnEmptyList():
    ExpectNoServerFound(b"")


def TestAnEmptyLineAmongTheFirstFiveEndsTheList():
    ExpectNoServerFound(b"header\r\n\r\nheader\r\nheader\r\nheader\r\n" + GOOD)


def TestTheListEndsAtItsFirstEmptyLine():
    ExpectNoServerFound(HEADER + b"\r\n" + GOOD)


def TestBinaryRubbishIsAnEmptyList():
    draw = random.Random(20021003)
    for content in (draw.randbytes(1000000), bytes(1000000), b"\xff" * 1000000,
                    (HEADER + GOOD).decode("ascii").encode("utf-16")):
        ExpectNoServerFound(content)


def TestServersOfRubbishDoNotKeepFromTheGoodOne():
    draw = random.Random(20021003)
    table = bytes(value if value not in b"\r\n:" else 1 for value in range(256))
    lines = [b":::".join(draw.randbytes(20).translate(table) for _ in range(4))
             for _ in range(100)]
    lines += [b"h" * 1000 + b":::Long\xff:::2:::", b":::::::::", b"a:::b:::c:::d:::e"]
    ExpectServed(HEADER + b"\r\n".join(lines) + b"\r\n" + GOOD + b"\r\n")


def TestARubbishServerIsAskedForAgainAndAgainAndTheProgramLives():
    for host in (b"\x01\xff\xfe", b"h" * 1000, b"a b:123", b"300.300.300.300", b"%s%n", b"-1",
                 b"::1", b"a..b"):
        with World() as world:
            Put(world, HEADER + host + b":::Server NA:::2:::\r\n")
            server = world.server(environment={"CHRONVALE_TRACE": "1"})
            wait_until(lambda: ("udp", 13) in server.open_sockets(), "the listeners")
            assert server.ask_ntp(attempts=2, timeout=0.6) is None
            assert server.process.poll() is None, host
            assert server.stop() == 0, host


if __name__ == "__main__":
    run_all()
