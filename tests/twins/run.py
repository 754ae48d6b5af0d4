#!/usr/bin/env python3
"""Lets the two word sizes of the library read what the other wrote, on one registry and one disk.

usage: run.py PROGRAMS32 PROGRAMS64 [RESULTS.xml]
"""
import concurrent.futures
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
from results import WINE, run_own_cases  # noqa: E402: the path comes first

PROGRAMS = {bits: pathlib.Path(folder).resolve() for bits, folder in zip((32, 64), sys.argv[1:3])}
TWINS = ((32, 64), (64, 32))
BASE = "SOFTWARE\\Quillet\\Author"
SECTION = "Twins"


def qlutil(bits, *arguments):
    done = subprocess.run([WINE, PROGRAMS[bits] / "qlutil.exe", "--json", *map(str, arguments)],
                          stdin=subprocess.DEVNULL, capture_output=True, timeout=120, check=False)
    if done.returncode:
        raise AssertionError(f"{arguments} of {bits} bits: status {done.returncode}, {done.stderr.decode()}")
    return json.loads(done.stdout)


def registry(*arguments):
    return subprocess.run([WINE, "reg", *arguments, "/f", "/reg:32"], capture_output=True, check=False).returncode


def at_once(work, of):
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        list(pool.map(work, of))


class Twins(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def files(self, pattern):
        return [(self.folder / pattern.format(bits)).read_bytes() for bits in PROGRAMS]

    def test_one_user(self):
        for writer, reader in TWINS:
            name = f"from {writer}"
            for value, *switches in (7 + writer, "--int"), ("true", "--bool"), ("1,2,3", "--color"), ("ä \\ /",):
                qlutil(writer, "prefs", "set", SECTION, name, value, *switches)
                own, other = (qlutil(bits, "prefs", "get", SECTION, name, *switches) for bits in (writer, reader))
                self.assertEqual(own, other)

    def test_one_machine(self):
        """A value of the machine is the same for both, in whichever view of the registry an installer put it."""
        self.assertEqual(0, registry("add", f"HKLM\\{BASE}\\{SECTION}", "/v", "machine", "/d", "x"))
        for bits in PROGRAMS:
            self.assertEqual("x", qlutil(bits, "prefs", "get", SECTION, "machine")["value"], bits)

    def test_both_at_once(self):
        at_once(lambda n: qlutil((32, 64)[n % 2], "prefs", "set", SECTION, f"n{n}", n, "--int"), range(16))
        for bits in PROGRAMS:
            found = {row["entry"]: row["value"] for row in qlutil(bits, "prefs", "list", SECTION)}
            self.assertEqual({f"n{n}": n for n in range(16)},
                             {entry: int(value) for entry, value in found.items() if entry[0] == "n"}, bits)

    def test_settings_documents(self):
        for bits in PROGRAMS:
            qlutil(bits, "prefs", "export", self.folder / f"{bits}.json")
        self.assertEqual(*self.files("{}.json"))
        for writer, reader in TWINS:
            qlutil(reader, "prefs", "import", self.folder / f"{writer}.json")

    def test_one_log(self):
        at_once(lambda bits: qlutil(bits, "log", "write", self.folder / f"{bits}.log", 4, "a line ä"), PROGRAMS)
        self.assertEqual(*(log.rpartition(b"]")[2] for log in self.files("{}.log")))

    def test_archives(self):
        (self.folder / "member.txt").write_bytes(bytes(range(256)) * 400)
        for writer, reader in TWINS:
            archive, out = self.folder / f"{writer}.zip", self.folder / f"out{reader}"
            out.mkdir()
            qlutil(writer, "zip", "add", archive, self.folder / "member.txt")
            qlutil(reader, "zip", "extract", archive, "member.txt", out)
        self.assertEqual(*self.files("{}.zip"))
        self.assertEqual(self.files("member.txt"), self.files("out{}/member.txt"))

    def test_one_system(self):
        for program in PROGRAMS.values():
            self.assertEqual(*(qlutil(bits, "file", "exe", program / "qlutil.exe") for bits in PROGRAMS))
        machines = [qlutil(bits, "machine") for bits in PROGRAMS]
        self.assertEqual([32, 64], [machine["bits"] for machine in machines])
        for key in "is64BitWindows", "isAdminUser", "canWriteToHKLM":
            self.assertEqual(*(machine[key] for machine in machines), key)
        # All folders; those of the program itself as seen from its folder, the first.
        rows = [qlutil(bits, "dirs") for bits in PROGRAMS]
        self.assertEqual(*([row | {"path": row["path"].replace(of[0]["path"], "")} for row in of] for of in rows))


def tearDownModule():
    for root in "HKCU", "HKLM":
        registry("delete", f"{root}\\{BASE}\\{SECTION}")


if __name__ == "__main__":
    sys.exit(run_own_cases(*sys.argv[3:]))
