"""The applications of scripts/matrix, and the files that they display."""
from typing import NamedTuple

NUMBER = "4930123"  # one word, so that a double click anywhere on the text selects it
SPECIAL = "Zoë 東京 \U0001F600 +49 30 123"


class Application(NamedTuple):
    name: str
    packages: str
    command: str     # {text} {html} {pdf}: files to open; {show}: a program for a terminal; {dir}
    # text, entry (one line), page, terminal; reader: no key selects; cell: something is always selected
    kind: str = "text"
    select: str = "double"  # how the mouse selects: a click, a double click, or a drag with a button
    settle: float = 1.5  # seconds until it has drawn its text
    all: str = "^a"  # the keys that select everything; ^: with Control
    drop: str = "Home"  # the keys that clear the selection
    once: bool = False  # copying clears the selection
    known: str = ""  # why a result differs from the expected one


OWN_SELECTION = "the program in the terminal draws the selection; the terminal has none"

APPLICATIONS = [
    Application("Tk text", "tk", "wish {dir}/text.tcl", all="^/"),
    Application("Tk entry", "tk", "wish {dir}/entry.tcl", "entry", all="^/"),
    Application("GTK 3 text", "gir1.2-gtk-3.0 python3-gi", "/usr/bin/python3 {dir}/gtk3.py text"),
    Application("GTK 3 entry", "gir1.2-gtk-3.0 python3-gi", "/usr/bin/python3 {dir}/gtk3.py entry", "entry"),
    Application("GTK 3 label", "gir1.2-gtk-3.0 python3-gi", "/usr/bin/python3 {dir}/gtk3.py label", "reader", known="copies only with Ctrl+C, which stops programs in a terminal"),
    Application("GTK 4 text", "gir1.2-gtk-4.0 python3-gi", "/usr/bin/python3 {dir}/gtk4.py text"),
    Application("GTK 4 entry", "gir1.2-gtk-4.0 python3-gi", "/usr/bin/python3 {dir}/gtk4.py entry", "entry"),
    Application("Qt 5 text", "python3-pyqt5", "/usr/bin/python3 {dir}/qt.py PyQt5 text"),
    Application("Qt 5 line", "python3-pyqt5", "/usr/bin/python3 {dir}/qt.py PyQt5 entry", "entry"),
    Application("Qt 6 text", "python3-pyqt6", "/usr/bin/python3 {dir}/qt.py PyQt6 text"),
    Application("Qt 6 line", "python3-pyqt6", "/usr/bin/python3 {dir}/qt.py PyQt6 entry", "entry"),
    Application("Swing text", "default-jdk", "java {dir}/Swing.java text", settle=6),
    Application("Swing field", "default-jdk", "java {dir}/Swing.java entry", "entry", settle=6),
    Application("Chromium page", "chromium", "chromium --no-sandbox --no-first-run --user-data-dir={dir}/c {html}", "page", settle=6),
    Application("Firefox page", "firefox-esr", "firefox-esr --new-instance --profile {dir} {html}", "page", settle=8),
    Application("WebKitGTK page", "gir1.2-webkit2-4.1 python3-gi", "/usr/bin/python3 {dir}/webkit.py", "page", settle=5),
    Application("Epiphany page", "epiphany-browser", "epiphany-browser --private-instance {html}", "page", settle=8),
    Application("LibreOffice Writer", "libreoffice-writer libreoffice-gtk3", "sh {dir}/office.sh writer {text}", settle=12),
    Application("LibreOffice Calc", "libreoffice-calc libreoffice-gtk3", "sh {dir}/office.sh calc {csv}", "cell", "click", settle=12),
    Application("Thunderbird", "thunderbird", "thunderbird {mail}", "page", settle=12),
    Application("AbiWord", "abiword", "abiword {text}", settle=5),
    Application("mousepad", "mousepad", "mousepad --disable-server {text}"),
    Application("gedit", "gedit", "gedit --standalone {text}", settle=3),
    Application("geany", "geany", "geany -i {text}", settle=3),
    Application("scite", "scite", "scite -code.page=65001 {text}"),
    Application("l3afpad", "l3afpad", "l3afpad {text}"),
    Application("featherpad", "featherpad", "featherpad --standalone {text}"),
    Application("kate", "kate", "kate --new {text}", settle=5, known="copies the current line if nothing is selected; so a single line with its newline, as a triple click selects it, is not dialled"),
    Application("kwrite", "kwrite", "kwrite {text}", settle=5, known="like kate"),
    Application("Qt Creator", "qtcreator", "qtcreator -noload Welcome {text}", settle=20, known="like kate; if the document has only one line, it is dialled although nothing is selected"),
    Application("Emacs", "emacs-gtk", "emacs -Q {text}", settle=4, all="^x h", drop="^g", once=True),
    Application("gvim", "vim-gtk3", "gvim -f -u NONE {text}", "reader", known="no key copies safely, and it takes PRIMARY when it clears a selection, so that an old text looks new"),
    Application("Evince", "evince", "evince {pdf}", "reader", settle=4),
    Application("Okular", "okular", "sh {dir}/okular.sh {pdf}", "reader", "drag 1", settle=6),
    Application("zathura", "zathura zathura-pdf-poppler", "zathura {pdf}", "reader", "drag 1"),
    Application("xpdf", "xpdf", "xpdf {pdf}", "reader", "drag 1"),
    Application("mupdf", "mupdf", "mupdf {pdf}", "reader", "drag 3"),
    Application("dillo", "dillo", "dillo {html}", "reader", "drag 1"),
    Application("xedit", "x11-apps", "xedit {text}", "reader"),
    Application("xmessage", "x11-utils", "xmessage -file {text}", "reader"),
    Application("Wine notepad", "wine wine64", "sh {dir}/notepad.sh", "reader", settle=5),
    Application("xterm", "xterm", "xterm -e {show}", "terminal"),
    Application("urxvt", "rxvt-unicode", "urxvt -e {show}", "terminal"),
    Application("xfce4-terminal", "xfce4-terminal", "xfce4-terminal --disable-server -x {show}", "terminal"),
    Application("qterminal", "qterminal", "qterminal -e {show}", "terminal", settle=3),
    Application("konsole", "konsole", "konsole -e {show}", "terminal", settle=4),
    Application("gnome-terminal", "gnome-terminal", "gnome-terminal --wait -- {show}", "terminal", settle=3),
    Application("kgx", "gnome-console", "kgx -e {show}", "terminal", settle=4),
    Application("kitty", "kitty", "kitty {show}", "terminal", settle=4),
    Application("alacritty", "alacritty", "alacritty -e {show}", "terminal", settle=3),
    Application("st", "stterm", "stterm -e {show}", "terminal"),
    Application("lxterminal", "lxterminal", "lxterminal --no-remote -e {show}", "terminal"),
    Application("mate-terminal", "mate-terminal", "mate-terminal --disable-factory -x {show}", "terminal", settle=3),
    Application("terminator", "terminator", "terminator -u -x {show}", "terminal", settle=4),
    Application("tilix", "tilix", "tilix -e {show}", "terminal", settle=4),
    Application("sakura", "sakura", "sakura -x {show}", "terminal"),
    Application("mlterm", "mlterm", "mlterm -e {show}", "terminal"),
    Application("pterm", "pterm", "pterm -e {show}", "terminal"),
    Application("terminology", "terminology", "terminology -e {show}", "terminal", settle=5, known="takes PRIMARY again with the old text when a click clears it, so nothing is dialled"),
    Application("cool-retro-term", "cool-retro-term", "cool-retro-term -e {show}", "terminal", settle=5),
    Application("zutty", "zutty xfonts-base", "zutty -e {show}", "terminal"),
    Application("Eterm", "eterm xfonts-base", "Eterm -e {show}", "terminal"),
    Application("tmux in xterm", "tmux xterm", "xterm -e tmux -S {dir}/tmux -f {dir}/tmux.conf new {show}", "terminal"),
    Application("tmux with mouse in xterm", "tmux xterm", "xterm -e tmux -S {dir}/tmux -f {dir}/tmux-mouse.conf new {show}", "terminal", known=OWN_SELECTION),
    Application("vim with mouse in xterm", "vim xterm", "xterm -e vim -u NONE -N -S {dir}/mouse.vim {text}", "reader", known=OWN_SELECTION),
    Application("mcedit in xterm", "mc xterm", "xterm -e mcedit {text}", "reader", known=OWN_SELECTION),
]

