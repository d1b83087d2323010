#!/usr/bin/env python3
"""Copies a static library so that lld keeps the unwind tables of its inline functions. Debian strips the symbols of those
sections (.pdata$NAME) from the libraries of its cross-compiler; without one lld takes a section that may occur more than
once for nobody's and leaves it out, and no exception gets through the function. Each gets its symbol again, which binds it
to the function's section (.text$NAME).
Usage: mend-unwind-tables.py FROM.a TO.a   (the index of the copy is for ranlib to make)"""
import pathlib
import struct
import sys

ARCHIVE_HEAD = b"!<arch>\n"
AMD64 = 0x8664
IS_COMDAT = 0x1000
ASSOCIATIVE = 5
STATIC = 3


def section_names(data, count, strings):
    for index in range(count):
        head = 20 + 40 * index
        name = data[head:head + 8].rstrip(b"\0")
        flags, = struct.unpack_from("<I", data, head + 36)
        offset = int(name[1:]) if name.startswith(b"/") else None
        if offset is not None:
            name = data[strings + offset:data.index(b"\0", strings + offset)]
        yield index + 1, name, offset, flags


def mended(data):
    """An object file with the symbols that it lacks, between its own symbols and their long names."""
    if struct.unpack_from("<H", data)[0] != AMD64:
        return data
    count, = struct.unpack_from("<H", data, 2)
    symbols, symbol_count = struct.unpack_from("<II", data, 8)
    strings = symbols + 18 * symbol_count
    sections = list(section_names(data, count, strings))
    functions = {name[len(b".text$"):]: number for number, name, _, _ in sections if name.startswith(b".text$")}
    added = b""
    for number, name, offset, flags in sections:
        if name.startswith(b".pdata$") and flags & IS_COMDAT:
            function = functions[name[len(b".pdata$"):]]
            added += struct.pack("<IIIhHBB", 0, offset, 0, number, 0, STATIC, 1)
            added += struct.pack("<IHHIHBxxx", 12, 3, 0, 0, function, ASSOCIATIVE)
    head = data[:12] + struct.pack("<I", symbol_count + len(added) // 18) + data[16:strings]
    return head + added + data[strings:]


def main(source, target):
    data = pathlib.Path(source).read_bytes()
    result, position = ARCHIVE_HEAD, len(ARCHIVE_HEAD)
    while position < len(data):
        head = data[position:position + 60]
        size = int(head[48:58])
        member = data[position + 60:position + 60 + size]
        position += 60 + size + size % 2
        if head.startswith(b"/ "):
            continue # the index
        if not head.startswith(b"//"):
            member = mended(member)
        result += head[:48] + b"%-10d" % len(member) + head[58:] + member + b"\n" * (len(member) % 2)
    pathlib.Path(target).write_bytes(result)


if __name__ == "__main__":
    main(*sys.argv[1:])
