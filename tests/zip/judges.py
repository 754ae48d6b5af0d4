#!/usr/bin/env python3
# Holds the zip engines against programs that are not ours, in both directions, and kills them at random moments.
#
# usage: judges.py HOST.EXE QLUTIL.exe RESULTS.xml
import functools
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
from results import NO_LIMIT, WINE, file_limit, run_own_cases, windows_path  # noqa: E402: the path comes first

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


def start(*arguments, program=HOST, room=NO_LIMIT, **options):
    return subprocess.Popen([WINE, program, *map(str, arguments)], stdout=subprocess.PIPE,
                            stdin=subprocess.DEVNULL, preexec_fn=file_limit(room), **options)


# The engine's code.
def host(*arguments, **options):
    process = start(*arguments, **options)
    process.communicate(timeout=60)
    return process.returncode


def qlutil(what, archive, *more):
    process = start("--json", "zip", what, windows_path(archive), *more, program=QLUTIL)
    return json.loads(process.communicate(timeout=60)[0])


# zip writes UTF-8 without saying so, and zipfile takes that for code page 437.
def member_name(info):
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


# A file that cannot be rewound: sizes and check sums come after the data.
class Pipe:
    def __init__(self, file):
        self.write, self.flush = file.write, file.flush


def with_zipfile(archive, _, method=zipfile.ZIP_DEFLATED, through=lambda file: file, wide=False):
    with open(archive, "wb") as file, zipfile.ZipFile(through(file), "w") as out:
        for name, content in TREE.items():
            info = zipfile.ZipInfo(name, (2024, 2, 29, 23, 59, 58))
            info.compress_type = method
            info.extra = struct.pack("<HHI", 0xCAFE, 4, 1)
            with out.open(info, "w", force_zip64=wide) as member:
                member.write(content)
        out.comment = b"made elsewhere"


MAKERS = {
    "zipfile": with_zipfile,
    "zipfile stored": functools.partial(with_zipfile, method=zipfile.ZIP_STORED),
    "streamed": functools.partial(with_zipfile, through=Pipe),
    "64-bit fields": functools.partial(with_zipfile, wide=True),
    "zip": lambda archive, folder: run("zip", "-qr", archive, ".", cwd=folder),
    "zip without folders' entries, best": lambda archive, folder: run("zip", "-qrD9", archive, ".", cwd=folder),
    "7z": lambda archive, folder: run("7z", "a", "-bd", "-y", "-tzip", "-mcu=on", archive, ".", cwd=folder),
}


class InFolder(unittest.TestCase):
    def setUp(self):
        # Not under the user's home, and with nothing that ANSI cannot name.
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory(ignore_cleanup_errors=True)))
        self.tree = self.folder / "tree"
        write_tree(self.tree, TREE)
        self.archive = self.folder / "made.zip"

    # The engine's code for the archive, the files as seen from the tree.
    def call(self, what, items, *more, **options):
        return host(what, windows_path(self.archive), items, *more, cwd=self.tree, **options)

    def add(self, *more):
        return self.call("add", "*.*", *more)

    def extract(self, to):
        return self.call("extract", "*", windows_path(to))

    def beside(self, kept=lambda name: True):
        return sorted(path.name for path in self.folder.iterdir() if kept(path.name))

    # Names and contents of the files in the archive, after all have judged it.
    def members(self, judges=()):
        for judge in judges:
            run(*judge, self.archive)
        with zipfile.ZipFile(self.archive) as read:
            return {member_name(info): read.read(info) for info in read.infolist() if not info.is_dir()}


class Judged(InFolder):
    def test_every_judge_extracts_every_level(self):
        for level in range(10):
            with self.subTest(level=level):
                self.archive.unlink(missing_ok=True)
                self.assertEqual(self.add(level, "told"), 0)
                self.assertEqual(self.members(), TREE)
                to = self.folder / str(level)
                to.mkdir()
                run("unzip", "-qq", self.archive, "-d", to / "unzip")
                run("7z", "x", "-bd", f"-o{to / '7z'}", self.archive)
                for judge in ("unzip", "7z"):
                    self.assertEqual(read_tree(to / judge), TREE)
                with zipfile.ZipFile(self.archive) as read:
                    self.assertEqual(read.comment, b"told")

    def test_what_others_make_is_extracted_and_listed_and_stays_acceptable_when_changed(self):
        for name, maker in MAKERS.items():
            with self.subTest(name):
                self.archive, to = self.folder / f"{name}.zip", self.folder / f"out {name}"
                maker(self.archive, self.tree)
                self.assertEqual(self.extract(to), 0)
                self.assertEqual(read_tree(to), TREE)
                listed = {row["name"]: (row["size"], row["compressedSize"], row["crc"], row["date"])
                          for row in qlutil("list", self.archive)}
                with zipfile.ZipFile(self.archive) as read:
                    expected = {member_name(info): (info.file_size, info.compress_size, info.CRC,
                                                    "%04d-%02d-%02d %02d:%02d:%02d" % info.date_time)
                                for info in read.infolist()}
                    self.assertEqual(qlutil("comment", self.archive), {"comment": read.comment.decode()})
                self.assertEqual(listed, expected)
                self.assertEqual([self.call("delete", "one.txt"), self.call("add", "sub\\note.txt")], [0, 0])
                changed = self.members([["unzip", "-tqq"], ["7z", "t", "-bd"]])
                self.assertEqual(changed, {name: TREE[name] for name in TREE if name != "one.txt"})

    def test_names_that_no_terminal_and_no_record_bears_are_listed_all_the_same(self):
        names = ["\x1b[2Jclear.txt", "n" * 300 + ".txt"]
        with zipfile.ZipFile(self.archive, "w", zipfile.ZIP_BZIP2) as out:
            for name in names:
                out.writestr(name, b"x")
            out.infolist()[1].file_size = 5 << 30  # more than a record of the engine tells
        self.assertEqual([(row["trueName"], row["size"]) for row in qlutil("list", self.archive)],
                         list(zip(names, (1, 5 << 30))))
        shown = start("zip", "list", windows_path(self.archive), program=QLUTIL).communicate(timeout=60)[0]
        self.assertNotIn(b"\x1b", shown)


    def test_a_folder_is_added_with_all_below_it_but_not_what_its_links_lead_to(self):
        deep = {f"{'/'.join(6 * ['d' * 50])}/deep.txt": b"deeper than paths without a prefix go"}
        write_tree(self.tree, deep)
        (self.tree / "up").symlink_to(".")
        self.assertEqual(qlutil("add", self.archive, windows_path(self.tree)), {"added": len(TREE) + 1})
        self.assertEqual(self.members(), {f"tree/{name}": content for name, content in (TREE | deep).items()})


