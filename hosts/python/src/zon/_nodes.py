"""Nodes as programs see them: sections, keywords, values, with what changes them.

A Section and a Keyword differ in what iterating and `len` mean. Locks are as in _view. Tested by tests/test_nodes.py
and tests/test_lifetimes.py.
"""
from __future__ import annotations

import ctypes
import operator
from ctypes import c_void_p
from typing import Any, Iterator, List, Optional, Tuple, Type, cast

from ._library import lib
from ._reading import Readable, path_of, split_path, value_path
from ._reports import ArgumentError, Status, encoded
from ._tree import start_of
from ._values import Assignment, Kind, assignment_of, assignment_of_text
from ._view import KEYWORDS


def _value_number(text: bytes) -> int:
    """The number in "[n]"; 1 without it."""
    digits = text[1:-1]
    return int(digits) if digits.isdigit() else 1


def _assignment(value: Any) -> Assignment:
    if isinstance(value, Assignment):
        return value
    if isinstance(value, Value):
        return Assignment(text=value.text)
    return assignment_of_text(value.text) if isinstance(value, Node) else assignment_of(value)


def _is_name(name: bytes) -> bool:
    """Whether the format allows a name. A setter judges it, in a file of its own."""
    handle = c_void_p(lib.zonCreate())
    status = lib.zonxSetText(handle, name + b"/" + name, b"")
    is_name = not status and lib.zonGetName(lib.zonSectionByNum(lib.zonGetRoot(handle), 1)) == name
    lib.zonClose(ctypes.byref(handle))
    return is_name


