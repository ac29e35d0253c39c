"""The library's functions and structures, as tesmar/capi/tesmar.h declares them."""
from __future__ import annotations

import ctypes
import os
from ctypes import (CFUNCTYPE, POINTER, Structure, c_char_p, c_double, c_int, c_int64, c_size_t, c_uint,
                    c_uint32, c_void_p)

API_VERSION = 1


class Rect(Structure):
    _fields_ = [(name, c_int) for name in ("x", "y", "width", "height")]


class Area(Structure):
    _fields_ = [(name, c_double) for name in ("x", "y", "width", "height")]


class Color(Structure):
    _fields_ = [(name, c_double) for name in ("red", "green", "blue", "alpha")]


class Sized(Structure):
    """A structure that begins with its size."""

    def __init__(self, **values: object) -> None:
        super().__init__(size=ctypes.sizeof(self), **values)


class StyleValues(Sized):
    _fields_ = [("size", c_size_t), ("text", Color), ("background", Color), ("font_name", c_char_p),
                ("font_size", c_double), ("edge", c_char_p), ("edge_color", Color), ("window", Color)]


class Font(Sized):
    _fields_ = [("size", c_size_t), ("name", c_char_p), ("family", c_char_p), ("file", c_char_p),
                ("index", c_int)]


class Surface(Sized):
    _fields_ = [("size", c_size_t), ("pixels", c_void_p), ("bytes", c_size_t), ("width", c_int),
                ("height", c_int), ("stride", c_int), ("scale", c_double)]


class PanelOptions(Sized):
    _fields_ = [("size", c_size_t), ("width", c_int), ("height", c_int), ("scale", c_double),
                ("flags", c_uint)]


StyleFunction = CFUNCTYPE(None, c_void_p, c_void_p, c_void_p)
CaptionsFunction = CFUNCTYPE(None, c_void_p, c_int, c_void_p)
PanelFunction = CFUNCTYPE(None, c_void_p, c_void_p)
LoadFunction = CFUNCTYPE(c_void_p, c_void_p, c_void_p)
WakeFunction = CFUNCTYPE(None, c_void_p)
LogFunction = CFUNCTYPE(None, c_char_p, c_void_p)


class PanelCallbacks(Sized):
    _fields_ = [("size", c_size_t), ("user", c_void_p), ("style_changed", StyleFunction),
                ("captions_changed", CaptionsFunction), ("will_disappear", PanelFunction),
                ("load_style", LoadFunction), ("save_style", StyleFunction),
                ("did_disappear", PanelFunction)]


# The types of the arguments; the result is an int unless it is listed below.
_FUNCTIONS = {
    "api_version": [], "version": [], "init": [c_char_p], "error_text": [c_int],
    "error_message": [], "set_log": [LogFunction, c_void_p], "set_preferences_path": [c_char_p],
    "add_font_file": [c_char_p], "advance": [c_double], "deadline": [POINTER(c_double)],
    "set_wake": [WakeFunction, c_void_p], "set_frame_interval": [c_double],
    "style_retain": [c_void_p], "style_release": [c_void_p], "style_create": [POINTER(StyleValues)],
    "style_get": [c_void_p, POINTER(StyleValues)], "style_get_font": [c_void_p, POINTER(Font)],
    "style_stored": [], "style_default": [], "style_store": [c_void_p], "style_json": [c_void_p],
    "style_from_json": [c_char_p, c_size_t],
    "style_draw": [c_void_p, c_char_p, POINTER(Surface), POINTER(Area), c_int],
    "style_measure": [c_void_p, c_char_p, c_double, POINTER(c_double), POINTER(c_double)],
    "panel_create": [POINTER(PanelOptions), POINTER(PanelCallbacks), POINTER(c_void_p)],
    "panel_destroy": [c_void_p], "panel_set_size": [c_void_p, c_int, c_int, c_double],
    "panel_set_safe_area": [c_void_p] + [c_double] * 4,
    "panel_set_caption_area": [c_void_p, POINTER(Area)], "panel_set_captions_on": [c_void_p, c_int],
    "panel_set_auto_hide": [c_void_p, c_double], "panel_set_remember": [c_void_p, c_int],
    "panel_set_easy_dismissal": [c_void_p, c_int], "panel_set_style": [c_void_p, c_void_p],
    "panel_get_style": [c_void_p], "panel_set_language": [c_void_p, c_char_p, POINTER(c_char_p)],
    "panel_set_mirroring": [c_void_p, c_int], "panel_set_text_scale": [c_void_p, c_double],
    "panel_set_high_contrast": [c_void_p, c_int], "panel_set_brightness": [c_void_p, c_double],
    "panel_present": [c_void_p, c_int], "panel_dismiss": [c_void_p, c_int],
    "panel_is_presented": [c_void_p],
    "panel_touch": [c_void_p, c_int, c_int64, c_double, c_double, c_double, c_int],
    "panel_wants_touch": [c_void_p, c_double, c_double],
    "panel_wheel": [c_void_p] + [c_double] * 5, "panel_hover": [c_void_p, c_double, c_double],
    "panel_end_hover": [c_void_p], "panel_key": [c_void_p, c_int, c_int, c_double],
    "panel_cancel_touches": [c_void_p, c_double], "panel_locate": [c_void_p, c_char_p, POINTER(Area)],
    "panel_needs_render": [c_void_p],
    "panel_render": [c_void_p, c_void_p, c_size_t, c_int, c_int, POINTER(Rect), c_int],
    "panel_repaint": [c_void_p, c_void_p, c_size_t, c_int, POINTER(Rect), c_int],
    "panel_invalidate": [c_void_p], "panel_visible_bounds": [c_void_p, POINTER(Rect)],
}
_TEXTS = ("version", "error_text", "error_message", "style_json")
_STYLES = ("style_retain", "style_create", "style_stored", "style_default", "style_from_json",
           "panel_get_style")


def _load() -> ctypes.CDLL:
    path = os.environ.get("TESMAR_LIBRARY", "libtesmar.so.0.2")
    try:
        library = ctypes.CDLL(path)
        library.tesmar_api_version.restype = c_int
        version = library.tesmar_api_version()
    except (OSError, AttributeError) as problem:
        raise ImportError(f"tesmar: cannot use {path} (TESMAR_LIBRARY names another): {problem}") from None
    if version != API_VERSION:
        raise ImportError(f"tesmar: {path} has interface {version}, this module needs {API_VERSION}")
    for name, arguments in _FUNCTIONS.items():
        function = getattr(library, "tesmar_" + name)
        function.argtypes = arguments
        function.restype = (c_char_p if name in _TEXTS else c_void_p if name in _STYLES
                            else None if name == "style_release" else c_int)
    return library


library = _load()
