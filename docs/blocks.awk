# Makes a page of the manual into a session of cram: awk -f blocks.awk PAGE >PAGE.t
#
#   c, cpp    a complete program: compiled with warnings as errors, run in a folder with a copy of examples/.
#             A text block after a line that ends in "prints:" is its output.
#   fortran   the same; left out with -v no_fortran=1. The session uses FC and FC_LINK.
#   pascal    the same; left out with -v no_pascal=1. The session uses PASCAL.
#   python    the same, run by PYTHON; left out with -v no_python=1.
#   zon       a file that loads. With a text block after a line that ends in "error:" it does not load, and the
#             text is the diagnostic: "name:line:position: message". With one after a line that ends in "report:"
#             or "reports:", the text is what check_file prints. A heading "### `rule`" names the rule of the
#             reports below it.
#   console   lines "$ command" with their output, run in a copy of examples/ with the command zon.
#   ebnf      each name is defined once, and each name but the first is used.
#
# Any other block is an error. A link to a file that does not exist shows up as the output of ls. Text that is
# not to be tested is indented instead of fenced. The session uses CC, CXX, WARNINGS, LINK and ROOT, and the
# programs read_file, check_file and zon; with -v no_tool=1 the console blocks are left out.
BEGIN {
  follows["c"] = follows["cpp"] = follows["fortran"] = follows["pascal"] = follows["python"] = "prints:"
  follows["zon"] = "(error|reports?):"
  compile["c"] = "$CC -std=c99 $WARNINGS program.c -o program $LINK"
  compile["cpp"] = "$CXX -std=c++17 $WARNINGS program.cpp -o program $LINK"
  compile["fortran"] = "$FC program.f90 -o program $FC_LINK"
  compile["pascal"] = "{ $PASCAL program.pas >log || cat log; }"
  suffix["fortran"] = "f90"
  suffix["pascal"] = "pas"
  run["c"] = run["cpp"] = run["fortran"] = run["pascal"] = run["python"] = 1
  run["zon"] = run["console"] = run["ebnf"] = 1
  print "  $ fresh() { cd \"$CRAMTMP\" && rm -rf block && mkdir block && cp -r \"$ROOT/examples\" block && cd block; }"
}
function fault(what) {
  print FILENAME ":" FNR ": " what >"/dev/stderr"
  failed = 1
}
# A file with the body of the block, by a here-document.
function put(name) {
  printf "%s:%d\n  $ fresh; cat >%s <<'END'\n%s  > END\n", FILENAME, start, name, indented("  > ")
}
function indented(by,    text) {
  text = by body
  gsub(/\n/, "\n" by, text)
  return substr(text, 1, length(text) - length(by))
}
function check_names(    n, i, words, first, defined, count) {
  gsub(/"[^"]*"|'[^']*'|\?[^?]*\?|\(\*[^*]*\*\)/, "", body)
  gsub(/=/, " = ", body)
  n = split(body, words, /[^A-Za-z0-9_=]+/)
  for (i = 1; i <= n; ++i) {
    if (words[i] == "=") ++defined[words[i - 1]]
    else if (words[i] != "") ++count[words[i]]
    if (first == "") first = words[i]
  }
  for (i in count) {
    if (defined[i] != 1 || (count[i] < 2 && i != first)) fault(i " is not defined once, or not used")
  }
}
# Prints the last block, with what it is expected to print.
function flush(    name, i, n, lines) {
  if ((kind == "fortran" && no_fortran) || (kind == "pascal" && no_pascal)) {
    # There is no compiler.
  } else if (kind in compile) {
    put("program." (kind in suffix ? suffix[kind] : kind))
    printf "  $ %s && ./program%s\n%s", compile[kind], expected == "" ? " >output" : "", expected
  } else if (kind == "python" && !no_python) {
    put("program.py")
    printf "  $ $PYTHON program.py%s\n%s", expected == "" ? " >output" : "", expected
  } else if (kind == "zon") {
    name = expected == "" ? "block.zon" : substr(expected, 3, index(expected, ":") - 3)
    put(name)
    if (is_report) {
      printf "  $ check_file %s || true\n%s", name, expected
      if (rule != "") printf "  $ check_file --rules %s | sort -u\n  %s\n", name, rule
    } else {
      printf "  $ read_file %s >listing || grep ':[0-9]*:[0-9]*: ' listing\n%s", name, expected
    }
  } else if (kind == "console" && !no_tool) {
    # The manual does not show the status of a command.
    printf "%s:%d\n  $ fresh; cd examples\n", FILENAME, start
    n = split(body, lines, "\n")
    for (i = 1; i < n; ++i) print "  " lines[i] (lines[i] ~ /^\$ / ? " || true" : "")
  } else if (kind == "ebnf") {
    check_names()
  }
  kind = expected = ""
}
/^```/ && !inside {
  inside = 1
  type = substr($0, 4)
  if (type == "text") {
    is_report = last ~ /reports?:$/
    if (!(kind in follows) || between != 1 || last !~ (follows[kind] "$")) fault("text that belongs to no block")
  } else {
    flush()
    kind = type
    body = ""
    start = FNR
    if (!(kind in run)) fault("unknown kind of block '" kind "'")
  }
  next
}
/^```$/ {
  inside = between = 0
  if (type == "text") flush()
  next
}
inside {
  if (type == "text") expected = expected "  " $0 "\n"
  else body = body $0 "\n"
  next
}
/```/ { fault("a fence that is indented") }
/^#/ { rule = match($0, /^### `[a-z-]+`$/) ? substr($0, 6, length($0) - 6) : "" }
NF {
  ++between
  last = $0
  while (match($0, /\]\([^)#:]+/)) {
    links = links " " substr($0, RSTART + 2, RLENGTH - 2)
    $0 = substr($0, RSTART + RLENGTH)
  }
}
END {
  flush()
  if (inside) fault("a fence that is not closed")
  folder = FILENAME
  sub(/[^\/]*$/, "", folder)
  if (links != "") print "Links\n  $ cd \"$ROOT/" folder "\" && ls -d" links " >\"$CRAMTMP/links\""
  exit failed
}
