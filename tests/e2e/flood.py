"""Two thousand clients a second on all nine sockets together, with a stop in the middle of it."""

import collections
import errno
import os
import select
import socket
import threading
import time

from harness import SERVER_ADDRESS, SETTINGS, World, request, run_all, wait_until

SECONDS = float(os.environ.get("CVL_FLOOD_SECONDS", "10"))
CLIENTS_PER_SECOND = 2000
PATIENCE_SECONDS = 2
DAYTIME = (50, 51)
CLIENT_REQUEST = b"CVLC1" + bytes(19)
SETTINGS_BEFORE = SETTINGS + ('"UseJulian"="YES"',)

# Kind of socket, port, what is asked, and how long the pieces of a whole answer are together.
SERVICES = ((socket.SOCK_STREAM, 13, b"", DAYTIME), (socket.SOCK_DGRAM, 13, b"", DAYTIME),
            (socket.SOCK_STREAM, 37, b"", (4,)), (socket.SOCK_DGRAM, 37, b"x", (4,)),
            (socket.SOCK_STREAM, 123, request(), (48,)), (socket.SOCK_DGRAM, 123, request(), (48,)),
            (socket.SOCK_STREAM, 519, b"", (4,)),
            (socket.SOCK_STREAM, 3777, CLIENT_REQUEST, (24,)),
            (socket.SOCK_DGRAM, 3777, CLIENT_REQUEST, (24,)))


class Client:
    """One question on a socket of its own."""

    def __init__(self, service):
        self.kind, self.port, self._question, self.lengths = service
        self.answer = b""
        self.gives_up = time.monotonic() + PATIENCE_SECONDS
        self.socket = socket.socket(socket.AF_INET, self.kind)
        self.socket.setblocking(False)
        error = self.socket.connect_ex((SERVER_ADDRESS, self.port))
        self.is_done = error not in (0, errno.EINPROGRESS)
        self.events = select.EPOLLIN
        if self.kind == socket.SOCK_DGRAM:
            self._ask()
        elif self._question:
            self.events = select.EPOLLOUT

    def _ask(self):
        try:
            self.socket.send(self._question)
        except OSError:
            self.is_done = True  # nobody there
        self.events = select.EPOLLIN

    def go_on(self, events):
        if self.events == select.EPOLLOUT and events & select.EPOLLOUT:
            self._ask()
            return
        try:
            piece = self.socket.recv(2048)
        except OSError:  # reset, or nobody there
            self.is_done = True
            return
        self.answer += piece
        # The services end their connections, all but that of the client protocol, and after
        # the last byte nothing else may come.
        ends_itself = self.kind == socket.SOCK_STREAM and self.port != 3777
        self.is_done = not piece or (not ends_itself and len(self.answer) >= min(self.lengths))

    def is_whole(self):
        return len(self.answer) in self.lengths


# More clients than ever ask.
ENDLESS = 10 ** 9


class Flood(threading.Thread):
    """Asks COUNT times, each service in its turn, and keeps what was wrong. The count may
    change while it asks."""

    def __init__(self, count):
        super().__init__()
        self.count = count
        self.asked = 0
        self.answered = collections.Counter()
        self.wrong = []
        self.seconds = 0.0
        self._poll = select.epoll()
        self._open = collections.OrderedDict()
        self.start()

    def answers(self):
        return sum(self.answered.values())

    def run(self):
        began = time.monotonic()
        while self.asked < self.count or self._open:
            now = time.monotonic()
            # Behind a pause of the machine the clients come faster, but never all at once.
            due = min(int((now - began) * CLIENTS_PER_SECOND), self.count, self.asked + 100)
            while self.asked < due:
                self._begin(SERVICES[self.asked % len(SERVICES)])
                self.asked += 1
                self.seconds = now - began
            for descriptor, events in self._poll.poll(0.001):
                self._go_on(descriptor, events)
            while self._open and next(iter(self._open.values())).gives_up < now:
                self._end(next(iter(self._open)))
        self._poll.close()

    def _begin(self, service):
        client = Client(service)
        descriptor = client.socket.fileno()
        self._open[descriptor] = client
        self._poll.register(descriptor, client.events)
        if client.is_done:
            self._end(descriptor)

    def _go_on(self, descriptor, events):
        client = self._open[descriptor]
        before = client.events
        client.go_on(events)
        if client.is_done:
            self._end(descriptor)
        elif client.events != before:
            self._poll.modify(descriptor, client.events)

    def _end(self, descriptor):
        client = self._open.pop(descriptor)
        client.socket.close()
        if client.is_whole():
            self.answered[client.kind, client.port] += 1
        elif client.answer:
            self.wrong.append((client.kind, client.port, client.answer))


def CheckShare(flood, asked, answered_before):
    """Of the last ASKED clients nearly all were answered. Those of millisecond 999 are not, nor
    are those that are still at it."""
    answered = flood.answers() - answered_before
    assert answered > 0.9 * asked, f"{answered} of {asked} answered"


def CheckStop(world, server):
    """Stops SERVER, which writes the settings: one of them wasn't there before."""
    assert "EnableLogging" not in world.read_settings()
    assert server.stop() == 0
    settings = world.read_settings()
    assert settings["EnableLogging"] == "YES", settings
    assert settings["SNTP123"] == "YES:YES:YES:123", settings
    world.write_settings(SETTINGS_BEFORE)


def TestEveryAnswerOfAFloodIsWholeAndAStopInItIsInGoodOrder():
    count = int(SECONDS * CLIENTS_PER_SECOND)
    with World(settings=SETTINGS_BEFORE) as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        wait_until(lambda: server.ask_tcp(request()), "a reply over TCP")
        flood = Flood(ENDLESS)
        patience = 10 * SECONDS + 60
        try:
            wait_until(lambda: flood.asked >= count // 4, "a quarter of the flood", patience)
            memory = server.memory("VmRSS")
            wait_until(lambda: flood.asked >= count // 2, "half of the flood", patience)
            CheckShare(flood, flood.asked, 0)
            # Slots that nothing closes are kept by design; a leak would show as megabytes.
            assert server.memory("VmRSS") < memory + 20000, (memory, server.memory("VmRSS"))
            assert server.ask_ntp() is not None
            CheckStop(world, server)

            # It starts again while they go on asking, for half of the flood from then on.
            server = world.server()
            server.wait_for_gate()
            answered, asked = flood.answers(), flood.asked
            flood.count = asked + count // 2
            wait_until(lambda: not flood.is_alive(), "the end of the flood", patience)
            CheckShare(flood, flood.asked - asked, answered)
            assert server.ask_ntp() is not None
            CheckStop(world, server)
        finally:
            flood.count = 0
            flood.join()
        print(f"{flood.asked} clients in {flood.seconds:.1f} s, {flood.answers()} answered",
              flush=True)
        assert flood.wrong == [], flood.wrong[:5]
        assert len(flood.answered) == len(SERVICES), flood.answered


if __name__ == "__main__":
    run_all()
