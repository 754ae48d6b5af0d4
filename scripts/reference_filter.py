#!/usr/bin/env python3
"""Shows a public header or a page of docs/ to the maker of the reference, on standard output.

usage: reference_filter.py FILE

Comments in headers are plain: one stands above what it speaks of, or behind it, and speaks for all lines up to the next
blank one. Names in pages stand in backquotes; those that are public become links.
"""
import pathlib
import re
import sys

from check_rooms import ROOT

COMMENT = re.compile(r"^(\s*)//(?!/)(?: |$)(.*)$")
BEHIND = re.compile(r"^(.*[;,{}]|.*\))\s+// (?!NOLINT)(.*)$")
CODE = re.compile(r"(?<!`)`([^`]+)`(?!`)")
NAME = re.compile(r"(?:\w+::)*[A-Za-z_]\w+(?:\(\))?")
FENCE = re.compile(r"^```")
# A function whose body follows, rather than a class or a table.
BODY = re.compile(r"^(?!\s*(?:class|struct|union|enum|namespace)\b).*\)[\w\s]*\{$")
# The parser of the maker loses itself in these.
SPECIALIZATION = re.compile(r"^struct std::")


def escaped(text):
    return re.sub(r"(?<![\w:])::", r"\\::", re.sub(r'([\\@<>&#$%"])', r"\\\1", text))


def code_span(match):
    code = match[1]
    return f"<tt>{code if NAME.fullmatch(code) else escaped(code)}</tt>"


def run_after(lines, at):
    """The end of the lines that the comment before `at` speaks for, 0 when it speaks for one declaration alone."""
    end, depth, declarations, inside_body = at, 0, 0, False
    while end < len(lines) and lines[end].strip() and not COMMENT.match(lines[end]):
        depth += lines[end].count("{") - lines[end].count("}")
        if depth < 0 or lines[end].lstrip().startswith(("#", "public:", "private:", "protected:")):
            break
        if depth == 0 and lines[end].rstrip().split("//")[0].rstrip().endswith((";", "}")):
            declarations += 1
        inside_body = depth > 0 and (inside_body or bool(BODY.match(lines[end])))
        end += 1
        if depth > 0 and declarations == 0 and not inside_body:
            return 0  # a class or a table: its members speak for themselves
    return end if declarations > 1 else 0


def comment_block(lines, at):
    block = []
    while at + len(block) < len(lines) and COMMENT.match(lines[at + len(block)]):
        block.append(COMMENT.match(lines[at + len(block)]))
    return block


def documented(block):
    """A block of comments as the maker reads it; what is set in by five blanks is code."""
    indent = block[0][1]
    verbatim = False
    for line in block:
        code = line[2].startswith("    ")
        if code != verbatim and (code or line[2].strip()):
            yield f"{indent}/// " + ("@code" if code else "@endcode")
            verbatim = code
        yield f"{indent}/// " + (line[2] if code else escaped(line[2]))
    if verbatim:
        yield f"{indent}/// @endcode"


def header(path, text):
    room = path.relative_to(ROOT).parts[0]
    yield f"/// @file\n/// Of the room {room}.\n/// @addtogroup {room}\n/// @{{"
    lines = text.splitlines()
    at, ends = 0, set()
    while at < len(lines):
        if at in ends:
            yield "///@}"
        block = comment_block(lines, at)
        if not block:
            behind = BEHIND.match(lines[at])
            if at + 1 < len(lines) and SPECIALIZATION.match(lines[at + 1]):
                at = lines.index("};", at) + 1
                continue
            yield f"{behind[1]} ///< {escaped(behind[2])}" if behind else lines[at]
            at += 1
            continue
        at += len(block)
        if at >= len(lines) or not lines[at].strip():
            yield from (line[0] for line in block)  # of nothing in particular
            continue
        yield from documented(block)
        end = run_after(lines, at)
        if end:
            yield "///@{"
            ends.add(end)
    if len(lines) in ends:
        yield "///@}"
    yield "/// @}"


def page(text):
    inside = False
    for line in text.splitlines():
        inside ^= bool(FENCE.match(line))
        yield line if inside else CODE.sub(code_span, line)


def main():
    path = pathlib.Path(sys.argv[1]).resolve()
    text = path.read_text(encoding="utf-8")
    sys.stdout.reconfigure(encoding="utf-8")
    print("\n".join(page(text) if path.suffix == ".md" else header(path, text)))


if __name__ == "__main__":
    main()
