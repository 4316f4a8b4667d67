# Completion of the command zon for fish.
# The words after the subcommand, without options.
function __zon_given
    set -l words (commandline -opc)
    while set -q words[1]; and not contains -- $words[1] get list set unset add rename
        set -e words[1]
    end
    string match -v -- '-?*' $words[2..]
end

function __zon_paths
    set -l file (__zon_given)
    set -l section (string match -r '^.*(?=/)' -- (commandline -ct))
    zon list $file[1] $section 2>/dev/null </dev/null
end

set -l commands check validate get list dump from-json compare diff merge copy files template new doc fmt set unset add rename tokens results help
complete -c zon -n "not __fish_seen_subcommand_from $commands" -f -a "$commands"
complete -c zon -n '__fish_seen_subcommand_from help; and test (count (commandline -opc)) -eq 2' -f -a "$commands"
complete -c zon -n '__fish_seen_subcommand_from help' -f
complete -c zon -l color -x -a 'auto always never' -d 'When to colour'
complete -c zon -s h -l help -d 'Help'
complete -c zon -l version -d 'Version'
complete -c zon -n '__fish_seen_subcommand_from check validate' -l format -x -a 'text json sarif' -d 'Form of the reports'
complete -c zon -n '__fish_seen_subcommand_from check' -l strict -d 'Status 1 for warnings too'
complete -c zon -n '__fish_seen_subcommand_from get' -l type -d 'Kinds of the values'
complete -c zon -n '__fish_seen_subcommand_from get' -l resolved -d 'File names as paths'
complete -c zon -n '__fish_seen_subcommand_from get' -l default -x -d 'Value for a missing path'
complete -c zon -n '__fish_seen_subcommand_from list' -s v -l values -d 'With the values'
complete -c zon -n '__fish_seen_subcommand_from list' -s r -l recursive -d 'With the content of the sections'
complete -c zon -n '__fish_seen_subcommand_from dump' -l json -d 'As JSON'
complete -c zon -n '__fish_seen_subcommand_from list' -l places -d 'Line and column before each path'
complete -c zon -n '__fish_seen_subcommand_from dump' -l places -d 'With line and column of each node'
complete -c zon -n '__fish_seen_subcommand_from diff' -l key -x -d 'Keyword that tells sections of one name apart'
complete -c zon -n '__fish_seen_subcommand_from diff' -l tolerance -x -d 'Relative tolerance of reals'
complete -c zon -n '__fish_seen_subcommand_from diff' -l absolute -x -d 'Absolute tolerance of reals'
complete -c zon -n '__fish_seen_subcommand_from diff' -l json -d 'As JSON'
complete -c zon -n '__fish_seen_subcommand_from diff' -l changes -d 'As a file of changes'
complete -c zon -n '__fish_seen_subcommand_from merge' -s o -l output -r -F -d 'File to write'
complete -c zon -n '__fish_seen_subcommand_from compare validate new doc' -s t -l template -r -F -d 'Template'
complete -c zon -n '__fish_seen_subcommand_from files' -l missing -d 'Only those that do not exist'
complete -c zon -n '__fish_seen_subcommand_from files' -l json -d 'As JSON'
complete -c zon -n '__fish_seen_subcommand_from files' -l copy-to -x -a '(__fish_complete_directories)' -d 'Folder for copies'
complete -c zon -n '__fish_seen_subcommand_from fmt' -l check -d 'Names of files that would change'
complete -c zon -n '__fish_seen_subcommand_from fmt' -l diff -d 'What would change'
complete -c zon -n '__fish_seen_subcommand_from fmt' -l write -d 'Change the files'
complete -c zon -n '__fish_seen_subcommand_from fmt' -l plain -d 'Without comments'
complete -c zon -n '__fish_seen_subcommand_from set' -s f -l changes -r -F -d 'File of changes'
complete -c zon -n '__fish_seen_subcommand_from set' -l type -x -a 'string filename text' -d 'Kind of the values'
complete -c zon -n '__fish_seen_subcommand_from set' -l and -d 'A further path follows'
complete -c zon -n '__fish_seen_subcommand_from add' -l type -x -a 'string filename' -d 'Kind of the values'
complete -c zon -n '__fish_seen_subcommand_from set unset add rename merge' -l dry-run -d 'Print what would change'
complete -c zon -n '__fish_seen_subcommand_from set unset add rename merge' -l backup -d 'Keep the old file'
complete -c zon -n '__fish_seen_subcommand_from set add rename; and test (count (__zon_given)) -eq 1' -f -a '(__zon_paths)'
complete -c zon -n '__fish_seen_subcommand_from get unset; and test (count (__zon_given)) -ge 1' -f -a '(__zon_paths)'
complete -c zon -n '__fish_seen_subcommand_from list; and test (count (__zon_given)) -eq 1' -f -a '(__zon_paths)'
