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


# Calls that must fail, each with what stands for the paths of a Place; nothing in the closed folder may change.
REFUSED = (
    ("file copy {closed}/new.txt {source}", "a copy into a closed folder"),
    ("file copy {kept} {source}", "a copy over a read-only file"),
    ("file copy {open}/b.txt {secret}", "a copy of a file that may not be read"),
    ("file backup {kept}", "a backup in a closed folder"),
    ("file temp {closed}/x.tmp --create", "a temporary file in a closed folder"),
    ("log write {closed}/x.log 4 line", "a log in a closed folder"),
    ("log write {kept} 4 line", "a log in a read-only file"),
    ("zip add {closed}/x.zip {source}", "an archive in a closed folder"),
    ("zip add {open}/y.zip {secret}", "an archive of a file that may not be read"),
    ("prefs export {closed}/prefs.json", "an export into a closed folder"),
)


def faults_on_disk(place):
    before = place.tree()
    for call, what in REFUSED:
        paths = {name: windows_path(path) for name, path in vars(place).items()}
        status, _, said = qlutil(*(word.format(**paths).replace("/", "\\") for word in call.split()))
        if status != 1 or not said:
            yield f"{what} ends with status {status} and says {said!r}"
        if place.tree() != before:
            yield f"{what} changed the closed folder: {place.tree()}"


def faults_of_status(place):
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
        status, _, said = qlutil("prefs", "set", DENIED, "entry", "1")
        if status != 1 or not said:
            yield f"a write to a denied key ends with status {status} and says {said!r}"
        if qlutil("prefs", "get", DENIED, "entry")[0] != 1:
            yield "a write to a denied key left a value"
    finally:
        key("allow")
        subprocess.run([WINE, "reg", "delete", f"HKCU\\{KEY}", "/f"], capture_output=True, check=False)


def main():
    cases = [faults_in_registry]
    if os.geteuid() != 0:
        cases += [faults_on_disk, faults_of_status]
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
