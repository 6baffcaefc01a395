"""The stored settings, whenever the program is killed: in a first run, in a stop, with the
leftovers of the killed run lying about in the next."""

import os
import random
import re
import signal
import subprocess
import time

from harness import BIN, World, run_all

KILLS = int(os.environ.get("CVL_KILLS", "50"))
SEED = int(os.environ.get("CVL_SEED", "20021003"))

# In the orders in which a first run and a stop write them.
FIRST_RUN = {"Settings": "YES:59:Minutes/s:NA:36", "OpenMinimized": "NO",
             "NTP37": "YES:YES:YES:37", "EnableLogging": "YES", "SNTP123": "YES:YES:YES:123",
             "UNIX519": "YES:YES:NO:519", "CVL3777": "YES:YES:NO:3777", "DTS13": "NO:YES:YES:13",
             "UseJulian": "YES"}
STOP = ("Settings", "EnableLogging", "NTP37", "UNIX519", "SNTP123", "CVL3777", "DTS13")
PORTS = {"NTP37": "37", "UNIX519": "519", "SNTP123": "123", "CVL3777": "3777", "DTS13": "13"}

# A stop changes every value of these that it writes.
EDITED = {"DTS13": "NO:YES:YES:1313", "UNIX519": "YES:yes:no:5190",
          "Settings": "no:007:Hour/s: EU:99", "EnableLogging": "NO", "CVL3777": "NO",
          "NTP37": "NO:NO:NO:" + "9" * 200, "SNTP123": "YES:No:No:123000", "UseJulian": "YES"}
AROUND = """Windows Registry Editor Version 5.00

; ours, by hand

[HKEY_CURRENT_USER\\Software\\Another]
"Settings"="theirs"
"Bytes"=hex:01,02,\\
  03

[HKEY_LOCAL_MACHINE\\Software\\Chronvale Server]
{values}; the end
"""
NEW_FILE = re.compile(
    r"Windows Registry Editor Version 5\.00\n\n(?:; .*\n)+\n"
    r"(?:\[HKEY_LOCAL_MACHINE\\Software\\Chronvale Server\]\n((?:\"\w+\"=\"[^\"]*\"\n)*))?")


def ValueLines(values):
    return "".join(f'"{name}"="{value}"\n' for name, value in values.items())


def AfterAStop(values):
    """What a run that found VALUES leaves behind."""
    if "Settings" not in values:
        after = dict(FIRST_RUN, Settings="YES:59:Minute/s:NA:36")
        boxes = {name: FIRST_RUN[name].startswith("YES") for name in PORTS}
        after.update({name: ("YES:NO:NO:" if on else "NO:NO:NO:") + PORTS[name]
                      for name, on in boxes.items()})
        return after
    after = dict(values)
    ticked, number, unit, region = values["Settings"].split(":")[:4]
    after["Settings"] = ":".join(("YES" if ticked == "YES" else "NO", number, unit,
                                  region.strip(), "36"))
    after["EnableLogging"] = "YES"
    for name in ("NTP37", "UNIX519", "SNTP123", "CVL3777", "DTS13"):
        fields = values.get(name, "").split(":")
        if fields[0] == "YES":
            after[name] = ":".join(["YES"] + ["YES" if field == "YES" else "NO"
                                              for field in fields[1:3]] + [fields[3][:5]])
        else:
            after[name] = "NO:NO:NO:" + PORTS[name]
    return after


