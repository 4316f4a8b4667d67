"""Compares zon.h with what its functions do: documented.py SOURCE LIBRARY

Every C function is called with null arguments and, if its first parameter is a handle or node, with a handle
and with each kind of node. A code that is stored must be in an errors paragraph: @errors of the function, or
"Errors:" of its section. The value returned for null must be in one of these, in @return, in a sentence
about null or a bad handle or node, or in parentheses. A function that ends the process must say so."""
import ctypes
import os
import re
import sys

RESULTS = {"void": None, "int": ctypes.c_int, "unsigned int": ctypes.c_uint, "float": ctypes.c_float,
           "double": ctypes.c_double, "const char*": ctypes.c_char_p, "char*": ctypes.c_char_p}
# ctypes converts a plain c_void_p to a number when it is returned, and to an int when it is passed.
Pointer = type("Pointer", (ctypes.c_void_p,), {})


def declared(source):
    """Yields (result, name, parameters, comment, comment of section and function) for every C function."""
    section = comment = ""
    text = open(source + "/api/zon.h").read().split('extern "C" {')[1].split("#ifdef __cplusplus\n}")[0]
    pieces = r"/\*.*?\*/|^ZON_API ([^;(]*?) ?(\w+)\(([^;]*)\);|\n(?=\n)"
    for piece in re.finditer(pieces, text, re.S | re.M):
        words = piece.group()
        if piece.group(2):
            yield (*piece.group(1, 2), re.split(r",\s+", piece.group(3)), comment, section + comment)
        elif words.startswith("/* "):
            section = words if words.startswith("/* --") else section + words
        comment = words if words.startswith("/** ") else comment if piece.group(2) else ""


def node(zon, tree, which):
    file = zon.zonLoadFile(tree, 1)
    quay = zon.zonTargetByNameNum(file, b"Quay", 1)
    words = [zon.zonKeywordByNum(quay, n) for n in (1, 2)]
    nodes = [zon.zonGetRoot(file), quay, *words, *(zon.zonParamByNum(word, 1) for word in words)]
    return [None, file, *nodes][which]


def call(zon, tree, result, name, parameters, which):
    out, into = os.pipe()
    child = os.fork()
    if child == 0:
        os.dup2(os.open(os.devnull, os.O_WRONLY), 2)
        zero = {"double": ctypes.c_double(0), "float": ctypes.c_float(0)}
        arguments = [None if "*" in each else zero.get(each.split()[0], 0) for each in parameters]
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
    others = re.findall(r"@return[^\0]*|\([^)]*\)|[^.;\0]*\b(?i:null|bad node|bad handle)\b[^.;\0]*", plain)
    return errors, " ".join([errors, *others])


def faults(zon, tree, result, name, parameters, comment, both):
    errors, values = statements(both)
    codes = ["", "0", *re.findall(r"\b1\d{3}\b", errors)]
    if not comment:
        yield "has no comment"
    for which in range(8 if re.match(r"void\* (?!reader)", parameters[0]) else 1):
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
    found = [f"{each[1]}: {fault}" for each in declared(sys.argv[1]) for fault in faults(zon, tree, *each)]
    sys.exit("\n".join(found) or 0)
