#!/usr/bin/env python3
# Has processes end while a thread stands still at an instruction of the log, at one instruction after the other; the
# test holds what the files then have against what was queued: every line once, whole and in order.
#
# usage: sweep.py TEST_LOGGING.exe LIBRARY.dll [N], for every Nth instruction alone
import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
WINE = HERE.parent.parent / "scripts" / "wine"
# The log's own code; what it calls of the library beside runs under other tests.
OURS = re.compile(r"QLLogger(?!Level)|LogMessage|LogFile|FileOutput|LogQueue|OutputLists|LineMemory|LineBlock|"
                  r"LostLines|(?:^|_GLOBAL__N_1)\S*(?:Deliver|HandleInHand|HandleNext|CloseOutputs|Drain|Push|Begin)")


def dump(library, *switches):
    return subprocess.run(["objdump", *switches, library], capture_output=True, text=True, check=True).stdout


# The offsets of the log's instructions in the library.
def instructions(library):
    base = int(re.search(r"ImageBase\s+([0-9a-f]+)", dump(library, "-p")).group(1), 16)
    ours = False
    for line in dump(library, "-d", "--no-show-raw-insn").splitlines():
        if name := re.match(r"[0-9a-f]+ <(.+)>:", line):
            ours = OURS.search(name.group(1)) is not None
        elif ours and (code := re.match(r"\s*([0-9a-f]+):\t(\S+)", line)) and code.group(2) != "nop":
            yield int(code.group(1), 16) - base


def main():
    test, library, every = sys.argv[1], sys.argv[2], int((sys.argv + ["1"])[3])
    places = [f"{offset:x}" for offset in instructions(library)][every // 2::every]
    print(f"{len(places)} instructions")
    call = [WINE, test, "--gtest_filter=WaysOut.AnEndAmidLines*"]
    parts = len(places) // 2000 + 2  # a variable of the environment holds no more
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        stops = (os.environ | {"QL_STOPS": " ".join(places[first::parts])} for first in range(parts))
        return max(pool.map(lambda environment: subprocess.call(call, env=environment), stops))


if __name__ == "__main__":
    sys.exit(main())
