"""A private desktop of an ordinary user, with Seldial, for scripts/test-desktops."""
import json
import os
import queue
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
NOBODY = 65534
EVDEV = {"ctrl": 29, "alt": 56, "shift": 42, "super": 125, "d": 32, "a": 30, "x": 45, "end": 107, "f5": 63, "2": 3,
         "left": 272}


def eventually(condition, limit=20):
    end = time.monotonic() + limit
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.01)
    return True


class Session:
    """A session bus and a compositor, started by start(), which also starts the user: a program that
    presses keys and moves the pointer as its standard input says, see User.h."""

    preset = "debug"
    counts_uses = True  # even while the modifiers stay down
    held_for_seven_seconds = False
    binds_later = False  # a hot key may not work yet when SetHotKey is answered

    @classmethod
    def missing(cls):
        """Why it cannot be tested on this system; None if it can."""

    def consent(self, shortcut, key):
        """Allows a shortcut as the user, if the desktop asks for that."""

    def __init__(self):
        self.directory = tempfile.mkdtemp(prefix="seldial-", dir="/tmp")
        self.processes = []
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": self.directory, "XDG_RUNTIME_DIR": self.directory,
            "XDG_DATA_HOME": self.directory + "/data", "XDG_CONFIG_HOME": self.directory + "/config",
            "XDG_SESSION_TYPE": "wayland", "LANG": "C.UTF-8",
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.directory}/bus"}
        os.chmod(self.directory, 0o700)
        self.own(self.directory)
        self.program = self.copy(ROOT / f"build/{self.preset}/app/seldial")
        self.copy(ROOT / f"build/{self.preset}/app/seldial-wayland.so")

    def __enter__(self):
        self.run(["dbus-daemon", "--session", "--nofork",
                  "--address=" + self.environment["DBUS_SESSION_BUS_ADDRESS"]])
        if not eventually(lambda: os.path.exists(self.directory + "/bus")):
            raise RuntimeError("no session bus")
        self.start()
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            if process.poll() is None:
                process.kill()
            process.wait()
        shutil.rmtree(self.directory, ignore_errors=True)

    def own(self, path):
        """Makes the user of the session the owner of files that this script has created."""
        if os.geteuid() == 0:
            os.chown(path, NOBODY, NOBODY)
            for folder, folders, files in os.walk(path):
                for name in folders + files:
                    os.chown(os.path.join(folder, name), NOBODY, NOBODY, follow_symlinks=False)

    def write(self, name, text):
        """Creates a file of the user."""
        file = Path(self.directory, name)
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        self.own(Path(self.directory, name.split("/")[0]))

    def copy(self, path):
        """Copies a program to a place where the user can run it."""
        programs = self.directory + "/programs"
        os.makedirs(programs, exist_ok=True)
        copied = shutil.copy(path, programs)
        os.chmod(copied, 0o755)
        return copied

    def run(self, command, env_without=(), stderr=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            **arguments):
        """Starts a program in the session. Keyword arguments in capital letters are environment variables."""
        variables = {key: value for key, value in arguments.items() if key.isupper()}
        options = {key: value for key, value in arguments.items() if not key.isupper()}
        environment = {**self.environment, **variables}
        for name in env_without:
            environment.pop(name, None)
        if os.geteuid() == 0:
            command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"] + command
        process = subprocess.Popen(command, env=environment, stderr=stderr, stdout=stdout,
                                   cwd=self.directory, **options)
        self.processes.append(process)
        return process

    def call(self, *command):
        """Runs a program to its end and returns its output; empty if it fails."""
        process = self.run(list(command), stdout=subprocess.PIPE, text=True)
        output, _ = process.communicate(timeout=60)
        return output if process.returncode == 0 else ""

    def give(self, text, selection="clipboard"):
        """Puts a text on the clipboard or into PRIMARY, like another program."""
        self.call("wl-copy", *(["--primary"] if selection == "primary" else []), text)

    def primary(self):
        """The text in PRIMARY."""
        return self.call("wl-paste", "--primary", "--no-newline")

    def end_group(self, process):
        """Ends a program that was started with start_new_session, and its child processes."""
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.wait()

    def owns(self, name):
        return "true" in self.call(
            "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
            "--method", "org.freedesktop.DBus.NameHasOwner", name)

    def keys(self, text):
        """Presses and releases keys: "+ctrl +d 50 -d -ctrl"; returns the time of the last."""
        words = [word[0] + str(EVDEV[word[1:]]) if word[0] in "+-" else word for word in text.split()]
        self.user.stdin.write(" ".join(words) + "\n")
        self.user.stdin.flush()
        return float(self.user.stdout.readline())

    def click(self, place, times=1):
        """Clicks with the left button."""
        self.keys(f"@{place[0]},{place[1]} 50 " + "+left 30 -left 30 " * times)


