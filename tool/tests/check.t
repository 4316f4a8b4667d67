  $ cd "$EXAMPLES"

Every error is reported, with the related place and a hint; an error does not stop the check of the next file:

  $ zon check harbour-template.zon harbour-plain.zon
  $ zon check harbour-faulty.zon nowhere.zon . - 2>&1 <<'E'
  > [A] {größer}
  > 	k = 'ä', "ö"
  > 	l = 1
  > EndSect
  > ?
  > E
  harbour-faulty.zon:9:24: error: the file name that begins here has no closing bar in its line
     Input = 'weather',  |data\weather\tuesday.csv
                         ^
  harbour-faulty.zon:10: note: the loader stops here: Missing |
  hint: end the file name with |
  zon: nowhere.zon: No such file or directory
  zon: .: Is a directory
  
  stdin:2:12: error: a text in double quotes is not allowed
  	k = 'ä', "ö"
  	         ^~~
  hint: write the text in single quotes: 'text'
  
  stdin:5:1: error: expected a section header, found `?`
  ?
  ^
  hint: every keyword belongs to a section: [Name] ... EndSect
  [2]
  $ zon check harbour-faulty.zon >/dev/null
  [1]
  $ printf '[A] k = \033\001\177, "\033[1m" EndSect' | zon check - | grep -c '[[:cntrl:]]'
  0
  [1]

Warnings are no findings, except with --strict:

  $ zon check harbour.zon | grep -c warning:
  2
  $ zon check --strict harbour.zon harbour-plain.zon >/dev/null
  [1]
  $ zon check --strict harbour-plain.zon

JSON is valid for any name and any bytes:

  $ printf '[A] {\344} k = "x"\nk = 1 l = 1 l = 2 EndSect' > "$CRAMTMP/a:ä.zon"
  $ zon check --format json "$CRAMTMP/a:ä.zon" harbour-template.zon | sed "s|$CRAMTMP|TMP|"
  [
    {
      "severity": "error",
      "rule": "double-quote",
      "message": "a text in double quotes is not allowed",
      "hint": "write the text in single quotes: 'text'",
      "place": {"file": "TMP/a:ä.zon", "line": 1, "column": 13, "endLine": 1, "endColumn": 16, "offset": 12, "length": 3},
      "sourceLine-latin1": "[A] {ä} k = \"x\""
    }
  ]
  $ zon check --format json harbour-template.zon
  []

SARIF: columns count UTF-16 code units, and each rule is listed once:

  $ printf '[A]\n {\344 \360\237\230\200} k = "\303\266"\n l = 1 EndSect [B]\n k = 1 k = 2\n j = "x"\nEndSect' > "$CRAMTMP/a:ä.zon"
  $ zon check --format sarif "$CRAMTMP/a:ä.zon" nowhere.zon > "$CRAMTMP/log"
  zon: nowhere.zon: No such file or directory
  [2]
  $ python3 - "$CRAMTMP/log" <<'E'
  > import json, sys
  > run = json.load(open(sys.argv[1], encoding="utf-8"))["runs"][0]
  > print(run["columnKind"], run["tool"]["driver"]["rules"], run["invocations"])
  > for result in run["results"]:
  >   place = result["locations"][0]["physicalLocation"]
  >   print(result["ruleIndex"], result["level"], result["message"]["text"])
  >   print(place["artifactLocation"]["uri"].rsplit("/", 1)[1], list(place["region"].values()))
  >   print([place["message"]["text"] for place in result.get("relatedLocations", [])])
  > E
  utf16CodeUnits [{'id': 'double-quote'}, {'id': 'repeated-keyword'}] [{'executionSuccessful': False}]
  0 error a text in double quotes is not allowed (write the text in single quotes: 'text')
  a%3A%C3%A4.zon [2, 13, 2, 16, 18, 4]
  []
  0 error a text in double quotes is not allowed (write the text in single quotes: 'text')
  a%3A%C3%A4.zon [5, 6, 5, 9, 60, 3]
  []
  1 warning `k` occurs twice in the section, every other keyword once (a query without a number returns the first one)
  a%3A%C3%A4.zon [4, 8, 4, 9, 49, 1]
  ['the first one is here']
