#!/usr/bin/python3
"""Operates the panel as a screen reader does: through AT-SPI, on a private bus and display.

    screen_reader_test.py PROGRAM PLAYER

PROGRAM shows the panel in an SDL window and prints what changes (examples/02-panel-in-a-window);
PLAYER opens it with a button of its own.
"""
import contextlib
import itertools
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

SKIPPED = 77
try:
    import dbus
    import pyatspi
    from gi.repository import Atspi, GLib
except ImportError as error:
    print(f"skipped: {error}; scripts/setup installs it")
    sys.exit(SKIPPED)
for program in ("dbus-run-session", "Xvfb"):
    if not shutil.which(program):
        print(f"skipped: there is no {program}; scripts/setup installs it")
        sys.exit(SKIPPED)

EVENTS = ["object:state-changed:checked", "object:state-changed:pressed", "object:state-changed:focused", "object:selection-changed",
          "object:property-change:accessible-value", "object:announcement", "object:children-changed"]
COLORS = ["magenta", "cyan", "white", "black", "yellow", "red", "blue", "green"]
RIGHT = 0xFF53  # the key
STEP, SWITCH, PRESS = ["decrement", "increment"], ["toggle"], ["click"]

# All that a client finds, in reading order: identifier, role, name and actions.
FOUND = [
    ("", "frame", "Caption panel", []), ("card", "dialog", "Caption settings", ["close"]),
    ("CCSwitch", "toggle button", "Closed captions", SWITCH), ("resetButton", "push button", "Reset", PRESS),
    ("textColorPicker", "grouping", "Text colour", []), ("textColorPicker.title", "heading", "Text colour", []),
    *[(f"textColorPicker.{i}", "radio button", f"Text colour, {c}", PRESS) for i, c in enumerate(COLORS)],
    ("fontPicker.name", "spin button", "Font", STEP), ("fontPicker.prev", "push button", "Previous font", PRESS),
    ("fontPicker.next", "push button", "Next font", PRESS), ("fontPicker.size", "spin button", "Font size", STEP),
    ("fontPicker.size.decrement", "push button", "Font size, decrease", PRESS),
    ("fontPicker.size.increment", "push button", "Font size, increase", PRESS),
    ("textColorOpacityStepper", "spin button", "Text opacity", STEP),
    ("textColorOpacityStepper.decrement", "push button", "Text opacity, decrease", PRESS),
    ("textColorOpacityStepper.increment", "push button", "Text opacity, increase", PRESS),
    ("backgroundColorPicker", "grouping", "Background colour", []),
    ("backgroundColorPicker.title", "heading", "Background colour", []),
    *[(f"backgroundColorPicker.{i}", "radio button", f"Background colour, {c}", PRESS) for i, c in enumerate(COLORS)],
    ("backgroundColorOpacityStepper", "spin button", "Background opacity", STEP),
    ("backgroundColorOpacityStepper.decrement", "push button", "Background opacity, decrease", PRESS),
    ("backgroundColorOpacityStepper.increment", "push button", "Background opacity, increase", PRESS),
]

