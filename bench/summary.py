#!/usr/bin/env python3
"""Sums up a run of the benchmarks: one table of all works, ours beside the best peer.

    bench/summary.py [--page] OUTPUT

OUTPUT is what bench/run printed. A work that some peer does faster is marked "behind". --page writes the table into
docs/performance.md and draws the growth curves: works measured at three sizes and more, as time per item.
"""

import argparse
import math
import pathlib
import platform
import re
import time
from html import escape

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGE = ROOT / "docs/performance.md"
PICTURE = ROOT / "docs/pictures/growth.svg"
SIZED = re.compile(r"(.+)/(?:\w+:)?(\d+)$")


def read_works(output):
    """The implementations of each work with their nanoseconds, in the order in which they ran. Natively a work is
    another one: it has other peers, and another system below."""
    works = {}
    suffix = ""
    for line in output.splitlines():
        if line.startswith("== "):
            suffix = ", natively" if line.endswith(", natively") else ""
        cells = [cell.strip() for cell in line.split(" | ")]
        if len(cells) == 4 and re.fullmatch(r"[\d.]+", cells[2]):
            works.setdefault(cells[0] + suffix, []).append((cells[1], float(cells[2])))
    return works


def readable(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def rows(works):
    for work, (ours, *others) in works.items():
        # What works in memory alone bounds the work; it is no peer of what reaches the disk.
        peers = [other for other in others if not other[0].endswith("_in_memory")]
        if not peers:
            yield work, readable(ours[1]), "", "", "", ""
            continue
        name, best = min(peers, key=lambda peer: peer[1])
        ratio = best / ours[1]
        yield work, readable(ours[1]), name, readable(best), f"{ratio:.2f}", "behind" if ratio < 0.995 else ""


HEADINGS = ("work", "ours", "best peer", "its time", "peer / ours", "")


def plain_table(works):
    table = [HEADINGS, *rows(works)]
    widths = [max(len(row[i]) for row in table) for i in range(len(HEADINGS))]
    return "\n".join("  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip() for row in table)


def page_table(works):
    lines = ["| " + " | ".join(HEADINGS) + " |", "|---|---:|---|---:|---:|---|"]
    lines += ["| " + " | ".join(row) + " |" for row in rows(works)]
    return "\n".join(lines)


def growth_series(works):
    """Works at three sizes and more: for each the points (size, nanoseconds per item) of our implementation."""
    series = {}
    for work, implementations in works.items():
        if sized := SIZED.match(work):
            size = int(sized[2])
            series.setdefault(sized[1], []).append((size, implementations[0][1] / size))
    return {work: sorted(points) for work, points in series.items() if len(points) >= 3}


COLOURS = ("#1f77b4", "#d62728", "#2ca02c", "#9467bd", "#ff7f0e", "#8c564b", "#17becf", "#7f7f7f", "#bcbd22")
WIDTH, HEIGHT, LEFT, TOP, PLOT_WIDTH, PLOT_HEIGHT = 900, 460, 80, 30, 520, 370


def draw(series):
    """Both axes by powers of ten: what costs the same for each item is a level line."""
    points = [point for line in series.values() for point in line]
    ranges = [(math.floor(math.log10(min(values))), math.ceil(math.log10(max(values))) or 1)
              for values in zip(*points)]
    ranges = [(low, max(high, low + 1)) for low, high in ranges]

    def place(size, cost):
        (x0, x1), (y0, y1) = ranges
        return (LEFT + (math.log10(size) - x0) / (x1 - x0) * PLOT_WIDTH,
                TOP + PLOT_HEIGHT - (math.log10(cost) - y0) / (y1 - y0) * PLOT_HEIGHT)

    (x0, x1), (y0, y1) = ranges
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" font-family="sans-serif" '
             'font-size="12">', '<rect width="100%" height="100%" fill="white"/>']
    for power in range(x0, x1 + 1):
        x, y = place(10.0 ** power, 10.0 ** y0)
        parts.append(f'<path d="M{x:.1f} {TOP}V{y:.1f}" stroke="#ddd"/>'
                     f'<text x="{x:.1f}" y="{y + 18:.1f}" text-anchor="middle">{10 ** power:,}</text>')
    for power in range(y0, y1 + 1):
        x, y = place(10.0 ** x0, 10.0 ** power)
        parts.append(f'<path d="M{LEFT} {y:.1f}h{PLOT_WIDTH}" stroke="#ddd"/>'
                     f'<text x="{x - 8:.1f}" y="{y + 4:.1f}" text-anchor="end">{readable(10.0 ** power)}</text>')
    parts.append(f'<text x="{LEFT + PLOT_WIDTH / 2}" y="{HEIGHT - 10}" text-anchor="middle">items</text>'
                 f'<text x="{LEFT}" y="{TOP - 12}">time per item</text>')
    for number, (work, line) in enumerate(series.items()):
        colour = COLOURS[number % len(COLOURS)]
        path = " ".join(f"{x:.1f},{y:.1f}" for x, y in (place(*point) for point in line))
        y = TOP + 10 + 18 * number
        parts.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>'
                     f'<text x="{LEFT + PLOT_WIDTH + 20}" y="{y}" fill="{colour}">{escape(work)}</text>')
    return "\n".join([*parts, "</svg>", ""])


def machine():
    models = re.findall(r"^model name\s*: (.+)$", pathlib.Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    name = f"{len(models)} × {models[0]}" if models else platform.machine()
    return f"{time.strftime('%-d %B %Y')}, {name}, {platform.system()} {platform.release().split('-')[0]}"


def write_page(works):
    text = PAGE.read_text(encoding="utf-8")
    run = f"<!-- run -->\nMeasured on {machine()}.\n\n{page_table(works)}\n<!-- end of run -->"
    PAGE.write_text(re.sub(r"<!-- run -->.*<!-- end of run -->", lambda _: run, text, flags=re.DOTALL),
                    encoding="utf-8")
    if series := growth_series(works):
        PICTURE.write_text(draw(series), encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--page", action="store_true")
    parser.add_argument("output", type=pathlib.Path)
    arguments = parser.parse_args()
    works = read_works(arguments.output.read_text(encoding="utf-8", errors="replace"))
    print("\n" + plain_table(works))
    if arguments.page:
        write_page(works)


if __name__ == "__main__":
    main()
