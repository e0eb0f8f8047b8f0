"""python3 -m norvakavlor.stubs [FILE]: writes the types of the package, from the tables, for mypy and editors."""

from __future__ import annotations

import re
import sys
from collections.abc import Iterator

from norvakavlor import _annotations
from norvakavlor._tables import Class, Enumeration, Member, read_classes, read_enumerations

_HEAD = '''\
# Written by norvakavlor.stubs from the tables of the classes; do not edit.
from collections.abc import Iterator, MutableMapping
from datetime import datetime
from enum import IntEnum
from os import PathLike
from typing import Any

from norvakavlor._errors import (
    Error as Error,
    NoSuchFile as NoSuchFile,
    NoSuchKey as NoSuchKey,
    NoSuchPosition as NoSuchPosition,
    NotPermitted as NotPermitted,
    OutOfMemory as OutOfMemory,
    Place as Place,
    WrongArgument as WrongArgument,
)
from norvakavlor._functions import CreateObject as CreateObject, last_reason as last_reason
from norvakavlor._object import Object as Object

__version__: str

def parse(text: str | bytes) -> XMLNode: ...
'''


class _Stub:
    def __init__(self, owner: Class, classes: list[Class]) -> None:
        self.owner = owner
        self.classes = classes
        self.members = {member.name for member in owner.members}

    def _apart(self, annotation: str) -> str:
        """Inside a class a member's name hides the class of that name: `_of` stands for that class then."""
        return re.sub(r"\b[A-Za-z_]\w*", lambda m: m[0] + "_" if m[0] in self.members else m[0], annotation)

    def _method(self, member: Member) -> str:
        parameters = ["self"]
        for parameter, left_out in zip(member.inputs, _annotations.can_be_left_out(member)):
            # One table serves all collections, that of texts.
            is_member = self.owner.is_collection and parameter.name == "item"
            annotation = "Any" if is_member else self._apart(_annotations.taken(parameter, self.classes))
            parameters.append(f"{parameter.name}: {annotation}" + (" = ..." if left_out else ""))
        returned = self._apart(_annotations.returned(member, self.classes))
        return f'    def {member.name}({", ".join(parameters)}) -> {returned}:\n        """{member.help}"""\n'

    def _property(self, member: Member) -> str:
        held = "Any" if member.parameters else self._apart(_annotations.held(member, self.classes))
        text = f'    @property\n    def {member.name}(self) -> {held}:\n        """{member.help}"""\n'
        if member.is_plain and member.is_writable:
            text += f"    @{member.name}.setter\n    def {member.name}(self, value: {held}) -> None: ...\n"
        return text

    def _creation(self) -> str:
        if not self.owner.is_creatable:
            return ""
        parameters = [
            f"{member.name}: {self._apart(_annotations.held(member, self.classes))} = ..."
            for member in self.owner.members
            if member.is_plain and member.is_writable
        ]
        return f'    def __init__({", ".join(["self"] + (["*"] if parameters else []) + parameters)}) -> None: ...\n'

    def _protocols(self) -> Iterator[str]:
        owner = self.owner
        if owner.is_collection:
            yield "    def __iter__(self) -> Iterator[Any]: ...\n"
        if owner.member("Count", 0):
            yield "    def __len__(self) -> int: ...\n"
        if owner.is_collection or owner.member("Exists", 1):
            yield "    def __contains__(self, key: object) -> bool: ...\n"
        if owner.default:
            yield "    def __getitem__(self, index: Any) -> Any: ...\n"
        if owner.default and owner.default.is_writable:
            yield "    def __setitem__(self, index: Any, value: Any) -> None: ...\n"
        if owner.default and owner.member("Remove", 1):
            yield "    def __delitem__(self, index: Any) -> None: ...\n"

    def text(self) -> str:
        bases = "Object, MutableMapping[Any, Any]" if self.owner.is_mapping else "Object"
        text = f'class {self.owner.name}({bases}):\n    """{self.owner.summary}"""\n' + self._creation()
        text += "".join(self._protocols())
        for member in self.owner.members:
            text += self._method(member) if member.is_method else self._property(member)
        return text


def _enumeration(row: Enumeration) -> str:
    lines = [f"class {row.name}(IntEnum):", f'    """{row.summary}"""']
    for constant in row.constants:
        lines += [f"    {constant.name} = {constant.value}", f'    """{constant.help}"""']
    return "\n".join(lines) + "\n"


def stub() -> str:
    """The text of norvakavlor/__init__.pyi."""
    classes = read_classes()
    members = {member.name for owner in classes for member in owner.members}
    pieces = [_HEAD]
    pieces += [_enumeration(row) for row in read_enumerations()]
    pieces += [_Stub(owner, classes).text() for owner in classes]
    pieces.append("".join(f"{owner.name}_ = {owner.name}\n" for owner in classes if owner.name in members))
    return "\n".join(pieces)


if __name__ == "__main__":
    if len(sys.argv) > 1:
        with open(sys.argv[1], "w", encoding="utf-8") as file:
            file.write(stub())
    else:
        sys.stdout.write(stub())
