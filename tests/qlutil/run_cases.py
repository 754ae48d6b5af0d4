#!/usr/bin/env python3
"""Runs qlutil on the cases beside this file and holds what it prints and answers against them.

usage: run_cases.py QLUTIL.exe [RESULTS.xml]

A case file holds cases one after the other; they run in the folder of this file:

    # a remark
    $ --json name 'C:\\a.txt'      the call, split as a shell splits words
    < some text                    standard input, a line each
    % 20                           the bytes that a file may grow to, as on a full disk
    {"cmdLine": ...}               standard output, to the letter; "~ " before a line makes it a pattern
    ! unknown switch               a text that standard error holds
    = 0                            the exit status; ends the case
"""
import pathlib
import re
import resource
import shlex
import signal
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
from results import WINE, report  # noqa: E402: the path comes first

SECONDS = 60


class Case:
    def __init__(self, where, call):
        self.where, self.call = where, call
        self.stdin, self.stdout, self.stderr, self.status = [], [], [], None
        self.room = resource.RLIM_INFINITY

    def take(self, line):
        """Adds a line of the case file; True when the case is complete."""
        if line.startswith("< "):
            self.stdin.append(line[2:])
        elif line.startswith("% "):
            self.room = int(line[2:])
        elif line.startswith("! "):
            self.stderr.append(line[2:])
        elif line.startswith("= "):
            self.status = int(line[2:])
        else:
            self.stdout.append(line)
        return self.status is not None

    def pattern(self):
        lines = (line[2:] if line.startswith("~ ") else re.escape(line) for line in self.stdout)
        return "".join(line + "\n" for line in lines)

    def limit(self):
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (self.room, resource.RLIM_INFINITY))

    def fault(self, program):
        """What is wrong with the program's answer; empty when nothing is."""
        done = subprocess.run([WINE, program, *shlex.split(self.call)], input="\n".join(self.stdin).encode(),
                              capture_output=True, timeout=SECONDS, check=False, cwd=HERE,
                              preexec_fn=self.limit)
        out, err = done.stdout.decode("utf-8"), done.stderr.decode("utf-8").replace("\r", "")
        if done.returncode != self.status:
            return f"exit status {done.returncode}, not {self.status}; it said: {err}"
        if not re.fullmatch(self.pattern(), out):
            return f"printed:\n{out}instead of:\n" + "\n".join(self.stdout)
        missing = [text for text in self.stderr if text not in err]
        return f"did not say {missing}, but: {err}" if missing else ""


def cases_of(path):
    case = None
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if case is None:
            if line.startswith("$ "):
                case = Case(f"{path.name}:{number}", line[2:])
            elif line and not line.startswith("#"):
                sys.exit(f"{path.name}:{number}: a case begins with '$ '")
        elif case.take(line):
            yield case
            case = None
    if case is not None:
        sys.exit(f"{case.where}: the case has no '= STATUS'")


def all_cases():
    for path in sorted((HERE / "cases").glob("*.txt")):
        yield from cases_of(path)


def without_example(program):
    """The commands whose help shows no call of their own."""
    said = subprocess.run([WINE, program, "help"], capture_output=True, timeout=SECONDS, check=True).stdout.decode()
    for command in re.split(r"^(?=qlutil )", said, flags=re.MULTILINE)[1:]:
        name = re.match(r"qlutil ((?:[a-z-]+ ?)+)(?![A-Z\[])", command)[1].strip()
        if f"    Example: qlutil {name}" not in command and f"    Example: qlutil --json {name}" not in command:
            yield name


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    lacking = list(without_example(program))
    for name in lacking:
        print(f"qlutil help {name}: shows no example")
    passed, failed = 1 - bool(lacking), len(lacking)
    for case in all_cases():
        fault = case.fault(program)
        passed, failed = passed + (not fault), failed + bool(fault)
        if fault:
            print(f"{case.where}: qlutil {case.call}\n{fault}")
    return report(passed, failed, *sys.argv[2:])


if __name__ == "__main__":
    sys.exit(main())
