"""The start of a run with a window, and what stands in its way."""

import glob
import json
import os
import shutil
import stat
import subprocess
import tempfile

from desktop import Desktop
from hand import HELP, NOTHING_NEW, TIME_ZONE, TITLE, Hand
from harness import BIN, SETTINGS, World, run_all, wait_until
from update import (MAKER, MakerSite, NameTheMaker, SERVER_FILE_PATH, USUAL_SERVER_FILE,
                    VERSION_PATH, VersionFile)

OPEN_MINIMISED = SETTINGS + ('"OpenMinimized"="YES"',)
MODULE = "cvlwindow.so"
DESKTOP_FILES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../data/desktop")
WINDOW_VARIABLES = ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")

# Tells how it was started.
STAND_IN = """#!/usr/bin/python3
import json, os, re, sys
status = open("/proc/self/status").read()
mask = int(re.search(r"^SigBlk:\\s+([0-9a-f]+)$", status, re.M).group(1), 16)
files = {}
for fd in os.listdir("/proc/self/fd"):
    try:
        files[fd] = os.readlink("/proc/self/fd/" + fd)
    except OSError:
        pass
with open(__file__ + ".part", "w") as told:
    json.dump({"arguments": sys.argv[1:], "mask": mask, "files": files}, told)
os.rename(__file__ + ".part", __file__ + ".told")
"""


def ExpectNoWindow(program=os.path.join(BIN, "cvlserver"), environment=None):
    """One line for the user, status 1. Settings and server file are pipes that nobody writes
    to: who opens one, before a listener can open, is held up for ever."""
    for word in ("-config", "-debug"):
        with World(servers=None, settings=None) as world:
            for name in ("registry.reg", "QRB_CVLS4.CVL"):
                os.mkfifo(os.path.join(world.home, name))
            found = {name: value for name, value in os.environ.items()
                     if name not in WINDOW_VARIABLES}
            found.update(CHRONVALE_HOME=world.home, **(environment or {}))
            ended = subprocess.run([program, word], env=found, capture_output=True, text=True,
                                   timeout=30, check=False)
            assert ended.returncode == 1, (ended.returncode, ended.stderr)
            assert ended.stderr.startswith("cvlserver: no window: "), ended.stderr
            assert len(ended.stderr.splitlines()) == 1, ended.stderr
            assert ended.stdout == ""
            assert sorted(os.listdir(world.home)) == ["QRB_CVLS4.CVL", "cvlserver.lock",
                                                        "registry.reg"]


def TestWithoutADisplayTheRunEndsBeforeItBegins():
    ExpectNoWindow()
    ExpectNoWindow(environment={"DISPLAY": ""})


def TestADisplayThatNobodyAnswersIsNoDisplay():
    ExpectNoWindow(environment={"DISPLAY": ":4711"})
    ExpectNoWindow(environment={"DISPLAY": "nonsense"})


def TestTheProgramWithoutItsModuleHasNoWindow():
    with tempfile.TemporaryDirectory() as folder:
        program = shutil.copy(os.path.join(BIN, "cvlserver"), folder)
        ExpectNoWindow(program, {"DISPLAY": ":0"})
        with open(os.path.join(folder, MODULE), "w", encoding="ascii") as module:
            module.write("no module at all\n")
        ExpectNoWindow(program, {"DISPLAY": ":0"})


def TestAProgramWithoutItsModuleServes():
    with tempfile.TemporaryDirectory() as folder, World() as world:
        world.upstream()
        program = shutil.copy(os.path.join(BIN, "cvlserver"), folder)
        server = world.server(program=program)
        server.wait_for_gate()
        assert server.stop() == 0


def TestASecondInstanceShowsNoWindow():
    with World() as world, Desktop(world) as desktop:
        server = world.server()
        second = subprocess.run([os.path.join(BIN, "cvlserver"), "-config"], timeout=30,
                                env=dict(desktop.environment(), CHRONVALE_HOME=world.home),
                                capture_output=True, text=True, check=False)
        assert (second.returncode, second.stdout, second.stderr) == (0, "", "")
        assert server.process.poll() is None
        assert server.stop() == 0


def TestDebugIsTheSameAsConfig():
    with World() as world, Desktop(world) as desktop:
        world.upstream()
        server = desktop.server("-debug")
        Hand(desktop)
        server.wait_for_gate()
        assert server.stop() == 0
        assert server.errors.to_the_end() == []


def TestOpenMinimisedBeginsInTheTray():
    with World(settings=OPEN_MINIMISED) as world, Desktop(world, tray=True) as desktop:
        world.upstream()
        server = desktop.server("-config")
        icon = wait_until(desktop.tray_icon, "the entry in the tray")
        server.wait_for_gate()
        assert desktop.windows(TITLE) == []
        desktop.click_at(*icon)
        desktop.window(TITLE)
        wait_until(lambda: not desktop.tray_icon(), "an empty tray")
        assert server.stop() == 0


def TestOpenMinimisedTakesTheWindowIntoTheTrayWhenTheServerFileHasCome():
    with World(servers=None, settings=OPEN_MINIMISED) as world, \
            Desktop(world, tray=True) as desktop, \
            MakerSite(world, {VERSION_PATH: VersionFile(len(USUAL_SERVER_FILE)),
                              SERVER_FILE_PATH: USUAL_SERVER_FILE}):
        world.upstream()
        server = desktop.server("-config", environment={"CHRONVALE_MAKER_HOST": MAKER})
        icon = wait_until(desktop.tray_icon, "the entry in the tray")
        desktop.wait_until_gone(TITLE)
        # Behind the file a box says that the program is up to date.
        desktop.activate(desktop.window(NOTHING_NEW))
        desktop.key("Return")
        desktop.wait_until_gone(NOTHING_NEW)
        server.wait_for_gate()
        desktop.click_at(*icon)
        desktop.window(TITLE)
        assert server.stop() == 0


