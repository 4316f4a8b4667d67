"""Measures calls of the Python package beside the same calls in C: python.py LIBRARY

Prints a table: nanoseconds a call, the least of several runs. The C calls are loops in a small library that the
script compiles with cc."""
import ctypes
import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[1]
C_CALLS = r"""
#include <string.h>
#include <zon.h>
#include <zonx.h>
#define LOOP(name, body) void name(void* file, const char* text, int n) { \
  void* node = 0; void* other = 0; double real = 0; size_t count = 0; static double list[1000]; \
  (void)file; (void)text; (void)node; (void)other; (void)real; (void)count; (void)list; \
  for (; n > 0; --n) { body; } }
LOOP(load, zonxLoadText(text, strlen(text), "", &other, 0, 0); zonClose(&other))
LOOP(find, zonxFind(file, "Quay:2/Length", &node))
LOOP(get, zonxGetDouble(file, "Quay:2/Length", &real))
LOOP(name, zonxFind(file, "Quay:2/", &node); zonxGetString(node, "Name", &text))
LOOP(list_, zonxGetDoubles(file, "Run/Depths", list, 1000, &count))
LOOP(set, zonxSetDouble(file, "Quay:2/Length", n))
LOOP(set_list, zonxSetDoubles(file, "Run/Depths", list, 1000))
LOOP(sections, int s; for (s = 1; s <= 1000; ++s) zonSectionByNum(zonGetRoot(file), s))
LOOP(text_, char* out; if (zonxText(file, 0, &out, &count, 0, 0) == 0) zonxFree(out))
"""
TEXT = ("[Run]\n   Depths = " + ", ".join(f"{n}.25" for n in range(1000)) + "\nEndSect\n"
        + "".join(f"[Quay] {{number {n}}}\n   Name = 'quay {n}'\n   Length = {n}.5  // metres\nEndSect\n"
                  for n in range(1000)))


def compile_calls(folder, library):
    """The library with the loops in C."""
    (folder / "calls.c").write_text(C_CALLS)
    subprocess.run(["cc", "-O2", "-shared", "-fPIC", f"-I{SOURCE}/api", folder / "calls.c", library, "-o",
                    folder / "calls.so", f"-Wl,-rpath,{library.parent}"], check=True)
    return ctypes.CDLL(str(folder / "calls.so"))


def least(function, count):
    """Nanoseconds a call."""
    times = []
    for _ in range(7):
        start = time.perf_counter_ns()
        function(count)
        times.append((time.perf_counter_ns() - start) / count)
    return min(times)


def loop(function):
    """Calls a function so many times."""
    def run(count):
        for _ in range(count):
            function()
    return run


def main():
    library = Path(sys.argv[1]).resolve()
    os.environ["ZON_LIBRARY"] = str(library)
    sys.path.insert(0, str(SOURCE / "hosts" / "python" / "src"))
    import zon
    file = zon.parse(TEXT)
    quay, depths = file["Quay", 2], [float(n) for n in range(1000)]
    keyword = quay["Length"]
    rows = [
        ("`parse(text)`, 1000 sections, 55 KB", "load", 20, lambda: zon.parse(TEXT).close()),
        ('`file["Quay:2/Length"]`, in use', "find", 5000, lambda: file["Quay:2/Length"]),
        ('`file["Quay:3/Length"]`', "find", 5000, lambda: file["Quay:3/Length"]),
        ('`file["Quay:3/Length"].value`', "get", 5000, lambda: file["Quay:3/Length"].value),
        ('`file.get("Quay:2/Length", 1.0)`', "get", 5000, lambda: file.get("Quay:2/Length", 1.0)),
        ('`keyword.to(float)`', "get", 5000, lambda: keyword.to(float)),
        ('`file["Quay", 3]["Name"].value`', "name", 5000, lambda: file["Quay", 3]["Name"].value),
        ("`values(float)`, 1000 values", "list_", 200, lambda: file["Run/Depths"].values(float)),
        ("`values()`, 1000 values", "list_", 20, lambda: file["Run/Depths"].values()),
        ('`file["Quay:2/Length"] = x`', "set", 5000, lambda: file.__setitem__("Quay:2/Length", 0.5)),
        ("a list of 1000 values set", "set_list", 50, lambda: file.__setitem__("Run/Depths", depths)),
        ("iterating over 1000 sections", "sections", 20, lambda: list(file)),
        ("`to_text()`, 55 KB", "text_", 20, file.to_text),
    ]
    try:
        import numpy  # noqa: F401
        rows.insert(8, ("`array()`, 1000 values", "list_", 200, lambda: file["Run/Depths"].array()))
    except ImportError:
        pass
    print(f"Python {sys.version.split()[0]}\n\n| Call | Python, ns | C, ns | ratio |\n| --- | ---: | ---: | ---: |")
    with tempfile.TemporaryDirectory() as folder:
        calls = compile_calls(Path(folder), library)
        text = TEXT.encode()
        for name, c_name, count, function in rows:
            c_function = getattr(calls, c_name)
            c_function.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
            in_c = least(lambda n, call=c_function: call(file._tree.handle, text, n), count)
            in_python = least(loop(function), count)
            print(f"| {name} | {in_python:.0f} | {in_c:.0f} | {in_python / in_c:.1f} |")


if __name__ == "__main__":
    main()
