#!/usr/bin/env python3
"""A UC client: starts Seldial, sets Ctrl+Alt+D, and prints each call until Ctrl-C or SIGTERM."""
import json
import os
import signal
import socket
import subprocess
import sys
import tempfile

SET_HOT_KEY = {
    "command": "SetHotKey",
    "modifierCtrl": True,
    "modifierAlt": True,
    "virtualkey": 2,  # the D key of a US keyboard
    "readdelay": 500,
}


def send(path, command):
    """One connection carries one command; its end ends the command."""
    with socket.socket(socket.AF_UNIX) as connection:
        connection.connect(path)
        connection.sendall(json.dumps(command).encode())


def received(message, seldial):
    if message.get("command") == "MakeCall":
        print("call:", message["number"], flush=True)
    elif message.get("result"):
        print("hot key is set", flush=True)
    else:
        print("refused:", message.get("failreason") or message["message"], file=sys.stderr)
        seldial.terminate()


def run(program, path):
    seldial = subprocess.Popen(
        [program, "-log", "dialerpipename=" + path],
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        encoding="utf-8",
    )
    for number in (signal.SIGINT, signal.SIGTERM):
        signal.signal(number, lambda *_: seldial.terminate())
    for line in seldial.stdout:
        if line.startswith("{"):
            received(json.loads(line), seldial)
        elif "Unix socket server listen ok" in line:
            send(path, SET_HOT_KEY)
        elif "Unix socket server listen failed" in line:
            seldial.terminate()
    return seldial.wait()


if __name__ == "__main__":
    program = sys.argv[1] if len(sys.argv) > 1 else "seldial"
    with tempfile.TemporaryDirectory(prefix="uc-", dir=os.environ.get("XDG_RUNTIME_DIR")) as folder:
        status = run(program, folder + "/dialer")
    sys.exit(status)
