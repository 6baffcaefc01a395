"""What every end-to-end test stands on: two machines made of network namespaces, the real
server on the first, a scriptable upstream or a real one on the second.

    with World() as world:
        upstream = world.upstream()
        server = world.server()
        server.wait_for_gate()
        reply = server.ask_ntp()

Nothing here waits for a span of time: every wait is for a state, with a deadline that only a
broken system meets.
"""

import ctypes
import os
import re
import select
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import threading
import time
import traceback

BUILD = os.environ["CVL_BUILD"]
BIN = os.path.join(BUILD, "bin")
SERVER_ADDRESS = "10.77.0.1"
PEER_ADDRESS = "10.77.0.2"
OTHER_PEER_ADDRESS = "10.77.0.3"
NTP_EPOCH = 2208988800
DEADLINE = 60.0

# All five services on; servers are asked in their order.
SETTINGS = ('"Settings"="NO:59:Minute/s:NA:36"', '"NTP37"="YES:YES:YES:37"',
            '"SNTP123"="YES:YES:YES:123"', '"UNIX519"="YES:YES:NO:519"',
            '"CVL3777"="YES:YES:NO:3777"', '"DTS13"="YES:YES:YES:13"')

_libc = ctypes.CDLL(None, use_errno=True)
CLONE_NEWNET = 0x40000000


def wait_until(state, what, deadline=DEADLINE):
    """Waits until STATE() is true, and returns what it gave."""
    end = time.monotonic() + deadline
    while True:
        value = state()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError("never came: " + what)
        time.sleep(0.02)


def run(*words):
    subprocess.run(words, check=True)


def bind_over(path, text):
    """Puts TEXT in place of the file PATH, inside this test's own mount namespace."""
    handle, name = tempfile.mkstemp()
    with os.fdopen(handle, "w", encoding="ascii") as file:
        file.write(text)
    os.chmod(name, 0o644)
    run("mount", "--bind", name, path)


def request(transmit=b"\x11\x22\x33\x44\x55\x66\x77\x88", originate=bytes(8), first=0x23):
    """An NTP request of 48 bytes."""
    packet = bytearray(48)
    packet[0] = first
    packet[24:32] = originate
    packet[40:48] = transmit
    return bytes(packet)


def seconds_of(stamp):
    """Seconds since 1970 of the first four bytes of a timestamp."""
    return struct.unpack("!I", stamp[:4])[0] - NTP_EPOCH


class Output:
    """The lines of a process, read as they come."""

    def __init__(self, stream):
        self.lines = []
        self._changed = threading.Condition()
        self._thread = threading.Thread(target=self._read, args=(stream,), daemon=True)
        self._thread.start()

    def _read(self, stream):
        for line in stream:
            with self._changed:
                self.lines.append(line.rstrip("\n"))
                self._changed.notify_all()

    def to_the_end(self):
        """All lines of a process that has ended."""
        self._thread.join(DEADLINE)
        return self.lines

    def wait_for(self, pattern, since=0, deadline=DEADLINE):
        """The first line from SINCE on that matches PATTERN, and its number."""
        end = time.monotonic() + deadline
        at = since
        with self._changed:
            while True:
                while at < len(self.lines):
                    if re.search(pattern, self.lines[at]):
                        return at, self.lines[at]
                    at += 1
                left = end - time.monotonic()
                if left <= 0:
                    raise AssertionError(f"no line like {pattern!r} in {self.lines!r}")
                self._changed.wait(left)


