#!/usr/bin/env python3
# Lets the two word sizes of the library read what the other wrote, on one registry and one disk.
#
# usage: run.py PROGRAMS32 PROGRAMS64 [RESULTS.xml]
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
SECTION = "Twins"
KEY = f"SOFTWARE\\Quillet\\Author\\{SECTION}"
VALUES = (("7", "--int"), ("true", "--bool"), ("1,2,3", "--color"), ("ä \\ /",))


def qlutil(bits, *arguments):
    done = subprocess.run([WINE, PROGRAMS[bits] / "qlutil.exe", "--json", *map(str, arguments)],
                          stdin=subprocess.DEVNULL, capture_output=True, timeout=120, check=False)
    if done.returncode:
        raise AssertionError(f"{arguments} of {bits} bits: status {done.returncode}, {done.stderr.decode()}")
    return json.loads(done.stdout)


class Twins(unittest.TestCase):
    # Each finds what both set at once.
    def test_one_user(self):
        entries = {f"{bits} {n}": (bits, VALUES[n % 4]) for n in range(8) for bits in PROGRAMS}
        with concurrent.futures.ThreadPoolExecutor(4) as pool:
            for entry, (bits, value) in entries.items():
                pool.submit(qlutil, bits, "prefs", "set", SECTION, entry, *value)
        for entry, (_, (_, *switches)) in entries.items():
            self.assertEqual(*(qlutil(bits, "prefs", "get", SECTION, entry, *switches) for bits in PROGRAMS))

    # A value of the machine is the same for both, in whichever view of the registry an installer put it.
    def test_one_machine(self):
        add = [WINE, "reg", "add", f"HKLM\\{KEY}", "/v", "machine", "/d", "x", "/f", "/reg:32"]
        subprocess.run(add, stdout=subprocess.DEVNULL, check=True)
        for bits in PROGRAMS:
            self.assertEqual("x", qlutil(bits, "prefs", "get", SECTION, "machine")["value"], bits)

    # Documents, archives and lines of logs are the same bytes, and each reads the other's.
    def test_one_disk(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        member = folder / "member.txt"
        member.write_bytes(bytes(range(256)) * 400)
        for bits in PROGRAMS:
            qlutil(bits, "prefs", "export", folder / f"{bits}.json")
            qlutil(bits, "log", "write", folder / f"{bits}.log", 4, "a line ä")
            qlutil(bits, "zip", "add", folder / f"{bits}.zip", member)
        for writer, reader in (32, 64), (64, 32):
            qlutil(reader, "prefs", "import", folder / f"{writer}.json")
            qlutil(reader, "zip", "extract", folder / f"{writer}.zip", member.name, folder / f"out{reader}")
            self.assertEqual(member.read_bytes(), (folder / f"out{reader}" / member.name).read_bytes())
        documents, logs, archives = ([(folder / f"{bits}.{kind}").read_bytes() for bits in PROGRAMS]
                                     for kind in ("json", "log", "zip"))
        self.assertEqual(*documents)
        self.assertEqual(*archives)
        self.assertEqual(*(log.rpartition(b"]")[2] for log in logs))

    # All folders; those of the program itself as seen from its folder, the first.
    def test_one_system(self):
        for program in PROGRAMS.values():
            self.assertEqual(*(qlutil(bits, "file", "exe", program / "qlutil.exe") for bits in PROGRAMS))
        machines = [qlutil(bits, "machine") for bits in PROGRAMS]
        self.assertEqual([32, 64], [machine["bits"] for machine in machines])
        for key in "is64BitWindows", "isAdminUser", "canWriteToHKLM":
            self.assertEqual(*(machine[key] for machine in machines), key)
        rows = [qlutil(bits, "dirs") for bits in PROGRAMS]
        self.assertEqual(*([row | {"path": row["path"].replace(of[0]["path"], "")} for row in of] for of in rows))


def tearDownModule():
    for root in "HKCU", "HKLM":
        subprocess.run([WINE, "reg", "delete", f"{root}\\{KEY}", "/f", "/reg:32"], capture_output=True, check=False)


if __name__ == "__main__":
    sys.exit(run_own_cases(*sys.argv[3:]))
