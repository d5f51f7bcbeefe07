# fish completion for seldial, seldial-uc and seldial-shortcut

complete -c seldial -e
complete -c seldial -o log -d 'write log lines to standard output'
complete -c seldial -o jsonlog -d 'write log lines as JSON'
complete -c seldial -o help -d 'print the usage text'
complete -c seldial -o changelog -d 'print the change log'
complete -c seldial -o showapi -d 'print the message reference'
complete -c seldial -f -a 'dialerpipename= clientpipename='

complete -c seldial-uc -e
complete -c seldial-uc -f
complete -c seldial-uc -n __fish_use_subcommand \
    -a 'check enable disable status reload settings press send raw listen'
complete -c seldial-uc -n '__fish_seen_subcommand_from send raw listen' -F
complete -c seldial-uc -l dial -x -a '(__fish_complete_command)' -d 'run a program to dial'
complete -c seldial-uc -l open -x -a 'tel sip callto' -d 'let the desktop open a URI'
complete -c seldial-uc -l region -x -d 'the country of numbers without a country code'
complete -c seldial-uc -l format -x -a 'e164 national raw' -d 'how to dial the number'
complete -c seldial-uc -l prefix -x -d 'dial these digits first'
complete -c seldial-uc -l confirm -x -a 'always several undo never' -d 'when to ask before dialling'
complete -c seldial-uc -l undo-time -x -d 'how long a call can be undone'
complete -c seldial-uc -l hotkey -x -d 'the hot key'
complete -c seldial-uc -l delay -x -d 'how long the other application gets to copy'
complete -c seldial-uc -l seldial -r -F -d 'the program to start'
complete -c seldial-uc -l config -r -F -d 'the configuration file'
complete -c seldial-uc -l conversation -d 'show everything that is sent over the two sockets'
complete -c seldial-uc -l help -d 'print a help text'
complete -c seldial-uc -l version -d 'print the version'

complete -c seldial-shortcut -e
complete -c seldial-shortcut -f
complete -c seldial-shortcut -l print -d 'print the command that sets the shortcut'
complete -c seldial-shortcut -l socket -r -F -d 'send the command to the seldial at this socket'
complete -c seldial-shortcut -l client -r -F -d 'wait for the answer at this socket'
complete -c seldial-shortcut -l settings -d 'show and write the configuration of seldial-uc'
complete -c seldial-shortcut -l config -r -F -d 'the configuration file'
complete -c seldial-shortcut -l hotkey -x -d 'the shortcut to start with'
complete -c seldial-shortcut -l delay -x -d 'how long the other application gets to copy'
complete -c seldial-shortcut -l test-copy -x -d 'show this text and test copying it'
complete -c seldial-shortcut -l help -d 'print a help text'
complete -c seldial-shortcut -l version -d 'print the version'
