  $ cd "$EXAMPLES"

The caret is below the last character that was read, also in long lines and after tabs and UTF-8:

  $ zon list - <<'E'
  > [A] {größer}
  > 	k = 'ä', ?
  > EndSect
  > E
  stdin:2:12: error: syntax error
     k = 'ä', ?
              ^
  [1]
  $ (printf '[A] k = '; yes 1, | head -n 200 | tr -d '\n'; printf ']]') | zon list -
  stdin:1:409: error: syntax error
    1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,]]
                                                                ^
  [1]

A byte order mark, which editors do not show, is named:

  $ printf '\357\273\277[A] EndSect' | zon list - 2>&1 | head -n 1
  stdin:1:1: error: syntax error (remove the byte order mark at the start of the file)

An error after a complete section is reported, and so is a missing end:

  $ printf '[A] EndSect\n?\n' | zon list -
  stdin:2:1: error: syntax error
    ?
    ^
  [1]
  $ printf '[A]\n  k = 1' | zon get - A/k
  stdin:2:7: error: syntax error
      k = 1
          ^
  [1]

Values are found by the path of their keyword, with either separator, in any letter case:

  $ zon get harbour.zon Quay:2/length
  96.5
  $ zon get harbour.zon quay:1.BERTH:2.crane.lift 2
  2.1
  $ zon get harbour.zon Run/Tolerance --type
  real	1.e-3
  real	2.5E-6
  real	1e-4
  $ zon get harbour.zon Harbour/Survey --type
  datetime	2030-09-02 08:30:00
  string	lead line
  unknown\t (esc)
  $ zon get harbour.zon Harbour/Depths 2 | wc -lc
        1       1
  $ zon get harbour.zon Harbour/Entrance/Pilotage/Call --type
  list	'<CLOB:String:"Ellersund pilot",Integer:12,Boolean:true>'
  $ zon get harbour.zon Traffic/Ship/Name
  Anna 'Lucky' Berg

File names as written, and as paths; in standard input they are relative to the working directory:

  $ zon get harbour.zon Run/Input:3 2
  ..\shared\.\fleet.csv
  $ zon get --resolved harbour.zon Run/Input:3 2 | sed "s|$(dirname "$PWD")|ABOVE|"
  ABOVE/shared/fleet.csv
  $ cat harbour.zon | zon get --resolved - Run/Input:3 2 | sed "s|$(dirname "$PWD")|ABOVE|"
  ABOVE/shared/fleet.csv
  $ cd / && zon results "$EXAMPLES/harbour.zon" | sed "s|$(dirname "$EXAMPLES")|ABOVE|"; cd "$EXAMPLES"
  ABOVE/runs/*/examples/harbour.zon - Result Files/ (glob)
  $ zon results - < harbour.zon | sed "s|$(dirname "$PWD")|ABOVE|"
  ABOVE/runs//stdin - Result Files/
  $ printf '[SYSTEM] UseCustomResultFolder = true CustomResultFolder = |/tmp/x| EndSect' | zon results -
  /tmp/x
  $ zon results - < harbour-plain.zon | sed "s|$PWD|HERE|"
  HERE/stdin - Result Files/

Several paths, every instance, and a default for what is missing:

  $ zon get harbour.zon 'Quay:*/Length' Run/Input:*[1] Harbour/Survey[2]
  240.0
  96.5
  31
  arrivals
  weather
  fleet
  chart
  lead line
  $ zon get harbour.zon --type --default -1 'quay:*.Bollard[2]' 'Pier:*/Length' Run/Title
  real\t25.0 (esc)
  real\t12.0 (esc)
  missing\t-1 (esc)
  missing\t-1 (esc)
  string\tEllersund, storm warning lifted at noon (esc)

