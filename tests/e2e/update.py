"""The update client against a real web server, and against a peer that sends what it is told."""

import os
import re
import shutil
import socket
import struct
import subprocess
import tempfile

from harness import PEER_ADDRESS, World, bind_over, run_all, wait_until
from system_log import PRIORITY_INFO, SystemLog

MAKER = "maker.test"
VERSION_PATH = "/Chronvale/CVLVCS4.IPF"
SERVER_FILE_PATH = "/Chronvale/QRB_CVLS4.CVL"
DATA = os.path.join(os.path.dirname(__file__), "..", "..", "data")
READY_SETTINGS = os.path.join(DATA, "registry.reg")
SHIPPED_LIST = os.path.join(DATA, "QRB_CVLS4.CVL")


def NameTheMaker():
    """Lets the maker's name be found, in this test's own mount namespace."""
    bind_over("/etc/hosts", f"127.0.0.1 localhost\n{PEER_ADDRESS} {MAKER}\n")


def ServerFile(lines):
    header = "".join(f"header {number}\r\n" for number in range(1, 6))
    return (header + "".join(line + "\r\n" for line in lines)).encode("latin-1")


USUAL_SERVER_FILE = ServerFile([f"{PEER_ADDRESS}:::The peer NA:::2:::"])


def VersionFile(size, latest="5.1.1"):
    return f"0-:-{latest}-:-2-:-3-:-{size}-:-5\r\n".encode("ascii")


class MakerSite:
    """nginx on the peer's machine, as the maker's web server."""

    def __init__(self, world, files, options=""):
        self.folder = tempfile.mkdtemp(prefix="cvl-maker-")
        for path, contents in files.items():
            whole = self.folder + "/site" + path
            os.makedirs(os.path.dirname(whole), exist_ok=True)
            with open(whole, "wb") as file:
                file.write(contents)
        configuration = os.path.join(self.folder, "nginx.conf")
        temporary = "".join(f"{kind}_temp_path {self.folder}/{kind};\n"
                            for kind in ("client_body", "proxy", "fastcgi", "uwsgi", "scgi"))
        with open(configuration, "w", encoding="ascii") as file:
            file.write(f"""
                user root;
                daemon off;
                master_process off;
                pid {self.folder}/nginx.pid;
                error_log {self.folder}/error.log;
                events {{}}
                http {{
                  {temporary}
                  log_format asked '$status $request|$http_host|$http_referer|'
                                   '$http_user_agent|$http_accept';
                  access_log {self.folder}/access.log asked;
                  server {{
                    listen {PEER_ADDRESS}:80;
                    root {self.folder}/site;
                    {options}
                  }}
                }}""")
        self.process = subprocess.Popen(
            world.on_peer("nginx", "-e", self.folder + "/error.log", "-c", configuration))

    def __enter__(self):
        wait_until(self._listens, "the web server")
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    @staticmethod
    def _listens():
        try:
            socket.create_connection((PEER_ADDRESS, 80), timeout=1).close()
            return True
        except OSError:
            return False

    def asked(self):
        """What it has been asked for so far, and answered."""
        with open(self.folder + "/access.log", encoding="ascii") as log:
            return log.read().splitlines()

    def wait_for_requests(self, count):
        wait_until(lambda: len(self.asked()) >= count, f"{count} requests to the maker")
        return self.asked()


class ScriptedMaker:
    """A listener on the peer's machine, whose answers a test sends by hand."""

    def __init__(self, world):
        self._listener = world.peer_socket(socket.SOCK_STREAM)
        self._listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self._listener.bind((PEER_ADDRESS, 80))
        self._listener.listen()
        self._listener.settimeout(30)

    def accept(self):
        """The next connection with a request, and the request."""
        while True:
            connection, _ = self._listener.accept()
            connection.settimeout(30)
            connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            request = b""
            while not request.endswith(b"\r\n\r\n"):
                piece = connection.recv(4096)
                if not piece:
                    break  # a start that met millisecond 999
                request += piece
            else:
                return connection, request.decode("ascii")

    def close(self):
        self._listener.close()


def Ask(path):
    """The web server's whole answer to another client."""
    with socket.create_connection((PEER_ADDRESS, 80), timeout=30) as client:
        client.sendall(f"GET {path} HTTP/1.1\r\nHost: {MAKER}\r\nConnection: close\r\n\r\n"
                       .encode("ascii"))
        answer = b""
        while True:
            piece = client.recv(4096)
            if not piece:
                return answer
            answer += piece


def BytesUnread():
    """What waits in the server's connections to the maker; None when there is none."""
    with open("/proc/net/tcp", encoding="ascii") as table:
        for line in table.readlines()[1:]:
            words = line.split()
            if words[2].endswith(":0050") and words[3] == "01":
                return int(words[4].split(":")[1], 16)
    return None


