# bash completion for seldial, seldial-uc and seldial-shortcut

_seldial_words() { mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2"); }

_seldial_files() {
  mapfile -t COMPREPLY < <(compgen -f -- "$1")
  compopt -o filenames 2>/dev/null
}

_seldial() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  if [[ $previous == = ]]; then # bash splits words at the equals sign
    _seldial_files "$word"
  else
    _seldial_words '-log -jsonlog -help -changelog -showapi dialerpipename= clientpipename=' "$word"
    [[ ${COMPREPLY[*]} != *= ]] || compopt -o nospace 2>/dev/null
  fi
}

_seldial_uc() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local options='--dial --open --region --format --prefix --confirm --undo-time --hotkey --delay
    --seldial --config --conversation --help --version'
  local commands='check enable disable status reload settings press send raw listen'
  COMPREPLY=()
  case $previous in
    --open) _seldial_words 'tel sip callto' "$word" ;;
    --format) _seldial_words 'e164 national raw' "$word" ;;
    --confirm) _seldial_words 'always several undo never' "$word" ;;
    --seldial | --config | send | raw | listen) _seldial_files "$word" ;;
    --dial) mapfile -t COMPREPLY < <(compgen -c -- "$word") ;;
    --region | --prefix | --undo-time | --hotkey | --delay) ;;
    *) _seldial_words "$options $([[ $COMP_CWORD != 1 ]] || echo "$commands")" "$word" ;;
  esac
}

_seldial_shortcut() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  case $previous in
    --socket | --client | --config) _seldial_files "$word" ;;
    --hotkey | --delay | --test-copy) ;;
    *) _seldial_words '--print --socket --client --settings --config --hotkey --delay --test-copy --help
      --version' "$word" ;;
  esac
}

complete -F _seldial seldial
complete -F _seldial_uc seldial-uc
complete -F _seldial_shortcut seldial-shortcut
