"""A long flood on all open sockets together, with a stop in the middle of it."""

import os
import select
import socket
import threading
import time

from harness import SERVER_ADDRESS, SETTINGS, World, request, run_all, wait_until

SECONDS = float(os.environ.get("CVL_FLOOD_SECONDS", "60"))
LENGTHS = {13: None, 37: (4,), 123: (48,), 519: (4,), 3777: (24,)}
CLIENT_REQUEST = b"CVLC1" + bytes(19)


class Flood:
    """Asks over and over until it is told to end, and keeps what was wrong."""

    def __init__(self):
        self.wrong = []
        self.answers = 0
        self._ending = threading.Event()
        self._threads = [threading.Thread(target=self._datagrams)]
        self._threads += [threading.Thread(target=self._connections, args=(port,))
                          for port in LENGTHS]
        for thread in self._threads:
            thread.start()

    def end(self):
        self._ending.set()
        for thread in self._threads:
            thread.join()

    def _datagrams(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as client:
            while not self._ending.is_set():
                for port, packet in ((123, request()), (3777, CLIENT_REQUEST), (13, b""),
                                     (37, b"x"), (123, bytes(47))):
                    client.sendto(packet, (SERVER_ADDRESS, port))
                while select.select([client], [], [], 0)[0]:
                    answer, (_, port) = client.recvfrom(2048)
                    self.answers += 1
                    if len(answer) not in {13: (50, 51), 37: (1,), 123: (48,), 3777: (24,)}[port]:
                        self.wrong.append((port, answer))

    def _connections(self, port):
        while not self._ending.is_set():
            try:
                with socket.create_connection((SERVER_ADDRESS, port), 5) as client:
                    if port in (123, 3777):
                        client.sendall(request() if port == 123 else CLIENT_REQUEST)
                    client.settimeout(0.2)
                    answer = client.recv(100)
            except OSError:
                continue  # dropped, or in millisecond 999
            self.answers += bool(answer)
            # Whole or none at all: a stop may have come in between.
            if answer and len(answer) not in (LENGTHS[port] or (50, 51)):
                self.wrong.append((port, answer))


def TestEveryAnswerOfAFloodIsWholeAndAStopInItIsInGoodOrder():
    with World(settings=SETTINGS + ('"UseJulian"="YES"',)) as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        wait_until(lambda: server.ask_tcp(request()), "a reply over TCP")
        flood = Flood()
        try:
            time.sleep(SECONDS / 2)
            memory = server.memory("VmRSS")
            time.sleep(SECONDS / 2)
            # Slots that nothing closes are kept by design; a leak would show as megabytes.
            assert server.memory("VmRSS") < memory + 20000, (memory, server.memory("VmRSS"))
            assert server.ask_ntp() is not None
            assert server.stop() == 0
        finally:
            flood.end()
        assert flood.wrong == [], flood.wrong[:5]
        assert flood.answers > 100 * SECONDS, flood.answers
        assert world.read_settings()["SNTP123"] == "YES:YES:YES:123"


if __name__ == "__main__":
    run_all()
