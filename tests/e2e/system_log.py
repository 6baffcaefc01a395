"""A system log of the test's own, in the test's own mount namespace: the machine's /dev is
covered by a private one, in which /dev/log is a socket of ours."""

import os
import re
import socket
import subprocess
import tempfile

from harness import wait_until

FACILITY_DAEMON = 3
PRIORITY_ERR = 3
PRIORITY_INFO = 6


class SystemLog:
    def __init__(self):
        self.records = []
        self._cover_dev()
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self._socket.bind("/dev/log")
        self._socket.setblocking(False)

    @staticmethod
    def _cover_dev():
        own = tempfile.mkdtemp(prefix="cvl-dev-")
        subprocess.run(["mount", "-t", "tmpfs", "tmpfs", own], check=True)
        for name in ("null", "zero", "random", "urandom"):
            path = os.path.join(own, name)
            with open(path, "w", encoding="ascii"):
                pass
            subprocess.run(["mount", "--bind", "/dev/" + name, path], check=True)
        subprocess.run(["mount", "--rbind", own, "/dev"], check=True)
        assert not os.path.exists("/dev/log")

    def read(self):
        """All records so far: (facility, priority, identifier, message)."""
        try:
            while True:
                text = self._socket.recv(4096).decode("latin-1").rstrip("\0\n")
                head = re.match(r"<(\d+)>\w{3} [ \d]\d \d\d:\d\d:\d\d ([^:]+): (.*)", text, re.S)
                assert head, text
                code = int(head.group(1))
                self.records.append((code // 8, code % 8, head.group(2), head.group(3)))
        except BlockingIOError:
            return self.records

    def clear(self):
        self.read()
        self.records = []

    def wait_for_one(self):
        wait_until(self.read, "a record in the system log")
        assert len(self.records) == 1, self.records
        return self.records[0]
