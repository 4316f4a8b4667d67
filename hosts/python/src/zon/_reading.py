"""Finding and reading by path.

What takes a path is there for every kind of node, because the library takes a path at any node and reports one that
does not fit with its place. Locks are as in _view. Tested by tests/test_nodes.py and tests/test_values.py.
"""
from __future__ import annotations

import ctypes
import operator
from ctypes import c_void_p
from datetime import datetime
from pathlib import Path
from typing import TYPE_CHECKING, Any, Iterator, List, Optional, Tuple, Type, TypeVar, Union, cast, overload

from ._library import lib
from ._reports import Error, MissingError, Status, encoded
from ._tree import is_alive, start_of
from ._values import (READERS, Kind, Raw, assignment_of_text, read_buffer, read_list, read_node, read_text,
                      wanted_type)
from ._view import GROUPS, KEYWORDS, View

if TYPE_CHECKING:
    import numpy
    from ._nodes import Keyword, Node, Section

Key = Union[str, Tuple[str, int]]
T = TypeVar("T", bool, int, float, str, Path, datetime, Raw)
D = TypeVar("D")


def path_of(key: Any) -> bytes:
    """The path of `node["Quay"]` or `node["Quay", 2]`."""
    if isinstance(key, str):
        return encoded(key)
    if isinstance(key, tuple) and len(key) == 2 and isinstance(key[0], str):
        return encoded(f"{key[0]}:{operator.index(key[1])}")
    raise TypeError(f"a key is a path, or a name and a number, not {key!r}")


def split_path(path: bytes) -> tuple[bytes, bytes]:
    """The path of a keyword, and "[n]", which may be missing."""
    end = path.rfind(b"[") if path.endswith(b"]") else -1
    return (path, b"") if end < 0 else (path[:end], path[end:])


def value_path(n: int) -> bytes:
    """The path of the n-th value, from its keyword."""
    return b"[%d]" % n


def _checked(type_: Any) -> Any:
    """A type that values can be read as."""
    if type_ not in READERS:
        raise TypeError("a value is read as bool, int, float, str, Path, datetime or Raw")
    return type_


