"""The panel and its surface."""
from __future__ import annotations

import ctypes
from enum import IntEnum
from types import TracebackType
from typing import Callable, Dict, List, NamedTuple, Optional, Tuple, Type

from . import _native
from ._native import library
from .errors import checked, protected
from .style import Style


class Rect(NamedTuple):
    """Pixels, from the top left of the surface."""

    x: int
    y: int
    width: int
    height: int


class Phase(IntEnum):
    BEGAN = 0
    MOVED = 1
    ENDED = 2
    CANCELLED = 3


class Key(IntEnum):
    UP, DOWN, LEFT, RIGHT, NEXT, PREVIOUS, SELECT, BACK, INCREMENT, DECREMENT, FIRST, LAST = range(12)


WHEEL_NOTCH = 40.0  # points

_EXTENDED = 1
_MOST_RECTS = 16

# Of the panels that exist: the library may call them, even when their Panel has been dropped.
_callbacks: Dict[int, _native.PanelCallbacks] = {}


class Panel:
    """A panel with the pixels that it is painted in: premultiplied ARGB in native byte order.

    `on_style` gets the new Style, `on_captions` whether captions are on, `on_leave` and, when the
    panel's motion has ended, `on_gone` nothing. They may do anything, close the panel included; what
    they raise, the call raises that they came in.
    `load` and `save`, both or neither, keep the style instead of the preferences.
    """

    def __init__(self, width: int, height: int, scale: float = 1, *, extended: bool = False,
                 on_style: Optional[Callable[[Style], None]] = None,
                 on_captions: Optional[Callable[[bool], None]] = None,
                 on_leave: Optional[Callable[[], None]] = None,
                 on_gone: Optional[Callable[[], None]] = None,
                 load: Optional[Callable[[], Optional[Style]]] = None,
                 save: Optional[Callable[[Style], None]] = None) -> None:
        self._handle = ctypes.c_void_p()
        self.pixels = bytearray()
        self._resize(width, height)
        callbacks = _native.PanelCallbacks()

        def kept(style: int) -> Style:
            return Style._adopt(library.tesmar_style_retain(style))

        def loaded() -> Optional[int]:
            style = load() if load else None
            return library.tesmar_style_retain(style._handle) if style else None

        if on_style:
            callbacks.style_changed = _native.StyleFunction(
                protected(lambda _, style, __: on_style(kept(style)), None))
        if on_captions:
            callbacks.captions_changed = _native.CaptionsFunction(
                protected(lambda _, on, __: on_captions(bool(on)), None))
        if on_leave:
            callbacks.will_disappear = _native.PanelFunction(
                protected(lambda _, __: on_leave(), None))
        if on_gone:
            callbacks.did_disappear = _native.PanelFunction(protected(lambda _, __: on_gone(), None))
        if load:
            callbacks.load_style = _native.LoadFunction(protected(lambda _, __: loaded(), None))
        if save:
            callbacks.save_style = _native.StyleFunction(
                protected(lambda _, style, __: save(kept(style)), None))
        options = _native.PanelOptions(width=width, height=height, scale=scale,
                                       flags=_EXTENDED if extended else 0)
        checked(library.tesmar_panel_create(ctypes.byref(options), ctypes.byref(callbacks),
                                            ctypes.byref(self._handle)))
        _callbacks[self._handle.value or 0] = callbacks
        self._own_callbacks = callbacks  # close() may be called by one of them

    def __enter__(self) -> "Panel":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], value: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()

    def close(self) -> None:
        """Destroys the panel; no callback comes afterwards. May be called again."""
        checked(library.tesmar_panel_destroy(self._handle))
        _callbacks.pop(self._handle.value or 0, None)

    def __del__(self) -> None:
        # Another thread's collector cannot destroy it; the panel then stays until the process ends.
        if self._handle and library.tesmar_panel_destroy(self._handle) == 0:
            _callbacks.pop(self._handle.value or 0, None)

    def _call(self, name: str, *arguments: object) -> int:
        return checked(getattr(library, "tesmar_panel_" + name)(self._handle, *arguments))

    # --- Settings ---------------------------------------------------------------------------------

    def _resize(self, width: int, height: int) -> None:
        if not (1 <= width <= 32767 and 1 <= height <= 32767):
            raise ValueError(f"no surface of {width} x {height} pixels")
        self.width, self.height = width, height
        self.pixels = bytearray(4 * width * height)

    def set_size(self, width: int, height: int, scale: float) -> None:
        """In pixels, and pixels per point; `pixels` becomes another object."""
        self._resize(width, height)
        self._call("set_size", width, height, scale)
        self._call("invalidate")

    def set_safe_area(self, top: float, left: float, bottom: float, right: float) -> None:
        self._call("set_safe_area", top, left, bottom, right)

    def set_caption_area(self, area: Optional[Tuple[float, float, float, float]]) -> None:
        self._call("set_caption_area", ctypes.byref(_native.Area(*area)) if area else None)

    def set_captions_on(self, on: bool) -> None:
        self._call("set_captions_on", on)

    def set_auto_hide(self, seconds: float) -> None:
        self._call("set_auto_hide", seconds)

    def set_remember(self, remember: bool) -> None:
        self._call("set_remember", remember)

    def set_easy_dismissal(self, easy: bool) -> None:
        self._call("set_easy_dismissal", easy)

    def set_language(self, tag: str) -> str:
        """Returns the tag of the closest language, which is shown."""
        used = ctypes.c_char_p()
        self._call("set_language", tag.encode(), ctypes.byref(used))
        return (used.value or b"").decode()

    def set_mirroring(self, everything: bool) -> None:
        self._call("set_mirroring", everything)

    def set_text_scale(self, scale: float) -> None:
        self._call("set_text_scale", scale)

    def set_high_contrast(self, high: bool) -> None:
        self._call("set_high_contrast", high)

    def set_brightness(self, brightness: float) -> None:
        self._call("set_brightness", brightness)

    @property
    def style(self) -> Style:
        """What the controls show."""
        return Style._adopt(library.tesmar_panel_get_style(self._handle))

    @style.setter
    def style(self, style: Style) -> None:
        self._call("set_style", style._handle)

    def present(self, animated: bool = True) -> None:
        self._call("present", animated)

    def dismiss(self, animated: bool = True) -> None:
        self._call("dismiss", animated)

    @property
    def is_presented(self) -> bool:
        return bool(self._call("is_presented"))

    # --- Input: each returns whether the panel took the event; points, and seconds ----------------

    def touch(self, phase: Phase, finger: int, x: float, y: float, time: float,
              mouse: bool = False) -> bool:
        return bool(self._call("touch", phase, finger, x, y, time, mouse))

    def wants_touch(self, x: float, y: float) -> bool:
        return bool(self._call("wants_touch", x, y))

    def wheel(self, x: float, y: float, dx: float, dy: float, time: float) -> bool:
        return bool(self._call("wheel", x, y, dx, dy, time))

    def hover(self, x: float, y: float) -> None:
        self._call("hover", x, y)

    def end_hover(self) -> None:
        self._call("end_hover")

    def key(self, key: Key, time: float, repeated: bool = False) -> bool:
        return bool(self._call("key", key, repeated, time))

    def cancel_touches(self, time: float) -> None:
        self._call("cancel_touches", time)

    def locate(self, identifier: str) -> Optional[Tuple[float, float, float, float]]:
        """Where the view with that identifier is: x, y, width and height."""
        area = _native.Area()
        found = self._call("locate", identifier.encode(), ctypes.byref(area))
        return (area.x, area.y, area.width, area.height) if found else None

    # --- Pixels -----------------------------------------------------------------------------------

    @property
    def needs_render(self) -> bool:
        return bool(self._call("needs_render"))

    def render(self) -> List[Rect]:
        """Repaints what is out of date in `pixels`, and returns where."""
        memory = (ctypes.c_char * len(self.pixels)).from_buffer(self.pixels)
        rects = (_native.Rect * _MOST_RECTS)()
        count = self._call("render", ctypes.addressof(memory), len(self.pixels), 4 * self.width, 1,
                           rects, _MOST_RECTS)
        return [Rect(r.x, r.y, r.width, r.height) for r in rects[:count]]

    def invalidate(self) -> None:
        self._call("invalidate")

    @property
    def visible_bounds(self) -> Optional[Rect]:
        """Outside it all is transparent; None when nothing is shown."""
        rect = _native.Rect()
        shown = self._call("visible_bounds", ctypes.byref(rect))
        return Rect(rect.x, rect.y, rect.width, rect.height) if shown else None
