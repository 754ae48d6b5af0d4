#!/usr/bin/env python3
# Shows logs while they roll over and are made anew.
#
# usage: rolling.py QLUTIL.exe RESULTS.xml
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
from results import WINE, run_own_cases, windows_path  # noqa: E402: the path comes first

QLUTIL = pathlib.Path(sys.argv[1]).resolve()
PATIENCE = 120


class Rolling(unittest.TestCase):
    def setUp(self):
        self.log = windows_path(pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()), "r.log"))

    def start(self, what, *more):
        command = [WINE, QLUTIL, "log", what, self.log, *map(str, more)]
        process = self.enterContext(subprocess.Popen(command, text=True, stdin=subprocess.DEVNULL,
                                                     stdout=subprocess.PIPE))
        self.addCleanup(process.kill)
        return process

    def roll(self, lines):
        return self.start("roll", "--max", 3000, "--backups", 900, "--lines", lines)

    def numbers(self, shown):
        return [int(line.split()[-1]) for line in shown]

    def test_a_follower_has_every_line_of_a_log_that_rolls_over(self):
        self.roll(5).wait(PATIENCE)
        follower = self.start("show", "--follow", "--count", 2005)
        self.assertTrue(follower.stdout.readline().endswith(" 1\n"))
        self.roll(2000).wait(PATIENCE)
        self.assertEqual([*range(2, 6), *range(1, 2001)], self.numbers(follower.stdout))

    def test_what_is_shown_amid_roll_overs_has_no_gap(self):
        writer = self.roll(2000)
        while writer.poll() is None:
            # The last line may be in the making.
            shown = self.numbers(self.start("show").stdout.readlines()[:-1])
            self.assertEqual([*range(1, len(shown) + 1)], shown)

    def test_a_follower_goes_on_in_a_log_that_is_made_anew(self):
        self.start("write", "info", "a line of the first").wait(PATIENCE)
        follower = self.start("show", "--follow", "--count", 2)
        self.assertTrue(follower.stdout.readline().endswith("first\n"))
        self.start("write", "info", "second", "--anew").wait(PATIENCE)
        self.assertTrue(follower.stdout.read().endswith("second\n"))


if __name__ == "__main__":
    sys.exit(run_own_cases(sys.argv[2]))
