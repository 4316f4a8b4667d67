"""Templates of samples: template.py ZON. Random files of one shape, and random sets of the *.zon files in the folder
that the variable ZON_REAL_SETTINGS names, conform to the template that is made of them; or the command reports that
there is none."""
import os
import random
import subprocess
import sys
import tempfile

zon = sys.argv[1]
chance = random.Random(2)


def run(*arguments):
    result = subprocess.run([zon, *arguments], capture_output=True, check=False)
    assert result.returncode in (0, 1), (arguments, result)
    return result


def check(names, must_conform):
    """Whether there is a template of the samples."""
    made = run("template", *names)
    with open("template.zon", "wb") as file:
        file.write(made.stdout)
    if must_conform:
        assert made.returncode == 0, made.stderr
    compared = run("validate", "-t", "template.zon", *names)
    assert compared.returncode == made.returncode, (names, made.stdout, made.stderr, compared.stdout)
    return made.returncode == 0


def check_new():
    """A new file of a template that requires nothing conforms to it as it is."""
    with open("template.zon", "r+b") as file:
        text = file.read().replace(b"required", b"default " + chance.choice([b"7", b"'x'", b"x"]))
        file.seek(0)
        file.write(text)
        file.truncate()
    with open("new.zon", "wb") as file:
        file.write(run("new", "-t", "template.zon").stdout)
    compared = run("validate", "-t", "template.zon", "new.zon")
    assert compared.returncode == 0, (text, compared)
    assert run("doc", "-t", "template.zon").returncode == 0


KINDS = ["1", "-2.5", "TRUE", "'it''s'", "|a\\b|", "#2000-01-01#", "%1", "'<CLOB:Integer:1>'", "{?}", ""]


def shape(depth):
    """What a section can have: names with their kinds of values, and sections."""
    keywords = {f"K{n}": chance.choices(KINDS, k=chance.randrange(1, 4)) for n in range(chance.randrange(4))}
    sections = {f"S{n}": shape(depth + 1) for n in range(chance.randrange(3) if depth < 3 else 0)}
    return keywords, sections


def sample(section):
    keywords, sections = section
    text = ""
    for name, values in keywords.items():
        for _ in range(chance.choice([0, 1, 1, 2])):
            further = values[-1:] * chance.choice([0, 0, 0, 3])
            numbers = [chance.choice(["7", "1e300", "-.5"]) if value in ("1", "-2.5") else value for value in values + further]
            text += chance.choice([name, name.lower()]) + chance.choice([" ", " {>= 9; m} "]) + "= " + ", ".join(numbers) + "\n"
    for name, inner in sections.items():
        for _ in range(chance.choice([0, 1, 1, 2])):
            text += f"[{name}] {sample(inner)} EndSect\n"
    return text


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    for _ in range(40):
        top = shape(0)
        names = [f"{n}.zon" for n in range(chance.randrange(1, 6))]
        for name in names:
            with open(name, "w", encoding="utf-8") as file:
                file.write(f"[Top] {sample(top)} EndSect\n")
        assert check(names, True)
        check_new()

    real = os.environ.get("ZON_REAL_SETTINGS", "")
    names = sorted(os.path.join(real, name) for name in (os.listdir(real) if real else []) if name.endswith(".zon"))
    made = sum(check(chance.sample(names, chance.choice([1, 2, 3, 10])), False) for _ in range(60 if names else 0))
    if names:
        assert all(check([name], True) for name in names)
        print(made, "of 60 sets of real files have a template")
