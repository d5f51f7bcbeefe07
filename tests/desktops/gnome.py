"""Headless GNOME, for scripts/test-desktops."""
import glob
import os
import re
import subprocess
import sys
import time

from pathlib import Path

from session import ROOT, Session, eventually

DESKTOP_FILE = """[Desktop Entry]
Type=Application
Name=Seldial
Exec={}
NoDisplay=true
"""
# The bus must not start the portals before GNOME Shell runs; systemd does not do so either.
SERVICE = """[D-BUS Service]
Name={}
Exec=/bin/false
"""
SHORTCUTS = "org.gnome.settings-daemon.global-shortcuts"


class Gnome(Session):
    name = "GNOME"
    packages = ("gnome-shell xdg-desktop-portal xdg-desktop-portal-gnome gnome-control-center gnome-settings-daemon "
                "xwayland xsel")
    user_target = "seldial"  # the user is a script
    counts_uses = False
    held_for_seven_seconds = True  # dials
    binds_later = True

    @classmethod
    def missing(cls):
        """Why it cannot be tested on this system; None if it can."""
        policy = subprocess.run(["apt-cache", "policy", "gnome-shell"], capture_output=True, text=True).stdout
        version = re.search(r"Candidate: (\d+)", policy)
        return None if version and int(version[1]) >= 48 else "this system has no GNOME 48"

    def __init__(self):
        super().__init__()
        self.log = Path(self.directory, "shell.log")  # of gnome-shell
        for name in ("portal.Desktop", "impl.portal.desktop.gnome"):
            self.write(f"data/dbus-1/services/org.freedesktop.{name}.service",
                       SERVICE.format(f"org.freedesktop.{name}"))

    def start(self):
        self.environment["XDG_CURRENT_DESKTOP"] = "GNOME"
        self.environment["XDG_SESSION_DESKTOP"] = "gnome"
        # gnome-shell requires a system bus, and what gnome_login.py offers there if the system has systemd.
        system = f"unix:path={self.directory}/system"
        self.run(["dbus-daemon", "--session", "--nofork", "--address=" + system])
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = system
        if not eventually(lambda: os.path.exists(self.directory + "/system")):
            raise RuntimeError("no system bus")
        login = self.run(["/usr/bin/python3", str(self.copy(ROOT / "tests/desktops/gnome_login.py"))],
                         stdout=subprocess.PIPE, text=True)
        login.stdout.readline()
        self.environment["XDG_SESSION_ID"] = "test"
        self.environment["WAYLAND_DISPLAY"] = "wayland-0"
        # For programs that the bus starts, such as the servers of terminals.
        self.call("dbus-update-activation-environment",
                  *(f"{name}={value}" for name, value in self.environment.items()))
        self.allow(self.program)
        # So that every window covers the middle of the screen.
        self.call("gsettings", "set", "org.gnome.mutter", "center-new-windows", "true")
        sockets = Path("/tmp/.X11-unix")
        if not sockets.exists():
            sockets.mkdir()
            sockets.chmod(0o1777)
        with self.log.open("w") as log:
            self.process = self.run(["gnome-shell", "--headless", "--virtual-monitor", "1280x800",
                                     "--wayland-display", "wayland-0"],
                                    LIBGL_ALWAYS_SOFTWARE="1", stdout=log, stderr=log,
                                    env_without=["WAYLAND_DISPLAY"])
        if not eventually(lambda: self.owns("org.gnome.Mutter.RemoteDesktop"), 60):
            raise RuntimeError("there is no Mutter")
        self.user = self.run(["/usr/bin/python3", str(self.copy(ROOT / "tests/desktops/gnome_user.py"))],
                             stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=sys.stderr, text=True)
        self.keys("+shift -shift")  # so that the seat has a keyboard before the first window
        # gnome-shell starts with an animation of the overview, and ignores all key bindings until that has ended. If the
        # overview is left before its first frame, which happens on a busy machine, the animation never ends.
        if not eventually(lambda: b"GNOME Shell started" in self.log.read_bytes(), 60):
            raise RuntimeError("gnome-shell does not start")
        if not eventually(self.leave_overview, 60):
            raise RuntimeError("gnome-shell does not leave the overview")
        self.run(["/usr/libexec/xdg-desktop-portal-gnome"])
        if not eventually(lambda: self.owns("org.freedesktop.impl.portal.desktop.gnome"), 60):
            raise RuntimeError("no portal of GNOME")
        self.run(["/usr/libexec/xdg-desktop-portal"])
        if not eventually(lambda: self.owns("org.freedesktop.portal.Desktop"), 60):
            raise RuntimeError("no portal")
        self.environment.update(self.x11())  # as in a session that GNOME starts

    def x11(self):
        """Environment variables for programs on Xwayland."""
        return {"DISPLAY": re.search(r"public X11 display (:\d+)", self.log.read_text(encoding="utf-8"))[1],
                "XAUTHORITY": glob.glob(self.directory + "/.mutter-Xwaylandauth.*")[0]}

    # GNOME offers no data control, but programs on Xwayland have both selections even without the focus.

    def xsel(self, *options, text=""):
        process = self.run(["xsel", *options], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, **self.x11())
        return process.communicate(text, timeout=60)[0]

    def give(self, text, selection="clipboard"):
        self.xsel("--input", "--" + selection, text=text)

    def primary(self):
        return self.xsel("--output", "--primary")

    def click(self, place, times=1):
        """Clicks with the left button."""
        self.keys(f"@{place[0]},{place[1]} 50 " + "+left 30 -left 30 " * times)

    def layouts(self, layouts):
        """Gives the user other layouts, like GNOME's settings: "de", "us+dvorak", "us,ru"."""
        sources = ", ".join(f"('xkb', '{layout}')" for layout in layouts.split(","))
        self.call("gsettings", "set", "org.gnome.desktop.input-sources", "sources", f"[{sources}]")
        time.sleep(1)  # until the programs have the keymap

    def overview(self, method, *value):
        return self.call("gdbus", "call", "--session", "--dest", "org.gnome.Shell", "--object-path",
                         "/org/gnome/Shell", "--method", "org.freedesktop.DBus.Properties." + method,
                         "org.gnome.Shell", "OverviewActive", *value)

    def leave_overview(self):
        """Returns whether the overview has faded out."""
        self.overview("Set", "<false>")
        return "false" in self.overview("Get")

    def allow(self, program):
        """Makes the portal accept the program."""
        folder = self.directory + "/data/applications"
        os.makedirs(folder, exist_ok=True)
        with open(folder + "/org.seldial.Seldial.desktop", "w") as file:
            file.write(DESKTOP_FILE.format(program))
        self.own(self.directory + "/data")

    def consent(self, shortcut, key):
        """Stores what GNOME stores when the user allows a shortcut with this key in its dialog."""
        path = "/org/gnome/settings-daemon/global-shortcuts/org.seldial.Seldial/"
        entries = ", ".join(f"('{name}', {{'shortcuts': <['{keys}']>, 'description': <'test'>}})"
                            for name, keys in ((shortcut, key), ("modifiers-up", "XF86Launch9")))
        self.call("gsettings", "set", SHORTCUTS, "applications", "['org.seldial.Seldial']")
        self.call("gsettings", "set", f"{SHORTCUTS}.application:{path}", "shortcuts", f"[{entries}]")

    def keys(self, text):
        """Presses and releases keys: "+ctrl +d 50 -d -ctrl"; returns the time of the last."""
        self.user.stdin.write(text + "\n")
        self.user.stdin.flush()
        return float(self.user.stdout.readline())


