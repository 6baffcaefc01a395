"""./run: the trial of the server beside an upstream of its own, in namespaces."""

import os
import subprocess
import tempfile

from harness import BIN, run_all

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")


def Trial(directory, upstream):
    """Runs ./run for one second with the programs of this build, and with the shell commands
    UPSTREAM as its upstream."""
    programs = os.path.join(directory, "bin")
    os.mkdir(programs)
    for name in ("cvlserver", "cvlquery"):
        os.symlink(os.path.join(BIN, name), os.path.join(programs, name))
    path = os.path.join(programs, "cvlupstream")
    with open(path, "w", encoding="utf-8") as file:
        file.write("#!/bin/sh\n" + upstream)
    os.chmod(path, 0o755)
    environment = dict(os.environ, CVL_RUN_BIN=programs,
                       CVL_RUN_HOME=os.path.join(directory, "home"))
    return subprocess.run(
        ["unshare", "--net", "--pid", "--fork", "--kill-child", "--mount-proc",
         os.path.join(ROOT, "run"), "--inside", "1"],
        env=environment, capture_output=True, text=True, timeout=100, check=False)


def TestWaitsForAnUpstreamThatStartsLate():
    real = os.path.join(BIN, "cvlupstream")
    for delay in ("0", "1"):
        with tempfile.TemporaryDirectory() as directory:
            trial = Trial(directory, f'sleep {delay}\nexec {real} "$@"\n')
            assert trial.returncode == 0, trial.stdout + trial.stderr
            assert "The first answer of the upstream is in" in trial.stdout
            assert "The server ended with status 0." in trial.stdout


def TestFailsWhenTheUpstreamEnds():
    with tempfile.TemporaryDirectory() as directory:
        trial = Trial(directory, "exit 3\n")
        assert trial.returncode == 1, trial.stdout
        assert trial.stderr == "The upstream ended.\n", trial.stderr


def TestTheBuildShowsHowFarItIs():
    # A log gets no line for a build that ends within ten seconds.
    steps = "printf '[1/3] a\\n[2/3] b\\nnote: [9/9] c\\n[3/3] d\\n' | ShowProgress What"
    log = subprocess.run(["bash", "-c", ". tools/setup.sh; " + steps], cwd=ROOT,
                         capture_output=True, text=True, timeout=30, check=True)
    assert log.stdout == "", log.stdout
    terminal = subprocess.run(["script", "-qec", "bash -c '. tools/setup.sh; "
                               "printf \"[1/3] a\\n[2/3] b\\n\" | ShowProgress What'", "/dev/null"],
                              cwd=ROOT, stdin=subprocess.DEVNULL, capture_output=True, timeout=30,
                              check=True)
    assert terminal.stdout == b"\rWhat 1 of 3\rWhat 2 of 3\r\n", terminal.stdout


if __name__ == "__main__":
    run_all()