class Readable(View):
    """A node that can be searched and read."""

    __slots__ = ()

    # ---- Finding --------------------------------------------------------------------------------------------

    @overload
    def __getitem__(self, key: Key) -> Node: ...
    @overload
    def __getitem__(self, key: int) -> Any: ...
    @overload
    def __getitem__(self, key: slice) -> List[Any]: ...

    def __getitem__(self, key: Any) -> Any:
        """The node at a path; of a keyword the value at an index, or the values of a slice."""
        if isinstance(key, slice):
            return self.values()[key]
        if not isinstance(key, (str, tuple)):
            return self._value_at(operator.index(key))
        path = path_of(key)
        with self._tree.lock:
            node = self._find(path)
            if node is None:
                raise self._missing(path)
            return node

    def _missing(self, path: bytes) -> Union[Error, MemoryError]:
        is_section = self._owner is None and b"/" not in path  # a file has no keywords
        return self._failure(Status.MISSING, self._node, path + b"/" if is_section else path)

    def find(self, path: str) -> Optional[Node]:
        """The node at a path; None if there is none."""
        encoded_path = encoded(path)
        with self._tree.lock:
            return self._find(encoded_path)

    def __contains__(self, key: Any) -> bool:
        """Whether there is a node at a path. Of a keyword: whether this is one of its values."""
        path = path_of(key)
        with self._tree.lock:
            return self._find(path) is not None

    def section(self, name: str, instance: int = 1) -> Section:
        """The n-th section of a name, also where a keyword has the same name."""
        return cast("Section", self[f"{name}:{operator.index(instance)}/"])

    def keyword(self, name: str, instance: int = 1) -> Keyword:
        """The n-th keyword of a name."""
        found = self[name, instance]
        with self._tree.lock:
            found._require(KEYWORDS)
        return cast("Keyword", found)

    def sections(self, name: Optional[str] = None) -> List[Section]:
        """All sections, or those of a name, in the order of the file."""
        path = None if name is None else encoded(name) + b"/"
        with self._tree.lock:
            by = lib.zonSectionByNum, lib.zonSectionByNameNum
            return self._members(path, lib.zonGetNoSections, *by, (Kind.SECTION,))

    def keywords(self, name: Optional[str] = None) -> List[Keyword]:
        """All keywords, or those of a name, in the order of the file."""
        path = None if name is None else encoded(name)
        with self._tree.lock:
            by = lib.zonKeywordByNum, lib.zonKeywordByNameNum
            return self._members(path, lib.zonGetNoKeywords, *by, KEYWORDS)

    def children(self) -> List[Node]:
        """Sections, keywords and default definitions in the order of the file; of a keyword its values."""
        with self._tree.lock:
            node = start_of(self)
            view = self._value if lib.zonxGetKind(node) in KEYWORDS else self._child
            return [view(lib.zonNodeByNum(node, n)) for n in range(1, lib.zonGetNoNodes(node) + 1)]

    def __iter__(self) -> Iterator[Any]:
        """The sections of a file or section, without those that are removed meanwhile; the values of a keyword."""
        for section in self.sections():
            with self._tree.lock:
                is_there = is_alive(section)
            if is_there:
                yield section

    def __len__(self) -> int:
        """The number of sections of a file or section, of values of a keyword."""
        with self._tree.lock:
            return int(lib.zonGetNoSections(self._require(GROUPS)))

    def __bool__(self) -> bool:
        return True

    def _find(self, path: bytes) -> Optional[Node]:
        start = start_of(self)
        found = c_void_p()
        status = lib.zonxFind(start, path, ctypes.byref(found))
        if status == Status.MISSING:
            return None
        if status:
            self._require(GROUPS)
            raise self._failure(status, start, path)
        if found.value == start:
            return cast("Node", self)
        base, number = split_path(path)
        if number:
            keyword = c_void_p()
            lib.zonxFind(start, base, ctypes.byref(keyword))
            return self._view(keyword.value or 0)._value(found.value or 0)
        return self._view(found.value or 0)

    def _view(self, node: int) -> Node:
        """The view of a section or keyword, or of the file. Makes those of its owners that have none."""
        tree = self._tree
        new = []
        view = tree.views.alive(node)
        while view is None:
            new.append(node)
            node = lib.zonGetParentSection(node)
            view = tree.views.alive(node)
        while new:
            view = view._child(new.pop())
        return view

    def _child(self, node: int) -> Node:
        """The view of a section or keyword in this node."""
        raise NotImplementedError

    def _value(self, node: int) -> Node:
        """The view of a value of this keyword."""
        raise NotImplementedError

    def _assign(self, path: bytes, value: Any) -> None:
        """Sets the value or the values at a path."""
        raise NotImplementedError

    def _members(self, path: Optional[bytes], count: Any, by_number: Any, by_name: Any, kinds: tuple[Kind, ...]
                 ) -> List[Any]:
        """Sections or keywords of this node, or all of the name that the path ends with."""
        node = self._require(GROUPS)
        if path is None:
            return [self._child(by_number(node, n)) for n in range(1, count(node) + 1)]
        first = self._find(path)
        if first is None or first._owner is None or lib.zonxGetKind(first._node) not in kinds:
            return []
        owner, name = first._owner, lib.zonGetName(first._node)
        size = lib.zonGetNoInstances(first._node)
        return [owner._child(by_name(owner._node, name, n)) for n in range(1, size + 1)]

    # ---- Reading --------------------------------------------------------------------------------------------

    @overload
    def get(self, path: Key) -> Any: ...
    @overload
    def get(self, path: Key, default: T) -> T: ...
    @overload
    def get(self, path: Key, default: List[T]) -> List[T]: ...
    @overload
    def get(self, path: Key, default: D) -> Any: ...

    def get(self, path: Key, default: Any = None) -> Any:
        """The value at a path, or the default if there is none: no such section or keyword, or an empty place.

        The value must be of the type of the default, or else the error names its place; an integer can stand for a
        float. For a list as the default, a tuple or an array, it is the list of all values. With another default,
        such as None, the value is of any type.
        """
        place = path_of(path)
        is_list = isinstance(default, (list, tuple)) or getattr(default, "ndim", 0) > 0
        type_ = wanted_type(default[0] if is_list and len(default) else None if is_list else default)
        with self._tree.lock:
            start = start_of(self)
            if is_list:
                status, value = self._read_all(start, place, type_)
            elif type_ is not None:
                status, value = READERS[type_](start, place)
            else:
                status, value = self._read(start, place)
            if status and status != Status.MISSING:
                raise self._failure(status, start, place)
            return default if status or value is None else value

    def _read(self, start: int, path: bytes) -> tuple[int, Any]:
        """Reads a value by its own kind."""
        found = c_void_p()
        status = lib.zonxFind(start, path, ctypes.byref(found))
        if status:
            # A getter takes note of the name that is missing, see File.unread.
            return READERS[str](start, path)
        return self._read_node(found.value or 0)

    def _read_node(self, node: int) -> tuple[int, Any]:
        kind = lib.zonxGetKind(node)
        if kind in KEYWORDS:
            return read_node(lib.zonParamByNum(node, 1))
        return (Status.WRONG_KIND, None) if kind in GROUPS else read_node(lib.zonFindDefault(node) or node)

    def _read_all(self, start: int, path: bytes, type_: Optional[type]) -> tuple[int, Any]:
        found = c_void_p()
        status = lib.zonxFind(start, path, ctypes.byref(found))
        if status:
            return READERS[str](start, path)
        if lib.zonxGetKind(found) not in KEYWORDS:
            return Status.WRONG_KIND, None
        status, value = read_list(type_, found.value or 0)
        if status and not (status == Status.MISSING and lib.zonGetNoParams(found) == 1):
            raise self._failure(status, lib.zonNodeByNum(found, value))
        return status, value

    @property
    def value(self) -> Any:
        """The first value of a keyword, or the value itself: an int, float, bool, str, Path or datetime, None for an
        empty place, `zon.Raw` for anything else. A file name is a path resolved against the folder of the file.
        Setting it leaves the other values as they are."""
        with self._tree.lock:
            start = start_of(self)
            status, value = self._read_node(start)
            if status:
                self._require_values()
                raise self._failure(status, start)
            return value

    @value.setter
    def value(self, value: Any) -> None:
        self._assign(b"", value)

    def to(self, type_: Type[T]) -> T:
        """The value as one type, or an error with its place: `keyword.to(float)`. The type is bool, int, float, str,
        Path, datetime or Raw; nothing is converted but an integer to a float."""
        reader = READERS[_checked(type_)]
        with self._tree.lock:
            start = start_of(self)
            status, value = reader(start, b"")
            if status:
                self._require_values()
                raise self._failure(status, start)
            return cast(T, value)

    def __float__(self) -> float:
        return self.to(float)

    def __int__(self) -> int:
        return self.to(int)

    def _require_values(self) -> None:
        if lib.zonxGetKind(start_of(self)) in GROUPS:
            self._require(KEYWORDS)

    def _value_at(self, index: int) -> Any:
        with self._tree.lock:
            keyword = self._require(KEYWORDS)
            node = lib.zonParamByNum(keyword, self._number_of(keyword, index))
            status, value = read_node(node)
            if status:
                raise self._failure(status, node)
            return value

    def _number_of(self, keyword: int, index: int) -> int:
        """The number of the value at an index."""
        size: int = lib.zonGetNoParams(keyword)
        number = (index if index >= 0 else index + size) + 1
        if not 1 <= number <= size:
            raise self._error(MissingError, Status.MISSING, f"`{self.path}` has no value at index {index}")
        return number

    @overload
    def values(self) -> List[Any]: ...
    @overload
    def values(self, type_: Type[T]) -> List[T]: ...

    def values(self, type_: Any = None) -> List[Any]:
        """All values of a keyword, each of its own type, or all of one type: `keyword.values(float)`."""
        wanted = None if type_ is None else _checked(type_)
        with self._tree.lock:
            keyword = self._require(KEYWORDS)
            status, values = read_list(wanted, keyword)
            if status:
                raise self._failure(status, lib.zonNodeByNum(keyword, values))
            return cast(List[Any], values)

    def array(self) -> numpy.ndarray[Any, Any]:
        """All values of a keyword as an array of numpy: of int64, float64, bool or str."""
        import numpy
        with self._tree.lock:
            keyword = self._require(KEYWORDS)
            size = lib.zonGetNoParams(keyword)
            for type_, dtype in ((int, numpy.int64), (float, numpy.float64), (bool, numpy.intc)):
                out = numpy.empty(size, dtype)
                status, number = read_buffer(type_, keyword, out.ctypes.data, size)
                if not status:
                    return cast("numpy.ndarray[Any, Any]", out != 0 if type_ is bool else out)
                if status != Status.WRONG_KIND:
                    raise self._failure(status, lib.zonNodeByNum(keyword, number))
            status, texts = read_list(str, keyword)
            if status:
                raise self._failure(status, lib.zonNodeByNum(keyword, texts))
            return cast("numpy.ndarray[Any, Any]", numpy.array(texts))

    def __array__(self, dtype: Any = None, copy: Optional[bool] = None) -> numpy.ndarray[Any, Any]:
        return self.array().astype(dtype, copy=False) if dtype is not None else self.array()

    @property
    def text(self) -> str:
        """The values of a keyword, or the value, as they are written in a file: "12.5, 'mobile'". Setting it replaces
        all values."""
        with self._tree.lock:
            node = start_of(self)
            self._require_values()
            return ", ".join(self._texts(node))

    @text.setter
    def text(self, text: str) -> None:
        self._assign(b"", assignment_of_text(text))

    def _texts(self, node: int) -> List[str]:
        """The texts of the values of a keyword, or of a value."""
        if lib.zonxGetKind(node) in KEYWORDS:
            values = (lib.zonNodeByNum(node, n) for n in range(1, lib.zonGetNoNodes(node) + 1))
            return [text for value in values for text in self._texts(value)]
        status, text = read_text(node, b"")
        if status and status != Status.MISSING:
            raise self._failure(status, node)
        remark = self._remark(node) if lib.zonxGetKind(node) == Kind.UNKNOWN else None
        return [text or ("" if remark is None else "{" + remark + "}")]
