#!/usr/bin/env python3
"""Holds the library's exports against its public headers: exactly the names marked QL_API, and of a class so marked
each public member function and each public constant; nothing else. Holds it and the other programs that are shipped
against what protects them: guarded stacks, checked calls, random addresses, no code in data;
and against libraries of the system that they load at their start without need.

usage: check_exports.py TARGET LIBRARY.dll [PROGRAM...]    (silent and 0 when all holds; TARGET as the compiler has it)
"""
import re
import subprocess
import sys

from check_rooms import ROOT, public_headers

TOOLS = sys.argv[1] + "-"
CLASS = re.compile(r"\b(?:class|struct)\s+QL_API\s+(?:QL_LOCK_ATTRIBUTE\([^)]*\)\s*)?(\w+)")
# A function or a variable: its name, an operator too, stands before "(", "[", ";" or "=".
NAMED = re.compile(r"\bQL_API\b(?!\s*__)[^;{=(]*?(operator[^\w\s(]+|\w+)\s*(?:\[[^\]]*\]\s*)*[(;=]")
# Of a member: not what is no function, or is for the caller's compiler to define.
MEMBER = re.compile(r"(?!friend|using|typedef|template|enum|class|struct|static_assert|inline|"
                    r"(?:static )?constexpr [^=(]*(?:operator[^(]*)?\(|.*(?:= (?:delete|default|0)|\{\})$)"
                    r"(?:static constexpr [^(]*?(\w+)(?: ?\[\w*\])? ?=|"
                    r"[^(=]*?(operator\b ?(?:[^\w\s(]+|[\w: ]+)|(?<![\w~])~?\w+) ?\()")
# What the compiler adds to a class or function, before its name.
SPOKEN_OF = re.compile(r"^(?:vtable|typeinfo|typeinfo name|VTT|guard variable|(?:non-)?virtual thunk) (?:for|to) ")
ENTRY = re.compile(r"^\s*\[\s*\d+\](?:\s+\+base\[\s*\d+\])?\s+(?:[0-9a-f]{4,}\s+)?(\S+)\s*$")


def expanded_headers():
    """The public headers as the compiler sees them, without what they include from elsewhere."""
    includes = "".join(f'#include "{ROOT / header}"\n' for header in sorted(public_headers()))
    command = [TOOLS + "g++-posix", "-x", "c++", "-std=c++20", "-E", "-DQL_UTIL_BUILD", "-I", str(ROOT), "-"]
    text = subprocess.run(command, input=includes, check=True, capture_output=True, text=True).stdout
    own = False
    for line in text.splitlines():
        if line.startswith("# "):
            own = line.split('"')[1].startswith(str(ROOT))
        elif own:
            yield line


def declared(text):
    """The names that the public headers mark for export, classes apart from the rest."""
    classes = set(CLASS.findall(text))
    others = set(NAMED.findall(re.sub(CLASS, " ", text)))
    return classes, others - classes


def without_bodies(text):
    """The text with nothing in its braces, and a semicolon behind them."""
    depth, kept = 0, []
    for piece in re.split(r"([{}])", text):
        if piece == "{":
            depth += 1
        elif piece == "}":
            depth -= 1
            kept.append("{};" if depth == 0 else "")
        elif depth == 0:
            kept.append(piece)
    return "".join(kept)


def body_at(text, position):
    """What stands in the braces that open behind the position, if they open before the next semicolon."""
    opening = re.compile(r"[{;]").search(text, position)
    if not opening or opening.group() == ";":
        return ""
    depth = 0
    for brace in re.compile(r"[{}]").finditer(text, opening.start()):
        depth += 1 if brace.group() == "{" else -1
        if depth == 0:
            return text[opening.end():brace.start()]
    return ""


