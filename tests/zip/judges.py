#!/usr/bin/env python3
"""Holds the zip engines against programs that are not ours, in both directions, and kills them at random moments.

usage: judges.py HOST.EXE QLUTIL.exe RESULTS.xml
"""
import io
import json
import os
import pathlib
import random
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tests"))
from results import WINE, report  # noqa: E402: the path comes first

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
    for path in folder.rglob("*"):
        os.utime(path, (1_700_000_000, 1_700_000_000))  # as archives tell times: an even second


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
    """Kills at random moments: QL_KILLS of them, a quarter for each kind of call."""

    TIMES = int(os.environ.get("QL_KILLS", "40")) // 4

    def kill_randomly(self, took, *arguments):
        process = start(*arguments, cwd=self.tree)
        time.sleep(random.uniform(0, took))
        process.kill()
        process.communicate(timeout=60)

    def beside(self):
        """What stands in the folder, but for what a kill in the last step may leave until the next call."""
        return sorted(path.name for path in self.folder.iterdir() if not path.name.startswith("~ql"))

    def test_leaves_the_old_archive_or_the_new_one(self):
        (self.tree / "more.bin").write_bytes(RANDOM_BYTES * 20)
        self.assertEqual(self.add(6, "old"), 0)
        old = self.archive.read_bytes()
        archive = windows_path(self.archive)
        calls = {"add": ("add", archive, "*.*", 9), "delete": ("delete", archive, "one.txt"),
                 "comment": ("add", archive, "", 5, "new")}
        for name, call in calls.items():
            with self.subTest(name):
                self.archive.write_bytes(old)
                began = time.monotonic()
                self.assertEqual(host(*call, cwd=self.tree), 0)
                took = time.monotonic() - began
                new = self.archive.read_bytes()
                kept = 0
                for _ in range(self.TIMES):
                    self.archive.write_bytes(old)
                    self.kill_randomly(took, *call)
                    now = self.archive.read_bytes()
                    self.assertTrue(now == old or now == new or self.is_whole(now))
                    kept += now == old
                    self.assertEqual(self.beside(), ["made.zip", "tree"])
                self.assertGreater(kept, self.TIMES // 4, "most kills came too late to prove anything")
                self.archive.write_bytes(old)
                self.assertEqual(host(*call, cwd=self.tree), 0)
                self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["made.zip", "tree"])

    def is_whole(self, content):
        with zipfile.ZipFile(io.BytesIO(content)) as read:
            return read.testzip() is None

    def test_leaves_no_file_half_under_its_name(self):
        (self.tree / "more.bin").write_bytes(RANDOM_BYTES * 20)
        self.assertEqual(self.add(6), 0)
        whole, to = read_tree(self.tree), self.folder / "out"
        began = time.monotonic()
        self.assertEqual(self.extract(self.archive, to), 0)
        took = time.monotonic() - began
        for _ in range(self.TIMES):
            shutil.rmtree(to)
            self.kill_randomly(took, "extract", windows_path(self.archive), "*", windows_path(to))
            to.mkdir(exist_ok=True)
            for name, content in read_tree(to).items():
                if not name.split("/")[-1].startswith("~ql"):
                    self.assertEqual(content, whole[name], name)
        self.assertEqual(self.extract(self.archive, to), 0)
        self.assertEqual(read_tree(to), whole)


class Shared(InFolder):
    def test_readers_and_a_writer_do_not_disturb_each_other(self):
        self.assertEqual(self.add(1), 0)
        archive = windows_path(self.archive)
        readers = [start("ask", archive, "one.txt", 3000) for _ in range(2)]
        codes = [host("add", archive, "random.bin", level % 10, cwd=self.tree) for level in range(40)]
        self.assertEqual(codes, [0] * 40)
        self.assertEqual([(reader.communicate(timeout=120), reader.returncode)[1] for reader in readers], [0, 0])

    def test_writers_beside_each_other_lose_nothing(self):
        names = [name for name in TREE if "/" not in name]
        writers = [start("add", windows_path(self.archive), f'"{name}"', cwd=self.tree) for name in names]
        for writer in writers:
            writer.communicate(timeout=60)
            self.assertEqual(writer.returncode, 0)
        with zipfile.ZipFile(self.archive) as read:
            self.assertEqual(sorted(read.namelist()), sorted(names))

    def test_a_link_is_followed_and_a_read_only_archive_refused(self):
        self.assertEqual(self.add(), 0)
        link = self.folder / "link.zip"
        link.symlink_to("made.zip")
        self.assertEqual(host("delete", windows_path(link), "one.txt"), 0)
        self.assertTrue(link.is_symlink())
        with zipfile.ZipFile(self.archive) as read:
            self.assertNotIn("one.txt", read.namelist())
        self.archive.chmod(0o444)
        self.assertEqual(host("delete", windows_path(self.archive), "sub/note.txt"), 15)


class FullDisk(InFolder):
    SIZE = 2 << 20

    def setUp(self):
        super().setUp()
        self.disk = self.folder / "disk"
        self.disk.mkdir()
        made = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={self.SIZE}", "none", str(self.disk)],
                              capture_output=True)
        if made.returncode != 0:
            self.skipTest("only root can make a small file system")
        self.addCleanup(subprocess.run, ["umount", "-l", str(self.disk)])
        self.archive = self.disk / "made.zip"

    def fill_but(self, left):
        (self.disk / "filler").write_bytes(bytes(max(0, shutil.disk_usage(self.disk).free - left)))

    def test_loses_nothing_and_leaves_nothing_behind(self):
        """Whatever room is left: every write is the one that fails in some round."""
        self.assertEqual(self.add(6), 0)
        before, size = self.archive.read_bytes(), self.archive.stat().st_size
        full = 0
        for left in range(0, size + (64 << 10), 48 << 10):
            self.archive.write_bytes(before)
            self.fill_but(left)
            code = self.add(5)
            full += code == 14
            self.assertIn(code, (0, 14), left)
            if code != 0:
                self.assertEqual(self.archive.read_bytes(), before)
            self.assertEqual(sorted(path.name for path in self.disk.iterdir()), ["filler", "made.zip"])
            (self.disk / "filler").unlink()
        self.assertGreater(full, 3)

    def test_extracts_whole_files_or_none(self):
        source = self.folder / "made elsewhere.zip"
        with_zipfile(source, self.tree)
        to = self.disk / "out"
        to.mkdir()
        (to / "random.bin").write_bytes(b"former")
        self.fill_but(200_000)
        self.assertEqual(host("extract", windows_path(source), "random.bin", windows_path(to)), 50)
        self.assertEqual(read_tree(to), {"random.bin": b"former"})


def main():
    results = unittest.TextTestRunner(verbosity=2).run(
        unittest.defaultTestLoader.loadTestsFromModule(sys.modules["__main__"]))
    bad = {getattr(test, "test_case", test).id() for test, _ in results.failures + results.errors}
    return report(results.testsRun - len(bad), len(bad), sys.argv[3])


if __name__ == "__main__":
    sys.exit(main())
