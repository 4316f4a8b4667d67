"""The C library: where it is found, and the signatures of the functions that the package calls.

The library is beside this file in a wheel, and on the system otherwise; the environment variable ZON_LIBRARY
names another one. Calls that read or write a file, and those that visit a whole tree, release the lock of the
interpreter. All others keep it: they take less time than to release it and to wait for it again. With a busy thread
beside this one a search took half the time. Every call on a handle is made with the lock of its tree (see _tree).
Tested by tests/test_file.py.
"""
from __future__ import annotations

import ctypes
import os
from ctypes import (CFUNCTYPE, POINTER, PYFUNCTYPE, Structure, c_char_p, c_double, c_int, c_longlong, c_size_t, c_uint,
                    c_void_p, py_object)
from pathlib import Path
from typing import Any


class CPlace(Structure):
    """zonxPlace"""
    _fields_ = [("file", c_char_p), ("line", c_uint), ("column", c_uint), ("end_line", c_uint),
                ("end_column", c_uint), ("offset", c_size_t), ("length", c_size_t)]


class CReport(Structure):
    """zonxReport"""
    _fields_ = [("severity", c_int), ("rule", c_char_p), ("message", c_char_p), ("hint", c_char_p),
                ("place", CPlace), ("related", CPlace), ("related_message", c_char_p), ("source_line", c_char_p)]


class CDifference(Structure):
    """zonxDifference"""
    _fields_ = [("change", c_int), ("path", c_char_p), ("before", c_void_p), ("after", c_void_p)]


class CCompare(Structure):
    """zonxCompare"""
    _fields_ = [("relative", c_double), ("absolute", c_double)]


# A callback keeps the errno of the call that it interrupts. The context is any object of Python.
Reporter = CFUNCTYPE(None, POINTER(CReport), py_object, use_errno=True)
Visitor = CFUNCTYPE(None, POINTER(CDifference), py_object, use_errno=True)

_LIST = (c_void_p, c_char_p, c_void_p, c_size_t)

