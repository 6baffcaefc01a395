"""Upstreams that answer late, more than once, from elsewhere, or not yet."""

from every_service import ExpectAnswers
from harness import (OTHER_PEER_ADDRESS, PEER_ADDRESS, SERVER_ADDRESS, SETTINGS, World, run,
                     run_all, wait_until)

EVERY_SECOND = tuple(line.replace('"NO:59:Minute/s', '"NO:1:Second/s') for line in SETTINGS)


def Lines(server, part):
    return [line for line in server.log_lines() if part in line]


def TestAReplyThatComesAfterTheNextRequestIsTakenForThatOnes():
    with World(settings=EVERY_SECOND) as world:
        upstream = world.upstream(words=("--delay", "1500"))
        server = world.server()
        server.wait_for_gate()
        # The reply to the first was the first to come, and found the second one out.
        assert len(upstream.requests()) >= 2
        assert upstream.requests()[0][2] == upstream.requests()[1][2]


def TestRepliesThatAreLateForEveryRequestDoNoHarm():
    with World(settings=EVERY_SECOND) as world:
        upstream = world.upstream(words=("--delay", "3300"))
        server = world.server()
        server.wait_for_gate()
        upstream.wait_for_requests(8)
        ExpectAnswers()
        assert server.stop() == 0


def DatagramsToAnUpstreamThatAnswersThreeTimes():
    with World() as world:
        upstream = world.upstream(words=("--repeat", "3"))
        server = world.server()
        server.wait_for_gate()
        wait_until(lambda: len(Lines(server, PEER_ADDRESS + " - CVLS5")) >= 2,
                   "the lines of the two copies")
        # Nothing runs in circles.
        ExpectAnswers()
        assert len([line for line in Lines(server, PEER_ADDRESS + " - CVLS5")
                    if " 48 48 0 123 NTPv4 UDP" in line]) == 2
        assert server.stop() == 0
        return len(upstream.requests())


def TestASecondAndAThirdCopyAreClientsRequests():
    # The request, and a whole answer for each of the two; a copy that comes in millisecond 999
    # has none.
    found = [DatagramsToAnUpstreamThatAnswersThreeTimes()]
    while found[-1] == 2 and len(found) < 3:
        found.append(DatagramsToAnUpstreamThatAnswersThreeTimes())
    assert found[-1] == 3, found


def TestAnUpstreamThatAnswersFromAnotherAddressIsAskedWhereItIs():
    with World(settings=EVERY_SECOND) as world:
        upstream = world.upstream(words=("--from", OTHER_PEER_ADDRESS))
        server = world.server()
        server.wait_for_gate()
        upstream.wait_for_requests(4)
        assert {sender for _, sender, _ in upstream.requests()} == {SERVER_ADDRESS + ":123"}
        # Replies aren't logged, wherever they come from.
        assert not Lines(server, PEER_ADDRESS) and not Lines(server, OTHER_PEER_ADDRESS)
        assert server.stop() == 0


def TestAByteFromAnybodyCountsAsARefusalWhileARequestIsOut():
    with World() as world:
        upstream = world.upstream(words=("--silent",))
        server = world.server()
        upstream.wait_for_requests(1)
        with world.peer_socket() as stranger:
            stranger.bind((OTHER_PEER_ADDRESS, 0))
            stranger.sendto(b"\0", (SERVER_ADDRESS, 123))
        # The interval is 59 minutes.
        upstream.wait_for_requests(2)
        assert not Lines(server, OTHER_PEER_ADDRESS)
        assert server.stop() == 0


def TestAnUpstreamThatComesLaterIsFound():
    with World(settings=EVERY_SECOND) as world:
        server = world.server()
        assert server.ask_ntp(attempts=5, timeout=0.5) is None
        world.upstream()
        server.wait_for_gate()
        assert server.stop() == 0


def TestANetworkThatComesLaterIsUsedAtOnce():
    # The interval is 59 minutes, but a request that can't be sent is tried again at once.
    with World() as world:
        world.upstream()
        run("ip", "link", "set", "cvl0", "down")
        server = world.server(environment={"CHRONVALE_TRACE": "1"})
        since, _ = server.errors.wait_for("Network is unreachable")
        server.errors.wait_for("Network is unreachable", since + 1)
        run("ip", "link", "set", "cvl0", "up")
        server.wait_for_gate()
        assert server.stop() == 0


def TestANetworkThatGoesDownAndComesBackIsUsedAgain():
    with World(settings=EVERY_SECOND) as world:
        upstream = world.upstream()
        server = world.server(environment={"CHRONVALE_TRACE": "1"})
        server.wait_for_gate()
        run("ip", "link", "set", "cvl0", "down")
        server.errors.wait_for("Network is unreachable")
        assert server.ask_ntp(address="127.0.0.1") is not None
        before = len(upstream.requests())
        run("ip", "link", "set", "cvl0", "up")
        upstream.wait_for_requests(before + 3)
        ExpectAnswers()
        assert server.stop() == 0


if __name__ == "__main__":
    run_all()
