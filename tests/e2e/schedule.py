"""The interval of the settings: when the upstream is asked, that clients never wait for it,
and that it is stored as it was."""

import time

from every_service import ExpectAnswers
from harness import SERVER_ADDRESS, SETTINGS, World, request, run_all

SERVICES = SETTINGS[1:]


def With(settings):
    return (f'"Settings"="{settings}"',) + SERVICES


def TestAnIntervalOfOneSecondAsksAtEverySecond():
    for interval in ("1:Second/s", "-5:Minute/s", "0.4:Hour/s"):
        with World(settings=With(f"NO:{interval}:NA:36")) as world:
            upstream = world.upstream()
            server = world.server()
            moments = [moment for moment, _, _ in upstream.wait_for_requests(5)]
            # The first leaves at the start, anywhere in the timer's second.
            assert moments[4] - moments[1] > 2500, (interval, moments)
            assert server.stop() == 0


def TestAnIntervalOfThreeSecondsAsksAtEveryThird():
    with World(settings=With("NO:3:Second/s:NA:36")) as world:
        upstream = world.upstream()
        server = world.server()
        moments = [moment for moment, _, _ in upstream.wait_for_requests(4)]
        assert moments[2] - moments[1] > 2500 and moments[3] - moments[2] > 2500, moments
        assert server.stop() == 0


def TestALongIntervalAsksOnceAtTheStart():
    for interval in ("1:Minute/s", "1:fortnight", "1:"):
        with World(settings=With(f"NO:{interval}:NA:36")) as world:
            upstream = world.upstream()
            server = world.server()
            server.wait_for_gate()
            ticks = time.monotonic() + 2.5
            while time.monotonic() < ticks:
                assert server.ask_ntp() is not None
            assert len(upstream.requests()) == 1, interval
            assert server.stop() == 0


def TestAnIntervalThatDoesNotFitEndsTheProgram():
    for interval in ("596524:Hour/s", "24856:Day/s", "1e6:Day/s"):
        with World(settings=With(f"NO:{interval}:NA:36")) as world:
            try:
                server = world.server(attempts=1)
            except AssertionError as refused:
                assert "run-time error 6: Overflow" in str(refused), refused
                continue
            assert server.process.wait(30) == 1, interval
            assert server.errors.to_the_end() == ["cvlserver: run-time error 6: Overflow"]


def TestClientsAreServedAtOnceWhileRequestsAreOut():
    for behaviour in ("silent", "delay 700"):
        with World(settings=With("NO:1:Second/s:NA:36")) as world:
            upstream = world.upstream()
            server = world.server()
            server.wait_for_gate()
            upstream.tell(behaviour)
            before = len(upstream.requests())
            waits = []
            with world.peer_socket() as client:
                client.settimeout(5)
                client.connect((SERVER_ADDRESS, 123))
                while len(upstream.requests()) < before + 3:
                    begin = time.monotonic()
                    client.send(request(transmit=b"ABCDEFGH"))
                    try:
                        assert client.recv(100)[24:32] == b"ABCDEFGH"
                        waits.append(time.monotonic() - begin)
                    except TimeoutError:  # millisecond 999
                        continue
            # Hardly any meets the moment of a request, and none waits for its reply.
            assert sorted(waits)[len(waits) // 2] < 0.1, behaviour
            assert len(waits) > 100, (behaviour, len(waits))
            ExpectAnswers()
            assert server.stop() == 0


def TestTheSettingsOfTheScheduleComeBackAsTheyWere():
    # What is stored, and what a stop makes of it; further runs leave that alone.
    for stored, kept in (("YES:1:Second/s:NA:36", "YES:1:Second/s:NA:36"),
                         ("NO:90:Second/s:EU:36", "NO:90:Second/s:EU:36"),
                         ("YES:59:Minutes/s:NA:36", "YES:59:Minutes/s:NA:36"),
                         ("NO:1.5:Hour/s:AS:36", "NO:1.5:Hour/s:AS:36"),
                         ("NO:007:fortnight:NA:36", "NO:007:fortnight:NA:36"),
                         ("no:5:Day/s:na:36", "NO:5:Day/s:na:36"),
                         ("NO:abc:Second/s:NA:36", "NO:59:Second/s:NA:36"),
                         ("NO::Hour/s:NA:36", "NO:59:Hour/s:NA:36"),
                         ("NO:1000000:Second/s:NA:36", "NO:100000:Second/s:NA:36"),
                         ("NO:1:Hour/s: EU :36", "NO:1:Hour/s:EU:36"),
                         ("NO:1:Hour/s::36", "NO:1:Hour/s:NA:36"),
                         ("NO:1:Hour/s:NA:99", "NO:1:Hour/s:NA:36"),
                         ("NO:1:Hour/s:NA", "NO:1:Hour/s:NA:36"),
                         ("NO:1:Hour/s:NA:36:more:yet", "NO:1:Hour/s:NA:36")):
        with World(settings=With(stored)) as world:
            for _ in range(3):
                server = world.server()
                assert server.stop() == 0
                assert world.read_settings()["Settings"] == kept, stored
                assert world.read_settings()["NTP37"] == "YES:YES:YES:37"


def TestTooFewFieldsAreNoFirstRunAndTheNextRunHasThemAll():
    with World(settings=With("NO:1")) as world:
        server = world.server()
        assert server.stop() == 0
        assert world.read_settings()["Settings"] == "YES:59:Minute/s:NA:0"
        assert world.read_settings()["NTP37"] == "NO:NO:NO:37"
        assert "UseJulian" not in world.read_settings()
        server = world.server()
        assert server.stop() == 0
        assert world.read_settings()["Settings"] == "YES:59:Minute/s:NA:36"


if __name__ == "__main__":
    run_all()
