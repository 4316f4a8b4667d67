"""What every view of a node has: its tree, its owner, the address of its node, and errors at its place.

Public methods take the lock of the tree, those with an underscore need it. Code of the program, such as a generator
or __index__, runs before the lock is taken: it could remove the node. Tested by tests/test_nodes.py.
"""
from __future__ import annotations

import ctypes
from ctypes import c_char_p
from typing import TYPE_CHECKING, Any, Optional, Type, Union

from ._library import CPlace, lib
from ._reports import (Collector, Error, KindError, Place, Report, Severity, Status, collect, copy_place, decoded,
                       encoded, make_error)
from ._tree import Tree, start_of
from ._values import Kind

if TYPE_CHECKING:
    from ._file import File
    from ._nodes import Node

KEYWORDS = (Kind.KEYWORD, Kind.DEFINITION)
GROUPS = (Kind.FILE, Kind.SECTION)
_remark_of = lib.text_getter("zonxGetRemark")


class View:
    """A view of a node. If the node was removed or replaced, or its file closed, every use raises `zon.ClosedError`."""

    __slots__ = ("_tree", "_owner", "_node", "_seen", "__weakref__")

    def __init__(self, tree: Tree, owner: Optional[Node], node: int) -> None:
        self._tree = tree
        self._owner = owner
        self._node = node  # 0: removed
        self._seen = tree.removals

    def __reduce__(self) -> Any:
        raise TypeError(f"a {type(self).__name__} cannot be copied or pickled")

    def __repr__(self) -> str:
        try:
            return f"<zon.{type(self).__name__} {self.path!r} of {self.file.name!r}>"
        except Error as error:
            return f"<zon.{type(self).__name__}: {error}>"

    @property
    def kind(self) -> Kind:
        """The kind of the node."""
        with self._tree.lock:
            return Kind(lib.zonxGetKind(start_of(self)))

    @property
    def name(self) -> str:
        """The name of a section or keyword; empty for a value. The name of a file is its file name."""
        with self._tree.lock:
            return decoded(lib.zonGetName(start_of(self)))

    @property
    def instance(self) -> int:
        """Which one of its name it is, from 1; for a value its number in the keyword."""
        with self._tree.lock:
            return int(lib.zonGetInstanceNo(start_of(self)))

    @property
    def path(self) -> str:
        """The path from the file to the node, such as "Quay:2/Berth/Draught"."""
        with self._tree.lock:
            start_of(self)
            steps = []
            at: View = self
            while at._owner is not None:
                steps.append(at._step())
                at = at._owner
            return "".join(reversed(steps)).lstrip("/")

    def _step(self) -> str:
        name = decoded(lib.zonGetName(self._node)) or "()"
        number = lib.zonGetInstanceNo(self._node)
        return f"/{name}:{number}" if number > 1 else f"/{name}"

    @property
    def owner(self) -> Optional[Node]:
        """The section or file around a section or keyword, the keyword of a value; None for a file."""
        with self._tree.lock:
            start_of(self)
            return self._owner

    @property
    def file(self) -> File:
        """The file that the node belongs to."""
        at: Any = self
        while at._owner is not None:
            at = at._owner
        return at  # type: ignore[no-any-return]

    @property
    def place(self) -> Optional[Place]:
        """Where the node is in the text that was loaded; None if it was not loaded or has changed since."""
        with self._tree.lock:
            place = CPlace()
            status = lib.zonxWhere(start_of(self), ctypes.byref(place))
            if status and status != Status.MISSING:
                raise make_error(status, ())
            return None if status else copy_place(place)

    @property
    def remark(self) -> Optional[str]:
        """The remark of the node, without its braces; None if it has none."""
        with self._tree.lock:
            return self._remark(start_of(self))

    def _remark(self, node: int) -> Optional[str]:
        text = _remark_of(node)
        if text is not None:
            return decoded(text)
        status = lib.zonxGetRemark(node, ctypes.byref(c_char_p()))
        if status != Status.MISSING:
            raise make_error(status or Status.NO_MEMORY, ())
        return None

    def report(self, message: str, hint: str = "", severity: Severity = Severity.ERROR, rule: str = "") -> Report:
        """A report of the program's own in the form of the library's, at the place of the node; for a keyword at its
        first value."""
        texts = encoded(rule), encoded(message), encoded(hint)
        with self._tree.lock:
            node = start_of(self)
            if lib.zonxGetKind(node) in KEYWORDS:
                node = lib.zonNodeByNum(node, 1) or node
            collector = Collector()
            collector.check(lib.zonxReportNode(node, Severity(severity), *texts, collect, collector))
            return collector.reports[0]

    def error(self, message: str, hint: str = "") -> Error:
        """An error at the place of the node, to be raised: `raise keyword.error("longer than the harbour")`."""
        report = self.report(message, hint)
        return Error(report.text, None, [report])

    def _error(self, class_: Type[Error], status: Status, message: str) -> Error:
        report = self.report(message, rule=status.name.lower().replace("_", "-"))
        return class_(report.text, status, [report])

    def _failure(self, status: int, start: int, path: bytes = b"") -> Union[Error, MemoryError]:
        """The error for a status that a function returned for a path."""
        collector = Collector()
        lib.zonxReportPath(start, path, status, collect, collector)
        return make_error(status, collector.take())

    def _require(self, kinds: tuple[Kind, ...]) -> int:
        """The address of a node that must be of one of the kinds."""
        node = start_of(self)
        if lib.zonxGetKind(node) not in kinds:
            found = self.kind.name.lower() if self.kind in KEYWORDS + GROUPS else "value"
            wanted = "keyword" if kinds is KEYWORDS else "section"
            name = f"`{self.path}`" if self._owner is not None else "this"
            raise self._error(KindError, Status.WRONG_KIND, f"{name} is a {found}, not a {wanted}")
        return node
