"""What a program with type hints writes. mypy --strict accepts it; it is not run."""
from datetime import datetime
from pathlib import Path
from typing import List, Optional

import zon


def read(file: zon.File) -> None:
    length: float = file["Quay", 2]["Length"].to(float)
    workers: int = file.get("Run/Workers", 4)
    step: float = file.get("Run/Step", 30.0)
    is_verbose: bool = file.get("Run/Verbose", False)
    chart: Path = file.get("Run/Chart", Path("none.map"))
    start: datetime = file.get("Run/Start", datetime.now())
    weights: List[float] = file.get("Run/Weights", [1.0])
    names: List[str] = file["Run/Names"].values(str)
    title: Optional[str] = file.get("Run/Title")
    total: float = 0.0
    for quay in file.sections("Quay"):
        total += float(quay["Length"])
        first: int = quay["Bollard"][0]
        rest: List[float] = quay["Bollard"][1:]
        print(first, rest, [berth.name for berth in quay])
    for section in file:
        section["Length"] = [1, 2.5, None, zon.Raw("%cores")]
        section.keyword("Length").append(3)
    reports: List[zon.Report] = zon.check("harbour.zon")
    place: Optional[zon.Place] = reports[0].place
    file.save(chart, backup=True)
    print(length, workers, step, is_verbose, start, weights, names, title, total, place and place.line)
