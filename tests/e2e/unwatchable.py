"""Sockets that the system refuses to watch."""

import os
import socket

from harness import BUILD, SERVER_ADDRESS, World, request, run_all, wait_until
from terminal import TerminalRun

PRELOAD = os.path.join(BUILD, "lib", "unwatchable_preload.so")


def TestAPortWithoutAWatchIsReportedAsNotOpen():
    with World() as world:
        run = TerminalRun(world, wrapped=("env", f"LD_PRELOAD={PRELOAD}",
                                          "CVL_UNWATCHABLE_PORT=37"))
        run.wait_for("  not open: Time TCP 37: No buffer space\n")
        run.wait_for("  not open: Time UDP 37: No buffer space\n")
        assert "NTP TCP 123, NTP UDP 123" in run.read()
        assert run.stop() == 0


def TestAConnectionWithoutAWatchIsDroppedAndAllElseGoesOn():
    with World() as world:
        world.upstream()
        server = world.server(preload=PRELOAD, environment={"CVL_UNWATCHABLE_CONNECTIONS": "3777"})
        server.wait_for_gate()
        own = server.descriptors()
        for _ in range(50):
            with socket.create_connection((SERVER_ADDRESS, 3777), 10) as client:
                assert client.recv(1) == b""
        wait_until(lambda: server.descriptors() <= own, "the descriptors back")
        assert server.ask_ntp() is not None
        assert len(wait_until(lambda: server.ask_tcp(request()), "a reply over TCP")) == 48
        assert server.stop() == 0


if __name__ == "__main__":
    run_all()