class Store:
    """The settings file of a world, and all that it may hold."""

    def __init__(self, world):
        self._path = os.path.join(world.home, "registry.reg")
        self.edited = False

    def begin(self, edited):
        """Puts the edited settings in place, or none."""
        self.edited = edited
        if edited:
            with open(self._path, "w", encoding="utf-8") as file:
                file.write(AROUND.format(values=ValueLines(EDITED)))
        elif os.path.exists(self._path):
            os.unlink(self._path)

    def left_over(self):
        return os.path.exists(self._path + ".new")

    def read(self):
        """The values; fails on a file that isn't whole."""
        if not os.path.exists(self._path):
            assert not self.edited, "the settings file has gone"
            return {}
        with open(self._path, newline="", encoding="utf-8") as file:
            text = file.read()
        if self.edited:
            head, tail = AROUND.split("{values}")
            assert text.startswith(head) and text.endswith(tail), text
            lines = text[len(head):-len(tail)]
        else:
            whole = NEW_FILE.fullmatch(text)
            assert whole, text
            lines = whole.group(1) or ""
        values = dict(re.findall(r'^"(\w+)"="([^"]*)"$', lines, re.M))
        assert ValueLines(values) == lines, text
        return values


def Begin(world):
    return subprocess.Popen([os.path.join(BIN, "cvlserver")], cwd="/",
                            env=dict(os.environ, CHRONVALE_HOME=world.home),
                            stderr=subprocess.DEVNULL)


def KillAfter(process, seconds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        pass
    process.kill()
    process.wait()


class Phase:
    """A kind of run to be killed in, and the span in which the kill may come."""

    def __init__(self, world, edited, stopping):
        self._world = world
        self._edited = edited
        self._stopping = stopping
        self._span = 0.05
        self.early = self.amid = self.late = self.left_over = 0

    def run(self, draw, store):
        """Kills one run, and looks at the values that it left."""
        if self._stopping:
            process = self._started(store)
            before = store.read()
            process.send_signal(signal.SIGTERM)
            names, after = STOP, AfterAStop(before if self._edited else {})
        else:
            before = {}
            store.begin(self._edited)
            process = Begin(self._world)
            names, after = list(FIRST_RUN), FIRST_RUN
        KillAfter(process, draw.uniform(0, self._span))

        left = store.read()
        states = [before]
        for name in names:
            states.append(dict(states[-1], **{name: after[name]}))
        assert left in states, (before, left)
        self._count(left, states, store)

    def _started(self, store):
        while True:
            store.begin(self._edited)
            try:
                return self._world.server(attempts=1).process
            except AssertionError:  # in millisecond 999; and a first run it may have been
                continue

    def _count(self, left, states, store):
        self.left_over += store.left_over()
        # The span follows the machine's speed, so that kills go on hitting the writes.
        if left == states[0]:
            self.early += 1
            self._span *= 1.3
        elif left == states[-1]:
            self.late += 1
            self._span /= 1.3
        else:
            self.amid += 1


def ExpectAGoodNextRun(world, store):
    for _ in range(8):
        left = store.read()
        try:
            if world.server(attempts=1).stop() == 0:
                break
        except AssertionError:  # in millisecond 999
            continue
    assert store.read() == AfterAStop(left), (left, store.read())
    assert not store.left_over()


def TestAKillLeavesEveryValueOldOrNewAndTheNextRunGood():
    draw = random.Random(SEED)
    with World(settings=None) as world:
        store = Store(world)
        phases = {"first run": Phase(world, edited=False, stopping=False),
                  "stop of a first run": Phase(world, edited=False, stopping=True),
                  "stop with edited settings": Phase(world, edited=True, stopping=True)}
        for _ in range(KILLS):
            draw.choice(list(phases.values())).run(draw, store)
            ExpectAGoodNextRun(world, store)
        for what, phase in phases.items():
            print(f"{what}: {phase.early} before the writes, {phase.amid} amid, "
                  f"{phase.late} behind; {phase.left_over} left a file behind")
        assert sum(phase.amid for phase in phases.values()) > 0


def TestALeftoverOfAnyKindIsReplaced():
    for content, mode in ((b"\xff" * 100000, 0o644), (b"", 0o644), (b"Windows Reg", 0o400)):
        with World(settings=None) as world:
            store = Store(world)
            store.begin(edited=True)
            path = os.path.join(world.home, "registry.reg.new")
            with open(path, "wb") as file:
                file.write(content)
            os.chmod(path, mode)
            ExpectAGoodNextRun(world, store)


if __name__ == "__main__":
    run_all()
