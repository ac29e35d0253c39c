"""Caption styles."""
from __future__ import annotations

import ctypes
from enum import IntEnum
from typing import NamedTuple, Optional, Tuple

from . import _native
from ._native import library
from .errors import checked, checked_pointer


class Color(NamedTuple):
    """sRGB, each 0 to 1, not premultiplied."""

    red: float
    green: float
    blue: float
    alpha: float = 1.0


NO_COLOR = Color(0, 0, 0, 0)


class Font(NamedTuple):
    """The face that draws a style, which may be a stand-in for the one that it names."""

    name: str
    family: str
    file: str
    index: int


class Alignment(IntEnum):
    LEFT = 0
    CENTER = 1
    RIGHT = 2


class Style:
    """What captions look like; it never changes."""

    def __init__(self, text: Color = Color(1, 1, 1), background: Color = NO_COLOR,
                 font_name: Optional[str] = None, font_size: float = 17, edge: str = "none",
                 edge_color: Color = NO_COLOR, window: Color = NO_COLOR) -> None:
        values = _native.StyleValues(
            text=_native.Color(*text), background=_native.Color(*background),
            font_name=font_name.encode() if font_name else None, font_size=font_size,
            edge=edge.encode(), edge_color=_native.Color(*edge_color), window=_native.Color(*window))
        self._handle = checked_pointer(library.tesmar_style_create(ctypes.byref(values)))

    @classmethod
    def _adopt(cls, handle: Optional[int]) -> "Style":
        """Takes over a reference."""
        style = cls.__new__(cls)
        style._handle = checked_pointer(handle)
        return style

    @classmethod
    def stored(cls) -> "Style":
        """The style that a panel would begin with now."""
        return cls._adopt(library.tesmar_style_stored())

    @classmethod
    def default(cls) -> "Style":
        return cls._adopt(library.tesmar_style_default())

    @classmethod
    def from_json(cls, text: str) -> "Style":
        """Raises ValueError, with the line and the reason, when the text is refused."""
        data = text.encode()
        return cls._adopt(library.tesmar_style_from_json(data, len(data)))

    def to_json(self) -> str:
        return library.tesmar_style_json(self._handle).decode()

    def store(self) -> None:
        """Into the preferences."""
        checked(library.tesmar_style_store(self._handle))

    def __del__(self) -> None:
        if getattr(self, "_handle", None):
            library.tesmar_style_release(self._handle)

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Style) and self.to_json() == other.to_json()

    def __hash__(self) -> int:
        return hash(self.to_json())

    def _values(self) -> _native.StyleValues:
        values = _native.StyleValues()
        checked(library.tesmar_style_get(self._handle, ctypes.byref(values)))
        return values

    def _color(self, name: str) -> Color:
        color = getattr(self._values(), name)
        return Color(color.red, color.green, color.blue, color.alpha)

    @property
    def text(self) -> Color:
        return self._color("text")

    @property
    def background(self) -> Color:
        return self._color("background")

    @property
    def edge_color(self) -> Color:
        return self._color("edge_color")

    @property
    def window(self) -> Color:
        return self._color("window")

    @property
    def edge(self) -> str:
        return self._values().edge.decode()

    @property
    def font_name(self) -> str:
        return self._values().font_name.decode()

    @property
    def font_size(self) -> float:
        return self._values().font_size

    @property
    def font(self) -> Font:
        font = _native.Font()
        checked(library.tesmar_style_get_font(self._handle, ctypes.byref(font)))
        return Font(font.name.decode(), font.family.decode(), font.file.decode(), font.index)

    def measure(self, text: str, max_width: float = 0) -> Tuple[float, float]:
        """Width and height in points, with lines broken at `max_width` (0: only where the text says)."""
        width, height = ctypes.c_double(), ctypes.c_double()
        checked(library.tesmar_style_measure(self._handle, text.encode(), max_width,
                                             ctypes.byref(width), ctypes.byref(height)))
        return width.value, height.value

    def draw(self, text: str, pixels: bytearray, width: int, scale: float,
             area: Tuple[float, float, float, float],
             alignment: Alignment = Alignment.CENTER) -> None:
        """Draws over premultiplied ARGB `pixels`, `width` a row, from the top of `area` (points)."""
        memory = (ctypes.c_char * len(pixels)).from_buffer(pixels)
        surface = _native.Surface(
            pixels=ctypes.addressof(memory), bytes=len(pixels), width=width,
            height=len(pixels) // (4 * width) if width > 0 else 0, stride=4 * width, scale=scale)
        checked(library.tesmar_style_draw(self._handle, text.encode(), ctypes.byref(surface),
                                          ctypes.byref(_native.Area(*area)), alignment))