def SendAsOnePiece(connection, piece):
    """Sends, and waits until the server has taken it."""
    connection.sendall(piece)
    wait_until(lambda: Unacknowledged(connection) == 0, "the acknowledgement of a piece")
    wait_until(lambda: BytesUnread() in (0, None), "a piece to be read")


def Unacknowledged(connection):
    """Segments that the other side hasn't acknowledged: tcpi_unacked of the kernel's tcp_info."""
    return struct.unpack_from("I", connection.getsockopt(socket.IPPROTO_TCP, socket.TCP_INFO, 104),
                              24)[0]


def IsRefused(connection, piece):
    """Sends, and returns whether the other side has closed the connection."""
    try:
        connection.sendall(piece)
        return False
    except (ConnectionResetError, BrokenPipeError):
        return True


def Start(world, maker=MAKER):
    shutil.copy(READY_SETTINGS, world.home)
    return world.server(environment={"CHRONVALE_MAKER_HOST": maker})


def Downloaded(world):
    path = os.path.join(world.home, "QRB_CVLS4.CVL")
    if not os.path.exists(path):
        return None
    with open(path, "rb") as file:
        return file.read()


def TestAMissingServerFileIsFetchedAndTheServerGoesToWork():
    with World(servers=None) as world:
        world.upstream()
        with MakerSite(world, {VERSION_PATH: VersionFile(len(USUAL_SERVER_FILE)),
                               SERVER_FILE_PATH: USUAL_SERVER_FILE}) as maker:
            server = Start(world)
            server.wait_for_gate()
            assert Downloaded(world) == USUAL_SERVER_FILE
            rest = f"|{MAKER}|Chronvale SS v5.1.1|Chronvale SS v5.1.1|*/*"
            assert maker.asked() == [f"200 GET {VERSION_PATH} HTTP/1.1{rest}",
                                     f"200 GET {SERVER_FILE_PATH} HTTP/1.1{rest}"], maker.asked()
            assert server.stop() == 0


def TestTheListThatComesWithTheProgramArrivesByteForByte():
    with open(SHIPPED_LIST, "rb") as file:
        contents = file.read()
    with World(servers=None) as world:
        with MakerSite(world, {VERSION_PATH: VersionFile(len(contents)),
                               SERVER_FILE_PATH: contents}):
            server = Start(world)
            wait_until(lambda: Downloaded(world) == contents, "the list")
            # None of its servers can be reached from here; the listeners stand all the same.
            wait_until(lambda: ("udp", 123) in server.open_sockets(), "the listeners")
            assert server.stop() == 0


def TestTheFetchedFileServesTheNextRunWithoutTheMaker():
    with World(servers=None) as world:
        world.upstream()
        with MakerSite(world, {VERSION_PATH: VersionFile(len(USUAL_SERVER_FILE)),
                               SERVER_FILE_PATH: USUAL_SERVER_FILE}) as maker:
            server = Start(world)
            server.wait_for_gate()
            assert server.stop() == 0
            server = Start(world)
            server.wait_for_gate()
            assert len(maker.asked()) == 2
            assert server.stop() == 0


def TestALongServerFileComesInManyPieces():
    lines = [f"{PEER_ADDRESS}:::{'x' * 2000} {number} NA:::2:::" for number in range(300)]
    contents = ServerFile(lines)
    with World(servers=None) as world:
        world.upstream()
        with MakerSite(world, {VERSION_PATH: VersionFile(len(contents)),
                               SERVER_FILE_PATH: contents}):
            server = Start(world)
            server.wait_for_gate()
            assert Downloaded(world) == contents
            assert server.stop() == 0


def TestARunWithoutAWindowAsksNobodyAboutANewProgram():
    with World(servers=None) as world:
        world.upstream()
        called = os.path.join(world.home, "called")
        updater = os.path.join(world.home, "QRBUpdate.exe")
        with open(updater, "w", encoding="ascii") as script:
            script.write(f"#!/bin/sh\ntouch '{called}'\n")
        os.chmod(updater, 0o755)
        with MakerSite(world, {VERSION_PATH: VersionFile(len(USUAL_SERVER_FILE), latest="5.2.0"),
                               SERVER_FILE_PATH: USUAL_SERVER_FILE}):
            server = Start(world)
            server.wait_for_gate()
            assert not os.path.exists(called)
            assert server.stop() == 0


def TestAnErrorPageForTheServerFileBecomesTheServerFile():
    with World(servers=None) as world:
        upstream = world.upstream()
        with MakerSite(world, {VERSION_PATH: VersionFile(100)}) as maker:
            server = Start(world)
            wait_until(lambda: ("udp", 123) in server.open_sockets(), "the listeners")
            assert [line.split()[0] for line in maker.asked()] == ["200", "404"]
            page = Downloaded(world)
            assert page.startswith(b"<html>") and b"404 Not Found" in page, page
            # A page has no servers in it.
            assert server.ask_ntp(attempts=2, timeout=0.3) is None
            assert upstream.requests() == []
            assert server.stop() == 0


