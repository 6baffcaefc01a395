"""Thousands of clients at once on the two services that answer a bare connection. They stay
connected when they have their answer."""

import errno
import os
import resource
import select
import socket
import time

from harness import SETTINGS, World, request, run_all, wait_until

COUNT = int(os.environ.get("CVL_FLOOD_CONNECTIONS", "15000"))
WHOLE = {13: (50, 51), 37: (4,)}
USE_JULIAN = '"UseJulian"="YES"'
PATIENCE_SECONDS = 60
QUIET_SECONDS = 2


class Client:
    """A connection that reads until the server ends it, and holds on to its own end."""

    def __init__(self, number):
        self.port = (13, 37)[number % 2]
        self.answer = b""
        self.ended = False
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
        self.socket.setblocking(False)
        # Several addresses, since one has not ports enough.
        self.socket.bind((f"127.0.1.{1 + number % 8}", 0))
        error = self.socket.connect_ex(("127.0.0.1", self.port))
        assert error in (0, errno.EINPROGRESS), os.strerror(error)

    def read(self):
        try:
            piece = self.socket.recv(100)
        except BlockingIOError:
            return
        except OSError:
            piece = b""
        self.answer += piece
        self.ended = not piece

    def is_whole(self):
        return len(self.answer) in WHOLE[self.port]


def AskAll(count):
    """COUNT clients, all connecting before the first has read anything, and all at their end
    or out of patience."""
    clients = {}
    poll = select.epoll()
    for number in range(count):
        client = Client(number)
        clients[client.socket.fileno()] = client
        poll.register(client.socket, select.EPOLLIN)
    left = count
    end = time.monotonic() + PATIENCE_SECONDS
    while left and time.monotonic() < end:
        for descriptor, _ in poll.poll(0.5):
            client = clients[descriptor]
            client.read()
            if client.ended:
                poll.unregister(descriptor)
                left -= 1
    poll.close()
    return list(clients.values())


def StandsStill(server, world):
    """Whether the server uses next to no processor time while nobody asks."""
    used = server.processor_time()
    with world.peer_socket() as quiet:
        quiet.settimeout(QUIET_SECONDS)
        try:
            quiet.recv(1)
        except socket.timeout:
            pass
    return server.processor_time() - used <= 0.05 * QUIET_SECONDS


def Judge(clients):
    """How many CLIENTS have a whole answer; the others have none at all, and all an end."""
    wrong = [(client.port, client.answer) for client in clients
             if client.answer and not client.is_whole()]
    assert wrong == [], wrong[:5]
    answered = sum(1 for client in clients if client.is_whole())
    waiting = sum(1 for client in clients if not client.ended)
    print(f"{len(clients)} connections: {answered} answered, "
          f"{len(clients) - answered - waiting} dropped, {waiting} without an end", flush=True)
    assert waiting == 0
    return answered


def Flood(count, most_descriptors=None):
    """Floods a server with COUNT connections, and returns how many it answered. With
    MOST_DESCRIPTORS it may open only so many."""
    with World(settings=SETTINGS + (USE_JULIAN,)) as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        wait_until(lambda: server.ask_tcp(request()), "a reply over TCP")
        # A small flood first, so that every part of the program has been used once.
        for client in AskAll(200):
            client.socket.close()
        wait_until(lambda: StandsStill(server, world), "quiet before the flood")
        descriptors = server.descriptors()
        stack, resident = server.memory("VmStk"), server.memory("VmRSS")
        if most_descriptors:
            limits = (most_descriptors, most_descriptors)
            resource.prlimit(server.process.pid, resource.RLIMIT_NOFILE, limits)

        clients = AskAll(count)
        answered = Judge(clients)
        # The clients still hold their ends.
        wait_until(lambda: server.descriptors() <= descriptors, "the descriptors back")
        wait_until(lambda: StandsStill(server, world), "quiet while they hold on")
        for client in clients:
            client.socket.close()
        wait_until(lambda: StandsStill(server, world), "quiet when they are gone")
        assert server.descriptors() <= descriptors
        assert server.memory("VmStk") <= stack + 64, (stack, server.memory("VmStk"))
        # The address sanitizer keeps what was freed for a while.
        if not server.is_sanitized():
            assert server.memory("VmRSS") <= resident + 4096, (resident, server.memory("VmRSS"))
        assert len(wait_until(lambda: server.ask_tcp(request()), "a reply")) == 48
        assert server.stop() == 0
    return answered


def TestEveryConnectionOfAFloodIsAnsweredAndNothingOfItStays():
    hard = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
    count = min(COUNT, hard - 200)
    assert Flood(count) >= count * 0.99


def TestWithoutDescriptorsConnectionsAreDroppedAndNothingOfThemStays():
    hard = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
    # A few always find a free descriptor, and the flood is far from over by then.
    assert 0 < Flood(3000, most_descriptors=300) < 3000


if __name__ == "__main__":
    run_all()
