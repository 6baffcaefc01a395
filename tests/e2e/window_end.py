"""The ends of a run with a window: whichever way it goes, the settings are written."""

import os
import signal

from desktop import Desktop
from hand import ABOUT, CHECK_UPDATE, CONFIGURATION, Hand, INTERVAL, TITLE
from harness import World, run_all
from update import MAKER, MakerSite, NameTheMaker, ScriptedMaker, VERSION_PATH, VersionFile
from window_boxes import NEW_PROGRAM, NOTHING_NEW

GONE = "cvlserver: the display is gone"


class Run:
    """A run whose interval has been set to 7 by hand, so that its settings tell of it."""

    def __init__(self, world, desktop, environment=None):
        self.world = world
        self.server = desktop.server("-config", environment=environment or {})
        self.hand = Hand(desktop)
        self.hand.write(INTERVAL, "7")
        # What is typed before a click has been taken in when that click shows something.
        self.configuration = self.hand.open_configuration()
        self.hand.close(self.configuration)
        desktop.wait_until_gone(CONFIGURATION)
        assert ":59:" in world.read_settings()["Settings"]

    def expect_end(self, status=0, lines=()):
        assert self.server.process.wait(30) == status
        assert self.server.errors.to_the_end() == list(lines)
        stored = self.world.read_settings()
        assert stored["Settings"] == "NO:7:Minute/s:NA:36", stored
        assert stored["EnableLogging"] == "YES"
        assert stored["CVL3777"] == "YES:YES:NO:3777"


def TestTheCloseButtonEndsTheProgram():
    with World() as world, Desktop(world) as desktop:
        run = Run(world, desktop)
        run.hand.close(run.hand.window)
        run.expect_end()


def TestTheCloseButtonTakesTheOtherWindowsAlong():
    with World() as world, Desktop(world) as desktop:
        run = Run(world, desktop)
        run.hand.open_configuration()
        run.hand.open_about()
        run.hand.close(run.hand.window)
        run.expect_end()
        for title in (TITLE, CONFIGURATION, ABOUT):
            assert not desktop.windows(title)


def TestTheServiceManagersStopEndsTheProgram():
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        with World() as world, Desktop(world) as desktop:
            run = Run(world, desktop)
            run.server.send_signal(number)
            run.expect_end()


def TestAStopEndsAnOpenBoxToo():
    # The file is of another size: the end of the first box must not open a second one.
    with World() as world, Desktop(world) as desktop, \
            MakerSite(world, {VERSION_PATH: VersionFile(7, latest="5.2.0")}) as maker:
        run = Run(world, desktop, {"CHRONVALE_MAKER_HOST": MAKER})
        desktop.click(run.hand.open_configuration(), *CHECK_UPDATE)
        desktop.window(NEW_PROGRAM)
        run.server.send_signal(signal.SIGTERM)
        run.expect_end()
        assert len(maker.asked()) == 1


def TestAStopEndsAnOpenMenuToo():
    with World() as world, Desktop(world, tray=True) as desktop:
        run = Run(world, desktop)
        run.hand.open_menu(run.hand.go_to_the_tray())
        run.server.send_signal(signal.SIGTERM)
        run.expect_end()


def TestAStopInAPauseEndsTheProgram():
    with World() as world, Desktop(world) as desktop:
        run = Run(world, desktop)
        run.server.send_signal(signal.SIGUSR1)
        run.server.send_signal(signal.SIGTERM)
        run.expect_end()


def TestADisplayThatGoesAwayEndsTheProgram():
    with World() as world, Desktop(world) as desktop:
        run = Run(world, desktop)
        desktop.break_display()
        run.expect_end(1, [GONE])


def TestADisplayThatThrowsTheProgramOutEndsIt():
    with World() as world, Desktop(world) as desktop:
        run = Run(world, desktop)
        desktop.do("windowkill", run.hand.window)
        run.expect_end(1, [GONE])


def TestADisplayThatGoesAwayTakesAnOpenBoxAlong():
    with World() as world, Desktop(world) as desktop, \
            MakerSite(world, {VERSION_PATH: VersionFile(7, latest="5.2.0")}):
        run = Run(world, desktop, {"CHRONVALE_MAKER_HOST": MAKER})
        desktop.click(run.hand.open_configuration(), *CHECK_UPDATE)
        desktop.window(NEW_PROGRAM)
        desktop.break_display()
        run.expect_end(1, [GONE])


def TestADisplayThatGoesAwayTakesTheTrayAlong():
    with World() as world, Desktop(world, tray=True) as desktop:
        run = Run(world, desktop)
        run.hand.open_menu(run.hand.go_to_the_tray())
        desktop.break_display()
        run.expect_end(1, [GONE])


def TestTheConfigurationWindowMayGoDuringACheck():
    with World() as world, Desktop(world) as desktop:
        maker = ScriptedMaker(world)
        run = Run(world, desktop, {"CHRONVALE_MAKER_HOST": MAKER})
        configuration = run.hand.open_configuration()
        desktop.click(configuration, *CHECK_UPDATE)
        connection, _ = maker.accept()
        run.hand.close(configuration)
        desktop.wait_until_gone(CONFIGURATION)
        body = VersionFile(os.path.getsize(os.path.join(world.home, "QRB_CVLS4.CVL")))
        connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\nServer: x\r\n"
                           b"\r\n%b" % (len(body), body))
        box = desktop.window(NOTHING_NEW)
        assert not desktop.windows(CONFIGURATION)
        desktop.activate(box)
        desktop.key("Return")
        desktop.wait_until_gone(NOTHING_NEW)
        # The next window's button can be pressed.
        desktop.click(run.hand.open_configuration(), *CHECK_UPDATE)
        maker.accept()
        run.server.send_signal(signal.SIGTERM)
        run.expect_end()
        maker.close()


if __name__ == "__main__":
    NameTheMaker()
    run_all()
