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
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
from results import WINE, run_own_cases, windows_path  # noqa: E402: the path comes first

PROGRAMS = pathlib.Path(sys.argv[1]).resolve()
DENIED = "Denied"
KEY = f"SOFTWARE\\Quillet\\Author\\{DENIED}"

# Calls that must fail, with what stands for the paths; nothing in the closed folder may change.
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


def qlutil(*arguments):
    done = subprocess.run([WINE, PROGRAMS / "qlutil.exe", "--json", *arguments], stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=60, check=False)
    return done.returncode, done.stdout.decode(), done.stderr.decode()


class User(unittest.TestCase):
    def assert_refused(self, *arguments):
        status, _, said = qlutil(*arguments)
        self.assertEqual(1, status)
        self.assertNotEqual("", said)

    @unittest.skipIf(os.geteuid() == 0, "nothing on the disk is denied to root")
    def test_writes_nothing_where_it_may_not(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        closed, opened = pathlib.Path(folder.name, "closed"), pathlib.Path(folder.name, "open")
        kept, secret, source = closed / "kept.txt", opened / "secret.txt", opened / "a.txt"
        for place in closed, opened:
            place.mkdir()
        for file in kept, secret, source:
            file.write_text("as it was")
        for path, mode in (kept, 0o444), (secret, 0), (closed, 0o555):
            path.chmod(mode)
        self.addCleanup(closed.chmod, 0o755)
        paths = {"closed": closed, "open": opened, "kept": kept, "secret": secret, "source": source}
        paths = {name: windows_path(path) for name, path in paths.items()}
        for call in REFUSED:
            with self.subTest(call):
                self.assert_refused(*(word.format(**paths).replace("/", "\\") for word in call.split()))
                self.assertEqual([kept], list(closed.iterdir()))
                self.assertEqual("as it was", kept.read_text())
        for file, writable in ("kept", False), ("source", True):
            self.assertEqual(writable, json.loads(qlutil("file", "status", paths[file])[1])["canWrite"], file)

    def test_leaves_no_value_in_a_denied_key(self):
        def key(what):
            return subprocess.run([WINE, PROGRAMS / "deny_key.exe", what, KEY], check=False).returncode

        remove = [WINE, "reg", "delete", f"HKCU\\{KEY}", "/f"]
        self.addCleanup(subprocess.run, remove, capture_output=True, check=False)
        self.addCleanup(key, "allow")
        self.assertEqual(0, key("deny"))
        self.assert_refused("prefs", "set", DENIED, "entry", "1")
        self.assertEqual(1, qlutil("prefs", "get", DENIED, "entry")[0], "a value is there")


if __name__ == "__main__":
    sys.exit(run_own_cases(*sys.argv[2:]))
