#!/usr/bin/env python3
# Holds the programs of docs/*.md against what their pages say they print.
#
# usage: run_examples.py PROGRAMS [RESULTS.xml]     runs PROGRAMS/example_PAGE.exe for every page
#        run_examples.py --extract PAGE.md OUT.cpp  writes the page's program as a source file
import difflib
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tests"))
from results import WINE, report  # noqa: E402: the path comes first

SECONDS = 60
# Pages about no interface of their own.
PROSE = {"architecture", "gallery", "hosts", "performance", "preferences", "qlutil"}

# A page's program is its block of C++ that holds "int main("; the next block of the page is text, and is what the
# program prints.
BLOCK = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


# The page's program, the number of its first line, and what it prints, None when the page does not say.
def example_of(page):
    text = page.read_text(encoding="utf-8")
    blocks = list(BLOCK.finditer(text))
    programs = [at for at, block in enumerate(blocks) if block[1] == "cpp" and "\nint main(" in block[2]]
    if len(programs) != 1:
        sys.exit(f"docs/{page.name} has {len(programs) or 'no'} programs, not one (a cpp block with 'int main(')")
    program, following = blocks[programs[0]], blocks[programs[0] + 1:]
    answer = following[0][2] if following and following[0][1] == "text" else None
    return program[2], text.count("\n", 0, program.start(2)) + 1, answer


def extract(page, source):
    program, line, _ = example_of(page)
    source.write_text(f'#line {line} "docs/{page.name}"\n{program}', encoding="utf-8")


# What is wrong with the page's example; empty when nothing is.
def fault_of(page, programs):
    expected = example_of(page)[2]
    if expected is None:
        return "does not say in a text block what its program prints"
    done = subprocess.run([WINE, programs / f"example_{page.stem}.exe"], stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=SECONDS, check=False, cwd=programs)
    got = done.stdout.decode("utf-8", "replace").replace("\r\n", "\n")
    if got != expected:
        lines = difflib.unified_diff(expected.splitlines(), got.splitlines(), "expected", "got", lineterm="")
        return "\n".join(["prints something else:", *lines])
    return f"ends with status {done.returncode}" if done.returncode else ""


def main():
    if sys.argv[1] == "--extract":
        return extract(*map(pathlib.Path, sys.argv[2:]))
    programs = pathlib.Path(sys.argv[1]).resolve()
    pages = sorted(page for page in (ROOT / "docs").glob("*.md") if page.stem not in PROSE)
    faults = [f"docs/{page.name} {fault}" for page in pages if (fault := fault_of(page, programs))]
    print("\n".join(faults), end="\n" if faults else "")
    return report(len(pages) - len(faults), len(faults), *sys.argv[2:])


if __name__ == "__main__":
    sys.exit(main())
