#!/usr/bin/env python3
"""Runs some benchmarks again and again, and tells how far their figures can be trusted.

    bench/repeat.py TIMES PROGRAM [FILTER]

PROGRAM is one that bench/run has built (bench_logging.exe). Prints for each work the least, the middle and the greatest
of our time and of how often it goes into the best peer's of the same run: a claim that holds in the least holds in all.
"""

import argparse
import pathlib
import statistics
import subprocess
import sys

from summary import ROOT, read_works, readable

HEADINGS = ("work", "ours: least", "middle", "greatest", "peer / ours: least", "middle", "greatest")


def run(program, works):
    command = [str(program)]
    if program.suffix == ".exe":
        command.insert(0, str(ROOT / "scripts/wine"))
    if works:
        command.append(f"--benchmark_filter={works}")
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True)
    return read_works(done.stdout.decode(errors="replace"))


def spread(figures):
    return min(figures), statistics.median(figures), max(figures)


def row(work, runs):
    ours = [implementations[0][1] for implementations in runs]
    cells = [work, *map(readable, spread(ours))]
    ratios = [min(peer for _, peer in peers) / mine for mine, (_, *peers) in zip(ours, runs) if peers]
    return cells + ([f"{ratio:.2f}" for ratio in spread(ratios)] if ratios else [""] * 3)


def table(runs):
    rows = [list(HEADINGS)] + [row(work, [each[work] for each in runs]) for work in runs[0]]
    widths = [max(len(cells[column]) for cells in rows) for column in range(len(HEADINGS))]
    return "\n".join("  ".join(cell.ljust(width) for cell, width in zip(cells, widths)).rstrip() for cells in rows)


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("times", type=int)
    arguments.add_argument("program", type=pathlib.Path)
    arguments.add_argument("filter", nargs="?", default="")
    given = arguments.parse_args()
    runs = []
    for number in range(1, given.times + 1):
        print(f"\rrun {number} of {given.times}", end="", file=sys.stderr, flush=True)
        runs.append(run(given.program.resolve(), given.filter))
    print(file=sys.stderr)
    print(table(runs))


if __name__ == "__main__":
    main()
