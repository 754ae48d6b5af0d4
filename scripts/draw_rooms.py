#!/usr/bin/env python3
"""Draws docs/rooms.svg: the rooms on their floors, as cmake/floors.txt has them, with a note on each.

usage: draw_rooms.py [--check]    (--check writes nothing; 1 and a message when the picture is not up to date)
"""
import sys

from check_rooms import FLOORS, ROOT

PICTURE = ROOT / "docs" / "rooms.svg"
NOTES = {
    "platform": "the door to the system: locks, handles, folders",
    "rw": "strings, collections, streams, day numbers",
    "text": "builder, tokenizer, table, conversions, characters and case",
    "values": "dates and numbers",
    "json": "values, parser, writer",
    "names": "file names, command lines",
    "settings": "registry, stores, contexts, accessors",
    "logging": "queue, writer thread, outputs",
    "prefs": "folders, markup options, interview values, window placement",
    "textproc": "text processors and their programs",
    "files": "files, walks, full paths, launching",
    "cmdline": "switches of three programs",
    "zip": "archives through engines",
    "shell": "folder dialog, greyed images",
    "engine": "two DLLs on zlib, loaded at run time; they know the records of zip and the system alone",
}
TOP = ("tools/qlutil", "the command-line host; sees the public headers only")
BESIDE = (
    ("tests", ("one program a room,", "on Wine’s Win32 in both", "word sizes; natively over",
               "a small fake of it, with", "the sanitizers and the", "fuzzers")),
    ("bench", ("beside peers in one", "run, ratios printed")),
)

LEFT, WIDTH, GAP, HIGH, STEP = 70, 570, 12, 52, 72
STYLE = """  <style>
    .band { fill: #f4f1ea; } .room { fill: #ffffff; stroke: #5b6770; } .top { fill: #e3eef7; stroke: #3a6ea5; }
    .side { fill: #eef5e9; stroke: #5d8a4a; } .name { font-weight: bold; } .note { font-size: 11px; fill: #444; }
    .floor { font-size: 11px; fill: #8a7f6a; }
  </style>"""


def box(kind, x, y, width, name, notes):
    high = HIGH + 16 * (len(notes) - 1)
    yield f'  <rect class="{kind}" x="{x}" y="{y}" width="{width}" height="{high}" rx="4"/>'
    yield f'  <text class="name" x="{x + 12}" y="{y + 22}">{name}</text>'
    for row, note in enumerate(notes):
        yield f'  <text class="note" x="{x + 12}" y="{y + 40 + 16 * row}">{note}</text>'


def floor(number, rooms, y):
    yield f'  <rect class="band" x="10" y="{y - 6}" width="640" height="{HIGH + 12}"/>'
    yield f'  <text class="floor" x="18" y="{y + 8}">floor {number}</text>'
    width = (WIDTH - GAP * (len(rooms) - 1)) // len(rooms)
    for place, room in enumerate(rooms):
        yield from box("room", LEFT + place * (width + GAP), y, width, room, [NOTES[room]])


def picture():
    high = 16 + STEP * (len(FLOORS) + 1)
    yield (f'<svg xmlns="http://www.w3.org/2000/svg" width="830" height="{high}" viewBox="0 0 830 {high}" '
           'font-family="sans-serif" font-size="13">')
    yield STYLE
    yield from box("top", LEFT, 16, WIDTH, TOP[0], [TOP[1]])
    for number, rooms in enumerate(FLOORS):
        yield from floor(number, rooms, 16 + STEP * (len(FLOORS) - number))
    y = 16
    for name, notes in BESIDE:
        yield from box("side", 668, y, 152, name, notes)
        y += HIGH + 16 * len(notes)
    yield "</svg>"


def main():
    drawn = "\n".join(picture()) + "\n"
    if "--check" not in sys.argv[1:]:
        PICTURE.write_text(drawn, encoding="utf-8")
    elif PICTURE.read_text(encoding="utf-8") != drawn:
        print("docs/rooms.svg shows other rooms; scripts/draw_rooms.py draws it anew")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
