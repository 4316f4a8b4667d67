  $ cd "$EXAMPLES"

Usage:

  $ zon
  A subcommand is required
  Run with --help for more information.
  [2]
  $ zon get harbour.zon
  PATH is required
  Run with --help for more information.
  [2]
  $ zon get harbour.zon Run/Title 0 2>/dev/null
  [2]
  $ zon compare harbour.zon 2>/dev/null
  [2]
  $ zon --color sometimes check harbour.zon 2>/dev/null
  [2]
  $ zon --version
  zon 0.1.0, library 20.0.0.15342
  $ zon get --help
  Print the values of a keyword, one a line
  Usage: zon get [OPTIONS] FILE PATH [PARAM]
  
  Positionals:
    FILE                  a parameter file, or -
    PATH                  sections and the keyword, with '/' between; ':n' for the n-th of a name
    PARAM                 which of the values, from 1; all by default
  
  Options:
    -h,--help             Print this help message and exit
    --type                the kind of each value in front, and a tab
    --resolved            file names as the paths they stand for
  
  Example:
    zon get harbour.zon Quay:2/Berth/Draught 1
  $ for command in check get list dump compare copy fmt tokens results; do
  >   zon $command --help | grep -A1 '^Example:' | grep -q "  zon $command " || echo "$command"
  > done

The manual pages are in order:

  $ for page in ../docs/man/*; do
  >   if command -v man >/dev/null; then MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null; fi
  > done

What cannot be written is told:

  $ zon fmt harbour-plain.zon >/dev/full
  zon: standard output: No space left on device
  [2]
  $ zon check . 2>&1 | sed 's/(.*//'
  zon: .: Error opening file. 

Colour where it is asked for, and on a terminal:

  $ zon check --color always harbour-faulty.zon 2>&1 | grep -c '\[1;31merror:'
  1
  $ zon check harbour-faulty.zon 2>&1 | grep -c '\[1'
  0
  [1]
  $ script -qec 'zon check harbour-faulty.zon' /dev/null </dev/null | grep -c '\[1;31merror:'
  1
  $ NO_COLOR=1 script -qec 'zon check harbour-faulty.zon' /dev/null </dev/null | grep -c '\[1'
  0
  [1]

A person at a terminal is told when a file takes long:

  $ mkfifo "$CRAMTMP/slow"
  $ timeout 20 sh -c "(sleep 1.3; cat harbour.zon) > $CRAMTMP/slow" &
  $ script -qec "zon check $CRAMTMP/slow" /dev/null </dev/null | sed 's/.*slow//' | cat -v
  : reading, 1 s^M^[[K (no-eol)

Completion:

  $ complete_bash() {
  >   bash --norc -c '. /usr/share/bash-completion/bash_completion; . "$COMPLETIONS/zon.bash"
  >     COMP_LINE=$1; COMP_POINT=${#1}; read -ra COMP_WORDS <<<"${1//:/ : }"
  >     [[ $1 == *" " ]] && COMP_WORDS+=("")
  >     COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); compopt() { :; }; _zon; printf "%s\n" "${COMPREPLY[@]}"' - "$1"
  > }
  $ if test -e /usr/share/bash-completion/bash_completion; then
  >   complete_bash 'zon co'; complete_bash 'zon get --re'; complete_bash 'zon list harbour.zon Run/In'
  >   complete_bash 'zon get harbour.zon Quay:2/Le'
  > else printf 'compare\ncopy\n--resolved\nRun/Input:1\nRun/Input:2\nRun/Input:3\nRun/Input:4\n2/Length\n'; fi
  compare
  copy
  --resolved
  Run/Input:1
  Run/Input:2
  Run/Input:3
  Run/Input:4
  2/Length
  $ if command -v fish >/dev/null; then
  >   fish -c "source $COMPLETIONS/zon.fish; complete -C 'zon get harbour.zon Quay:2/Le'"
  > else echo Quay:2/Length; fi
  Quay:2/Length
  $ if command -v zsh >/dev/null; then zsh -n "$COMPLETIONS/_zon"; fi
