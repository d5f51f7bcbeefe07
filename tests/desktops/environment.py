"""Clipboard managers and a lock screen, for scripts/test-desktops."""
import json
import os
import re
import signal
import subprocess
import threading
import time

from applications import APPLICATIONS, ApplicationWindow
from gnome import GnomeWithManager, LockingGnome
from kwin import KWin
from session import EVDEV, ROOT, Seldial, Window, eventually

USE = "+ctrl +alt +d 30 -d 20 -alt -ctrl"
OLDER = "older text"


def klipper(desktop):
    return desktop.call("gdbus", "call", "--session", "--dest", "org.kde.klipper", "--object-path", "/klipper",
                        "--method", "org.kde.klipper.klipper.getClipboardHistoryMenu")


def clipman(desktop):
    path = desktop.directory + "/clipman.json"
    if not os.path.exists(path):
        return ""
    with open(path, encoding="utf-8") as file:
        return repr(tuple(reversed(json.load(file))))


def copyq(desktop):
    return repr(tuple(text for text in (desktop.call("copyq", "read", str(place)) for place in range(9)) if text))


# Their commands, and functions that return what they keep, the newest first.
MANAGERS = {
    "klipper": ("klipper", klipper),  # Plasma 6 has it in its panel only
    "clipman": ("wl-paste --type text --watch clipman --histpath {dir}/clipman.json store", clipman),
    "copyq": ("copyq", copyq),
}

# Programs that take the clipboard after each change of another program: the one of the tests, whose
# arguments are a delay and "refill" (see ClipboardManager.cpp), and two scripts.
STAND_INS = {
    "one that keeps all types": "{manager} 0",
    "one that is slow": "{manager} 250",
    "one that fills an empty clipboard": "{manager} 0 refill",
    "a slow one that fills it": "{manager} 60 refill",
    "a script": "wl-paste --watch sh {dir}/keep",
    "a script for texts": "wl-paste --no-newline --type text --watch sh {dir}/keep",
}
KEEP = "cat > copied; cmp -s copied kept || { cp copied kept; wl-copy < kept; }"


