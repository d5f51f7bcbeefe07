"""Writes docs/applications.md."""
import datetime
import subprocess

from applications import APPLICATIONS
from surroundings import SURROUNDINGS, TRIED

PAGE = """# Applications

What the hot key does in real applications on X11. `scripts/matrix --write` wrote this page on
{date}, {release}, openbox, with `readdelay` 500. The table holds what was
seen; where the first try was not as expected, three are shown. A row is of the last run of its
application, which may be older than the page.

- **exact**: the selected text was dialled, character for character. **nothing**: no message.
- **mouse** to **held**: selected with the mouse; the modifiers are released first, last, or a second
  later. **whole text**: selected with a key, several lines with characters beyond ASCII.
- **nothing selected** to **by a key**: there is nothing to dial; a text on the clipboard, a selection
  of another program, and a selection that was dropped must not be dialled. **kept**: the key
  was typed into a terminal that goes on showing the selection, which is dialled.
- **unharmed**: the application's text is what it was, nothing was typed, no key is stuck.
- **delay**: the smallest `readdelay` with which twenty uses in a row were exact, of 0, 2, 5, 10, 20,
  50, 100 and 200 ms. **busy**: measured while other programs kept every processor of the computer busy;
  other figures may be of a lightly loaded one. A busy or slow computer needs more: 500 ms is the default
  for good reason.
"""

SECOND = [
    "## Window managers, clipboard managers, X servers", "",
    "Three applications in other surroundings, each with text selected by mouse, the modifiers released",
    "first, last or a second later, nothing selected, an older text on the clipboard, a selection of another",
    "program, and a selection dropped by a click. With a screen locker the hot key is first used while the",
    "screen is locked, which must dial nothing.", ""]


def table(head, rows):
    return ["| " + " | ".join(head) + " |", "|" + "---|" * len(head),
            *("| " + " | ".join(row) + " |" for row in rows)]


def write(page, rows, columns):
    """What was not tried keeps its row, and the page its part about Wayland, which is written by hand."""
    old = page.read_text(encoding="utf-8").splitlines() if page.exists() else []
    by_hand = old[old.index("## Wayland"):] if "## Wayland" in old else []
    old = old[:len(old) - len(by_hand)]
    known = {line[2:].split(" | ")[0]: line[2:-2].split(" | ") for line in old if line.startswith("| ")}
    known |= {row[0]: row for row in rows}
    release = subprocess.run(["lsb_release", "-ds"], capture_output=True, text=True, check=False).stdout
    pick = lambda listed: [known[one.name] for one in listed if one.name in known]
    notes = lambda listed: [f"- {one.name}: {one.known}." for one in listed if one.known and one.name in known]
    page.write_text("\n".join([
        PAGE.format(date=datetime.date.today(), release=release.strip() or "Debian"),
        *table(["Application", *columns, "delay"], pick(APPLICATIONS)), "",
        *notes(APPLICATIONS), "", *SECOND,
        *table(["Surrounding", "kind", *TRIED], pick(SURROUNDINGS)), "", *notes(SURROUNDINGS), *([""] if notes(SURROUNDINGS) else []), *by_hand]).rstrip() + "\n",
        encoding="utf-8")