class Node(Readable):
    """A section, a keyword, a value, or a whole file.

    A name in brackets is a path: `file["Quay:2/Berth/Draught"]` is `file["Quay", 2]["Berth"]["Draught"]`. Sections and
    keywords of one name are numbered from 1. A number in the brackets of a keyword is the index of a value, which
    counts from 0 as in any sequence.
    """

    __slots__ = ()

    # ---- Setting --------------------------------------------------------------------------------------------

    def __setitem__(self, key: Any, value: Any) -> None:
        """Sets the first value of the keyword at a path, or the one that "[n]" selects; all values, if the value is a
        list or another iterable. Creates the sections and the keyword that are missing. `keyword[n]` sets the value at
        an index."""
        assignment = _assignment(value)
        if isinstance(key, (str, tuple)):
            return self._assign(path_of(key), assignment)
        index = operator.index(key)
        with self._tree.exclusive():
            self._set(value_path(self._number_of(self._require(KEYWORDS), index)), assignment)

    def append(self, value: Any) -> None:
        """Appends a value to a keyword."""
        assignment = _assignment(value)
        with self._tree.exclusive():
            self._set(value_path(lib.zonGetNoParams(self._require(KEYWORDS)) + 1), assignment)

    def _assign(self, path: bytes, value: Any) -> None:
        assignment = _assignment(value)
        with self._tree.exclusive():
            self._set(path, assignment)

    def _set(self, path: bytes, assignment: Assignment, value: Optional[Value] = None) -> None:
        """Sets values. The view of the one at the path, if it is passed, follows its value."""
        tree = self._tree
        start = start_of(self)
        text = assignment.text
        replaces_all = assignment.is_list or text is not None
        with tree.change():
            before = self._values_at(start, path, replaces_all) if tree.values else []
            status = assignment.apply(start, path) if text is None else self._set_text(start, path, text)
            if before:
                tree.forget_replaced(before, self._values_at(start, path, replaces_all))
            if value is not None:
                value._node = lib.zonNodeByNum(start, _value_number(path))
                tree.values[value._node] = value
        if status:
            raise self._failure(status, start, path)

    def _values_at(self, start: int, path: bytes, all_of_them: bool) -> List[Tuple[int, int]]:
        """The addresses and kinds of the values that a setter with this path can replace."""
        base, number = split_path(path)
        keyword = c_void_p()
        if lib.zonxFind(start, base, ctypes.byref(keyword)) or lib.zonxGetKind(keyword) not in KEYWORDS:
            return []
        first = _value_number(number)
        numbers = range(1, lib.zonGetNoNodes(keyword) + 1) if all_of_them else range(first, first + 1)
        nodes = [lib.zonNodeByNum(keyword, n) for n in numbers]
        return [(node, lib.zonxGetKind(node)) for node in nodes if node]

    def _set_text(self, start: int, path: bytes, text: str) -> int:
        """Sets one value that only a text can express: replaces all values by their texts, with a new one."""
        base, number = split_path(path)
        found = c_void_p()
        status: int = lib.zonxFind(start, path, ctypes.byref(found))
        if status == Status.BAD_ARGUMENT:
            return status
        status = lib.zonxFind(start, base, ctypes.byref(found))
        texts = [] if status or lib.zonxGetKind(found) not in KEYWORDS else self._texts(found.value or 0)
        first = _value_number(number)
        if first > len(texts) + 1:
            return Status.MISSING
        texts[first - 1:first] = [text]
        return int(lib.zonxSetText(start, base, encoded(", ".join(texts))))

    def add_section(self, name: str) -> Section:
        """Adds a section after the last one, also if there are sections of this name."""
        path = encoded(name)
        with self._tree.exclusive():
            start = start_of(self)
            new = path + b":%d" % (self._count(start, path + b"/") + 1)
            # A setter makes the section, because it judges the name; then the section is emptied again.
            with self._tree.change():
                status = lib.zonxSetText(start, new + b"/new", b"") or lib.zonxRemove(start, new + b"/new")
            if status:
                raise self._failure(status, start, new)
            return cast(Section, self._find(new + b"/"))

    def add_keyword(self, name: str, value: Any = None) -> Keyword:
        """Adds a keyword after the last one, also if there are keywords of this name."""
        path = encoded(name)
        assignment = _assignment(value)
        with self._tree.exclusive():
            new = path + b":%d" % (self._count(start_of(self), path) + 1)
            self._set(new, assignment)
            return cast(Keyword, self._find(new))

    def rename(self, name: str) -> None:
        """Changes the name of a section or keyword, which keeps its place."""
        text = encoded(name)
        with self._tree.exclusive():
            node = self._require((Kind.SECTION, *KEYWORDS))
            if not _is_name(text):
                raise self._error(ArgumentError, Status.BAD_ARGUMENT, f"`{name}` cannot be a name")
            is_section = lib.zonxGetKind(node) == Kind.SECTION
            if (lib.zoneRenameSection if is_section else lib.zoneRenameKeyword)(node, text):
                raise MemoryError

    def _count(self, start: int, path: bytes) -> int:
        """How many nodes have the name of a path."""
        found = c_void_p()
        if lib.zonxFind(start, path, ctypes.byref(found)):
            return 0
        is_same = (lib.zonxGetKind(found) == Kind.SECTION) == path.endswith(b"/")
        return int(lib.zonGetNoInstances(found)) if is_same else 0

    def __delitem__(self, key: Any) -> None:
        """Removes the section, keyword or value at a path, or the value of a keyword at an index."""
        path = path_of(key) if isinstance(key, (str, tuple)) else b""
        index = 0 if path or isinstance(key, (str, tuple)) else operator.index(key)
        with self._tree.exclusive():
            start = start_of(self)
            if not isinstance(key, (str, tuple)):
                path = value_path(self._number_of(self._require(KEYWORDS), index))
            self._remove(start, path)

    def remove(self) -> None:
        """Removes the node from its file, with everything in it."""
        with self._tree.exclusive():
            self._remove(start_of(self), b"")

    def _remove(self, start: int, path: bytes) -> None:
        found = c_void_p()
        with self._tree.change():
            status = lib.zonxFind(start, path, ctypes.byref(found)) or lib.zonxRemove(start, path)
            if not status:
                self._tree.forget(found.value or 0)
        if status:
            raise self._failure(status, start, path)

    def _child(self, node: int) -> Node:
        views = self._tree.views
        view = views.alive(node)
        if view is None:
            class_: Type[Node] = Section if lib.zonxGetKind(node) == Kind.SECTION else Keyword
            view = views[node] = class_(self._tree, self, node)
        return view

    def _value(self, node: int) -> Node:
        views = self._tree.values
        view = views.alive(node)
        if view is None:
            view = views[node] = Value(self._tree, self, node)
        return view


class Section(Node):
    """A section. Iterating yields its sections, `len` is their number; see also `keywords` and `children`."""

    __slots__ = ()

    def __iter__(self) -> Iterator[Section]:
        return super().__iter__()


class Keyword(Node):
    """A keyword. It is a sequence of its values, with indices from 0 and slices."""

    __slots__ = ()

    def __iter__(self) -> Iterator[Any]:
        return iter(self.values())

    def __len__(self) -> int:
        with self._tree.lock:
            return int(lib.zonGetNoParams(start_of(self)))

    def __contains__(self, value: Any) -> bool:
        return value in self.values()

    def __bool__(self) -> bool:
        raise TypeError("a keyword is neither true nor false: ask for its value, or compare it with None")


class Value(Node):
    """One value of a keyword, with its place and its remark: `keyword.children()[0]`, `file["Run/Step[1]"]`."""

    __slots__ = ()

    def __bool__(self) -> bool:
        raise TypeError("a zon.Value is neither true nor false: ask for its value, or compare it with None")

    def _step(self) -> str:
        return f"[{lib.zonGetInstanceNo(self._node)}]"

    def _set(self, path: bytes, assignment: Assignment, value: Optional[Value] = None) -> None:
        number = lib.zonGetInstanceNo(start_of(self))
        if path:
            raise self._failure(Status.BAD_ARGUMENT, self._node, path)
        cast(Keyword, self._owner)._set(value_path(number), assignment, self)