TOOLKITS = {
    "text.tcl": "pack [text .t -width 60 -height 20]; .t insert 1.0 [read [open {%(text)s}]]\n"
                ".t mark set insert 1.0; focus -force .t\n",
    "entry.tcl": "pack [entry .e -width 60]; .e insert 0 {%(line)s}; focus -force .e\n",
    "notepad.sh": "wineboot --init; exec wine notepad %(text)s\n",
    "tmux-mouse.conf": "set -g mouse on\nset -g destroy-unattached on\n",
    "mouse.vim": "set mouse=a\n",
    "office.sh": """mkdir -p ~/.config/libreoffice/4/user
cat > ~/.config/libreoffice/4/user/registrymodifications.xcu <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry" xmlns:xs="http://www.w3.org/2001/XMLSchema">
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="ShowTipOfTheDay" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="FirstRun" oor:op="fuse"><value>false</value></prop></item>
</oor:items>
END
[ $1 = writer ] && filter='Text (encoded):UTF8' || filter='CSV:44,34,76,1'
exec soffice --nologo --norestore "--infilter=$filter" --$1 $2
""",
    "okular.sh": "mkdir -p ~/.config; printf '[PageView]\\nMouseMode=TextSelect\\n' > ~/.config/okularpartrc\n"
                 "exec okular $1\n",
    "Swing.java": """import java.nio.file.*;
import javax.swing.*;
class Swing {
    public static void main(String[] arguments) throws Exception {
        String text = new String(Files.readAllBytes(Paths.get("%(text)s")), "UTF-8");
        JFrame window = new JFrame();
        window.add(arguments[0].equals("text") ? new JScrollPane(new JTextArea(text)) : new JTextField("%(line)s"));
        window.setSize(500, arguments[0].equals("text") ? 300 : 80);
        window.setVisible(true);
    }
}
""",
    "webkit.py": """import gi
gi.require_version('Gtk', '3.0')
gi.require_version('WebKit2', '4.1')
from gi.repository import Gtk, WebKit2
window = Gtk.Window(default_width=700, default_height=500)
view = WebKit2.WebView()
view.load_uri('file://%(html)s')
window.add(view)
window.show_all()
Gtk.main()
""",
    "tmux.conf": "set -g destroy-unattached on\n",  # its server ends with the terminal
    "gtk3.py": """import sys, gi
gi.require_version('Gtk', '3.0')
from gi.repository import Gtk
window = Gtk.Window(default_width=500, default_height=300)
if sys.argv[1] == 'text':
    field = Gtk.TextView()
    field.get_buffer().set_text(open('%(text)s').read())
elif sys.argv[1] == 'label':
    field = Gtk.Label(label=open('%(text)s').read(), selectable=True)
else:
    field = Gtk.Entry(text='%(line)s', hexpand=True, valign=Gtk.Align.CENTER)
window.add(field)
window.show_all()
if sys.argv[1] == 'entry': field.select_region(0, 0)
Gtk.main()
""",
    "gtk4.py": """import sys, gi
gi.require_version('Gtk', '4.0')
from gi.repository import Gtk, GLib
window = Gtk.Window(default_width=500, default_height=300)
if sys.argv[1] == 'text':
    field = Gtk.TextView()
    field.get_buffer().set_text(open('%(text)s').read())
else:
    field = Gtk.Entry(text='%(line)s', hexpand=True, valign=Gtk.Align.CENTER)
window.set_child(field)
window.present()
field.grab_focus()
if sys.argv[1] == 'entry': field.select_region(0, 0)
GLib.MainLoop().run()
""",
    "qt.py": """import sys, importlib
widgets = importlib.import_module(sys.argv[1] + '.QtWidgets')
application = widgets.QApplication(sys.argv)
if sys.argv[2] == 'text':
    field = widgets.QPlainTextEdit(open('%(text)s').read())
else:
    field = widgets.QLineEdit('%(line)s')
field.resize(500, 300 if sys.argv[2] == 'text' else 40)
field.show()
field.activateWindow()
application.exec()
""",
}


def pdf():
    lines = "".join(f"1 0 0 1 10 {380 - 20 * i} Tm ({' '.join([NUMBER] * 6)}) Tj " for i in range(19))
    content = f"BT /F 14 Tf {lines}ET"
    objects = ["<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
               "<</Type/Page/Parent 2 0 R/MediaBox[0 0 420 400]/Contents 4 0 R/Resources<</Font<</F"
               "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>>>>>>>",
               f"<</Length {len(content)}>>stream\n{content}\nendstream"]
    result, places = "%PDF-1.4\n", []
    for number, text in enumerate(objects, 1):
        places.append(len(result))
        result += f"{number} 0 obj{text}endobj\n"
    table = "".join(f"{place:010} 00000 n \n" for place in places)
    start = len(result)
    result += f"xref\n0 5\n0000000000 65535 f \n{table}trailer<</Size 5/Root 1 0 R>>\nstartxref\n{start}\n%%EOF\n"
    return result.encode()