# What a client does, or a key without an identifier, all that it then hears, and what the program prints.
STEPS = [
    ("CCSwitch", "toggle", ["CCSwitch unchecked"], ["Switch OFF", "captions: 0"]),
    ("textColorPicker.4", "click",
     ["textColorPicker.2 unchecked", "textColorPicker.4 checked", "textColorPicker selection yellow"],
     ["text: red 1, green 1, blue 0, alpha 1"]),
    ("textColorOpacityStepper", "decrement", ["textColorOpacityStepper 90 percent"],
     ["text: red 1, green 1, blue 0, alpha 0.9"]),
    ("textColorOpacityStepper.increment", "click", ["textColorOpacityStepper 100 percent"],
     ["text: red 1, green 1, blue 0, alpha 1"]),
    ("fontPicker.size", "increment", ["fontPicker.size 20 points"], ["font: .SystemUI, 20 points"]),
    ("backgroundColorPicker.6", "click",
     ["backgroundColorPicker.3 unchecked", "backgroundColorPicker.6 checked", "backgroundColorPicker selection blue"], []),
    ("backgroundColorOpacityStepper", "increment", ["backgroundColorOpacityStepper 60 percent"], []),
    ("resetButton", "click",
     ["textColorPicker.2 checked", "textColorPicker selection white", "textColorPicker.4 unchecked",
      "fontPicker.size 17 points", "backgroundColorPicker.3 checked", "backgroundColorPicker selection black",
      "backgroundColorPicker.6 unchecked", "backgroundColorOpacityStepper 50 percent",
      "announcement: Reset to the default style"], ["font: .SystemUI, 17 points"]),
    (None, RIGHT, ["CCSwitch focused"], []), (None, RIGHT, ["CCSwitch unfocused", "resetButton focused"], []),
    ("textColorPicker.5", "focus", ["resetButton unfocused", "textColorPicker.5 focused"], []),
    ("card", "close", ["removed"], ["the panel closes"]),
]

PLAYER_STEPS = [
    ("captionsButton", "click", ["removed", "added"]),
    ("CCSwitch", "toggle", ["CCSwitch unchecked", "captionsButton unpressed"]),
    ("backgroundColorOpacityStepper", "decrement", ["added", "preset.0 unchecked", "backgroundColorOpacityStepper 40 percent"]),
    ("card", "close", ["removed", "added"]),
]


def pump(until, seconds):
    end = time.monotonic() + seconds
    while not until() and time.monotonic() < end:
        if not GLib.MainContext.default().iteration(False):
            time.sleep(0.002)
    return until()


def require(condition, *what):
    if not condition:
        sys.exit(f"screen_reader_test: {' '.join(map(str, what))}")


class App:
    """The program, and its elements by identifier."""

    def __init__(self, program):
        self.process = subprocess.Popen([program], stdout=subprocess.PIPE, text=True)
        self.nodes, self.heard = {}, []

    def libraries(self):
        maps = pathlib.Path(f"/proc/{self.process.pid}/maps").read_text(encoding="utf-8")
        return {name for name in ("libatk", "tesmar-atspi", "libatspi") if name in maps}

    def end(self):
        self.process.terminate()
        return self.process.communicate(timeout=20)[0].splitlines()

    def windows(self):
        return [app[0] for app in pyatspi.Registry.getDesktop(0) if app and app.childCount
                and app.get_process_id() == self.process.pid and app[0].childCount]

    def collect(self, node):
        self.nodes[node.get_accessible_id()] = node
        for index, child in enumerate(list(node)):
            require(child.parent == node and child.getIndexInParent() == index, "misplaced:", child)
            self.collect(child)

    def perform(self, name, action):
        if not name:
            middle = self.nodes["card"].queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
            pyatspi.Registry.generateMouseEvent(middle.x + 5, middle.y + 5, "abs")  # X sends keys there
            pyatspi.Registry.generateKeyboardEvent(action, None, pyatspi.KEY_SYM)
        elif action == "focus":
            require(self.nodes[name].queryComponent().grabFocus(), action, name)
        else:
            require(self.nodes[name].queryAction().doAction(self.actions(name).index(action)), action, name)

    def expect(self, name, action, events):
        """Performs the action; hears these events and no others."""
        self.heard.clear()
        self.perform(name, action)
        pump(lambda: len(self.heard) >= len(events), 10)
        pump(lambda: False, 0.3)
        require(self.heard == events, name, action, "heard", self.heard)

    def actions(self, identifier):
        action = self.nodes[identifier].queryAction() if identifier in self.operable else None
        return [action.getName(i) for i in range(action.nActions)] if action else []

    @property
    def operable(self):
        return {name for name, node in self.nodes.items() if "Action" in pyatspi.listInterfaces(node)}

    def hear(self, event):
        name = event.source.get_accessible_id()
        if event.type.startswith("object:property-change"):
            self.heard.append(f"{name} {Atspi.Value.get_text(event.source)}")
        elif event.type.startswith("object:selection"):
            selected = event.source.querySelection().getSelectedChild(0).name.split(", ")[1]
            self.heard.append(f"{name} selection {selected}")
        elif event.type.startswith("object:announcement"):
            self.heard.append(f"announcement: {event.any_data}")
        elif event.type.startswith("object:children"):
            self.heard.append("removed" if event.type.minor == "remove" else "added")
        else:
            self.heard.append(f"{name} {'' if event.detail1 else 'un'}{event.type.minor}")


