#!/usr/bin/env python3
"""Presents the panel without a screen, taps the yellow swatch, and writes the picture: panel_to_png.py FILE.png"""
import struct
import sys
import zlib

import tesmar


def write_png(path: str, panel: tesmar.Panel) -> None:
    """The panel's premultiplied pixels over grey."""
    rows = bytearray()
    words = memoryview(panel.pixels).cast("I")
    for y in range(panel.height):
        rows.append(0)  # no filter
        for pixel in words[y * panel.width:(y + 1) * panel.width]:
            behind = 128 * (255 - (pixel >> 24)) // 255
            rows += bytes(((pixel >> shift) & 255) + behind for shift in (16, 8, 0))

    def chunk(kind: bytes, data: bytes) -> bytes:
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    header = struct.pack(">IIBBBBB", panel.width, panel.height, 8, 2, 0, 0, 0)
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
                   + chunk(b"IDAT", zlib.compress(bytes(rows))) + chunk(b"IEND", b""))


def main() -> None:
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    tesmar.init("org.tesmar.example")
    with tesmar.Panel(720, 1280, scale=2, on_style=lambda style: print("text in", tuple(style.text))) as panel:
        panel.present(animated=False)
        tesmar.advance(1)
        x, y, width, height = panel.locate("textColorPicker.4") or sys.exit("no swatch")
        panel.touch(tesmar.Phase.BEGAN, 1, x + width / 2, y + height / 2, 1)
        panel.touch(tesmar.Phase.ENDED, 1, x + width / 2, y + height / 2, 1)
        tesmar.advance(2)
        panel.render()
        try:
            write_png(sys.argv[1], panel)
        except OSError as problem:
            sys.exit(f"panel_to_png.py: {problem}")


if __name__ == "__main__":
    main()
