"""Window managers, clipboard managers, X servers and screen lockers for scripts/matrix."""
from typing import NamedTuple

TRIED = ["xterm", "GTK 3 text", "Qt 6 text"]  # the applications


class Environment(NamedTuple):
    name: str
    packages: str
    kind: str  # "window manager" instead of openbox, "clipboard manager", "X server", "screen locker"
    command: str  # an X server writes the number of its display to standard output
    known: str = ""  # why a result differs from the expected one


XVFB = "Xvfb -displayfd 1 -screen 0 1000x700x24 -noreset -nolisten tcp"

ENVIRONMENTS = [
    Environment("i3", "i3-wm", "window manager", "i3 -c {dir}/i3.conf"),
    Environment("kwin_x11", "kwin-x11", "window manager", "dbus-run-session -- kwin_x11"),
    Environment("marco", "marco mate-settings-daemon-common", "window manager", "dbus-run-session -- marco"),
    Environment("metacity", "metacity", "window manager", "dbus-run-session -- metacity"),
    Environment("mutter", "mutter", "window manager", "dbus-run-session -- mutter --x11"),
    Environment("xfwm4", "xfwm4", "window manager", "dbus-run-session -- xfwm4"),
    Environment("autocutsel", "autocutsel", "clipboard manager", "autocutsel"),
    Environment("clipit", "clipit", "clipboard manager", "dbus-run-session -- clipit"),
    Environment("copyq", "copyq", "clipboard manager", "dbus-run-session -- copyq"),
    Environment("diodon", "diodon", "clipboard manager", "dbus-run-session -- diodon"),
    Environment("gpaste", "gpaste-2", "clipboard manager",
                "dbus-run-session -- /usr/libexec/gpaste/gpaste-daemon"),
    Environment("parcellite", "parcellite", "clipboard manager", "dbus-run-session -- parcellite"),
    Environment("xfce4-clipman", "xfce4-clipman", "clipboard manager", "dbus-run-session -- xfce4-clipman"),
    Environment("Xephyr", "xserver-xephyr", "X server", "Xephyr -displayfd 1 -screen 1000x700 -noreset -nolisten tcp"),
    Environment("Xvnc", "tigervnc-standalone-server", "X server",
                "Xtigervnc -displayfd 1 -geometry 1000x700 -depth 24 -SecurityTypes None -rfbunixpath {dir}/vnc -nolisten tcp"),
    Environment("Xorg, dummy driver", "xserver-xorg-core xserver-xorg-video-dummy", "X server",
                "Xorg -displayfd 1 -config {dir}/dummy.conf -noreset -nolisten tcp -logfile {dir}/xorg.log"),
    Environment("Xorg, xrdp driver", "xserver-xorg-core xorgxrdp", "X server",
                "Xorg -displayfd 1 -config xrdp/xorg.conf -noreset -nolisten tcp -logfile {dir}/xorg.log"),
    Environment("i3lock", "i3lock", "screen locker", "i3lock --nofork"),
    Environment("xscreensaver", "xscreensaver", "screen locker", "sh {dir}/xscreensaver.sh"),
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
