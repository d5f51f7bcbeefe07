"""A private X server with a user, and Seldial running on it."""
import contextlib
import json
import os
import signal
import socket
import subprocess
import threading
import time

CONTROL, ALT, KEY_K = 37, 64, 45  # X key codes
HOT_KEY = (CONTROL, ALT, KEY_K)  # no window manager holds it
KEYS = {"a": 38, "g": 42, "h": 43, "x": 53, "/": 61, "Home": 110}


def eventually(condition, seconds=30.0):
    """Returns the first true value of `condition`, or its last value after the time limit."""
    end = time.monotonic() + seconds
    while not (value := condition()) and time.monotonic() < end:
        time.sleep(0.05)
    return value


@contextlib.contextmanager
def running(command, **options):
    """Runs a program; ends it and its child processes at the end of the block."""
    process = subprocess.Popen(command, start_new_session=True, **options)
    try:
        yield process
    finally:
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, signal.SIGTERM)
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()


class User:
    """Operates the physical keyboard and the mouse."""

    def __init__(self, display):
        from Xlib import X, display as connection, ext
        from Xlib.protocol import rq
        # On some servers, python-xlib confuses the events of this extension with those of another.
        ext.__extensions__ = [known for known in ext.__extensions__ if known[0] != "XFIXES"]
        self.X, self.display = X, connection.Display(display)

        class FakeInput(rq.Request):
            _request = rq.Struct(
                rq.Card8("opcode"), rq.Opcode(2), rq.RequestLength(), rq.Card8("event"),
                rq.Card8("detail"), rq.Pad(2), rq.Card32("time"), rq.Window("root", (X.NONE,)),
                rq.Pad(8), rq.Int16("x"), rq.Int16("y"), rq.Pad(7), rq.Card8("device"))

        self.request = FakeInput
        self.first = self.display.query_extension("XInputExtension").first_event
        slave_keyboard = 4
        keyboards = [device for device in self.display.xinput_query_device(0).devices
                     if device.use == slave_keyboard]
        keyboards.sort(key=lambda device: "XTEST" in device.name)  # last; only used if the server has no other
        self.keyboard = keyboards[0].deviceid

    def fake(self, event, detail, device=0, x=0, y=0, after=1):
        """`after`: how long the server waits first, in milliseconds."""
        self.request(display=self.display.display,
                     opcode=self.display.display.get_extension_major("XTEST"),
                     event=event, detail=detail, time=after, root=self.X.NONE, x=x, y=y, device=device)

    def press(self, *keys):
        for key in keys:
            self.fake(self.first + 1, key, self.keyboard)
        self.display.sync()

    def release(self, *keys):
        for key in keys:
            self.fake(self.first + 2, key, self.keyboard)
        self.display.sync()

    def tap(self, key, *modifiers):
        self.press(*modifiers, key)
        self.release(key, *modifiers)
        time.sleep(0.3)

    def type(self, keys):
        """Types keys one after another; ^: with Control."""
        for key in keys.split():
            self.tap(KEYS[key.lstrip("^")], *([CONTROL] if key.startswith("^") else []))

    def pixels(self, place):
        """Returns the pixels of an area."""
        root = self.display.screen().root
        return root.get_image(place[0] - 60, place[1] - 12, 120, 24, self.X.ZPixmap, 0xFFFFFFFF).data

    def window_manager(self):
        """Whether a window manager is running."""
        name = self.display.intern_atom("_NET_SUPPORTING_WM_CHECK")
        return self.display.screen().root.get_full_property(name, self.X.AnyPropertyType) is not None

    def keyboard_is_free(self):
        root, now = self.display.screen().root, self.X.CurrentTime
        free = root.grab_keyboard(False, self.X.GrabModeAsync, self.X.GrabModeAsync, now) == 0
        self.display.ungrab_keyboard(now)
        self.display.sync()
        return free

    def move(self, place):
        self.fake(self.X.MotionNotify, 0, x=place[0], y=place[1])
        self.display.sync()

    def click(self, place, times=1):
        time.sleep(1)  # so that it is not part of a previous click
        self.move(place)
        for _ in range(times):
            self.fake(self.X.ButtonPress, 1, after=40)
            self.fake(self.X.ButtonRelease, 1, after=40)
        self.display.sync()  # sent together, so that a double click is fast enough
        time.sleep(0.3)

    def drag(self, begin, end, button):
        time.sleep(0.6)
        self.move(begin)
        self.fake(self.X.ButtonPress, button)
        for step in range(1, 11):
            self.move([a + (b - a) * step // 10 for a, b in zip(begin, end)])
            time.sleep(0.02)
        self.fake(self.X.ButtonRelease, button)
        self.display.sync()
        time.sleep(0.3)

    def keys_down(self):
        state = self.display.screen().root.query_pointer().mask & 0xFF
        return state != 0 or any(self.display.query_keymap())

    def focused_area(self):
        """The geometry of the focused window: x, y, width, height."""
        window = self.display.get_input_focus().focus
        if isinstance(window, int):
            return None
        while window.get_wm_class() is None or window.get_geometry().width < 10:  # Java's is one pixel
            window = window.query_tree().parent
            if not window:
                return None
        size, place = window.get_geometry(), window.translate_coords(self.display.screen().root, 0, 0)
        return -place.x, -place.y, size.width, size.height


class Seldial:
    """The program under test."""

    def __init__(self, program, directory, environment):
        self.path = f"{directory}/dialer"
        self.process = subprocess.Popen(
            [program, "-log", f"dialerpipename={self.path}"], stdout=subprocess.PIPE, text=True,
            encoding="utf-8", env=environment, start_new_session=True)
        self.results, self.changed = [], threading.Condition()
        self.registered = 0
        threading.Thread(target=self.read, daemon=True).start()
        eventually(lambda: os.path.exists(self.path))

    def read(self):
        for line in self.process.stdout:
            with self.changed:
                if line.startswith('{"') and '"MakeCall"' in line:
                    self.results.append(json.loads(line)["number"])
                elif "no number found" in line:
                    self.results.append(None)
                elif '"HotkeyState"' in line and '"result":true' in line:
                    self.registered += 1
                self.changed.notify_all()

    def register(self, delay):
        """Presses Ctrl+Alt+K."""
        before = self.registered
        with socket.socket(socket.AF_UNIX) as connection:
            connection.connect(self.path)
            connection.sendall(b'{"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,'
                               b'"virtualkey":40,"readdelay":%d}' % delay)
        with self.changed:
            if not self.changed.wait_for(lambda: self.registered > before, 30):
                raise RuntimeError("the hot key is refused")

    def dial(self, user, way="last"):
        """Uses the hot key and returns the dialled text; None if nothing was dialled."""
        count = len(self.results)
        user.press(*HOT_KEY)
        if way == "modifiers first":
            user.release(CONTROL, ALT)
            time.sleep(0.05)
            user.release(KEY_K)
        else:
            user.release(KEY_K)
            if way == "held":
                time.sleep(1)
            user.release(ALT, CONTROL)
        with self.changed:
            if not self.changed.wait_for(lambda: len(self.results) > count, 30):
                raise RuntimeError("the hot key does nothing")
        return self.results[count]
