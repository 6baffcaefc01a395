"""What the sync exchange does when something goes wrong, as seen from the outside."""

import socket

from harness import (PEER_ADDRESS, SERVER_ADDRESS, World, bind_over, request, run_all,
                     wait_until)


def TestWithoutAServerNothingIsAsked():
    with World(servers=()) as world:
        upstream = world.upstream()
        server = world.server()
        wait_until(lambda: ("udp", 123) in server.open_sockets(), "the listeners")
        ticks_seen = server.processor_time()
        with world.peer_socket() as client:
            client.settimeout(2.5)  # two ticks and more
            client.connect((SERVER_ADDRESS, 123))
            client.send(request())
            try:
                client.recv(100)
                raise AssertionError("answered without ever having asked a server")
            except socket.timeout:
                pass
        assert upstream.requests() == []
        assert server.processor_time() - ticks_seen < 1
        assert server.stop() == 0


def TestWithoutAServerFileNoListenerOpens():
    with World(servers=None) as world:
        server = world.server()
        assert server.process.poll() is None
        assert server.open_sockets() == set()
        assert server.stop() == 0


def TestAnUnknownHostIsRetriedOnTheNextTickWithAnotherServer():
    bind_over("/etc/nsswitch.conf", "hosts: files\n")
    with World() as world:
        # The run begins with the first server; the region of the settings has only the second.
        world.write_server_file(["no-such-host.invalid:::Unknown EU:::2:::",
                                 f"{PEER_ADDRESS}:::Known NA:::2:::"])
        world.upstream()
        server = world.server(environment={"CHRONVALE_TRACE": "1"})
        server.errors.wait_for("^cvlserver: lookup of no-such-host.invalid: ")
        server.wait_for_gate()


def TestAOneByteAnswerIsARefusalAndTheNextTickAsksAgain():
    with World() as world:
        upstream = world.upstream(words=("--one-byte", "--count", "2"))
        server = world.server()
        moments = [moment for moment, _, _ in upstream.wait_for_requests(3)]
        # A tick apart each, not an interval of 59 minutes.
        assert all(later > earlier for earlier, later in zip(moments, moments[1:]))
        server.wait_for_gate()
        # A refusal isn't logged.
        assert not [line for line in server.log_lines() if PEER_ADDRESS in line]


def TestEveryRequestOfARunCarriesTheSameStamp():
    with World() as world:
        upstream = world.upstream(words=("--one-byte", "--count", "2"))
        world.server()
        stamps = {packet[40:48] for _, _, packet in upstream.wait_for_requests(3)}
        assert len(stamps) == 1


def TestAnAnswerOfAnotherLengthIsNoReplyAndIsLogged():
    with World() as world:
        upstream = world.upstream(words=("--length", "47"))
        server = world.server()
        upstream.wait_for_requests(1)
        wait_until(lambda: [line for line in server.log_lines()
                            if line.startswith(line[:20] + PEER_ADDRESS + " ")
                            and " GET TIME - 0 0 0 47 0 123 NTPv4 UDP - " in line],
                   "the line of a refused packet")
        assert server.ask_ntp(attempts=2, timeout=0.3) is None


def TestAnAnswerThatFailsTheTestIsAnsweredAsARequest():
    with World() as world:
        upstream = world.upstream(words=("--wrong-echo",))
        server = world.server()
        upstream.wait_for_requests(1)
        # The gate is shut, so nothing goes out; the log counts it as answered.
        wait_until(lambda: [line for line in server.log_lines()
                            if PEER_ADDRESS + " - CVLS5" in line and " 48 48 0 123 NTPv4" in line],
                   "the line of an answered request")
        assert len(upstream.requests()) == 1


def TestASilentServerIsNotAskedAgainBeforeTheInterval():
    with World() as world:
        upstream = world.upstream(words=("--silent",))
        server = world.server()
        upstream.wait_for_requests(1)
        with world.peer_socket() as client:
            client.settimeout(2.5)
            client.connect((SERVER_ADDRESS, 123))
            client.send(request())
            try:
                client.recv(100)
                raise AssertionError("answered")
            except socket.timeout:
                pass
        assert len(upstream.requests()) == 1
        assert server.stop() == 0


def TestALateReplyIsTaken():
    with World() as world:
        upstream = world.upstream(words=("--delay", "1500"))
        server = world.server()
        upstream.wait_for_requests(1)
        server.wait_for_gate()


if __name__ == "__main__":
    run_all()
