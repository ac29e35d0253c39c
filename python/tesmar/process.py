"""The functions that concern the whole process."""
from __future__ import annotations

import ctypes
from typing import Callable, Optional

from . import _native
from ._native import library
from .errors import checked, protected

_wake = _native.WakeFunction()
_log = _native.LogFunction()


def version() -> str:
    """The library's version."""
    return library.tesmar_version().decode()


def init(application_id: str) -> None:
    """Makes this thread the owner; the identifier also names the preferences file."""
    checked(library.tesmar_init(application_id.encode()))


def advance(now: float) -> None:
    """Moves the time, in seconds on the host's monotonic clock, forward, and does what is due."""
    checked(library.tesmar_advance(now))


def deadline() -> Optional[float]:
    """When advance() next has work; None while there is none."""
    due = ctypes.c_double()
    return due.value if checked(library.tesmar_deadline(ctypes.byref(due))) else None


def set_wake(wake: Optional[Callable[[], None]]) -> None:
    """`wake` is called, once, when the host's loop must look at deadline() and needs_render() again."""
    global _wake
    # The one before is kept until the library has the new one.
    made = _native.WakeFunction(protected(lambda _: wake(), None)) if wake else _native.WakeFunction()
    checked(library.tesmar_set_wake(made, None))
    _wake = made


def set_log(log: Optional[Callable[[str], None]]) -> None:
    """`log` gets a line about each problem that the library recovers from."""
    global _log
    made = (_native.LogFunction(protected(lambda text, _: log(text.decode()), None)) if log
            else _native.LogFunction())
    checked(library.tesmar_set_log(made, None))
    _log = made


def set_preferences_path(path: str) -> None:
    """The file of the preferences; "" for the usual one."""
    checked(library.tesmar_set_preferences_path(path.encode()))


def add_font_file(path: str) -> None:
    """Adds the faces of a font file."""
    checked(library.tesmar_add_font_file(path.encode()))


def set_frame_interval(seconds: float) -> None:
    """The time between frames of motion: that of the display."""
    checked(library.tesmar_set_frame_interval(seconds))
