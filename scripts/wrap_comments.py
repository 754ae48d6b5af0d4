#!/usr/bin/env python3
"""Wraps the comments that are too long, as clang-format does not.

usage: wrap_comments.py FILE...

A paragraph of whole lines flows anew; what is set in, a list's item or a table stands as it is, unless it is too long
itself.
"""
import pathlib
import re
import sys
import textwrap

COLUMNS = 110
COMMENT = re.compile(r"^(\s*// ?)(.*)$")
STANDS = re.compile(r"\s|[-*|/]|clang-format|NOLINT|$")


def wrapped(text, room, indent=""):
    return textwrap.wrap(text, room, break_long_words=False, break_on_hyphens=False, subsequent_indent=indent)


def flowed(head, lines):
    """The lines of one comment, without their slashes, as lines of the file."""
    room = COLUMNS - len(head)
    paragraph = []
    for line in [*lines, ""]:
        if not STANDS.match(line):
            paragraph.append(line)
            continue
        too_long = any(len(part) > room for part in paragraph)
        yield from wrapped(" ".join(paragraph), room) if too_long else paragraph
        paragraph = []
        lead = re.match(r"\s*(?:- )?", line)[0]
        if len(line) > room:
            yield from (lead + part for part in wrapped(line[len(lead):], room - len(lead)))
        else:
            yield line


def lines_of(text):
    block, head = [], None
    for line in [*text.split("\n"), None]:
        found = COMMENT.match(line) if line is not None else None
        if block and (not found or found[1].rstrip() != head.rstrip()):
            yield from ((head + part).rstrip() for part in list(flowed(head, block))[:-1])
            block = []
        if found:
            head = found[1] if not block or found[1] != found[1].rstrip() else head
            block.append(found[2])
        elif line is not None:
            yield line


def main():
    for name in sys.argv[1:]:
        path = pathlib.Path(name)
        text = path.read_text(encoding="utf-8")
        if any(len(line) > COLUMNS for line in text.split("\n")):
            path.write_text("\n".join(lines_of(text)), encoding="utf-8")


if __name__ == "__main__":
    main()
