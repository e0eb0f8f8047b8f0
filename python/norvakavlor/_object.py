"""The base of all classes: one handle on an object of the library."""

from __future__ import annotations

from ctypes import byref, c_void_p
from typing import Any, Optional

from norvakavlor._library import check, library


class Object:
    """An object of the library. Two of them are equal when they are the same object there."""

    __module__ = "norvakavlor"
    __slots__ = ("_handle", "__weakref__")
    _identifier: Optional[bytes] = None
    _handle: int

    def __init__(self, **properties: Any) -> None:
        if self._identifier is None:
            raise TypeError(f"{type(self).__name__} is not created: other objects hand it out")
        handle = c_void_p()
        check(library.nk_create(self._identifier, byref(handle)))
        self._handle = handle.value or 0
        for name, value in properties.items():
            if not isinstance(getattr(type(self), name, None), property):
                raise TypeError(f"{type(self).__name__} has no property {name}")
            setattr(self, name, value)

    def __del__(self, _release: Any = library.nk_object_release) -> None:
        # Any thread may come here, at any time: the library puts off what it cannot free now.
        _release(getattr(self, "_handle", None))

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Object):
            return NotImplemented
        return identity(self) == identity(other)

    def __hash__(self) -> int:
        return hash(identity(self))

    def __repr__(self) -> str:
        return f"<norvakavlor.{type(self).__name__} at {identity(self):#x}>"

    def __reduce_ex__(self, protocol: Any) -> Any:
        # A copy would hold the same handle, and release it twice.
        raise TypeError(f"{type(self).__name__} objects are neither copied nor pickled")


def identity(held: Object) -> int:
    return int(library.nk_object_identity(held._handle) or 0)


classes: list[type[Object]] = []
"""By their numbers in the library's tables."""


def wrap(number: int, handle: int) -> Object:
    """Takes over a handle that the library gave."""
    kind = classes[number] if 0 <= number < len(classes) else Object
    held: Object = object.__new__(kind)
    held._handle = handle
    return held
