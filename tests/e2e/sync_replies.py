"""Which datagrams are taken for the upstream's reply, and what our request looks like."""

from harness import PEER_ADDRESS, SERVER_ADDRESS, World, request, run_all, wait_until


def TestTheRequestIsAnSntpRequestFromPort123():
    with World() as world:
        upstream = world.upstream()
        server = world.server()
        server.wait_for_gate()
        _, sender, packet = upstream.wait_for_requests(1)[0]
        assert sender == f"{SERVER_ADDRESS}:123"
        assert len(packet) == 48
        assert packet[0] == 27
        assert packet[1:40] == bytes(39)
        assert packet[40:48] != bytes(8)


def TestThreeMatchingBytesMakeAReply():
    with World() as world:
        upstream = world.upstream(words=("--echo-bytes", "0,3,7"))
        server = world.server()
        upstream.wait_for_requests(1)
        server.wait_for_gate()


def TestAnEchoThatLacksOneOfTheThreeIsNoReply():
    for kept in ("3,7", "0,7", "0,3"):
        with World() as world:
            upstream = world.upstream(words=("--echo-bytes", kept))
            server = world.server()
            upstream.wait_for_requests(1)
            assert server.ask_ntp(attempts=2, timeout=0.3) is None, kept


def TestAllZeroTransmitTimeCountsAsSynchronised():
    with World() as world:
        world.upstream(words=("--zero-transmit",))
        server = world.server()
        server.wait_for_gate()


def TestAForgedReplyFromAnyAddressOpensTheGate():
    with World() as world:
        upstream = world.upstream(words=("--silent",))
        server = world.server()
        _, _, packet = upstream.wait_for_requests(1)[0]
        stamp = bytearray(8)
        stamp[0], stamp[3], stamp[7] = packet[40], packet[43], packet[47]
        with world.peer_socket() as stranger:
            stranger.bind(("10.77.0.3", 0))
            stranger.sendto(request(originate=bytes(stamp)), (SERVER_ADDRESS, 123))
        server.wait_for_gate()


def TestAReplyWhenNothingIsOutIsAnsweredAsARequest():
    with World() as world:
        upstream = world.upstream(words=("--repeat", "2"))
        server = world.server()
        server.wait_for_gate()
        # The second copy came when the first had been taken: an answer goes back.
        wait_until(lambda: [packet for _, _, packet in upstream.requests() if packet[0] == 0x24],
                   "our answer to the second copy")


def TestAReplyIsNotLogged():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        assert all(PEER_ADDRESS not in line for line in server.log_lines()), server.log_lines()


if __name__ == "__main__":
    run_all()
