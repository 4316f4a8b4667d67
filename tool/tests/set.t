  $ cp "$EXAMPLES"/*.zon .
  $ changes() { command=$1; shift; zon $command --dry-run "$@" | grep '^[-+] '; }

A value keeps its kind, its comments and its remarks; all other bytes stay:

  $ zon set harbour.zon Quay:2/Length 97; diff -U0 "$EXAMPLES"/harbour.zon harbour.zon | grep -a "^[-+] "
  -   Length = 96.5
  +   Length = 97.0
  $ changes set harbour.zon Run/Workers 8 --and harbour/motto "Don't; wait // here" --and Run/Verbose true
  -   Workers = %cores
  +   Workers = 8
  -   Verbose = fAlSe
  +   Verbose = true
  -   Motto = 'A fair wind; a full hold // that''s all'   // this comment begins only here
  +   Motto = 'Don''t; wait // here'   // this comment begins only here
  $ changes set harbour.zon 'Quay:*/Length' 1e2 2>&1; changes set harbour.zon 'Quay:*/Rails' FALSE
  harbour.zon:136:13: error: `Quay:3/Length` is an integer, and `1e2` is none
     Length = 31
              ^~
  hint: --type text sets a value of another kind
  -   Rails = true
  +   Rails = false
  +   Rails = false
  $ changes set harbour.zon 'Run/Input:2[2]' 'a b.csv' --and Run/Start '2031-02-13 00:00:00' --and Run/Title "'x'"
  -   Title = 'Ellersund, storm warning lifted at noon'
  +   Title = 'x'
  -   Start = #2031-02-14 00:00:00#
  +   Start = #2031-02-13 00:00:00#
  -   Input = 'weather',  |data\weather\february.csv|
  +   Input = 'weather',  |a b.csv|
  $ changes set harbour.zon Tariff/Rebate -5 --and Tariff/Water -.5 --and Run/Title -- --and
  -   Title = 'Ellersund, storm warning lifted at noon'
  +   Title = '--and'
  -   Water = 14.5
  +   Water = -.5
  -   Rebate = -20
  +   Rebate = -5

One value replaces the one of the path, several replace all of the keyword:

  $ changes set harbour.zon Run/Tolerance 1E-4 --and Harbour/Silting 1 2 --and Run/Input:4 '[x]' '++'
  -   Tolerance = 1.e-3, 2.5E-6 {absolute}, 1e-4 {relative}
  +   Tolerance = 1E-4, 2.5E-6 {absolute}, 1e-4 {relative}
  -   Input = 'chart',    |/srv/charts/ellersund.map|
  +   Input = '[x]',    |++|
  -   Silting {metres a year} = .35, +0.75, 1.
  +   Silting {metres a year} = 1., 2.0
  $ changes set harbour.zon 'Harbour/Depths[2]' 8 --and 'Harbour/Basins[2]' 3
  -   Basins = 2
  +   Basins = 2, 3
  -   Depths = 9.5, , 7.25,                      // undefined: the second and the last
  +   Depths = 9.5, 8 , 7.25,                      // undefined: the second and the last
  $ zon set harbour.zon 'Harbour/Depths[6]' 8
  harbour.zon:47:4: error: the keyword `Depths` has no value 6
     Depths = 9.5, , 7.25,                      // undefined: the second and the last
     ^~~~~~
  [1]
  $ zon set harbour.zon 'Harbour/Depths[1]' 8 9
  harbour.zon:47:13: error: `Harbour/Depths[1]` selects one value
     Depths = 9.5, , 7.25,                      // undefined: the second and the last
              ^~~
  hint: a path without [n] selects all of them
  [2]

A new keyword and --type text are as a file has them; a new name like another one is a warning:

  $ changes set harbour.zon Run/Titel "'a' {b}" 2 --and Run/Step 1.5 --type text
  harbour.zon:16:1: warning: the section `Run` has no keyword `Titel` yet; it is added
  [Run] {the day that is simulated}
  ^~~~~
  hint: did you mean Title?
  -   Step {seconds} = 60
  +   Step {seconds} = 1.5
  +   Titel = 'a' {b}, 2
  $ zon set harbour.zon Run/New list
  harbour.zon: error: `list` is no value as a file has it
  hint: --type string sets a text without quotes
  [2]
  $ changes set harbour.zon Run/Title "'a'" --and Run/Workers 8 --type string
  -   Title = 'Ellersund, storm warning lifted at noon'
  +   Title = '''a'''
  -   Workers = %cores
  +   Workers = '8'
  $ changes set harbour.zon 'Run/Restart' 'a b' --type filename
  -   Restart =                                  // an empty place: no value yet
  +   Restart = |a b|                                  // an empty place: no value yet
  $ zon set harbour.zon Run/Title 'a|b' --type filename
  harbour.zon:17:12: error: `a|b` cannot be written as a file name
     Title = 'Ellersund, storm warning lifted at noon'
             ^~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~
  [2]

