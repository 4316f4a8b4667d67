#!/usr/bin/env python3
"""Compares the grammar of the manual with the grammar of the parser: docs/grammar.md, reader/zongrammar.y.

Both describe the words of `file` and of `section` over the same tokens. Every other rule is substituted,
so each side is a regular expression. Two expressions are equal if no sequence of tokens leads them to sets
of partial derivatives of which only one accepts. VALUES, the parser's short form of several items, is left
out.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
# The tokens of the parser, by their names in the manual. Literals name themselves, in upper case.
TOKENS = {"name": "IDENTIFIER", "integer": "INTEGER", "real": "REAL", "boolean": "BOOLEAN", "string": "STRING",
          "file_name": "FILENAME", "date_time": "DATETIME", "remark": "BRACE_TEXT"}
NOTHING = ("seq",)


def chain(*parts):
    """A sequence without sequences in it, so that equal ones are recognised."""
    return ("seq", *(inner for part in parts for inner in (part[1:] if part[0] == "seq" else (part,))))


def manual(text):
    """The rules of the first ebnf block."""
    block = re.sub(r"\(\*.*?\*\)", "", re.search(r"^```ebnf\n(.*?)^```", text, re.M | re.S)[1], flags=re.S)
    words = re.findall(r'"[^"]*"|\?[^?]*\?|\w+|[][={}()|,;]', block)

    def choice():
        parts = [sequence()]
        while words[0] == "|":
            words.pop(0)
            parts.append(sequence())
        return ("alt", *parts)

    def sequence():
        parts = [item()]
        while words[0] == ",":
            words.pop(0)
            parts.append(item())
        return ("seq", *parts)

    def item():
        word = words.pop(0)
        if word not in "[{(":
            return word.strip('"').upper() if word[0] == '"' else TOKENS.get(word, word)
        inner = choice()
        words.pop(0)
        return {"[": ("alt", inner, NOTHING), "{": ("star", inner), "(": inner}[word]

    rules = {}
    while words:
        name = words.pop(0)
        words.pop(0)
        rules[name] = choice()
        words.pop(0)
    return rules


def parser(text):
    """The rules of the yacc grammar. A left-recursive rule becomes a repetition."""
    rules = {}
    for name, body in re.findall(r"^(\w+)\n(.*?);$", re.sub(r"/\*.*?\*/", "", text, flags=re.S), re.M | re.S):
        sides = [re.findall(r"'.'|\w+", side.lstrip(" :")) for side in body.replace("'|'", "").split("\n    |")]
        sides = [[word.strip("'") for word in side] for side in sides if "VALUES" not in side]
        first = [("seq", *side) for side in sides if side[:1] != [name]]
        more = [("seq", *side[1:]) for side in sides if side[:1] == [name]]
        rules[name] = ("seq", ("alt", *first), ("star", ("alt", *more)))
    return rules


def expand(rules, rule):
    """The rule with every name substituted but `section`, which is a token here."""
    if isinstance(rule, str):
        return expand(rules, rules[rule]) if rule in rules and rule != "section" else rule
    return (rule[0], *(expand(rules, part) for part in rule[1:]))


def tokens(rule):
    return {rule} if isinstance(rule, str) else set().union(*map(tokens, rule[1:]))


def accepts(rule):
    """Whether the rule accepts no token at all."""
    if isinstance(rule, str):
        return False
    return rule[0] == "star" or (all if rule[0] == "seq" else any)(map(accepts, rule[1:]))


def after(rule, token):
    """What may follow the token at the start of the rule."""
    if isinstance(rule, str):
        return {NOTHING} if rule == token else set()
    kind, *parts = rule
    if kind == "alt":
        return set().union(*(after(part, token) for part in parts))
    if kind == "star":
        return {chain(rest, rule) for rest in after(parts[0], token)}
    if not parts:
        return set()
    found = {chain(rest, *parts[1:]) for rest in after(parts[0], token)}
    return found | after(("seq", *parts[1:]), token) if accepts(parts[0]) else found


def difference(left, right):
    """The shortest sequence of tokens that only one side accepts; None if there is none."""
    alphabet, seen, queue = sorted(tokens(left) | tokens(right)), set(), [((), frozenset([left]), frozenset([right]))]
    for path, one, other in queue:
        if any(map(accepts, one)) != any(map(accepts, other)):
            return path
        for token in alphabet:
            pair = tuple(frozenset().union(*(after(rule, token) for rule in side)) for side in (one, other))
            if pair not in seen:
                seen.add(pair)
                queue.append(((*path, token), *pair))
    return None


def main():
    page, grammar = manual((ROOT / "docs/grammar.md").read_text()), parser((ROOT / "reader/zongrammar.y").read_text())
    faults = 0
    for name, start in ("file", "parameter_file"), ("section", "section"):
        path = difference(expand(page, page[name]), expand(grammar, grammar[start]))
        if path is not None:
            faults += 1
            print(f"{name}: only one of docs/grammar.md and reader/zongrammar.y accepts: {' '.join(path) or 'nothing'}")
    return 1 if faults else 0


sys.exit(main())
