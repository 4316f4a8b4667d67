"""Compares zon.h and zonx.h with what their functions do: documented.py SOURCE LIBRARY

Every C function is called with null arguments and, if its first parameter is a handle or node, with a handle
and with each kind of node. A code that is stored must be in an errors paragraph: @errors of the function, or
"Errors:" of its section. The value returned for null must be in one of these, in @return, in a sentence
about null or a bad handle or node, or in parentheses. A function that ends the process must say so.

A status that a function of zonx.h returns must be in its @return, or in the one before it if that says "as"
another function. No function of zonx.h stores a code."""
import ctypes
import os
import re
import sys

RESULTS = {"void": None, "int": ctypes.c_int, "unsigned int": ctypes.c_uint, "float": ctypes.c_float,
           "double": ctypes.c_double, "const char*": ctypes.c_char_p, "char*": ctypes.c_char_p,
           "size_t": ctypes.c_size_t}
# ctypes converts a plain c_void_p to a number when it is returned, and to an int when it is passed.
Pointer = type("Pointer", (ctypes.c_void_p,), {})
Reporter = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_void_p)


def declared(path):
    """Yields (result, name, parameters, comment, comment of section and function) for every C function."""
    section = comment = ""
    text = open(path).read().split('extern "C" {')[1].split("#ifdef __cplusplus\n}")[0]
    text = re.sub(r"/\*\*<.*?\*/", "", text, flags=re.S)
    pieces = r"/\*.*?\*/|^ZON_API ([^;(]*?) ?(\w+)\(([^;]*)\);|\n(?=\n)"
    for piece in re.finditer(pieces, text, re.S | re.M):
        words = piece.group()
        if piece.group(2):
            yield (*piece.group(1, 2), re.split(r",\s+(?![^()]*\))", piece.group(3)), comment, section + comment)
        elif words.startswith("/* "):
            section = words if words.startswith("/* --") else section + words
        comment = words if words.startswith("/** ") else comment if piece.group(2) else ""


def node(zon, tree, which):
    file = zon.zonLoadFile(tree, 1)
    quay = zon.zonTargetByNameNum(file, b"Quay", 1)
    words = [zon.zonKeywordByNum(quay, n) for n in (1, 2)]
    nodes = [zon.zonGetRoot(file), quay, *words, *(zon.zonParamByNum(word, 1) for word in words)]
    return [None, file, *nodes][which]


def argument(parameter, isNull):
    """What is passed for a parameter after the first one."""
    if "*" not in parameter and "Reporter" not in parameter:
        return {"double": ctypes.c_double(0), "float": ctypes.c_float(0)}.get(parameter.split()[0], 0)
    if isNull or "context" in parameter or "(*" in parameter:
        return None
    if "Reporter" in parameter:
        return Reporter(lambda report, context: None)
    return b"Length" if parameter.endswith(" path") else ctypes.create_string_buffer(64)


def call(zon, tree, result, name, parameters, which):
    out, into = os.pipe()
    child = os.fork()
    if child == 0:
        os.dup2(os.open(os.devnull, os.O_WRONLY), 2)
        isNull = not which or not name.startswith("zonx")
        arguments = [argument(each, isNull) for each in parameters if each != "void"]
        for at, each in enumerate(parameters):  # a second file
            if at > 0 and not isNull and each.startswith("void* ") and "context" not in each:
                arguments[at] = node(zon, tree, 1)
        arguments = [node(zon, tree, which), *arguments[1:]] if which else arguments
        zon.zonGetErrorGlb()
        getattr(zon, name).restype = RESULTS.get(result, Pointer)
        value = getattr(zon, name)(*arguments)
        if isinstance(value, bytes):
            value = value.decode() or "empty"
        value = value if value or value == 0 else "null"
        os.write(into, f"{zon.zonPeekErrorGlb()} {value}".encode())
        os._exit(0)
    os.close(into)
    return *os.fdopen(out).read().partition(" ")[::2], -os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])


def statements(comment):
    """The errors paragraphs, and with them all that can state the value returned on failure."""
    plain = re.sub(r"\n +\* +(?=@)|\n \*\n|\*/", "\0", comment)  # \0 ends a paragraph
    plain = re.sub(r"\s*\n \* ?|@\{|/\*\*?", " ", plain)
    errors = " ".join(re.findall(r"(?:@errors|Errors:)([^\0]*)", plain))
    bad = r"(?i:null|bad node|bad handle|anything else)"
    others = re.findall(rf"@return[^\0]*|\([^)]*\)|[^.;\0]*\b{bad}\b[^.;\0]*", plain)
    return errors, " ".join([errors, *others])


def statuses(path):
    """The names of the statuses of zonx.h, by number as text."""
    text = open(path).read().split("enum zonxStatus")[1].split("}")[0]
    return {number: name for name, number in re.findall(r"(ZONX_\w+) = (\d+)", text)}


def status_faults(zon, tree, names, result, name, parameters, comment, before):
    stated = re.search(r"@return.*", comment, re.S)[0]
    stated += before if "@return as" in comment else ""
    for which in range(8 if parameters[0].startswith("void* ") else 1):
        code, value, signal = call(zon, tree, result, name, parameters, which)
        if signal or code != "0":
            yield f"given node {which}, it stores {code} or ends by signal {signal}"
        if names.get(value, value) not in stated:
            yield f"given node {which}, it returns {names.get(value, value)}, which is not in its @return"


def faults(zon, tree, result, name, parameters, comment, both):
    errors, values = statements(both)
    codes = ["", "0", *re.findall(r"\b1\d{3}\b", errors)]
    if not comment:
        yield "has no comment"
    for which in range(8 if re.match(r"void\* (?!reader|memory)", parameters[0]) else 1):
        code, value, signal = call(zon, tree, result, name, parameters, which)
        if signal and "nds the process" not in both:
            yield f"given node {which}, it ends by signal {signal}"
        if code not in codes:
            yield f"given node {which}, it stores {code}, which is in no errors paragraph"
        stated = re.search(rf"(?<![\w.-]){re.escape(value)}(?![\w-]|\.\d)", values, re.I)
        if which == 0 and result != "void" and "*" in str(parameters) and not stated:
            yield f"given null, it returns {value}, which its comment does not state"


if __name__ == "__main__":
    zon = ctypes.CDLL(sys.argv[2])
    for name in ("zonLoadFile", "zonTargetByNameNum", "zonGetRoot", "zonKeywordByNum", "zonParamByNum"):
        getattr(zon, name).restype = Pointer
    tree = os.fsencode(sys.argv[1] + "/examples/harbour.zon")
    found = [f"{each[1]}: {fault}" for each in declared(sys.argv[1] + "/api/zon.h")
             for fault in faults(zon, tree, *each)]
    header = sys.argv[1] + "/api/zonx.h"
    names = statuses(header)
    before = comment = ""
    for each in declared(header):
        if each[3] != comment:
            before, comment = comment, each[3]
        hasStatus = re.search(r"@return (ZONX_OK|as )", comment)
        found += [f"{each[1]}: {fault}" for fault in
                  (status_faults(zon, tree, names, *each[:4], before) if hasStatus else faults(zon, tree, *each))]
    sys.exit("\n".join(found) or 0)
