"""Two servers that one forged datagram has set on each other."""

import socket
import threading
import time

from forging import forged
from harness import (OTHER_PEER_ADDRESS, PEER_ADDRESS, SERVER_ADDRESS, SETTINGS, World, request,
                     run_all, wait_until)

MOST_PER_SECOND = 50
CLIENT_REQUEST = b"CVLC1" + bytes(19)
CHARGEN = 19
WATCHED_SECONDS = 2


def Forge(world, source, destination, bytes_sent):
    """One datagram to an ADDRESS and port that bears another's as its sender."""
    with world.peer_socket(socket.SOCK_RAW, socket.IPPROTO_RAW) as raw:
        raw.sendto(forged(source, destination, bytes_sent), (destination[0], 0))


def TwoServers(world):
    """One on each machine, both in step: the second has the first as its upstream, since the
    port of the real one is then its own."""
    upstream = world.upstream()
    first = world.server()
    first.wait_for_gate()
    upstream.stop()
    second = world.server(home=world.new_home((SERVER_ADDRESS,), SETTINGS), on_peer=True)
    second.wait_for_gate(PEER_ADDRESS)
    return first, second


def Heard(server, sender, port):
    """How many datagrams of SENDER the server has answered on PORT, by its log."""
    return sum(1 for line in server.log_lines()
               if line.split()[2] == sender and f" 0 {port} " in line and " UDP " in line)


class Watch:
    """Counts what gets through to a server's port from now on."""

    def __init__(self, server, sender, port):
        self._asked = (server, sender, port)
        self._known = Heard(*self._asked)
        self._began = time.monotonic()

    def count(self):
        return Heard(*self._asked) - self._known

    def most(self):
        # The guard's seconds begin with a datagram, so the last may have only just begun.
        return MOST_PER_SECOND * (int(time.monotonic() - self._began) + 1)

    def check(self):
        count = self.count()
        most = self.most()
        assert count <= most, f"{count} datagrams got through, {most} may: {self._asked[1:]}"


def AnswersToOrdinaryClients(world):
    """Asks every service of the first server, as a client of another address does, for as long
    as is watched, and counts the answers of each."""
    answers = {13: 0, 37: 0, 123: 0, 3777: 0}
    end = time.monotonic() + WATCHED_SECONDS
    with world.peer_socket() as client:
        client.settimeout(2)
        client.bind((OTHER_PEER_ADDRESS, 0))
        while time.monotonic() < end:
            for port, packet in ((13, b""), (37, b"x"), (123, request()),
                                 (3777, CLIENT_REQUEST)):
                client.sendto(packet, (SERVER_ADDRESS, port))
                try:
                    for _ in range(4 if port == 37 else 1):
                        client.recv(2048)
                    answers[port] += 1
                except socket.timeout:
                    pass  # in millisecond 999
    return answers


def SetOnEachOther(port, packet):
    with World() as world:
        first, second = TwoServers(world)
        watches = [Watch(first, PEER_ADDRESS, port), Watch(second, SERVER_ADDRESS, port)]

        def GoesOn():
            if min(watch.count() for watch in watches) >= 5:
                return True
            # One that came upon a millisecond 999 has ended the exchange already.
            Forge(world, (PEER_ADDRESS, port), (SERVER_ADDRESS, port), packet)
            return False

        wait_until(GoesOn, "an exchange of the two")
        answers = AnswersToOrdinaryClients(world)
        for watch in watches:
            watch.check()
        assert min(answers.values()) >= 20, answers
        used = first.processor_time() + second.processor_time()
        with world.peer_socket() as quiet:
            quiet.settimeout(WATCHED_SECONDS)
            try:
                quiet.recv(1)  # a while in which nobody asks
            except socket.timeout:
                pass
        for watch in watches:
            watch.check()
        used = first.processor_time() + second.processor_time() - used
        assert used < WATCHED_SECONDS / 4, f"{used} s of processor time"
        assert first.stop() == 0
        assert second.stop() == 0


def TestDaytimeServersEndTheirExchange():
    SetOnEachOther(13, b"x")


def TestTimeServersEndTheirExchange():
    SetOnEachOther(37, b"x")


def TestNtpServersEndTheirExchange():
    SetOnEachOther(123, request())


def TestServersOfTheClientProtocolEndTheirExchange():
    # The head of an answer passes for that of a request.
    SetOnEachOther(3777, CLIENT_REQUEST)


class Chargen:
    """A character generator on the peer's machine: three datagrams for each that it gets, so
    that an exchange with it never ends by itself."""

    def __init__(self, world):
        self.received = 0
        self._socket = world.peer_socket()
        self._socket.bind((PEER_ADDRESS, CHARGEN))
        self._socket.settimeout(0.1)
        self._ending = threading.Event()
        self._thread = threading.Thread(target=self._run)
        self._thread.start()

    def _run(self):
        while not self._ending.is_set():
            try:
                _, sender = self._socket.recvfrom(2048)
            except socket.timeout:
                continue
            self.received += 1
            for _ in range(3):
                self._socket.sendto(bytes(range(33, 107)), sender)

    def stop(self):
        self._ending.set()
        self._thread.join()
        self._socket.close()


def TestACharacterGeneratorGetsFiftyDatagramsASecondFromDaytime():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        watch = Watch(server, PEER_ADDRESS, 13)
        chargen = Chargen(world)
        try:
            Forge(world, (PEER_ADDRESS, CHARGEN), (SERVER_ADDRESS, 13), b"x")
            wait_until(lambda: chargen.received >= MOST_PER_SECOND, "a full second's datagrams")
            answers = AnswersToOrdinaryClients(world)
            received, most = chargen.received, watch.most()
            assert received <= most, f"{received} answers to the generator, {most} may be"
            watch.check()
        finally:
            chargen.stop()
        assert min(answers.values()) >= 20, answers
        assert server.stop() == 0


if __name__ == "__main__":
    run_all()
