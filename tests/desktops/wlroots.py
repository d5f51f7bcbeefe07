"""Headless sway and labwc, for scripts/test-desktops."""
import os
import re
import subprocess
from pathlib import Path

from session import ROOT, Session, eventually

SIZE = (1280, 800)

SWAY = """xwayland force
output HEADLESS-1 resolution {0}x{1}
default_border none
bindsym Ctrl+Mod1+x exec true
mode "other" bindsym y exec true
exec env > {2}/session.part && mv {2}/session.part {2}/session
"""

LABWC = """<labwc_config><keyboard><keybind key="C-A-d" onRelease="yes">
<action name="Execute" command="{} press"/></keybind></keyboard></labwc_config>
"""


class Wlroots(Session):
    """A compositor with virtual keyboards, virtual pointers and data control."""

    user_target = "seldial_wlroots_user"
    held_for_seven_seconds = True  # dials
    layout = "us"

    def start(self):
        os.makedirs("/tmp/.X11-unix", mode=0o1777, exist_ok=True)
        self.user = None
        self.user_program = self.copy(ROOT / f"build/{self.preset}/tests/desktops/seldial_wlroots_user")
        self.process = self.run(self.command(), WLR_BACKENDS="headless", WLR_LIBINPUT_NO_DEVICES="1",
                                WLR_RENDERER="pixman", LIBGL_ALWAYS_SOFTWARE="1")
        if not eventually(lambda: os.path.exists(self.directory + "/session"), 60):
            raise RuntimeError(f"{self.name} does not start")
        lines = Path(self.directory, "session").read_text(encoding="utf-8").splitlines()
        self.session = dict(line.split("=", 1) for line in lines if "=" in line)
        self.environment["WAYLAND_DISPLAY"] = self.session["WAYLAND_DISPLAY"]
        self.layouts(self.layout)

    def layouts(self, layouts):
        """Gives the user another keyboard."""
        if self.user:
            self.user.kill()
            self.user.wait()
        self.user = self.run([self.user_program, *map(str, SIZE), layouts], stdin=subprocess.PIPE,
                             stdout=subprocess.PIPE, text=True)
        self.keys("+shift -shift")

    def x11(self):
        """Environment variables for programs on Xwayland."""
        if "DISPLAY" not in self.session:
            raise RuntimeError("no Xwayland; perhaps /tmp/.X11-unix is full of the sockets of ended servers")
        return {"DISPLAY": self.session["DISPLAY"]}


class Sway(Wlroots):
    name = "sway"
    packages = "sway swaylock xwayland"

    def command(self):
        self.write("sway", SWAY.format(*SIZE, self.directory))
        return ["sway", "-c", self.directory + "/sway"]

    def start(self):
        super().start()
        self.environment["SWAYSOCK"] = self.session["SWAYSOCK"]

    def ask(self, command):
        return "true" in self.call("swaymsg", "--raw", command)


class Labwc(Wlroots):
    """labwc has no hot keys for programs: a key of its configuration runs seldial-uc press."""

    name = "labwc"
    packages = "labwc swaylock xwayland"

    @classmethod
    def missing(cls):
        policy = subprocess.run(["apt-cache", "policy", "labwc"], capture_output=True, text=True).stdout
        return None if re.search(r"Candidate: \d", policy) else "this system has no labwc"

    def command(self):
        client = self.copy(ROOT / f"build/{self.preset}/ucclient/seldial-uc")
        self.write("config/labwc/rc.xml", LABWC.format(client))
        part = self.directory + "/session.part"
        return ["labwc", "-s", f"sh -c 'env > {part} && mv {part} {self.directory}/session'"]
