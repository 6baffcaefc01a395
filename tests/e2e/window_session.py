"""An operator's session at the window, from its opening to its end. Each step leaves a picture."""

import os

from desktop import Desktop
from every_service import Ask, QUESTIONS
from hand import (ABOUT, CHECK_UPDATE, CONFIGURATION, ENABLE, INTERVAL, LOGGING, NOTHING_NEW, OK,
                  OPEN_MINIMISED, PORT, RANDOM, REGIONS_ARROW, SERVERS_ARROW, TCP, TITLE, UDP,
                  UNIT_ARROW, Hand)
from harness import OTHER_PEER_ADDRESS, PEER_ADDRESS, World, run_all, wait_until
from update import MAKER, MakerSite, NameTheMaker, VERSION_PATH, VersionFile

NOTHING_ON = ('"Settings"="NO:59:Minute/s:NA:36"', '"OpenMinimized"="NO"',
              '"NTP37"="NO:YES:YES:37"', '"EnableLogging"="YES"', '"SNTP123"="NO:YES:YES:123"',
              '"UNIX519"="NO:YES:NO:519"', '"CVL3777"="NO:YES:NO:3777"',
              '"DTS13"="NO:YES:YES:13"')

# Node of the tree, port, and the sockets that the TCP box and the UDP box open.
SERVICES = (("Time Service Server", 37, "tcp", "udp"),
            ("Daytime Service Server", 13, "tcp", "udp"),
            ("SNTP v4 Service Server", 123, "tcp", "udp"),
            ("CVL Server Client Server", 3777, "udp", "tcp"))
PORTS = (13, 37, 123, 519, 3777)


def Answers(port, transport, at=None):
    """Whether a client of PORT's service gets its answer; asked at port AT if that is told."""
    for asked, by, question, lengths in QUESTIONS:
        if (asked, by) == (port, transport):
            return len(Ask(at or port, transport, question, lengths[-1], 0.5)) in lengths
    raise AssertionError(f"no such service: {transport} {port}")


def ExpectAnswer(port, transport, at=None):
    wait_until(lambda: Answers(port, transport, at), f"an answer from {transport} {at or port}")


def ExpectRefusal(port):
    """Nobody listens there: a client is turned away at once."""
    wait_until(lambda: not Ask(port, "tcp", b"x", 1), f"no answer from tcp {port}")


