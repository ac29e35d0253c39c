"""How failures of the library become exceptions."""
from __future__ import annotations

from typing import Callable, Optional, TypeVar

from ._native import library

T = TypeVar("T")

_INVALID, _NOMEM, _THREAD = -1, -2, -3


class Error(RuntimeError):
    """A call that failed; the text says why."""


class WrongThread(Error):
    """A call on another thread than the one that called init()."""


_pending: Optional[BaseException] = None


def protected(function: Callable[..., T], default: T) -> Callable[..., T]:
    """`function` for the library to call: an exception is raised again by the call that it came in."""

    def call(*arguments: object) -> T:
        global _pending
        try:
            return function(*arguments)
        except BaseException as exception:  # pylint: disable=broad-except
            _pending = _pending or exception
            return default

    return call


def raise_pending() -> None:
    """Raises the first exception of a callback, once."""
    global _pending
    exception, _pending = _pending, None
    if exception is not None:
        raise exception


def checked(result: int) -> int:
    """`result`, unless a callback or the call itself has failed."""
    raise_pending()
    if result >= 0:
        return result
    text = library.tesmar_error_message().decode() or library.tesmar_error_text(result).decode()
    if result == _INVALID:
        raise ValueError(text)
    if result == _NOMEM:
        raise MemoryError(text)
    raise WrongThread(text) if result == _THREAD else Error(text)


def checked_pointer(pointer: Optional[int]) -> int:
    """`pointer`, unless it is null or a callback has failed."""
    raise_pending()
    if not pointer:
        raise ValueError(library.tesmar_error_message().decode())
    return pointer
