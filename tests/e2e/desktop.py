"""A desktop for the server's window: an X server without a screen, a window manager, and a
tray where one is wanted.

    with Desktop(world) as desktop:
        server = desktop.server("-config")
        window = desktop.window("Chronvale Server")
        desktop.click(window, 289, 75)
"""

import os
import re
import subprocess

from harness import BUILD, run, wait_until
from screen import Screen

SHOTS = os.path.join(BUILD, "screenshots")
SOCKETS = "/tmp/.X11-unix"
LEAKS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "leaks.txt")
TRAY_WIDTH = 120
TRAY_HEIGHT = 28


class Desktop:
    def __init__(self, world, size="1024x768", tray=False, scale=None, dpi=None):
        self.world = world
        self._size = size
        self._tray = tray
        self._scale = scale
        self._dpi = dpi
        self._processes = []
        self._x_server = None
        self._server = None
        self.display = None
        self.screen = None

    def __enter__(self):
        os.makedirs(SHOTS, exist_ok=True)
        try:
            self._open_display()
            if self._dpi:
                self.output("xprop", "-root", "-f", "RESOURCE_MANAGER", "8s", "-set",
                            "RESOURCE_MANAGER", f"Xft.dpi:\t{self._dpi}\n")
            self._start("openbox", "--sm-disable")
            # It announces itself before it takes windows; the list of them comes after that.
            wait_until(lambda: "window id" in self.output("xprop", "-root", "_NET_CLIENT_LIST"),
                       "the window manager")
            if self._tray:
                self.start_tray()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            if process.poll() is None:
                process.kill()
            process.wait()

    def _open_display(self):
        # Its sockets are this test's own, so that no other display is met or left behind.
        os.makedirs(SOCKETS, mode=0o1777, exist_ok=True)
        run("mount", "-t", "tmpfs", "-o", "mode=1777", "tmpfs", SOCKETS)
        readable, writable = os.pipe()
        self._x_server = self._start("Xvfb", "-displayfd", str(writable), "-screen", "0",
                                     self._size + "x24", "-nolisten", "tcp", "-nolock",
                                     "-noreset", pass_fds=(writable,))
        os.close(writable)
        number = b""
        while not number.endswith(b"\n"):
            piece = os.read(readable, 16)
            assert piece, "the X server did not start"
            number += piece
        os.close(readable)
        self.display = ":" + number.decode().strip()
        self.screen = Screen(self.display)

    def start_tray(self):
        """A tray appears on the desktop."""
        tray = self._start("trayer", "--edge", "top", "--align", "right", "--widthtype", "pixel",
                           "--width", str(TRAY_WIDTH), "--height", str(TRAY_HEIGHT),
                           "--transparent", "false")
        wait_until(lambda: self.screen.owner("_NET_SYSTEM_TRAY_S0"), "the tray")
        return tray

    def break_display(self):
        """The X server dies."""
        self._x_server.kill()
        self._x_server.wait()

    def environment(self):
        """What a program needs to find the display."""
        found = dict(os.environ, HOME=self.world.home, XDG_RUNTIME_DIR=self.world.home,
                     LSAN_OPTIONS=f"suppressions={LEAKS}:print_suppressions=0")
        if self.display:
            found.update(DISPLAY=self.display, QT_QPA_PLATFORM="xcb")
        if self._scale:
            found["QT_SCALE_FACTOR"] = str(self._scale)
        return found

    def _start(self, *words, **options):
        self._processes.append(subprocess.Popen(words, env=self.environment(),
                                                stdin=subprocess.DEVNULL,
                                                stdout=subprocess.DEVNULL,
                                                stderr=subprocess.DEVNULL, **options))
        return self._processes[-1]

    def server(self, *words, **options):
        """A run of the server on this desktop."""
        environment = dict(self.environment(), **options.pop("environment", {}))
        self._server = self.world.server(*words, environment=environment, **options)
        return self._server

    def output(self, *words):
        """What a program prints, whether it succeeds or not."""
        return subprocess.run(words, env=self.environment(), check=False, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

    def windows(self, title):
        """The numbers of the windows of that title that are on the screen."""
        return self.output("xdotool", "search", "--onlyvisible", "--name",
                           "^" + re.escape(title) + "$").split()

    def wait_until(self, state, what):
        """Waits for a state of the screen; a picture shows what came instead."""
        try:
            return wait_until(state, what)
        except AssertionError as failure:
            self.shot("failed")
            raise AssertionError(f"{failure}; status {self._server.process.poll()}, "
                                 f"{self._server.errors.lines}") from failure

    def window(self, title):
        """The number of the one window of that title, once it is there."""
        return self.wait_until(lambda: self.windows(title), f"the window {title!r}")[0]

    def wait_until_gone(self, title):
        self.wait_until(lambda: not self.windows(title), f"the end of the window {title!r}")

    def areas(self, wanted):
        """Places and sizes of the windows whose line in the window tree has WANTED in it:
        (window, left, top, width, height), those on top first."""
        found = []
        for line in self.output("xwininfo", "-root", "-tree").splitlines():
            parts = re.match(r"\s+(0x[0-9a-f]+) .* (\d+)x(\d+)\+-?\d+\+-?\d+ +\+(-?\d+)\+(-?\d+)$",
                             line)
            if parts and wanted in line:
                width, height, left, top = (int(part) for part in parts.groups()[1:])
                found.append((str(int(parts.group(1), 16)), left, top, width, height))
        return found

    def tray_icon(self):
        """Where the middle of the server's entry in the tray is; None when none is seen."""
        tray_left = int(self._size.split("x")[0]) - TRAY_WIDTH
        for _, left, top, width, height in self.areas('"cvlserver"'):
            if left < tray_left or top < 0 or top + height > TRAY_HEIGHT or width < 8:
                continue
            # It goes to its place before it is painted.
            painted = self.screen.colours(left, top, width, height)
            if painted and len({colour for row in painted for colour in row}) > 4:
                return left + width // 2, top + height // 2
        return None

    def popup(self):
        """Left, top, width and height of the menu that has popped up; None when none has."""
        for window, left, top, width, height in self.areas('"cvlserver"'):
            if width < 40 or height < 20:
                continue
            shown = self.output("xwininfo", "-id", window)
            if "Override Redirect State: yes" in shown and "Map State: IsViewable" in shown:
                return left, top, width, height
        return None

    def wait_for_focus(self, window):
        """Keys go to that window."""
        self.wait_until(lambda: self.output("xdotool", "getwindowfocus").strip() == window,
                        "the keyboard's focus")

    def activate(self, window):
        """Brings a window to the front, where keys go to it."""
        self.do("windowactivate", window)
        self.wait_for_focus(window)

    def do(self, *words):
        """Has a hand do something; waits until it is done."""
        subprocess.run(("xdotool",) + tuple(str(word) for word in words), env=self.environment(),
                       check=True, stdout=subprocess.DEVNULL)

    def click_at(self, x, y, button=1):
        """Clicks at a place of the screen."""
        self.do("mousemove", x, y, "click", button)

    def click(self, window, x, y, button=1):
        """Clicks at a place of a window, in pixels."""
        left, top = self.screen.place(window)
        self.click_at(left + x, top + y, button)

    def key(self, *keys):
        self.do("key", "--clearmodifiers", *keys)

    def type(self, text):
        self.do("type", "--clearmodifiers", text)

    def shot(self, name, window="root"):
        """A picture of the screen, or of a window, kept beside the build."""
        path = os.path.join(SHOTS, name + ".png")
        subprocess.run(("import", "-window", window, path), env=self.environment(), check=True)
        return path

    def area(self, window, x, y, width, height):
        """The colours of a rectangle of a window."""
        left, top = self.screen.place(window)
        return self.screen.colours(left + x, top + y, width, height)