class Window:
    """A window with a text. After construction it has the focus."""

    text = copied = unharmed = "+31 20 123 4567"

    def __init__(self, session, toolkit):
        variables = {"GDK_BACKEND": "wayland", "QT_QPA_PLATFORM": "wayland"}
        if toolkit.endswith("-x11"):
            toolkit = toolkit.removesuffix("-x11")
            variables = {"GDK_BACKEND": "x11", **session.x11()}
        self.process = session.run(
            ["/usr/bin/python3", str(session.copy(ROOT / "tests/desktops/window.py")), toolkit, self.text],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, **variables)
        if "ready" not in self.process.stdout.readline():
            raise RuntimeError(f"no window of {toolkit}")

    def ask(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        answer = "ready"
        while answer == "ready":  # it got the focus again
            answer = self.process.stdout.readline().rstrip("\n")
        time.sleep(0.1)  # until the compositor knows the selection
        return answer

    def close(self):
        self.process.kill()
        self.process.wait()


class Seldial:
    """The program. Its results are the dialled texts, or None if nothing was found."""

    def __init__(self, session):
        self.session = session
        self.pipe = session.directory + "/seldial-commands"
        self.lines, self.seen = queue.Queue(), []
        self.process = session.run([session.program, "-log", "dialerpipename=" + self.pipe],
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.thread = threading.Thread(target=self._read, daemon=True)
        self.thread.start()
        self.expect("listen ok")

    def _read(self):
        for line in self.process.stdout:
            self.seen.append(line)
            self.lines.put((time.monotonic(), line.rstrip("\n")))

    def expect(self, *parts, limit=20):
        """The time and the text of the next line that contains one of them."""
        end = time.monotonic() + limit
        while True:
            try:
                at, line = self.lines.get(timeout=max(0.001, end - time.monotonic()))
            except queue.Empty:
                raise RuntimeError(f"no {' or '.join(parts)!r} from Seldial") from None
            if "--verbose" in sys.argv:
                print("    |", line)
            if any(part in line for part in parts):
                return at, line

    def register(self, virtual_key=2, modifiers=("Ctrl", "Alt"), delay=300):
        """Sets the hot key; whether that succeeds. Virtual key 2 is the position of D."""
        command = {"command": "SetHotKey", "virtualkey": virtual_key, "readdelay": delay}
        for name in ("Alt", "Command", "Ctrl", "Shift"):
            command["modifier" + name] = name in modifiers
        before = len(self.seen)
        with socket.socket(socket.AF_UNIX) as connection:
            connection.connect(self.pipe)
            connection.sendall(json.dumps(command).encode())
        result = json.loads(self.expect('"HotkeyState"')[1])["result"]
        if result and self.session.binds_later:
            eventually(lambda: any("the hot key in GNOME is" in line for line in self.seen[before:]), 30)
        return result

    def result(self, limit=20):
        """The time and the result of the next use of the hot key."""
        at, line = self.expect('"MakeCall"', "no number found", limit=limit)
        return at, json.loads(line)["number"] if "MakeCall" in line else None

    def stop(self, number=signal.SIGTERM):
        self.process.send_signal(number)
        status = self.process.wait(timeout=20)
        if os.path.exists(self.pipe):
            os.remove(self.pipe)
        return status
