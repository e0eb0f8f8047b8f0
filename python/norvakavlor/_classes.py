"""Makes Python's classes from the library's tables. No class and no member is named here."""

from __future__ import annotations

import enum
import inspect
import types
from collections.abc import Callable, Iterator, MutableMapping
from ctypes import byref, c_int, c_uint64
from typing import Any

from norvakavlor import _annotations, _object
from norvakavlor import _library as c
from norvakavlor._errors import NoSuchKey
from norvakavlor._library import Value, check, library
from norvakavlor._object import Object
from norvakavlor._tables import Class, Enumeration, Member, read_classes, read_enumerations
from norvakavlor._values import LEFT_OUT, fill, take

_YEAR_OF_NO_DATE = 1899
# What a variable for a result holds at first, as a call may leave it as it is.
_FRESH: dict[int, Any] = {
    c.TYPE_TEXT: "",
    c.TYPE_BOOLEAN: False,
    c.TYPE_INT16: 0,
    c.TYPE_INT32: 0,
    c.TYPE_DOUBLE: 0.0,
}


class _Caller:
    """Calls one member of one class."""

    def __init__(self, owner: Class, member: Member) -> None:
        self.owner = owner
        self.member = member
        self.name = member.name.encode()
        self.count = len(member.parameters)
        self.inputs = [i for i, parameter in enumerate(member.parameters) if not parameter.is_by_reference]
        self.results = [i for i, parameter in enumerate(member.parameters) if parameter.is_by_reference]
        self.arrays = [i for i in self.inputs if member.parameters[i].type.kind == c.TYPE_ARRAY]
        self.names = {member.parameters[i].name: i for i in self.inputs}
        self.has_result = member.type.kind != c.TYPE_NONE
        self.is_date = member.type.kind == c.TYPE_DATE

    def _ordered(self, arguments: tuple[Any, ...], named: dict[str, Any]) -> list[Any]:
        if len(arguments) > len(self.inputs):
            raise TypeError(f"{self.member.name}() takes {len(self.inputs)} arguments, not {len(arguments)}")
        given: list[Any] = [
            _FRESH.get(p.type.kind) if p.is_by_reference else LEFT_OUT for p in self.member.parameters
        ]
        for index, argument in zip(self.inputs, arguments):
            given[index] = argument
        for name, argument in named.items():
            if name not in self.names:
                raise TypeError(f"{self.member.name}() has no parameter {name}")
            if given[self.names[name]] is not LEFT_OUT:
                raise TypeError(f"{self.member.name}() got {name} twice")
            given[self.names[name]] = argument
        return given

    def _shown(self, value: Value) -> Any:
        shown = take(value)
        return None if self.is_date and shown is not None and shown.year == _YEAR_OF_NO_DATE else shown

    def call(self, on: Object, arguments: tuple[Any, ...], named: dict[str, Any]) -> Any:
        given = self._ordered(arguments, named)
        kept: list[Any] = []
        values = (Value * self.count)()
        for value, argument in zip(values, given):
            fill(value, argument, kept)
        wanted = self.count if self.results or self.arrays else 0
        changed = (Value * wanted)()
        answer = Value()
        error = library.nk_call(on._handle, self.name, values, self.count, byref(answer), changed, wanted)
        check(error, self.owner.is_collection)
        own = self._shown(answer)
        for index in self.arrays:
            content = take(changed[index])
            if isinstance(given[index], list):
                given[index][:] = content
        if not self.results:
            return own
        all_results = [own] if self.has_result else []
        all_results += [take(changed[index]) for index in self.results]
        return all_results[0] if len(all_results) == 1 else tuple(all_results)

    def read(self, on: Object) -> Any:
        value = Value()
        check(library.nk_get(on._handle, self.name, byref(value)), self.owner.is_collection)
        return self._shown(value)

    def write(self, on: Object, new: Any, indexes: tuple[Any, ...] = ()) -> None:
        kept: list[Any] = []
        value = Value()
        fill(value, new, kept)
        places = (Value * len(indexes))()
        for place, index in zip(places, indexes):
            fill(place, index, kept)
        error = library.nk_put(on._handle, self.name, byref(value), places, len(indexes))
        check(error, self.owner.is_collection)


class _Indexed:
    """An indexed property of one object: held.Item["key"], held.Item("key") and, when it can be set,
    held.Item["key"] = value. Several indexes stand in a tuple."""

    __slots__ = ("_caller", "_on")

    def __init__(self, caller: _Caller, on: Object) -> None:
        self._caller = caller
        self._on = on

    def __call__(self, *indexes: Any) -> Any:
        return self._caller.call(self._on, indexes, {})

    def __getitem__(self, index: Any) -> Any:
        return self._caller.call(self._on, _as_tuple(index), {})

    def __setitem__(self, index: Any, value: Any) -> None:
        self._caller.write(self._on, value, _as_tuple(index))


