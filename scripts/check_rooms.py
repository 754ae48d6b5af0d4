#!/usr/bin/env python3
"""Holds the tree against the floors of the house: who includes whom, and where the system's headers come in.

usage: check_rooms.py    (from anywhere; silent and 0 when all holds)
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

FLOORS = [line.split() for line in (ROOT / "cmake" / "floors.txt").read_text().splitlines() if line[:1].isalpha()]
FLOOR_OF = {room: floor for floor, rooms in enumerate(FLOORS) for room in rooms}
TOOL = "tools/qlutil"
SYSTEM_DOOR = "platform/win32.h"
SYSTEM_HEADERS = {"windows.h", "winreg.h", "winbase.h", "winuser.h", "shlobj.h", "shellapi.h", "winnls.h", "windef.h"}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def room_of(path):
    return path.split("/")[0] if path.split("/")[0] in FLOOR_OF else None


def may_include(room, target):
    return target == room or FLOOR_OF[target] < FLOOR_OF[room]


def public_headers():
    """The headers that the rooms' CMake files call PUBLIC."""
    headers = set()
    for listing in ROOT.glob("*/CMakeLists.txt"):
        for room, body in re.findall(r"ql_room\((\S+)([^)]*)\)", listing.read_text()):
            public = re.search(r"PUBLIC(.*?)(?:SOURCES|WINDOWS_SOURCES|$)", body, re.S)
            if public:
                headers.update(f"{room}/{name}" for name in public.group(1).split())
    return headers


def own_headers():
    """Headers of the sources that the tool builds into itself, because the library does not export what they hold."""
    listing = (ROOT / TOOL / "CMakeLists.txt").read_text()
    return {source.replace(".cpp", ".h") for source in re.findall(r"\$\{PROJECT_SOURCE_DIR\}/(\S+\.cpp)", listing)}


def includes(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        found = INCLUDE.match(line)
        if found:
            yield number, found.group(1) == "<", found.group(2)


def faults_of(name, path, public, for_tool):
    room = room_of(name)
    tool = name.startswith(TOOL + "/")
    for number, is_system, header in includes(path):
        where = f"{name}:{number}"
        if is_system:
            if header.lower() in SYSTEM_HEADERS and name != SYSTEM_DOOR:
                yield f"{where}: <{header}> comes in through {SYSTEM_DOOR} alone"
            continue
        target = room_of(header)
        if room and target and not may_include(room, target):
            yield f"{where}: {room} may not include {header}"
        if tool and not header.startswith(TOOL + "/") and header not in for_tool:
            yield f"{where}: {header} is not public"
        if name in public and header not in public:
            yield f"{where}: a public header includes {header}, which is not installed"
    if name.endswith(".h") and "#pragma once" not in path.read_text(encoding="utf-8"):
        yield f"{name}: no #pragma once"


def main():
    public = public_headers()
    for_tool = public | own_headers()
    faults = []
    for path in sorted(ROOT.rglob("*")):
        name = path.relative_to(ROOT).as_posix()
        if path.suffix in (".h", ".cpp") and (room_of(name) or name.startswith(TOOL)):
            faults.extend(faults_of(name, path, public, for_tool))
    faults.extend(f"{name}: public but missing" for name in sorted(public) if not (ROOT / name).exists())
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
