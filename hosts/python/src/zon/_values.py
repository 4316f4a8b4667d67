"""Values: from the library to Python and back.

A value of a file is an int, float, bool, str, Path or datetime; an empty place is None. What Python has no type
for, a substitution, a packed list or a date-time of another form, is a Raw. A list whose values are all of one
kind has its own function of the library; any other is written as text, which the library reads value by value.
Tested by tests/test_values.py.
"""
from __future__ import annotations

import ctypes
import enum
import math
import os
import re
from ctypes import c_char_p, c_double, c_int, c_longlong, c_size_t
from dataclasses import dataclass
from datetime import date, datetime
from pathlib import Path, PurePath
from typing import Any, Callable, Iterable, Mapping, Optional, Union

from ._library import lib
from ._reports import Status, decoded, encoded, encoded_name


class Kind(enum.IntEnum):
    """The kinds of nodes."""
    FILE = 1
    SECTION = 2
    KEYWORD = 3
    DEFINITION = 4
    INTEGER = 6
    REAL = 7
    BOOLEAN = 8
    STRING = 9
    FILENAME = 10
    PLACEHOLDER = 11
    SUBSTITUTION = 12
    DATETIME = 13
    UNKNOWN = 14
    EMPTY = 15
    CLOB = 16


@dataclass(frozen=True)
class Raw:
    """A value as it is written in a file, such as `%cores` or `#yesterday#`. Setting it to a keyword writes the text;
    it may hold remarks and, with commas between, several values."""
    text: str

    def __str__(self) -> str:
        return self.text



# The date-times that become a datetime: ISO 8601 in its extended form.
_ISO = re.compile(r"#(\d{4}-\d\d-\d\d)(?:[ T](\d\d:\d\d(?::\d\d)?)(?:[.,](\d{1,6}))?\s*(Z|[+-]\d\d:?\d\d)?)?#",
                  re.ASCII)


def from_date_text(text: str) -> Union[datetime, Raw]:
    """The date-time of "#2031-02-14 06:15:00#"; a Raw if it has another form."""
    match = _ISO.fullmatch(text)
    if match:
        day, time, fraction, zone = match.groups()
        iso = day + ("T" + time if time else "")
        if fraction:
            iso += ("" if len(time) > 5 else ":00") + "." + fraction.ljust(6, "0")
        if zone:
            iso += "+00:00" if zone == "Z" else zone[:3] + ":" + zone[-2:]
        try:
            return datetime.fromisoformat(iso)
        except ValueError:
            pass
    return Raw(text)


# ---- Reading ------------------------------------------------------------------------------------------------

# A reader takes a start and a path and returns a status and, if it is 0, the value.
Reader = Callable[[int, bytes], "tuple[int, Any]"]


def _number_reader(function: Any, make: Any) -> Reader:
    def read(start: int, path: bytes) -> tuple[int, Any]:
        out = make()
        return function(start, path, ctypes.byref(out)), out.value
    return read


def _text_reader(name: str, convert: Callable[[bytes], Any]) -> Reader:
    text_of, status_of = lib.text_getter(name), getattr(lib, name)

    def read(start: int, path: bytes) -> tuple[int, Any]:
        text = text_of(start, path)
        if text is not None:
            return 0, convert(text)
        return status_of(start, path, ctypes.byref(c_char_p())) or Status.NO_MEMORY, None
    return read


def _read_bool(start: int, path: bytes) -> tuple[int, Any]:
    out = c_int()
    return lib.zonxGetBool(start, path, ctypes.byref(out)), out.value != 0


read_text = _text_reader("zonxGetText", decoded)


def _read_date(start: int, path: bytes) -> tuple[int, Any]:
    status, text = read_text(start, path)
    if status:
        return status, None
    value = from_date_text(text)
    return (0, value) if isinstance(value, datetime) else (Status.WRONG_KIND, None)


def _read_date_or_raw(start: int, path: bytes) -> tuple[int, Any]:
    status, text = read_text(start, path)
    return status, from_date_text(text or "")


def _read_raw(start: int, path: bytes) -> tuple[int, Any]:
    status, text = read_text(start, path)
    return status, Raw(text or "")


# By the type that the program wants.
READERS: dict[type, Reader] = {
    bool: _read_bool,
    int: _number_reader(lib.zonxGetInt64, c_longlong),
    float: _number_reader(lib.zonxGetDouble, c_double),
    str: _text_reader("zonxGetString", decoded),
    Path: _text_reader("zonxGetFilename", lambda name: Path(os.fsdecode(name))),
    datetime: _read_date,
    Raw: _read_raw,
}
# By the kind of the value.
_KINDS: dict[int, Reader] = {
    Kind.INTEGER: READERS[int],
    Kind.REAL: READERS[float],
    Kind.BOOLEAN: READERS[bool],
    Kind.STRING: READERS[str],
    Kind.FILENAME: READERS[Path],
    Kind.DATETIME: _read_date_or_raw,
    Kind.SUBSTITUTION: _read_raw,
    Kind.CLOB: _read_raw,
}


def wanted_type(example: object) -> Optional[type]:
    """The type that a value must have, to stand for the example; None for any."""
    example = _plain(example)
    if isinstance(example, PurePath):
        return Path
    for type_ in (bool, int, float, str, datetime, Raw):
        if isinstance(example, type_):
            return type_
    return None


def read_node(value: Optional[int]) -> tuple[int, Any]:
    """Reads a value by its own kind. None for no value and for an empty place."""
    if not value:
        return 0, None
    reader = _KINDS.get(lib.zonxGetKind(value))
    return reader(value, b"") if reader is not None else (0, None)


