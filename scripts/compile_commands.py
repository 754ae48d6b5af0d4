"""What the built trees say of how each source is compiled, for the tools that look at the sources a second time."""
import functools
import hashlib
import json
import os
import pathlib
import shlex
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent
CACHES = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "quillet-native-util"


def output_of(command, directory=ROOT):
    return subprocess.run(command, cwd=directory, check=True, capture_output=True, text=True).stdout


def entries_of(tree):
    """Those of the project's own sources, but for generated ones."""
    for entry in json.loads((tree / "compile_commands.json").read_text()):
        path = pathlib.Path(entry["file"]).resolve()
        if path.suffix == ".cpp" and ROOT in path.parents and tree not in path.parents:
            yield path, entry | {"tree": tree}


@functools.cache
def target_arguments(compiler):
    """What makes clang compile for the compiler's target with its headers, but for those of its own intrinsics."""
    command = [compiler, "-x", "c++", "-E", "-v", os.devnull]
    asked = subprocess.run(command, capture_output=True, text=True, check=True).stderr
    listed = asked.partition("#include <...> search starts here:\n")[2].partition("End of search list")[0]
    paths = {os.path.normpath(line.strip()): None for line in listed.splitlines()}
    own = [path for path in paths if "/gcc/" in path and "c++" not in path]
    system = [argument for path in paths if path not in own for argument in ("-isystem", path)]
    return [f"--target={compiler.split('/')[-1].partition('-g++')[0]}", "-nostdinc++", *system]


def kept_arguments(entry, kinds):
    """The arguments of the entry that begin so, and what directly belongs to them."""
    words = shlex.split(entry["command"])
    words = words[next(at for at, word in enumerate(words) if "g++" in word or "clang++" in word):]
    kept = [word for word in words if word.startswith(kinds)]
    kept += [argument for at, word in enumerate(words) if word == "-isystem" for argument in words[at:at + 2]]
    return words[0], kept


def headers(entry):
    """The source and the tree's own files that it includes."""
    command = [word for word in shlex.split(entry["command"]) if word != "-Winvalid-pch"]
    output = command.index("-o")
    rule = output_of([*command[:output], *command[output + 2:], "-MM", "-MT", "x"], entry["directory"])
    names = shlex.split(rule.replace("\\\n", " "))[1:]
    paths = (pathlib.Path(entry["directory"], name).resolve() for name in names)
    return sorted(path for path in paths if ROOT in path.parents and ROOT / "build" not in path.parents)


def key_of(entry, tool):
    """Changes with the source, with what it includes, and with the tool."""
    digest = hashlib.sha256(tool)
    digest.update(entry["command"].replace(str(ROOT), ".").encode())
    for path in headers(entry):
        digest.update(str(path.relative_to(ROOT)).encode() + b"\0" + path.read_bytes() + b"\0")
    return digest.hexdigest()


def build(tree):
    """Built, not just configured: generated headers must be there."""
    return subprocess.run([str(ROOT / "scripts" / "build"), tree.name]).returncode == 0