# The lock of the interpreter is released during these.
_RELEASING: dict[str, tuple[Any, tuple[Any, ...]]] = {
    "zonClose": (None, (POINTER(c_void_p),)),
    "zonxLoadFile": (c_int, (c_char_p, c_void_p, Reporter, py_object)),
    "zonxLoadText": (c_int, (c_char_p, c_size_t, c_char_p, c_void_p, Reporter, py_object)),
    "zonxSave": (c_int, (c_void_p, c_char_p, c_uint, Reporter, py_object)),
    "zonxText": (c_int, (c_void_p, c_uint, POINTER(c_void_p), POINTER(c_size_t), Reporter, py_object)),
    "zonxReportUnread": (c_int, (c_void_p, Reporter, py_object, c_void_p)),
    "zonxValidate": (c_int, (c_void_p, c_void_p, Reporter, py_object)),
    "zonxDiffByKey": (c_int, (c_void_p, c_void_p, c_char_p, POINTER(CCompare), Visitor, py_object, c_void_p)),
    "zonxMerge": (c_int, (c_void_p, c_void_p)),
}
_KEEPING: dict[str, tuple[Any, tuple[Any, ...]]] = {
    "zonCreate": (c_void_p, ()),
    "zonGetRoot": (c_void_p, (c_void_p,)),
    "zonGetParentSection": (c_void_p, (c_void_p,)),
    "zonGetName": (c_char_p, (c_void_p,)),
    "zonGetInstanceNo": (c_int, (c_void_p,)),
    "zonGetNoInstances": (c_int, (c_void_p,)),
    "zonGetNoNodes": (c_int, (c_void_p,)),
    "zonGetNoParams": (c_int, (c_void_p,)),
    "zonGetNoKeywords": (c_int, (c_void_p,)),
    "zonGetNoSections": (c_int, (c_void_p,)),
    "zonSectionByNum": (c_void_p, (c_void_p, c_uint)),
    "zonKeywordByNum": (c_void_p, (c_void_p, c_uint)),
    "zonParamByNum": (c_void_p, (c_void_p, c_uint)),
    "zonNodeByNum": (c_void_p, (c_void_p, c_uint)),
    "zonSectionByNameNum": (c_void_p, (c_void_p, c_char_p, c_uint)),
    "zonKeywordByNameNum": (c_void_p, (c_void_p, c_char_p, c_uint)),
    "zonFindDefault": (c_void_p, (c_void_p,)),
    "zonxGetVersion": (c_int, ()),
    "zonxStatusText": (c_char_p, (c_int,)),
    "zonxFormatReport": (c_size_t, (POINTER(CReport), c_char_p, c_size_t)),
    "zonxReportNode": (c_int, (c_void_p, c_int, c_char_p, c_char_p, c_char_p, Reporter, py_object)),
    "zonxReportPath": (c_int, (c_void_p, c_char_p, c_int, Reporter, py_object)),
    "zonxGetKind": (c_int, (c_void_p,)),
    "zonxFind": (c_int, (c_void_p, c_char_p, c_void_p)),
    "zonxWhere": (c_int, (c_void_p, POINTER(CPlace))),
    "zonxGetRemark": (c_int, (c_void_p, POINTER(c_char_p))),
    "zonxRemove": (c_int, (c_void_p, c_char_p)),
    "zoneRenameSection": (c_int, (c_void_p, c_char_p)),
    "zoneRenameKeyword": (c_int, (c_void_p, c_char_p)),
    "zonxWatch": (c_int, (c_void_p, c_int)),
    "zonxFree": (None, (c_void_p,)),
    "zonxSetInt64": (c_int, (c_void_p, c_char_p, c_longlong)),
    "zonxSetDouble": (c_int, (c_void_p, c_char_p, c_double)),
    "zonxSetBool": (c_int, (c_void_p, c_char_p, c_int)),
    "zonxSetString": (c_int, (c_void_p, c_char_p, c_char_p)),
    "zonxSetFilename": (c_int, (c_void_p, c_char_p, c_char_p)),
    "zonxSetText": (c_int, (c_void_p, c_char_p, c_char_p)),
    **{f"zonxGet{kind}": (c_int, (c_void_p, c_char_p, c_void_p))
       for kind in ("Int64", "Double", "Bool", "String", "Filename", "Text")},
    **{f"zonxGet{kind}": (c_int, (*_LIST, c_void_p)) for kind in ("Int64s", "Doubles", "Bools", "Strings")},
    **{f"zonxSet{kind}": (c_int, _LIST) for kind in ("Int64s", "Doubles", "Bools", "Strings")},
}


class Library:
    """The functions of the C library, each under its own name."""

    def __init__(self, name: str) -> None:
        self._releasing = ctypes.CDLL(name, use_errno=True)
        self._keeping = ctypes.PyDLL(name)

    def text_getter(self, name: str) -> Any:
        """The function of a getter with the text as its result, None if it fails. ctypes copies the text before
        anything else can run in this thread, such as a signal handler that calls the same getter."""
        types = _KEEPING[name][1][:-1]
        prototype = PYFUNCTYPE(c_int, *types, POINTER(c_char_p))
        return prototype((name, self._keeping), (*((1,) for _ in types), (2,)))

    def __getattr__(self, name: str) -> Any:
        """Declares a function when it is first used, so that an older library has only what it lacks missing."""
        library, table = (self._releasing, _RELEASING) if name in _RELEASING else (self._keeping, _KEEPING)
        function = getattr(library, name)
        function.restype, function.argtypes = table[name]
        setattr(self, name, function)
        return function


def _file_name() -> str:
    chosen = os.environ.get("ZON_LIBRARY")
    if chosen:
        return chosen
    beside = Path(__file__).with_name("libzon.so.0")
    return str(beside) if beside.exists() else beside.name


def _load() -> Library:
    name = _file_name()
    try:
        library = Library(name)
        library.zonxGetVersion()
    except (OSError, AttributeError) as error:
        raise ImportError(f"the package zon needs the library {name}: {error}") from error
    return library


lib = _load()
