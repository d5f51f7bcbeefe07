"""Window managers, clipboard managers, X servers and screen lockers for scripts/matrix."""
from typing import NamedTuple

TRIED = ["xterm", "GTK 3 text", "Qt 6 text"]  # the applications


class Surrounding(NamedTuple):
    name: str
    packages: str
    kind: str  # "window manager" instead of openbox, "clipboard manager", "X server", "screen locker"
    command: str  # an X server writes the number of its display to standard output
    known: str = ""  # why a result differs from the expected one


XVFB = "Xvfb -displayfd 1 -screen 0 1000x700x24 -noreset -nolisten tcp"

SURROUNDINGS = [
    Surrounding("i3", "i3-wm", "window manager", "i3 -c {dir}/i3.conf"),
    Surrounding("kwin_x11", "kwin-x11", "window manager", "dbus-run-session -- kwin_x11"),
    Surrounding("marco", "marco mate-settings-daemon-common", "window manager", "dbus-run-session -- marco"),
    Surrounding("metacity", "metacity", "window manager", "dbus-run-session -- metacity"),
    Surrounding("mutter", "mutter", "window manager", "dbus-run-session -- mutter --x11"),
    Surrounding("xfwm4", "xfwm4", "window manager", "dbus-run-session -- xfwm4"),
    Surrounding("autocutsel", "autocutsel", "clipboard manager", "autocutsel"),
    Surrounding("clipit", "clipit", "clipboard manager", "dbus-run-session -- clipit"),
    Surrounding("copyq", "copyq", "clipboard manager", "dbus-run-session -- copyq"),
    Surrounding("diodon", "diodon", "clipboard manager", "dbus-run-session -- diodon"),
    Surrounding("gpaste", "gpaste-2", "clipboard manager",
                "dbus-run-session -- /usr/libexec/gpaste/gpaste-daemon"),
    Surrounding("parcellite", "parcellite", "clipboard manager", "dbus-run-session -- parcellite"),
    Surrounding("xfce4-clipman", "xfce4-clipman", "clipboard manager", "dbus-run-session -- xfce4-clipman"),
    Surrounding("Xephyr", "xserver-xephyr", "X server", "Xephyr -displayfd 1 -screen 1000x700 -noreset -nolisten tcp"),
    Surrounding("Xvnc", "tigervnc-standalone-server", "X server",
                "Xtigervnc -displayfd 1 -geometry 1000x700 -depth 24 -SecurityTypes None -rfbunixpath {dir}/vnc -nolisten tcp"),
    Surrounding("Xorg, dummy driver", "xserver-xorg-core xserver-xorg-video-dummy", "X server",
                "Xorg -displayfd 1 -config {dir}/dummy.conf -noreset -nolisten tcp -logfile {dir}/xorg.log"),
    Surrounding("Xorg, xrdp driver", "xserver-xorg-core xorgxrdp", "X server",
                "Xorg -displayfd 1 -config xrdp/xorg.conf -noreset -nolisten tcp -logfile {dir}/xorg.log"),
    Surrounding("i3lock", "i3lock", "screen locker", "i3lock --nofork"),
    Surrounding("xscreensaver", "xscreensaver", "screen locker", "sh {dir}/xscreensaver.sh"),
]

FILES = {
    "i3.conf": "focus_follows_mouse no\n",  # without key bindings
    # It does not lock the screen for root, but blanks it.
    "xscreensaver.sh": "xscreensaver --no-splash & until xscreensaver-command -time; do sleep 0.5; done\n"
                       "xscreensaver-command -lock || xscreensaver-command -activate; wait\n",
    "dummy.conf": """Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 16384
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Virtual 1000 700
    EndSubSection
EndSection
""",
}
