"""Ten thousand connections that never send anything."""

import resource
import socket

from harness import World, request, run_all, wait_until

COUNT = 10000


def TestIdleConnectionsCostNothingAndGiveEverythingBack():
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    count = min(COUNT, hard - 200)
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        wait_until(lambda: server.ask_tcp(request()), "a reply over TCP")
        descriptors = server.descriptors()
        stack = server.memory("VmStk")

        clients = []
        for number in range(count):
            client = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
            # Several addresses, since one has not ports enough.
            client.bind((f"127.0.1.{1 + number % 4}", 0))
            client.settimeout(20)
            client.connect(("127.0.0.1", 123))
            clients.append(client)
        # The connection before may still have been closing when the descriptors were counted.
        wait_until(lambda: server.descriptors() >= count, "all accepted")

        assert len(wait_until(lambda: server.ask_tcp(request()), "a reply")) == 48
        assert server.ask_ntp() is not None

        used = server.processor_time()
        wait_until(lambda: server.ask_ntp(attempts=1, timeout=2) is not None, "an answer")
        with world.peer_socket() as quiet:
            quiet.settimeout(2)
            try:
                quiet.recv(1)  # two seconds in which nothing is asked
            except socket.timeout:
                pass
        assert server.processor_time() - used < 0.5, "spins while they are idle"

        for client in clients:
            client.close()
        wait_until(lambda: server.descriptors() <= descriptors + 2, "the descriptors back", 60)
        used = server.processor_time()
        with world.peer_socket() as quiet:
            quiet.settimeout(2)
            try:
                quiet.recv(1)
            except socket.timeout:
                pass
        assert server.processor_time() - used < 0.5, "spins when they are gone"
        assert server.memory("VmStk") <= stack + 64
        assert len(wait_until(lambda: server.ask_tcp(request()), "a reply")) == 48
        assert server.stop() == 0
    resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))


if __name__ == "__main__":
    run_all()
