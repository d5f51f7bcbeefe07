"""A clipboard manager on X11 or Xwayland, for scripts/test-desktops: clipboard_manager.py DELAY_MS [keep] [refill].

With "keep" it takes over the clipboard after each copy, with the same text. With "refill" it puts the last text back
when the clipboard has none.
"""
import sys

import gi
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GLib, Gtk

delay, keeps, refills = int(sys.argv[1]), "keep" in sys.argv, "refill" in sys.argv
clipboard = Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD)
kept = ""
taken = False


def take():
    global taken
    taken = True
    clipboard.set_text(kept, -1)


def received(_clipboard, text):
    global kept
    kept = text or kept
    if kept and (keeps if text else refills):
        GLib.timeout_add(delay, take)


def changed(*_):
    global taken
    if not taken:
        clipboard.request_text(received)
    taken = False


clipboard.connect("owner-change", changed)
Gtk.main()
