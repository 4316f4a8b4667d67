"""Files: loading, checking and saving.

The functions that read or write a file release the lock of the interpreter, and hold the lock of the tree that they
work on. Tested by tests/test_file.py and tests/test_threads.py.
"""
from __future__ import annotations

import ctypes
import os
from ctypes import c_size_t, c_void_p
from pathlib import Path
from types import TracebackType
from typing import Iterator, List, Optional, Type, Union

from ._library import lib
from ._nodes import Node, Section
from ._reports import (ArgumentError, Collector, MissingError, Report, Status, collect, decoded, encoded_name,
                       make_error, utf8)
from ._tree import Tree, start_of

FileName = Union[str, "os.PathLike[str]"]


class File(Node):
    """A parameter file. `zon.load` and `zon.parse` return one, `zon.File()` is an empty one.

    It is closed by `with`, by `close`, or when it and all its nodes are gone. Iterating yields its top-level sections.
    A file may be used by several threads, one after the other: each use waits for the one before it.
    """

    __slots__ = ("_reports", "_filename")

    def __init__(self) -> None:
        handle = lib.zonCreate()
        if not handle:
            raise MemoryError
        self._adopt(handle, None, [])

    def _adopt(self, handle: int, filename: Optional[Path], reports: List[Report]) -> None:
        tree = Tree(handle)
        super().__init__(tree, None, lib.zonGetRoot(handle))
        tree.views[self._node] = self
        self._reports = reports
        self._filename = filename

    @classmethod
    def _from_handle(cls, handle: c_void_p, status: int, filename: Optional[Path], collector: Collector) -> File:
        """The file that a load returned; raises its error."""
        name = "" if filename is None else str(filename)
        number = ctypes.get_errno()
        if status or collector.failure is not None:
            if handle:
                lib.zonClose(ctypes.byref(handle))
            ctypes.set_errno(number)
            collector.check(status, name)
        file = cls.__new__(cls)
        file._adopt(handle.value or 0, filename, collector.reports)
        return file

    def __repr__(self) -> str:
        return f"<zon.File {self.name!r}{', closed' if self.closed else ''}>"

    def __iter__(self) -> Iterator[Section]:
        return super().__iter__()

    def __enter__(self) -> File:
        start_of(self)
        return self

    def __exit__(self, type_: Optional[Type[BaseException]], error: Optional[BaseException],
                 traceback: Optional[TracebackType]) -> None:
        self.close()

    def close(self) -> None:
        """Closes the file without saving it. Closing it again does nothing."""
        self._tree.close()

    @property
    def closed(self) -> bool:
        """Whether the file is closed."""
        return not self._tree.handle

    @property
    def filename(self) -> Optional[Path]:
        """The file that was loaded or last saved; None for one that was built."""
        return self._filename

    @property
    def name(self) -> str:
        """The name of that file; empty for one that was built."""
        return "" if self._filename is None else str(self._filename)

    @property
    def reports(self) -> List[Report]:
        """The warnings of the load."""
        return list(self._reports)

    def save(self, filename: Optional[FileName] = None, *, overwrite: bool = False, new: bool = False,
             backup: bool = False, plain: bool = False, names_as_written: bool = False) -> None:
        """Saves the file. What was not changed stays byte for byte: comments, layout, spelling of numbers.

        Without a name it goes to the file that was loaded or last saved. It is replaced in one step, or not at all.
        overwrite: also another file, or one that has changed since it was loaded. new: only if no file has the name.
        backup: the old file stays, with `~` after its name. plain: in a uniform layout, without comments.
        names_as_written: file names stay as they are, also in another folder.
        """
        name = None if filename is None else encoded_name(filename)
        flags = plain | new << 1 | overwrite << 2 | backup << 3 | names_as_written << 4
        with self._tree.exclusive():
            start_of(self)
            collector = Collector()
            status = lib.zonxSave(self._tree.handle, name, flags, collect, collector)
            if status == Status.BAD_ARGUMENT:
                raise ArgumentError("the file has no name yet: save(filename)", Status.BAD_ARGUMENT)
            collector.check(status, self.name if name is None else os.fsdecode(name))
            if name is not None:
                self._filename = Path(os.fsdecode(name))

    def to_text(self, *, plain: bool = False, names_as_written: bool = False) -> str:
        """The text that `save` would write to the file that was loaded."""
        with self._tree.lock:
            start_of(self)
            text, size, collector = c_void_p(), c_size_t(), Collector()
            status = lib.zonxText(self._tree.handle, plain | names_as_written << 4, ctypes.byref(text),
                                  ctypes.byref(size), collect, collector)
            try:
                collector.check(status, self.name)
                return decoded(ctypes.string_at(text.value or 0, size.value))
            finally:
                lib.zonxFree(text)

    def watch(self, on: bool = True) -> None:
        """Starts or stops to take note of the values that are read, for `unread`."""
        with self._tree.exclusive():
            start_of(self)
            status = lib.zonxWatch(self._tree.handle, bool(on))
            if status:
                raise make_error(status, [])

    def unread(self) -> List[Report]:
        """A warning for each keyword that was not read since `watch`, with the nearest name that was asked for."""
        with self._tree.lock:
            start_of(self)
            collector = Collector()
            status = lib.zonxReportUnread(self._tree.handle, collect, collector, None)
            if status == Status.MISSING:
                raise MissingError("the file is not watched: call watch() before reading", Status.MISSING)
            collector.check(status)
            return collector.reports

    def merge(self, overlay: File) -> None:
        """Gives every keyword of another file to this one. The values of such a keyword are replaced as a whole,
        sections and keywords that are missing are added."""
        from ._compare import merge
        merge(self, overlay)


def load(filename: FileName) -> File:
    """Loads a file. If it has errors, the exception has a report of each: `error.reports`."""
    name = encoded_name(filename)
    handle, collector = c_void_p(), Collector()
    status = lib.zonxLoadFile(name, ctypes.byref(handle), collect, collector)
    return File._from_handle(handle, status, Path(os.fsdecode(name)), collector)


def parse(text: Union[str, bytes], filename: FileName = "") -> File:
    """Loads a text. The name is that of the text in reports, and its file names are relative to it."""
    data = utf8(text) if isinstance(text, str) else bytes(memoryview(text))
    name = encoded_name(filename)
    handle, collector = c_void_p(), Collector()
    status = lib.zonxLoadText(data, len(data), name, ctypes.byref(handle), collect, collector)
    return File._from_handle(handle, status, Path(os.fsdecode(name)) if name else None, collector)


def check(filename: FileName) -> List[Report]:
    """Everything that is wrong in a file, also if it cannot be opened; an empty list if nothing is. Needs no memory
    for a tree."""
    name = encoded_name(filename)
    collector = Collector()
    status = lib.zonxLoadFile(name, None, collect, collector)
    reports = collector.take()
    if status and not reports:
        raise make_error(status, reports, os.fsdecode(name))
    return reports
