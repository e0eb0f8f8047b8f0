"""How values travel between Python and the library."""

from __future__ import annotations

import ctypes
import datetime
import decimal
import math
import os
from typing import Any

from norvakavlor import _library as c
from norvakavlor._library import Value, decoded, encoded, library
from norvakavlor._object import Object, wrap

LEFT_OUT = object()
"""Stands for an argument that is left out."""

_DAY_ZERO = datetime.datetime(1899, 12, 30)
_SECONDS_A_DAY = 86400
_DIGITS_OF_A_DOUBLE = 15


def days_of(moment: datetime.date) -> float:
    """A date as the library has it: days since 1899-12-30, and before that day, too, the time counts forward."""
    if not isinstance(moment, datetime.datetime):
        moment = datetime.datetime.combine(moment, datetime.time())
    if moment.tzinfo is not None:
        raise TypeError("the library's dates have no time zone: pass a datetime without one")
    passed = moment - _DAY_ZERO
    time = (passed.seconds + passed.microseconds / 1e6) / _SECONDS_A_DAY
    return passed.days + time if passed.days >= 0 else passed.days - time


def moment_of(days: float) -> datetime.datetime:
    """The reverse, to the nearest second, as the library shows dates."""
    time, whole = math.modf(days)
    return _DAY_ZERO + datetime.timedelta(days=whole, seconds=round(abs(time) * _SECONDS_A_DAY))


def _fill_text(value: Value, data: bytes) -> None:
    value.kind = c.TEXT
    value.text = data
    value.length = len(data)


def _fill_decimal(value: Value, number: decimal.Decimal) -> None:
    if not number.is_finite():
        raise TypeError(f"the library has no such number: {number}")
    _fill_text(value, format(number, "f").encode())
    value.kind = c.DECIMAL
    value.number = float(number)


def _fill_integer(value: Value, number: int) -> None:
    if -(2**31) <= number < 2**31:
        value.kind = c.INTEGER
        value.integer = number
    elif abs(number) < 10**_DIGITS_OF_A_DOUBLE:
        value.kind = c.NUMBER
        value.number = number
    else:
        _fill_decimal(value, decimal.Decimal(number))


def fill(value: Value, given: Any, kept: list[Any]) -> None:
    """Puts a Python value into a C one. What that one points at is kept alive by `kept` and the value itself."""
    if given is None:
        pass  # EMPTY is 0
    elif isinstance(given, str):
        _fill_text(value, encoded(given))
    elif isinstance(given, bool):
        value.kind = c.BOOLEAN
        value.integer = given
    elif isinstance(given, int):
        _fill_integer(value, given)
    elif isinstance(given, float):
        value.kind = c.NUMBER
        value.number = given
    elif isinstance(given, Object):
        value.kind = c.OBJECT
        value.object = given._handle
        kept.append(given)
    elif isinstance(given, datetime.date):
        value.kind = c.DATE
        value.number = days_of(given)
    elif isinstance(given, os.PathLike):
        _fill_text(value, os.fsencode(given))
    elif isinstance(given, decimal.Decimal):
        _fill_decimal(value, given)
    elif isinstance(given, (list, tuple)):
        elements = tuple(given)  # another thread may change the list
        array = (Value * len(elements))()
        for place, element in zip(array, elements):
            fill(place, element, kept)
        value.kind = c.ARRAY
        value.length = len(elements)
        value.elements = array
        kept.append(array)
    elif given is LEFT_OUT:
        value.kind = c.MISSING
    else:
        raise TypeError(f"the library takes no {type(given).__name__}")


def _text(value: Value) -> str:
    data = ctypes.string_at(value.text_address, value.length)
    library.nk_value_clear(value)
    return decoded(data)


def _decimal(value: Value) -> Any:
    number = decimal.Decimal(_text(value))
    return int(number) if number == number.to_integral_value() else number


def _object(value: Value) -> Any:
    handle, value.object = value.object, None
    return wrap(value.integer, handle) if handle else None


def _array(value: Value) -> list[Any]:
    try:
        return [take(value.elements[index]) for index in range(value.length)]
    finally:
        library.nk_value_clear(value)


_TAKERS: dict[int, Any] = {
    c.EMPTY: lambda value: None,
    c.NULL: lambda value: None,
    c.BOOLEAN: lambda value: value.integer != 0,
    c.INTEGER: lambda value: value.integer,
    c.NUMBER: lambda value: value.number,
    c.DATE: lambda value: moment_of(value.number),
    c.TEXT: _text,
    c.OBJECT: _object,
    c.ARRAY: _array,
    c.DECIMAL: _decimal,
}


def take(value: Value) -> Any:
    """A result as a Python value; what it held is freed, or is the Python value's from now on."""
    return _TAKERS[value.kind](value)
