  $ cd "$EXAMPLES"

Every mismatch is reported with its place in both files; an error does not stop the next file:

  $ zon validate -t harbour-template.zon harbour.zon
  $ zon validate -t harbour-template.zon harbour-mismatch.zon harbour-faulty.zon nowhere.zon - 2>&1 <<'E'
  > [Run] Verbose = 1
  > Stp = 60 EndSect
  > E
  harbour-mismatch.zon:4:4: error: `Run/Weather` is no keyword of the template
     Weather = 'fair'
     ^~~~~~~
  harbour-template.zon:14:1: note: the section of the template
  
  harbour-faulty.zon:9:24: error: the file name that begins here has no closing bar in its line
     Input = 'weather',  |data\weather\tuesday.csv
                         ^
  harbour-faulty.zon:10: note: the loader stops here: Missing |
  hint: end the file name with |
  zon: nowhere.zon: No such file or directory
  
  stdin:1:17: error: `Run/Verbose` is an integer, the template wants a truth value
  [Run] Verbose = 1
                  ^
  harbour-template.zon:25:14: note: the template defines it here
  
  stdin:2:1: error: `Run/Stp` is no keyword of the template
  Stp = 60 EndSect
  ^~~
  harbour-template.zon:14:1: note: the section of the template
  hint: did you mean Step?
  [2]
  $ zon validate -t harbour-template.zon harbour-mismatch.zon harbour-faulty.zon >/dev/null
  [1]

Warnings of a load are not printed, and file names of standard input are relative to the working directory:

  $ printf '[A] f = |harbour.zon| k = 99999999999 EndSect' >"$CRAMTMP/f.zon"
  $ printf '[A()] f = |f| {exists} k = 1 EndSect' | zon validate --template=- "$CRAMTMP/f.zon" | sed "s|$CRAMTMP|TMP|g"
  TMP/f.zon:1:9: error: `A/f` names a file that does not exist: TMP/harbour.zon
  [A] f = |harbour.zon| k = 99999999999 EndSect
          ^~~~~~~~~~~~~
  stdin:1:11: note: the condition is here
  $ printf '[A()] f = |f| {exists} k = 1 EndSect' >"$CRAMTMP/t.zon"
  $ zon validate -t "$CRAMTMP/t.zon" - <"$CRAMTMP/f.zon"

A template with a fault is reported once:

  $ printf '[A] k = 1 {> 0; < 0} EndSect' | zon validate -t - harbour.zon harbour.zon
  stdin:1:9: error: `A/k`: no number is `> 0` and `< 0`
  [A] k = 1 {> 0; < 0} EndSect
          ^
  hint: correct the condition or the value of the template
  [2]
  $ zon validate -t harbour-faulty.zon harbour.zon harbour.zon | grep -c error:
  1
  $ zon validate -t nowhere.zon harbour.zon
  zon: nowhere.zon: No such file or directory
  [2]
  $ zon validate -t - harbour.zon - </dev/null
  zon: standard input can be read only once; use - for one file
  [2]

JSON and SARIF have the names and places of both files:

  $ printf '[A] k = 1 {\303\266 x} EndSect' >"$CRAMTMP/t.zon"
  $ printf '[A] {\303\266} k = 1, 2 EndSect' | zon validate -t "$CRAMTMP/t.zon" --format json - | sed "s|$CRAMTMP|TMP|"
  [
    {
      "severity": "error",
      "rule": "surplus-value",
      "message": "`A/k` has 2 values, the template wants 1",
      "place": {"file": "stdin", "line": 1, "column": 17, "endLine": 1, "endColumn": 18, "offset": 16, "length": 1},
      "related": {"message": "the template defines it here", "file": "TMP/t.zon", "line": 1, "column": 9, "endLine": 1, "endColumn": 10, "offset": 8, "length": 1},
      "sourceLine": "[A] {\xc3\xb6} k = 1, 2 EndSect" (esc)
    }
  ]
  $ printf '[A()] {\303\266} k = 1 EndSect' >"$CRAMTMP/t.zon"
  $ printf '[A] {\303\266} k = 1, 2 EndSect' | zon validate -t "$CRAMTMP/t.zon" --format sarif - |
  >   grep -E 'uri"|region' | sed "s|$CRAMTMP|TMP|"
                  "artifactLocation": {"uri": "stdin"},
                  "region": {"startLine": 1, "startColumn": 16, "endLine": 1, "endColumn": 17, "byteOffset": 16, "byteLength": 1}
                  "artifactLocation": {"uri": "file://TMP/t.zon"},
                  "region": {"startLine": 1, "startColumn": 15, "endLine": 1, "endColumn": 16, "byteOffset": 15, "byteLength": 1}
