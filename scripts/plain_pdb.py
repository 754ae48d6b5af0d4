#!/usr/bin/env python3
"""Takes out of a program's PDB, as the linker wrote it, when and where that was done: the same program then has the
same PDB, whoever links it. What a debugger looks for stays: the program's identity, and the names of its functions.

usage: plain_pdb.py FILE FOLDER    (the folder in which it was linked)
"""
import os
import pathlib
import struct
import sys

MAGIC = b"Microsoft C/C++ MSF 7.00\r\n\x1aDS\0\0\0"
NO_STREAM = 0xFFFFFFFF
INFORMATION, MODULES = 1, 3  # the streams with these
SIGNATURE_AT = 4
# Descriptions of modules begin here, their size is told there. In one: the stream of the module, the size of the
# symbols in it, and where its two names begin.
MODULES_AT, MODULES_SIZE_AT = 64, 24
STREAM_AT, SYMBOLS_SIZE_AT, NAMES_AT = 34, 36, 64
LINKER = b"* Linker *"
ENVIRONMENT = 0x113D  # the record with the linker's folder and the file's full name, the last of its module


def padded(content, unit):
    return content + bytes(-len(content) % unit)


def numbers(content, at, count):
    return struct.unpack_from(f"<{count}I", content, at)


def read_streams(content):
    """The size of a block, and the streams, which lie in blocks."""
    if not content.startswith(MAGIC):
        raise ValueError("this is no PDB")
    block_size, _, _, directory_size, _, map_block = numbers(content, len(MAGIC), 6)

    def joined(at_blocks, at, size):
        count = -(-size // block_size)
        blocks = numbers(at_blocks, at, count)
        return b"".join(content[block * block_size:][:block_size] for block in blocks)[:size], at + 4 * count

    directory, _ = joined(content, map_block * block_size, directory_size)
    count, = numbers(directory, 0, 1)
    at, streams = 4 + 4 * count, []
    for size in numbers(directory, 4, count):
        stream, at = joined(directory, at, 0 if size == NO_STREAM else size)
        streams.append(stream)
    return block_size, streams


def written(block_size, streams):
    """The file with these streams: a head, maps of free blocks (none is) in their fixed places, then all else."""
    blocks = [b""]

    def placed(content):
        chosen = []
        for at in range(0, len(content), block_size):
            while len(blocks) % block_size in (1, 2):
                blocks.append(bytes(block_size))
            chosen.append(len(blocks))
            blocks.append(padded(content[at:at + block_size], block_size))
        return struct.pack(f"<{len(chosen)}I", *chosen)

    lists = b"".join([placed(stream) for stream in streams])
    directory = struct.pack(f"<{len(streams) + 1}I", len(streams), *map(len, streams)) + lists
    map_block, = numbers(placed(placed(directory)), 0, 1)
    blocks[0] = padded(MAGIC + struct.pack("<6I", block_size, 1, len(blocks), len(directory), 0, map_block), block_size)
    return b"".join(blocks)


def without_environment(symbols, size):
    """The symbols up to that record, and the four zeroes that end a module without lines."""
    at = 4
    while at < size:
        length, kind = struct.unpack_from("<HH", symbols, at)
        if kind == ENVIRONMENT:
            return symbols[:at] + bytes(4)
        at += 2 + length
    return symbols


def described(head, names):
    return bytes(head) + b"".join(name + b"\0" for name in names)


def plain_modules(streams, folder):
    """The stream of modules, with names from the folder on; the linker's own is told without its environment."""
    modules = streams[MODULES]
    end = MODULES_AT + numbers(modules, MODULES_SIZE_AT, 1)[0]
    at, told = MODULES_AT, b""
    while at < end:
        head = bytearray(modules[at:at + NAMES_AT])
        names = modules[at + NAMES_AT:end].split(b"\0", 2)[:2]
        at += len(padded(described(head, names), 4))
        if names[0] == LINKER:
            stream, size = struct.unpack_from("<HI", head, STREAM_AT)
            streams[stream] = without_environment(streams[stream], size)
            struct.pack_into("<I", head, SYMBOLS_SIZE_AT, len(streams[stream]) - 4)
        told += padded(described(head, [name.removeprefix(folder) for name in names]), 4)
    header = bytearray(modules[:MODULES_AT])
    struct.pack_into("<I", header, MODULES_SIZE_AT, len(told))
    return bytes(header) + told + modules[end:]


def main():
    path, folder = pathlib.Path(sys.argv[1]), os.fsencode(os.path.realpath(sys.argv[2])) + b"/"
    block_size, streams = read_streams(path.read_bytes())
    information = bytearray(streams[INFORMATION])
    struct.pack_into("<I", information, SIGNATURE_AT, 0)
    streams[INFORMATION] = bytes(information)
    streams[MODULES] = plain_modules(streams, folder)
    path.write_bytes(written(block_size, streams))


if __name__ == "__main__":
    main()