def TestAnErrorPageForTheVersionFileIsSilence():
    with World(servers=None) as world:
        with MakerSite(world, {}) as maker:
            server = Start(world)
            maker.wait_for_requests(1)
            wait_until(lambda: BytesUnread() is None, "the end of the exchange")
            assert server.open_sockets() == set()
            assert server.stop() == 0
            assert len(maker.asked()) == 1
            assert Downloaded(world) is None


def TestAChunkedAnswerStaysOpen():
    with World(servers=None) as world:
        with MakerSite(world, {VERSION_PATH: VersionFile(len(USUAL_SERVER_FILE)),
                               SERVER_FILE_PATH: USUAL_SERVER_FILE},
                       options="ssi on; ssi_types *;") as maker:
            assert b"Transfer-Encoding: chunked" in Ask(VERSION_PATH)
            server = Start(world)
            maker.wait_for_requests(2)
            wait_until(lambda: BytesUnread() == 0, "the answer to be read")
            assert server.processor_time() < 1
            assert server.stop() == 0
            assert len(maker.asked()) == 2
            assert Downloaded(world) is None


def TestTheFirstStartSaysInTheLogThatNothingIsNew():
    log = SystemLog()
    with World(servers=None) as world:
        world.upstream()
        with MakerSite(world, {VERSION_PATH: VersionFile(len(USUAL_SERVER_FILE)),
                               SERVER_FILE_PATH: USUAL_SERVER_FILE}):
            server = Start(world)
            wait_until(lambda: [record for record in log.read()
                                if record[1] == PRIORITY_INFO and re.match("CVLServer", record[2])
                                and record[3] == "No Updates Available."], "the box in the log")
            server.wait_for_gate()
            assert server.stop() == 0


def TestTheRequestIsTheSameLetterForLetterAndALostConnectionIsNoTrouble():
    with World(servers=None) as world:
        maker = ScriptedMaker(world)
        server = Start(world)
        connection, request = maker.accept()
        assert request == (f"GET {VERSION_PATH} HTTP/1.1\r\nAccept: */*\r\nHost: {MAKER}\r\n"
                           "Referer: Chronvale SS v5.1.1\r\nUser-Agent: Chronvale SS v5.1.1\r\n"
                           "\r\n"), request
        connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        connection.close()
        wait_until(lambda: BytesUnread() is None, "the end of the exchange")
        assert server.process.poll() is None
        assert server.stop() == 0
        maker.close()


def TestHeadersMayArriveAlone():
    with World(servers=None) as world:
        world.upstream()
        maker = ScriptedMaker(world)
        server = Start(world)
        connection, _ = maker.accept()
        # Without its header the version file is read from its fourth character on.
        version = b"ab" + VersionFile(len(USUAL_SERVER_FILE))
        SendAsOnePiece(connection, b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\nServer: x\r\n\r\n"
                       % len(version))
        connection.sendall(version)
        connection, request = maker.accept()
        assert request.startswith(f"GET {SERVER_FILE_PATH} "), request
        SendAsOnePiece(connection, b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\nServer: x\r\n\r\n"
                       % len(USUAL_SERVER_FILE))
        for at in range(0, len(USUAL_SERVER_FILE), 20):
            SendAsOnePiece(connection, USUAL_SERVER_FILE[at:at + 20])
        server.wait_for_gate()
        assert Downloaded(world) == USUAL_SERVER_FILE
        assert server.stop() == 0
        maker.close()


def TestAnEndlessServerFileEndsAt16MiB():
    most = 16 << 20
    with World(servers=None) as world:
        maker = ScriptedMaker(world)
        server = Start(world)
        connection, _ = maker.accept()
        version = VersionFile(len(USUAL_SERVER_FILE))
        connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\nServer: x\r\n\r\n"
                           % len(version) + version)
        connection, request = maker.accept()
        assert request.startswith(f"GET {SERVER_FILE_PATH} "), request
        connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 2E9\r\nServer: x\r\n\r\n")
        # A closing connection still takes data for a while and throws it away.
        wait_until(lambda: IsRefused(connection, bytes(1 << 20)), "the end of the connection")
        wait_until(lambda: BytesUnread() is None, "the end of the exchange")
        assert Downloaded(world) == bytes(most)
        assert server.process.poll() is None
        assert server.open_sockets() == set()
        assert server.stop() == 0
        assert Downloaded(world) == bytes(most)
        maker.close()


def TestNobodyAtTheMakersAddressIsNoTrouble():
    with World(servers=None) as world:
        server = Start(world, PEER_ADDRESS)
        assert server.open_sockets() == set()
        assert server.process.poll() is None
        assert server.stop() == 0


if __name__ == "__main__":
    NameTheMaker()
    run_all()