def clipboard_managers(desktop, seldial, report):
    """Checks that they neither fill an empty clipboard with an old text nor keep more than what was copied."""
    for name, (command, history) in MANAGERS.items():
        if subprocess.run(["which", name], stdout=subprocess.DEVNULL).returncode != 0:
            print(f"{desktop.name:8} {name}: not tried, it is not installed")
            continue
        manager = desktop.run(command.format(dir=desktop.directory).split(), start_new_session=True,
                              QT_QPA_PLATFORM="wayland")

        def keeps_older_text():
            desktop.call("wl-copy", OLDER)
            return eventually(lambda: OLDER in history(desktop), 2)

        if not eventually(keeps_older_text, 30):  # CopyQ 10 under KWin 6.3
            print(f"{desktop.name:8} {name}: not tried, it does not keep what wl-copy copies")
            desktop.end_group(manager)
            continue
        window = Window(desktop, "gtk3")
        for selection, texts in (("none", [None] * 3), ("all", [window.copied] * 5), ("none", [None] * 3)):
            window.ask(selection)
            got = []
            for _ in texts:
                desktop.keys(USE)
                got.append(seldial.result()[1])
                time.sleep(0.5)  # the manager acts
            report.tell(f"{name}: {'selected' if selection == 'all' else 'nothing selected'}", got, texts)
        kept = history(desktop)
        report.tell(f"{name}: keeps what was copied, once",
                    (kept.count(window.copied), kept.count(OLDER), kept.count("'") // 2), (1, 1, 2))
        window.close()
        desktop.end_group(manager)


def stand_in_managers(desktop, seldial, report):
    """Checks that an older text that is put back on the clipboard is not dialled, and that selected text is."""
    window = Window(desktop, "gtk3")
    program = desktop.copy(ROOT / f"build/{desktop.preset}/tests/desktops/seldial_clipboard_manager")
    desktop.write("keep", KEEP)
    for name, command in STAND_INS.items():
        manager = desktop.run(command.format(manager=program, dir=desktop.directory).split(), start_new_session=True)
        time.sleep(0.5)
        for selection, pause in (("none", 0), ("none", 0.1), ("none", 0.5), ("none", 2), ("all", 0.1), ("all", 2)):
            window.ask(selection)
            got = []
            for number in range(3):
                desktop.call("wl-copy", f"{OLDER} {number}")
                time.sleep(pause)
                desktop.keys(USE)
                got.append(seldial.result()[1])
            report.tell(f"{name}: {selection} selected, {pause} s later", got,
                        [window.copied if selection == "all" else None] * 3)
        desktop.end_group(manager)
    window.close()


GNOME_MANAGERS = ("0 refill", "100 refill", "500 refill", "100 keep", "100 keep refill")


def gnome_managers(_desktop, _seldial, report):
    """Like stand_in_managers(), with X11 programs and extensions of GNOME Shell, which are the managers of GNOME."""
    with GnomeWithManager() as desktop:
        seldial = Seldial(desktop)
        desktop.consent("CTRL+ALT+d", "<Control><Alt>d")
        report.tell("clipboard managers: Ctrl+Alt+D", seldial.register(), True)
        program = desktop.copy(ROOT / "tests/desktops/clipboard_manager.py")
        for name in ("gtk4", "qt6", "kgx"):
            window = ApplicationWindow(desktop, name) if name in APPLICATIONS else Window(desktop, name)
            for arguments in GNOME_MANAGERS:
                manager = desktop.run(["/usr/bin/python3", program, *arguments.split()], GDK_BACKEND="x11")
                time.sleep(1)  # until it watches the clipboard
                uses_with_manager(desktop, seldial, report, window, f"{name}: X11 program, {arguments}")
                manager.kill()
                manager.wait()
                desktop.act_as(arguments)
                uses_with_manager(desktop, seldial, report, window, f"{name}: extension, {arguments}")
                desktop.act_as("")
            window.close()


def uses_with_manager(desktop, seldial, report, window, name):
    for selection, pauses in (("none", (0, 0.5, 2)), ("all", (0.1, 2))):
        window.ask(selection)
        got = []
        for pause in pauses:
            desktop.give(OLDER)
            time.sleep(pause)
            desktop.keys(USE)
            got.append(seldial.result()[1])
        report.tell(f"{name}: {selection} selected", got, [window.copied if selection == "all" else None] * len(got))


class LockingKWin(KWin):
    """Uses the hot key with Plasma's lock screen."""

    options = ()

    def lock(self):
        """Returns whether the screen is locked."""
        for method in ("Lock", "GetActive"):
            answer = self.call("gdbus", "call", "--session", "--dest", "org.freedesktop.ScreenSaver", "--object-path",
                               "/ScreenSaver", "--method", "org.freedesktop.ScreenSaver." + method)
        return "true" in answer


def lock_screen(desktop, seldial, report):
    """Checks that a use while the screen is locked, and one during which it is locked, dial nothing. Does not check
    which keys the lock screen gets."""
    for title, before, after in (("is used", "", USE), ("was used", "+ctrl +alt +d 30 -d", "-alt -ctrl")):
        with (LockingKWin if isinstance(desktop, KWin) else LockingGnome)() as locking:
            seldial = Seldial(locking)
            locking.consent("CTRL+ALT+d", "<Control><Alt>d")
            report.tell("lock screen: Ctrl+Alt+D", seldial.register(), True)
            window = Window(locking, "gtk3")
            window.ask("all")
            if before:
                locking.keys(before)
            report.tell("the screen is locked", eventually(locking.lock), True)
            locking.keys(after)
            time.sleep(2)
            seldial.register()
            report.tell(f"locked while the hot key {title}: dials nothing",
                        any('"MakeCall"' in line for line in seldial.seen), False)


def swaylock(desktop, seldial, report):
    """Checks that a use while the screen is locked does nothing, and which keys the lock screen gets."""
    window = Window(desktop, "gtk3")
    window.ask("all")
    locker = desktop.run(["swaylock"], stderr=subprocess.PIPE, text=True, WAYLAND_DEBUG="client")
    limit = threading.Timer(30, locker.kill)
    limit.start()
    seen = []

    def reads(*parts):
        """Reads what the lock screen receives, up to an event."""
        for line in locker.stderr:
            seen.append(line)
            if all(part in line for part in parts):
                return True
        return False

    def keys():
        return [(key, down == "1") for key, down in re.findall(r"wl_keyboard.\d+\.key\(\d+, \d+, (\d+), (\d)\)",
                                                               "".join(seen))]

    report.tell("swaylock gets the keyboard", reads("wl_keyboard", ".enter("), True)
    before = len(seldial.seen)
    desktop.keys(USE + " +a 30 -a")
    report.tell("it gets the user's keys", reads("wl_keyboard", f" {EVDEV['a']}, 0)"), True)
    report.tell("and no others", {int(key) for key, _ in keys()} - {EVDEV[name] for name in ("ctrl", "alt", "d", "a")},
                set())
    seldial.register()
    report.tell("the hot key does nothing", any("hot key pressed" in line for line in seldial.seen[before:]), False)
    locker.send_signal(signal.SIGUSR1)  # unlocks
    reads("nothing")  # up to its end
    limit.cancel()
    report.tell("after that it dials", (desktop.keys(USE), seldial.result()[1])[1], window.copied)
    window.close()
