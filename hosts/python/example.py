"""Loads the settings of a run, changes two of them and saves them: example.py FILE COPY

What the program does not find has a default. What it finds but cannot use is an error with its place."""
import shutil
import sys

import zon


def read_settings(file: zon.File) -> None:
    """Prints the settings of a run."""
    step = file.get("Run/Step", 30.0)
    retries = file.get("Run/Retries", 3)
    tolerance = file.get("Run/Tolerance", [1e-3])
    print(f"step {step:g} s, {retries} retries, tolerances {tolerance}")
    start, finish = file["Run/Start"].value, file["Run/Finish"].value
    print(f"from {start} for {finish - start}")


def print_quays(file: zon.File) -> None:
    """Prints each quay with its berths."""
    for quay in file.sections("Quay"):
        print(f"{quay['Name'].value}: {quay['Length'].to(float):g} m")
        for berth in quay.sections("Berth"):
            cranes = [crane["Kind"].value for crane in berth.sections("Crane")]
            print(f"   berth {berth['Number'].value}: {berth['Draught'].value} m,", *cranes or ["no crane"])


def check_lengths(file: zon.File) -> None:
    """Raises an error for a quay that is too long."""
    for quay in file.sections("Quay"):
        if quay["Length"].to(float) > 200:
            raise quay["Length"].error("longer than the harbour allows", "write at most 200")


def check_workers(file: zon.File) -> None:
    """Raises an error if the number of workers is no number."""
    file.get("Run/Workers", 4)


def main() -> None:
    """The whole program."""
    shutil.copy(sys.argv[1], sys.argv[2])
    with zon.load(sys.argv[2]) as file:
        read_settings(file)
        print_quays(file)
        for check in (check_lengths, check_workers):
            try:
                check(file)
            except zon.Error as error:
                print(error)
        file["Quay", 1]["Length"] = 195.5
        file["Harbour/Depths"] = [9.5, 8.0, 7.25]
        file.save()  # every other byte stays
    with open(sys.argv[1]) as before, open(sys.argv[2]) as after:
        print(*(new for old, new in zip(before, after) if old != new), sep="", end="")


if __name__ == "__main__":
    main()
