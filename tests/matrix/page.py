"""Writes docs/applications.md."""
import datetime
import subprocess

from applications import APPLICATIONS
from environments import ENVIRONMENTS, TRIED

PAGE = """# Applications

Test results for real applications on X11. `scripts/matrix --write` wrote this page on
{date}, {release}, openbox, with `readdelay` 500.
The table shows the observed results. If the first run was not as expected, it shows the results of
three runs. A row is from the last run of its application, which may be older than the page.

- **exact**: the selected text was dialled, character for character. **nothing**: no message.
- **mouse** to **held**: selected with the mouse; the modifiers are released first, last, or one
  second later. **whole text**: selected with a key, several lines with non-ASCII characters.
- **nothing selected** to **by a key**: there is nothing to dial. A text on the clipboard, a
  selection of another program, and a selection that was cleared must not be dialled. **kept**: the
  key was typed into a terminal that keeps its selection, which is then dialled.
- **unharmed**: the text in the application is unchanged, nothing was typed, and no key is stuck.
- **delay**: the smallest `readdelay` of 0, 2, 5, 10, 20, 50, 100, 200 and 500 ms with which twenty
  uses in a row were exact. **busy**: measured while programs had to wait for a processor. A busy or
  slow computer needs a longer delay, which is why the default is 500 ms.
"""

SECOND = [
    "## Window managers, clipboard managers, X servers", "",
    "Three applications in other environments, each with text selected by mouse and the modifiers",
    "released first, last or one second later, with nothing selected, with an older text on the",
    "clipboard, with a selection of another program, and with a selection cleared by a click. With a",
    "screen locker, the hot key is first used while the screen is locked, which must not dial anything.",
    ""]


def table(head, rows):
    return ["| " + " | ".join(head) + " |", "|" + "---|" * len(head),
            *("| " + " | ".join(row) + " |" for row in rows)]


def write(page, rows, columns):
    """Rows that were not run again are kept, and so is the section about Wayland, which is written by hand."""
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
        *table(["Environment", "kind", *TRIED], pick(ENVIRONMENTS)), "", *notes(ENVIRONMENTS), *([""] if notes(ENVIRONMENTS) else []), *by_hand]).rstrip() + "\n",
        encoding="utf-8")
