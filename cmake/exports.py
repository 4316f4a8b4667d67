"""Compares what the library shows with what it means to: exports.py SOURCE LIBRARY NM"""
import re
import subprocess
import sys

source, library, nm = sys.argv[1:]
output = subprocess.run([nm, "-D", "--defined-only", library], check=True, capture_output=True, text=True)
kinds = {line.split()[2].split("@")[0]: line.split()[1] for line in output.stdout.splitlines()}
shown = {name for name, kind in kinds.items() if kind != "A"}
plain = {name for name in shown if not name.startswith("_Z")}
ours = re.compile(r"_Z((T[VIS]|NK?)\d+(CString|Cyy|Czon)|\d+(zon(Get|Put)Param|_normalizePath))")

names = open(source + "/cmake/exports.txt").read().split()
listed = set(names)
text = open(source + "/base/zonhook.h").read() + open(source + "/api/zon.h").read().split("#ifdef __cplusplus\n}")[0]
declared = set(re.findall(r"^ZON_API [^;(]*?(\w+)\(", text, re.M))

faults = {
    "listed, but not exported": listed - plain,
    "exported, but not listed": plain - listed,
    "declared, but not listed": declared - listed,
    "listed, but not declared": listed - declared,
    "listed twice": {name for name in names if names.count(name) > 1},
    "exported, but of no class of hosts": {name for name in shown - plain if not ours.match(name)},
    "not exported, though of a class": {"_ZTI8CzonNode", "_ZTV8CzonNode", "_ZNK8CzonNode8GetLevelEv"} - shown,
    "a hook, but not weak": {name for name in shown if re.search("Hook$|^ReportArg", name) and kinds[name] != "W"},
}
sys.exit("\n".join(f"{name}: {fault}" for fault in faults for name in sorted(faults[fault])) or 0)
