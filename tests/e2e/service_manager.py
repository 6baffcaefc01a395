"""What a service manager hears of the process that it started."""

import os
import signal
import socket

from harness import World, run_all, wait_until


class Manager:
    """The manager's end of the notifications."""

    def __init__(self, world, watchdog_us=None):
        self.path = os.path.join(world.home, "notify")
        self.messages = []
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self._socket.bind(self.path)
        self._socket.setblocking(False)
        self.environment = {"NOTIFY_SOCKET": self.path}
        if watchdog_us:
            self.environment["WATCHDOG_USEC"] = str(watchdog_us)

    def heard(self):
        try:
            while True:
                self.messages.append(self._socket.recv(4096).decode())
        except BlockingIOError:
            return self.messages

    def count(self, message):
        return self.heard().count(message)

    def wait_for(self, message):
        wait_until(lambda: message in self.heard(), repr(message))

    def status(self):
        """The last STATUS line, without its key."""
        lines = [each for each in self.heard() if each.startswith("STATUS=")]
        return lines[-1][len("STATUS="):] if lines else ""

    def wait_for_status(self, part):
        wait_until(lambda: part in self.status(), f"a status with {part!r}")
        return self.status()


def TestTheManagerHearsThatTheServiceIsReadyAndThatItStops():
    with World() as world:
        world.upstream()
        manager = Manager(world)
        server = world.server(environment=manager.environment)
        manager.wait_for("READY=1")
        assert "STOPPING=1" not in manager.heard()
        assert server.stop() == 0
        manager.wait_for("STOPPING=1")
        assert manager.count("READY=1") == 1
        assert manager.count("STOPPING=1") == 1
        assert manager.count("WATCHDOG=1") == 0


def TestTheStatusTellsTheLastSynchronisationAndTheTotals():
    with World() as world:
        manager = Manager(world)
        server = world.server(environment=manager.environment)
        manager.wait_for_status("Not synchronised yet; 0 requests (0 UDP, 0 TCP)")
        server.stop()

        world.upstream()
        server = world.server(environment=manager.environment)
        server.wait_for_gate()
        manager.wait_for_status("Synchronised ")
        before = manager.status()
        asked = 1
        while server.ask_tcp(bytes(48)) is None:  # millisecond 999
            asked += 1
        manager.wait_for_status(f", {asked} TCP)")
        assert manager.status() != before
        assert server.stop() == 0


def TestTheStatusNamesAPortThatCouldNotBeOpened():
    with World() as world:
        world.upstream()
        manager = Manager(world)
        with socket.socket(socket.AF_INET, socket.SOCK_STREAM) as taken:
            taken.bind(("0.0.0.0", 37))
            taken.listen()
            server = world.server(environment=manager.environment)
            manager.wait_for_status("; not open: Time TCP 37 (the port is in use)")
            assert server.stop() == 0


def TestTheStatusIsToldOnceWhileNothingChanges():
    with World() as world:
        manager = Manager(world, watchdog_us=400000)
        server = world.server(environment=manager.environment)
        manager.wait_for_status("Not synchronised yet")
        told = [each for each in manager.heard() if each.startswith("STATUS=")]
        # Fifteen signs of life are three ticks of the clock.
        before = manager.count("WATCHDOG=1")
        wait_until(lambda: manager.count("WATCHDOG=1") >= before + 15, "signs of life")
        assert [each for each in manager.heard() if each.startswith("STATUS=")] == told
        assert server.stop() == 0


def TestSignsOfLifeGoOnInAPause():
    with World() as world:
        world.upstream()
        manager = Manager(world, watchdog_us=200000)
        server = world.server(environment=manager.environment)
        server.wait_for_gate()
        server.send_signal(signal.SIGUSR1)
        manager.wait_for_status("Paused; ")
        before = manager.count("WATCHDOG=1")
        wait_until(lambda: manager.count("WATCHDOG=1") >= before + 5, "signs of life")
        server.send_signal(signal.SIGUSR2)
        wait_until(lambda: not manager.status().startswith("Paused"), "the end of the pause")
        assert server.stop() == 0


def TestNobodyIsToldWhereNoManagerStartedTheProcess():
    with World() as world:
        world.upstream()
        manager = Manager(world)
        server = world.server()
        server.wait_for_gate()
        assert server.stop() == 0
        assert manager.heard() == []


def TestAManagerThatHasGoneDoesNotDisturbTheService():
    with World() as world:
        world.upstream()
        manager = Manager(world, watchdog_us=100000)
        server = world.server(environment=manager.environment)
        manager.wait_for("WATCHDOG=1")
        os.unlink(manager.path)
        server.wait_for_gate()
        assert server.ask_ntp() is not None
        assert server.stop() == 0
        assert server.errors.lines == []


if __name__ == "__main__":
    run_all()
