"""Datagrams that nobody should send."""

import os
import random

from harness import SERVER_ADDRESS, World, request, run_all, wait_until


def TestEveryLengthIsRefusedOrAnsweredAndLogged():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        lengths = [0, 1, 2, 47, 49, 68, 1472, 2048, 9000, 65507]
        known = len(server.log_lines())
        with world.peer_socket() as client:
            for length in lengths:
                client.sendto(bytes(length), (SERVER_ADDRESS, 123))
        wait_until(lambda: len(server.log_lines()) >= known + len(lengths), "the refused packets")
        for line, length in zip(server.log_lines()[known:], lengths):
            assert f" GET TIME - 0 0 0 {length} 0 123 NTPv4 UDP - " in line, (length, line)
        assert server.ask_ntp() is not None


def TestRandomDatagramsOnEveryPortDoNoHarm():
    draw = random.Random(20021003)
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()
        with world.peer_socket() as client:
            for _ in range(3000):
                packet = draw.randbytes(draw.choice((0, 1, 4, 24, 47, 48, 48, 49, 100, 1400)))
                client.sendto(packet, (SERVER_ADDRESS, draw.choice((13, 37, 123, 519, 3777))))
        wait_until(lambda: server.ask_ntp(), "an ordinary answer")
        assert server.stop() == 0


def TestALowPortGetsFiftyAnswersASecondAndOthersAllTheyWant():
    with World() as world:
        world.upstream()
        server = world.server()
        server.wait_for_gate()

        def Answers(port):
            with world.peer_socket() as client:
                client.settimeout(0.5)
                client.bind(("10.77.0.3", port))
                client.connect((SERVER_ADDRESS, 123))
                for _ in range(200):
                    client.send(request())
                count = 0
                try:
                    while client.recv(100):
                        count += 1
                except TimeoutError:
                    return count

        # Two hundred leave within one or two of the guard's seconds.
        assert Answers(123) <= 100
        # Those in a millisecond 999 have no answer.
        assert Answers(0) >= 100
        assert os.path.exists(world.home)


if __name__ == "__main__":
    run_all()
