"""Reports of the library and the exceptions that carry them.

A report is copied out of the library while the reporter runs; the text of it is the form that zonxFormatReport
gives it. A status of the library becomes an exception by the table at the end. Each exception is an Error, and
also the exception that a program which knows nothing of zon would catch: KeyError, TypeError, OSError and so on.
Tested by tests/test_file.py and tests/test_nodes.py.
"""
from __future__ import annotations

import ctypes
import enum
import errno
import os
from dataclasses import dataclass, field
from typing import Any, Optional, Sequence

from ._library import CPlace, CReport, Reporter, lib


class Status(enum.IntEnum):
    """Why a call failed."""
    BAD_ARGUMENT = 1
    NO_MEMORY = 2
    CANNOT_OPEN = 3
    CANNOT_READ = 4
    CANNOT_WRITE = 5
    FAULTY = 6
    UNWRITABLE = 7
    CHANGED = 8
    EXISTS = 9
    MISSING = 10
    WRONG_KIND = 11
    OUT_OF_RANGE = 12
    MISMATCH = 13


class Severity(enum.IntEnum):
    """How serious a report is."""
    ERROR = 0
    WARNING = 1
    NOTE = 2


@dataclass(frozen=True)
class Place:
    """A range of a text. Lines and columns count from 1, columns in bytes; 0 is unknown."""
    file: str
    line: int
    column: int
    end_line: int
    end_column: int
    offset: int
    length: int

    def __str__(self) -> str:
        numbers = (number for number in (self.line, self.column) if number)
        return ":".join([self.file, *map(str, numbers)])


@dataclass(frozen=True)
class Report:
    """One finding about a file. `str(report)` is "file:line:column: error: message" with the source line, a mark
    under the place, and the hint."""
    severity: Severity
    rule: str
    message: str
    hint: str
    place: Optional[Place]
    related: Optional[Place]
    related_message: str
    source_line: Optional[str]
    text: str = field(repr=False)

    def __str__(self) -> str:
        return self.text


class Error(Exception):
    """What the package raises. `reports` has the findings with their places, `str(error)` is their text.

    `status` is why the call of the library failed; None for an error of the program's own (`Node.error`), and for a
    view that is used after its file was closed or its node removed.
    """

    def __init__(self, message: str, status: Optional[Status] = None, reports: Sequence[Report] = ()) -> None:
        super().__init__(message)
        self.message = message
        self.status = status
        self.reports = list(reports)

    def __str__(self) -> str:
        return self.message

    def __reduce__(self) -> Any:
        return type(self), (self.message, self.status, self.reports)


class MissingError(Error, KeyError, IndexError):
    """There is no such section, keyword, value or place."""


class KindError(Error, TypeError):
    """The value, or the node, is of another kind."""


class RangeError(Error, ValueError):
    """The number does not fit the type, or is infinite or not a number."""


class ArgumentError(Error, ValueError):
    """A malformed path, a name that the format does not allow, a text with a zero character."""


class ClosedError(Error, ValueError):
    """The file was closed, or the node of the view was removed or replaced."""


class FileError(Error, OSError):
    """The file cannot be opened, read or written."""

    def __init__(self, message: str, status: Optional[Status] = None, reports: Sequence[Report] = (),
                 number: int = 0, name: str = "") -> None:
        Error.__init__(self, message, status, reports)
        self.errno = number
        self.strerror = os.strerror(number)
        self.filename = name

    def __reduce__(self) -> Any:
        return type(self), (self.message, self.status, self.reports, self.errno, self.filename)


class FileMissingError(FileError, FileNotFoundError):
    """The file does not exist."""


class FileExistsAlreadyError(FileError, FileExistsError):
    """The file exists, and a new one was to be made."""


class FilePermissionError(FileError, PermissionError):
    """The system does not allow it."""


