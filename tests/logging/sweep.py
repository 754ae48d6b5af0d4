#!/usr/bin/env python3
"""Ends processes while a thread stands still at an instruction of the log, at one instruction after the other, and
holds what the files then have against what was queued: every line once, whole and in order.

usage: sweep.py LOGGING_CHILD.exe LIBRARY.dll [N], for every Nth instruction alone
"""
import concurrent.futures
import pathlib
import re
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
WINE = HERE.parent.parent / "scripts" / "wine"
SECONDS = 60
# The log's own code; what it calls of the library beside runs under other tests.
OURS = re.compile(r"QLLogger|LogMessage|LogFile|FileOutput|LineHead|LogQueue|OutputLists|LineMemory|LineBlock|"
                  r"LineText|LostLines|"
                  r"(?:^|_GLOBAL__N_1)\S*(?:Deliver|HandleInHand|HandleNext|CloseOutputs|Drain|Push|Begin)")


def dump(library, *switches):
    return subprocess.run(["objdump", *switches, library], capture_output=True, text=True, check=True).stdout


def instructions(library):
    """The offsets of the log's instructions in the library."""
    base = int(re.search(r"ImageBase\s+([0-9a-f]+)", dump(library, "-p")).group(1), 16)
    ours = False
    for line in dump(library, "-d", "--no-show-raw-insn").splitlines():
        if name := re.match(r"[0-9a-f]+ <(.+)>:", line):
            ours = OURS.search(name.group(1)) is not None
        elif ours and (code := re.match(r"\s*([0-9a-f]+):\t(\S+)", line)) and code.group(2) != "nop":
            yield int(code.group(1), 16) - base


def entries(path):
    """The numbers of the lines of a log; -1 for anything that is none."""
    numbers = []
    for line in (path.read_bytes() if path.exists() else b"").decode("utf-8-sig").split("\r\n"):
        whole = re.fullmatch(r"\[[^]]*\]\[\d+\]\[a\.cpp:(\d+)\]-x{200}", line)
        if whole:
            numbers.append(int(whole.group(1)))
        elif line and not line.startswith("#") and line != "*" * 53:
            numbers.append(-1)
    return numbers


def fault(queued, found):
    """What is wrong with a log; more may be in it than was queued when that was counted."""
    right = len(found) >= queued and found == list(range(len(found)))
    return "" if right else f"{queued} lines queued, in the log: {found}"


def stop_at(child, offset):
    """What is wrong after a stop at an instruction, and whether that was met."""
    with tempfile.TemporaryDirectory(prefix="ql_sweep_") as folder:
        file = pathlib.Path(folder, "s.log")
        try:
            call = [WINE, child, "stopped", f"Z:{file}", f"{offset:x}"]
            done = subprocess.run(call, timeout=SECONDS, check=False)
        except subprocess.TimeoutExpired:
            return "hangs", True
        if done.returncode != 5:
            return f"exit status {done.returncode}", True
        queued, met = map(int, pathlib.Path(f"{file}.count").read_text().split())
        backups = sorted(file.parent.glob("s.log*.bak"), key=lambda path: -int(re.sub(r"\D", "", path.name)))
        *older, last, main = [[], [], *map(entries, backups), entries(pathlib.Path(f"{file}.roll"))]
        # A roll-over that was cut short may have gone on in the first backup.
        rolled = [sum(order, []) for order in ([*older, last, main], [*older, main, last])]
        return fault(queued, entries(file)) or min((fault(queued, found) for found in rolled), key=len), bool(met)


def main():
    if len(sys.argv) < 3:
        sys.exit(f"usage: {__doc__}")
    child, library, every = sys.argv[1], sys.argv[2], int((sys.argv + ["1"])[3])
    places = list(instructions(library))[every // 2::every]
    met = faults = 0
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for offset, (what, was_met) in zip(places, pool.map(stop_at, [child] * len(places), places)):
            met += was_met
            if what:
                faults += 1
                print(f"stopped at {offset:#x}: {what}")
    print(f"{len(places)} instructions, {met} of them met, {faults} findings")
    return 1 if faults or not met else 0


if __name__ == "__main__":
    sys.exit(main())
