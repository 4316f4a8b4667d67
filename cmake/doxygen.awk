# Filter for doxygen: makes // comments of class headers into /// comments, and repeats a comment that precedes
# several declarations for each of them, up to the next empty line.
function braces(text) {
  return gsub(/{/, "{", text) - gsub(/}/, "}", text)
}
/^ *\/\/\/@[{}]/ { grouped = /{/; own = 0; print $0 "\n"; next }
/^ *\/\*\*/ { comment = ""; block = 1 }
block {
  print
  sub(/@name.*/, "")
  comment = comment $0 "\n"
  own = whole = 1
  block = !/\*\//
  next
}
/^ *\/\/ / {
  sub(/\/\//, "///")
  if (!grouped) comment = (own ? comment : "") $0 "\n"
  own = whole = 1
  print
  next
}
/^ *$/ { if (!grouped) comment = ""; print; next }
{
  if (comment != "" && !own && whole && body == 0) printf "%s", comment
  own = 0
  if (body > 0 || (/{$/ && /[():]/ && !/^ *(class|struct|enum|extern)/)) body += braces($0)
  whole = /[;}]$|[;}] +\/\/|:$/
  if (/{$/ && body == 0) comment = ""
  sub(/[;,] +\/\/ /, "& "); sub(/\/\/  /, "///< ")
  print
}
