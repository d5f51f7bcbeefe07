#!/bin/sh
# A UC client: starts Seldial, sets Ctrl+Alt+D, and prints each call until Ctrl-C or SIGTERM.
# Needs socat. A number is printed as JSON writes it: "\n" is a line break.
set -u
program=${1:-seldial}

# virtualkey 2 is the D key of a US keyboard.
set_hot_key='{"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"virtualkey":2,"readdelay":500}'

folder=$(mktemp -d "${XDG_RUNTIME_DIR:-/tmp}/uc-XXXXXX") || exit
trap 'rm -rf "$folder"' EXIT
mkfifo "$folder/output"

# Seldial ends with this shell, even if the shell is killed.
setpriv --pdeathsig TERM "$program" -log "dialerpipename=$folder/dialer" >"$folder/output" &
seldial=$!
trap 'kill "$seldial"' INT TERM

# One connection carries one command; its end ends the command.
send() { printf '%s' "$1" | socat -u - "UNIX-CONNECT:$folder/dialer"; }

text_of() { printf '%s\n' "$line" | sed -E 's/.*"'"$1"'":"(([^"\\]|\\.)*)".*/\1/'; }

while IFS= read -r line; do
  case $line in
    \{*'"command":"MakeCall"'*) echo "call: $(text_of number)" ;;
    \{*'"result":true'*) echo "hot key is set" ;;
    \{*'"result":false'*) echo "refused: $(text_of failreason)" >&2; kill "$seldial" ;;
    \{*'"response":"Error"'*) echo "refused: $(text_of message)" >&2; kill "$seldial" ;;
    *'Unix socket server listen ok'*) send "$set_hot_key" ;;
    *'Unix socket server listen failed'*) kill "$seldial" ;;
  esac
done <"$folder/output"

wait "$seldial"
