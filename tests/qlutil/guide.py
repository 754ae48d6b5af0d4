"""The calls that docs/qlutil.md shows, with what it says they print."""
import pathlib
import re
import shlex

PAGE = pathlib.Path(__file__).resolve().parent.parent.parent / "docs" / "qlutil.md"
# A block "console" holds calls one after the other, which share a folder of their own:
#
#     $ qlutil CALL          the call; words with blanks stand in double quotes
#     what it prints         "…" stands for any text; on a line of its own, for any lines
#     (exit status 1)        when it is not 0
#
# A block "text NAME" is a file of that name in the folder of the next block of calls. Every heading has calls.
FENCE = re.compile(r"^```(\w+)(?: (\S+))?\n(.*?)^```$", re.MULTILINE | re.DOTALL)
CALL = re.compile(r"^\$ qlutil (.*)\n((?:(?!\$ ).*\n)*?)(?:\(exit status (\d)\)\n)?(?=\$ |\Z)", re.MULTILINE)


def words_of(call):
    """A call's words, as the system's own shell splits them: backslashes are letters."""
    lexer = shlex.shlex(call, posix=True)
    lexer.whitespace_split, lexer.escape, lexer.quotes, lexer.commenters = True, "", '"', ""
    return list(lexer)


def pattern_of(shown):
    return "".join(r"(?:.*\n)*" if line == "…" else re.escape(line).replace("…", ".*") + r"\n"
                   for line in shown.splitlines())


def sections():
    """Each heading with its blocks: the calls of a block as (words, pattern, status), and the files beside them."""
    for section in re.split(r"^## ", PAGE.read_text(encoding="utf-8"), flags=re.MULTILINE)[1:]:
        files, blocks = {}, []
        for kind, name, text in FENCE.findall(section):
            if name:
                files[name] = text
            if kind == "console":
                calls = [(words_of(call), pattern_of(shown), int(status or 0))
                         for call, shown, status in CALL.findall(text)]
                blocks.append((calls, files))
                files = {}
        yield section.partition("\n")[0], blocks
