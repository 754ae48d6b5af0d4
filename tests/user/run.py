#!/usr/bin/env python3
# Holds the library against what a user may not do: write to read-only files and folders, read what is closed, make a
# key that the registry refuses. As root, whom nothing on the disk is denied to, only the registry's part is run.
#
# usage: run.py PROGRAMS [RESULTS.xml]
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

# Calls that must fail; nothing in the closed folder may change.
REFUSED = (
    "file copy closed/new.txt open/a.txt",
    "file copy closed/kept.txt open/a.txt",
    "file copy open/b.txt open/secret.txt",
    "file backup closed/kept.txt",
    "file temp closed/x.tmp --create",
    "log write closed/x.log 4 line",
    "log write closed/kept.txt 4 line",
    "zip add closed/x.zip open/a.txt",
    "zip add open/y.zip open/secret.txt",
    "prefs export closed/prefs.json",
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
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        kept, secret, source = folder / "closed/kept.txt", folder / "open/secret.txt", folder / "open/a.txt"
        for file in kept, secret, source:
            file.parent.mkdir(exist_ok=True)
            file.write_text("as it was")
        for path, mode in (kept, 0o444), (secret, 0), (kept.parent, 0o555):
            path.chmod(mode)
        self.addCleanup(kept.parent.chmod, 0o755)
        for call in REFUSED:
            with self.subTest(call):
                self.assert_refused(*(windows_path(folder / word) if "/" in word else word for word in call.split()))
                self.assertEqual([kept], list(kept.parent.iterdir()))
                self.assertEqual("as it was", kept.read_text())
        for file, writable in (kept, False), (source, True):
            self.assertEqual(writable, json.loads(qlutil("file", "status", windows_path(file))[1])["canWrite"], file)

    def test_sets_no_preference_that_the_registry_refuses(self):
        self.assert_refused("prefs", "set", "x" * 300, "entry", "1")
        self.assertEqual(1, qlutil("prefs", "get", "x" * 300, "entry")[0], "a value is there")


if __name__ == "__main__":
    sys.exit(run_own_cases(*sys.argv[2:]))
