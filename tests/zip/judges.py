#!/usr/bin/env python3
"""Holds the zip engines against programs that are not ours, in both directions, and kills them at random moments.

usage: judges.py HOST.EXE QLUTIL.exe RESULTS.xml
"""
import json
import os
import pathlib
import random
import resource
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree as ElementTree
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tests"))
from results import WINE  # noqa: E402: the path comes first

HOST, QLUTIL = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
RANDOM_BYTES = random.Random(7).randbytes(300_000)

TREE = {
    "empty.txt": b"",
    "one.txt": b"1",
    "with blank.txt": b"blank " * 500,
    "r\u00e9sum\u00e9 \u00fc\u20ac.doc": b"letters beyond ASCII",
    "random.bin": RANDOM_BYTES,
    "sub/deep/er/long.bin": bytes(range(256)) * 4096,
    "sub/note.txt": b"note\r\n" * 99,
}


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def start(*arguments, program=HOST, **options):
    return subprocess.Popen([WINE, program, *map(str, arguments)], stdout=subprocess.PIPE,
                            stdin=subprocess.DEVNULL, **options)


def host(*arguments, **options):
    """The engine's code."""
    process = start(*arguments, **options)
    process.communicate(timeout=60)
    return process.returncode


def qlutil(*arguments):
    process = start("--json", "zip", *arguments, program=QLUTIL)
    return json.loads(process.communicate(timeout=60)[0])


def member_name(info):
    """zip writes UTF-8 without saying so, and zipfile takes that for code page 437."""
    return info.filename if info.flag_bits & 0x800 else info.filename.encode("cp437").decode()


def write_tree(folder, tree):
    for name, content in tree.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)


def read_tree(folder):
    return {path.relative_to(folder).as_posix(): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def run(*command, cwd=None):
    subprocess.run([str(word) for word in command], check=True, stdout=subprocess.DEVNULL, cwd=cwd, timeout=60,
                   env=os.environ | {"LC_ALL": "C.UTF-8"})


def with_zipfile(archive, folder, method=zipfile.ZIP_DEFLATED):
    with zipfile.ZipFile(archive, "w", method) as out:
        for name, content in TREE.items():
            info = zipfile.ZipInfo(name, (2024, 2, 29, 23, 59, 58))
            info.compress_type = method
            info.extra = struct.pack("<HHI", 0xCAFE, 4, 1)
            out.writestr(info, content)
        out.comment = b"made elsewhere"


def streamed(archive, folder):
    """Sizes and check sums after the data, in a file that cannot be rewound."""

    class Pipe:
        def __init__(self, file):
            self.write, self.flush = file.write, file.flush

    with open(archive, "wb") as file, zipfile.ZipFile(Pipe(file), "w", zipfile.ZIP_DEFLATED) as out:
        for name, content in TREE.items():
            out.writestr(name, content)


def wide(archive, folder):
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as out:
        for name, content in TREE.items():
            with out.open(name, "w", force_zip64=True) as member:
                member.write(content)


MAKERS = {
    "zipfile": with_zipfile,
    "zipfile stored": lambda archive, folder: with_zipfile(archive, folder, zipfile.ZIP_STORED),
    "streamed": streamed,
    "64-bit fields": wide,
    "zip": lambda archive, folder: run("zip", "-qr", archive, ".", cwd=folder),
    "zip without folders' entries, best": lambda archive, folder: run("zip", "-qrD9", archive, ".", cwd=folder),
    "7z": lambda archive, folder: run("7z", "a", "-bd", "-y", "-tzip", "-mcu=on", archive, ".", cwd=folder),
}


class InFolder(unittest.TestCase):
    def setUp(self):
        # Not under the user's home, and with nothing that ANSI cannot name.
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="ql-zip-"))
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.tree = self.folder / "tree"
        write_tree(self.tree, TREE)
        self.archive = self.folder / "made.zip"

    def add(self, *more):
        """The tree, as seen from itself."""
        process = start("add", windows_path(self.archive), "*.*", *more, cwd=self.tree)
        process.communicate(timeout=60)
        return process.returncode

    def extract(self, archive, to):
        return host("extract", windows_path(archive), "*", windows_path(to))


class MadeHere(InFolder):
    def test_every_judge_accepts_every_level(self):
        for level in range(10):
            with self.subTest(level=level):
                self.archive.unlink(missing_ok=True)
                self.assertEqual(self.add(level, "told"), 0)
                run("unzip", "-tqq", self.archive)
                run("7z", "t", "-bd", self.archive)
                with zipfile.ZipFile(self.archive) as read:
                    self.assertIsNone(read.testzip())
                    self.assertEqual(read.comment, b"told")
                    content = {info.filename: read.read(info) for info in read.infolist() if not info.is_dir()}
                self.assertEqual(content, TREE)

    def test_judges_extract_the_names_right(self):
        self.assertEqual(self.add(), 0)
        for name, command in {"unzip": ["unzip", "-qq", self.archive, "-d", self.folder / "unzip"],
                              "7z": ["7z", "x", "-bd", f"-o{self.folder / '7z'}", self.archive]}.items():
            with self.subTest(name):
                run(*command)
                self.assertEqual(read_tree(self.folder / name), TREE)

    def test_changed_archives_stay_acceptable(self):
        for name, maker in MAKERS.items():
            if name == "64-bit fields":
                continue  # members without need of them are kept; see the engines' own tests for those with
            with self.subTest(name):
                archive = self.folder / f"{name}.zip".replace("'", "")
                maker(archive, self.tree)
                self.assertEqual(host("delete", windows_path(archive), "one.txt"), 0)
                self.assertEqual(host("add", windows_path(archive), "note.txt", cwd=self.tree / "sub"), 0)
                run("unzip", "-tqq", archive)
                run("7z", "t", "-bd", archive)
                with zipfile.ZipFile(archive) as read:
                    names = {member_name(info) for info in read.infolist() if not info.is_dir()}
                self.assertEqual(names, set(TREE) - {"one.txt"} | {"note.txt"})