Paths that are malformed or missing; the values of the others are printed:

  $ zon get harbour.zon Quay:2x/Name
  harbour.zon: error: `Quay:2x/Name` is no path here
  hint: a path has the form Section:2/Keyword[3]
  [2]
  $ zon get harbour.zon 'Quay:*x/Name'
  harbour.zon: error: `Quay:*x/Name` is no path here
  hint: a path has the form Section:2/Keyword[3]
  [2]
  $ zon get harbour.zon Harbour/Tides --default 1
  harbour.zon:67:4: error: `Harbour/Tides` is a section
     [Tides] {metres above datum}
     ^~~~~~~
  [1]
  $ zon get - Run.Inpt Quay:2/Length <harbour.zon
  stdin:16:1: error: the section `Run` has no keyword `Inpt`
  [Run] {the day that is simulated}
  ^~~~~
  hint: did you mean Input?
  96.5
  [1]
  $ zon get harbour.zon 'Pier:*/Name'
  harbour.zon: error: the file has no section `Pier`
  [1]
  $ zon get harbour.zon Run/Title 2
  harbour.zon:17:4: error: the keyword `Title` has no value 2
     Title = 'Ellersund, storm warning lifted at noon'
     ^~~~~
  [1]
  $ zon list harbour.zon Run/Entrance
  zon: harbour.zon: no section Run/Entrance; see zon list
  [1]
  $ zon list harbour.zon 'Quay:*'
  harbour.zon: error: `Quay:*` is no path here
  hint: a path has the form Section:2/Keyword[3]
  [2]

Listings consist of paths:

  $ zon list harbour.zon
  SYSTEM/
  Run/
  Harbour/
  Quay:1/
  Quay:2/
  QUAY:3/
  Traffic/
  Tariff/
  $ zon list harbour.zon Quay:2/ -rv
  Quay:2/Name = 'Ferry Stage'
  Quay:2/Length = 96.5
  Quay:2/Bollard = 1, 12.0
  Quay:2/Rails = false
  Quay:2/Berth/
  Quay:2/Berth/Number = 3
  Quay:2/Berth/Draught = 4.1
  Quay:2/Berth/Foreman = 'O''Rane',  (re)
  Quay:2/Berth/Reserved:1 = #2031-02-14 05:00:00#, #2031-02-14 09:00:00#
  Quay:2/Berth/Reserved:2 = #2031-02-14 15:00:00#, #2031-02-14 21:00:00#
  $ zon list -v harbour.zon Run | grep %
  Run/Scenario = %scenario, 'winter'
  Run/Workers = %cores
  Run/Seed = %1
  $ printf '[A] k = |/srv/x|, |a\\b|, |./c/d| EndSect' | zon list -v - A
  A/k = |/srv/x|, |a\b|, |./c/d|
  $ zon list harbour-template.zon Tariff
  Tariff/Mooring
  Tariff/()
  $ zon get harbour-template.zon 'Tariff/()' --type
  real	0.0
  $ zon list -r harbour.zon | grep -v '/$' | while read -r path; do
  >   zon get harbour.zon "$path" >/dev/null || echo "$path"
  > done

With line and column, of the values too:

  $ printf "[A] {x}\n  k = 'it''s', ,\n      -2\n  [B]\n  k = |f|\n  EndSect\nEndSect" > "$CRAMTMP/places.zon"
  $ zon list --places -rv "$CRAMTMP/places.zon"
  1:1\tA/ (esc)
  2:3\tA/k (esc)
  2:7\tA/k[1] = 'it''s' (esc)
  2:15\tA/k[2] =  (esc)
  3:7\tA/k[3] = -2 (esc)
  4:3\tA/B/ (esc)
  5:3\tA/B/k (esc)
  5:7\tA/B/k[1] = |f| (esc)
  $ zon list --places "$CRAMTMP/places.zon" A
  2:3\tA/k (esc)
  4:3\tA/B/ (esc)

Tokens, one per line; reading continues after an error:

  $ printf "[A] k = 1, , 'a\nb\\\\' f = |c\\d| EndSect" | zon tokens -
  section A
  keyword k
  integer 1
  undefined
  string a\nb\\
  keyword f
  filename c\\d
  EndSect
  $ zon tokens nowhere.zon
  zon: nowhere.zon: No such file or directory
  [2]
  $ zon tokens - < harbour.zon
  stdin:5:60: error: Format error. Expected start of section '['
       each value has to be. /* Comments of this form nest, */ so this one ends here. */
                                                               ^
  [1]
