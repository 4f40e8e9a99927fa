#!/usr/bin/env python3
"""Draws the default skin's images (PNG, RGBA) into resources/skins/default/, and the images of
the gallery skin (resources/gallery/), which shows every painting attribute at once.

The images are simple enough to be drawn by code, so they are made here rather than kept
only as binaries; run it again after changing a colour or size and commit the PNGs."""
import math
import os
import struct
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))
SKIN = os.path.join(HERE, "..", "resources", "skins", "default", "start_hide_window")
GALLERY = os.path.join(HERE, "..", "resources", "gallery")


def write_png(path, width, height, pixel):
    rows = bytearray()
    for y in range(height):
        rows.append(0)  # no filter
        for x in range(width):
            rows.extend(pixel(x, y))

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)

    header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    png = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(bytes(rows), 9)) + chunk(b"IEND", b"")
    with open(path, "wb") as f:
        f.write(png)


def avatar(x, y, size=36):
    # a head and shoulders in blue-grey on a pale round plate
    cx = cy = (size - 1) / 2
    if math.hypot(x - cx, y - cy) > size / 2:
        return (0, 0, 0, 0)
    head = math.hypot(x - cx, y - size * 0.38) <= size * 0.18
    body = y >= size * 0.62 and math.hypot((x - cx) / 1.25, y - size * 0.98) <= size * 0.36
    return (0x5B, 0x7C, 0x99, 255) if head or body else (0xDD, 0xE7, 0xEF, 255)


def check_box(checked):
    # a 14-pixel box at the left of a 300x20 strip, the rest transparent (the label's text
    # sits there, after its text padding)
    def pixel(x, y):
        if not (0 <= x < 14 and 3 <= y < 17):
            return (0, 0, 0, 0)
        edge = x in (0, 13) or y in (3, 16)
        if edge:
            return (0x7A, 0x9C, 0xC0, 255)
        if checked:
            # a tick: down from (3,9) to (6,12), then up to (11,6)
            px, py = x, y
            on_first = 3 <= px <= 6 and abs((py - 9) - (px - 3)) <= 1
            on_second = 6 <= px <= 11 and abs((py - 12) + (px - 6) * 6 / 5) <= 1.2
            if on_first or on_second:
                return (0x2E, 0x6D, 0xA4, 255)
        return (255, 255, 255, 255)

    return pixel


def frame(x, y, size=24):
    # a 4-pixel navy frame with orange corner squares on a pale fill: stretched by its corners,
    # the orange squares keep their size and the frame its width
    corner = (x < 4 or x >= size - 4) and (y < 4 or y >= size - 4)
    if corner:
        return (0xF0, 0x8A, 0x24, 255)
    if x < 4 or y < 4 or x >= size - 4 or y >= size - 4:
        return (0x1F, 0x3A, 0x68, 255)
    return (0xE8, 0xF0, 0xF8, 255)


def stripe(x, y):
    # one tile of diagonal stripes, seamless when repeated
    return (0x3C, 0x7F, 0xB1, 255) if (x + y) % 8 < 3 else (0xF4, 0xF8, 0xFB, 255)


def photo(x, y, width=48, height=32):
    # a sky over a hill with a sun: proportions show whether it was stretched
    if math.hypot(x - 34, y - 9) <= 5:
        return (0xFF, 0xD2, 0x3F, 255)
    if y > 22 + 4 * math.sin(x / 8):
        return (0x4C, 0x9A, 0x4A, 255)
    return (0x8E + y * 2, 0xC4 + y, 0xF0, 255)


def states(x, y):
    # three 60x24 buttons side by side, normal, hot and pushed, picked by "source"
    shade = [(0xDD, 0xE7, 0xEF), (0xB8, 0xD4, 0xEA), (0x8F, 0xB0, 0xCA)][x // 60]
    edge = x % 60 in (0, 59) or y in (0, 23)
    return (0x5A, 0x87, 0xAD, 255) if edge else shade + (255,)


def badge(x, y, size=16):
    # a round badge whose edge fades out: its alpha shows over any background
    d = math.hypot(x - 7.5, y - 7.5)
    if d > 8:
        return (0, 0, 0, 0)
    return (0xC0, 0x30, 0x30, int(255 * min(1, 8 - d)))


def main():
    os.makedirs(SKIN, exist_ok=True)
    write_png(os.path.join(SKIN, "1.png"), 36, 36, avatar)
    write_png(os.path.join(SKIN, "bk_listitem_selected.png"), 4, 4, lambda x, y: (0xC8, 0xE4, 0xE4, 255))
    write_png(os.path.join(SKIN, "check_off.png"), 300, 20, check_box(False))
    write_png(os.path.join(SKIN, "check_on.png"), 300, 20, check_box(True))
    os.makedirs(GALLERY, exist_ok=True)
    write_png(os.path.join(GALLERY, "frame.png"), 24, 24, frame)
    write_png(os.path.join(GALLERY, "stripe.png"), 8, 8, stripe)
    write_png(os.path.join(GALLERY, "photo.png"), 48, 32, photo)
    write_png(os.path.join(GALLERY, "states.png"), 180, 24, states)
    write_png(os.path.join(GALLERY, "badge.png"), 16, 16, badge)


if __name__ == "__main__":
    main()
