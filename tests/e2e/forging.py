"""Datagrams with a forged sender, from a raw socket on the peer's machine."""

import socket
import struct
import threading
import time

from harness import PEER_ADDRESS, SERVER_ADDRESS, wait_until


def forged(source, destination, payload):
    """An IP packet with a datagram of PAYLOAD; SOURCE and DESTINATION are (address, port)."""
    length = 8 + len(payload)
    # Fields that are 0 the kernel fills in; a checksum of 0 is none.
    header = struct.pack("!BBHHHBBH4s4s", 0x45, 0, 20 + length, 0, 0, 64, socket.IPPROTO_UDP, 0,
                         socket.inet_aton(source[0]), socket.inet_aton(destination[0]))
    udp = struct.pack("!HHHH", source[1], destination[1], length, 0)
    return header + udp + payload


def queued(port):
    """How many bytes of memory the datagrams that wait on a local PORT take."""
    with open("/proc/net/udp", encoding="ascii") as table:
        for line in table.readlines()[1:]:
            words = line.split()
            if int(words[1].split(":")[1], 16) == port:
                return int(words[4].split(":")[1], 16)
    return 0


class Forger:
    """Sends datagrams to the server's port 123 in the name of the upstream's."""

    def __init__(self, world, payload=b""):
        self.sent = 0
        self._packet = forged((PEER_ADDRESS, 123), (SERVER_ADDRESS, 123), payload)
        self._raw = world.peer_socket(socket.SOCK_RAW, socket.IPPROTO_RAW)

    def send(self, count):
        """Sends COUNT at once."""
        for _ in range(count):
            self._raw.sendto(self._packet, (SERVER_ADDRESS, 0))
        self.sent += count

    def send_and_wait(self, count):
        """Sends COUNT, and returns when the server has received all of them."""
        self.send(count)
        wait_until(lambda: queued(123) == 0, "the forged datagrams to be received")

    def close(self):
        self._raw.close()


class Flood(threading.Thread):
    """Forges RATE datagrams a second until it is stopped. It waits while the server has many
    of them unread, so that a busy machine drops none: the test is about the server's choice."""

    PER_BURST = 30
    MOST_QUEUED = 64 * 1024

    def __init__(self, forger, rate):
        super().__init__(daemon=True)
        self._forger = forger
        self._interval = self.PER_BURST / rate
        self._ending = threading.Event()
        self.start()

    def run(self):
        due = time.monotonic()
        while not self._ending.is_set():
            if queued(123) <= self.MOST_QUEUED:
                self._forger.send(self.PER_BURST)
            # After a pause the pace goes on from here; nothing is made up for.
            due = max(due + self._interval, time.monotonic())
            self._ending.wait(due - time.monotonic())

    def stop(self):
        self._ending.set()
        self.join()
