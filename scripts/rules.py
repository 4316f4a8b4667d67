"""Compares the rules of reports in the sources with those in the manual: rules.py SOURCE

A rule is a word in quotes where a report is made: it has a hyphen, or follows "Report(", "return", "?", ":",
"rule =" or a status. The manual names it in a heading or in the first column of a table of docs/reports.md."""
import glob
import re
import sys

WORD = r'"([a-z]+(?:-[a-z]+)+)"|(?:\bReport\(|\breturn|\?|:|\brule =|ZONX_[A-Z_]+,)\s*"(?!true"|false")([a-z]+)"'

if __name__ == "__main__":
    folder = sys.argv[1]
    made = set()
    for path in sum((glob.glob(f"{folder}/{part}/*.cpp") for part in ("reader", "zonx", "saving", "comparing")), []):
        text = re.sub(r"//.*", "", open(path).read())
        made |= {one or other for one, other in re.findall(WORD, text)}
    page = open(folder + "/docs/reports.md").read()
    named = set(re.findall(r"^(?:###|\|) `([a-z-]+)`", page, re.M))
    for what, words in (("not in docs/reports.md", made - named), ("not in the sources", named - made)):
        for word in sorted(words):
            print(f"{word}: {what}")
    sys.exit(made != named or not made)
