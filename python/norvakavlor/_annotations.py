"""What Python calls the tables' types: for signatures in help() and for the type stubs."""

from __future__ import annotations

from norvakavlor import _library as c
from norvakavlor._tables import Class, Member, Parameter, Type

_NAMES = {
    c.TYPE_NONE: "None",
    c.TYPE_TEXT: "str",
    c.TYPE_BOOLEAN: "bool",
    c.TYPE_INT16: "int",
    c.TYPE_INT32: "int",
    c.TYPE_DOUBLE: "float",
    c.TYPE_DATE: "datetime | None",
    c.TYPE_NODE: "XMLNode",
    c.TYPE_DOCUMENT: "XMLNode",
    c.TYPE_ARRAY: "list[Any]",
    c.TYPE_SCALAR: "str | float | datetime | None",
    c.TYPE_ANY: "Any",
}


def _name(kind: Type, classes: list[Class]) -> str:
    if kind.kind != c.TYPE_OBJECT:
        return _NAMES[kind.kind]
    return classes[kind.class_number].name if kind.class_number >= 0 else "Object"


def taken(parameter: Parameter, classes: list[Class]) -> str:
    """What may be given for a parameter."""
    name = _name(parameter.type, classes)
    if parameter.type.kind == c.TYPE_TEXT:
        name += " | PathLike[str]"
    if parameter.is_optional and "None" not in name and name != "Any":
        name += " | None"
    return name


def held(member: Member, classes: list[Class]) -> str:
    """What a property or a method's own result is. Objects may be Nothing, collections never are."""
    name = _name(member.type, classes)
    number = member.type.class_number
    is_collection = number >= 0 and classes[number].is_collection
    return name + " | None" if member.type.kind == c.TYPE_OBJECT and not is_collection else name


def returned(member: Member, classes: list[Class]) -> str:
    """What a call gives: the results by reference behind the method's own."""
    own = [] if member.type.kind == c.TYPE_NONE else [held(member, classes)]
    names = own + [_name(result.type, classes) for result in member.results]
    return f"tuple[{', '.join(names)}]" if len(names) > 1 else names[0] if names else "None"


def can_be_left_out(member: Member) -> list[bool]:
    """For each input: with another one that must be there behind it, Python takes None in its place."""
    inputs = member.inputs
    return [all(later.is_optional for later in inputs[index:]) for index in range(len(inputs))]
