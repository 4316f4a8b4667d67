"""The handle of a file and the views of its nodes that are alive.

A node of the library is an address, valid until the node is removed or replaced. So no address is kept anywhere
but in a view, each node has at most one view, and each view keeps the view of its owner, up to the file. What
removes or replaces a node sets the address in its view to 0. The views of nodes inside a removed one find that out
by themselves: the tree counts removals, and a view that has not seen the last of them looks whether all its owners
are still alive. So a removal costs the same however many views there are, and a use costs one comparison.

Invariants: a view with an address whose owners all have one is a view of a live node. `views` has every such view
by its address. It may also have dead ones, at addresses that may be in use again, so it checks what it finds. They
do not hold while a change is made, and a signal handler, or KeyboardInterrupt, can come at any time. So a change
refuses every other use of the file, and one that an exception ends forgets all views.

Everything here is done with the lock of the tree: a handle is used by one thread at a time. Two trees are locked in
the order of their handles. Tested by tests/test_lifetimes.py and tests/test_threads.py.
"""
from __future__ import annotations

import ctypes
import threading
import weakref
from contextlib import contextmanager
from typing import TYPE_CHECKING, Any, Callable, ContextManager, Iterator, Optional

from ._library import lib
from ._reports import ClosedError, Error

if TYPE_CHECKING:
    from ._nodes import Node
    from ._view import View


def _close(handle: int) -> None:
    lib.zonClose(ctypes.byref(ctypes.c_void_p(handle)))


class Views:
    """The views by the addresses of their nodes. It keeps no view alive, and forgets those that are gone whenever
    their number can have doubled. With a WeakValueDictionary, which forgets at once, iterating took twice as long."""

    def __init__(self) -> None:
        self._references: dict[int, weakref.ref[Node]] = {}
        self._limit = 100

    def __bool__(self) -> bool:
        return bool(self._references)

    def __setitem__(self, node: int, view: Node) -> None:
        if len(self._references) >= self._limit:
            self._references = {at: each for at, each in self._references.items() if each() is not None}
            self._limit = 2 * len(self._references) + 100
        self._references[node] = weakref.ref(view)

    def alive(self, node: int) -> Optional[Node]:
        """The view of a node, if it has one."""
        reference = self._references.get(node)
        view = reference() if reference is not None else None
        return view if view is not None and is_alive(view) else None

    def pop(self, node: int) -> Optional[Node]:
        """Takes out what is at an address, alive or not."""
        reference = self._references.pop(node, None)
        return None if reference is None else reference()

    def all_alive(self) -> list[Node]:
        """All views of nodes that are in the tree."""
        views = [reference() for reference in self._references.values()]
        return [view for view in views if view is not None and is_alive(view)]


_CLOSED = "the file is closed"


class Tree:
    """A file handle with what belongs to it."""

    def __init__(self, handle: int) -> None:
        self.handle: int = handle  # 0: closed
        self.refusal = ""  # why no node can be used now
        self.lock: ContextManager[Any] = threading.RLock()
        self._is_owned: Callable[[], bool] = getattr(self.lock, "_is_owned")
        self.removals = 0
        self.views = Views()  # of sections and keywords
        self.values = Views()  # of values, which setters can replace
        # Closes the handle when the last view is gone. It runs once, and not at the end of the process.
        self._finalizer = weakref.finalize(self, _close, handle)
        self._finalizer.atexit = False

    def close(self) -> None:
        """Closes the handle. Can be called again. In the midst of another use of the file, as in a signal handler,
        the handle is closed when the last view is gone."""
        is_used = self._is_owned()
        with self.lock:
            self.handle = 0
            self.refusal = _CLOSED
            if not is_used:
                self._finalizer()

    def exclusive(self) -> ContextManager[Any]:
        """The lock, for a change. A signal handler or __del__ that runs in the midst of another use of the same file
        could take away the nodes of that use, so it is refused."""
        if self._is_owned():
            raise Error("the file cannot be changed while the call that was interrupted uses it")
        return self.lock

    def change(self) -> _Change:
        """For the call of the library that changes the tree, until the views know of it. Needs the lock."""
        return _Change(self)

    def forget_all(self) -> None:
        """Call if it is not known which nodes are still there."""
        for view in self.values.all_alive() + self.views.all_alive():
            if view._owner is not None:
                view._node = 0
        self.removals += 1

    def forget(self, node: int) -> None:
        """Call after a node was removed."""
        for views in (self.values, self.views):  # one of them may have a dead view at this address
            view = views.pop(node)
            if view is not None:
                view._node = 0
                self.removals += 1

    def forget_replaced(self, before: list[tuple[int, int]], after: list[tuple[int, int]]) -> None:
        """Call after a setter, with the addresses and kinds of the values before and after it. A value of another
        kind is a new one, also if it has the address of the old one."""
        for at, old in enumerate(before):
            if after[at:at + 1] != [old]:
                self.forget(old[0])


class _Change:
    __slots__ = ("_tree",)

    def __init__(self, tree: Tree) -> None:
        self._tree = tree

    def __enter__(self) -> None:
        self._tree.refusal = "the file is in the middle of a change"

    def __exit__(self, type_: Any, error: Any, traceback: Any) -> None:
        tree = self._tree
        if type_ is not None:
            tree.forget_all()
        tree.refusal = "" if tree.handle else _CLOSED


def is_alive(view: View) -> bool:
    """Whether the node of a view is in the tree."""
    removals = view._tree.removals
    if view._seen == removals:
        return view._node != 0
    unsure: list[View] = []
    at: Optional[View] = view
    while at is not None and at._node and at._seen != removals:
        unsure.append(at)
        at = at._owner
    is_removed = at is not None and not at._node
    for each in unsure:
        each._seen = removals
        if is_removed:
            each._node = 0
    return not is_removed


@contextmanager
def locked(*trees: Tree) -> Iterator[None]:
    """Locks two trees in an order that is the same in all threads."""
    first, second = sorted(trees, key=id)
    with first.lock, second.lock:
        yield


def start_of(view: View) -> int:
    """The address of a view, to pass to the library."""
    tree = view._tree
    if tree.refusal:
        raise ClosedError(tree.refusal)
    if view._seen != tree.removals:
        is_alive(view)
    if not view._node:
        raise ClosedError("the node was removed or replaced")
    return view._node
