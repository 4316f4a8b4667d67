  $ cp "$EXAMPLES"/harbour.zon "$EXAMPLES"/settings.zon "$EXAMPLES"/harbour-template.zon .; cp harbour.zon new.zon
  $ cat > changes <<'C'
  > Quay:2/Length = 97.0
  > Run/Tolerance = 1, 2.50e-6
  > Run/Seed = 2  ; after this line the number of the seed counts
  > add Run/Note = 'x'
  > move Run/Step before Run/Title
  > unset Run/Restart
  > unset Quay:1/
  > add Quay/ before Quay:2/
  > add Quay:2/Name = 'Coal Pier'
  > C
  $ zon set -f changes new.zon
  $ diff() { zon diff "$@" > out; set -- $?; sed 's/^>/ >/' out; return $1; }  # cram takes > for a command

One line for each difference. An inserted section does not shift the following ones:

  $ diff harbour.zon new.zon
  --- harbour.zon
  +++ new.zon
   > Run/Step  (moved)
  ~ Run/Seed: %1 -> 2
  ~ Run/Tolerance[1]: 1.e-3 -> 1
  - Run/Tolerance[3] = 1e-4
  + Run/Note = 'x'
  - Run/Restart = 
  - Quay:1/
  ~ Quay:1/Length: 96.5 -> 97.0
  + Quay:2/
  [1]
  $ zon diff harbour.zon harbour.zon && zon fmt harbour.zon | zon diff - harbour.zon
  $ zon diff --changes harbour.zon new.zon
  Quay:2/Length = 97.0
  Run/Seed = 2
  Run/Tolerance = 1, 2.5E-6
  unset Run/Restart
  add Run/Note = 'x'
  move Run/Step before Run/Title
  unset Quay:1/
  add Quay/ before QUAY:2/
  add Quay:2/Name = 'Coal Pier'
  [1]
  $ zon diff --changes harbour.zon new.zon | zon set -f - harbour.zon; zon diff harbour.zon new.zon
  $ diff --color always settings.zon new.zon | cat -v | sed -n '1p;3,5p'
  ^[[1m--- settings.zon^[[m
  ^[[1;32m+ SYSTEM/^[[m
  ^[[1;36m> Run/Step  (moved)^[[m
  ^[[1;33m~ Run/Title: 'Ellersund, an ordinary Tuesday' -> 'Ellersund, storm warning lifted at noon'^[[m
  $ zon diff --json settings.zon new.zon | grep -A3 '^  "diff\|"Run/Workers.1.",$'
    "differences": [
      {
        "change": "added",
        "path": "SYSTEM",
  --
        "path": "Run/Workers[1]",
        "before": {"kind": "integer", "path": "Run/Workers[1]", "line": 4, "column": 14, "text": "400"},
        "after": {"kind": "substitution", "path": "Run/Workers[1]", "line": 20, "column": 14, "text": "%cores"}
      },

By a key, a section that has changed as a whole keeps its partner:

  $ printf "[A] id=1\nx=1 EndSect [A] id=2\nx=2 EndSect" > a; printf "[A] id=2\nx=20\ny=1 EndSect [a] ID=1\nx=10 EndSect" > b
  $ diff a b
  --- a
  +++ b
  ~ A:1/id: 1 -> 2
  ~ A:1/x: 1 -> 20
  + A:1/y = 1
  ~ a:2/ID: 2 -> 1
  ~ a:2/x: 2 -> 10
  [1]
  $ diff --key Id a b
  --- a
  +++ b
  ~ A:1/x: 2 -> 20
  + A:1/y = 1
   > a:2/  (was A:1/)
  ~ a:2/x: 1 -> 10
  [1]

Tolerances are for reals; a number of another kind is a difference:

  $ printf '[A] a=100.0, 1e-9, 7 EndSect' > a; printf '[A] a=101.0, 0.0, 7.0 EndSect' > b
  $ zon diff --tolerance 0.01 --absolute 1e-8 a b
  --- a
  +++ b
  ~ A/a[3]: 7 -> 7.0
  [1]
  $ zon diff --tolerance 0.0099 --absolute 1e-8 a b; zon diff --tolerance -1 a b
  --- a
  +++ b
  ~ A/a[1]: 100.0 -> 101.0
  ~ A/a[3]: 7 -> 7.0
  --tolerance: -1 is no tolerance
  Run with --help for more information.
  [2]

File names are the files that they lead to:

  $ mkdir sub; echo '[A] f=|x|, |sub\y| EndSect' > a; echo '[A] f=|x|, |y| EndSect' > sub/b; zon diff a sub/b | sed "s,$PWD/,,g"
  --- a
  +++ sub/b
  ~ A/f[1]: x -> sub/x
  $ zon diff --changes a sub/b; zon diff --changes a sub/b | zon set -f - a; cat a; zon diff a sub/b
  A/f = |sub/x|, |sub/y|
  [A] f=|sub/x|, |sub\y| EndSect

A text of several lines, and characters that no terminal shows:

  $ printf "[A] a='x\n  y' b='\t' EndSect" > a; printf "[A] a='x?  y' b='; y\nEnd {', 5 c='a\n\nb' {of\nc} EndSect" > b
  $ zon diff a b; zon diff --changes a b | tee changes
  --- a
  +++ b
  ~ A/a: 'x\n  y' -> 'x?  y'
  ~ A/b[1]: '\t' -> '; y\nEnd {'
  + A/b[2] = 5
  + A/c = 'a\n\nb'
  A/a = 'x?  y'
  A/b = '; y
  End {', 5
  add A/c = 'a
  
  b'
  $ zon set -f changes a && zon diff a b; printf "A/a = 'x\nA/b = 5\n" | zon set -f - a
  stdin:1:7: error: these are no values as a file has them
    A/a = 'x
          ^
  [2]

Templates, broken files:

  $ sed 's/\[Quay()\]/[Quay]/' harbour-template.zon > template.zon; zon diff harbour-template.zon template.zon; zon diff --changes harbour-template.zon template.zon
  --- harbour-template.zon
  +++ template.zon
  ~ Quay/  (its flags)
  zon: a line of changes cannot express the difference of `Quay`
  [2]
  $ cp "$EXAMPLES"/harbour-faulty.zon .; zon diff harbour-faulty.zon new.zon; zon diff nowhere.zon new.zon; zon diff - -; zon diff --key a/b a b
  harbour-faulty.zon:9:24: error: the file name that begins here has no closing bar in its line
     Input = 'weather',  |data\weather\tuesday.csv
                         ^
  harbour-faulty.zon:10: note: the loader stops here: Missing |
  hint: end the file name with |
  zon: nowhere.zon: No such file or directory
  zon: standard input can be read only once; use - for one file
  zon: --key needs the name of a keyword
  [2]