# Kills at random moments, spread over what a call takes: QL_KILLS of them, a quarter for each kind of call.
class Killed(InFolder):
    TIMES = int(os.environ.get("QL_KILLS", "40")) // 4

    def setUp(self):
        super().setUp()
        (self.tree / "more.bin").write_bytes(RANDOM_BYTES * 20)
        self.assertEqual(self.add(6, "old"), 0)

    # Calls once in peace; then, prepared anew for each, those that are killed. A step for each call.
    def killed(self, prepare, *call):
        prepare()
        began = time.monotonic()
        self.assertEqual(self.call(*call), 0)
        took = time.monotonic() - began
        yield
        for turn in range(self.TIMES):
            prepare()
            process = start(call[0], windows_path(self.archive), *call[1:], cwd=self.tree)
            time.sleep(took * (turn + random.random()) / self.TIMES)
            process.kill()
            process.communicate(timeout=60)
            yield

    def test_leaves_the_old_archive_or_the_new_one(self):
        old = self.archive.read_bytes()
        for call in (("add", "*.*", 9), ("delete", "one.txt"), ("add", "", 5, "new")):
            with self.subTest(call):
                calls = self.killed(lambda: self.archive.write_bytes(old), *call)
                next(calls)
                new = self.archive.read_bytes()
                kept = 0
                for _ in calls:
                    now = self.archive.read_bytes()
                    self.assertTrue(now in (old, new) or self.members())
                    kept += now == old
                    # What a kill in the last step may leave stays until the next call.
                    self.assertEqual(self.beside(lambda name: not name.startswith("~ql")), ["made.zip", "tree"])
                self.assertGreater(kept, self.TIMES // 4, "most kills came too late to prove anything")
                self.archive.write_bytes(old)
                self.assertEqual(self.call(*call), 0)
                self.assertEqual(self.beside(), ["made.zip", "tree"])

    def test_leaves_no_file_half_under_its_name(self):
        write_tree(self.tree, {f"many/{number}": b"x" for number in range(200)})
        self.assertEqual(self.add(6, "old"), 0)
        whole, to = read_tree(self.tree), self.folder / "out"
        for _ in self.killed(lambda: shutil.rmtree(to, True), "extract", "*", windows_path(to)):
            for name, content in read_tree(to).items():
                if not name.split("/")[-1].startswith("~ql"):
                    self.assertEqual(content, whole[name], name)
        self.assertEqual(self.extract(to), 0)
        self.assertEqual(read_tree(to), whole)
        self.assertFalse([*to.rglob("~ql*")])


class Shared(InFolder):
    def test_readers_and_a_writer_do_not_disturb_each_other(self):
        self.assertEqual(self.add(1), 0)
        readers = [start("ask", windows_path(self.archive), "one.txt", 3000) for _ in range(2)]
        codes = [self.call("add", "random.bin", level % 10) for level in range(40)]
        self.assertEqual(codes, [0] * 40)
        self.assertEqual([(reader.communicate(timeout=120), reader.returncode)[1] for reader in readers], [0, 0])

    def test_writers_beside_each_other_lose_nothing(self):
        names = [name for name in TREE if "/" not in name]
        writers = [start("add", windows_path(self.archive), f'"{name}"', cwd=self.tree) for name in names]
        for writer in writers:
            writer.communicate(timeout=60)
            self.assertEqual(writer.returncode, 0)
        self.assertEqual(self.members(), {name: TREE[name] for name in names})

    def test_a_link_is_followed_and_a_read_only_archive_refused(self):
        self.assertEqual(self.add(), 0)
        link = self.folder / "link.zip"
        link.symlink_to("made.zip")
        self.assertEqual(host("delete", windows_path(link), "one.txt"), 0)
        self.assertTrue(link.is_symlink())
        self.assertNotIn("one.txt", self.members())
        self.archive.chmod(0o444)
        self.assertEqual(self.call("delete", "sub/note.txt"), 15)


class FullDisk(InFolder):
    # However far a file may grow: every write is the one that fails in some round.
    def test_loses_nothing_and_leaves_nothing_behind(self):
        self.assertEqual(self.add(6), 0)
        before = self.archive.read_bytes()
        for room in range(0, len(before), 48 << 10):
            self.assertEqual(self.call("add", "*.*", 0, room=room), 14)
            self.assertEqual(self.archive.read_bytes(), before)
            self.assertEqual(self.beside(), ["made.zip", "tree"])
        to = self.folder / "out"
        write_tree(to, {"random.bin": b"former"})
        self.assertEqual(self.call("extract", "random.bin", windows_path(to), room=200_000), 50)
        self.assertEqual(read_tree(to), {"random.bin": b"former"})


if __name__ == "__main__":
    sys.exit(run_own_cases(*sys.argv[3:]))
