A file of its dump has the same data:

  $ for name in harbour harbour-template; do
  >   zon dump --json "$EXAMPLES/$name.zon" > dumped; zon from-json dumped > made.zon
  >   zon dump --json made.zon | sed "s|made.zon|$EXAMPLES/$name.zon|" | cmp - dumped
  > done
  $ sed -n '/^.Harbour/,/Motto/p' made.zon
  [Harbour]
     Name = 'name'
     Motto = ''
  $ printf '[A] k = 9007199254740993, -99999999999999999999, 1e400, -0.0, %% 7, {} EndSect' | zon dump --json - | zon from-json -
  [A]
     k = 9007199254740993, -99999999999999999999, 1e400, -0.0, %7, {}
  EndSect  // A

A document of another program: members in any order, few of them, and numbers without text:

  $ cat > short.json <<'E'
  > {"sections": [{"children": [{"values": [{"value": 5000000000, "kind": "integer"}, {"value": 3, "kind": "real"},
  >   {"value": 1e5, "kind": "real"}], "name": "k", "kind": "keyword"}, {"kind": "keyword", "name": "l", "values": []}],
  >   "name": "A", "kind": "section"}]}
  > E
  $ zon from-json short.json
  [A]
     k = 5000000000, 3.0, 1e5
     l =
  EndSect  // A
  $ echo '{"sections": []}' | zon from-json -

What is not JSON, has another form, or cannot be in a file is reported with its place:

  $ while read -r json; do printf '%s' "$json" | zon from-json - 2>&1 | head -n 1; done <<'E'
  > {"sections": [}
  > {"sections": 1e999}
  > []
  > {"file": "a"}
  > {"sections": [], "section": []}
  > {"sections": [], "sections": []}
  > {"sections": [{"kind": "section", "name": "A", "children": [], "values": []}]}
  > {"sections": [{"kind": "section", "children": []}]}
  > {"sections": [{"kind": "keyword", "name": "A", "values": []}]}
  > {"sections": [{"kind": "section", "name": true}]}
  > {"sections": [{"kind": "section", "name": "1A", "children": []}]}
  > {"sections": [{"kind": "section", "name": "A] EndSect [B", "children": []}]}
  > {"sections": [{"kind": "section", "name": "A", "remark": "}{", "children": []}]}
  > {"sections": [{"kind": "section", "name-latin1": "€", "children": []}]}
  > {"sections": [{"kind": "section", "name": "A", "multi": true, "children": []}, {"kind": "section", "name": "a", "children": []}]}
  > E
  stdin:1:15: error: syntax error while parsing value - unexpected '}'; expected '[', '{', or a literal
  stdin:1:18: error: number overflow parsing '1e999'
  stdin:1:1: error: a list is not expected here
  stdin:1:1: error: the object has no member `sections`
  stdin:1:26: error: `section` is no member of an object
  stdin:1:27: error: `sections` occurs twice in an object
  stdin:1:45: error: the object cannot have the member `values`
  stdin:1:15: error: the object has no member `name`
  stdin:1:45: error: the kind `keyword` is not possible here
  stdin:1:46: error: a boolean is not expected here
  stdin:1:46: error: `1A` is no name of a section
  stdin:1:57: error: no parameter file can have this section
  stdin:1:45: error: expected a keyword, a section header or `EndSect`, found `{}`
  stdin:1:54: error: a character is not in Latin-1
  stdin:1:110: error: a template cannot have two of `A`
  $ while read -r value; do
  >   printf '{"sections": [{"kind": "section", "name": "A", "children": [{"kind": "keyword", "name": "k", "values": [
  >     {"kind": %s}]}]}]}' "$value" | zon from-json - 2>&1 | head -n 1
  > done <<'E'
  > "integer", "value": 1.5
  > "integer", "value": 2, "text": "1"
  > "integer", "value": 1, "real": 4294967297.0
  > "real", "text": "1.0, 2.0"
  > "real", "value": "1.0"
  > "string"
  > "string", "value": "<CLOB:>"
  > "string", "value": "a\u0000b"
  > "filename", "value": "a|b"
  > "datetime", "value": "a#b"
  > "list", "text": "'no list'"
  > "default"
  > "name"
  > E
  stdin:2:5: error: the members of the value do not fit the kind `integer`
  stdin:2:5: error: the members of the number are different numbers
  stdin:2:5: error: the members of the number are different numbers
  stdin:1:91: error: no parameter file can have this keyword
  stdin:2:5: error: the members of the value do not fit the kind `real`
  stdin:2:5: error: the members of the value do not fit the kind `string`
  stdin:2:5: error: no parameter file can have this string
  stdin:2:5: error: no parameter file can have this string
  stdin:2:5: error: the file name that begins here has no closing bar in its line
  stdin:2:5: error: the date-time that begins here has no closing # in its line
  stdin:2:5: error: no parameter file can have this list
  stdin:2:5: error: no parameter file can have this default
  stdin:2:5: error: the members of the value do not fit the kind `name`
  $ zon from-json nowhere.json
  zon: nowhere.json: No such file or directory
  [2]
  $ echo '{' | zon from-json - > /dev/null 2>&1
  [2]
