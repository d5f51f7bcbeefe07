"""Real applications that show a number, for scripts/test-desktops. The user selects it with a double click."""
import http.server
import os
import signal
import threading
import time
from pathlib import Path
from typing import NamedTuple

from session import ROOT, eventually

NUMBER = "4930123"
NUMBERS = " ".join([NUMBER] * 12)
PAGE = f"<title>page</title><body style='font: 32px monospace'>{(NUMBERS + '<br>') * 40}"
FIELD = f"""<title>field</title><body style="margin: 0">
<textarea id=field style="font: 32px monospace; width: 100%; height: 97vh">{(NUMBERS + chr(10)) * 40}</textarea>
<script>field.oninput = () => fetch("/changed", {{method: "POST", body: field.value}}); field.focus()</script>"""
USERS_KEY = repr(b"\0")  # Ctrl+2, which the user types in one of the cases
FIREFOX = """user_pref("browser.shell.checkDefaultBrowser", false);
user_pref("datareporting.policy.dataSubmissionEnabled", false);
user_pref("browser.aboutwelcome.enabled", false);
user_pref("app.normandy.enabled", false);
"""


class Application(NamedTuple):
    packages: str
    command: str         # {url}: an address to show; {show}: a program for a terminal; {dir}
    copies: bool = True  # Seldial can make it copy
    x11: bool = False    # its window is on Xwayland


FIREFOX_COMMAND = "firefox-esr --new-instance --profile {dir}/firefox --kiosk {url}"
CHROMIUM_COMMAND = ("chromium --no-sandbox --no-first-run --disable-gpu --password-store=basic "
                    "--ozone-platform=wayland --user-data-dir={dir}/chromium --app={url}")
APPLICATIONS = {
    "firefox-page": Application("firefox-esr", FIREFOX_COMMAND),
    "firefox-field": Application("firefox-esr", FIREFOX_COMMAND),
    "chromium-page": Application("chromium", CHROMIUM_COMMAND),
    "chromium-field": Application("chromium", CHROMIUM_COMMAND),
    "foot": Application("foot", "foot {show}"),
    "alacritty": Application("alacritty", "alacritty -e {show}"),
    "xfce4-terminal": Application("xfce4-terminal", "xfce4-terminal --disable-server -x {show}"),
    "gnome-terminal": Application("gnome-terminal", "gnome-terminal --wait -- {show}"),
    "kgx": Application("gnome-console", "kgx -- {show}"),
    "konsole": Application("konsole qtwayland5 qt6-wayland", "konsole -e {show}", copies=False),
    "xterm": Application("xterm", "xterm -e {show}", copies=False, x11=True),
}


class Page:
    """Serves the page for a browser, and records changes of its field."""

    def __init__(self, html):
        page = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                self.send_response(200)
                self.send_header("Content-Type", "text/html")
                self.end_headers()
                self.wfile.write(html.encode())

            def do_POST(self):
                page.harm = self.rfile.read(int(self.headers["Content-Length"])).decode()[:200]
                self.send_response(204)
                self.end_headers()

            def log_message(self, *arguments):
                pass

        self.harm = ""
        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        self.url = f"http://127.0.0.1:{self.server.server_port}/"


class ApplicationWindow:
    """The focused window of an application, with the same interface as Window."""

    text = NUMBER
    unharmed = ""

    def __init__(self, desktop, name):
        self.desktop, self.name = desktop, name
        self.application = APPLICATIONS[name]
        self.page = Page(FIELD if name.endswith("field") else PAGE)
        self.typed = desktop.directory + "/typed"
        desktop.write("typed", "")
        desktop.write("firefox/user.js", FIREFOX)
        show = f"/usr/bin/python3 {desktop.copy(ROOT / 'tests/desktops/terminal.py')} {self.typed} {NUMBER}"
        command = self.application.command.format(url=self.page.url, show=show, dir=desktop.directory)
        variables = {"MOZ_ENABLE_WAYLAND": "1", "LIBGL_ALWAYS_SOFTWARE": "1", "QT_QPA_PLATFORM": "wayland",
                     "GDK_BACKEND": "x11" if self.application.x11 else "wayland"}
        if self.application.x11:
            variables.update(desktop.x11())
        self.process = desktop.run(command.split(), start_new_session=True, **variables)
        self.place = None
        if not eventually(self.find_number, 60):
            raise RuntimeError(f"{name} shows no number that can be selected")

    @property
    def copied(self):
        """The expected result for a selection."""
        return NUMBER if self.application.copies else None

    def find_number(self):
        """Finds a position where a double click selects the number."""
        for x in (640, 600, 570):
            self.desktop.give("another text", "primary")
            self.desktop.click((x, 400), 2)
            if eventually(lambda: self.desktop.primary() == NUMBER, 1):
                self.place = (x, 400)
                return True
        return False

    def ask(self, line):
        """Selects the number ("all") or clears the selection ("none"); returns the keys or changes seen."""
        if line in ("all", "none"):
            time.sleep(1.2)  # so that it is not part of a previous click
            self.desktop.click(self.place, 2 if line == "all" else 1)
            time.sleep(0.3)
        with open(self.typed, encoding="utf-8") as file:
            typed = file.read().replace(USERS_KEY, "")
        return typed + self.page.harm

    def close(self):
        self.desktop.end_group(self.process)
        shown = Path(self.typed + ".process")
        if shown.exists():  # a terminal of GNOME closes its window when its program ends
            try:
                os.kill(int(shown.read_text(encoding="utf-8")), signal.SIGKILL)
            except ProcessLookupError:
                pass
            shown.unlink()
            time.sleep(1)  # until the window has closed
        self.page.server.shutdown()
