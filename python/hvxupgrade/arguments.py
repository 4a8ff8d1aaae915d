"""What callers give, taken as they mean it, and refused in words that name the argument."""
from __future__ import annotations

import math
import numbers
import operator
import os
import threading
from collections.abc import Iterable
from typing import NoReturn, Optional

from .errors import UsageError


def texts(given: object, name: str) -> tuple[str, ...]:
    """Several texts; a text alone is one, and not its letters."""
    if isinstance(given, str):
        return (given,)
    if not isinstance(given, Iterable):
        _refuse(name, "a str or several", given)
    found = tuple(given)
    for each in found:
        if not isinstance(each, str):
            _refuse(f"each of {name}", "a str", each)
    return found


def paths(given: object, name: str) -> tuple[str, ...]:
    """Several paths; a path alone is one."""
    if isinstance(given, (str, bytes, os.PathLike)):
        return (path(given, name),)
    if not isinstance(given, Iterable):
        _refuse(name, "a path or several", given)
    return tuple(path(each, f"each of {name}") for each in given)


def path(given: object, name: str) -> str:
    if not isinstance(given, (str, bytes, os.PathLike)):
        _refuse(name, "a str or another path", given)
    decoded = os.fsdecode(given)
    if "\0" in decoded:
        raise ValueError(f"{name} has a null character in it, as no name of a file has")
    return decoded


def text(given: object, name: str) -> str:
    if not isinstance(given, str):
        _refuse(name, "a str", given)
    return given


def suffix(given: object, name: str, file: str) -> str:
    """What ends the name of a backup of the file; it may be empty."""
    found = text(given, name)
    for letter, called in (("/", "'/'"), ("\0", "null character")):
        if letter in found:
            raise UsageError.about(file, f"{name} has a {called} in it",
                                   'Give one that ends the name of a file, such as ".old"; nothing was written')
    return found


def flag(given: object, name: str) -> bool:
    if not _is_flag(given):
        _refuse(name, "a bool", given)
    return bool(given)


def is_stop(answer: object) -> bool:
    """Whether a callback that was told of progress says that the work is to stop."""
    return _is_flag(answer) and not answer


def count(given: object, name: str) -> Optional[int]:
    """A number from 0; None where none is given. One that is too large to be reached is the largest that can be told."""
    if given is None:
        return None
    try:
        number = operator.index(given)  # type: ignore[arg-type]
    except TypeError:
        _refuse(name, "an int", given)
    if number < 0:
        raise ValueError(f"{name} is a number from 0, not {number}")
    return min(number, 2 ** 64 - 1)


def function(given: object, name: str) -> None:
    """Refuses what is neither callable nor None."""
    if given is not None and not callable(given):
        _refuse(name, "a function or None", given)


def seconds(given: object, name: str) -> Optional[float]:
    """None for as long as it takes: also where infinitely many are given, or more than a clock can tell."""
    if given is None:
        return None
    if not isinstance(given, numbers.Real):
        _refuse(name, "a number of seconds", given)
    number = float(given)
    if math.isnan(number) or number <= 0:
        raise ValueError(f"{name} is more than 0 seconds, not {number:g}")
    return number if number < threading.TIMEOUT_MAX else None


def _is_flag(given: object) -> bool:
    # Comparisons of numpy give flags of its own; it need not be there.
    kind = type(given)
    return kind is bool or (kind.__module__ == "numpy" and kind.__name__ in ("bool", "bool_"))


def _refuse(name: str, what: str, given: object) -> NoReturn:
    raise TypeError(f"{name} is {what}, not {type(given).__name__}")
