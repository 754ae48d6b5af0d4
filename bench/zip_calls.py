#!/usr/bin/env python3
"""Measures whole calls of programs that list an archive: qlutil under Wine beside those of this system.

    bench/zip_calls.py QLUTIL [FILTER]

Prints what bench/summary.py reads. FILTER is a regular expression on the names of the works.
"""

import pathlib
import re
import subprocess
import sys
import tempfile
import time
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
SIZES = (1_000, 8_000, 65_534)
ROUNDS = 5


def write_archive(path, members):
    with zipfile.ZipFile(path, "w") as archive:
        for number in range(members):
            archive.writestr(f"folder/member {number}.txt", f"content {number}")


def seconds_of(command):
    """The median of some calls, each of which must succeed."""
    times = []
    for _ in range(ROUNDS):
        begin = time.perf_counter()
        subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        times.append(time.perf_counter() - begin)
    return sorted(times)[ROUNDS // 2]


def listers(qlutil, archive):
    wine = str(ROOT / "scripts/wine")
    return {"qlutil": [wine, qlutil, "zip", "list", f"Z:{archive}".replace("/", "\\")],
            "7z": ["7z", "l", str(archive)],
            "unzip": ["unzip", "-l", str(archive)]}


def main(qlutil, works="."):
    with tempfile.TemporaryDirectory() as folder:
        archive = pathlib.Path(folder) / "members.zip"
        for size in SIZES:
            work = f"qlutil zip list, members/{size}"
            if not re.search(works, work):
                continue
            write_archive(archive, size)
            times = {name: seconds_of(command) for name, command in listers(qlutil, archive).items()}
            for name, seconds in times.items():
                print(f"{work:<44} | {name:<30} | {seconds * 1e9:14.1f} | {seconds / times['qlutil']:11.2f}",
                      flush=True)


if __name__ == "__main__":
    main(*sys.argv[1:])
