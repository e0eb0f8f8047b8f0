"""What the library raises."""

from __future__ import annotations

from typing import NamedTuple, Optional


class Place(NamedTuple):
    """Where in a document a fault is. Line and column count from 1 and are 0 when they are not known."""

    document: str
    line: int
    column: int
    member: str

    def __str__(self) -> str:
        where = self.document + (f":{self.line}" if self.line else "") + (f":{self.column}" if self.column else "")
        return where + (f" ({self.member})" if self.member else "")


class Error(Exception):
    """An error that the library raised."""

    number: int
    """A small number of the runtime's own errors, or &H80040000 + code as a negative number."""
    source: str
    """The class and the member that raised it."""
    description: str
    place: Optional[Place]
    """Where in a document the fault is, or None."""

    def __init__(self, number: int, source: str, description: str, place: Optional[Place] = None) -> None:
        Exception.__init__(self, number, source, description, place)
        self.number = number
        self.source = source
        self.description = description
        self.place = place

    def __str__(self) -> str:
        where = f"{self.place}: " if self.place else ""
        return f"{where}{self.description} ({self.source}, {_shown(self.number)})"


def _shown(number: int) -> str:
    """A class's own error by its code, as the documentation lists it; another result as &H800C0005."""
    code = (number & 0xFFFFFFFF) - 0x80040000
    if number >= 0 or 0 <= code < 0x10000:
        return f"error {number if number >= 0 else code}"
    return f"error &H{number & 0xFFFFFFFF:X}"


class NoSuchKey(Error, KeyError):
    """There is nothing under this key."""


class NoSuchPosition(Error, IndexError):
    """A position outside a collection or an array."""


class NoSuchFile(Error, FileNotFoundError):
    """A file or its folder is missing."""


class NotPermitted(Error, PermissionError):
    """A file is read-only, or locked."""


class WrongArgument(Error, TypeError):
    """An argument is missing, is one too many, or is of a type that does not fit."""


class OutOfMemory(Error, MemoryError):
    """Memory ran out."""


_KINDS: dict[int, type[Error]] = {
    7: OutOfMemory,
    9: NoSuchPosition,
    13: WrongArgument,
    53: NoSuchFile,
    70: NotPermitted,
    76: NoSuchFile,
    448: WrongArgument,
    449: WrongArgument,
    450: WrongArgument,
    32811: NoSuchKey,
}
_LOOKUP_FAILED = 5
for _public in (Place, Error, *_KINDS.values()):
    _public.__module__ = "norvakavlor"


def kind_of(number: int, in_collection: bool) -> type[Error]:
    """The class of an error: Python's own exceptions too where they fit."""
    if number == _LOOKUP_FAILED and in_collection:
        return NoSuchKey
    return _KINDS.get(number, Error)
