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
  $ zon get harbour.zon Run/Title 0
  zon: the number of a value must be 1 or more
  [2]
  $ zon frob harbour.zon
  zon: no subcommand frob; see zon --help
  [2]
  $ zon check ''
  zon: the file name is empty
  [2]
  $ zon check - - </dev/null
  zon: standard input can be read only once; use - for one file
  [2]
  $ zon compare -t - - <harbour-template.zon
  zon: standard input can be read only once; use - for one file
  [2]
  $ zon check - <&-
  zon: stdin: Bad file descriptor
  [2]
  $ zon compare harbour.zon 2>/dev/null
  [2]
  $ zon --color sometimes check harbour.zon 2>/dev/null
  [2]
  $ zon --version
  zon *, library 20.0.0.15342 (glob)
  $ zon get --help
  Print the values of keywords, one per line
  Usage: zon get [OPTIONS] FILE PATH...
  
  Positionals:
    FILE                  a parameter file, or - for standard input
    PATH  ...             sections and keyword, separated by '/'; ':n' selects the n-th of a name, ':*' all of them, '[n]' the n-th value
  
  Options:
    -h,--help             Print this help message and exit
    --default             a value to print for a missing path
    --type                print the kind of each value and a tab before it
    --resolved            print file names as paths
  
  Example:
    zon get harbour.zon Quay:2/Berth/Draught[1] 'Quay:*/Length'
  $ for command in check validate get list dump compare copy fmt tokens results help; do
  >   zon $command --help | grep -A1 '^Example:' | grep -q "  zon $command " || echo "$command"
  >   zon $command --help > "$CRAMTMP/options"; zon help $command | diff "$CRAMTMP/options" - || echo "$command"
  > done
  $ zon --help > "$CRAMTMP/options"; zon help | diff "$CRAMTMP/options" -; zon --color never help fmt | head -n 1
  Print files in a uniform layout
  $ zon help frob
  zon: no subcommand frob; see zon --help
  [2]

Output that cannot be written is reported:

  $ zon fmt harbour-plain.zon >/dev/full
  zon: standard output: No space left on device
  [2]
  $ zon fmt harbour-plain.zon >&-
  zon: standard output: Bad file descriptor
  [2]
  $ zon check . nowhere.zon "$(printf 'no\033[31m.zon')"
  zon: .: Is a directory
  zon: nowhere.zon: No such file or directory
  zon: no?[31m.zon: No such file or directory
  [2]

Colour if requested, and on a terminal:

  $ zon check --color always harbour-faulty.zon | grep -c '\[1;31merror:'
  1
  $ zon check harbour-faulty.zon 2>&1 | grep -c '\[1'
  0
  [1]
  $ script -qec 'zon check harbour-faulty.zon' /dev/null </dev/null | grep -c '\[1;31merror:'
  1
  $ NO_COLOR=1 script -qec 'zon check harbour-faulty.zon' /dev/null </dev/null | grep -c '\[1'
  0
  [1]

On a terminal a progress line is shown if reading takes long:

  $ mkfifo "$CRAMTMP/slow"
  $ timeout 20 sh -c "(sleep 1.3; cat harbour-plain.zon) > $CRAMTMP/slow" &
  $ script -qec "zon check $CRAMTMP/slow" /dev/null </dev/null | sed 's/.*slow//' | cat -v | sed 's/[0-9] s/N s/'
  : reading, N s^M^[[K (no-eol)
