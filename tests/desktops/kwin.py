"""KWin without a screen, for scripts/test-desktops."""
import os
import shutil
import subprocess
import time

from session import ROOT, Session, eventually

EVDEV = {"ctrl": 29, "alt": 56, "shift": 42, "super": 125, "d": 32, "a": 30, "end": 107, "f5": 63, "2": 3}

DESKTOP_FILE = """[Desktop Entry]
Type=Application
Name=Test
Exec={}
NoDisplay=true
X-KDE-Wayland-Interfaces=org_kde_kwin_fake_input,org_kde_plasma_window_management
"""


class KWin(Session):
    name = "KWin"
    packages = "kwin-wayland kwin-common"
    user_target = "seldial_kwin_user"

    def start(self):
        user = self.copy(ROOT / f"build/{self.preset}/tests/desktops/seldial_kwin_user")
        self.allow(user)
        self.allow(self.program)
        # A copy has no file capabilities, which cannot be had everywhere.
        compositor = self.copy(shutil.which("kwin_wayland"))
        self.process = self.run([compositor, "--virtual", "--width", "1280", "--height", "800",
                                 "--no-lockscreen", "--socket", "wayland-0"],
                                KWIN_COMPOSE="Q", LANG="C.UTF-8", env_without=["XDG_CURRENT_DESKTOP"])
        if not eventually(lambda: os.path.exists(self.directory + "/wayland-0"), 30):
            raise RuntimeError("KWin does not start")
        self.environment["WAYLAND_DISPLAY"] = "wayland-0"
        if not eventually(lambda: self.owns("org.kde.kglobalaccel"), 30):
            raise RuntimeError("KWin offers no global shortcuts")
        time.sleep(2)  # it has read the .desktop files
        self.user = self.run([user], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def allow(self, program):
        """Lets the program type, and see which window is active."""
        folder = self.directory + "/data/applications"
        os.makedirs(folder, exist_ok=True)
        with open(f"{folder}/{os.path.basename(program)}.desktop", "w") as file:
            file.write(DESKTOP_FILE.format(program))
        self.own(self.directory + "/data")

    def forbid(self, program):
        os.remove(f"{self.directory}/data/applications/{os.path.basename(program)}.desktop")
        time.sleep(2)

    def keys(self, text):
        """Presses and releases keys: "+ctrl +d 50 -d -ctrl"; returns the time of the last."""
        words = [word[0] + str(EVDEV[word[1:]]) if word[0] in "+-" else word for word in text.split()]
        self.user.stdin.write(" ".join(words) + "\n")
        self.user.stdin.flush()
        return float(self.user.stdout.readline())

    def layouts(self, layouts):
        """As System Settings does."""
        folder = self.directory + "/config"
        os.makedirs(folder, exist_ok=True)
        with open(folder + "/kxkbrc", "w") as file:
            file.write(f"[Layout]\nUse=true\nLayoutList={layouts}\n")
        self.own(folder)
        self.call("gdbus", "emit", "--session", "--object-path", "/Layouts", "--signal",
                  "org.kde.keyboard.reloadConfig")
        time.sleep(0.5)

    def take(self, code):
        """Another program takes a combination, as Qt numbers it."""
        action = "['other', 'action', 'Other', 'Action']"
        for method, *arguments in (("doRegister", action),
                                   ("setShortcutKeys", action, f"[([{code}, 0, 0, 0],)]", "6")):
            self.call("gdbus", "call", "--session", "--dest", "org.kde.kglobalaccel", "--object-path",
                      "/kglobalaccel", "--method", "org.kde.KGlobalAccel." + method, *arguments)
