  $ cp "$EXAMPLES"/*.zon .

A listing for debugging, and the whole tree as JSON:

  $ zon dump harbour-mismatch.zon | head -n 3
  (2) [Run]   (0 sections   2 keywords)   <Run>
     (3) Title =    (1 params)   <Run.Title>
        (9) String: A run with a keyword too many
  $ zon dump --json - <<'E'
  > [A()] {one} default (k) = 5 k() {two} = 1.50, , 'it''s' {three}, {four}, |x\y|, #2000-01-01#, %s, true, 4294967297
  > c() = '<CLOB:Integer:7,String:"s",Filename:"f",Boolean:false,Float:0.5,Double:1e300>', 1e999 EndSect
  > E
  {
    "file": "stdin",
    "sections": [
      {
        "kind": "section",
        "name": "A",
        "multi": true,
        "remark": "one",
        "children": [
          {
            "kind": "definition",
            "name": "k",
            "values": [
              {"kind": "integer", "value": 5}
            ]
          },
          {
            "kind": "keyword",
            "name": "k",
            "multi": true,
            "remark": "two",
            "values": [
              {"kind": "real", "value": 1.5, "text": "1.50"},
              {"kind": "undefined"},
              {"kind": "string", "value": "it's", "remark": "three"},
              {"kind": "unknown", "remark": "four"},
              {"kind": "filename", "value": "x\\y"},
              {"kind": "datetime", "value": "2000-01-01"},
              {"kind": "substitution", "value": "s"},
              {"kind": "boolean", "value": true},
              {"kind": "integer", "value": 1, "real": 4294967297.0, "text": "4294967297"}
            ]
          },
          {
            "kind": "keyword",
            "name": "c",
            "multi": true,
            "values": [
              {"kind": "list", "text": "'<CLOB:Integer:7,String:\"s\",Filename:\"f\",Boolean:false,Float:0.5,Double:1e300>'", "items": [{"kind": "integer", "value": 7}, {"kind": "string", "value": "s"}, {"kind": "filename", "value": "f"}, {"kind": "boolean", "value": false}, {"kind": "float", "value": 0.5}, {"kind": "double", "value": 1e+300}]},
              {"kind": "real", "text": "1e999"}
            ]
          }
        ]
      }
    ]
  }
  $ printf '[A] k = "\344\303"' | tr '"' "'" | sed 's/$/ EndSect/' | zon dump --json - | grep latin
              {"kind": "string", "value-latin1": "\xc3\xa4\xc3\x83"} (esc)
  $ zon dump --json --places harbour-mismatch.zon | grep -m 4 line
        "line": 2,
            "line": 3,
              {"kind": "string", "line": 3, "column": 12, "value": "A run with a keyword too many"}
            "line": 4,
  $ zon dump --places harbour.zon 2>/dev/null
  [2]
  $ zon dump --json harbour.zon | python3 -c 'import json, sys; print(len(json.load(sys.stdin)["sections"]))'
  8

A copy has file names relative to it; those that lead elsewhere are reported. A target that exists is
refused:

  $ hide() { sed "s|$PWD|HERE|g; s|$(dirname "$PWD")|ABOVE|g"; }
  $ (echo "[A] k = |$PWD/x| EndSect"; echo '[B] k = |/srv/x| EndSect') > absolute.zon
  $ mkdir -p runs/1
  $ echo '[A] k = 1, |/srv/x| EndSect' > sound.zon
  $ zon copy sound.zon runs/1/copy.zon && zon copy - runs/piped.zon < sound.zon
  $ zon get --resolved runs/1/copy.zon A/k
  1
  /../srv/x
  $ zon copy absolute.zon runs/2.zon 2>&1 | hide
  zon: runs/2.zon: A.k: the file name is written as |..\..\x|, which leads to ABOVE/x instead of HERE/x
  $ zon copy - runs/3.zon < absolute.zon 2>&1 | hide
  zon: runs/3.zon: A.k: the file name is written as |..\..\x|, which leads to ABOVE/x instead of HERE/x
  $ diff -I Created runs/2.zon runs/3.zon
  $ echo '[A] k = {x}, 4294967297, 7 l = 1, %s EndSect' > lossy.zon; zon copy - runs/lossy.zon < lossy.zon; grep = runs/lossy.zon
  zon: runs/lossy.zon: A.k: an unknown value is written as an undefined value
  zon: runs/lossy.zon: A.k: an integer beyond 32 bits is written as 1
  zon: runs/lossy.zon: A.l: %s is written without its '%', so the written text does not load
     k = , 1, 7
     l = 1, s
  $ zon copy sound.zon runs/2.zon
  zon: runs/2.zon: exists, and a copy would be appended to it; remove it or use another name
  [2]
  $ zon copy harbour.zon nowhere/copy.zon
  zon: nowhere/copy.zon: No such file or directory
  [2]
  $ zon copy - nowhere/copy.zon < harbour.zon
  zon: nowhere/copy.zon: No such file or directory
  [2]
  $ zon copy sound.zon runs
  zon: runs: Is a directory
  [2]
  $ zon copy sound.zon -
  zon: the target of a copy must be a file name
  [2]
  $ (ulimit -f 0; trap '' XFSZ; zon copy sound.zon runs/full.zon)
  zon: runs/full.zon: File too large
  [2]
  $ zon copy harbour-faulty.zon runs/faulty.zon 2>/dev/null
  [1]
  $ ls runs
  1
  2.zon
  3.zon
  lossy.zon
  piped.zon

Every section is compared with the template, with one report each:

  $ zon compare --template harbour-template.zon harbour.zon
  $ zon compare -t harbour-template.zon - 2>/dev/null <<'E'
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

If there are several files, those with reports are named; an error does not stop the comparison of the next:

  $ zon compare harbour.zon harbour-mismatch.zon sound.zon harbour-faulty.zon nowhere.zon - \
  >   -t harbour-template.zon < harbour-mismatch.zon
  harbour-mismatch.zon:
  Error: Unrecognized keyword
  	Temp: Run.Weather
  sound.zon:
  Error: Unrecognized section
  	Cand: A
  harbour-faulty.zon:9:49: error: Missing |
       Input = 'weather',  |data\weather\tuesday.csv
                                                    ^
  zon: nowhere.zon: No such file or directory
  stdin:
  Error: Unrecognized keyword
  	Temp: Run.Weather
  [2]
  $ zon compare -t harbour-template.zon harbour.zon - > /dev/full < harbour-mismatch.zon
  zon: standard output: No space left on device
  [2]
  $ zon compare -t harbour-template.zon - - </dev/null
  zon: standard input can be read only once; use - for one file
  [2]
  $ zon compare -t nowhere.zon harbour.zon
  zon: nowhere.zon: No such file or directory
  [2]
