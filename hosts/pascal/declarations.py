"""Makes the declarations of the unit Zon from zon.h and zonx.h.

    declarations.py ROOT          fails if those in zon.pas differ, or a function of libzon0.symbols is not among them
    declarations.py ROOT --write  replaces those in zon.pas

They are between two lines of zon.pas that begin with "{ ----". Pointers stay pointers: many may be nil. The hooks are
left out, because a host does not call them: it defines them (see zonxSetHooks).
"""

import difflib
import pathlib
import re
import sys
import textwrap

HOOKS = {"MessageHook", "ReportHook", "ReportArgString", "ReportArgInt"}
TYPES = {
    "CzonNode*": "Pointer", "void*": "Pointer", "void**": "PPointer",
    "char*": "PChar", "const char*": "PChar", "char**": "PPChar", "const char**": "PPChar", "const char* const*": "PPChar",
    "int": "cint", "int*": "pcint", "const int*": "pcint", "unsigned int": "cuint", "unsigned int*": "pcuint",
    "long long": "clonglong", "long long*": "pclonglong", "const long long*": "pclonglong",
    "float": "cfloat", "float*": "pcfloat", "double": "cdouble", "double*": "pcdouble", "const double*": "pcdouble",
    "size_t": "csize_t", "size_t*": "pcsize_t",
    "zonxPlace": "TZonxPlace", "zonxPlace*": "PZonxPlace", "const zonxReport*": "PZonxReport",
    "const zonxCompare*": "PZonxCompare", "const zonxDifference*": "PZonxDifference", "zonxReporter": "TZonxReporter",
}
# Reserved words of Pascal that are names in C, and names that differ in C by their letter case only.
NAMES = {"file": "fileName", "out": "output"}
# The types of parameters that are functions.
FUNCTIONS = {
    ("zonxReporter", ""): "TZonxReporter", ("zonExplore", "visit"): "TZonVisitor",
    ("zonxSetHooks", "message"): "TZonxMessageHook", ("zonxSetHooks", "report"): "TZonxReportHook",
    ("zonxDiff", "visitor"): "TZonxVisitor", ("zonxDiffByKey", "visitor"): "TZonxVisitor",
}
FUNCTION = r"(?P<result>[\w ]+?[ *]+)(?P<name>\w+)\((?P<parameters>.*)\)$"


def header(root, name):
    text = (root / "api" / name).read_text()
    text = re.sub(r"/\*.*?\*/", "", text, flags=re.S)
    return text.split("#ifdef __cplusplus\n}")[0]


def variables(function, text, functions):
    """Pascal declarations of "int a, const char* b" or of the fields of a struct."""
    result = []
    for part in re.split(r",(?![^()]*\))", " ".join(text.split())):
        part = part.strip()
        pointer = re.match(r"void \(\*(\w*)\)\((.*)\)$", part)
        if part in ("void", ""):
            continue
        if part == "...":
            return result, True
        if pointer:
            name, kind = pointer[1], FUNCTIONS[function, pointer[1]]
            inner, _ = variables(function, pointer[2], functions)
            functions[kind] = f"procedure({'; '.join(inner)}); cdecl;"
        else:
            kind, name = re.match(r"(.*?)(\w*)$", part).groups()
            kind, name = TYPES[kind.strip()], name or "node"
        result.append(f"{NAMES.get(name, name)}: {kind}")
    return result, False


def constants(text):
    lines = re.findall(r"#define (ZONX?_VERSION\w*) (\d+)", text) + re.findall(r"(ZONX_\w+) = (\d+)", text)
    return [f"  {name} = {value};" for name, value in lines]


def records(text):
    lines = []
    for name, body in re.findall(r"typedef struct (\w+) \{(.*?)\} \1;", text, flags=re.S):
        kind = "T" + name[0].upper() + name[1:]
        lines += [f"  P{kind[1:]} = ^{kind};", f"  {kind} = record"]
        for field in body.split(";"):
            first, *others = [part.strip() for part in field.split(",")]
            if not first:
                continue
            kind = first.rsplit(" ", 1)[0]
            for part in [first] + [f"{kind} {other}" for other in others]:
                lines.append(f"    {variables(name, part, {})[0][0]};")
        lines.append("  end;")
    return lines


def routines(text, functions):
    lines = []
    for declaration in re.findall(r"^ZON_API\s+([^;]+);", text, flags=re.M):
        match = re.match(FUNCTION, " ".join(declaration.split()))
        name = match["name"]
        if name in HOOKS:
            continue
        parameters, is_open = variables(name, match["parameters"], functions)
        brackets = f"({'; '.join(parameters)})" if parameters else ""
        result = match["result"].strip()
        line = f"procedure {name}{brackets};" if result == "void" else f"function {name}{brackets}: {TYPES[result]};"
        line += f" cdecl;{' varargs;' if is_open else ''} external ZonLibrary;"
        lines += textwrap.wrap(line, 120, subsequent_indent="  ")
    return lines


def declarations(root):
    zon, zonx = header(root, "zon.h"), header(root, "zonx.h")
    functions = {}
    reporter = re.search(r"typedef (void \(\*)zonxReporter(\)\(.*?\));", zonx, flags=re.S)
    variables("zonxReporter", reporter[1] + reporter[2], functions)
    zon_lines, zonx_lines = routines(zon, functions), routines(zonx, functions)
    kinds = [f"  {name} = {kind}" for name, kind in functions.items()]
    return ["const", "  ZonLibrary = 'zon';", *constants(zon), *constants(zonx), "", "type", *records(zonx), *kinds, "",
            *zon_lines, "", *zonx_lines]


def main():
    root = pathlib.Path(sys.argv[1])
    path = root / "hosts" / "pascal" / "zon.pas"
    lines = path.read_text().splitlines()
    first, last = [n for n, line in enumerate(lines) if line.startswith("{ ----")][:2]
    wanted = declarations(root)
    if "--write" in sys.argv:
        path.write_text("\n".join(lines[: first + 1] + wanted + lines[last:]) + "\n")
        return 0
    differences = list(difflib.unified_diff(lines[first + 1 : last], wanted, "zon.pas", "headers", lineterm=""))
    print("\n".join(differences))
    symbols = re.findall(r"^ ([a-z]\w+)@ZON_0", (root / "cmake" / "libzon0.symbols").read_text(), flags=re.M)
    declared = set(re.findall(r"^(?:function|procedure) (\w+)", "\n".join(lines), flags=re.M))
    missing = set(symbols) - declared
    for name in sorted(missing):
        print(f"not declared: {name}")
    return 1 if differences or missing else 0


if __name__ == "__main__":
    sys.exit(main())
