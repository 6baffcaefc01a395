"""Records of the system's event log: which there are, and that there are no others."""

import os
import re
import signal
import subprocess

from harness import BIN, World, run_all
from system_log import FACILITY_DAEMON, PRIORITY_INFO, SystemLog

LOG = SystemLog()
MOMENT = r"\d{1,2}/\d{1,2}/\d{4} \d{1,2}:\d\d:\d\d [AP]M"


def Enter(world, word, systemctl="exit 0"):
    """Runs the program with -install or -uninstall and a stand-in for systemctl."""
    programs = os.path.join(world.home, "programs")
    os.makedirs(programs, exist_ok=True)
    with open(os.path.join(programs, "systemctl"), "w", encoding="ascii") as script:
        script.write("#!/bin/sh\n" + systemctl + "\n")
    os.chmod(script.name, 0o755)
    # A start in millisecond 999 ends before it gets that far; the next one does better.
    for _ in range(8):
        ended = subprocess.run(
            [os.path.join(BIN, "cvlserver"), word],
            env=dict(os.environ, CHRONVALE_HOME=world.home, CHRONVALE_UNIT_DIR=world.home,
                     PATH=programs + ":" + os.environ["PATH"]),
            capture_output=True, text=True, timeout=30, check=False)
        if "error 6" not in ended.stderr:
            break
    assert (ended.returncode, ended.stdout, ended.stderr) == (0, "", "")


def ExpectRecord(text):
    facility, priority, identifier, message = LOG.wait_for_one()
    assert (facility, priority, identifier) == (FACILITY_DAEMON, PRIORITY_INFO, "CVLServer")
    assert re.fullmatch("4 110 " + MOMENT + " --- " + re.escape(text), message), message
    LOG.clear()


def TestInstallAndUninstallLeaveOneRecordEach():
    with World() as world:
        Enter(world, "-install")
        ExpectRecord("[CVL Server installed successfully!] ")
        Enter(world, "-uninstall")
        ExpectRecord("[CVL Server uninstalled successfully!] ")


def TestTheirFailuresAreRecordedWithTheSameNumbers():
    with World() as world:
        Enter(world, "-install", "exit 1")
        facility, priority, identifier, message = LOG.wait_for_one()
        assert (facility, priority, identifier) == (FACILITY_DAEMON, PRIORITY_INFO, "CVLServer")
        assert re.fullmatch(
            "4 110 " + MOMENT + r" --- \[CVL Server failed to install - please contact us at "
            r"[^ ]+@[^ ]+!\] ", message), message
        LOG.clear()
        Enter(world, "-uninstall", "exit 1")
        ExpectRecord("[CVL Server failed to uninstall!] ")


def TestAnOrdinaryRunLeavesNoRecord():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        server.send_signal(signal.SIGUSR1)
        server.send_signal(signal.SIGUSR2)
        assert server.stop() == 0
        assert LOG.read() == []


if __name__ == "__main__":
    run_all()
