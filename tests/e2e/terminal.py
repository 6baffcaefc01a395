"""What a run says where standard error is a terminal, and that it says nothing elsewhere."""

import os
import pty
import select
import signal
import socket
import subprocess

from harness import BIN, DEADLINE, World, run_all, wait_until


class TerminalRun:
    """The server with a terminal as its standard error."""

    def __init__(self, world, words=(), wrapped=()):
        for _ in range(8):
            self._end, theirs = pty.openpty()
            self.text = ""
            self.process = subprocess.Popen(
                [*wrapped, os.path.join(BIN, "cvlserver"), *words],
                env=dict(os.environ, CHRONVALE_HOME=world.home), stdin=subprocess.DEVNULL,
                stdout=subprocess.PIPE, stderr=theirs, cwd="/")
            os.close(theirs)
            wait_until(lambda: self.read() or self.process.poll() is not None, "a first line")
            # A start in millisecond 999 has no timestamp; the next one does better.
            if "error 6" not in self.read():
                world._started.append(self)  # and so is ended, however the test ends
                return
            self.process.wait()
        raise AssertionError(self.text)

    def read(self):
        """All that has been said, with lines that end as in a file."""
        while select.select([self._end], [], [], 0)[0]:
            try:
                piece = os.read(self._end, 4096)
            except OSError:  # the program has ended
                break
            if not piece:
                break
            self.text += piece.decode().replace("\r\n", "\n")
        return self.text

    def wait_for(self, part):
        try:
            wait_until(lambda: part in self.read(), repr(part))
        except AssertionError as missing:
            raise AssertionError(f"no {part!r} in {self.text!r}") from missing

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        status = self.process.wait(DEADLINE)
        assert self.process.stdout.read() == b""
        return status


def TestTheLinesTellWhatRunsWhereAndOnWhichPorts():
    with World() as world:
        run = TerminalRun(world)
        run.wait_for("off:")
        lines = run.read().splitlines()
        assert lines[0] == f"Chronvale Server 5.1.1 runs in {world.home}"
        assert lines[1].startswith("  open:     Daytime TCP 13, Daytime UDP 13, Time TCP 37, ")
        assert "NTP UDP 123" in lines[1]
        assert lines[2] == "  off:      Unix time UDP 519", lines
        assert len(lines) == 3
        assert run.stop() == 0
        assert run.read().splitlines() == lines


def TestNothingIsSaidWhereThereIsNoTerminal():
    with World() as world:
        server = world.server("--halp")
        assert server.stop() == 0
        server.process.wait()
        assert server.errors.lines == []


def TestAPortInUseIsNamed():
    with World() as world:
        with socket.socket(socket.AF_INET, socket.SOCK_STREAM) as taken:
            taken.bind(("0.0.0.0", 37))
            taken.listen()
            run = TerminalRun(world)
            run.wait_for("  not open: Time TCP 37: the port is in use\n")
            assert run.stop() == 0


def TestAPortThatTakesARightIsNamed():
    with World() as world:
        run = TerminalRun(world, wrapped=("setpriv", "--bounding-set=-net_bind_service",
                                          "--inh-caps=-net_bind_service"))
        run.wait_for("  not open: NTP UDP 123: a port below 1024, and no right to take it\n")
        assert "  open:     client protocol TCP 3777, client protocol UDP 3777\n" in run.read()
        assert run.stop() == 0


def TestSettingsThatCannotBeReadAreNamed():
    with World() as world:
        path = os.path.join(world.home, "registry.reg")
        world.write_settings(["nothing that settings are made of"])
        run = TerminalRun(world)
        run.wait_for(f"  settings: {path}, line 4")
        run.wait_for("  open:     no port\n")
        assert run.stop() == 0

        os.chmod(path, 0)
        run = TerminalRun(world, wrapped=("setpriv", "--bounding-set=-dac_override,-dac_read_search",
                                          "--inh-caps=-dac_override,-dac_read_search"))
        run.wait_for(f"  settings: {path}: Permission denied\n")
        assert run.stop() == 0


def TestAMissingServerFileIsNamed():
    with World(servers=None) as world:
        run = TerminalRun(world)
        run.wait_for(f"  servers:  there is no {world.home}/QRB_CVLS4.CVL")
        assert run.process.poll() is None
        assert run.stop() == 0


def TestAnUnknownWordAddsTheSwitches():
    with World() as world:
        run = TerminalRun(world, words=("--halp",))
        run.wait_for('"--halp" is not a switch')
        run.wait_for("  -rs ")
        for word in ("-install", "-uninstall", "-config", "-debug", "--help", "--version"):
            assert f"\n  {word} " in run.read(), word
        assert run.process.poll() is None
        assert run.stop() == 0

        run = TerminalRun(world, words=("-rs",))
        run.wait_for("open:")
        assert "switch" not in run.read()
        assert run.stop() == 0


def TestASecondInstanceNamesTheDirectoryOfTheFirst():
    with World() as world:
        run = TerminalRun(world)
        run.wait_for("open:")
        second = TerminalRun(world)
        assert second.process.wait(DEADLINE) == 0
        assert second.read() == f"cvlserver: another instance is running in {world.home}\n"
        assert run.stop() == 0


def TestALockFileThatCannotBeOpenedIsNamed():
    with World() as world:
        lock = os.path.join(world.home, "cvlserver.lock")
        with open(lock, "w", encoding="ascii"):
            os.chmod(lock, 0)
        run = TerminalRun(world, wrapped=("setpriv", "--bounding-set=-dac_override,-dac_read_search",
                                          "--inh-caps=-dac_override,-dac_read_search"))
        assert run.process.wait(DEADLINE) == 0
        assert run.read() == (f"cvlserver: another instance may be running: {lock} cannot be "
                              "opened: Permission denied\n")


if __name__ == "__main__":
    run_all()