class GnomeWithManager(Gnome):
    """With a clipboard manager as an extension, which does nothing before act_as()."""

    def start(self):
        for file in (ROOT / "tests/desktops/clipboard-manager-extension").iterdir():
            self.write(f"data/gnome-shell/extensions/manager@test/{file.name}", file.read_text(encoding="utf-8"))
        self.call("gsettings", "set", "org.gnome.shell", "enabled-extensions", "['manager@test']")
        super().start()

    def act_as(self, arguments):
        """Sets the arguments of the extension; see clipboard_manager.py."""
        self.write("clipboard-manager", arguments)


class LockingGnome(Gnome):
    """With a lock screen, which GNOME Shell has only under systemd."""

    seats = Path("/run/systemd/seats")

    def start(self):
        self.made = not self.seats.exists()
        self.seats.mkdir(parents=True, exist_ok=True)
        super().start()

    def __exit__(self, *error):
        super().__exit__(*error)
        if self.made:
            self.seats.rmdir()

    def lock(self):
        """Returns whether the screen is locked."""
        for method in ("Lock", "GetActive"):
            answer = self.call("gdbus", "call", "--session", "--dest", "org.gnome.ScreenSaver", "--object-path",
                               "/org/gnome/ScreenSaver", "--method", "org.gnome.ScreenSaver." + method)
        return "true" in answer
