#!/usr/bin/env python3
"""Draws the two separator icons, resources/SeparatorLight.png and resources/SeparatorDark.png.

A separator is a thin vertical divider with rounded ends on a transparent square, dark on a
light Dock and light on a dark one. The images are drawn here rather than kept only as binary
files so that they can be redrawn at another size or weight. Run from anywhere:
    python3 src/dock/artwork/separator_artwork.py
"""

import math
import os
import struct
import zlib

SIZE = 512          # pixels per side
BAR_WIDTH = 18.0    # the divider's thickness
BAR_HEIGHT = 400.0  # from the top of one rounded end to the bottom of the other

THEMES = {
    "Light": (40, 40, 40, 150),     # a soft dark grey on a light Dock
    "Dark": (235, 235, 235, 170),   # a soft light grey on a dark Dock
}


def coverage(x, y):
    """How much of the pixel at (x, y) the rounded bar covers, from 0 to 1, sampled 4 x 4."""
    centre = SIZE / 2.0
    radius = BAR_WIDTH / 2.0
    half_straight = BAR_HEIGHT / 2.0 - radius
    covered = 0
    for sub_y in range(4):
        for sub_x in range(4):
            px = x + (sub_x + 0.5) / 4.0 - centre
            py = y + (sub_y + 0.5) / 4.0 - centre
            # Distance from the bar's centre line, a segment from -half_straight to +half_straight.
            nearest = max(-half_straight, min(half_straight, py))
            if math.hypot(px, py - nearest) <= radius:
                covered += 1
    return covered / 16.0


def png(rows):
    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)

    raw = b"".join(b"\x00" + bytes(row) for row in rows)
    header = struct.pack(">IIBBBBB", SIZE, SIZE, 8, 6, 0, 0, 0)  # 8-bit RGBA
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw, 9))
            + chunk(b"IEND", b""))


def draw(colour):
    red, green, blue, alpha = colour
    rows = []
    for y in range(SIZE):
        row = []
        for x in range(SIZE):
            # Only the columns near the centre can be covered; the rest is transparent.
            amount = coverage(x, y) if abs(x + 0.5 - SIZE / 2.0) < BAR_WIDTH else 0.0
            row += [red, green, blue, round(alpha * amount)] if amount > 0 else [0, 0, 0, 0]
        rows.append(row)
    return png(rows)


def main():
    resources = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..", "resources")
    for theme, colour in THEMES.items():
        with open(os.path.join(resources, "Separator%s.png" % theme), "wb") as image:
            image.write(draw(colour))


if __name__ == "__main__":
    main()
