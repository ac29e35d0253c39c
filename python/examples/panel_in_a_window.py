#!/usr/bin/env python3
"""The panel in a window of Tk, over a caption in the chosen style: press c. Needs python3-tk."""
import time
import tkinter

import tesmar

WIDTH, HEIGHT = 480, 640
KEYS = {"Up": tesmar.Key.UP, "Down": tesmar.Key.DOWN, "Left": tesmar.Key.LEFT, "Right": tesmar.Key.RIGHT,
        "Return": tesmar.Key.SELECT, "Escape": tesmar.Key.BACK, "Tab": tesmar.Key.NEXT}


class Window:
    def __init__(self) -> None:
        tesmar.init("org.tesmar.example")
        self.root = tkinter.Tk()
        self.root.title("TESMAR")
        self.shown = tkinter.PhotoImage(width=WIDTH, height=HEIGHT)
        self.label = tkinter.Label(self.root, image=self.shown, borderwidth=0)
        self.label.pack()
        self.panel = tesmar.Panel(WIDTH, HEIGHT, on_style=self.restyle)
        self.panel.set_easy_dismissal(True)
        self.style = tesmar.Style.stored()
        self.timer = ""
        self.label.bind("<Button-1>", lambda e: self.touch(tesmar.Phase.BEGAN, e))
        self.label.bind("<B1-Motion>", lambda e: self.touch(tesmar.Phase.MOVED, e))
        self.label.bind("<ButtonRelease-1>", lambda e: self.touch(tesmar.Phase.ENDED, e))
        self.root.bind("<Key>", self.key)
        tesmar.set_wake(lambda: self.pump_in(0))
        self.show()

    def restyle(self, style: tesmar.Style) -> None:
        self.style = style

    def touch(self, phase: tesmar.Phase, event: "tkinter.Event[tkinter.Misc]") -> None:
        self.panel.touch(phase, 1, event.x, event.y, time.monotonic(), mouse=True)

    def key(self, event: "tkinter.Event[tkinter.Misc]") -> None:
        if event.keysym in KEYS and self.panel.key(KEYS[event.keysym], time.monotonic()):
            return
        if event.keysym == "c":
            self.panel.present()

    def pump_in(self, seconds: float) -> None:
        if self.timer:
            self.root.after_cancel(self.timer)
        self.timer = self.root.after(max(0, round(seconds * 1000)), self.pump)

    def pump(self) -> None:
        self.timer = ""
        tesmar.advance(time.monotonic())
        if self.panel.needs_render:
            self.panel.render()
            self.show()
        due = tesmar.deadline()
        if due is not None:
            self.pump_in(due - time.monotonic())

    def show(self) -> None:
        """Tk takes no pixels with alpha: the panel is blended over the caption on grey here."""
        behind = bytearray(b"\x60\x60\x60\xff" * (WIDTH * HEIGHT))
        self.style.draw("A caption, to be restyled", behind, WIDTH, 1, (0, HEIGHT - 60, WIDTH, 60))
        over = self.panel.pixels
        rgb = bytearray(3 * WIDTH * HEIGHT)
        for channel in range(3):  # memory has blue, green, red, alpha
            rgb[channel::3] = bytes(o + b * (255 - a) // 255 for o, b, a in
                                    zip(over[2 - channel::4], behind[2 - channel::4], over[3::4]))
        self.shown.configure(data=b"P6 %d %d 255\n" % (WIDTH, HEIGHT) + rgb, format="ppm")


if __name__ == "__main__":
    Window().root.mainloop()
