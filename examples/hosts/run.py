"""A host in Python: loads the settings of a run, changes two values and saves the file with its comments:

    run.py FILE

An error of the file ends the program with a report. The errors of the host's own are only printed. The same as
run.f90 and run.pas.
"""
import sys

import zon


def change(file: zon.File) -> None:
    """Prints the settings and the quays, and changes two values."""
    step = file.get("Run/Step", 30)
    threads = file.get("Run/Threads", 4)  # the file has none
    tolerances = file["Run/Tolerance"].values(float)
    print(file.get("Run/Title", "untitled"))
    print(f"step {step} s, {threads} threads")
    print(f"{len(tolerances)} tolerances, the first {tolerances[0]:.4f}")

    for quay in file.sections("Quay"):
        length = quay["Length"]
        print(f"{quay['Name'].value}: {length.to(float):.1f} m")
        if length.to(float) > 200:
            print(length.error("longer than 200 m"))  # an error that stops would be raised

    file["Run/Step"] = step // 2
    file["Quay", 2]["Length"] = 98.25
    file.save()


if __name__ == "__main__":
    try:
        with zon.load(sys.argv[1]) as loaded:
            change(loaded)
    except zon.Error as problem:
        sys.exit(str(problem))
