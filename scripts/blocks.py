#!/usr/bin/env python3
"""Tests every fenced block of the manual: the Markdown files of the root folder and of docs/.

    c, cpp    a complete program: compiled with warnings as errors, run in a folder with a copy of examples/.
              A text block after a line that ends in "prints:" is its expected output.
    zon       a parameter file that loads. If a text block follows a line that ends in "error:", the file
              does not load, and the text is the diagnostic: "name:line:position: message".
    console   lines "$ command" with their output, run in a copy of examples/ with the tool zon.
    ebnf      each name is defined once, and each name but the first is used.

Any other block is a fault, and so is a link to a file that does not exist. Text that is not to be tested
is indented instead of fenced.
"""
import argparse
import concurrent.futures
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import types

ROOT = pathlib.Path(__file__).resolve().parent.parent
WARNINGS = "-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror".split()
FENCE = re.compile(r"^```([^\n]*)\n(.*?)^```$", re.M | re.S)
LINK = re.compile(r"\]\(([^)#:]+)(?:#[^)]*)?\)")
BEFORE_TEXT = {"c": "prints:", "cpp": "prints:", "zon": "error:"}

# Loads a file and prints its diagnostic in the form of the manual.
LOADER = r"""
#include <stdio.h>
#include <zon.h>
int main(int argc, char** argv) {
  void* file = zonLoadFile(argc > 1 ? argv[1] : "", 1);
  unsigned line = 0, position = 0;
  const char* message = zonGetSyntaxErr(file, &line, &position, NULL);
  if (line != 0) printf("%s:%u:%u: %s\n", argv[1], line, position, message);
  if (file != NULL) zonClose(&file);
  return 0;
}
"""


def blocks_of(file):
    """The blocks of a file, each with its expected output, and the faults of the file."""
    text, blocks, faults, last, end = file.read_text(), [], [], None, 0
    name = file.relative_to(ROOT)
    for match in FENCE.finditer(text):
        kind, body, between = match[1], match[2], text[end:match.start()].strip()
        place = f"{name}:{text.count(chr(10), 0, match.start()) + 1}"
        block = types.SimpleNamespace(place=place, kind=kind, body=body, expected=None)
        if kind == "text":
            if last is None or "\n" in between or not between.endswith(BEFORE_TEXT.get(last.kind, "\0")):
                faults.append(f"{block.place}: text that belongs to no block")
            else:
                last.expected = body
        elif kind not in TRIES:
            faults.append(f"{block.place}: unknown kind of block '{kind}'")
        else:
            blocks.append(block)
        last, end = block if kind != "text" else None, match.end()
    prose = FENCE.sub("", text)
    if "```" in prose:
        faults.append(f"{name}: a fence that is indented or not closed")
    faults += [f"{name}: missing {link}" for link in LINK.findall(prose) if not (file.parent / link).exists()]
    return blocks, faults


def run(command, folder, env=None):
    done = subprocess.run(command, cwd=folder, env=env, text=True, errors="replace", timeout=120,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.returncode, done.stdout


def differs(expected, got):
    return expected != got and f"expected\n{expected}got\n{got}"


def compile_program(options, kind, source, folder):
    path = folder / f"program.{kind}"
    path.write_text(source)
    compiler = [options.cc, "-std=c99", *shlex.split(options.cflags)] if kind == "c" else \
               [options.cxx, "-std=c++17", *shlex.split(options.cxxflags)]
    return run([*compiler, *WARNINGS, f"-I{ROOT}", f"-I{ROOT}/api", path, "-o", folder / "program",
                f"-L{options.build}", "-lzon", f"-Wl,-rpath,{options.build}"], folder)


def try_program(options, block, folder):
    status, output = compile_program(options, block.kind, block.body, folder)
    if status == 0:
        shutil.copytree(ROOT / "examples", folder / "examples")
        status, output = run([folder / "program"], folder)
    return f"exit status {status}\n{output}" if status != 0 else differs(block.expected or output, output)


def try_file(options, block, folder):
    name = (block.expected or "block.zon").split(":")[0]
    (folder / name).write_text(block.body)
    status, output = run([options.loader / "program", name], folder)
    return output if status != 0 else differs(block.expected or "", output)


def try_console(options, block, folder):
    shutil.copytree(ROOT / "examples", folder / "examples")
    env = {**os.environ, "PATH": f"{options.build}/tool:{os.environ['PATH']}"}
    commands = re.findall(r"^\$ .*", block.body, re.M)
    got = [f"{line}\n{run(['sh', '-c', line[2:]], folder / 'examples', env)[1]}" for line in commands]
    return differs(block.body, "".join(got))


def try_grammar(_options, block, _folder):
    bare = re.sub(r'"[^"]*"|\'[^\']*\'|\?[^?]*\?|\(\*.*?\*\)', "", block.body, flags=re.S)
    defined, words = re.findall(r"(\w+)\s*=", bare), re.findall(r"\w+", bare)
    faults = [word for word in set(words) if defined.count(word) != 1]
    faults += [name for name in defined[1:] if words.count(name) < 2]
    return (faults or not defined) and f"not defined once, or not used: {sorted(faults)}"


TRIES = {"c": try_program, "cpp": try_program, "zon": try_file, "console": try_console, "ebnf": try_grammar}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--build", required=True, type=pathlib.Path, help="the folder of the built library")
    for name, default in ("cc", "cc"), ("cxx", "c++"), ("cflags", ""), ("cxxflags", ""):
        parser.add_argument(f"--{name}", default=default)
    options = parser.parse_args()
    options.build = options.build.resolve()

    found = [blocks_of(file) for file in (*sorted(ROOT.glob("*.md")), *sorted(ROOT.glob("docs/**/*.md")))]
    blocks, faults = (sum(parts, []) for parts in zip(*found))
    if not (options.build / "tool/zon").exists():
        print("not tested, as the tool is not built:", *[b.place for b in blocks if b.kind == "console"])
        blocks = [block for block in blocks if block.kind != "console"]
    blocks.sort(key=lambda block: block.kind != "cpp")  # the slowest first

    with tempfile.TemporaryDirectory(dir=options.build) as scratch, concurrent.futures.ThreadPoolExecutor(2) as pool:
        options.loader = pathlib.Path(tempfile.mkdtemp(dir=scratch))
        status, output = compile_program(options, "c", LOADER, options.loader)
        if status != 0:
            sys.exit(output)

        def attempt(block):
            fault = TRIES[block.kind](options, block, pathlib.Path(tempfile.mkdtemp(dir=scratch)))
            return [f"{block.place}: {fault}"] if fault else []

        faults = sum(pool.map(attempt, blocks), list(faults))
    print(*faults, f"{len(blocks)} blocks, {len(faults)} faults", sep="\n")
    sys.exit(1 if faults or not blocks else 0)


if __name__ == "__main__":
    main()
