"""The functions of the package."""

from __future__ import annotations

from ctypes import byref, c_void_p
from typing import Any, Union

from norvakavlor._library import check, decoded, encoded, library
from norvakavlor._object import wrap


def _taken(handle: c_void_p) -> Any:
    return wrap(library.nk_object_class(handle), handle.value or 0)


def CreateObject(identifier: str) -> Any:
    """Creates an object by its programmatic identifier ("NorvaKavlor.Students", letter case ignored)."""
    handle = c_void_p()
    check(library.nk_create(encoded(identifier), byref(handle)))
    return _taken(handle)


def parse(text: Union[str, bytes]) -> Any:
    """Parses an XML document, which is UTF-8 as bytes. The XMLNode is what LoadFromXMLNode and SaveToXMLNode take; its
    `xml` is its text."""
    data = encoded(text) if isinstance(text, str) else text
    handle = c_void_p()
    check(library.nk_parse(data, len(data), byref(handle)))
    return _taken(handle)


def last_reason() -> str:
    """Why the last call in this thread answered False; "" when there is no reason, or none is known."""
    return decoded(library.nk_last_reason())


def version() -> str:
    """The version of the library."""
    return decoded(library.nk_version())
