"""Reads, changes and saves zon parameter files: settings in sections, keywords and lists of typed values.

    import zon

    with zon.load("harbour.zon") as file:
        length = file["Quay", 2]["Length"].to(float)
        workers = file.get("Run/Workers", 4)
        file["Quay", 2]["Length"] = 96.5
        file.save()  # comments and layout stay

Every error is a zon.Error: its text has the file, the line, the column and the line itself.
"""
from ._compare import Change, Difference, diff, merge, validate
from ._file import File, check, load, parse
from ._nodes import Keyword, Node, Section, Value
from ._reports import (ArgumentError, ClosedError, Error, FileError, KindError, MissingError, Place, RangeError, Report,
                       Severity, Status)
from ._values import Kind, Raw

__all__ = ["ArgumentError", "Change", "ClosedError", "Difference", "Error", "File", "FileError", "Keyword", "Kind",
           "KindError", "MissingError", "Node", "Place", "RangeError", "Raw", "Report", "Section", "Severity", "Status",
           "Value", "check", "diff", "load", "merge", "parse", "validate"]

for _name in __all__:
    globals()[_name].__module__ = "zon"  # where a program finds it
