#!/usr/bin/env python3
"""How many NTP requests a second the server answers, with the log on, while its window is
open, while a message box stands in front of it, and while the menu of its tray entry is open,
beside a run without a window.

    window.py DIRECTORY_OF_THE_PROGRAMS [ROUNDS]

All of it happens in namespaces of its own, on an X server without a screen. Needs no rights.
"""

import os
import statistics
import subprocess
import sys

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
MARK = "CHRONVALE_BENCH_NETWORK"
USUAL_ROUNDS = 6
LOAD_CORE, SERVER_CORE = 0, 1
# Requests outstanding, and how long a measurement takes.
DEPTH = 32
SPAN_MS = 500
WARM_UP_MS = 100


def enter_own_namespaces():
    if MARK in os.environ:
        return
    os.environ[MARK] = "1"
    os.environ["CVL_BUILD"] = os.path.dirname(os.path.abspath(sys.argv[1]))
    os.execv(os.path.join(ROOT, "tests", "e2e", "in_namespaces"),
             ["in_namespaces", os.path.abspath(__file__)] + sys.argv[1:])


def rate(programs, server):
    """Answers a second, and microseconds of processor time for each."""
    def ask(span_ms):
        words = (os.path.join(programs, "ntp_rate"), "123", str(DEPTH), str(span_ms))
        answers, ns = subprocess.run(words, check=True, capture_output=True,
                                     text=True).stdout.split()
        return int(answers), int(ns)

    ask(WARM_UP_MS)
    before = server.processor_time()
    answers, ns = ask(SPAN_MS)
    used = server.processor_time() - before
    return answers * 1e9 / ns, used * 1e6 / max(answers, 1)


def measure(programs, rounds):
    sys.path.insert(0, os.path.join(ROOT, "tests", "e2e"))
    from desktop import Desktop
    from hand import CHECK_UPDATE, Hand
    from harness import World
    from update import MAKER, MakerSite, NameTheMaker, VERSION_PATH, VersionFile

    NameTheMaker()
    os.sched_setaffinity(0, {LOAD_CORE})

    def no_window(world, desktop):
        return world.server()

    def window(world, desktop):
        server = desktop.server("-config", environment={"CHRONVALE_MAKER_HOST": MAKER})
        Hand(desktop)
        return server

    def message_box(world, desktop):
        server = window(world, desktop)
        desktop.click(Hand(desktop).open_configuration(), *CHECK_UPDATE)
        desktop.window("Chronvale Server Updater")
        return server

    def tray_menu(world, desktop):
        server = window(world, desktop)
        hand = Hand(desktop)
        hand.open_menu(hand.go_to_the_tray())
        return server

    states = (("no window", no_window), ("window open", window),
              ("message box open", message_box), ("tray menu open", tray_menu))
    seen = {name: [] for name, _ in states}
    with World() as world:
        size = os.path.getsize(os.path.join(world.home, "QRB_CVLS4.CVL"))
        world.upstream()
        with MakerSite(world, {VERSION_PATH: VersionFile(size)}), \
                Desktop(world, tray=True) as desktop:
            for _ in range(rounds):
                for name, start in states:
                    server = start(world, desktop)
                    os.sched_setaffinity(server.process.pid, {SERVER_CORE})
                    server.wait_for_gate()
                    seen[name].append(rate(programs, server))
                    server.stop()
    return seen


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit("usage: window.py DIRECTORY_OF_THE_PROGRAMS [ROUNDS]")
    enter_own_namespaces()
    programs = os.path.abspath(sys.argv[1])
    seen = measure(programs, int(sys.argv[2]) if len(sys.argv) == 3 else USUAL_ROUNDS)
    floor = statistics.median(answers for answers, _ in seen["no window"])
    for name, results in seen.items():
        answers = statistics.median(each for each, _ in results)
        used = statistics.median(each for _, each in results)
        print(f"{name:18} {answers:9.0f} answers/s {used:7.2f} us each {answers / floor:6.2f} x")


if __name__ == "__main__":
    main()
