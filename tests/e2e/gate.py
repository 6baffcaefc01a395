"""Nothing is answered before the first upstream reply, and everything after."""

import socket

from harness import SERVER_ADDRESS, World, request, run_all, wait_until


def Connect(port):
    """What a bare connection to PORT brings: the end of the stream, or a reset."""
    with socket.create_connection((SERVER_ADDRESS, port), 5) as client:
        try:
            return client.recv(100)
        except ConnectionResetError:
            return b""


def TestBeforeTheFirstReplyUdpIsSilentAndTcpIsDropped():
    with World() as world:
        upstream = world.upstream(words=("--silent",))
        server = world.server()
        upstream.wait_for_requests(1)
        assert server.ask_ntp(attempts=3, timeout=0.3) is None
        for port in (37, 123, 519, 3777):
            assert Connect(port) == b"", port
        # The requests were logged as if they had been answered.
        assert len([line for line in server.log_lines() if " 48 48 0 123 NTPv4 UDP" in line]) == 3
        assert server.stop() == 0


def TestTheFirstReplyOpensTheGateForGood():
    with World() as world:
        upstream = world.upstream()
        server = world.server()
        server.wait_for_gate()
        upstream.stop()
        assert server.ask_ntp() is not None
        assert wait_until(lambda: server.ask_tcp(request()), "a reply over TCP")


def TestARefusedClockSettingOpensTheGateAllTheSame():
    # In these namespaces the kernel refuses every setting of the clock.
    with World() as world:
        # Late in its second the answer, with half the way, has no millisecond to be set to,
        # and the kernel isn't asked at all.
        world.upstream(words=("--fraction", "40000000"))
        server = world.server(environment={"CHRONVALE_TRACE": "1"})
        server.errors.wait_for("clock_settime: Operation not permitted")
        server.wait_for_gate()


if __name__ == "__main__":
    run_all()