def session(program, status):
    quiet = App(program)
    pump(lambda: False, 1)
    require(not quiet.libraries() and not quiet.windows(), "loaded without a reader:", quiet.libraries())
    quiet.end()

    status.Set("org.a11y.Status", "IsEnabled", dbus.Boolean(True, variant_level=1))
    app = App(program)
    require(pump(app.windows, 10), "the program is not on the accessibility bus")
    window = app.windows()[0]
    app.collect(window)
    found = [(name, node.getRoleName(), node.name, app.actions(name)) for name, node in app.nodes.items()]
    for wanted, present in itertools.zip_longest(FOUND, found):
        require(wanted == present, "expected", wanted, "found", present)
    outer = window.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    inner = app.nodes["textColorPicker.0"].queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    require((outer.width, outer.height, inner.width) == (800, 450, 50) and outer.x < inner.x < outer.x + 800,
            "extents:", outer, inner)
    title = app.nodes["textColorPicker.title"].queryText()
    require(title.getText(0, -1) == "Text colour" and title.characterCount == 11, "text:", title.getText(0, -1))

    pyatspi.Registry.registerEventListener(app.hear, *EVENTS)
    printed = []
    for name, action, events, lines in STEPS:
        app.expect(name, action, events)
        printed += lines
    pyatspi.Registry.deregisterEventListener(app.hear, *EVENTS)
    lines = app.end()
    missing = [line for line in printed if line not in lines]
    require(not missing, "not printed:", missing, "but", lines)
    print(f"screen_reader_test: {len(found)} elements found, {len(STEPS)} actions heard")


def play(player):
    app = App(player)
    require(pump(app.windows, 10), "the player is not on the accessibility bus")
    pyatspi.Registry.registerEventListener(app.hear, *EVENTS)
    for name, action, events in PLAYER_STEPS:
        app.collect(app.windows()[0])
        app.expect(name, action, events)
    app.end()


def main(program, player):
    bus = dbus.SessionBus().get_object("org.a11y.Bus", "/org/a11y/bus")
    session(program, dbus.Interface(bus, "org.freedesktop.DBus.Properties"))
    play(player)


@contextlib.contextmanager
def display():
    read, write = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1024x768x24", "-nolisten", "tcp", "-noreset"],
                              pass_fds=[write], stderr=subprocess.DEVNULL)
    try:
        yield ":" + os.read(read, 16).decode().strip()
    finally:
        server.terminate()
        server.wait()


if __name__ == "__main__":
    if "TESMAR_PRIVATE_BUS" in os.environ:
        sys.exit(main(*sys.argv[1:]))
    with tempfile.TemporaryDirectory() as home, display() as name:
        clean = {**os.environ, "TESMAR_PRIVATE_BUS": "1", "DISPLAY": name, "SDL_VIDEODRIVER": "x11",
                 "XDG_RUNTIME_DIR": home, "XDG_CONFIG_HOME": home, "HOME": home, "GSETTINGS_BACKEND": "memory"}
        sys.exit(subprocess.run(["dbus-run-session", "--", sys.executable, *sys.argv], env=clean, check=False).returncode)
