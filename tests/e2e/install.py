"""The switches -install and -uninstall: the unit, what systemctl is asked, what is left."""

import os
import shutil
import subprocess

from harness import BIN, World, run_all


class Installer:
    """The program with a stand-in for systemctl, and a directory for its unit."""

    def __init__(self, world, systemctl="exit 0", directory=None):
        self.units = os.path.join(world.home, "units")
        self.unit = os.path.join(self.units, "CVLServer.service")
        self._programs = os.path.join(world.home, "programs")
        self._calls = os.path.join(world.home, "calls")
        self._home = world.home
        self._executable = os.path.join(directory or BIN, "cvlserver")
        os.makedirs(self.units, exist_ok=True)
        os.makedirs(self._programs, exist_ok=True)
        self.let_systemctl(systemctl)

    def let_systemctl(self, commands):
        path = os.path.join(self._programs, "systemctl")
        with open(path, "w", encoding="ascii") as script:
            script.write(f'#!/bin/sh\necho "$@" >> {self._calls}\n{commands}\n')
        os.chmod(path, 0o755)

    def run(self, *words, **environment):
        settings = dict(os.environ, CHRONVALE_HOME=self._home, CHRONVALE_UNIT_DIR=self.units,
                        PATH=self._programs + ":" + os.environ["PATH"], **environment)
        # A start in millisecond 999 ends before it gets that far; the next one does better.
        for _ in range(8):
            ended = subprocess.run([self._executable, *words], env=settings, timeout=30,
                                   capture_output=True, text=True, check=False)
            if "error 6" not in ended.stderr:
                return ended
        raise AssertionError("the program did not start: " + ended.stderr)

    def calls(self):
        """What systemctl was asked since the last call."""
        if not os.path.exists(self._calls):
            return []
        with open(self._calls, encoding="utf-8") as file:
            lines = file.read().splitlines()
        os.unlink(self._calls)
        return lines

    def lines(self):
        with open(self.unit, encoding="utf-8") as file:
            return file.read().splitlines()


def TestInstallWritesTheUnitAndEndsWithoutAWord():
    with World() as world:
        installer = Installer(world)
        ended = installer.run("-install")
        assert (ended.returncode, ended.stdout, ended.stderr) == (0, "", "")
        assert installer.calls() == ["--version", "daemon-reload", "enable CVLServer.service"]
        lines = installer.lines()
        assert "Description=Chronvale Server Services" in lines
        assert "Environment=CHRONVALE_HOME=/var/lib/chronvale-server" in lines
        executable = os.path.realpath(os.path.join(BIN, "cvlserver"))
        assert any(line.startswith("ExecStart=") and line.strip('"').endswith(executable)
                   for line in lines), lines
        assert any(line.startswith("ExecStartPre=") and world.home + "/QRB_CVLS4.CVL" in line
                   for line in lines), lines
        assert os.listdir(installer.units) == ["CVLServer.service"]
        assert os.stat(installer.unit).st_mode & 0o777 == 0o644


def TestASecondWordIsNotLookedAt():
    with World() as world:
        installer = Installer(world)
        installer.run("-install", "extra")
        assert installer.calls() == ["--version", "daemon-reload", "enable CVLServer.service"]


def TestTheServiceIsRestartedForAsLongAsItFails():
    with World() as world:
        for version, grows in ((252, False), (254, True)):
            installer = Installer(world, systemctl=f"echo 'systemd {version} ({version}.1-1)'")
            installer.run("-install")
            lines = installer.lines()
            assert "StartLimitIntervalSec=0" in lines
            assert "RestartSec=1" in lines
            assert ("RestartSteps=8" in lines) == grows, lines
            assert ("RestartMaxDelaySec=60" in lines) == grows, lines


def TestUninstallTakesItBack():
    with World() as world:
        installer = Installer(world)
        installer.run("-install")
        installer.calls()
        ended = installer.run("-uninstall")
        assert (ended.returncode, ended.stdout, ended.stderr) == (0, "", "")
        assert installer.calls() == ["disable CVLServer.service", "daemon-reload"]
        assert os.listdir(installer.units) == []


def TestAFailedInstallEndsTheSameWay():
    with World() as world:
        installer = Installer(world, systemctl="exit 1")
        ended = installer.run("-install")
        assert (ended.returncode, ended.stdout, ended.stderr) == (0, "", "")
        assert installer.calls() == ["--version", "daemon-reload"]


def TestInstallLeavesTheDefaultSettingsOfAFirstRun():
    with World() as world:
        settings = os.path.join(world.home, "registry.reg")
        if os.path.exists(settings):
            os.unlink(settings)
        Installer(world).run("-install")
        with open(settings, encoding="utf-8") as file:
            assert '"NTP37"="YES:YES:YES:37"' in file.read()


def TestTheUnitTakesTheServerFileAndTheSettingsOverOnce():
    # Its commands are run here as systemd would, on a state directory of the test's own.
    with World() as world:
        installer = Installer(world)
        installer.run("-install")
        # A directory of the machine is covered by one of the test's own.
        subprocess.run(["mount", "-t", "tmpfs", "tmpfs", "/var/lib"], check=True)
        try:
            os.mkdir("/var/lib/chronvale-server")
            commands = [line.partition("=")[2].lstrip("-").split() for line in installer.lines()
                        if line.startswith("ExecStartPre=")]
            assert len(commands) == 2
            for command in commands:
                subprocess.run(command, check=True)
            for name in ("QRB_CVLS4.CVL", "registry.reg"):
                taken = os.path.join("/var/lib/chronvale-server", name)
                with open(taken, "rb") as file, open(os.path.join(world.home, name), "rb") as source:
                    assert file.read() == source.read()
                with open(taken, "w", encoding="ascii") as file:
                    file.write("of its own")
            for command in commands:
                subprocess.run(command, check=False)
            for name in ("QRB_CVLS4.CVL", "registry.reg"):
                with open(os.path.join("/var/lib/chronvale-server", name), encoding="ascii") as file:
                    assert file.read() == "of its own"
        finally:
            subprocess.run(["umount", "/var/lib"], check=True)


def TestAProgramInAHomeDirectoryWithBlanksIsInstalledToo():
    with World() as world:
        subprocess.run(["mount", "-t", "tmpfs", "tmpfs", "/home"], check=True)
        try:
            directory = "/home/an operator/100% time"
            os.makedirs(directory)
            shutil.copy(os.path.join(BIN, "cvlserver"), directory)
            installer = Installer(world, directory=directory)
            installer.run("-install")
            lines = installer.lines()
            assert 'ExecStart="/home/an operator/100%% time/cvlserver"' in lines
            assert 'BindReadOnlyPaths="-/home/an operator/100%% time"' in lines
            if shutil.which("systemd-analyze"):
                verified = subprocess.run(["systemd-analyze", "verify", "--man=no", installer.unit],
                                          capture_output=True, text=True, check=False)
                assert (verified.returncode, verified.stderr) == (0, ""), verified.stderr
        finally:
            subprocess.run(["umount", "/home"], check=True)


if __name__ == "__main__":
    run_all()
