"""The lines of `zon diff --changes A B`, applied to A, give B.

Usage: changes.py ZON [PAIRS [SEED]]. Random files of all kinds of values, and the real settings if ZON_REAL_SETTINGS names
a folder of them. The files are compared by `zon diff`, and the data of the result by `zon diff` in both
directions.
"""

import os
import random
import subprocess
import sys
import tempfile
from pathlib import Path

VALUES = ["1", "-7", "9007199254740993", "1.0", "2.50", "1e400", "true", "false", "'a'", "'it''s // no comment; {}'",
          "|a b.csv|", "|data\\x.csv|", "|/srv/y|", "#2031-02-14#", "%cores", "", "{m}", "'=' {=}", "'x\n; y {'"]
NAMES = ["a", "A", "b", "Quay", "quay_2", "add", "unset"]


def values(rng):
    line = ", ".join(rng.choice(VALUES) for _ in range(rng.choice([1, 1, 1, 2, 4])))
    return line


def section(rng, depth, out, indent):
    out.append(f"{indent}[{rng.choice(NAMES)}]")
    for _ in range(rng.randrange(5)):
        out.append(f"{indent}   {rng.choice(NAMES)} = {values(rng)}")
    for _ in range(rng.randrange(4) if depth < 3 else 0):
        section(rng, depth + 1, out, indent + "   ")
    out.append(f"{indent}EndSect")


def random_file(rng):
    out = []
    for _ in range(rng.randrange(1, 5)):
        section(rng, 0, out, "")
    return "\n".join(out) + "\n"


def mutated(rng, text):
    """Some lines with a value or a whole section twice, changed, gone or moved."""
    lines = text.split("\n")
    for _ in range(rng.randrange(1, 6)):
        at = rng.randrange(len(lines))
        if "=" in lines[at]:
            change = rng.randrange(4)
            if change == 0:
                lines[at] = lines[at].split("=")[0] + "= " + values(rng)
            elif change == 1:
                lines.insert(at, lines[at])
            elif change == 2:
                del lines[at]
            elif "=" in lines[at - 1]:
                lines[at - 1], lines[at] = lines[at], lines[at - 1]
        elif lines[at].lstrip().startswith("["):
            end = at + 1
            depth = 1
            while end < len(lines) and depth > 0:
                depth += lines[end].lstrip().startswith("[") - lines[end].lstrip().lower().startswith("endsect")
                end += 1
            block = lines[at:end]
            change = rng.randrange(3)
            if change != 1:
                lines[at:end] = []
            if change != 0:
                heads = [n for n, line in enumerate(lines) if line.lstrip().startswith("[")]
                place = rng.choice(heads) if heads else 0
                lines[place:place] = block
    return "\n".join(lines)


def run(zon, *words, ok=(0,)):
    result = subprocess.run([zon, *words], capture_output=True, check=False)
    if result.returncode not in ok:
        raise AssertionError(f"zon {' '.join(map(str, words))}: {result.returncode}\n{result.stderr.decode(errors='replace')}")
    return result


def check(zon, folder, before, after):
    """False if the pair is no pair of files without faults."""
    a, b, c = folder / "a.zon", folder / "b.zon", folder / "changes"
    a.write_bytes(before)
    b.write_bytes(after)
    if any(subprocess.run([zon, "check", path], capture_output=True, check=False).returncode for path in (a, b)):
        return False
    result = run(zon, "diff", "--changes", a, b, ok=(0, 1))
    c.write_bytes(result.stdout)
    try:
        if result.returncode:
            run(zon, "set", "-f", c, a)
        left = run(zon, "diff", a, b, ok=(0, 1)).stdout + run(zon, "diff", b, a, ok=(0, 1)).stdout
        assert not left, left.decode(errors="replace")
    except AssertionError as error:
        for path, data in (("before", before), ("after", after), ("changes", result.stdout)):
            print(f"==== {path}\n{data.decode(errors='replace')}")
        sys.exit(str(error))
    return True


def main():
    zon = os.path.abspath(sys.argv[1])
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 100
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(1 << 30)
    rng = random.Random(seed)
    print("seed", seed)
    real = sorted(Path(os.environ["ZON_REAL_SETTINGS"]).glob("*.zon")) if "ZON_REAL_SETTINGS" in os.environ else []
    done = 0
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        while done < count:
            if real and done % 2:
                before = rng.choice(real).read_bytes()
                text = before.decode("latin-1")
                after = rng.choice(real).read_bytes() if rng.random() < 0.3 else mutated(rng, text).encode("latin-1")
            else:
                text = random_file(rng)
                before = text.encode()
                after = (mutated(rng, text) if rng.random() < 0.7 else random_file(rng)).encode()
            done += check(zon, folder, before, after)
    print(done, "pairs")


if __name__ == "__main__":
    main()
