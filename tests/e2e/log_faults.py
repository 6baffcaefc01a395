"""The request log can't be written, or goes away: nobody who asks notices, and it comes back
as soon as it can."""

import os
import shutil
import signal
import subprocess

from every_service import ExpectAnswers
from harness import BIN, World, run_all, wait_until

# The mapped root may write anywhere; these words take that from it.
ORDINARY = ("setpriv", "--bounding-set=-dac_override,-dac_read_search",
            "--inh-caps=-dac_override,-dac_read_search")


class Run:
    """The server as an ordinary user would run it, under further words if need be."""

    def __init__(self, world, *wrapped):
        self.logs = os.path.join(world.home, "Logs")
        # A start in millisecond 999 ends; the next one does better.
        for _ in range(8):
            self.process = subprocess.Popen(
                [*ORDINARY, *wrapped, os.path.join(BIN, "cvlserver")], cwd="/",
                env=dict(os.environ, CHRONVALE_HOME=world.home))
            world._started.append(self)
            try:
                ExpectAnswers()
                return
            except AssertionError:
                if self.process.poll() is None:
                    raise
        raise AssertionError("the server did not start")

    def log(self):
        """The one log file."""
        names = os.listdir(self.logs)
        assert len(names) == 1, names
        return os.path.join(self.logs, names[0])

    def lines(self):
        with open(self.log(), newline="", encoding="latin-1") as file:
            return file.read().split("\r\n")[:-1]

    def expect_the_log_back(self, with_header=True):
        ExpectAnswers()
        wait_until(lambda: os.path.isdir(self.logs) and os.listdir(self.logs), "the log")
        wait_until(lambda: self.lines() and self.lines()[-1].endswith(
            " 3777 CVL Server Client UDP - "), "the last line")
        lines = self.lines()
        headers = [line for line in lines if line.startswith("#")]
        assert len(headers) == (5 if with_header else 0), headers
        assert headers == lines[:len(headers)]
        assert len(lines) >= len(headers) + 9

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        assert self.process.wait(30) == 0


def TestLogsMayNotBeWrittenTo():
    with World() as world:
        world.upstream()
        logs = os.path.join(world.home, "Logs")
        os.mkdir(logs, 0o555)
        run = Run(world)
        assert os.listdir(logs) == []
        os.chmod(logs, 0o755)
        run.expect_the_log_back()
        run.stop()


def TestLogsMayNotBeEntered():
    with World() as world:
        world.upstream()
        logs = os.path.join(world.home, "Logs")
        os.mkdir(logs, 0o000)
        run = Run(world)
        os.chmod(logs, 0o755)
        run.expect_the_log_back()
        run.stop()


def TestLogsMayNotBeMade():
    with World() as world:
        world.upstream()
        os.chmod(world.home, 0o555)
        run = Run(world)
        assert not os.path.exists(run.logs)
        os.chmod(world.home, 0o755)
        run.expect_the_log_back()
        run.stop()


def TestTheDaysFileMayNotBeWrittenTo():
    with World() as world:
        world.upstream()
        run = Run(world)
        run.expect_the_log_back()
        os.chmod(run.log(), 0o444)
        lines = run.lines()
        ExpectAnswers()
        assert run.lines() == lines
        os.chmod(run.log(), 0o644)
        ExpectAnswers()
        wait_until(lambda: len(run.lines()) > len(lines), "further lines")
        run.expect_the_log_back()
        run.stop()


def TestLogsIsAFile():
    with World() as world:
        world.upstream()
        path = os.path.join(world.home, "Logs")
        with open(path, "w", encoding="ascii") as file:
            file.write("ours")
        run = Run(world)
        with open(path, encoding="ascii") as file:
            assert file.read() == "ours"
        os.unlink(path)
        run.expect_the_log_back()
        run.stop()


def TestLogsIsDeletedDuringTheRun():
    with World() as world:
        world.upstream()
        run = Run(world)
        run.expect_the_log_back()
        shutil.rmtree(run.logs)
        run.expect_the_log_back()
        run.stop()


def TestTheDaysFileIsDeletedDuringTheRun():
    with World() as world:
        world.upstream()
        run = Run(world)
        run.expect_the_log_back()
        os.unlink(run.log())
        run.expect_the_log_back()
        run.stop()


def TestTheDaysFileIsEmptiedDuringTheRun():
    with World() as world:
        world.upstream()
        run = Run(world)
        run.expect_the_log_back()
        with open(run.log(), "w", encoding="ascii"):
            pass
        # Only a file that isn't there gets a header.
        run.expect_the_log_back(with_header=False)
        run.stop()


def TestTheDaysFileIsADirectory():
    with World() as world:
        world.upstream()
        run = Run(world)
        path = run.log()
        os.unlink(path)
        os.mkdir(path)
        ExpectAnswers()
        os.rmdir(path)
        run.expect_the_log_back()
        run.stop()


def TestTheDaysFileIsAPipeThatNobodyReads():
    with World() as world:
        world.upstream()
        run = Run(world)
        path = run.log()
        os.unlink(path)
        os.mkfifo(path)
        ExpectAnswers()
        # Nor one that fills up, nor one whose reader goes away.
        reader = os.open(path, os.O_RDONLY | os.O_NONBLOCK)
        for _ in range(100):
            ExpectAnswers()
        os.close(reader)
        ExpectAnswers()
        os.unlink(path)
        run.expect_the_log_back()
        run.stop()


def TestTheDaysFileReachesTheLargestSizeAllowed():
    with World() as world:
        world.upstream()
        run = Run(world, "prlimit", "--fsize=5000")
        for _ in range(10):
            ExpectAnswers()
        assert 4800 < os.path.getsize(run.log()) <= 5000
        assert all(line.startswith("#") or line.endswith("P - ") for line in run.lines())
        os.unlink(run.log())
        run.expect_the_log_back()
        run.stop()


if __name__ == "__main__":
    run_all()