_LISTS: dict[type, tuple[Any, Any, Callable[[Any], list[Any]]]] = {
    bool: (lib.zonxGetBools, c_int, lambda out: [value != 0 for value in out]),
    int: (lib.zonxGetInt64s, c_longlong, list),
    float: (lib.zonxGetDoubles, c_double, list),
    str: (lib.zonxGetStrings, c_char_p, lambda out: [decoded(text) for text in out]),
}


def read_buffer(type_: type, keyword: int, out: Any, room: int) -> tuple[int, int]:
    """Fills a buffer with the values of a keyword. Returns the status and, if it is not 0, the number of the value
    that cannot be read."""
    count = c_size_t()
    status: int = _LISTS[type_][0](keyword, b"", out, room, ctypes.byref(count))
    return status, count.value


def read_list(type_: Optional[type], keyword: int) -> tuple[int, Any]:
    """Reads all values of a keyword as one type, or each by its kind. If a value cannot be read, returns the status
    and its number."""
    size: int = lib.zonGetNoParams(keyword)
    if type_ in _LISTS:
        _, make, convert = _LISTS[type_]
        out = (make * size)()
        status, number = read_buffer(type_, keyword, out, size)
        return (status, number) if status else (0, convert(out))
    values = []
    for number in range(1, size + 1):
        node = lib.zonParamByNum(keyword, number)
        status, value = READERS[type_](node, b"") if type_ else read_node(node)
        if status:
            return status, number
        values.append(value)
    return 0, values


# ---- Setting ------------------------------------------------------------------------------------------------

_INT64 = range(-2**63, 2**63)


class Assignment:
    """A value, or a list of all values, in the form that a setter of the library takes.

    It is made before the tree is locked: what a program passes can run code of its own, such as a generator.
    """

    def __init__(self, setter: Any = None, *arguments: Any, text: Optional[str] = None, is_list: bool = False) -> None:
        self._setter = setter
        self._arguments = arguments
        self.text = text  # of a value that only a text can express
        self.is_list = is_list

    def apply(self, start: int, path: bytes) -> int:
        """Calls the setter and returns its status."""
        return int(self._setter(start, path, *self._arguments))


_TOO_LARGE = Assignment(lambda start, path: Status.OUT_OF_RANGE)


def assignment_of(value: Any) -> Assignment:
    """The assignment of a value that a program assigns."""
    value = _plain(value)
    if isinstance(value, Iterable) and not isinstance(value, (str, bytes, bytearray, Mapping)):
        return _of_list([_plain(each) for each in value])
    if isinstance(value, bool):
        return Assignment(lib.zonxSetBool, value)
    if isinstance(value, int):
        return Assignment(lib.zonxSetInt64, int(value)) if value in _INT64 else _TOO_LARGE
    if isinstance(value, float):
        return Assignment(lib.zonxSetDouble, float(value))
    if isinstance(value, str):
        return Assignment(lib.zonxSetString, encoded(value))
    if isinstance(value, os.PathLike):
        return Assignment(lib.zonxSetFilename, encoded_name(value))
    return Assignment(text=_written(value))


def assignment_of_text(text: str) -> Assignment:
    """The assignment of all values, as they are written."""
    return Assignment(lib.zonxSetText, encoded(text), is_list=True)


def _plain(value: Any) -> Any:
    """numpy's arrays and numbers as those of Python. A float of less than 64 bits becomes the one with the fewest
    digits, 0.1 and not 0.10000000149011612, and nanoseconds become microseconds, not an int."""
    if not hasattr(value, "tolist"):
        return value
    kind = value.dtype.kind
    if kind == "f" and value.dtype.itemsize < 8:
        value = value.astype(str).astype(float)
    elif value.dtype.str.endswith(("[ns]", "[ps]", "[fs]", "[as]")):
        value = value.astype(f"{kind}8[us]")
    return value.tolist()


def _of_list(values: list[Any]) -> Assignment:
    types = set(map(type, values))
    size = len(values)
    if types == {float}:
        return Assignment(lib.zonxSetDoubles, (c_double * size)(*values), size, is_list=True)
    if not all(map(_fits, values)):
        return _TOO_LARGE
    if types <= {int}:
        return Assignment(lib.zonxSetInt64s, (c_longlong * size)(*values), size, is_list=True)
    if types == {bool}:
        return Assignment(lib.zonxSetBools, (c_int * size)(*values), size, is_list=True)
    if types == {str}:
        return Assignment(lib.zonxSetStrings, (c_char_p * size)(*map(encoded, values)), size, is_list=True)
    return assignment_of_text(", ".join(map(_written, values)))


def _fits(value: Any) -> bool:
    if isinstance(value, int):
        return value in _INT64
    return not isinstance(value, float) or math.isfinite(value)


def _written(value: Any) -> str:
    """A value as it is written in a file."""
    if value is None:
        return ""
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, int):
        return str(int(value))
    if isinstance(value, float):
        return repr(float(value))
    if isinstance(value, str):
        return "'" + value.replace("'", "''") + "'"
    if isinstance(value, datetime):
        return f"#{value.isoformat(' ')}#"
    if isinstance(value, date):
        return f"#{value.isoformat()}#"
    if isinstance(value, Raw):
        return value.text
    if isinstance(value, os.PathLike):
        return "|" + decoded(encoded_name(value)) + "|"
    raise TypeError(f"a value is an int, float, bool, str, path, date, Raw or None, not {type(value).__name__}")
