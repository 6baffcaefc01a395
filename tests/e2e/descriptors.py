"""Clients that hold every descriptor that they can get, and what must keep working."""

import os
import resource
import socket

from harness import (BIN, PEER_ADDRESS, SERVER_ADDRESS, SETTINGS, World, bind_over, request, run_all,
                     wait_until)

SERVER = os.path.join(BIN, "cvlserver")
HARD_LIMIT = 64
SILENT = 60
KEPT_BACK = 32
UPSTREAM_NAME = "time.upstream.example"
EVERY_SECOND = tuple(line.replace('"NO:59:Minute/s', '"NO:1:Second/s') for line in SETTINGS)


def Silent(count, port=3777):
    """That many connections that never send anything."""
    clients = []
    for _ in range(count):
        client = socket.create_connection((SERVER_ADDRESS, port), 10)
        client.setblocking(False)
        clients.append(client)
    return clients


def Dropped(clients):
    """How many of CLIENTS the server has ended."""
    count = 0
    for client in clients:
        try:
            count += client.recv(1) == b""
        except BlockingIOError:
            pass
        except ConnectionResetError:
            count += 1
    return count


def CheckThatAllGoesOn(server, upstream):
    lines = len(server.log_lines())
    for count in range(1, 6):
        assert server.ask_ntp() is not None
        wait_until(lambda: len(server.log_lines()) >= lines + count, "the request's line")
    asked = len(upstream.requests())
    upstream.wait_for_requests(asked + 5)


def TestSilentConnectionsStopNeitherTheLogNorTheSynchronisationNorTheSettings():
    # The upstream has a name, so that each request wants a lookup once the answer is stale.
    bind_over("/etc/hosts", f"127.0.0.1 localhost\n{PEER_ADDRESS} {UPSTREAM_NAME}\n")
    with World(servers=(UPSTREAM_NAME,), settings=EVERY_SECOND) as world:
        upstream = world.upstream()
        server = world.server(f"--nofile={HARD_LIMIT}:{HARD_LIMIT}", SERVER, program="prlimit")
        server.wait_for_gate()
        own = server.descriptors()
        clients = Silent(SILENT)
        wait_until(lambda: Dropped(clients) + HARD_LIMIT - KEPT_BACK - own >= SILENT - 1,
                   "those beyond the limit dropped")
        assert server.descriptors() <= HARD_LIMIT - KEPT_BACK + 1, server.descriptors()
        CheckThatAllGoesOn(server, upstream)
        assert "EnableLogging" not in world.read_settings()
        assert server.stop() == 0
        assert world.read_settings()["EnableLogging"] == "YES"
        for client in clients:
            client.close()


def TestALimitThatChangesWhileTheServerRunsIsFollowed():
    with World(settings=EVERY_SECOND) as world:
        upstream = world.upstream()
        server = world.server()
        server.wait_for_gate()
        hard = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
        resource.prlimit(server.process.pid, resource.RLIMIT_NOFILE, (HARD_LIMIT, hard))
        clients = Silent(SILENT)
        wait_until(lambda: Dropped(clients) > 0, "some dropped")
        resource.prlimit(server.process.pid, resource.RLIMIT_NOFILE, (hard, hard))
        more = Silent(SILENT)
        CheckThatAllGoesOn(server, upstream)
        assert Dropped(more) == 0
        assert len(wait_until(lambda: server.ask_tcp(request()), "a reply over TCP")) == 48
        assert server.stop() == 0
        for client in clients + more:
            client.close()


if __name__ == "__main__":
    run_all()