def TestOpenMinimisedMeansNothingToAServiceRun():
    with World(settings=OPEN_MINIMISED) as world, Desktop(world, tray=True) as desktop:
        world.upstream()
        server = desktop.server()
        server.wait_for_gate()
        assert desktop.tray_icon() is None
        assert desktop.windows(TITLE) == []
        assert server.stop() == 0


def LoadedFiles(server):
    with open(f"/proc/{server.process.pid}/maps", encoding="utf-8") as maps:
        return {os.path.basename(line.split()[-1]) for line in maps if "/" in line}


def TestAServiceRunLoadsNothingOfAWindow():
    with World() as world, Desktop(world) as desktop:
        world.upstream()
        server = desktop.server()
        server.wait_for_gate()
        loaded = LoadedFiles(server)
        assert not [name for name in loaded if "Qt" in name or "xcb" in name], loaded
        assert MODULE not in loaded
        assert server.stop() == 0
        server = desktop.server("-config")
        Hand(desktop)
        loaded = LoadedFiles(server)
        assert MODULE in loaded and [name for name in loaded if "Qt6" in name], loaded
        assert server.stop() == 0


def Symbols(*options):
    listed = subprocess.run(["nm", *options, "--defined-only", os.path.join(BIN, MODULE)],
                            capture_output=True, text=True, check=True)
    return listed.stdout.splitlines()


def TestTheModuleHasOneWayIn():
    assert [line.split()[-1] for line in Symbols("-D")] == ["CvlWindowModule"]


def TestTheModuleHasNoSecondCopyOfTheCore():
    inside = Symbols("-C")
    assert [line for line in inside if "cvl::QtView::Run(" in line], "a module without its names"
    for name in ("cvl::CVL_Server::", "cvl::EventLoop::RunOnePass", "cvl::QRBButtons::Press",
                 "cvl::ComboBox::Choose", "cvl::TrayEntry::OnResize", "cvl::GeneralText"):
        assert not [line for line in inside if name in line], name


def TestTheWindowsClassIsTheNameOfTheDesktopFile():
    [desktop_file] = glob.glob(os.path.join(DESKTOP_FILES, "*.desktop"))
    name = os.path.basename(desktop_file).removesuffix(".desktop")
    with World() as world, Desktop(world) as desktop:
        server = desktop.server("-config")
        hand = Hand(desktop)
        for window in (hand.window, hand.open_about()):
            shown = desktop.output("xprop", "-id", window, "WM_CLASS")
            assert shown.strip().endswith(f', "{name}"'), shown
        assert server.stop() == 0


class StandIns:
    """Programs of a desktop, on a path before all others."""

    def __init__(self, world):
        self.folder = world.new_home()

    def add(self, name):
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="ascii") as script:
            script.write(STAND_IN)
        os.chmod(path, os.stat(path).st_mode | stat.S_IXUSR)

    def path(self):
        return self.folder + ":" + os.environ["PATH"]

    def told(self, name):
        """What a program has told of its start."""
        path = os.path.join(self.folder, name + ".told")
        wait_until(lambda: os.path.exists(path), f"a start of {name}")
        with open(path, encoding="ascii") as file:
            return json.load(file)


def ExpectNothingInherited(told):
    assert told["mask"] == 0, told
    own = {number: file for number, file in told["files"].items()
           if not file.startswith("/proc/")}
    assert own == {"0": "/dev/null", "1": "/dev/null", "2": "/dev/null"}, told


def TestProgramsStartedFromTheWindowInheritNothing():
    with World() as world, Desktop(world) as desktop:
        programs = StandIns(world)
        for name in ("xdg-open", "gnome-control-center"):
            programs.add(name)
        server = desktop.server("-config", environment={"PATH": programs.path(),
                                                        "CHRONVALE_MAKER_HOST": MAKER})
        hand = Hand(desktop)
        with open(f"/proc/{server.process.pid}/status", encoding="ascii") as status:
            assert "SigBlk:\t0000000000000000" not in status.read(), "signals come by another way"
        desktop.click(hand.open_about(), *HELP)
        told = programs.told("xdg-open")
        assert told["arguments"] == [f"http://{MAKER}/Chronvale/help"], told
        ExpectNothingInherited(told)
        desktop.click(hand.open_configuration(), *TIME_ZONE)
        told = programs.told("gnome-control-center")
        assert told["arguments"] == ["datetime"], told
        ExpectNothingInherited(told)
        assert server.stop() == 0


def TestADesktopWithoutSuchProgramsIsNoTrouble():
    with World() as world, Desktop(world) as desktop:
        world.upstream()
        server = desktop.server("-config", environment={"PATH": world.new_home()})
        hand = Hand(desktop)
        desktop.click(hand.open_about(), *HELP)
        desktop.click(hand.open_configuration(), *TIME_ZONE)
        server.wait_for_gate()
        assert server.stop() == 0
        assert server.errors.to_the_end() == []


if __name__ == "__main__":
    NameTheMaker()
    run_all()
