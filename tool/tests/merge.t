  $ cp "$EXAMPLES"/settings.zon "$EXAMPLES"/harbour-faulty.zon .; mkdir sub; cp settings.zon before
  $ cat > sub/site.zon <<'E'
  > [RUN] {of the site}  // no comment of an overlay comes along
  >    Step = 30 {s}
  >    Output = |x.csv|, 2.50
  >    Note = 'new' {a remark}
  >    [Report] Hours = 6, 12.5, 18 [Deep] On = true EndSect EndSect
  > EndSect
  > [Quay] Length = 7 EndSect [Quay] Length = 8 EndSect
  > E

The overlay's keywords replace those of the base; all other bytes stay, and file names keep their files:

  $ zon merge settings.zon sub/site.zon | diff -U0 settings.zon - | grep '^[-+] '
  -   Step {seconds} = 60
  -   Output = |results\tuesday.csv|
  +   Step {seconds} = 30
  +   Output = |sub\x.csv|, 2.50
  +   Note = 'new' {a remark}
  +      [Deep]
  +         On = true
  +      EndSect  // Deep
  +   Length = 7
  +   Length = 8
  $ zon merge settings.zon sub/site.zon | zon merge - sub/site.zon | zon diff - sub/site.zon | grep -v '^-'
  +++ sub/site.zon
  $ echo '[Run] Step = 45 EndSect' | zon merge settings.zon sub/site.zon - | grep Step
     Step {seconds} = 45
  $ zon merge settings.zon settings.zon | cmp - settings.zon

Into the base itself, and into another file:

  $ zon merge settings.zon sub/site.zon -o settings.zon --dry-run | head -n 2; cmp settings.zon before
  --- settings.zon
  +++ settings.zon
  $ zon merge settings.zon sub/site.zon -o settings.zon --backup; cmp settings.zon~ before; zon get settings.zon Run/Output Quay:2/Length
  sub\x.csv
  2.50
  8
  $ echo old > sub/out.zon; zon merge before sub/site.zon -o sub/out.zon; zon get sub/out.zon Run/Output --resolved | sed "s,$PWD/,,"; cmp before settings.zon~
  sub/x.csv
  2.50

Another file is compared and named as such:

  $ zon merge before sub/site.zon -o sub/out.zon --dry-run; zon merge before sub/site.zon -o new.zon --dry-run | head -n 3; test -e new.zon
  --- sub/out.zon
  +++ sub/out.zon
  @@ -3,7 +3,7 @@
      Title = 'Ellersund, an ordinary Tuesday'
      Workers = 400
      Step {seconds} = 30
  -   Output = |x.csv|, 2.50
  +   Output = |sub\x.csv|, 2.50
      Note = 'new' {a remark}
   
      [Report]
  --- new.zon
  +++ new.zon
  @@ -0,0 +1,23 @@
  [1]
  $ zon merge before sub/site.zon -o nowhere/x; zon merge before sub/site.zon -o sub; zon merge before sub/site.zon --backup
  nowhere/x: error: the file cannot be written: No such file or directory
  sub: error: the file cannot be written: Is a directory
  zon: --backup needs a file to write; see -o
  [2]
  $ zon merge before sub/site.zon -o - | zon diff - sub/out.zon

Nothing is written if a file is missing or faulty:

  $ zon merge before sub/site.zon nowhere.zon -o before; zon merge before harbour-faulty.zon -o before; zon merge - -
  zon: nowhere.zon: No such file or directory
  harbour-faulty.zon:9:24: error: the file name that begins here has no closing bar in its line
     Input = 'weather',  |data\weather\tuesday.csv
                         ^
  harbour-faulty.zon:10: note: the loader stops here: Missing |
  hint: end the file name with |
  zon: standard input can be read only once; use - for one file
  [2]
  $ zon merge harbour-faulty.zon before -o new.zon; cmp before settings.zon~; test -e new.zon
  harbour-faulty.zon:9:24: error: the file name that begins here has no closing bar in its line
     Input = 'weather',  |data\weather\tuesday.csv
                         ^
  harbour-faulty.zon:10: note: the loader stops here: Missing |
  hint: end the file name with |
  [1]
