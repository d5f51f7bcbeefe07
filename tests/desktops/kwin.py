"""Headless KWin, for scripts/test-desktops."""
import os
import shutil
import subprocess
import time
from pathlib import Path

from session import ROOT, Session, eventually

# Without a menu KWin finds no .desktop file. Plasma's menu is not in KWin's package.
MENU = """<!DOCTYPE Menu PUBLIC "-//freedesktop//DTD Menu 1.0//EN"
 "http://www.freedesktop.org/standards/menu-spec/1.0/menu.dtd">
<Menu><Name>Applications</Name><DefaultAppDirs/><Include><All/></Include></Menu>
"""

# So that every window covers the middle of the screen.
RULES = """[General]
count=1
rules=1
[1]
Description=All windows
maximizehoriz=true
maximizehorizrule=3
maximizevert=true
maximizevertrule=3
types=1
wmclassmatch=0
"""

DESKTOP_FILE = """[Desktop Entry]
Type=Application
Name=Test
Exec={}
NoDisplay=true
X-KDE-Wayland-Interfaces=org_kde_kwin_fake_input,org_kde_plasma_window_management
"""


class KWin(Session):
    name = "KWin"
    packages = "kwin-wayland kwin-common xwayland"
    user_target = "seldial_kwin_user"
    options = ("--no-lockscreen",)

    def start(self):
        user = self.copy(ROOT / f"build/{self.preset}/tests/desktops/seldial_kwin_user")
        self.write("config/menus/applications.menu", MENU)
        self.allow(user)
        self.allow(self.program)
        # The copy has no file capabilities, which are not permitted everywhere.
        compositor = self.copy(shutil.which("kwin_wayland"))
        self.write("config/kwinrulesrc", RULES)
        self.write("x11.sh", f"env > {self.directory}/x11.part; mv {self.directory}/x11.part {self.directory}/x11")
        os.makedirs("/tmp/.X11-unix", mode=0o1777, exist_ok=True)
        self.process = self.run([compositor, "--virtual", "--width", "1280", "--height", "800",
                                 *self.options, "--xwayland", "--socket", "wayland-0",
                                 f"sh {self.directory}/x11.sh"],
                                KWIN_COMPOSE="Q", LANG="C.UTF-8", env_without=["XDG_CURRENT_DESKTOP"])
        if not eventually(lambda: os.path.exists(self.directory + "/wayland-0"), 30):
            raise RuntimeError("KWin does not start")
        self.environment["WAYLAND_DISPLAY"] = "wayland-0"
        if not eventually(lambda: self.owns("org.kde.kglobalaccel"), 30):
            raise RuntimeError("KWin offers no global shortcuts")
        self.x11()  # everything is there
        time.sleep(2)  # until it has read the .desktop files
        self.user = self.run([user], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def allow(self, program):
        """Permits the program to type and to see the active window."""
        self.write(f"data/applications/{os.path.basename(program)}.desktop", DESKTOP_FILE.format(program))

    def forbid(self, program):
        os.remove(f"{self.directory}/data/applications/{os.path.basename(program)}.desktop")
        time.sleep(2)

    def x11(self):
        """Environment variables for programs on Xwayland."""
        if not eventually(lambda: os.path.exists(self.directory + "/x11"), 60):
            raise RuntimeError("no Xwayland")
        lines = Path(self.directory, "x11").read_text(encoding="utf-8").splitlines()
        return dict(line.split("=", 1) for line in lines if line.startswith(("DISPLAY=", "XAUTHORITY=")))

    def layouts(self, layouts):
        """Changes the layouts, like System Settings."""
        self.write("config/kxkbrc", f"[Layout]\nUse=true\nLayoutList={layouts}\n")
        self.call("gdbus", "emit", "--session", "--object-path", "/Layouts", "--signal",
                  "org.kde.keyboard.reloadConfig")
        time.sleep(0.5)

    def take(self, code):
        """Makes another program hold a combination, a Qt code."""
        action = "['other', 'action', 'Other', 'Action']"
        for method, *arguments in (("doRegister", action),
                                   ("setShortcutKeys", action, f"[([{code}, 0, 0, 0],)]", "6")):
            self.call("gdbus", "call", "--session", "--dest", "org.kde.kglobalaccel", "--object-path",
                      "/kglobalaccel", "--method", "org.kde.KGlobalAccel." + method, *arguments)
