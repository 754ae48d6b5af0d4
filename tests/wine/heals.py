#!/usr/bin/env python3
# Breaks a prefix of its own in every way that was seen, and holds scripts/wine to this: the next call works.
#
# usage: heals.py [RESULTS.xml]
import os
import pathlib
import random
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tests"))
from results import file_limit, run_own_cases  # noqa: E402: the path comes first

CACHE = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "quillet-native-util"
STATUS = 7
CALL = ["cmd", "/c", "exit", str(STATUS)]


# The processes whose link of that name under /proc leads to the target.
def processes_with(link, target):
    found = subprocess.run(["find", "/proc", "-maxdepth", "3", "-path", f"/proc/[0-9]*/{link}", "-lname", str(target)],
                           capture_output=True, text=True, check=False)
    return {int(line.split("/")[2]) for line in found.stdout.splitlines()}


# A cache folder with a prefix of its own over the real one's files, and two checkouts that share it.
class House:
    def __init__(self, folder):
        self.cache = folder / "cache" / "quillet-native-util"
        self.prefix = self.cache / "prefix"
        self.prefix.mkdir(parents=True)
        shutil.copy(CACHE / "wine.env", self.cache)
        for name in ".update-timestamp", "system.reg", "user.reg", "userdef.reg", "version":
            shutil.copy(CACHE / "prefix" / name, self.prefix)
        shutil.copytree(CACHE / "prefix" / "dosdevices", self.prefix / "dosdevices", symlinks=True)
        (self.prefix / "drive_c").symlink_to(CACHE / "prefix" / "drive_c")
        self.state = self.prefix / "server.state"
        self.checkouts = [folder / "first", folder / "second"]
        for checkout in self.checkouts:
            checkout.mkdir()
            shutil.copy(ROOT / "scripts" / "wine", checkout)

    def start(self, *arguments, checkout=0, **options):
        return subprocess.Popen([self.checkouts[checkout] / "wine", *arguments], stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, env=os.environ | {"XDG_CACHE_HOME": str(self.cache.parent)},
                                **options)

    def crowd(self, **options):
        return [self.start(*CALL, checkout=number % 2, **options) for number in range(10)]

    def screens(self):
        return [pid for pid in processes_with("cwd", self.prefix)
                if pathlib.Path(f"/proc/{pid}/comm").read_text() == "Xvfb\n"]

    def keepers(self):
        return processes_with("fd/*", self.prefix / "server.lock")

    def stop(self):
        self.start("--stop").wait(100)


class Heals(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.house = House(pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory())))

    @classmethod
    def tearDownClass(cls):
        cls.house.stop()
        if cls.house.screens():
            raise AssertionError("a screen stayed behind")

    # The server of a house whose next call works, as it must after all that the cases do.
    def server(self):
        self.assertEqual(STATUS, self.house.start(*CALL).wait(150), "the next call's answer")
        screen = self.house.start("--display").communicate(timeout=150)[0].decode().strip()
        with socket.socket(socket.AF_UNIX) as connection:
            # By the name without a file, which programs try first.
            connection.connect(f"\0/tmp/.X11-unix/X{screen[1:]}")
        pid, named = self.house.state.read_text().split()
        self.assertEqual(1, len(self.house.screens()))
        self.assertEqual(screen, named)
        return int(pid)

    def tearDown(self):
        self.server()

    def test_many_at_once(self):
        self.house.stop()
        self.assertEqual({STATUS}, {call.wait(150) for call in self.house.crowd()})
        self.assertEqual(1, len(self.house.keepers()))

    def test_killed_at_random(self):
        for seed in random.sample(range(1 << 16), 2):
            with self.subTest(seed=seed):
                moments = random.Random(seed)
                self.house.stop()
                for call in self.house.crowd(start_new_session=True):
                    time.sleep(moments.uniform(0, 0.2))
                    os.killpg(call.pid, signal.SIGKILL)
                    call.wait()
                self.server()

    def test_keeps_its_server_whatever_becomes_of_the_state(self):
        for spoil in (self.house.state.unlink, lambda: self.house.state.write_text(f"{os.getpid()} :4711\n")):
            server = self.server()
            spoil()
            self.assertEqual(server, self.server())

    def test_first_call_may_write_nothing(self):
        self.house.stop()
        self.house.start(*CALL, preexec_fn=file_limit(0)).wait(150)

    def test_server_without_keeper(self):
        self.house.stop()
        environment = os.environ | {"WINEPREFIX": str(self.house.prefix), "WINEDEBUG": "-all", "WINEARCH": "win32"}
        script = f"source {self.house.cache}/wine.env; unset TMPDIR DISPLAY; exec \"$wine\" cmd /c ping -n 30 localhost"
        subprocess.Popen(["bash", "-c", script], env=environment, stdin=subprocess.DEVNULL,
                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(2)

    def test_killed_parts(self):
        for part, pause in (self.house.keepers, 0), (lambda: [self.server()], 0), (self.house.screens, 0.5):
            self.server()
            for process in part():
                os.kill(process, signal.SIGKILL)
            time.sleep(pause)


if __name__ == "__main__":
    sys.exit(run_own_cases(*sys.argv[1:]))
