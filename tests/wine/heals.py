#!/usr/bin/env python3
"""Breaks a prefix of its own in every way that was seen, and holds scripts/wine to this: the next call works.

usage: heals.py [RESULTS.xml]
"""
import os
import pathlib
import random
import resource
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tests"))
from results import report  # noqa: E402: the path comes first

CACHE = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "quillet-native-util"
STATUS = 7
CALL = ["cmd", "/c", "exit", str(STATUS)]


class Fault(Exception):
    pass


def processes_with(link, target):
    """The processes whose link of that name under /proc leads to the target."""
    found = subprocess.run(["find", "/proc", "-maxdepth", "3", "-path", f"/proc/[0-9]*/{link}", "-lname", str(target)],
                           capture_output=True, text=True, check=False)
    return {int(line.split("/")[2]) for line in found.stdout.splitlines()}


class House:
    """A cache folder with a prefix of its own over the real one's files, and two checkouts that share it."""

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

    def works(self):
        started = self.start(*CALL)
        if started.wait(150) != STATUS:
            raise Fault(f"the next call answers {started.returncode}")
        screen = self.start("--display").communicate(timeout=150)[0].decode().strip()
        with socket.socket(socket.AF_UNIX) as connection:
            connection.connect(f"/tmp/.X11-unix/X{screen[1:]}")
        pid, named = self.state.read_text().split()
        if len(self.screens()) != 1:
            raise Fault(f"there are {len(self.screens())} screens")
        if named != screen:
            raise Fault(f"the state names the screen {named}, not {screen}")
        return int(pid)

    def screens(self):
        return [pid for pid in processes_with("cwd", self.prefix)
                if pathlib.Path(f"/proc/{pid}/comm").read_text() == "Xvfb\n"]

    def keepers(self):
        return processes_with("fd/*", self.prefix / "server.lock")

    def stop(self):
        self.start("--stop").wait(100)


def many_at_once(house):
    house.stop()
    answers = {call.wait(150) for call in house.crowd()}
    if answers != {STATUS}:
        raise Fault(f"of many calls at once some answered {answers}")
    if len(house.keepers()) != 1:
        raise Fault(f"there are {len(house.keepers())} keepers")


def killed_at_random(house):
    house.stop()
    for call in house.crowd(start_new_session=True):
        time.sleep(random.uniform(0, 0.2))
        os.killpg(call.pid, signal.SIGKILL)
        call.wait()


def keeps_its_server(house, spoil):
    server = house.works()
    spoil()
    if house.works() != server:
        raise Fault("another server was started beside the living one")


def state_is_lost(house):
    keeps_its_server(house, house.state.unlink)


def state_is_of_another_prefix(house):
    keeps_its_server(house, lambda: house.state.write_text(f"{os.getpid()} :4711\n"))


def first_call_may_write_nothing(house):
    house.stop()
    no_room = (0, resource.RLIM_INFINITY)
    house.start(*CALL, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, no_room)).wait(150)


def server_without_keeper(house):
    house.stop()
    environment = os.environ | {"WINEPREFIX": str(house.prefix), "WINEDEBUG": "-all", "WINEARCH": "win32"}
    script = f"source {house.cache}/wine.env; unset TMPDIR DISPLAY; exec \"$wine\" cmd /c ping -n 30 localhost"
    subprocess.Popen(["bash", "-c", script], env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                     stderr=subprocess.DEVNULL)
    time.sleep(2)


def kill(processes):
    for process in processes:
        os.kill(process, signal.SIGKILL)


def keeper_is_killed(house):
    house.works()
    kill(house.keepers())


def screen_is_killed(house):
    house.works()
    kill(house.screens())
    time.sleep(0.5)


def server_is_killed(house):
    kill([house.works()])


BREAKAGES = (many_at_once, killed_at_random, state_is_lost, state_is_of_another_prefix, first_call_may_write_nothing,
             server_without_keeper, keeper_is_killed, server_is_killed, screen_is_killed, killed_at_random)


def main():
    seed = random.randrange(1 << 16)
    random.seed(seed)
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        house = House(pathlib.Path(folder))
        for breakage in BREAKAGES:
            try:
                breakage(house)
                house.works()
            except (Fault, OSError, subprocess.TimeoutExpired) as fault:
                failed += 1
                print(f"{breakage.__name__} (seed {seed}): {fault}")
        house.stop()
        if house.screens():
            sys.exit("a screen stayed behind")
    return report(len(BREAKAGES) - failed, failed, *sys.argv[1:])


if __name__ == "__main__":
    sys.exit(main())
