"""The tables of the classes, which all that follows is made from."""

from __future__ import annotations

import ctypes
from collections.abc import Callable, Iterator
from dataclasses import dataclass
from typing import Any, Optional

from norvakavlor import _library as c
from norvakavlor._library import decoded, library


@dataclass(frozen=True)
class Type:
    kind: int
    class_number: int


@dataclass(frozen=True)
class Parameter:
    name: str
    type: Type
    is_optional: bool
    is_by_reference: bool


@dataclass(frozen=True)
class Member:
    name: str
    help: str
    type: Type
    is_method: bool
    is_readable: bool
    is_writable: bool
    parameters: tuple[Parameter, ...]

    @property
    def inputs(self) -> list[Parameter]:
        return [parameter for parameter in self.parameters if not parameter.is_by_reference]

    @property
    def results(self) -> list[Parameter]:
        return [parameter for parameter in self.parameters if parameter.is_by_reference]

    @property
    def is_plain(self) -> bool:
        """A property without indexes."""
        return not self.is_method and not self.parameters


@dataclass(frozen=True)
class Class:
    name: str
    summary: str
    is_creatable: bool
    is_collection: bool
    default: Optional[Member]
    members: tuple[Member, ...]

    def member(self, name: str, parameter_count: int) -> Optional[Member]:
        for member in self.members:
            if member.name == name and len(member.parameters) == parameter_count:
                return member
        return None

    @property
    def is_mapping(self) -> bool:
        """Can Python use it as a dictionary?"""
        return bool(self.default and self.default.is_writable and self.member("Keys", 0) and self.member("Exists", 1))


@dataclass(frozen=True)
class Constant:
    name: str
    help: str
    value: int


@dataclass(frozen=True)
class Enumeration:
    name: str
    summary: str
    constants: tuple[Constant, ...]


def _rows(function: Callable[..., int], row_type: Any, *numbers: int) -> Iterator[Any]:
    number = 0
    row = row_type()
    while function(*numbers, number, ctypes.byref(row)):
        yield row
        row = row_type()
        number += 1


def _type(row: Any) -> Type:
    return Type(row.kind, row.class_number)


def _members(class_number: int) -> Iterator[Member]:
    for number, row in enumerate(_rows(library.nk_member, c.MemberRow, class_number)):
        parameters = tuple(
            Parameter(decoded(p.name), _type(p.type), bool(p.is_optional), bool(p.is_by_reference))
            for p in _rows(library.nk_parameter, c.ParameterRow, class_number, number)
        )
        yield Member(
            decoded(row.name),
            decoded(row.help),
            _type(row.type),
            bool(row.is_method),
            bool(row.is_readable),
            bool(row.is_writable),
            parameters,
        )


def read_classes() -> list[Class]:
    """All classes, by their numbers."""
    found = []
    for number, row in enumerate(_rows(library.nk_class, c.ClassRow)):
        members = tuple(_members(number))
        default = members[row.default_member] if row.default_member >= 0 else None
        creatable, collection = bool(row.is_creatable), bool(row.is_collection)
        found.append(Class(decoded(row.name), decoded(row.summary), creatable, collection, default, members))
    return found


def read_enumerations() -> list[Enumeration]:
    found = []
    for number, row in enumerate(_rows(library.nk_enumeration, c.EnumerationRow)):
        constants = tuple(
            Constant(decoded(constant.name), decoded(constant.help), constant.value)
            for constant in _rows(library.nk_constant, c.ConstantRow, number)
        )
        found.append(Enumeration(decoded(row.name), decoded(row.summary), constants))
    return found
