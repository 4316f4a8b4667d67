"""Two files: validating, comparing and merging. Both trees are locked. Tested by tests/test_compare.py."""
from __future__ import annotations

import ctypes
import enum
from ctypes import c_void_p
from dataclasses import dataclass
from typing import Any, List, Optional, Tuple, Type

from ._file import File
from ._library import CCompare, Visitor, lib
from ._nodes import Node
from ._reading import split_path
from ._reports import ArgumentError, Collector, Report, Status, collect, decoded, encoded, make_error
from ._tree import locked, start_of
from ._values import Kind
from ._view import KEYWORDS


class Change(enum.IntEnum):
    """What a difference is."""
    ADDED = 0
    REMOVED = 1
    DIFFERENT = 2
    MOVED = 3


@dataclass(frozen=True)
class Difference:
    """A section, keyword or value that differs. `before` is None if it was added, `after` if it was removed; the path
    is that of `after` where there is one."""
    change: Change
    path: str
    before: Optional[Node]
    after: Optional[Node]

    def __str__(self) -> str:
        nodes = [node for node in (self.before, self.after) if node is not None and node.kind != Kind.SECTION]
        return f"{self.path}: {self.change.name.lower()} {' -> '.join(node.text for node in nodes)}".rstrip()


def _require(type_: Type[Node], *nodes: object) -> None:
    for node in nodes:
        if not isinstance(node, type_):
            wanted = "file" if type_ is File else "file or section"
            raise TypeError(f"a {wanted} is needed, not {type(node).__name__}")


def validate(template: File, candidate: File) -> List[Report]:
    """Compares a file with a template. Returns every mismatch, with the place in the file and, as the related place,
    that in the template; an empty list if the file conforms."""
    _require(File, template, candidate)
    with locked(template._tree, candidate._tree):
        for file in (template, candidate):
            start_of(file)
        collector = Collector()
        status = lib.zonxValidate(template._tree.handle, candidate._tree.handle, collect, collector)
        if status != Status.MISMATCH:
            collector.check(status)
        return collector.take()


def diff(before: Node, after: Node, *, key: str = "", relative: float = 0.0, absolute: float = 0.0
         ) -> List[Difference]:
    """What differs as data between two files or two sections. Spelling and layout do not count. Sections are paired
    by name and content, or by the values of their keyword `key`. Reals that differ by less than a tolerance, absolute
    or relative to the larger one, are equal."""
    _require(Node, before, after)
    encoded_key = encoded(key)
    options = CCompare(relative, absolute)
    with locked(before._tree, after._tree):
        starts = [start_of(node) for node in (before, after)]
        nodes = [node._tree.handle if isinstance(node, File) else start_of(node) for node in (before, after)]
        found = _Differences()
        status = lib.zonxDiffByKey(*nodes, encoded_key, ctypes.byref(options), _collect_function, found, None)
        if found.failure is not None:
            raise found.failure
        if status == Status.BAD_ARGUMENT:
            raise ArgumentError("two files or two sections can be compared, with tolerances of 0 or more",
                                Status.BAD_ARGUMENT)
        if status:
            raise make_error(status, [])
        old, new = _Finder(before, starts[0]), _Finder(after, starts[1])
        return [Difference(Change(change), decoded(path), old.find(node, path), new.find(other, path))
                for change, path, node, other in found]


def merge(target: File, overlay: File) -> None:
    """Gives every keyword of `overlay` to `target`: the values of such a keyword are replaced as a whole, sections and
    keywords that are missing are added."""
    _require(File, target, overlay)
    tree = target._tree
    tree.exclusive()
    with locked(tree, overlay._tree):
        start_of(target)
        start_of(overlay)
        handles = tree.handle, overlay._tree.handle
        with tree.change():
            values = [(view._node, view._owner._node, lib.zonGetInstanceNo(view._node), lib.zonxGetKind(view._node))
                      for view in tree.values.all_alive() if view._owner is not None]
            definitions = [view._node for view in tree.views.all_alive()
                           if lib.zonxGetKind(view._node) == Kind.DEFINITION]
            status = lib.zonxMerge(*handles)
            for node, owner, number, kind in values:
                if lib.zonNodeByNum(owner, number) != node or lib.zonxGetKind(node) != kind:
                    tree.forget(node)
            for node in definitions:  # the library may have replaced it
                tree.forget(node)
        if status:
            raise make_error(status, [])


class _Differences(List[Tuple[int, bytes, Optional[int], Optional[int]]]):
    """Receives the differences of one call."""
    failure: Optional[BaseException] = None


def _collect(difference: Any, found: _Differences) -> None:
    try:
        each = difference.contents
        found.append((each.change, each.path, each.before, each.after))
    except BaseException as failure:  # pylint: disable=broad-except
        found.failure = failure  # no exception can pass through the library


_collect_function = Visitor(_collect)


class _Finder:
    """Finds the views of nodes that the library passes. It does not pass the keyword of a value: that is the last one,
    or the one at the path, or else it is among the children of the section, which are listed once."""

    def __init__(self, start: Node, address: int) -> None:
        self._start = start
        self._address = address
        self._last = 0
        self._owners: dict[tuple[int, int], dict[int, int]] = {}

    def find(self, node: Optional[int], path: bytes) -> Optional[Node]:
        """The view of a node; None for none."""
        if not node:
            return None
        if lib.zonxGetKind(node) in (Kind.SECTION, *KEYWORDS):
            return self._start._view(node)
        number: int = lib.zonGetInstanceNo(node)
        if not self._last or lib.zonNodeByNum(self._last, number) != node:
            self._last = self._owner(node, number, path)
        return self._start._view(self._last)._value(node)

    def _owner(self, node: int, number: int, path: bytes) -> int:
        found = c_void_p()
        if not lib.zonxFind(self._address, split_path(path)[0], ctypes.byref(found)):
            if lib.zonNodeByNum(found, number) == node:
                return found.value or 0
        section: int = lib.zonGetParentSection(node)
        owners = self._owners.get((section, number))
        if owners is None:
            children = [lib.zonNodeByNum(section, n) for n in range(1, lib.zonGetNoNodes(section) + 1)]
            keywords = [child for child in children if lib.zonxGetKind(child) in KEYWORDS]
            owners = {lib.zonNodeByNum(keyword, number): keyword for keyword in keywords}
            self._owners[section, number] = owners
        return owners[node]
