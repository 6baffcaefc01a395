"""The rights that a run keeps of those it was started with, and what it can do with them."""

import os
import re
import struct
import subprocess

from every_service import ExpectAnswers
from harness import BIN, BUILD, PEER_ADDRESS, SETTINGS, World, run_all, wait_until
from install import Installer
from update import MakerSite, SERVER_FILE_PATH, USUAL_SERVER_FILE, VERSION_PATH, VersionFile

PRELOAD = os.path.join(BUILD, "lib", "fake_clock_preload.so")
# 2 October 2002, 12:00:00 UTC.
MOMENT = 1033560000
# CAP_NET_BIND_SERVICE and CAP_SYS_TIME.
KEPT = f"{1 << 10 | 1 << 25:016x}"
NONE = f"{0:016x}"


def Rights(status):
    """The capability sets and the no-new-privileges flag of a process's or thread's status."""
    with open(status, encoding="ascii") as file:
        return dict(re.findall(r"^(Cap\w+|NoNewPrivs):\s+(\S+)$", file.read(), re.M))


def TestARunStartedByRootKeepsTwoCapabilities():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        threads = f"/proc/{server.process.pid}/task"
        for thread in os.listdir(threads):
            assert Rights(f"{threads}/{thread}/status") == {
                "CapInh": NONE, "CapPrm": KEPT, "CapEff": KEPT, "CapBnd": KEPT, "CapAmb": NONE,
                "NoNewPrivs": "1"}
        ExpectAnswers()
        assert server.stop() == 0


def TestPortsOpenAfterTheStartAndTheNextDaysLogIsWritten():
    with World(servers=None, settings=tuple(
            line.replace('"NO:59', '"no:59') for line in SETTINGS)) as world:
        world.upstream()
        step = os.path.join(world.home, "step")

        def StepTo(seconds):
            file = os.open(step, os.O_WRONLY | os.O_CREAT, 0o644)
            os.pwrite(file, struct.pack("=q", seconds), 0)
            os.close(file)

        StepTo(0)
        with MakerSite(world, {VERSION_PATH: VersionFile(len(USUAL_SERVER_FILE)),
                               SERVER_FILE_PATH: USUAL_SERVER_FILE}):
            # The settings are read, and the ports opened, when the server file has arrived.
            server = world.server(preload=PRELOAD, attempts=1, environment={
                "CVL_FAKE_TIME": f"{MOMENT}.250", "CVL_FAKE_STEP": step, "TZ": "UTC",
                "CHRONVALE_MAKER_HOST": PEER_ADDRESS})
            server.wait_for_gate()
        ExpectAnswers()
        StepTo(24 * 3600)
        ExpectAnswers()
        logs = os.path.join(world.home, "Logs")
        wait_until(lambda: sorted(os.listdir(logs)) == ["CVLS021002.LOG", "CVLS031002.LOG"],
                   "the log of the next day")
        assert server.stop() == 0
        assert world.read_settings()["Settings"] == "NO:59:Minute/s:NA:36"


def TestAnInstallationKeepsItsRights():
    with World() as world:
        own = Rights("/proc/self/status")
        for word in ("-install", "-uninstall"):
            seen = os.path.join(world.home, "seen")
            installer = Installer(world, systemctl=f"cat /proc/self/status >'{seen}'")
            installer.run(word)
            found = Rights(seen)
            assert found["CapEff"] == own["CapEff"] != KEPT, found
            assert found["NoNewPrivs"] == own["NoNewPrivs"] == "0", found


def TestARunGoesOnWhereItsRightsCannotBeGivenUp():
    with World() as world:
        world.upstream()
        # Without the right to lower the bounding set, that stays as it is.
        server = subprocess.Popen(
            ["setpriv", "--bounding-set=-setpcap", "--inh-caps=-setpcap",
             os.path.join(BIN, "cvlserver")], env=dict(os.environ, CHRONVALE_HOME=world.home))
        try:
            status = f"/proc/{server.pid}/status"
            wait_until(lambda: Rights(status)["CapEff"] == KEPT, "the rights of the run")
            assert Rights(status)["CapBnd"] != KEPT
        finally:
            server.kill()
            server.wait()


if __name__ == "__main__":
    run_all()
