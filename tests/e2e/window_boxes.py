"""Message boxes and the tray menu: what they ask and do, and that clients don't wait for them."""

import json
import os
import re
import stat

from desktop import Desktop
from every_service import ExpectAnswers
from hand import CHECK_UPDATE, Hand, NOTHING_NEW, TITLE
from harness import World, run_all, wait_until
from update import MAKER, MakerSite, NameTheMaker, SERVER_FILE_PATH, VERSION_PATH, VersionFile
from window_start import STAND_IN

NEW_PROGRAM = "Chronvale Server AUTO Update Available!"
NEW_FILE = "Chronvale Update Available!"


class Check:
    """A run with the configuration window open, and a maker whose files it may ask for."""

    def __init__(self, world, desktop, **variables):
        self.desktop = desktop
        world.upstream()
        self.server = desktop.server("-config", environment={"CHRONVALE_MAKER_HOST": MAKER,
                                                             **variables})
        self.hand = Hand(desktop)
        self.server.wait_for_gate()
        self.configuration = self.hand.open_configuration()

    def press(self, box):
        """Presses the update button, and returns the box that comes."""
        self.desktop.click(self.configuration, *CHECK_UPDATE)
        return self.desktop.window(box)

    def answer(self, box, key):
        window = self.desktop.window(box)
        self.desktop.activate(window)
        self.desktop.key(key)
        self.desktop.wait_until_gone(box)


def Size(world):
    return os.path.getsize(os.path.join(world.home, "QRB_CVLS4.CVL"))


def TestClientsAreAnsweredWhileABoxIsOpen():
    with World() as world, Desktop(world) as desktop, \
            MakerSite(world, {VERSION_PATH: VersionFile(Size(world))}):
        check = Check(world, desktop)
        check.press(NOTHING_NEW)
        ExpectAnswers()
        check.answer(NOTHING_NEW, "Return")
        # The button has come back.
        check.press(NOTHING_NEW)
        check.answer(NOTHING_NEW, "Escape")
        assert check.server.stop() == 0


def TestClientsAreAnsweredWhileTheMenuIsOpen():
    with World() as world, Desktop(world, tray=True) as desktop:
        world.upstream()
        server = desktop.server("-config")
        hand = Hand(desktop)
        server.wait_for_gate()
        hand.open_menu(hand.go_to_the_tray())
        ExpectAnswers()
        assert desktop.popup(), "the menu is still open"
        desktop.key("Escape")
        wait_until(lambda: not desktop.popup(), "the end of the menu")
        assert not desktop.windows(TITLE)
        assert desktop.tray_icon()
        assert server.stop() == 0


def FreeColumns(rows):
    """The widths of the stretches of an area where every column of pixels is the same."""
    columns = list(zip(*rows))
    runs = [1]
    for before, column in zip(columns, columns[1:]):
        if column == before:
            runs[-1] += 1
        else:
            runs.append(1)
    return runs


def ExpectWholeTitle(desktop, window):
    """A title that is cut fills its title bar; a whole one, in the middle, leaves room on both
    sides of it."""
    shown = desktop.output("xprop", "-id", window, "_NET_FRAME_EXTENTS")
    height = int(shown.split("=")[1].split(",")[2])
    width = int(re.search(r"Width: (\d+)", desktop.output("xwininfo", "-id", window)).group(1))
    rows = desktop.area(window, 0, -height, width, height)[height // 4:3 * height // 4]
    free = [run for run in FreeColumns(rows) if run > height // 2]
    assert len(free) >= 2, (height, width, sorted(FreeColumns(rows))[-4:])


def TestTitlesAreWholeOnADisplayOfTwiceTheUsualResolution():
    with World() as world, Desktop(world, size="1600x1200", dpi=192) as desktop, \
            MakerSite(world, {VERSION_PATH: VersionFile(7, latest="5.2.0")}):
        world.upstream()
        # The first check of a run without a server file asks the same as the button does.
        os.remove(os.path.join(world.home, "QRB_CVLS4.CVL"))
        server = desktop.server("-config", environment={"CHRONVALE_MAKER_HOST": MAKER})
        box = desktop.window(NEW_PROGRAM)
        desktop.shot("box-192-dpi")
        ExpectWholeTitle(desktop, box)
        assert server.stop() == 0


def TestTitlesAreWholeWhereTitleBarsAloneAreLarge():
    with World() as world, Desktop(world, size="1600x1200", dpi=192) as desktop, \
            MakerSite(world, {VERSION_PATH: VersionFile(7, latest="5.2.0")}):
        check = Check(world, desktop, QT_FONT_DPI="96")
        box = check.press(NEW_PROGRAM)
        desktop.shot("box-large-title-bar")
        ExpectWholeTitle(desktop, box)
        check.answer(NEW_PROGRAM, "Escape")
        box = desktop.window(NEW_FILE)
        desktop.shot("box-large-title-bar-of-a-file")
        ExpectWholeTitle(desktop, box)
        assert check.server.stop() == 0


def TestYesStartsTheUpdater():
    with World() as world, Desktop(world) as desktop, \
            MakerSite(world, {VERSION_PATH: VersionFile(Size(world), latest="5.2.0")}):
        updater = os.path.join(world.home, "QRBUpdate.exe")
        with open(updater, "w", encoding="ascii") as script:
            script.write(STAND_IN)
        os.chmod(updater, os.stat(updater).st_mode | stat.S_IXUSR)
        check = Check(world, desktop)
        check.press(NEW_PROGRAM)
        desktop.shot("box-new-program")
        check.answer(NEW_PROGRAM, "Return")
        wait_until(lambda: os.path.exists(updater + ".told"), "the updater")
        with open(updater + ".told", encoding="ascii") as file:
            told = json.load(file)["arguments"]
        assert " ".join(told) == "/v5.2.0 /tUPDATEING Chronvale Server", told
        desktop.window("UPDATEING Chronvale Server")
        ExpectAnswers()
        assert check.server.stop() == 0


def TestNoStartsNothingAndAnotherServerFileIsFetchedOnYes():
    with World() as world, Desktop(world) as desktop:
        path = os.path.join(world.home, "QRB_CVLS4.CVL")
        with open(path, "rb") as file:
            contents = file.read() + b"10.77.0.3:::Another NA:::2:::\r\n"
        files = {VERSION_PATH: VersionFile(len(contents), latest="5.2.0"),
                 SERVER_FILE_PATH: contents}
        with MakerSite(world, files) as maker:
            check = Check(world, desktop)
            check.press(NEW_PROGRAM)
            check.answer(NEW_PROGRAM, "Escape")
            desktop.window(NEW_FILE)
            desktop.shot("box-new-file")
            assert len(maker.asked()) == 1
            check.answer(NEW_FILE, "Return")
            maker.wait_for_requests(2)

            def Stored():
                with open(path, "rb") as file:
                    return file.read() == contents

            wait_until(Stored, "the new server file")
            ExpectAnswers()
            assert check.server.stop() == 0


if __name__ == "__main__":
    NameTheMaker()
    run_all()
