"""Checks the comments of zon.h: documented.py SOURCE LIBRARY

Every C function has to have a comment of its own. Then each is called with nothing and, where it takes a
handle or a node first, with a handle and nodes of every kind: its comment, or that of its section of the
header, has to name what came back for nothing ("null", "empty", the number), every code that was
stored, and that it "ends the process" where it did.
"""
import ctypes
import os
import pathlib
import re
import sys

TYPES = {"void": None, "int": ctypes.c_int, "unsigned int": ctypes.c_uint, "float": ctypes.c_float,
         "double": ctypes.c_double, "const char*": ctypes.c_char_p, "char*": ctypes.c_char_p}


def declared(header):
    """(result, name, parameters, comment) of every C function, in order."""
    section = comment = ""
    text = header.read_text().split('extern "C" {')[1].split("#ifdef __cplusplus\n}")[0]
    for block in re.finditer(r"/\*.*?\*/|^ZON_API ([^;(]*?)(\w+)\(([^;]*)\);|\n(?=\n)", text, re.S | re.M):
        words = block.group()
        if words.startswith("/** "):
            comment = words
        elif words.startswith("/*"):
            section, comment = words if "----" in words else section + words, ""
        elif block.group(2):
            yield block.group(1).strip(), block.group(2), block.group(3), comment and section + comment
        else:
            comment = ""


class Pointer(ctypes.c_void_p):
    """Not c_void_p itself, whose results come back as numbers and go in as an int."""


def node(zon, tree, which):
    """Nothing, a handle, the root, a section, and two keywords with a value each."""
    file = zon.zonLoadFile(tree, 1)
    quay = zon.zonTargetByNameNum(file, b"Quay", 1)
    keywords = [zon.zonKeywordByNum(quay, n) for n in (1, 2)]
    values = [zon.zonParamByNum(keyword, 1) for keyword in keywords]
    return [None, file, zon.zonGetRoot(file), quay, *keywords, *values][which]


def call(zon, tree, result, name, parameters, which):
    """What came back, the code that was stored, and the signal that ended the call, in a process of its own."""
    out, into = os.pipe()
    child = os.fork()
    if child == 0:
        os.dup2(os.open(os.devnull, os.O_WRONLY), 2)
        arguments = [ctypes.c_double(0) if re.match(r"(double|float) \w", each) else None if "*" in each else 0
                     for each in parameters.split(", ") if each not in ("void", "...")]
        if which:
            arguments[0] = node(zon, tree, which)
        zon.zonGetErrorGlb()
        function = getattr(zon, name)
        function.restype = TYPES.get(result, Pointer)
        value = function(*arguments)
        value = None if isinstance(value, Pointer) and not value else value
        os.write(into, repr((value if not isinstance(value, Pointer) else 1, zon.zonPeekErrorGlb())).encode())
        os._exit(0)
    os.close(into)
    signal = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
    with os.fdopen(out) as answer:
        return eval(answer.read() or "(0, 0)") + (signal,)


def faults(zon, tree, result, name, parameters, comment):
    numbers = re.findall(r"-?\d+(?:\.\d+)?", comment)
    if not comment:
        yield "no comment"
    for which in range(8 if re.match("void[*] (?!reader)", parameters) else 1):
        value, code, signal = call(zon, tree, result, name, parameters, which)
        if signal and "nds the process" not in comment:
            yield f"argument {which}: signal {-signal} is not told"
        if code and str(code) not in numbers:
            yield f"argument {which}: code {code} is not told"
        word = {None: "null", b"": "empty"}.get(value, str(value))
        if which == 0 and not signal and "*" in parameters and result != "void":
            if word not in numbers and word not in comment.lower():
                yield f"'{word}', the result for nothing, is not told"


def main(source, library):
    zon = ctypes.CDLL(library)
    for name in ("zonLoadFile", "zonTargetByNameNum", "zonGetRoot", "zonKeywordByNum", "zonParamByNum"):
        getattr(zon, name).restype = Pointer
    count = 0
    for function in declared(pathlib.Path(source, "api/zon.h")):
        for fault in faults(zon, f"{source}/examples/harbour.zon".encode(), *function):
            print(f"{function[1]}: {fault}")
            count += 1
    return count != 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
