# Completion of the command zon for fish.
function __zon_paths
    set -l words (commandline -opc)
    set -l section (string match -r '^.*(?=/)' -- (commandline -ct))
    zon list $words[3] $section 2>/dev/null
end

set -l commands check get list dump compare copy fmt tokens results
complete -c zon -n "not __fish_seen_subcommand_from $commands" -f -a "$commands"
complete -c zon -l color -x -a 'auto always never' -d 'When to colour'
complete -c zon -s h -l help -d 'Help'
complete -c zon -l version -d 'Version'
complete -c zon -n '__fish_seen_subcommand_from get' -l type -d 'Kinds of the values'
complete -c zon -n '__fish_seen_subcommand_from get' -l resolved -d 'File names as paths'
complete -c zon -n '__fish_seen_subcommand_from list' -s v -l values -d 'With the values'
complete -c zon -n '__fish_seen_subcommand_from list' -s r -l recursive -d 'All below'
complete -c zon -n '__fish_seen_subcommand_from dump' -l json -d 'As JSON'
complete -c zon -n '__fish_seen_subcommand_from compare' -s t -l template -r -F -d 'Template'
complete -c zon -n '__fish_seen_subcommand_from get list; and test (count (commandline -opc)) -ge 3' -f -a '(__zon_paths)'
