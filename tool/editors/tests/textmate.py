"""A small TextMate engine: a stack of rules; the earliest match wins, the end of a rule before others."""
import json
import re


class Grammar:
    def __init__(self, path):
        self.root = json.load(open(path, encoding="utf-8"))

    def expand(self, patterns):
        for rule in patterns:
            rule = self.root["repository"][rule["include"][1:]] if "include" in rule else rule
            yield from self.expand(rule["patterns"]) if rule.keys() == {"patterns"} else [rule]

    def next_match(self, top, line, at):
        found = [(re.compile(top["end"]).search(line, at), None)] if "end" in top else []
        for rule in self.expand(top.get("patterns", [])):
            found.append((re.compile(rule.get("match") or rule["begin"]).search(line, at), rule))
        return min((f for f in found if f[0]), key=lambda f: f[0].start(), default=(None, None))

    def lines(self, text):
        """Yields for each line the innermost scope of each character, and whether it begins inside a rule."""
        stack = [self.root]
        for line in text.split("\n"):
            inside, line, at, out = len(stack) > 1, line + "\n", 0, []
            while at < len(line):
                match, rule = self.next_match(stack[-1], line, at)
                out += [stack[-1].get("name")] * ((match.start() if match else len(line)) - at)
                if not match:
                    break
                owner = rule or stack.pop()
                out += [owner.get("captures", {"0": owner})["0"].get("name")] * len(match.group())
                stack += [owner] if rule and "begin" in rule else []
                at = match.end()
            yield out[:-1] if len(out) == len(line) else out, inside
