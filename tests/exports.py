"""Compares what the library shows with what it means to: exports.py SOURCE LIBRARY NM"""
import pathlib
import re
import subprocess
import sys

CLASS = re.compile(r"_Z(T[VIS]|NK?)\d{1,2}(CString|Cyy|Czon)")
OVERLOAD = re.compile(r"_Z\d\d(zon[GP][eu]tParam|_normalizePath)")


def main(source, library, nm):
    output = subprocess.run([nm, "-D", "--defined-only", library], check=True, capture_output=True, text=True)
    symbols = [line.split()[1:] for line in output.stdout.splitlines()]
    shown = {name.split("@")[0]: kind for kind, name in symbols if kind != "A"}
    text = pathlib.Path(source, "cmake/exports.txt").read_text()
    listed = set(text.split())

    header = pathlib.Path(source, "api/zon.h").read_text() + pathlib.Path(source, "base/zonhook.h").read_text()
    declared = re.findall(r"^ZON_API [^;(]*?(\w+)\(", header.partition("#ifdef __cplusplus\n}\n\n")[0], re.M)
    declared += re.findall(r"^ZON_API [^;(]*?(\w+Hook|ReportArg\w+)\(", header, re.M)
    plain = {name for name in shown if not name.startswith("_Z")}
    faults = [f"{name} is {fault}" for names, fault in (
        (listed - plain, "listed but not exported"),
        (plain - listed, "exported but not listed"),
        (set(declared) - listed, "declared but not listed"),
        (listed - set(declared), "listed but not declared"),
        ({name for name in set(shown) - plain if not CLASS.match(name) and not OVERLOAD.match(name)},
         "exported, though neither an overload nor of a class of hosts"),
        ({name for name in shown if ("Hook" in name or "ReportArg" in name) and shown[name] != "W"},
         "a hook, but not weak"),
    ) for name in sorted(names)]
    if text.split() != sorted(listed):
        faults.append("cmake/exports.txt is not in order, or names one twice")
    if "_ZTV8CzonNode" not in shown:
        faults.append("the classes are not exported")
    print("\n".join(faults))
    return bool(faults)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
