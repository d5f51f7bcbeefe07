"""The keyboard and mouse of GNOME's user, for scripts/test-desktops. Reads lines such as "+ctrl +d 50 -d -ctrl" or
"@640,400 +left -left" (a number is a pause in milliseconds), and answers each with the time of its last event."""
import sys
import time

from gi.repository import Gio, GLib

EVDEV = {"ctrl": 29, "alt": 56, "shift": 42, "super": 125, "d": 32, "a": 30, "end": 107, "f5": 63, "2": 3}
LEFT = 272
SIZE = (1280, 800)
MUTTER = "org.gnome.Mutter.RemoteDesktop"

bus = Gio.bus_get_sync(Gio.BusType.SESSION)


def call(path, interface, method, arguments=None):
    return bus.call_sync(MUTTER, path, interface, method, arguments, None, 0, 20000, None)


def move(place):
    """Moves the pointer there from the corner at the bottom right, where GNOME Shell reacts to nothing."""
    for x, y in (SIZE, (place[0] - SIZE[0] + 1, place[1] - SIZE[1] + 1)):
        call(session, MUTTER + ".Session", "NotifyPointerMotionRelative", GLib.Variant("(dd)", (x, y)))


session = call("/org/gnome/Mutter/RemoteDesktop", MUTTER, "CreateSession").unpack()[0]
call(session, MUTTER + ".Session", "Start")
for line in sys.stdin:
    for word in line.split():
        if word[0] == "@":
            move(tuple(map(int, word[1:].split(","))))
        elif word[1:] == "left":
            call(session, MUTTER + ".Session", "NotifyPointerButton", GLib.Variant("(ib)", (LEFT, word[0] == "+")))
        elif word[0] in "+-":
            call(session, MUTTER + ".Session", "NotifyKeyboardKeycode",
                 GLib.Variant("(ub)", (EVDEV[word[1:]], word[0] == "+")))
        else:
            time.sleep(int(word) / 1000)
    print(time.monotonic(), flush=True)
