"""from-json against dump --json: fromjson.py ZON. Documents of random trees, and each *.zon in the folder that
the variable ZON_REAL_SETTINGS names, are printed as files and dumped again. Damaged documents are refused, or mean
what they say."""
import json
import os
import random
import struct
import subprocess
import sys

zon = sys.argv[1]
chance = random.Random(4)


def run(command, text):
    result = subprocess.run([zon, *command, "-"], input=text, capture_output=True, check=False)
    assert result.returncode in (0, 2), (command, result)
    return result


def without_ignored(node):
    """The same, with numbers as bits and without what from-json does not read."""
    if isinstance(node, dict):
        ignored = ("file", "line", "column", "items")
        return {key: without_ignored(value) for key, value in node.items() if key not in ignored}
    if isinstance(node, list):
        return [without_ignored(value) for value in node]
    return struct.pack("d", node) if isinstance(node, float) else node


def check(document):
    """Prints the file of a document and dumps it."""
    text = document if isinstance(document, bytes) else json.dumps(document).encode()
    made = run(["from-json"], text)
    assert made.returncode == 0, (text, made.stderr)
    dumped = json.loads(run(["dump", "--json"], made.stdout).stdout)
    expected = without_ignored(json.loads(text))
    assert without_ignored(dumped) == expected, (made.stdout, expected, without_ignored(dumped))


def text_without(marks):
    letters = [c for c in "aZ09 _',;/*\\%=[]()<>:\"#|{}\t\r\n\x01\x7f-+.ä€😀" if c not in marks]
    return "".join(chance.choice(letters) for _ in range(chance.randrange(9)))


def text_member(key, marks):
    if chance.random() < 0.1:
        return {key + "-latin1": text_without(marks).replace("€", "").replace("😀", "") + "äx"}
    return {key: text_without(marks)}


def integer():
    number = chance.choice([0, 1, -1, 2**31 - 1, -(2**31), 2**31, 2**53 + 1, -(2**63), 2**63 - 1, chance.getrandbits(62)])
    low = (number + 2**31) % 2**32 - 2**31
    return {"value": low} if low == number else {"value": low, "real": float(number), "text": str(number)}


def real():
    text = chance.choice(["0.0", "-0.0", "1.50", ".5", "-7.", "1e400", "-1e400", "1e-400", "5E-324", repr(chance.random())])
    return {"text": text} if "e400" in text else {"text": text, "value": float(text)}


def value(is_definition):
    kind = chance.choice("integer real boolean string filename datetime substitution list unknown empty".split())
    if kind == "empty":
        return {"kind": "default" if is_definition else "undefined"}
    members = {
        "integer": integer,
        "real": real,
        "boolean": lambda: {"value": chance.random() < 0.5},
        "string": lambda: text_member("value", ""),
        "filename": lambda: text_member("value", "|\n"),
        "datetime": lambda: text_member("value", "#\n"),
        "substitution": lambda: {"value": chance.choice(["a", "B_2", "007"])},
        "list": lambda: {"text": "'<CLOB:Integer:-3,String:\"it''s\">'",
                         "items": [{"kind": "integer", "value": -3}, {"kind": "string", "value": "it's"}]},
        "unknown": lambda: {"remark": text_without("}\r\n") + "r"},
    }[kind]()
    if kind != "unknown" and chance.random() < 0.2:
        members.update(text_member("remark", "}\r\n") if chance.random() < 0.5 else {"remark": "r"})
    members = {key: text for key, text in members.items() if not key.startswith("remark") or text != ""}
    return {"kind": kind, **members}


def owners(depth, is_template):
    nodes = []
    for number in range(chance.randrange(5)):
        kind = chance.choice(["section", "keyword", "definition"]) if depth > 0 else "section"
        name = f"n{number}" if is_template else chance.choice(["a", "A", "Bc_1"])
        node = {"kind": kind, "name": name}
        if is_template and kind != "definition" and chance.random() < 0.5:
            node["multi"] = True
        if chance.random() < 0.2:
            node["remark"] = text_without("}\r\n") + "r"
        if kind == "section":
            node["children"] = owners(depth + 1, is_template) if depth < 5 else []
        else:
            node["values"] = [value(kind == "definition") for _ in range(chance.randrange(1, 5))]
        nodes.append(node)
    if is_template and depth > 0 and chance.random() < 0.3:
        kind = chance.choice(["keyword", "definition"])
        nodes.append({"kind": kind, "name": "", "multi": True, "values": [value(kind == "definition")]})
    return nodes


def damaged(text):
    text = bytearray(text)
    for _ in range(chance.randrange(1, 3)):
        at = chance.randrange(len(text))
        text[at : at + chance.randrange(3)] = bytes(chance.choices(b'{}[]":,0x\\\xe4 ', k=chance.randrange(3)))
    return bytes(text)


documents = [{"sections": owners(0, chance.random() < 0.5)} for _ in range(60)]
for document in documents:
    check(document)
refused = 0
for document in documents:
    text = damaged(json.dumps(document).encode())
    if run(["from-json"], text).returncode == 0:
        check(text)
    else:
        refused += 1
assert 30 < refused < 60, refused
text = b'{"sections": [' + b'{"kind": "section", "name": "A", "children": [' * 100000 + b"]}" * 100000 + b"]}"
assert b"nested too deep" in run(["from-json"], text).stderr

folder = os.environ.get("ZON_REAL_SETTINGS", "")
for name in (name for name in (os.listdir(folder) if folder else []) if name.endswith(".zon")):
    with open(os.path.join(folder, name), "rb") as file:
        text = run(["dump", "--json"], file.read()).stdout
    check(text)
