"""The settings file over a run: what a stop writes, and what nothing writes."""

import os
import signal

from harness import PEER_ADDRESS, SETTINGS, World, run_all

# A maker that refuses the connection at once.
NO_MAKER = {"CHRONVALE_MAKER_HOST": PEER_ADDRESS}


def Contents(world):
    with open(os.path.join(world.home, "registry.reg"), "rb") as file:
        return file.read()


def Put(world, contents):
    with open(os.path.join(world.home, "registry.reg"), "wb") as file:
        file.write(contents)


def TestAStopOverwritesWhatWasEditedMeanwhileAndKeepsTheRest():
    with World(settings=SETTINGS + ('"UseJulian"="YES"',)) as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        edited = Contents(world).replace(b"YES:YES:YES:37", b"NO:NO:NO:1037")
        edited = edited.replace(b'"UseJulian"="YES"', b'"UseJulian"="NO"')
        Put(world, edited + b"; a note of the operator's\n\"Other\"=dword:00000007\n")
        assert server.stop() == 0
        settings = world.read_settings()
        assert settings["NTP37"] == "YES:YES:YES:37"
        assert settings["UseJulian"] == "NO"
        assert b"; a note of the operator's\n\"Other\"=dword:00000007\n" in Contents(world)


def TestAKilledRunWritesNothing():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        edited = Contents(world).replace(b"YES:YES:YES:37", b"NO:NO:NO:1037")
        Put(world, edited)
        server.send_signal(signal.SIGKILL)
        server.process.wait()
        assert Contents(world) == edited


def TestAFirstRunStoresItsTransportsAsOffAndTheNextRunOpensNone():
    with World(settings=None) as world:
        upstream = world.upstream()
        server = world.server()
        upstream.wait_for_requests(1)
        assert world.read_settings()["SNTP123"] == "YES:YES:YES:123"
        assert not any(kind == "tcp" for kind, _ in server.open_sockets())
        assert server.stop() == 0
        stored = world.read_settings()
        assert stored["SNTP123"] == "YES:NO:NO:123"
        assert stored["DTS13"] == "NO:NO:NO:13"
        server = world.server()
        upstream.wait_for_requests(2)
        assert not any(kind == "tcp" for kind, _ in server.open_sockets())
        assert server.stop() == 0
        assert world.read_settings() == stored


def TestARunWithoutAServerFileStoresTheWindowsDefaults():
    with World(servers=None) as world:
        server = world.server(environment=NO_MAKER)
        assert server.open_sockets() == set()
        assert server.stop() == 0
        stored = world.read_settings()
        assert stored["Settings"] == "YES:59:Minute/s:NA:0"
        assert stored["NTP37"] == "NO:NO:NO:37"


def TestADamagedFileIsNeverWritten():
    with World() as world:
        damaged = Contents(world) + b"this line makes no sense\n"
        Put(world, damaged)
        upstream = world.upstream()
        server = world.server()
        upstream.wait_for_requests(1)
        assert server.stop() == 0
        assert Contents(world) == damaged


if __name__ == "__main__":
    run_all()