def members(text):
    """The public member functions and constants of the exported classes, as Class::name."""
    for found in CLASS.finditer(text):
        access = "private" if found.group().startswith("class") else "public"
        for part in re.split(r"\b(public|protected|private)\s*:", without_bodies(body_at(text, found.end()))):
            if part in ("public", "protected", "private"):
                access = part
                continue
            for statement in re.split(r";", part) if access == "public" else []:
                named = MEMBER.match(" ".join(statement.split()))
                if named:
                    yield f"{found.group(1)}::{named.group(1) or named.group(2)}"


def exported(library):
    """The library's exports, demangled."""
    dump = subprocess.run([TOOLS + "objdump", "-p", library], check=True, capture_output=True, text=True).stdout
    table = dump.split("[Ordinal/Name Pointer] Table", 1)[-1].split("\n\n", 1)[0]
    names = [match.group(1) for match in map(ENTRY.match, table.splitlines()) if match]
    text = "\n".join("_" + name if name.startswith("_Z") else name for name in names)
    return subprocess.run([TOOLS + "c++filt", "-_"], input=text, check=True, capture_output=True,
                          text=True).stdout.splitlines()


# The bits of DllCharacteristics, and those asked of each word size.
HIGH_ENTROPY, RANDOM_ADDRESS, NO_CODE_IN_DATA = 0x20, 0x40, 0x100
PROTECTION = {"i686": RANDOM_ADDRESS | NO_CODE_IN_DATA, "x86_64": HIGH_ENTROPY | RANDOM_ADDRESS | NO_CODE_IN_DATA}
GUARD = "__stack_chk_fail"
# Libraries that need windows, in turn or by themselves: a program must not pay for them before it asks for one.
LATE = {"comctl32", "comdlg32", "gdi32", "mpr", "ole32", "oleaut32", "shell32", "shlwapi", "user32"}


def unfit(program):
    """What the program lacks, and what it needs too soon."""
    dump = subprocess.run([TOOLS + "objdump", "-p", program], check=True, capture_output=True, text=True).stdout
    bits = int(re.search(r"^DllCharacteristics\s+([0-9a-f]+)", dump, re.M).group(1), 16)
    wanted = PROTECTION[TOOLS.partition("-")[0]]
    if bits & wanted != wanted:
        yield f"{program}: characteristics {bits:#x} lack {wanted & ~bits:#x}"
    symbols = subprocess.run([TOOLS + "nm", program], check=True, capture_output=True, text=True).stdout
    if GUARD not in symbols:
        yield f"{program}: no stack is guarded"
    if "CryptAcquireContext" in dump:
        yield f"{program}: its guard opens a provider of keys"
    for name in re.findall(r"^\tDLL Name: (\S+)", dump, re.M):
        if "ssp" in name:
            yield f"{program}: needs {name}, which is not shipped"
        if name.partition(".")[0].lower() in LATE:
            yield f"{program}: loads {name} at its start; cmake/QlLate.cmake lacks a function"


def owner(symbol):
    """The class, function or variable that a demangled name speaks of, without namespaces and template arguments."""
    symbol = SPOKEN_OF.sub("", symbol)
    symbol = symbol.split("(", 1)[0].split("[abi:", 1)[0]
    return symbol.split("::")


def main():
    text = "\n".join(expanded_headers()).replace("__attribute__((dllexport))", "QL_API")
    classes, others = declared(text)
    known = classes | others
    seen, faults = set(), []
    library, *programs = sys.argv[2:]
    symbols = exported(library)
    for symbol in symbols:
        named = known & set(owner(symbol))
        seen |= named
        if not named:
            faults.append(f"exported but in no public header: {symbol}")
    faults.extend(f"in a public header but not exported: {name}" for name in sorted(known - seen))
    names = {"::".join(owner(symbol)) for symbol in symbols}
    faults.extend(f"a public member, but not exported: {member}"
                  for member in sorted(set(members(text))) if not any(name.endswith(member) for name in names))
    if not symbols:
        faults.append(f"no exports found in {library}")
    for program in library, *programs:
        faults.extend(unfit(program))
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
