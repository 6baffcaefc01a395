"""Pipes and links in the place of the program's files: neither a start nor a stop waits for a
pipe, and no file is written through a link."""

import os
import subprocess

from harness import BIN, DEADLINE, SETTINGS, World, run_all

# The next stop stores another value.
CHANGING = tuple(line.replace('"NO:59', '"no:59') for line in SETTINGS)


def Victim(world):
    """A file elsewhere that must stay as it is."""
    path = os.path.join(world.new_home(), "victim")
    with open(path, "w", encoding="ascii") as file:
        file.write("untouched")
    return path


def ExpectUntouched(path):
    with open(path, encoding="ascii") as file:
        assert file.read() == "untouched"


def ExpectStopToStore(prepare):
    """PREPARE puts something at the path of the settings' temporary file during a run. The
    stop removes it and stores the settings."""
    with World(settings=CHANGING) as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        victim = Victim(world)
        prepare(os.path.join(world.home, "registry.reg.new"), victim)
        assert server.stop() == 0
        assert world.read_settings()["Settings"] == "NO:59:Minute/s:NA:36"
        assert not os.path.lexists(os.path.join(world.home, "registry.reg.new"))
        ExpectUntouched(victim)


def TestAStopDoesNotWaitForAPipeAtTheTemporaryFile():
    ExpectStopToStore(lambda path, _: os.mkfifo(path))


def TestAStopDoesNotWriteToAnotherNameOfTheTemporaryFile():
    ExpectStopToStore(lambda path, victim: os.link(victim, path))


def TestAStopDoesNotFollowALinkAtTheTemporaryFile():
    ExpectStopToStore(lambda path, victim: os.symlink(victim, path))


def TestASettingsFileThatIsAPipeIsNotWaitedFor():
    with World(settings=None) as world:
        os.mkfifo(os.path.join(world.home, "registry.reg"))
        server = world.server()
        assert server.stop() == 0


def TestAServerFileThatIsAPipeEndsTheStart():
    with World() as world:
        path = os.path.join(world.home, "QRB_CVLS4.CVL")
        os.unlink(path)
        os.mkfifo(path)
        for _ in range(8):
            ended = subprocess.run([os.path.join(BIN, "cvlserver")], capture_output=True,
                                   env=dict(os.environ, CHRONVALE_HOME=world.home), text=True,
                                   timeout=DEADLINE, check=False)
            if "error 6" not in ended.stderr:
                break
        assert (ended.returncode, ended.stderr) == (
            1, "cvlserver: run-time error 75: Path/File access error\n"), ended


if __name__ == "__main__":
    run_all()
