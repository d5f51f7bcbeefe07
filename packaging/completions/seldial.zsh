#compdef seldial seldial-uc seldial-shortcut
# zsh completion for seldial, seldial-uc and seldial-shortcut

_seldial_program() {
  if compset -P '(dialer|client)pipename='; then
    _files
  else
    compadd -- -log -jsonlog -help -changelog -showapi
    compadd -S '' -- dialerpipename= clientpipename=
  fi
}

_seldial_uc() {
  _arguments \
    '--dial[run a program to dial]:command:_command_names -e' \
    '--open[let the desktop open a URI]:scheme:(tel sip callto)' \
    '--region[the country of numbers without a country code]:country code' \
    '--format[how to dial the number]:format:(e164 national raw)' \
    '--prefix[dial these digits first]:digits' \
    '--confirm[when to ask before dialling]:when:(always several undo never)' \
    '--undo-time[how long a call can be undone]:seconds' \
    '--hotkey[the hot key]:keys' \
    '--delay[how long the other application gets to copy]:milliseconds' \
    '--seldial[the program to start]:program:_files' \
    '--config[the configuration file]:file:_files' \
    '--conversation[show everything that is sent over the two sockets]' \
    '--help[print a help text]' \
    '--version[print the version]' \
    '1:command:(check enable disable status reload settings press send raw listen)' \
    '*:socket:_files'
}

_seldial_shortcut() {
  _arguments \
    '--print[print the command that sets the shortcut]' \
    '--socket[send the command to the seldial at this socket]:socket:_files' \
    '--client[wait for the answer at this socket]:socket:_files' \
    '--settings[show and write the configuration of seldial-uc]' \
    '--config[the configuration file]:file:_files' \
    '--hotkey[the shortcut to start with]:keys' \
    '--delay[how long the other application gets to copy]:milliseconds' \
    '--test-copy[show this text and test copying it]:text' \
    '--help[print a help text]' \
    '--version[print the version]'
}

case $service in
  seldial) _seldial_program ;;
  seldial-uc) _seldial_uc ;;
  seldial-shortcut) _seldial_shortcut ;;
esac
