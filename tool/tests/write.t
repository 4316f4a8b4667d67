  $ cp "$EXAMPLES"/*.zon .

A listing for debugging, and all that the tree holds as JSON:

  $ zon dump harbour-mismatch.zon | head -n 3
  (2) [Run]   (0 sections   2 keywords)   <Run>
     (3) Title =    (1 params)   <Run.Title>
        (9) String: A run with a keyword too many
  $ zon dump --json - <<'E' | tr -d '\n ' | sed 's/{"kind"/\n&/g'
  > [A()] {one} default (k) = 5 k() {two} = 1.50, , 'it''s' {three}, {four}, |x\y|, #2000-01-01#, %s, true
  > c() = '<CLOB:Integer:7,String:"s",Filename:"f",Boolean:false,Float:0.5,Double:1e300>', 1e999 EndSect
  > E
  {"file":"stdin","sections":[
  {"kind":"section","name":"A","multi":true,"remark":"one","children":[
  {"kind":"definition","name":"k","values":[
  {"kind":"integer","value":5}]},
  {"kind":"keyword","name":"k","multi":true,"remark":"two","values":[
  {"kind":"real","value":1.5,"text":"1.50"},
  {"kind":"undefined"},
  {"kind":"string","value":"it's","remark":"three"},
  {"kind":"unknown","remark":"four"},
  {"kind":"filename","value":"x\\y"},
  {"kind":"datetime","value":"2000-01-01"},
  {"kind":"substitution","value":"s"},
  {"kind":"boolean","value":true}]},
  {"kind":"keyword","name":"c","multi":true,"values":[
  {"kind":"list","text":"'<CLOB:Integer:7,String:\"s\",Filename:\"f\",Boolean:false,Float:0.5,Double:1e300>'","items":[
  {"kind":"integer","value":7},
  {"kind":"string","value":"s"},
  {"kind":"filename","value":"f"},
  {"kind":"boolean","value":false},
  {"kind":"float","value":0.5},
  {"kind":"double","value":1e+300}]},
  {"kind":"real","text":"1e999"}]}]}]} (no-eol)
  $ printf '[A] k = "\344\303"' | tr '"' "'" | sed 's/$/ EndSect/' | zon dump --json - | grep latin
                "value-latin1": "\xc3\xa4\xc3\x83" (esc)
  $ zon dump --json harbour.zon | python3 -c 'import json, sys; print(len(json.load(sys.stdin)["sections"]))'
  8

The written form is its own, and what it does not keep is told:

  $ grep -v ' %' harbour.zon > plain.zon
  $ zon fmt plain.zon > once.zon && zon fmt once.zon > twice.zon
  $ diff -I Created once.zon twice.zon
  $ zon fmt harbour.zon | grep Scenario
  zon: harbour.zon: substitutions such as %scenario are written without their '%'; the text does not load again
     Scenario = scenario, 'winter'
  $ zon check once.zon

A copy leads to the same files, and never goes behind another:

  $ mkdir runs && zon copy plain.zon runs/copy.zon
  $ zon get --resolved harbour.zon Run/Input:2 2 > there
  $ zon get --resolved runs/copy.zon Run/Input:2 2 | diff - there
  1c1
  < /tmp/cramtests-2r3hj102/data/weather/february.csv
  ---
  > /tmp/cramtests-2r3hj102/write.t/data/weather/february.csv
  [1]
  $ zon copy - runs/piped.zon < plain.zon
  $ zon get --resolved runs/piped.zon Run/Input:2 2 | diff - there
  1c1
  < /tmp/cramtests-2r3hj102/data/weather/february.csv
  ---
  > /tmp/cramtests-2r3hj102/write.t/data/weather/february.csv
  [1]
  $ zon copy harbour.zon runs/copy.zon
  zon: runs/copy.zon: exists; a copy would be written behind what it holds
  [2]
  $ zon copy harbour.zon nowhere/copy.zon
  zon: nowhere/copy.zon: cannot be written
  [2]
  $ zon copy - nowhere/copy.zon < harbour.zon
  zon: nowhere/copy.zon: cannot be written
  [2]
  $ zon copy harbour-faulty.zon runs/faulty.zon 2>/dev/null
  [1]
  $ ls runs
  copy.zon
  piped.zon

Every section is held against the template, one report each:

  $ zon compare --template harbour-template.zon harbour.zon
  $ zon compare -t harbour-template.zon - <<'E'
  > [Run] Weather = 'fair' EndSect
  > [Sea] EndSect
  > [Tariff] Mooring = 'dear' EndSect
  > E
  Error: Unrecognized keyword
  	Temp: Run.Weather
  Error: Unrecognized section
  	Cand: Sea
  Error: Parameter type conflict
  	Keyw: Tariff.Mooring
  	No:1
  [1]
  $ zon compare -t nowhere.zon harbour.zon
  zon: nowhere.zon: Error opening file. (ERR_FILE_OPEN , 1001)
  [2]
