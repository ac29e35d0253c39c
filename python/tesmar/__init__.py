"""A caption settings panel for video players, over the pixels of the host's picture.

    tesmar.init("org.example.player")
    with tesmar.Panel(1280, 720, scale=2, on_style=restyle) as panel:
        panel.present()
        while panel.is_presented:
            ...panel.touch(), panel.wheel() and panel.key() with the events, each with its time...
            tesmar.advance(time.monotonic())
            for rect in panel.render():
                ...show these pixels of panel.pixels...
            ...sleep until the next event, or tesmar.deadline()...

Everything belongs to the thread that calls init(), except styles. TESMAR_LIBRARY in the environment
names another library file than libtesmar.so.0.2 of the system.
"""
from .errors import Error, WrongThread
from .panel import WHEEL_NOTCH, Key, Panel, Phase, Rect
from .process import (add_font_file, advance, deadline, init, set_frame_interval, set_log,
                      set_preferences_path, set_wake, version)
from .style import NO_COLOR, Alignment, Color, Font, Style

__all__ = ["Alignment", "Color", "Error", "Font", "Key", "NO_COLOR", "Panel", "Phase", "Rect", "Style",
           "WHEEL_NOTCH", "WrongThread", "add_font_file", "advance", "deadline", "init",
           "set_frame_interval", "set_log", "set_preferences_path", "set_wake", "version"]
