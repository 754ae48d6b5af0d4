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

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
from results import WINE, report  # noqa: E402: the path comes first

PROGRAMS = {bits: pathlib.Path(folder).resolve() for bits, folder in zip((32, 64), sys.argv[1:3])}
TWINS = ((32, 64), (64, 32))
BASE = "SOFTWARE\\Quillet\\Author"
SECTION = "Twins"


class Fault(Exception):
    pass


def qlutil(bits, *arguments):
    done = subprocess.run([WINE, PROGRAMS[bits] / "qlutil.exe", "--json", *map(str, arguments)],
                          stdin=subprocess.DEVNULL, capture_output=True, timeout=120, check=False)
    if done.returncode:
        raise Fault(f"{arguments} of {bits} bits: status {done.returncode}, {done.stderr.decode()}")
    return json.loads(done.stdout)


def expect(expected, actual, what):
    if expected != actual:
        raise Fault(f"{what}: {actual!r}, not {expected!r}")


def their_word_sizes(_):
    for bits in PROGRAMS:
        expect(bits, qlutil(bits, "version")["bits"], "the word size")


def one_user(_):
    for writer, reader in TWINS:
        for switch, value in (("--int", 7 + writer), ("--bool", True), ("--color", "1,2,3"), (None, "text ä \\ /")):
            switches = [switch] if switch else []
            qlutil(writer, "prefs", "set", SECTION, f"from {writer}", str(value).lower(), *switches)
            expect(qlutil(writer, "prefs", "get", SECTION, f"from {writer}", *switches),
                   qlutil(reader, "prefs", "get", SECTION, f"from {writer}", *switches), f"a value {switch}")


def one_machine(_):
    """A value of the machine is the same for both, in whichever view of the registry an installer put it."""
    subprocess.run([WINE, "reg", "add", f"HKLM\\{BASE}\\{SECTION}", "/v", "machine", "/d", "x", "/f", "/reg:32"],
                   capture_output=True, check=True)
    for bits in PROGRAMS:
        expect("x", qlutil(bits, "prefs", "get", SECTION, "machine")["value"], f"the machine's value for {bits} bits")


def both_at_once(_):
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        list(pool.map(lambda number: qlutil((32, 64)[number % 2], "prefs", "set", SECTION, f"n{number}", number,
                                            "--int"), range(16)))
    for bits in PROGRAMS:
        found = {row["entry"]: row["value"] for row in qlutil(bits, "prefs", "list", SECTION)}
        expect({f"n{number}": number for number in range(16)},
               {entry: int(value) for entry, value in found.items() if entry[0] == "n"}, f"what {bits} bits list")


def settings_documents(folder):
    for bits in PROGRAMS:
        qlutil(bits, "prefs", "export", folder / f"{bits}.json")
    expect((folder / "32.json").read_bytes(), (folder / "64.json").read_bytes(), "the exported document")
    for writer, reader in TWINS:
        qlutil(reader, "prefs", "import", folder / f"{writer}.json")


def one_log(folder):
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        list(pool.map(lambda bits: qlutil(bits, "log", "write", folder / f"{bits}.log", 4, "a line ä"), PROGRAMS))
    lines = {bits: (folder / f"{bits}.log").read_bytes().rpartition(b"]")[2] for bits in PROGRAMS}
    expect(lines[32], lines[64], "the logged line")


def archives(folder):
    (folder / "member.txt").write_bytes(bytes(range(256)) * 400)
    for writer, reader in TWINS:
        archive = folder / f"{writer}.zip"
        qlutil(writer, "zip", "add", archive, folder / "member.txt")
        out = folder / f"out{reader}"
        out.mkdir()
        qlutil(reader, "zip", "extract", archive, "member.txt", out)
        expect((folder / "member.txt").read_bytes(), (out / "member.txt").read_bytes(), "the member")
    expect((folder / "32.zip").read_bytes(), (folder / "64.zip").read_bytes(), "the archive's bytes")


def folders(bits):
    """All of them; those of the program itself as seen from its folder, the first."""
    rows = qlutil(bits, "dirs")
    return [row | {"path": row["path"].replace(rows[0]["path"], "")} for row in rows]


def one_system(_):
    for program in PROGRAMS.values():
        answers = [qlutil(bits, "file", "exe", program / "qlutil.exe") for bits in PROGRAMS]
        expect(answers[0], answers[1], f"Is32BitExe of {program}")
    for key in "is64BitWindows", "isAdminUser", "canWriteToHKLM":
        answers = [qlutil(bits, "machine")[key] for bits in PROGRAMS]
        expect(answers[0], answers[1], key)
    expect(folders(32), folders(64), "the folders")


CASES = (their_word_sizes, one_user, one_machine, both_at_once, settings_documents, one_log, archives, one_system)


def main():
    failed = 0
    for case in CASES:
        with tempfile.TemporaryDirectory() as folder:
            try:
                case(pathlib.Path(folder))
            except (Fault, subprocess.SubprocessError, OSError, ValueError) as fault:
                failed += 1
                print(f"{case.__name__}: {fault}")
    for root in "HKCU", "HKLM":
        subprocess.run([WINE, "reg", "delete", f"{root}\\{BASE}\\{SECTION}", "/f", "/reg:32"], capture_output=True,
                       check=False)
    return report(len(CASES) - failed, failed, *sys.argv[3:])


if __name__ == "__main__":
    sys.exit(main())
