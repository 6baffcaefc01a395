"""The lamps and the clock of the window, as they stand on the screen."""

import signal
import time

from desktop import Desktop
from hand import CLOCK, TITLE, Hand
from harness import SETTINGS, World, run_all, wait_until

SRC, RX, TX, UDP, TCP = range(5)
# The upstream's requests then tell of the seconds that pass while the window can't be seen.
EVERY_SECOND = ('"Settings"="NO:1:Second/s:NA:36"',) + SETTINGS[1:]
ATTEMPTS = 8


class Display:
    """The clock and the lamps of a run that answers."""

    def __init__(self, world, desktop):
        self.upstream = world.upstream()
        self.server = desktop.server("-config")
        self.hand = Hand(desktop)
        self.desktop = desktop
        self.server.wait_for_gate()

    def clock(self):
        return self.desktop.area(self.hand.window, *CLOCK)

    def wait_for_a_tick(self):
        before = self.clock()
        wait_until(lambda: self.clock() != before, "the clock's next second")

    def lit(self):
        """The lamps that are lit, but for that of the exchange: it is lit from the first on."""
        return self.hand.lit_lamps() - {SRC}

    def ask(self, transport):
        if transport == "udp":
            return self.server.ask_ntp(timeout=0.3)
        return self.server.ask_tcp(b"", port=37)

    def comes_this_second(self, state):
        """Whether STATE() comes before the clock goes on."""
        face = self.clock()
        while self.clock() == face:
            if state():
                return True
        return False

    def blinks(self, transport, lamps):
        """Whether a request is seen on LAMPS before the next second puts them out. That second
        may begin at any moment."""
        self.wait_for_a_tick()
        return (self.comes_this_second(lambda: not self.lit() & lamps) and self.ask(transport)
                and self.comes_this_second(lambda: self.lit() >= lamps))

    def goes_dark(self):
        """Whether no lamp outlasts the next tick."""
        self.wait_for_a_tick()
        return self.comes_this_second(lambda: not self.lit())

    def expect(self, state, what):
        """For what the next second may cut short."""
        assert any(state() for _ in range(ATTEMPTS)), "never came: " + what


def TestLampsBlinkWithARequestAndGoDarkAtTheNextTick():
    with World() as world, Desktop(world) as desktop:
        display = Display(world, desktop)

        def Blinks(transport, lamps):
            if not display.blinks(transport, lamps):
                return False
            desktop.shot("lamps-" + transport, display.hand.window)
            assert display.lit() <= lamps
            return display.goes_dark()

        display.expect(lambda: Blinks("udp", {RX, TX, UDP}), "a blink by UDP")
        display.expect(lambda: Blinks("tcp", {RX, TX, TCP}), "a blink by TCP")
        assert display.server.stop() == 0


def TestInTheTrayLampsStayAsTheyAre():
    with World(settings=EVERY_SECOND) as world, Desktop(world, tray=True) as desktop:
        display = Display(world, desktop)

        def OutlastsTheTray():
            if not display.blinks("udp", {TX}):
                return False
            icon = display.hand.go_to_the_tray()
            display.upstream.wait_for_requests(len(display.upstream.requests()) + 3)
            desktop.click_at(*icon)
            desktop.window(TITLE)
            return display.comes_this_second(lambda: TX in display.lit())

        display.expect(OutlastsTheTray, "a lamp that was lit all the time")
        assert display.server.stop() == 0


def TestTheClockAdvancesEachSecond():
    with World() as world, Desktop(world) as desktop:
        display = Display(world, desktop)
        begin = time.monotonic()
        faces = [display.clock()]
        for _ in range(3):
            display.wait_for_a_tick()
            assert display.clock() not in faces
            faces.append(display.clock())
        # A tick may be late, and the next one then comes early.
        assert time.monotonic() - begin > 1.5
        assert display.server.stop() == 0


def TestAPauseFreezesClockAndLamps():
    with World() as world, Desktop(world) as desktop:
        display = Display(world, desktop)

        def OutlastsThePause():
            if not display.blinks("udp", {RX, TX, UDP}):
                return False
            display.server.send_signal(signal.SIGUSR1)
            wait_until(lambda: display.ask("udp") is None, "silence")
            return display.lit() == {RX, TX, UDP}

        def Resume():
            display.server.send_signal(signal.SIGUSR2)
            display.server.wait_for_gate()
            return False

        display.expect(lambda: OutlastsThePause() or Resume(), "a pause with lamps lit")
        face = display.clock()
        # More than two seconds of silence.
        assert display.server.ask_ntp(attempts=8, timeout=0.3) is None
        assert display.clock() == face
        assert display.lit() == {RX, TX, UDP}
        desktop.shot("paused", display.hand.window)
        display.server.send_signal(signal.SIGUSR2)
        display.wait_for_a_tick()
        wait_until(lambda: not display.lit(), "dark lamps")
        display.server.wait_for_gate()
        assert display.server.stop() == 0


if __name__ == "__main__":
    run_all()
