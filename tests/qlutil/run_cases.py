#!/usr/bin/env python3
# Runs qlutil on the cases beside this file, and on the calls of docs/qlutil.md, and holds what it prints and answers
# against them. What the calls of a file or a block set among the preferences is removed after them.
#
# usage: run_cases.py QLUTIL.exe [RESULTS.xml]
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
from results import NO_LIMIT, WINE, file_limit, report  # noqa: E402: the path comes first

SECONDS = 60
PAGE = HERE.parent.parent / "docs" / "qlutil.md"


class Program:
    def __init__(self, path):
        self.path, self.set = path, []

    # The exit status, and what was printed and said.
    def run(self, words, text="", room=NO_LIMIT, cwd=HERE, stderr=subprocess.PIPE):
        if words[:2] == ["prefs", "set"]:
            self.set.append(words[2:4])
        done = subprocess.run([WINE, self.path, *words], input=text.encode(), stdout=subprocess.PIPE, stderr=stderr,
                              cwd=cwd, timeout=SECONDS, check=False, preexec_fn=file_limit(room))
        return done.returncode, done.stdout.decode(), (done.stderr or b"").decode().replace("\r", "")

    # Removes the preferences that calls have set.
    def forget(self):
        while self.set:
            self.run(["prefs", "unset", *self.set.pop()])


# Removes what the cases write, also what a run left that was killed.
def clean_folder():
    subprocess.run([WINE, "cmd", "/c", r"del /f /q C:\windows\Temp\ql_*& "
                    r"for /d %f in (C:\windows\Temp\ql_*) do rmdir /s /q %f"],
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=SECONDS, check=False)


# A case file holds cases one after the other, a blank line between them; they run in the folder of this file:
#
#     # a remark
#     $ --json name 'C:\a.txt'      the call, split as a shell splits words
#     + prefs set Section Entry x    another call, made before it, which must be done
#     < some text                    standard input, a line each
#     % 20                           the bytes that a file may grow to, as on a full disk
#     & prefs set Section Entry x    another call, made again and again while the case's own runs
#     {"cmdLine": ...}               standard output, to the letter; "~ " before a line makes it a pattern
#     : left out 1 settings          a text that standard error holds, while the call is done (exit status 0)
#     ! there is no file             the same of a call that fails (1)
#     ? unknown switch               the same of a call that is wrong (2)
class Case:
    def __init__(self, where, call, lines):
        self.where, self.words = f"{where}: qlutil {call}", shlex.split(call)
        self.marked = {mark: [line[2:] for line in lines if line.startswith(f"{mark} ")] for mark in "+<%&:!?"}
        self.stdout = [line for line in lines if line[0] not in self.marked or line[1:2] != " "]
        self.status = 1 if self.marked["!"] else 2 if self.marked["?"] else 0

    def other_calls(self, mark):
        return [shlex.split(call) for call in self.marked[mark]]

    # What is wrong with the program's answer; empty when nothing is.
    def fault(self, program):
        for words in self.other_calls("+"):
            if program.run(words)[0]:
                return f"{shlex.join(words)}, made before it, fails"
        with ThreadPoolExecutor() as pool:
            answer = pool.submit(program.run, self.words, "\n".join(self.marked["<"]),
                                 room=int(*self.marked["%"] or [NO_LIMIT]))
            while self.marked["&"] and not answer.done():
                for words in self.other_calls("&"):
                    program.run(words)
            status, out, err = answer.result()
        if status != self.status:
            return f"exit status {status}, not {self.status}; it said: {err}"
        patterns = (line[2:] if line.startswith("~ ") else re.escape(line) for line in self.stdout)
        if not re.fullmatch("".join(f"{pattern}\n" for pattern in patterns), out):
            return f"printed:\n{out}instead of:\n" + "\n".join(self.stdout)
        missing = [text for mark in ":!?" for text in self.marked[mark] if text not in err]
        return f"did not say {missing}, but: {err}" if missing else ""


def cases_of(path):
    text = path.read_text(encoding="utf-8")
    for block in re.finditer(r"(?:.+\n)+", text):
        call = re.match(r"(?:# .*\n)*\$ (.*)\n", block[0])
        where = f"{path.name}:{text.count(chr(10), 0, block.start()) + 1}"
        if not call:
            sys.exit(f"{where}: a case begins with '$ '")
        yield Case(where, call[1], block[0][call.end():].splitlines())


# Of each case what is wrong with it, empty when nothing is.
def faults_of_file(program, path):
    for case in cases_of(path):
        fault = case.fault(program)
        yield fault and f"{case.where}\n{fault}"
    program.forget()


# In the page a block "console" holds calls one after the other, which share a folder of their own:
#
#     $ qlutil CALL          the call; words with blanks stand in double quotes, backslashes are letters
#     what it prints         "…" stands for any text; on a line of its own, for any lines
#     (exit status 1)        when it is not 0
#
# A block "text NAME" is a file of that name in the folder of the next block of calls. Every heading has calls.
FENCE = re.compile(r"^```(\w+)(?: (\S+))?\n(.*?)^```$", re.MULTILINE | re.DOTALL)
CALL = re.compile(r"^\$ qlutil (.*)\n((?:(?!\$ ).*\n)*?)(?:\(exit status (\d)\)\n)?(?=\$ |\Z)", re.MULTILINE)


def pattern_of(shown):
    return "".join(r"(?:.*\n)*" if line == "…" else re.escape(line).replace("…", ".*") + r"\n"
                   for line in shown.splitlines())


# The same of each call of a block in the page.
def faults_of_block(program, calls, files):
    with tempfile.TemporaryDirectory() as folder:
        for name, text in files.items():
            (pathlib.Path(folder) / name).write_text(text, encoding="utf-8")
        for call, shown, expected in calls:
            words = shlex.split(call.replace("\\", "\\\\"))
            status, out, _ = program.run(words, cwd=folder, stderr=subprocess.STDOUT)
            as_shown = status == int(expected or 0) and re.fullmatch(pattern_of(shown), out)
            yield "" if as_shown else f"docs/qlutil.md: qlutil {call}\nends with status {status}:\n{out}"
    program.forget()


def faults_of_guide(program):
    for section in re.split(r"^## ", PAGE.read_text(encoding="utf-8"), flags=re.MULTILINE)[1:]:
        if "\n$ qlutil " not in section:
            yield f"docs/qlutil.md: \"{section.splitlines()[0]}\" has no call"
        files = {}
        for kind, name, text in FENCE.findall(section):
            if name:
                files[name] = text
            elif kind == "console":
                yield from faults_of_block(program, CALL.findall(text), files)
                files = {}


# Of each command whether its help shows a call of its own.
def faults_of_help(program):
    for command in re.split(r"^(?=qlutil )", program.run(["help"])[1], flags=re.MULTILINE)[1:]:
        name = re.match(r"qlutil ((?:[a-z-]+ ?)+)(?![A-Z\[])", command)[1].strip()
        shown = re.search(rf"^    Example: qlutil (--json )?{name}\b", command, re.MULTILINE)
        yield "" if shown else f"qlutil help {name}: shows no example"


def main():
    program = Program(pathlib.Path(sys.argv[1]).resolve())
    faults = [*faults_of_help(program), *faults_of_guide(program)]
    clean_folder()
    for path in sorted((HERE / "cases").glob("*.txt")):
        faults += faults_of_file(program, path)
    clean_folder()
    wrong = list(filter(None, faults))
    print(*wrong, sep="\n", end="\n" if wrong else "")
    return report(len(faults) - len(wrong), len(wrong), *sys.argv[2:])


if __name__ == "__main__":
    sys.exit(main())
