"""A window with a text, for scripts/test-desktops: window.py TOOLKIT TEXT.

It obeys lines on standard input: "all" selects the text, "none" drops the selection, "text" does nothing.
After each it prints the text, so the test sees whether a key has changed it.
"""
import sys

TOOLKIT, TEXT = sys.argv[1:]


def answer(text):
    print(text, flush=True)


def gtk(version):
    import gi
    gi.require_version("Gtk", version)
    from gi.repository import GLib, Gtk
    GLib.set_prgname("org.test.gtk")
    entry = Gtk.Entry(text=TEXT)

    def handle_command(source, condition):
        line = sys.stdin.readline().strip()
        if line == "all":
            entry.select_region(0, -1)
        if line == "none":
            entry.select_region(0, 0)
        answer(entry.get_text())
        return bool(line)

    def show(window):
        GLib.io_add_watch(0, GLib.IO_IN, handle_command)
        window.connect("notify::is-active", lambda *_: window.is_active() and answer("ready"))
        entry.grab_focus()

    if version == "3.0":
        window = Gtk.Window()
        window.add(entry)
        window.show_all()
        show(window)
        Gtk.main()
        return

    def activate(application):
        window = Gtk.ApplicationWindow(application=application, child=entry)
        show(window)
        window.present()

    application = Gtk.Application(application_id="org.test.gtk")
    application.connect("activate", activate)
    application.run()


def qt():
    from PyQt6.QtCore import QSocketNotifier
    from PyQt6.QtWidgets import QApplication, QLineEdit
    application = QApplication(["test"])

    class Edit(QLineEdit):
        def focusInEvent(self, event):
            super().focusInEvent(event)
            answer("ready")

    edit = Edit(TEXT)
    notifier = QSocketNotifier(0, QSocketNotifier.Type.Read)

    def handle_command():
        line = sys.stdin.readline().strip()
        if line == "all":
            edit.selectAll()
        if line == "none":
            edit.deselect()
        answer(edit.text())
        if not line:
            application.quit()

    notifier.activated.connect(handle_command)
    edit.show()
    application.exec()


{"gtk3": lambda: gtk("3.0"), "gtk4": lambda: gtk("4.0"), "qt6": qt}[TOOLKIT]()
