"""What stands on an X screen: colours, places, and who plays the tray.

Each call is a connection of its own, so that nothing here minds a screen that goes away.
"""

import contextlib
import ctypes

_Z_PIXMAP = 2
_ALL_PLANES = ctypes.c_ulong(~0)


class _Image(ctypes.Structure):
    """The first fields of Xlib's XImage."""

    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int),
                ("format", ctypes.c_int), ("data", ctypes.c_void_p), ("byte_order", ctypes.c_int),
                ("bitmap_unit", ctypes.c_int), ("bitmap_bit_order", ctypes.c_int),
                ("bitmap_pad", ctypes.c_int), ("depth", ctypes.c_int),
                ("bytes_per_line", ctypes.c_int), ("bits_per_pixel", ctypes.c_int)]


def _library():
    found = ctypes.CDLL("libX11.so.6")
    for name, result, arguments in (
            ("XOpenDisplay", ctypes.c_void_p, [ctypes.c_char_p]),
            ("XCloseDisplay", ctypes.c_int, [ctypes.c_void_p]),
            ("XDefaultRootWindow", ctypes.c_ulong, [ctypes.c_void_p]),
            ("XInternAtom", ctypes.c_ulong, [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]),
            ("XGetSelectionOwner", ctypes.c_ulong, [ctypes.c_void_p, ctypes.c_ulong]),
            ("XTranslateCoordinates", ctypes.c_int,
             [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_ulong, ctypes.c_int, ctypes.c_int,
              ctypes.c_void_p, ctypes.c_void_p, ctypes.c_void_p]),
            ("XGetImage", ctypes.POINTER(_Image),
             [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int, ctypes.c_uint,
              ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]),
            ("XDestroyImage", ctypes.c_int, [ctypes.c_void_p])):
        routine = getattr(found, name)
        routine.restype = result
        routine.argtypes = arguments
    return found


_ERROR_HANDLER = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)
# A window may go while it is being asked about; the call then has no result, and no more.
_ignore_errors = _ERROR_HANDLER(lambda display, event: 0)


class Screen:
    """The screen of a display, such as ":0"."""

    def __init__(self, display):
        self._display = display.encode("ascii")
        self._x = _library()
        self._x.XSetErrorHandler(_ignore_errors)

    @contextlib.contextmanager
    def _connection(self):
        display = self._x.XOpenDisplay(self._display)
        assert display, "the display is gone"
        try:
            yield display, self._x.XDefaultRootWindow(display)
        finally:
            self._x.XCloseDisplay(display)

    def place(self, window):
        """Where a window's upper left corner stands, without its frame."""
        x, y, child = ctypes.c_int(), ctypes.c_int(), ctypes.c_ulong()
        with self._connection() as (display, root):
            self._x.XTranslateCoordinates(display, int(window), root, 0, 0, ctypes.byref(x),
                                          ctypes.byref(y), ctypes.byref(child))
        return x.value, y.value

    def colours(self, x, y, width, height):
        """The colours of a rectangle, as rows of 0xRRGGBB; None when it is off the screen."""
        with self._connection() as (display, root):
            image = self._x.XGetImage(display, root, x, y, width, height, _ALL_PLANES, _Z_PIXMAP)
            if not image:
                return None
            shape = image.contents
            assert shape.bits_per_pixel == 32
            data = ctypes.string_at(shape.data, shape.bytes_per_line * height)
            line = shape.bytes_per_line
            self._x.XDestroyImage(image)
        return [[int.from_bytes(data[row * line + 4 * at:row * line + 4 * at + 3], "little")
                 for at in range(width)] for row in range(height)]

    def owner(self, selection):
        """The window that owns a selection; 0 when none does."""
        with self._connection() as (display, _):
            atom = self._x.XInternAtom(display, selection.encode("ascii"), 0)
            return self._x.XGetSelectionOwner(display, atom)
