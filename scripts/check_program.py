#!/usr/bin/env python3
"""The finished program as security software and an old Windows see it: check_program.py MIRELO.EXE

One small file that imports nothing but what scripts/program_imports.txt allows, all of it in the oldest Windows that the
package names; system libraries from the system's folder only; relocatable, nothing on the heap executable; the commit's
time; icon, manifest and version inside."""

import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "packaging"))
sys.dont_write_bytecode = True
from program_file import LOAD_CONFIG, ProgramFile  # noqa: E402

LARGEST = 1_600_000
WINDOWS_PROGRAM, RESOURCES, RELOCATIONS = 2, 2, 5
HIGH_ENTROPY, DYNAMIC_BASE, NX = 0x20, 0x40, 0x100
SEARCH_SYSTEM32 = 0x800


def version(text):
    return tuple(int(part) for part in text.split("."))


def commit_times():
    """Of all that the newest commit stands on: not every commit links the program anew."""
    if "SOURCE_DATE_EPOCH" in os.environ:
        return {os.environ["SOURCE_DATE_EPOCH"]}
    return set(subprocess.check_output(["git", "log", "--format=%ct"], cwd=ROOT, text=True).split())


def allowed_imports():
    """First Windows that has it, by library and function."""
    text = re.sub(r"#.*", "", (ROOT / "scripts" / "program_imports.txt").read_text())
    return {(library, function): version(first)
            for first, library, functions in re.findall(r"^([\d.]+) (\S+): (.*(?:\n .*)*)", text, re.MULTILINE)
            for function in functions.split()}


def faults_of(path):
    data = path.read_bytes()
    program = ProgramFile(data)
    if len(data) > LARGEST:
        yield f"has {len(data)} bytes, more than {LARGEST}"

    manifest = (ROOT / "packaging" / "winget" / "installer.yaml").read_text()
    oldest = version(re.search(r"^MinimumOSVersion: (\S+)", manifest, re.MULTILINE).group(1))
    allowed = allowed_imports()
    imports = set(program.imports())
    if not imports:
        yield "imports nothing: not a program"
    for entry in sorted(imports):
        if entry not in allowed:
            yield f"imports {' '.join(entry)}, which scripts/program_imports.txt does not allow"
        elif allowed[entry] > oldest:
            yield f"imports {' '.join(entry)}, which the oldest Windows of the package does not have"

    if program.subsystem() != (WINDOWS_PROGRAM, oldest[:2]):
        yield f"is for subsystem and Windows {program.subsystem()}, not {oldest[:2]}"
    wanted = HIGH_ENTROPY | DYNAMIC_BASE | NX
    if program.characteristics() & wanted != wanted or not program.directory(RELOCATIONS)[1]:
        yield "cannot be loaded just anywhere, or has an executable heap"
    address, size = program.directory(LOAD_CONFIG)
    if size == 0 or program.number("<H", program.place_of(address) + 0x4E) != SEARCH_SYSTEM32:
        yield "takes the libraries of its import table from its own folder"
    time = program.number("<I", program.time_offset)
    if str(time) not in commit_times():
        yield f"is dated {time}, not as its commit"
    checksum = program.number("<I", program.checksum_offset)
    program.set_checksum()
    if checksum != program.number("<I", program.checksum_offset):
        yield "has a wrong checksum"
    for name, mark in (("manifest", b'level="asInvoker"'), ("version", "VS_VERSION_INFO".encode("utf-16-le"))):
        if not program.directory(RESOURCES)[1] or mark not in data:
            yield f"has no {name}"


if __name__ == "__main__":
    found = [f"{sys.argv[1]} {fault}" for fault in faults_of(pathlib.Path(sys.argv[1]))]
    print("\n".join(found))
    sys.exit(1 if found else 0)
