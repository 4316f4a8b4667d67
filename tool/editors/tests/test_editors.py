"""Checks the files for one editor, `vim`, `textmate` or `pygments`, against cases.txt and examples/."""
import glob
import importlib.util
import json
import os
import random
import re
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
sys.dont_write_bytecode = True
sys.path[:0] = [HERE, HERE + "/../pygments"]
from textmate import Grammar  # noqa: E402

GRAMMAR = Grammar(HERE + "/../vscode/syntaxes/zon.tmLanguage.json")
# For each letter of cases.txt the beginnings of the TextMate scope, the Pygments token, the Vim group.
LETTERS = {
    "r": ("comment.block.doc", "Comment.Special", "zonRemark"), "c": ("comment", "Comment", "zonLine zonBlock"),
    "q": ("constant.character", "Literal.String.Esc", "zonEscape"), "f": ("string.other", "Literal.String.O", "zonFile"),
    "s": ("string", "Literal.String", "zonString"), "d": ("constant.other", "Literal.Date", "zonDateTime"),
    "v": ("variable.par", "Name.Variable", "zonSubst"), "n": ("constant.num", "Literal.Number", "zonNumber"),
    "b": ("constant.lang", "Keyword.Constant", "zonBoolean"), "D": ("keyword.o", "Keyword.Declaration", "zonDefault"),
    "h": ("entity", "Name.Class", "zonSection"), "k": ("variable.other", "Name.Attribute", "zonKey"),
    "E": ("keyword.control", "Keyword", "zonEndSect"), "p": ("punctuation", "Punctuation", "zonPunctuation"),
    "!": ("invalid", "Error", "zonError zonHeaderError")}
# Not in harbour.zon: words that only look like headers and ends, and lists over several lines.
HARD = """[a] // [x]
   k = '[y] EndSect', |EndSect|, /* EndSect
  [z] */
      -2, 'a
b', true
   [B()] {EndSect} EndSection = 1 ENDSECT
endsect
"""


def letter(column, name):
    return next((k for k, row in LETTERS.items() if (name or "").startswith(tuple(row[column].split()))), " ")


def textmate(text):
    return "\n".join("".join(letter(0, scope) for scope in line) for line, _ in GRAMMAR.lines(text))


def lines_of(text):
    """Yields each line and whether it begins outside texts and comments."""
    yield from ((line, not inside) for line, (_, inside) in zip(text.splitlines(), GRAMMAR.lines(text)))


def check_textmate(texts, harbour):
    settings = json.load(open(HERE + "/../vscode/language-configuration.json"))
    rules, depth, folds = {**settings["indentationRules"], **settings["folding"]["markers"]}, 0, 0
    for line in (line for line, is_code in lines_of(harbour) if is_code and line):
        depth -= bool(re.search(rules["decreaseIndentPattern"], line))
        assert len(line) - len(line.lstrip()) == 3 * depth, "wrong indentation: " + line
        depth += bool(re.search(rules["increaseIndentPattern"], line))
        folds += bool(re.search(rules["start"], line)) - bool(re.search(rules["end"], line))
        assert folds == depth, "wrong folding: " + line
    return [textmate(text) for text in texts]


def check_pygments(texts, _):
    from zon_lexer import ZonLexer
    tokens = [list(ZonLexer(stripnl=False, ensurenl=False).get_tokens(text)) for text in texts]
    assert ["".join(v for _, v in t) for t in tokens] == texts, "the tokens do not add up to the text"
    return ["".join(re.sub(r"[^\n]", letter(1, str(kind)[6:]), v) for kind, v in t) for t in tokens]


def jumps(text):
    """Yields the places of each [ and its EndSect, in both directions."""
    opened = []
    for i, row in enumerate(textmate(text).split("\n"), 1):
        for match in re.finditer(r"ph|E+", row):
            here = [i, match.start() + 1]
            if match.group() == "ph":
                opened.append(here)
            else:
                there = opened.pop()
                yield from ((here, there), (there, here))


def check_vim(texts, harbour):
    layout = harbour + HARD
    flat = [line.lstrip() if is_code else line for line, is_code in lines_of(layout)]
    with tempfile.TemporaryDirectory() as folder:
        names = {"ZON_VIM": HERE + "/../vim", "ZON_JOB": folder + "/job"}
        with open(names["ZON_JOB"], "w") as file:
            json.dump({"texts": texts, "flat": flat, "from": [here for here, _ in jumps(layout)]}, file)
        subprocess.run(["vim", "-Nu", "NONE", "-i", "NONE", "-n", "-es", "-S", HERE + "/dump.vim"],
                       stdin=subprocess.DEVNULL, timeout=100, env={**os.environ, **names})
        done = json.load(open(names["ZON_JOB"]))
    assert done["indented"] == layout.splitlines(), "gg=G changes the layout"
    assert done["jumps"] == [there for _, there in jumps(layout)], "% jumps to a wrong place"
    return ["\n".join("".join(letter(2, group) for group in line) for line in text) for text in done["groups"]]


def main(editor):
    if editor == "vim" and "+syntax" not in subprocess.getoutput("vim --version"):
        return print("SKIPPED: no Vim with syntax colours")
    if editor == "pygments" and not importlib.util.find_spec("pygments"):
        return print("SKIPPED: no Pygments")
    groups = [g for g in re.split(r"(?m)^#.*\n", open(HERE + "/cases.txt", encoding="utf-8").read()) if g]
    texts, marks = (["\n".join(re.findall("(?m)^%s(.*)" % sign, group)) for group in groups] for sign in ">:")
    paths = glob.glob(HERE + "/../../../examples/*.zon")
    examples = {os.path.basename(path): open(path, encoding="utf-8").read() for path in paths}
    # Beyond the table: the editors agree on the examples and on random words.
    pieces = "[ ] ( ) = , ' '' /* */ // ; { } | # % 7 .5 1e e + - EndSect true Default a_1 _ / * @".split()
    dice = random.Random(7)
    texts += [*examples.values(), *("".join(dice.choices(pieces + ["\n", " "] * 4, k=60)) for _ in range(200))]
    found = globals()["check_" + editor](texts, examples["harbour.zon"])
    for whole in zip(texts, marks + [textmate(text) for text in texts[len(marks):]], found):
        assert len({len(rows) for rows in whole}) == 1, "not one class for each character: " + whole[0]
        for text, want, got in zip(*(rows.split("\n") for rows in whole)):
            same = all(a == b or char.isspace() for char, a, b in zip(text, want, got))
            assert same, "%s\n%s expected\n%s found" % (text, want, got)
    faulty = [name for name, row in zip(examples, found[len(marks):]) if "!" in row]
    assert faulty == ["harbour-faulty.zon"], "unexpected faults in: %s" % faulty


main(sys.argv[1])
