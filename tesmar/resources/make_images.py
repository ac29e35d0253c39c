#!/usr/bin/python3
"""Draws the images of this directory, each at one, two and three pixels per point.

    tesmar/resources/make_images.py        (Debian: python3-cairo)

Vertical and horizontal edges lie on pixel boundaries at every scale.
"""

import pathlib

import cairo

HERE = pathlib.Path(__file__).resolve().parent
BLACK = (0, 0, 0)
LIGHT_GREY = (0.78, 0.78, 0.8)


def bar(context, x, y, width, height, colour=BLACK):
    context.set_source_rgb(*colour)
    context.rectangle(x, y, width, height)
    context.fill()


# Without antialiasing, so that the bars are drawn sharply at every scale; and symmetrical, so that
# they have the same thickness then.
def minus(context, width, height):
    bar(context, 0, height / 2 - 1, width, 2)


def plus(context, width, height):
    minus(context, width, height)
    bar(context, width / 2 - 1, 0, 2, height)


def pipe(context, width, height):
    bar(context, 0, 0, width, height, LIGHT_GREY)


def chevron(context, width, height, tip, back):
    """Strokes from the top at x = back to the tip and to the bottom at x = back."""
    context.set_source_rgb(*BLACK)
    context.set_line_width(2)
    context.set_line_cap(cairo.LINE_CAP_ROUND)
    context.set_line_join(cairo.LINE_JOIN_ROUND)
    context.move_to(back, 2)
    context.line_to(tip, height / 2)
    context.line_to(back, height - 2)
    context.stroke()


def chevron_left(context, width, height):
    chevron(context, width, height, tip=2, back=width - 2)


def chevron_right(context, width, height):
    chevron(context, width, height, tip=width - 2, back=2)


# The stepper's images are small because up to 15 points at its left may be clipped.
IMAGES = {  # file name: width and height in points, drawing function
    "stepper-up": (14, 14, plus),
    "stepper-down": (14, 14, minus),
    "stepper-pipe": (1, 29, pipe),
    "chevron-left": (12, 20, chevron_left),
    "chevron-right": (12, 20, chevron_right),
}


def main():
    for name, (width, height, draw) in IMAGES.items():
        for scale in (1, 2, 3):
            surface = cairo.ImageSurface(cairo.FORMAT_ARGB32, width * scale, height * scale)
            context = cairo.Context(surface)
            context.scale(scale, scale)
            draw(context, width, height)
            suffix = "" if scale == 1 else f"@{scale}x"
            surface.write_to_png(str(HERE / f"{name}{suffix}.png"))


if __name__ == "__main__":
    main()
