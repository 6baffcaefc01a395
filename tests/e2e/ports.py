"""What the port texts of the settings open, and that they come back as they were."""

from every_service import Ask, ExpectAnswers
from harness import SETTINGS, World, run_all, wait_until

# The ports of the other four services.
OTHERS = {("tcp", 13), ("udp", 13), ("tcp", 123), ("udp", 123), ("tcp", 519), ("tcp", 3777),
          ("udp", 3777)}


class TimeServiceAt:
    """A run with the Time service at the port of a text, the others where they always are."""

    def __init__(self, world, text):
        self._world = world
        self._value = f"YES:YES:YES:{text}"
        world.write_settings([line for line in SETTINGS if not line.startswith('"NTP37"')]
                             + [f'"NTP37"="{self._value}"'])
        world.upstream()
        self.server = world.server()
        self.server.wait_for_gate()

    def ports(self):
        """The ports of the Time service; the others are open whatever became of them."""
        sockets = self.server.open_sockets()
        assert sockets >= OTHERS, sockets
        return sockets - OTHERS

    def stop(self):
        """Stops it, and looks at what is stored."""
        assert self.server.stop() == 0
        stored = self._world.read_settings()["NTP37"]
        fields = self._value.split(":")
        # A port box holds five characters.
        assert stored == ":".join(fields[:3] + [fields[3][:5]]), stored


def TestATextReadsAsTheNumberAtItsBeginning():
    for text, port in (("1037", 1037), ("1037a", 1037), ("32767", 32767), ("1e3", 1000),
                       ("12.5", 12), ("15.5", 16), (" 37", 37), ("+37", 37), ("00037", 37)):
        with World() as world:
            time_service = TimeServiceAt(world, text)
            assert time_service.ports() == {("tcp", port), ("udp", port)}, (text, port)
            assert len(Ask(port, "tcp", b"")) == 4, text
            assert len(Ask(port, "udp", b"x")) == 1, text
            time_service.stop()


def TestATextWithoutANumberTakesAFreePort():
    for text in ("abc", "", "0", "a37", "-0"):
        with World() as world:
            time_service = TimeServiceAt(world, text)
            ports = time_service.ports()
            assert sorted(kind for kind, _ in ports) == ["tcp", "udp"], (text, ports)
            for kind, port in ports:
                assert 0 < port <= 32767, (text, ports)
                assert len(Ask(port, kind, b"x" if kind == "udp" else b"")) in (1, 4), text
                wait_until(lambda: [line for line in time_service.server.log_lines()
                                    if f" 0 {port} Time {kind.upper()}" in line],
                           "the line that names the port")
            time_service.stop()


def TestWhatIsNoPortStaysClosed():
    for text in ("32768", "65535", "65536", "99999", "-1", "-37", "-3276", "-32768", "9e9", "1e999"):
        with World() as world:
            time_service = TimeServiceAt(world, text)
            assert time_service.ports() == set(), text
            time_service.stop()


def TestAPortTakenByAnotherServiceOfOursIsLeftToTheFirst():
    with World() as world:
        # The Time service is read before NTP.
        world.write_settings([line.replace('"YES:YES:YES:37"', '"YES:YES:YES:123"')
                              for line in SETTINGS])
        upstream = world.upstream()
        server = world.server()
        # The request goes out from a port of its own.
        upstream.wait_for_requests(1)
        wait_until(lambda: len(Ask(123, "udp", b"x")) == 1, "a byte of the time")
        assert len(Ask(123, "tcp", b"")) == 4
        assert server.stop() == 0
        assert world.read_settings()["SNTP123"] == "YES:YES:YES:123"


def TestEveryServiceAnswersAtItsOwnPort():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        assert server.open_sockets() == OTHERS | {("tcp", 37), ("udp", 37)}
        ExpectAnswers()
        assert server.stop() == 0


if __name__ == "__main__":
    run_all()
