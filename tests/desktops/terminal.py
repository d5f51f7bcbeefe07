"""Fills a terminal with a number, for scripts/test-desktops: terminal.py FILE NUMBER. Input that reaches
the program is appended to the file. FILE.process gets the number of the process."""
import os
import signal
import sys
import tty

path, number = sys.argv[1:]
with open(path + ".process", "w", encoding="utf-8") as process:
    process.write(str(os.getpid()))


def fill(*_):
    width, height = os.get_terminal_size()
    line = " ".join([number] * ((width - 1) // (len(number) + 1)))
    print("\033[2J\033[H" + "\r\n".join([line] * (height - 1)), end="", flush=True)


tty.setraw(0)
signal.signal(signal.SIGWINCH, fill)
fill()
while typed := os.read(0, 100):
    with open(path, "a", encoding="utf-8") as file:
        file.write(repr(typed))
