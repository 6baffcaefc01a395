"""What a client gets from the NTP service, over both transports."""

import socket
import time

from harness import World, request, run_all, seconds_of, wait_until

FIXED = bytes([0x24, 2, 4, 0xEF, 0, 0, 0, 0x4F, 0, 0, 2, 0xA1, 0, 0, 0, 0])


def TestUdpReplyHasTheFixedFieldsAndTheTime():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        before = int(time.time())
        reply = server.ask_ntp(request(transmit=b"ABCDEFGH"))
        after = int(time.time())
        assert len(reply) == 48
        assert reply[:16] == FIXED, reply[:16].hex()
        assert reply[24:32] == b"ABCDEFGH"
        for field in (32, 40):
            assert before - 1 <= seconds_of(reply[field:]) <= after
        assert seconds_of(reply[16:]) <= after
        assert server.stop() == 0


def TestTcpReplyIsTheSameAndTheConnectionEnds():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        reply = wait_until(lambda: server.ask_tcp(request(transmit=b"ABCDEFGH")), "a reply")
        assert len(reply) == 48
        assert reply[:16] == FIXED
        assert reply[24:32] == b"ABCDEFGH"


def TestOriginateIsTheRequestsOwnWhereItsFirstByteIsSet():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        filled = server.ask_ntp(request(transmit=b"ABCDEFGH", originate=b"\x12bcdefgh"))
        assert filled[24:32] == b"\x12bcdefgh"
        not_filled = server.ask_ntp(request(transmit=b"ABCDEFGH", originate=b"\x00bcdefgh"))
        assert not_filled[24:32] == b"ABCDEFGH"
        zeros = server.ask_ntp(bytes(48))
        assert zeros[24:32] == bytes(8)


def TestRequestAndEndOfStreamInOneGoAreAnswered():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        assert len(wait_until(lambda: server.ask_tcp(request(), finish=True), "a reply")) == 48


def TestTcpRequestInTwoPiecesIsRefusedAtTheFirst():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        with socket.create_connection(("10.77.0.1", 123), 5) as client:
            client.sendall(request()[:20])
            assert client.recv(100) == b""


def TestAnswersLeaveFromTheAddressThatWasAsked():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        for address in ("127.0.0.1", "127.0.0.7", "10.77.0.1"):
            # A connected socket takes nothing from any other address.
            assert server.ask_ntp(address=address) is not None, address


if __name__ == "__main__":
    run_all()