A missing path leaves the file as it is, also if others exist:

  $ cp harbour.zon before; zon set harbour.zon Run/Step 5 --and Qay/Length 5
  harbour.zon: error: the file has no section `Qay`
  hint: did you mean Quay?
  [1]
  $ zon set harbour.zon Run/Step 5 --and Quay/Berth 5
  harbour.zon:87:4: error: `Quay/Berth` is a section
     [Berth]
     ^~~~~~~
  [1]
  $ zon set harbour.zon Run/Step 5 --and 'Run/Step[' 5
  harbour.zon:23:4: error: `Run/Step[` is no path here
     Step {seconds} = 60
     ^~~~
  hint: a path has the form Section:2/Keyword[3]
  [2]
  $ zon set harbour.zon Run/Step 5 --and Run/Step
  zon: a path and a value are needed; see zon set --help
  [2]
  $ cmp harbour.zon before

Standard input goes to standard output; an equal value writes nothing; the old file stays with --backup:

  $ printf '[A] k = 1 // one\nEndSect' | zon set - A/k 2
  [A] k = 2 // one
  EndSect (no-eol)
  $ touch -d 2000-01-01 settings.zon; zon set settings.zon Run/Step 60 --backup; stat -c %y settings.zon | cut -c 1-4
  2000
  $ zon set settings.zon Run/Step 61 --backup; diff -U0 settings.zon~ settings.zon | grep '^[-+] '
  -   Step {seconds} = 60
  +   Step {seconds} = 61

A file of changes, for many files; each has all changes or none:

  $ cat > changes <<'C'
  > // for all runs
  > Run/Step = 62  ; seconds
  > 
  > Run/Report/Hours[2] = 13.50
  > Run/Title = '// no comment', {m}  // one
  > C
  $ zon set -f changes harbour.zon nowhere.zon harbour-faulty.zon settings.zon
  harbour.zon:16:1: error: the section `Run` has no section `Report`
  [Run] {the day that is simulated}
  ^~~~~
  zon: nowhere.zon: No such file or directory
  harbour-faulty.zon:9:24: error: the file name that begins here has no closing bar in its line
     Input = 'weather',  |data\weather\tuesday.csv
                         ^
  harbour-faulty.zon:10: note: the loader stops here: Missing |
  hint: end the file name with |
  [2]
  $ cmp harbour.zon before; diff -U0 settings.zon~ settings.zon | grep '^[-+] '
  -   Title = 'Ellersund, an ordinary Tuesday'
  +   Title = '// no comment', {m}
  -   Step {seconds} = 60
  +   Step {seconds} = 62
  -      Hours = 6, 12.5, 18
  +      Hours = 6, 13.50, 18
  $ printf 'A/b\n = 3\nA/b = 1,\nA/b[1] = 1, 2\nA/b = x y\n' > bad; zon set -f bad harbour.zon
  bad:1:1: error: a line has the form Section/Keyword = values, or begins with add, move or unset
    A/b
    ^
  bad:2:2: error: a line has the form Section/Keyword = values, or begins with add, move or unset
     = 3
     ^
  bad:4:10: error: a path with [n] has one value
    A/b[1] = 1, 2
             ^
  bad:5:7: error: these are no values as a file has them
    A/b = x y
          ^
  [2]
  $ echo 'Run/Step = 63' | zon set -f - settings.zon && zon get settings.zon Run/Step
  63
  $ echo 'Run/Step = 63' | zon set -f - harbour.zon -
  zon: standard input can be read only once; use - for one file
  [2]

A file of changes also adds, moves and removes; each path is that of the file after the lines before it:

  $ cat > changes <<'C'
  > unset Quay:1/
  > add Quay/ before Quay:2/     // between the two that are left
  > add Quay:2/Name = 'Coal Pier'
  > add Quay:*/Lit = true
  > add Quay:3/Depth before Quay:3/Name = 4.5, 'low'
  > move Quay:1/Rails before Quay:1/Name
  > move Tariff/ last
  > unset Quay:1/Bollard
  > C
  $ zon set --dry-run -f changes before > new.diff; cp before new.zon; patch -s new.zon new.diff; zon list -r new.zon | grep -Ei '^(quay[^/]*|tariff|traffic)/[^/]*$' | grep -v ':[23]/L\|[fc]/[A-Z]'
  Quay:1/
  Quay:1/Rails
  Quay:1/Name
  Quay:1/Length
  Quay:1/Lit
  Quay:2/
  Quay:2/Name
  QUAY:3/
  QUAY:3/Depth
  QUAY:3/Name
  Traffic/
  Tariff/
  $ echo 'add Quay before Run/' | zon set -f - before
  stdin:1:1: error: a keyword must be in a section
    add Quay before Run/
    ^
  [2]
  $ for line in 'move Quay:1/Rails before Run/Step' 'add Quay/x before Quay:2/Name' 'move Qay/ last'; do echo "$line" | zon set -f - before; done
  before:23:4: error: `Run/Step` is no sibling of the same kind
     Step {seconds} = 60
     ^~~~
  before:120:4: error: `Quay:2/Name` is no sibling of the same kind
     Name = 'Ferry Stage'
     ^~~~
  before: error: the file has no section `Qay`
  hint: did you mean Quay?
  [1]

