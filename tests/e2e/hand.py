"""A hand at the server's window: where the controls are, in pixels, and what one does there.

    hand = Hand(desktop)
    hand.choose("Daytime Service Server")
    hand.click(ENABLE)
"""

import time

TITLE = "Chronvale Server"
NOTHING_NEW = "Chronvale Server Updater"
CONFIGURATION = "CONFIG - " + TITLE
ABOUT = "ABOUT - " + TITLE

NODES = ("CVL Servers", "Time Service Server", "Daytime Service Server", "SNTP v4 Service Server",
         "UnixTime Service Server", "CVL Server Client Server", "CVL About/Help",
         "CVL Advanced Config")

# Places inside the main window: those of the panels are the same in each.
ENABLE = (217, 95)
PORT = (359, 94)
TCP = (217, 117)
UDP = (311, 117)
SERVERS_ARROW = (380, 333)
RANDOM = (20, 359)
INTERVAL = (245, 381)
UNIT_ARROW = (380, 381)
CLOCK = (8, 216, 301, 38)

# The middles of the lamps: sync, in, out, UDP, TCP.
LAMPS = ((329, 233), (354, 233), (379, 233), (324, 248), (366, 248))

# Inside the configuration window.
REGIONS_ARROW = (335, 101)
LOGGING = (23, 149)
OPEN_MINIMISED = (23, 169)
CHECK_UPDATE = (115, 227)
TIME_ZONE = (285, 227)
OK = (303, 278)

# Inside the about box.
HELP = (180, 97)


class Hand:
    """On the main window of a run on DESKTOP; the window is there when this returns."""

    def __init__(self, desktop):
        self.desktop = desktop
        self._aside = 0
        self.window = desktop.window(TITLE)

    def click(self, place):
        self.desktop.click(self.window, *place)

    def choose(self, node):
        """Clicks a node of the tree."""
        self.desktop.activate(self.window)
        # Two clicks at one place in quick succession would be a double click.
        self._aside = 30 - self._aside
        self.click((70 + self._aside, 76 + 16 * NODES.index(node)))

    def write(self, place, text):
        """Puts TEXT into a box in place of what it holds."""
        self.desktop.activate(self.window)
        self.click(place)
        self.desktop.key("ctrl+a")
        self.desktop.type(text)

    def pick(self, window, arrow, keys):
        """Opens the list of a drop-down box and goes to an entry by KEYS."""
        self.desktop.activate(window)
        self.desktop.click(window, *arrow)
        self.desktop.wait_until(self.desktop.popup, "the list")
        self.desktop.key(*keys)
        self.desktop.key("Return")
        self.desktop.wait_until(lambda: not self.desktop.popup(), "the end of the list")

    def open_configuration(self):
        return self._open("CVL Advanced Config", CONFIGURATION)

    def open_about(self):
        return self._open("CVL About/Help", ABOUT)

    def _open(self, node, title):
        """Opens a secondary window and moves it to the left of the main window's tree, which it
        would otherwise cover: it always stays in front of the main window."""
        self.choose(node)
        window = self.desktop.window(title)
        self.desktop.do("windowmove", window, 0, 0)
        edge = self.desktop.screen.place(self.window)[0]
        self.desktop.wait_until(lambda: self.desktop.screen.place(window)[0] < edge // 4,
                                "the window beside the tree")
        return window

    def close(self, window):
        """What the close button of a window does, by the window manager's key for it."""
        self.desktop.activate(window)
        self.desktop.key("alt+F4")

    def minimise(self):
        """The minimise button of the main window."""
        self.desktop.do("windowminimize", self.window)

    def go_to_the_tray(self):
        """Minimises, and tells where the entry in the tray is."""
        self.minimise()
        self.desktop.wait_until_gone(TITLE)
        return self.wait_for_tray_icon()

    def wait_for_tray_icon(self):
        return self.desktop.wait_until(self.desktop.tray_icon, "the entry in the tray")

    def open_menu(self, icon):
        """The menu of the tray entry; returns the places of its two entries."""
        next_click = 0.0

        def Popup():
            # A click gets lost when the tray moves the entry at that moment.
            nonlocal next_click
            if time.monotonic() > next_click:
                self.desktop.click_at(*(self.desktop.tray_icon() or icon), button=3)
                next_click = time.monotonic() + 15
            return self.desktop.popup()

        left, top, width, height = self.desktop.wait_until(Popup, "the menu")
        return ((left + width // 2, top + height // 4),
                (left + width // 2, top + height - height // 4))

    def lit_lamps(self):
        """The numbers of the lamps that are lit: of a bright green."""
        left, top = LAMPS[3][0], LAMPS[0][1]
        shown = self.desktop.area(self.window, left, top, 60, 16)
        return {number for number, (x, y) in enumerate(LAMPS)
                if shown[y - top][x - left] >> 8 & 0xFF > 150}
