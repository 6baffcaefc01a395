"""A desktop without a tray: the minimised window must not be out of reach."""

import signal

from desktop import Desktop
from hand import TITLE, Hand
from harness import SETTINGS, World, run_all, wait_until


def InTaskBar(desktop):
    """The main window's number, when a task bar would show it."""
    listed = desktop.output("xprop", "-root", "_NET_CLIENT_LIST").split("#")[-1]
    for window in listed.replace(",", " ").split():
        shown = desktop.output("xprop", "-id", window, "_NET_WM_NAME", "_NET_WM_STATE")
        if f'"{TITLE}"' in shown and "SKIP_TASKBAR" not in shown:
            return window
    return None


def IsMinimised(desktop, window):
    return "Iconic" in desktop.output("xprop", "-id", window, "WM_STATE")


def ExpectMinimised(desktop):
    wait_until(lambda: (window := InTaskBar(desktop)) and IsMinimised(desktop, window),
               "the window in the task bar")
    assert not desktop.windows(TITLE)


def TestTheMinimisedWindowStaysInTheTaskBarAndComesBack():
    with World() as world, Desktop(world) as desktop:
        world.upstream()
        server = desktop.server("-config")
        hand = Hand(desktop)
        server.wait_for_gate()
        for _ in range(2):
            hand.minimise()
            ExpectMinimised(desktop)
            assert server.ask_ntp()
            ExpectMinimised(desktop)
            desktop.do("windowactivate", InTaskBar(desktop))
            desktop.window(TITLE)
            wait_until(lambda: not IsMinimised(desktop, InTaskBar(desktop)), "a normal window")
        assert server.stop() == 0


def TestARunThatOpensMinimisedIsInTheTaskBar():
    with World(settings=SETTINGS + ('"OpenMinimized"="YES"',)) as world, \
            Desktop(world) as desktop:
        world.upstream()
        server = desktop.server("-config")
        ExpectMinimised(desktop)
        server.wait_for_gate()
        desktop.do("windowactivate", InTaskBar(desktop))
        Hand(desktop)
        assert server.stop() == 0


def TestAMinimisedRunCanBeStopped():
    with World() as world, Desktop(world) as desktop:
        server = desktop.server("-config")
        Hand(desktop).minimise()
        ExpectMinimised(desktop)
        server.send_signal(signal.SIGTERM)
        assert server.process.wait(30) == 0


def TestATrayThatComesLaterTakesTheWindowIn():
    with World() as world, Desktop(world) as desktop:
        world.upstream()
        server = desktop.server("-config")
        hand = Hand(desktop)
        server.wait_for_gate()
        hand.minimise()
        ExpectMinimised(desktop)
        desktop.start_tray()
        icon = hand.wait_for_tray_icon()
        wait_until(lambda: not InTaskBar(desktop), "the window to leave the task bar")
        desktop.click_at(*icon)
        desktop.window(TITLE)
        assert server.stop() == 0


def TestATrayThatGoesAwayGivesTheWindowBack():
    with World() as world, Desktop(world) as desktop:
        world.upstream()
        tray = desktop.start_tray()
        server = desktop.server("-config")
        hand = Hand(desktop)
        server.wait_for_gate()
        hand.go_to_the_tray()
        tray.kill()
        ExpectMinimised(desktop)
        desktop.do("windowactivate", InTaskBar(desktop))
        desktop.window(TITLE)
        assert server.stop() == 0


if __name__ == "__main__":
    run_all()
