  $ cp "$EXAMPLES"/*.zon .

What all samples have is required; what repeats in one of them may; kinds, numbers of values, and what was seen:

  $ cat > a.zon <<'E'
  > [Run] {today} Step {s} = 1 Name = 'it''s' Depths = 1, 2.5, 3 Plan = |a| Input = 'x', -1 Input = 'y', 2e3
  >   [Berth] Open = true EndSect
  > EndSect
  > E
  $ cat > b.zon <<'E'
  > [RUN] {tomorrow} STEP {s} = 0.5 {now} Name = 'a
  > b' Plan = #2000-01-01# Depths = 7
  >   [Berth] Open = false EndSect [Berth] Note {>= 5; unit m; open; my note} = 3 EndSect
  > EndSect
  > [Extra] Restart = , {ask} Workers = %cores List = '<CLOB:Integer:3>' EndSect
  > E
  $ zon template a.zon b.zon | tee template.zon
  [Run] {required}
     Step {required; s} = 0.0  // 0.5 .. 1
     Name {required} = ''
     Depths {required; open} = 0.0  // 1 to 3 values; 1 .. 7
     Plan {required} = ||
     Input() = '', 0.0  // 'x', 'y'; -1 .. 2e3
     [Berth()] {required}
        Open = false
        Note {unit m; my note} = 0  // 3
     EndSect  // Berth
  EndSect  // Run
  
  [Extra]
     Restart {required} = , {unknown}
     Workers {required} = %name
     List {required} = '<CLOB:>'
  EndSect  // Extra
  $ zon template b.zon - < /dev/null | grep '^\['
  [RUN] {tomorrow}
  [Extra]
  $ zon template harbour.zon > template.zon; zon compare -t template.zon harbour.zon
  $ zon template harbour-template.zon | tail -n 4
  [Tariff] {required}
     Mooring {required} = 0.0  // 0.0
     () {any other fee, of any name} = 0.0  // 0.0
  EndSect  // Tariff

What no template allows is reported, and is a comment of the template:

  $ printf '[A] k = 1 l = 1, 2 m = |a|, 2 EndSect' > c.zon
  $ printf "[A] k = %%one l = 1, 'x', 'y' m = |b|, 'x', 3 EndSect" > d.zon
  $ zon template c.zon d.zon
  d.zon:1:9: error: this is a substitution, but an integer in c.zon:1
  [A] k = %one l = 1, 'x', 'y' m = |b|, 'x', 3 EndSect
          ^~~~
  hint: no template allows both
  d.zon:1:21: error: this is a string, but an integer in c.zon:1
  [A] k = %one l = 1, 'x', 'y' m = |b|, 'x', 3 EndSect
                      ^~~
  hint: no template allows both
  d.zon:1:39: error: this is a string, but an integer in c.zon:1
  [A] k = %one l = 1, 'x', 'y' m = |b|, 'x', 3 EndSect
                                        ^~~
  hint: no template allows both
  [A] {required}
     k {required} = 0  // 1
     // an integer in c.zon:1, a substitution in d.zon:1
     l {required; open} = 0, 0  // 2 to 3 values
     // an integer in c.zon:1, a string in d.zon:1
     m {required; open} = ||, 0  // 2 to 3 values
     // an integer in c.zon:1, a string in d.zon:1
  EndSect  // A
  [1]
  $ zon template a.zon nowhere.zon harbour-faulty.zon 2>&1 | grep -v '^ '
  zon: nowhere.zon: No such file or directory
  harbour-faulty.zon:9:24: error: the file name that begins here has no closing bar in its line
  harbour-faulty.zon:10: note: the loader stops here: Missing |
  hint: end the file name with |
  $ zon template nowhere.zon 2> /dev/null
  [2]