class MadeElsewhere(InFolder):
    def test_all_is_extracted(self):
        for name, maker in MAKERS.items():
            with self.subTest(name):
                archive, to = self.folder / f"{name}.zip".replace("'", ""), self.folder / f"out {name}"
                maker(archive, self.tree)
                self.assertEqual(self.extract(archive, to), 0)
                self.assertEqual(read_tree(to), TREE)

    def test_all_is_listed(self):
        for name, maker in MAKERS.items():
            with self.subTest(name):
                archive = self.folder / f"{name}.zip".replace("'", "")
                maker(archive, self.tree)
                listed = {row["name"]: (row["size"], row["compressedSize"], row["crc"], row["date"])
                          for row in qlutil("list", windows_path(archive))}
                with zipfile.ZipFile(archive) as read:
                    expected = {member_name(info): (info.file_size, info.compress_size, info.CRC,
                                                    "%04d-%02d-%02d %02d:%02d:%02d" % info.date_time)
                                for info in read.infolist()}
                self.assertEqual(listed, expected)

    def test_comment_is_read(self):
        with_zipfile(self.archive, self.tree)
        self.assertEqual(qlutil("comment", windows_path(self.archive)), {"comment": "made elsewhere"})


class Killed(InFolder):
    def test_leaves_the_old_archive_or_the_new_one(self):
        times = 50
        self.assertEqual(self.add(6), 0)
        (self.tree / "more.bin").write_bytes(RANDOM_BYTES * 20)
        old = self.archive.read_bytes()
        began = time.monotonic()
        self.assertEqual(self.add(9), 0)
        took = time.monotonic() - began
        new = self.archive.read_bytes()
        self.assertNotEqual(old, new)
        kept = 0
        for _ in range(times):
            self.archive.write_bytes(old)
            process = start("add", windows_path(self.archive), "*.*", 9, cwd=self.tree)
            time.sleep(random.uniform(0, took))
            process.kill()
            process.communicate(timeout=60)
            now = self.archive.read_bytes()
            self.assertIn(now, (old, new))
            kept += now == old
        self.assertGreater(kept, times // 4, "most kills came too late to prove anything")
        self.assertEqual(self.add(9), 0)  # what a kill left behind is in nobody's way
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["made.zip", "tree"])


class FullDisk(InFolder):
    def test_loses_nothing_and_leaves_nothing_behind(self):
        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (200_000, 200_000))

        self.assertEqual(self.add(6), 0)
        before = self.archive.read_bytes()
        process = start("add", windows_path(self.archive), "*.*", cwd=self.tree, preexec_fn=limit)
        process.communicate(timeout=60)
        self.assertEqual(process.returncode, 14)
        self.assertEqual(self.archive.read_bytes(), before)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["made.zip", "tree"])

        to = self.folder / "out"
        to.mkdir()
        (to / "random.bin").write_bytes(b"former")
        process = start("extract", windows_path(self.archive), "random.bin", windows_path(to), preexec_fn=limit)
        process.communicate(timeout=60)
        self.assertEqual(process.returncode, 50)
        self.assertEqual(read_tree(to), {"random.bin": b"former"})


class Results(unittest.TextTestResult):
    def __init__(self, *arguments):
        super().__init__(*arguments)
        self.cases = []

    def stopTest(self, test):
        super().stopTest(test)
        self.cases.append(test)

    def write(self, path):
        bad = {getattr(test, "test_case", test).id() for test, _ in self.failures + self.errors}
        suites = ElementTree.Element("testsuites", tests=str(len(self.cases)), failures=str(len(bad)))
        suite = ElementTree.SubElement(suites, "testsuite", name="zip_judges", tests=str(len(self.cases)),
                                       failures=str(len(bad)))
        for test in self.cases:
            case = ElementTree.SubElement(suite, "testcase", name=test.id().split(".", 1)[1], classname="zip_judges")
            if test.id() in bad:
                ElementTree.SubElement(case, "failure", message="see the output")
        os.makedirs(os.path.dirname(path), exist_ok=True)
        ElementTree.ElementTree(suites).write(path, encoding="utf-8", xml_declaration=True)


def main():
    runner = unittest.TextTestRunner(resultclass=Results, verbosity=2)
    results = runner.run(unittest.defaultTestLoader.loadTestsFromModule(sys.modules["__main__"]))
    results.write(os.path.abspath(sys.argv[3]))
    return 0 if results.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
