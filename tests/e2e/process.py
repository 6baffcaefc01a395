"""The process: one instance, its command line, its ends."""

import fcntl
import os
import pwd
import socket
import subprocess

from harness import BIN, SERVER_ADDRESS, World, bind_over, run_all, wait_until


def Start(world, *words):
    """Runs the program to its end."""
    return subprocess.run([os.path.join(BIN, "cvlserver"), *words],
                          env=dict(os.environ, CHRONVALE_HOME=world.home), capture_output=True,
                          text=True, timeout=30, check=False)


def TestASecondInstanceEndsAtOnceWhateverItIsTold():
    with World() as world:
        world.upstream()
        server = world.server()
        for words in ((), ("-config",), ("-install",), ("-rs",)):
            second = Start(world, *words)
            assert second.returncode == 0, words
            assert second.stdout == "" and second.stderr == "", words
        assert server.process.poll() is None
        assert server.stop() == 0


def TestTheLockFileIsLockedWhileTheServerRuns():
    with World() as world:
        server = world.server()
        lock = os.path.join(world.home, "cvlserver.lock")
        assert os.stat(lock).st_mode & 0o777 == 0o600
        hold = ["flock", "--nonblock", lock, "true"]
        assert subprocess.run(hold, check=False).returncode != 0
        assert server.stop() == 0
        assert subprocess.run(hold, check=False).returncode == 0


def TestALockOnTheProgramDirectoryDoesNotPreventAStart():
    with World() as world:
        world.upstream()
        reader = os.open(world.home, os.O_RDONLY)
        fcntl.flock(reader, fcntl.LOCK_EX)
        server = world.server()
        server.wait_for_gate()
        assert server.stop() == 0
        os.close(reader)


def TestALockFileThatIsAPipeEndsTheStart():
    with World() as world:
        os.mkfifo(os.path.join(world.home, "cvlserver.lock"))
        ended = Start(world)
        assert (ended.returncode, ended.stdout, ended.stderr) == (0, "", "")


def TestUnknownWordsBehaveLikeNone():
    for words in (("-RS",), ("-Debug",), (" -rs",), ("--halp",), ("-rs",), ("extra", "-install"),
                  ("extra", "--help")):
        with World() as world:
            world.upstream()
            server = world.server(*words)
            server.wait_for_gate()
            assert server.stop() == 0, words


def TestHelpAndVersionArePrintedAndNothingIsStarted():
    with World() as world:
        before = os.listdir(world.home)
        server = None
        for is_running in (False, True):
            if is_running:
                server = world.server()
            for words in (("--help",), ("--help", "-install"), ("--version",)):
                ended = Start(world, *words)
                assert (ended.returncode, ended.stderr) == (0, ""), words
                if words[0] == "--version":
                    assert ended.stdout == "cvlserver 5.1.1\n", ended.stdout
                else:
                    assert ended.stdout.startswith("usage: cvlserver [SWITCH]\n"), ended.stdout
            if not is_running:
                assert os.listdir(world.home) == before
        assert server.stop() == 0


def TestAServiceRunSaysNothing():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        assert server.stop() == 0
        server.process.wait()
        assert server.errors.lines == []
        assert server.process.stdout.read() == ""


def UserAndMachineInTheLog(environment=None):
    with World() as world:
        world.upstream()
        server = world.server(environment=environment)
        server.wait_for_gate()
        assert server.stop() == 0
        columns = server.log_lines()[0].split(" ")
        assert columns[4] == "CVLS5" and columns[7] == SERVER_ADDRESS, columns
        return columns[6], columns[5]


def TestTheLogNamesTheUserAndTheMachine():
    user = pwd.getpwuid(os.geteuid()).pw_name
    # A name in the environment counts for nothing here.
    found = UserAndMachineInTheLog({"USER": "somebody"})
    assert found == (user, socket.gethostname()), found


def TestAUserWhomTheMachineDoesNotKnowHasANameInTheLogAllTheSame():
    # As under a service manager that makes up a user for the run.
    bind_over("/etc/passwd", "nobody:x:65534:65534::/:/bin/false\n")
    bind_over("/etc/nsswitch.conf", "passwd: files\n")
    for told, logged in (("chronvale-server", "chronvale-server"), ("", str(os.geteuid()))):
        found = UserAndMachineInTheLog({"USER": told})
        assert found == (logged, socket.gethostname()), found


def TestAWindowWithoutADisplayIsOneLineAndNoListener():
    for word in ("-config", "-debug"):
        with World() as world:
            ended = Start(world, word)
            assert ended.returncode == 1
            assert len(ended.stderr.splitlines()) == 1, ended.stderr
            assert ended.stdout == ""


def TestATakenPortLeavesTheOthersOpen():
    with World() as world:
        world.upstream()
        with socket.socket(socket.AF_INET, socket.SOCK_STREAM) as taken:
            taken.bind(("0.0.0.0", 37))
            taken.listen()
            server = world.server()
            server.wait_for_gate()
            wait_until(lambda: ("tcp", 123) in server.open_sockets(), "the listeners")
            assert ("tcp", 37) not in server.open_sockets()
            assert ("udp", 37) in server.open_sockets()
            assert server.stop() == 0


if __name__ == "__main__":
    run_all()
