"""A desktop for the server's window: an X server without a screen, a window manager, and a
tray where one is wanted.

    with Desktop(world) as desktop:
        server = desktop.server("-config")
        window = desktop.window("Chronvale Server")
        desktop.click(window, 4335 // 15, 1125 // 15)
"""

import os
import re
import subprocess

from harness import BUILD, wait_until

SHOTS = os.path.join(BUILD, "screenshots")


class Desktop:
    def __init__(self, world, size="1024x768", tray=False, scale=None):
        self.world = world
        self._size = size
        self._tray = tray
        self._scale = scale
        self._processes = []
        self.display = None

    def __enter__(self):
        os.makedirs(SHOTS, exist_ok=True)
        readable, writable = os.pipe()
        # Listens on no port: a socket of the file system is enough.
        self._start("Xvfb", "-displayfd", str(writable), "-screen", "0", self._size + "x24",
                    "-nolisten", "tcp", "-noreset", pass_fds=(writable,))
        os.close(writable)
        number = b""
        while not number.endswith(b"\n"):
            piece = os.read(readable, 16)
            assert piece, "the X server did not start"
            number += piece
        os.close(readable)
        self.display = ":" + number.decode().strip()
        self._start("openbox", "--sm-disable")
        wait_until(lambda: "_NET_SUPPORTING_WM_CHECK(WINDOW)" in self.output(
            "xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "the window manager")
        if self._tray:
            self._start("trayer", "--edge", "top", "--align", "right", "--widthtype", "pixel",
                        "--width", "120", "--height", "28", "--transparent", "false")
            wait_until(lambda: "owner" in self.tray_owner(), "the tray")
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            if process.poll() is None:
                process.kill()
            process.wait()

    def environment(self):
        """What a program needs to find the display."""
        found = dict(os.environ, DISPLAY=self.display, QT_QPA_PLATFORM="xcb", HOME=self.world.home,
                     XDG_RUNTIME_DIR=self.world.home, NO_AT_BRIDGE="1")
        found.pop("DBUS_SESSION_BUS_ADDRESS", None)
        found.pop("WAYLAND_DISPLAY", None)
        if self._scale:
            found["QT_SCALE_FACTOR"] = str(self._scale)
        return found

    def _start(self, *words, **options):
        environment = dict(os.environ, HOME=self.world.home)
        if self.display:
            environment = self.environment()
        self._processes.append(subprocess.Popen(words, env=environment, stdout=subprocess.DEVNULL,
                                                stderr=subprocess.DEVNULL, **options))
        return self._processes[-1]

    def server(self, *words, **options):
        """A run of the server on this desktop."""
        environment = dict(self.environment(), **options.pop("environment", {}))
        return self.world.server(*words, environment=environment, **options)

    def output(self, *words):
        """What a program prints, whether it succeeds or not."""
        return subprocess.run(words, env=self.environment(), check=False, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

    def tray_owner(self):
        """Says "owner" when somebody plays the tray."""
        listed = self.output("xwininfo", "-root", "-tree")
        return "owner" if "panel" in listed or "trayer" in listed else ""

    def windows(self, title):
        """The numbers of the windows of that title that are on the screen."""
        return self.output("xdotool", "search", "--onlyvisible", "--name",
                           "^" + re.escape(title) + "$").split()

    def window(self, title):
        """The number of the one window of that title, once it is there."""
        return wait_until(lambda: self.windows(title), f"the window {title!r}")[0]

    def wait_until_gone(self, title):
        wait_until(lambda: not self.windows(title), f"the end of the window {title!r}")

    def do(self, *words):
        """Has a hand do something; waits until it is done."""
        subprocess.run(("xdotool",) + tuple(str(word) for word in words), env=self.environment(),
                       check=True, stdout=subprocess.DEVNULL)

    def click(self, window, x, y, button=1):
        """Clicks at a place of a window, in pixels."""
        self.do("mousemove", "--sync", "--window", window, x, y)
        self.do("click", button)

    def key(self, *keys):
        self.do("key", "--clearmodifiers", *keys)

    def type(self, text):
        self.do("type", "--clearmodifiers", text)

    def shot(self, name, window="root"):
        """A picture of the screen, or of a window, kept beside the build."""
        path = os.path.join(SHOTS, name + ".png")
        subprocess.run(("import", "-window", window, path), env=self.environment(), check=True)
        return path

    def pixel(self, window, x, y):
        """The colour at a place of a window, as three numbers."""
        text = self.output("convert", "x:" + window, "-format", f"%[pixel:p{{{x},{y}}}]", "info:")
        return tuple(int(part) for part in re.findall(r"\d+", text)[:3])
