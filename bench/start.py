#!/usr/bin/env python3
"""How long the server takes from the start of its process to its first answer, and how
much memory it has resident then.

    start.py DIRECTORY_OF_THE_PROGRAMS [STARTS]

The server asks an upstream in a second network namespace, behind a veth pair, and has one
of its own too: the machine's network and clock are never touched. Needs no rights.
"""

import os
import signal
import socket
import statistics
import subprocess
import sys
import tempfile
import time

MARK = "CHRONVALE_BENCH_NETWORK"
SERVER_ADDRESS = "10.77.0.1"
UPSTREAM_ADDRESS = "10.77.0.2"
USUAL_STARTS = 10
MOST_STARTS = 100
# A start in millisecond 999 ends with status 1, about one in 500, and is made again.
MOST_TRIES = 5
PATIENCE_S = 3.0
REQUEST = bytes([0x23]) + bytes(39) + b"\xe7" + bytes(7)

SERVERS = "1\n2\n3\n4\n5\n" + UPSTREAM_ADDRESS + ":::Bench NA:::7:::0\n"
SETTINGS = r"""Windows Registry Editor Version 5.00

[HKEY_LOCAL_MACHINE\Software\Chronvale Server]
"Settings"="NO:59:Minutes/s:NA:36"
"EnableLogging"="YES"
"UseJulian"="YES"
"NTP37"="YES:YES:YES:37"
"SNTP123"="YES:YES:YES:123"
"UNIX519"="YES:YES:NO:519"
"CVL3777"="YES:YES:YES:3777"
"DTS13"="YES:YES:YES:13"
"""


def enter_own_network():
    if MARK in os.environ:
        return
    os.environ[MARK] = "1"
    os.execvp("unshare", ["unshare", "--user", "--map-root-user", "--net",
                          sys.executable, os.path.abspath(__file__)] + sys.argv[1:])


def ip(*words, inside=None):
    prefix = ["nsenter", "-t", str(inside), "-n"] if inside else []
    subprocess.run(prefix + ["ip", *words], check=True)


def make_networks(holder):
    """Joins this namespace and HOLDER's, in which the upstream is to stand."""
    ip("link", "set", "lo", "up")
    ip("link", "add", "v0", "type", "veth", "peer", "name", "v1", "netns", str(holder))
    ip("addr", "add", SERVER_ADDRESS + "/24", "dev", "v0")
    ip("link", "set", "v0", "up")
    ip("addr", "add", UPSTREAM_ADDRESS + "/24", "dev", "v1", inside=holder)
    ip("link", "set", "v1", "up", inside=holder)


def start_upstream(programs, holder):
    upstream = subprocess.Popen(
        ["nsenter", "-t", str(holder), "-n", os.path.join(programs, "cvlupstream"),
         "--address", UPSTREAM_ADDRESS, "--port", "123"], stdout=subprocess.PIPE, text=True)
    if not upstream.stdout.readline().startswith("listening"):
        raise SystemExit("start.py: the upstream does not listen")
    return upstream


def namespace_holder():
    """A process in a network namespace of its own, once that has come about."""
    holder = subprocess.Popen(["unshare", "--net", "sleep", "300"])
    own = os.readlink("/proc/self/ns/net")
    while os.readlink(f"/proc/{holder.pid}/ns/net") == own:
        time.sleep(0.01)
    return holder


def resident_kb(process):
    with open(f"/proc/{process}/status") as status:
        for line in status:
            if line.startswith("VmRSS:"):
                return int(line.split()[1])
    return 0


def first_answer(server, began):
    """Seconds from BEGAN to the first answer; nothing if the server has ended."""
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as client:
        client.settimeout(0.001)
        while time.monotonic() - began < PATIENCE_S:
            try:
                client.sendto(REQUEST, ("127.0.0.1", 123))
                if len(client.recv(512)) == 48:
                    return time.monotonic() - began
            except (socket.timeout, ConnectionRefusedError):
                if server.poll() is not None:
                    return None
    raise SystemExit("start.py: no answer from the server")


def measure(programs):
    """One start: milliseconds to the first answer, and kilobytes resident behind it."""
    for _ in range(MOST_TRIES):
        with tempfile.TemporaryDirectory(prefix="chronvale-bench-") as home:
            for name, text in (("QRB_CVLS4.CVL", SERVERS), ("registry.reg", SETTINGS)):
                with open(os.path.join(home, name), "w") as file:
                    file.write(text)
            environment = dict(os.environ, CHRONVALE_HOME=home)
            began = time.monotonic()
            server = subprocess.Popen([os.path.join(programs, "cvlserver")], env=environment,
                                      stderr=subprocess.DEVNULL)
            try:
                taken = first_answer(server, began)
                if taken is not None:
                    return taken * 1000, resident_kb(server.pid)
            finally:
                server.send_signal(signal.SIGTERM)
                server.wait()
    raise SystemExit("start.py: the server does not start")


def main():
    if len(sys.argv) < 2:
        raise SystemExit(__doc__)
    enter_own_network()
    programs = os.path.abspath(sys.argv[1])
    starts = int(sys.argv[2]) if len(sys.argv) > 2 else USUAL_STARTS
    helpers = [namespace_holder()]
    try:
        make_networks(helpers[0].pid)
        helpers.append(start_upstream(programs, helpers[0].pid))
        results = [measure(programs) for _ in range(min(max(starts, 1), MOST_STARTS))]
    finally:
        for helper in reversed(helpers):
            helper.kill()
            helper.wait()
    times = [taken for taken, _ in results]
    print(f"{len(results)} starts to the first answer: median {statistics.median(times):.1f} ms, "
          f"{min(times):.1f} to {max(times):.1f} ms")
    print(f"resident then: {max(resident for _, resident in results)} kB at most")


if __name__ == "__main__":
    main()
