"""The disk of the program directory is full: the services go on, and nothing stored is lost."""

import os
import re

from every_service import ExpectAnswers
from harness import SETTINGS, World, run, run_all, wait_until

# A stop wants to write all of these anew.
CHANGING = tuple(line.replace('"NO:59', '"no:59') for line in SETTINGS) + (
    '"EnableLogging"="NO"', '"UseJulian"="NO"')
PAGE = 4096
LINE = r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d \S+ - CVLS5 \S+ \S+ \S+ GET TIME - 0 0 [^-]* (TCP|UDP) - "


class SmallDiskWorld(World):
    """A world whose program directory is a disk of 256 kB."""

    def __init__(self):
        super().__init__(servers=None, settings=None)
        run("mount", "-t", "tmpfs", "-o", "size=256k", "tmpfs", self.home)
        self.write_server_file(["10.77.0.2:::Server NA:::2:::"])
        self.write_settings(CHANGING)
        self._ballast = os.path.join(self.home, "ballast")

    def __exit__(self, *what):
        run("umount", "--lazy", self.home)
        super().__exit__(*what)

    def fill(self):
        with open(self._ballast, "ab", buffering=0) as file:
            try:
                while file.write(bytes(PAGE)):
                    pass
            except OSError:
                return

    def free(self):
        os.unlink(self._ballast)

    def settings_text(self):
        with open(os.path.join(self.home, "registry.reg"), "rb") as file:
            return file.read()

    def log_size(self):
        folder = os.path.join(self.home, "Logs")
        return sum(os.path.getsize(os.path.join(folder, name)) for name in os.listdir(folder))


def LogIsFull(world, server):
    """Whether the log has used up what its last page still had to give."""
    server.ask_ntp()
    before = world.log_size()
    for _ in range(4):
        server.ask_ntp()
    return world.log_size() == before


def TestRequestsAreAnsweredWhileTheLogCannotGrowAndItGoesOnAfterwards():
    with SmallDiskWorld() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        world.fill()
        wait_until(lambda: LogIsFull(world, server), "the end of the log's room")
        room = -world.log_size() % PAGE
        assert room < 150, room
        for _ in range(3):
            ExpectAnswers()
        assert -world.log_size() % PAGE <= room
        lines = len(server.log_lines())

        world.free()
        ExpectAnswers()
        wait_until(lambda: server.log_lines()[-1].endswith(" 3777 CVL Server Client UDP - "),
                   "the line of the last request")
        assert len(server.log_lines()) >= lines + 8
        # What there was no room for left no half of a line.
        for line in server.log_lines():
            assert re.fullmatch(LINE, line), line
        assert server.stop() == 0


def TestTheDaysFirstRequestOnAFullDisk():
    with SmallDiskWorld() as world:
        world.upstream()
        world.fill()
        server = world.server()
        server.wait_for_gate()
        ExpectAnswers()
        assert server.log_lines() == []
        world.free()
        ExpectAnswers()
        wait_until(lambda: len(server.log_lines()) >= 8, "lines of the new requests")
        assert server.stop() == 0


def TestAStopOnAFullDiskLosesNothing():
    with SmallDiskWorld() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        stored = world.settings_text()
        world.fill()
        assert server.stop() == 0
        assert world.settings_text() == stored
        left = set(os.listdir(world.home))
        assert left <= {"registry.reg", "QRB_CVLS4.CVL", "Logs", "ballast", "cvlserver.lock"}, left

        # And the next run, once there is room, stores what it has.
        world.free()
        server = world.server()
        server.wait_for_gate()
        assert server.stop() == 0
        assert world.read_settings()["EnableLogging"] == "YES"
        assert world.read_settings()["Settings"] == "NO:59:Minute/s:NA:36"


def TestAFirstRunOnAFullDiskServesNothingYetAndTheNextIsAFirstRunAgain():
    with SmallDiskWorld() as world:
        os.unlink(os.path.join(world.home, "registry.reg"))
        world.fill()
        server = world.server()
        assert server.stop() == 0
        assert not os.path.exists(os.path.join(world.home, "registry.reg"))
        world.free()
        server = world.server()
        assert world.read_settings()["NTP37"] == "YES:YES:YES:37"
        assert server.stop() == 0
        assert world.read_settings()["NTP37"] == "YES:NO:NO:37"


if __name__ == "__main__":
    run_all()
