"""The shared library and its C interface (norvakavlor_c.h), as ctypes sees it."""

from __future__ import annotations

import ctypes
import os
import pathlib
from ctypes import POINTER, Structure, Union, c_char_p, c_double, c_int, c_int32, c_size_t, c_uint8, c_uint64, c_void_p
from typing import Any, Optional

from norvakavlor._errors import Place, kind_of

EMPTY, NULL, BOOLEAN, INTEGER, NUMBER, DATE, TEXT, OBJECT, ARRAY, DECIMAL, MISSING = range(11)

(
    TYPE_NONE,
    TYPE_TEXT,
    TYPE_BOOLEAN,
    TYPE_INT16,
    TYPE_INT32,
    TYPE_DOUBLE,
    TYPE_DATE,
    TYPE_OBJECT,
    TYPE_NODE,
    TYPE_DOCUMENT,
    TYPE_ARRAY,
    TYPE_SCALAR,
    TYPE_ANY,
) = range(13)


class TextPointer(Union):
    _fields_ = [("text", c_char_p), ("text_address", c_void_p)]


class Value(Structure):
    pass


Value._anonymous_ = ("pointer",)
Value._fields_ = [
    ("kind", c_int32),
    ("integer", c_int32),
    ("number", c_double),
    ("pointer", TextPointer),
    ("length", c_size_t),
    ("object", c_void_p),
    ("elements", POINTER(Value)),
]


class TypeRow(Structure):
    _fields_ = [("kind", c_int32), ("class_number", c_int32)]


class ClassRow(Structure):
    _fields_ = [
        ("name", c_char_p),
        ("summary", c_char_p),
        ("member_count", c_size_t),
        ("default_member", c_int32),
        ("is_creatable", c_uint8),
        ("is_collection", c_uint8),
    ]


class MemberRow(Structure):
    _fields_ = [
        ("name", c_char_p),
        ("help", c_char_p),
        ("parameter_count", c_size_t),
        ("type", TypeRow),
        ("is_method", c_uint8),
        ("is_readable", c_uint8),
        ("is_writable", c_uint8),
    ]


class ParameterRow(Structure):
    _fields_ = [("name", c_char_p), ("type", TypeRow), ("is_optional", c_uint8), ("is_by_reference", c_uint8)]


class EnumerationRow(Structure):
    _fields_ = [("name", c_char_p), ("summary", c_char_p), ("constant_count", c_size_t)]


class ConstantRow(Structure):
    _fields_ = [("name", c_char_p), ("help", c_char_p), ("value", c_int32)]


def _load() -> ctypes.CDLL:
    """The library that $NORVAKAVLOR_LIBRARY names, else the one in the package, else the system's."""
    name = "libnorvakavlor.so.1"
    beside = pathlib.Path(__file__).with_name(name)
    chosen = os.environ.get("NORVAKAVLOR_LIBRARY") or (str(beside) if beside.exists() else name)
    try:
        return ctypes.CDLL(chosen)
    except OSError as fault:
        raise ImportError(f"norvakavlor cannot load its library: {fault}") from fault


library = _load()

_PROTOTYPES = {
    "nk_value_clear": (None, POINTER(Value)),
    "nk_create": (c_void_p, c_char_p, POINTER(c_void_p)),
    "nk_parse": (c_void_p, c_char_p, c_size_t, POINTER(c_void_p)),
    "nk_object_release": (None, c_void_p),
    "nk_object_class": (c_int32, c_void_p),
    "nk_object_identity": (c_void_p, c_void_p),
    "nk_call": (c_void_p, c_void_p, c_char_p, POINTER(Value), c_size_t, POINTER(Value), POINTER(Value), c_size_t),
    "nk_get": (c_void_p, c_void_p, c_char_p, POINTER(Value)),
    "nk_put": (c_void_p, c_void_p, c_char_p, POINTER(Value), POINTER(Value), c_size_t),
    "nk_next": (c_void_p, c_void_p, POINTER(c_uint64), POINTER(c_int), POINTER(Value)),
    "nk_error_number": (c_int32, c_void_p),
    "nk_error_source": (c_char_p, c_void_p),
    "nk_error_description": (c_char_p, c_void_p),
    "nk_error_document": (c_char_p, c_void_p),
    "nk_error_line": (c_int32, c_void_p),
    "nk_error_column": (c_int32, c_void_p),
    "nk_error_member": (c_char_p, c_void_p),
    "nk_error_free": (None, c_void_p),
    "nk_last_reason": (c_char_p,),
    "nk_version": (c_char_p,),
    "nk_class": (c_int, c_size_t, POINTER(ClassRow)),
    "nk_member": (c_int, c_size_t, c_size_t, POINTER(MemberRow)),
    "nk_parameter": (c_int, c_size_t, c_size_t, c_size_t, POINTER(ParameterRow)),
    "nk_enumeration": (c_int, c_size_t, POINTER(EnumerationRow)),
    "nk_constant": (c_int, c_size_t, c_size_t, POINTER(ConstantRow)),
}
for _name, (_result, *_arguments) in _PROTOTYPES.items():
    _function = getattr(library, _name)
    _function.restype = _result
    _function.argtypes = _arguments


def decoded(data: Optional[bytes]) -> str:
    """Text from the library. Bytes that are no UTF-8, as file names may hold, come back as they are when given in."""
    return (data or b"").decode("utf-8", "surrogateescape")


def encoded(text: str) -> bytes:
    """The reverse."""
    return text.encode("utf-8", "surrogateescape")


def check(error: Any, in_collection: bool = False) -> None:
    """Raises what a function of the C interface returned, if anything."""
    if not error:
        return
    try:
        document = decoded(library.nk_error_document(error))
        line = library.nk_error_line(error)
        place = None
        if document or line:
            member = decoded(library.nk_error_member(error))
            place = Place(document, line, library.nk_error_column(error), member)
        number = library.nk_error_number(error)
        source = decoded(library.nk_error_source(error))
        description = decoded(library.nk_error_description(error))
    finally:
        library.nk_error_free(error)
    raise kind_of(number, in_collection)(number, source, description, place)
