#!/usr/bin/env python3
"""Holds the library against what a user may not do: write to read-only files and folders, read what is closed, write to
a denied key of the registry. As root, whom nothing on the disk is denied to, only the registry's part is run.

usage: run.py PROGRAMS [RESULTS.xml]
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
from results import WINE, report  # noqa: E402: the path comes first

PROGRAMS = pathlib.Path(sys.argv[1]).resolve()
DENIED = "Denied"
KEY = f"SOFTWARE\\Quillet\\Author\\{DENIED}"


class Place:
    """A folder that nobody may write to, with a file of that kind and one that nobody may read; an open one beside."""

    def __init__(self, folder):
        self.closed, self.open = folder / "closed", folder / "open"
        self.kept, self.secret, self.source = self.closed / "kept.txt", self.open / "secret.txt", self.open / "a.txt"
        self.closed.mkdir()
        self.open.mkdir()
        for file in self.kept, self.secret, self.source:
            file.write_text("as it was")
        self.kept.chmod(0o444)
        self.secret.chmod(0)
        self.closed.chmod(0o555)

    def tree(self):
        return {path.name for path in self.closed.iterdir()}, self.kept.read_text()


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def qlutil(*arguments):
    done = subprocess.run([WINE, PROGRAMS / "qlutil.exe", "--json", *map(str, arguments)], stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=60, check=False)
    return done.returncode, done.stdout.decode(), done.stderr.decode()


# Calls that must fail, with what stands for the paths of a Place; nothing in the closed folder may change.
REFUSED = (
    "file copy {closed}/new.txt {source}",
    "file copy {kept} {source}",
    "file copy {open}/b.txt {secret}",
    "file backup {kept}",
    "file temp {closed}/x.tmp --create",
    "log write {closed}/x.log 4 line",
    "log write {kept} 4 line",
    "zip add {closed}/x.zip {source}",
    "zip add {open}/y.zip {secret}",
    "prefs export {closed}/prefs.json",
)


def refusal_fault(what, *arguments):
    status, _, said = qlutil(*arguments)
    return [f"{what} ends with status {status} and says {said!r}"] if status != 1 or not said else []


def faults_on_disk(place):
    before = place.tree()
    paths = {name: windows_path(path) for name, path in vars(place).items()}
    for call in REFUSED:
        yield from refusal_fault(call, *(word.format(**paths).replace("/", "\\") for word in call.split()))
        if place.tree() != before:
            yield f"{call} changed the closed folder: {place.tree()}"
    for file, writable in (place.kept, False), (place.source, True):
        answer = json.loads(qlutil("file", "status", windows_path(file))[1])
        if answer["canWrite"] != writable:
            yield f"the status of {file.name} is {answer}"


def faults_in_registry(_):
    def key(what):
        return subprocess.run([WINE, PROGRAMS / "deny_key.exe", what, KEY], check=False).returncode

    if key("deny"):
        yield "the key could not be denied"
    try:
        yield from refusal_fault("a write to a denied key", "prefs", "set", DENIED, "entry", "1")
        if qlutil("prefs", "get", DENIED, "entry")[0] != 1:
            yield "a write to a denied key left a value"
    finally:
        key("allow")
        subprocess.run([WINE, "reg", "delete", f"HKCU\\{KEY}", "/f"], capture_output=True, check=False)


def main():
    cases = [faults_in_registry] if os.geteuid() == 0 else [faults_in_registry, faults_on_disk]
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        place = Place(pathlib.Path(folder))
        for case in cases:
            faults = list(case(place))
            failed += bool(faults)
            print("".join(f"{fault}\n" for fault in faults), end="")
        place.closed.chmod(0o755)
    return report(len(cases) - failed, failed, *sys.argv[2:])


if __name__ == "__main__":
    sys.exit(main())
