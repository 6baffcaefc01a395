"""Connections that take all the memory that the process may have."""

import resource
import socket

from harness import SERVER_ADDRESS, SETTINGS, World, request, run_all, wait_until

# Much more than the connections leave to the rest, and used up by a few thousand of them.
MEMORY_TO_FILL_KB = 1024
MOST_CONNECTIONS = 12000
EVERY_SECOND = tuple(line.replace('"NO:59:Minute/s', '"NO:1:Second/s') for line in SETTINGS)


def Fill(server):
    """Opens silent connections until the server drops one. Returns those that it keeps."""
    clients = []
    while len(clients) < MOST_CONNECTIONS:
        client = socket.create_connection((SERVER_ADDRESS, 3777), 10)
        # The answer comes after the connection is taken, and a dropped one has none.
        client.sendall(b"CVLC1" + bytes(19))
        if not Answer(client):
            return clients
        clients.append(client)
        assert server.process.poll() is None, server.errors.to_the_end()
    raise AssertionError(f"memory enough for {MOST_CONNECTIONS} connections")


def Answer(client):
    try:
        return client.recv(100)
    except ConnectionResetError:
        return b""


def TestMemoryThatRunsOutDropsConnectionsAndNothingElse():
    hard = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
    with World(settings=EVERY_SECOND) as world:
        upstream = world.upstream()
        server = world.server()
        server.wait_for_gate()
        wait_until(lambda: server.ask_tcp(request()), "a reply over TCP")
        most = (server.memory("VmSize") + MEMORY_TO_FILL_KB) * 1024
        resource.prlimit(server.process.pid, resource.RLIMIT_AS, (most, most))
        clients = Fill(server)
        print(f"{len(clients)} connections", flush=True)

        asked = len(upstream.requests())
        for count in range(1, 200):
            lines = len(server.log_lines())
            assert server.ask_ntp() is not None
            wait_until(lambda: len(server.log_lines()) > lines, "the request's line")
            # Each is dropped, and what it took is given back.
            with socket.create_connection((SERVER_ADDRESS, 3777), 10) as another:
                assert Answer(another) == b"", count
        upstream.wait_for_requests(asked + 3)

        for client in clients:
            client.close()
        assert "EnableLogging" not in world.read_settings()
        assert server.stop() == 0
        assert world.read_settings()["EnableLogging"] == "YES"


if __name__ == "__main__":
    run_all()