Removing; every path is that of the file as it was:

  $ changes unset harbour.zon Quay/Bollard Quay/Bollard:2 Quay/Bollard 'Run/Tolerance[1]' 'Run/Tolerance[3]' Run/Step[1]
  -   Step {seconds} = 60
  -   Tolerance = 1.e-3, 2.5E-6 {absolute}, 1e-4 {relative}
  +   Step {seconds} = 
  +   Tolerance = 2.5E-6 {absolute}
  -   Bollard = 1, 25.0
  -   Bollard = 2, 25.0
  $ zon unset settings.zon Run/Report/Hours Run/Report Run/Report/; cat settings.zon
  // The settings of a run. The value of Workers is beyond what the hosts allow.
  [Run]
     Title = '// no comment', {m}
     Workers = 400
     Step {seconds} = 63
     Output = |results\tuesday.csv|
  
  EndSect  // Run
  $ zon unset settings.zon Run/Step Run/Stp Run/Report
  settings.zon:2:1: error: the section `Run` has no keyword `Stp`
  [Run]
  ^~~~~
  hint: did you mean Step?
  settings.zon:2:1: error: the section `Run` has no keyword `Report`
  [Run]
  ^~~~~
  [1]
  $ (ulimit -f 0; trap '' XFSZ; zon unset settings.zon Run/Step); zon get settings.zon Run/Step
  settings.zon: error: the file cannot be written: File too large
  63

Adding one more, after the last of its name:

  $ changes add harbour.zon Run/Input "'tides'" '|tides.csv|'; changes add harbour.zon Quay:2/Bollard -1 -.5
  +   Input = 'tides', |tides.csv|
  +   Bollard = -1, -.5
  $ changes add harbour.zon 'Quay:*/Berth/' 2>&1; changes add harbour.zon 'Quay:2/Note' 'a b' '[c]' --type string
  +   [Berth]
  +   EndSect  // Berth
  +   [Berth]
  +   EndSect  // Berth
  +   [Berth]
  +   EndSect  // Berth
  +   Note = 'a b', '[c]'
  $ zon add harbour.zon Pier/ --backup; zon add harbour.zon Pier/Length; diff -U0 harbour.zon~ harbour.zon | tail -n +4
  +
  +[Pier]
  +   Length = 
  +EndSect  // Pier
  $ zon add harbour.zon Quay/ 5; zon add harbour.zon Quay; zon add harbour.zon Quay:2/; zon add harbour.zon Quay/x 5 m
  zon: a section has no values
  zon: a keyword must be in a section
  zon: `Quay:2` is no name of a new node
  zon: `m` is no value as a file has it; --type string sets a text without quotes
  [2]
  $ zon add harbour.zon Qay/x
  harbour.zon: error: the file has no section `Qay`
  hint: did you mean Quay?
  [1]

Renaming keeps values, remarks and places:

  $ changes rename harbour.zon 'Quay:*/Length' Metres; changes rename harbour.zon Harbour/Tides/ Water
  -   Length = 240.0
  +   Metres = 240.0
  -   Length = 97.0
  +   Metres = 97.0
  -   Length = 31
  +   Metres = 31
  -   [Tides] {metres above datum}
  +   [Water] {metres above datum}
  -   EndSect  // Tides
  +   EndSect  // Water
  $ zon rename harbour.zon Run/Step 'a b'; zon rename harbour.zon 'Run/Step[1]' Steps
  zon: `a b` is no name of a section or keyword
  harbour.zon:23:21: error: `Run/Step[1]` is an integer
     Step {seconds} = 60
                      ^~
  [1]

What makes no sense is refused before anything is read or written:

  $ echo 'Run/Step = 5' > ch; zon set -f ch harbour.zon --and Run/Step 3
  zon: --and does not go with -f; see zon set --help
  [2]
  $ zon diff --key '' harbour.zon harbour.zon 2>&1 | head -1; zon files --copy-to '' harbour.zon 2>&1 | head -1
  --key: must not be empty
  --copy-to: must not be empty
  $ zon set -f '' harbour.zon 2>&1 | head -1; zon merge harbour.zon harbour.zon -o '' 2>&1 | head -1
  --changes: must not be empty
  --output: must not be empty
  $ echo '[A] k = 1 EndSect' | zon set - A/k 2 --backup
  zon: --backup needs a file, and standard input is none
  [2]
  $ zon --version > /dev/full
  zon: standard output: No space left on device
  [2]