def _as_tuple(index: Any) -> tuple[Any, ...]:
    return index if isinstance(index, tuple) else (index,)


def _signature(member: Member, classes: list[Class]) -> inspect.Signature:
    parameters = [inspect.Parameter("self", inspect.Parameter.POSITIONAL_ONLY)]
    for parameter, left_out in zip(member.inputs, _annotations.can_be_left_out(member)):
        parameters.append(
            inspect.Parameter(
                parameter.name,
                inspect.Parameter.POSITIONAL_OR_KEYWORD,
                default=None if left_out else inspect.Parameter.empty,
                annotation=_annotations.taken(parameter, classes),
            )
        )
    return inspect.Signature(parameters, return_annotation=_annotations.returned(member, classes))


def _method(owner: Class, caller: _Caller, classes: list[Class]) -> Callable[..., Any]:
    def method(self: Object, *arguments: Any, **named: Any) -> Any:
        return caller.call(self, arguments, named)

    method.__name__ = caller.member.name
    method.__qualname__ = f"{owner.name}.{caller.member.name}"
    method.__module__ = "norvakavlor"
    method.__doc__ = caller.member.help
    method.__signature__ = _signature(caller.member, classes)  # type: ignore[attr-defined]
    return method


def _property(caller: _Caller, classes: list[Class]) -> property:
    member = caller.member
    doc = f"{member.help} ({_annotations.held(member, classes)})"
    if member.parameters:
        return property(lambda self: _Indexed(caller, self), doc=doc)
    return property(
        caller.read if member.is_readable else None,
        (lambda self, value: caller.write(self, value)) if member.is_writable else None,
        doc=doc,
    )


def _walk(self: Object) -> Iterator[Any]:
    mark = c_uint64()
    found = c_int()
    element = Value()
    while True:
        check(library.nk_next(self._handle, byref(mark), byref(found), byref(element)))
        if not found:
            return
        yield take(element)


def _protocols(owner: Class, callers: dict[str, _Caller]) -> dict[str, Any]:
    """What makes a collection one in Python, too: len, in, [] and for."""
    added: dict[str, Any] = {}
    exists = callers["Exists"] if owner.member("Exists", 1) else None
    if owner.is_collection:
        added["__iter__"] = _walk
    if owner.member("Count", 0):
        added["__len__"] = lambda self: callers["Count"].read(self)
    if exists:
        added["__contains__"] = lambda self, key: exists.call(self, (key,), {})
    if not owner.default:
        return added
    item = callers[owner.default.name]

    def get(self: Any, index: Any) -> Any:
        # Where the library would add an entry for a key that is missing, Python expects an error.
        if exists and index not in self:
            raise NoSuchKey(32811, "NorvaKavlor", f"Element not found: {index!r}")
        return item.call(self, (index,), {})

    def contains(self: Any, wanted: Any) -> bool:
        """A key when it is a text; anything else, or a text that is no key, as an element."""
        if isinstance(wanted, str):
            try:
                item.call(self, (wanted,), {})
                return True
            except KeyError:
                pass
        return any(element == wanted for element in self)

    added["__getitem__"] = get
    if owner.default.is_writable:
        added["__setitem__"] = lambda self, index, value: item.write(self, value, (index,))
    if owner.member("Remove", 1):
        added["__delitem__"] = lambda self, index: callers["Remove"].call(self, (index,), {})
    if owner.is_collection and not exists:
        added["__contains__"] = contains
    return added


def _made(owner: Class, classes: list[Class]) -> type[Object]:
    callers = {member.name: _Caller(owner, member) for member in owner.members}
    content: dict[str, Any] = {
        "__slots__": (),
        "__module__": "norvakavlor",
        "__doc__": owner.summary,
        "_identifier": f"NorvaKavlor.{owner.name}".encode() if owner.is_creatable else None,
    }
    content.update(_protocols(owner, callers))
    for name, caller in callers.items():
        content[name] = _method(owner, caller, classes) if caller.member.is_method else _property(caller, classes)
    bases = (Object, MutableMapping) if owner.is_mapping else (Object,)
    return types.new_class(owner.name, bases, exec_body=lambda namespace: namespace.update(content))


def make_classes() -> dict[str, type[Object]]:
    """The classes by their names."""
    classes = read_classes()
    _object.classes[:] = [_made(owner, classes) for owner in classes]
    return {kind.__name__: kind for kind in _object.classes}


def _enumeration(row: Enumeration) -> type[enum.IntEnum]:
    made = enum.IntEnum(row.name, [(constant.name, constant.value) for constant in row.constants])  # type: ignore[misc]
    made.__module__ = "norvakavlor"
    made.__doc__ = "\n".join([row.summary, ""] + [f"{constant.name}: {constant.help}" for constant in row.constants])
    return made


def make_enumerations() -> dict[str, type[enum.IntEnum]]:
    return {row.name: _enumeration(row) for row in read_enumerations()}