class Session:
    def __init__(self, world, desktop, maker):
        self.world = world
        self.desktop = desktop
        self.maker = maker
        self.chosen = world.upstream(address=OTHER_PEER_ADDRESS)
        self.first = world.upstream()
        self.server = desktop.server("-config", environment={"CHRONVALE_MAKER_HOST": MAKER})
        self.hand = Hand(desktop)
        self._pictures = 0

    def picture(self, name):
        self._pictures += 1
        self.desktop.shot(f"session-{self._pictures:02}-{name}")

    def open_ports(self):
        """Those of the services; the sync exchange has a port of its own choice."""
        return {(kind, port) for kind, port in self.server.open_sockets() if port in PORTS}

    def expect_ports(self, *ports):
        wait_until(lambda: self.open_ports() == set(ports), f"the ports {ports}")

    def tick_and_untick(self, node, port, by_tcp_box, by_udp_box):
        hand = self.hand
        before = self.open_ports()
        hand.choose(node)
        hand.click(ENABLE)
        self.picture(f"enabled-{port}")
        assert self.open_ports() == before
        for box, transport in ((TCP, by_tcp_box), (UDP, by_udp_box)):
            hand.click(box)
            wait_until(lambda: (transport, port) in self.open_ports(), f"{transport} {port}")
            ExpectAnswer(port, transport)
        both = before | {("tcp", port), ("udp", port)}
        assert self.open_ports() == both
        self.picture(f"ticked-{port}")
        hand.click(TCP)
        hand.click(UDP)
        self.picture(f"unticked-{port}")
        ExpectAnswer(port, "tcp")
        ExpectAnswer(port, "udp")
        assert self.open_ports() == both
        hand.click(ENABLE)
        self.expect_ports(*(both - {("tcp", port)}))
        ExpectRefusal(port)
        ExpectAnswer(port, "udp")
        self.picture(f"disabled-{port}")
        hand.click(ENABLE)
        hand.click(TCP)
        hand.click(UDP)
        self.expect_ports(*both)

    def tick_unix_time(self):
        before = self.open_ports()
        self.hand.choose("UnixTime Service Server")
        self.hand.click(ENABLE)
        self.hand.click(TCP)
        self.expect_ports(*before, ("tcp", 519))
        ExpectAnswer(519, "tcp")
        self.picture("ticked-519")
        self.hand.click(TCP)
        self.hand.click(ENABLE)
        self.expect_ports(*before)
        self.picture("disabled-519")

    def move_daytime(self):
        before = self.open_ports()
        self.hand.choose("Daytime Service Server")
        self.hand.write(PORT, "1313")
        self.picture("port-typed")
        assert self.open_ports() == before
        self.desktop.key("Return")
        wait_until(lambda: {("tcp", 1313), ("udp", 1313)} <= self.server.open_sockets(),
                   "the new port")
        self.expect_ports(*(before - {("tcp", 13), ("udp", 13)}))
        for transport in ("tcp", "udp"):
            ExpectAnswer(13, transport, at=1313)
        ExpectRefusal(13)
        self.picture("port-moved")

    def choose_server(self):
        assert self.chosen.requests() == []
        asked = len(self.first.requests())
        self.hand.pick(self.hand.window, SERVERS_ARROW, ["End"])
        self.picture("server-chosen")
        self.hand.write(INTERVAL, "1")
        self.desktop.key("Return")
        self.hand.pick(self.hand.window, UNIT_ARROW, ["Home"])
        self.chosen.wait_for_requests(2)
        assert len(self.first.requests()) == asked
        self.picture("every-second")

    def slow_down(self):
        self.hand.write(INTERVAL, "12x")
        self.desktop.key("Return")
        self.hand.pick(self.hand.window, UNIT_ARROW, ["End", "Up"])
        self.hand.click(RANDOM)
        self.picture("every-twelve-hours")

    def configure(self):
        configuration = self.hand.open_configuration()
        self.picture("configuration")
        self.hand.pick(configuration, REGIONS_ARROW, ["Home", "Down", "Down", "Down", "Down"])
        self.picture("region")
        ExpectAnswer(37, "udp")
        wait_until(self.server.log_lines, "a log")
        self.desktop.click(configuration, *OPEN_MINIMISED)
        self.desktop.click(configuration, *LOGGING)
        self.picture("logging-off")
        # From the next request on nothing is written. That one may have been under way.
        ExpectAnswer(37, "udp")
        written = len(self.server.log_lines())
        for _ in range(3):
            ExpectAnswer(37, "udp")
        assert len(self.server.log_lines()) == written
        return configuration

    def check_for_updates(self, configuration):
        asked = len(self.maker.asked())
        self.desktop.click(configuration, *CHECK_UPDATE)
        box = self.desktop.window(NOTHING_NEW)
        self.picture("no-updates")
        assert len(self.maker.asked()) == asked + 1
        ExpectAnswer(37, "udp")
        self.desktop.activate(box)
        self.desktop.key("Return")
        self.desktop.wait_until_gone(NOTHING_NEW)
        self.desktop.click(configuration, *OK)
        self.desktop.wait_until_gone(CONFIGURATION)

    def look_at_the_about_box(self):
        about = self.hand.open_about()
        self.picture("about")
        self.hand.close(about)
        self.desktop.wait_until_gone(ABOUT)

    def go_to_the_tray_and_come_back(self):
        icon = self.hand.go_to_the_tray()
        self.picture("in-the-tray")
        ExpectAnswer(37, "udp")
        self.desktop.click_at(*icon)
        self.desktop.window(TITLE)
        wait_until(lambda: not self.desktop.tray_icon(), "an empty tray")
        self.picture("back-by-a-click")
        icon = self.hand.go_to_the_tray()
        show, _ = self.hand.open_menu(icon)
        self.picture("menu")
        ExpectAnswer(37, "udp")
        self.desktop.click_at(*show)
        self.desktop.window(TITLE)
        wait_until(lambda: not self.desktop.tray_icon(), "an empty tray")
        self.picture("back-by-the-menu")

    def leave(self):
        _, leave = self.hand.open_menu(self.hand.go_to_the_tray())
        self.desktop.click_at(*leave)
        assert self.server.process.wait(30) == 0
        assert self.server.errors.to_the_end() == []
        self.picture("end")


def TestASessionFromTheOpeningToTheEnd():
    with World(settings=NOTHING_ON, servers=(PEER_ADDRESS, OTHER_PEER_ADDRESS)) as world:
        size = os.path.getsize(os.path.join(world.home, "QRB_CVLS4.CVL"))
        with MakerSite(world, {VERSION_PATH: VersionFile(size)}) as maker, \
                Desktop(world, tray=True) as desktop:
            session = Session(world, desktop, maker)
            session.first.wait_for_requests(1)
            session.picture("opened")
            assert session.open_ports() == set()
            for service in SERVICES:
                session.tick_and_untick(*service)
            session.tick_unix_time()
            session.move_daytime()
            session.choose_server()
            session.slow_down()
            session.check_for_updates(session.configure())
            session.look_at_the_about_box()
            session.go_to_the_tray_and_come_back()
            session.leave()
            kept = world.read_settings()
            expected = {"Settings": "YES:12:Hour/s:AW:36", "EnableLogging": "NO",
                        "NTP37": "YES:YES:YES:37", "SNTP123": "YES:YES:YES:123",
                        "DTS13": "YES:YES:YES:1313", "CVL3777": "YES:YES:YES:3777",
                        "UNIX519": "NO:NO:NO:519", "OpenMinimized": "NO"}
            assert kept == expected, kept


if __name__ == "__main__":
    NameTheMaker()
    run_all()