class Upstream:
    """cvlupstream on the peer's machine, told what to do while it runs."""

    def __init__(self, world, address=PEER_ADDRESS, port=123, words=()):
        self._process = subprocess.Popen(
            world.on_peer(os.path.join(BIN, "cvlupstream"), "--address", address, "--port",
                          str(port), "--log", "--control", *words),
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
        self.output = Output(self._process.stdout)
        self.output.wait_for("^listening on ")

    def tell(self, command):
        """Changes its behaviour; it has changed when this returns."""
        since = len(self.output.lines)
        self._process.stdin.write(command + "\n")
        self._process.stdin.flush()
        _, line = self.output.wait_for("^(ok|error)", since)
        assert line == "ok", f"{command}: {line}"

    def requests(self):
        """Its requests so far: (milliseconds, sender, bytes)."""
        found = []
        for line in list(self.output.lines):
            words = line.split()
            if len(words) == 4 and words[0].isdigit():
                found.append((int(words[0]), words[1], bytes.fromhex(words[3])))
        return found

    def wait_for_requests(self, count):
        wait_until(lambda: len(self.requests()) >= count, f"{count} requests to the upstream")
        return self.requests()

    def stop(self):
        self._process.terminate()
        self._process.wait(DEADLINE)


class Server:
    """One run of the server."""

    def __init__(self, world, words=(), environment=None, preload=None, attempts=8, home=None,
                 on_peer=False, program=os.path.join(BIN, "cvlserver")):
        """From the world's own program directory unless HOME names another, on the peer's
        machine if ON_PEER is set. PROGRAM may be a copy elsewhere."""
        self.world = world
        self.home = home or world.home
        settings = dict(os.environ, CHRONVALE_HOME=self.home, **(environment or {}))
        if preload:
            settings["LD_PRELOAD"] = preload
        command = [program, *words]
        # A start in millisecond 999 has no timestamp and ends; the next one does better.
        for _ in range(attempts):
            self.process = subprocess.Popen(world.on_peer(*command) if on_peer else command,
                                            env=settings, stdout=subprocess.PIPE,
                                            stderr=subprocess.PIPE, text=True, cwd="/")
            self.errors = Output(self.process.stderr)
            if not self._met_millisecond_999():
                return
        raise AssertionError("the server did not start: " + repr(self.errors.lines))

    def _met_millisecond_999(self):
        # The load step is over when the first listener stands or the process has ended.
        try:
            wait_until(lambda: self.process.poll() is not None
                       or (self.open_sockets() and not self._is_ending()),
                       "the end of the load step", 3)
        except AssertionError:
            return False
        if self.process.poll() != 1:
            return False
        return any("error 6" in line for line in self.errors.to_the_end())

    def _is_ending(self):
        """Whether the process has given up its memory; its sockets outlast that a little."""
        try:
            with open(f"/proc/{self.process.pid}/cmdline", encoding="ascii") as words:
                return words.read() == ""
        except OSError:
            return True

    def open_sockets(self):
        """Ports of the process's own sockets: {("udp", 123), ("tcp", 37), ...}."""
        if self.process.poll() is not None:
            return set()
        inodes = self._descriptors()
        found = set()
        for kind, wanted in (("udp", "07"), ("tcp", "0A")):
            try:
                with open(f"/proc/{self.process.pid}/net/{kind}", encoding="ascii") as table:
                    lines = table.readlines()[1:]
            except OSError:
                return set()
            for line in lines:
                words = line.split()
                if words[3] == wanted and f"socket:[{words[9]}]" in inodes:
                    found.add((kind, int(words[1].split(":")[1], 16)))
        return found

    def _descriptors(self):
        """What the process's descriptors are. Those that come and go while it is asked, such
        as the log's, may be among them or not."""
        folder = f"/proc/{self.process.pid}/fd"
        found = set()
        try:
            for descriptor in os.listdir(folder):
                try:
                    found.add(os.readlink(f"{folder}/{descriptor}"))
                except FileNotFoundError:
                    continue
        except OSError:
            pass  # the process has ended
        return found

    def wait_for_gate(self, address=SERVER_ADDRESS):
        wait_until(lambda: self.ask_ntp(address=address, attempts=1, timeout=0.2),
                   "the first answer")

    def ask_ntp(self, packet=None, address=SERVER_ADDRESS, port=123, attempts=5, timeout=2.0):
        """The answer to an NTP request over UDP, or None. Asked again, since a request in
        millisecond 999 has no answer."""
        for _ in range(attempts):
            with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as client:
                client.settimeout(timeout)
                client.connect((address, port))
                try:
                    client.send(packet or request())
                    return client.recv(2048)
                except (socket.timeout, ConnectionRefusedError):
                    continue
        return None

    def ask_tcp(self, packet, address=SERVER_ADDRESS, port=123, timeout=5.0, finish=False):
        """All that a connection answers to PACKET until its end; None when it was reset or had
        no end in time, as that of an NTP request in millisecond 999 has none."""
        with socket.socket(socket.AF_INET, socket.SOCK_STREAM) as client:
            client.settimeout(timeout)
            client.connect((address, port))
            try:
                client.sendall(packet)
                if finish:
                    client.shutdown(socket.SHUT_WR)
                answer = b""
                while True:
                    piece = client.recv(4096)
                    if not piece:
                        return answer
                    answer += piece
            except (ConnectionResetError, socket.timeout):
                return None

    def log_lines(self):
        """Lines of the request log, without its header."""
        folder = os.path.join(self.home, "Logs")
        lines = []
        if os.path.isdir(folder):
            for name in sorted(os.listdir(folder)):
                with open(os.path.join(folder, name), newline="", encoding="latin-1") as log:
                    lines += [line for line in log.read().split("\r\n")
                              if line and not line.startswith("#")]
        return lines

    def processor_time(self):
        """Seconds of processor time that the process has used."""
        with open(f"/proc/{self.process.pid}/stat", encoding="ascii") as stat:
            words = stat.read().rsplit(") ", 1)[1].split()
        return (int(words[11]) + int(words[12])) / os.sysconf("SC_CLK_TCK")

    def descriptors(self):
        return len(os.listdir(f"/proc/{self.process.pid}/fd"))

    def memory(self, field):
        """A field of the process's status, in kB."""
        with open(f"/proc/{self.process.pid}/status", encoding="ascii") as status:
            return int(re.search(rf"^{field}:\s+(\d+) kB", status.read(), re.M).group(1))

    def is_sanitized(self):
        """Whether the program was built with the address sanitizer."""
        with open(f"/proc/{self.process.pid}/exe", "rb") as program:
            return b"__asan_init" in program.read()

    def send_signal(self, number):
        self.process.send_signal(number)

    def stop(self):
        """Stops the service as its manager does, and returns the exit status."""
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(DEADLINE)


class World:
    """Two machines, joined by a pair of virtual network cards, and a program directory."""

    def __init__(self, servers=(PEER_ADDRESS,), settings=SETTINGS):
        """SERVERS go into a server file, SETTINGS into a settings file; None for no file."""
        self._homes = []
        self.home = self.new_home(servers, settings)
        self._started = []
        self._peer = None

    def __enter__(self):
        run("ip", "link", "set", "lo", "up")
        self._peer = subprocess.Popen(["unshare", "--net", "sleep", "infinity"])
        own = os.readlink("/proc/self/ns/net")
        wait_until(lambda: os.readlink(f"/proc/{self._peer.pid}/ns/net") != own, "the peer")
        run("ip", "link", "add", "cvl0", "type", "veth", "peer", "name", "cvl1", "netns",
            str(self._peer.pid))
        run("ip", "addr", "add", SERVER_ADDRESS + "/24", "dev", "cvl0")
        run("ip", "link", "set", "cvl0", "up")
        for words in (("addr", "add", PEER_ADDRESS + "/24", "dev", "cvl1"),
                      ("addr", "add", OTHER_PEER_ADDRESS + "/24", "dev", "cvl1"),
                      ("link", "set", "cvl1", "up"), ("link", "set", "lo", "up")):
            run(*self.on_peer("ip", *words))
        return self

    def __exit__(self, *_):
        for process in [each.process for each in self._started] + [self._peer]:
            if process.poll() is None:
                process.kill()
                process.wait()
        # The kernel takes its time over a namespace that nobody is in; the next test wants the
        # name of the card at once.
        subprocess.run(["ip", "link", "del", "cvl0"], check=False, stderr=subprocess.DEVNULL)
        for home in self._homes:
            shutil.rmtree(home, ignore_errors=True)

    def new_home(self, servers=None, settings=None):
        """A program directory that lasts as long as the world."""
        home = tempfile.mkdtemp(prefix="cvl-e2e-")
        self._homes.append(home)
        if servers is not None:
            self.write_server_file([f"{host}:::Server {host} NA:::2:::" for host in servers],
                                   home=home)
        if settings is not None:
            self.write_settings(settings, home)
        return home

    def on_peer(self, *words):
        """The command line that runs WORDS on the peer's machine."""
        return ["nsenter", "--target", str(self._peer.pid), "--net", *words]

    def peer_socket(self, kind=socket.SOCK_DGRAM, protocol=0):
        """A socket on the peer's machine."""
        own = os.open("/proc/self/ns/net", os.O_RDONLY)
        peer = os.open(f"/proc/{self._peer.pid}/ns/net", os.O_RDONLY)
        try:
            if _libc.setns(peer, CLONE_NEWNET) != 0:
                raise OSError(ctypes.get_errno(), "setns")
            made = socket.socket(socket.AF_INET, kind, protocol)
            if _libc.setns(own, CLONE_NEWNET) != 0:
                raise OSError(ctypes.get_errno(), "setns")
            return made
        finally:
            os.close(own)
            os.close(peer)

    def write_server_file(self, lines, header=5, home=None):
        with open(os.path.join(home or self.home, "QRB_CVLS4.CVL"), "w", newline="",
                  encoding="latin-1") as file:
            for number in range(header):
                file.write(f"header {number + 1}\r\n")
            for line in lines:
                file.write(line + "\r\n")

    def write_settings(self, lines, home=None):
        with open(os.path.join(home or self.home, "registry.reg"), "w", encoding="utf-8") as file:
            file.write("Windows Registry Editor Version 5.00\n\n"
                       "[HKEY_LOCAL_MACHINE\\Software\\Chronvale Server]\n")
            for line in lines:
                file.write(line + "\n")

    def read_settings(self):
        """The stored values by their names."""
        with open(os.path.join(self.home, "registry.reg"), encoding="utf-8") as file:
            return dict(re.findall(r'^"([^"]+)"="([^"]*)"$', file.read(), re.M))

    def upstream(self, **options):
        return Upstream(self, **options)

    def server(self, *words, **options):
        started = Server(self, words, **options)
        self._started.append(started)
        return started


def readable(sockets, timeout):
    """Those of SOCKETS on which something has come within TIMEOUT seconds."""
    return select.select(sockets, [], [], timeout)[0]


def main(tests):
    """Runs the tests of a file, each in turn, and tells how they went."""
    failed = 0
    for test in tests:
        try:
            test()
            print(f"passed  {test.__name__}", flush=True)
        except Exception:  # a failed test must not hide the others
            failed += 1
            print(f"FAILED  {test.__name__}", flush=True)
            traceback.print_exc()
    print(f"{len(tests) - failed} passed, {failed} failed")
    sys.exit(1 if failed or not tests else 0)


def tests_of(module):
    """The routines of a module whose names begin with Test, in their order."""
    return [value for name, value in vars(module).items()
            if name.startswith("Test") and callable(value)]


def run_all():
    """Runs every test of the calling script."""
    main(tests_of(sys.modules["__main__"]))