_CLASSES: dict[Status, type[Error]] = {
    Status.BAD_ARGUMENT: ArgumentError,
    Status.MISSING: MissingError,
    Status.WRONG_KIND: KindError,
    Status.OUT_OF_RANGE: RangeError,
}
_FILE_CLASSES: dict[int, type[FileError]] = {
    errno.ENOENT: FileMissingError,
    errno.EEXIST: FileExistsAlreadyError,
    errno.EACCES: FilePermissionError,
    errno.EPERM: FilePermissionError,
}
_OF_FILES = (Status.CANNOT_OPEN, Status.CANNOT_READ, Status.CANNOT_WRITE, Status.EXISTS)


def decoded(text: Optional[bytes]) -> str:
    """A text of a file; bytes that are no UTF-8 become surrogates, which `encoded` turns back."""
    return (text or b"").decode("utf-8", "surrogateescape")


def utf8(text: str) -> bytes:
    """A text for a file."""
    if not isinstance(text, str):
        raise TypeError(f"a text is a str, not {type(text).__name__}")
    try:
        return text.encode("utf-8", "surrogateescape")
    except UnicodeEncodeError as error:
        raise ArgumentError(f"a text that UTF-8 cannot express: {error}", Status.BAD_ARGUMENT) from error


def encoded(text: str) -> bytes:
    """A text that the library ends at a zero."""
    return without_zero(utf8(text))


def encoded_name(name: object) -> bytes:
    """A file name for the library."""
    return without_zero(os.fsencode(name))  # type: ignore[arg-type]


def without_zero(data: bytes) -> bytes:
    """The text of the library ends at a zero, so one inside is refused."""
    if b"\0" in data:
        raise ArgumentError(f"a text with a zero character: {decoded(data)!r}", Status.BAD_ARGUMENT)
    return data


class Collector:
    """Receives the reports of one call: pass `collect` and this object as reporter and context."""

    def __init__(self) -> None:
        self.reports: list[Report] = []
        self.failure: Optional[BaseException] = None

    def take(self) -> list[Report]:
        """The reports; raises what stopped the reporter, such as KeyboardInterrupt."""
        if self.failure is not None:
            raise self.failure
        return self.reports

    def check(self, status: int, name: str = "") -> None:
        """Raises the error of a call that failed."""
        reports = self.take()
        if status:
            raise make_error(status, reports, name)


def _collect(report: Any, collector: Collector) -> None:
    try:
        collector.reports.append(_copy_report(report.contents))
    except BaseException as failure:  # pylint: disable=broad-except
        collector.failure = failure  # no exception can pass through the library


collect = Reporter(_collect)


def copy_place(place: CPlace) -> Optional[Place]:
    """The place, or None if no place is known."""
    if place.file is None:
        return None
    return Place(os.fsdecode(place.file), place.line, place.column, place.end_line, place.end_column, place.offset,
                 place.length)


def _copy_report(report: CReport) -> Report:
    line = report.source_line
    return Report(Severity(report.severity), decoded(report.rule), decoded(report.message), decoded(report.hint),
                  copy_place(report.place), copy_place(report.related), decoded(report.related_message),
                  None if line is None else decoded(line), _formatted(report))


def _formatted(report: CReport) -> str:
    size = 1000
    while True:
        buffer = ctypes.create_string_buffer(size)
        length: int = lib.zonxFormatReport(ctypes.byref(report), buffer, size)
        if length < size:
            return buffer.value.decode("utf-8", "replace")  # print() refuses surrogates
        size = length + 1


def make_error(status: int, reports: Sequence[Report], name: str = "") -> Error | MemoryError:
    """The exception for a status of the library. errno is that of the last call in this thread."""
    if status == Status.NO_MEMORY:
        return MemoryError()
    why = Status(status)
    message = "\n".join(map(str, reports)) or decoded(lib.zonxStatusText(status))
    if why in _OF_FILES:
        number = errno.EEXIST if why == Status.EXISTS else ctypes.get_errno()
        return _FILE_CLASSES.get(number, FileError)(message, why, reports, number, name)
    return _CLASSES.get(why, Error)(message, why, reports)
