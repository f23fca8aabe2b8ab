"""What the linker leaves undone: finish_program.py PROGRAM SOURCE_FOLDER

Enters the load configuration (app/load_config_win.cpp) into the program's directory, and makes the program's time the
commit's, so that one commit gives the same bytes whenever it is built. SOURCE_DATE_EPOCH takes precedence."""

import os
import pathlib
import struct
import subprocess
import sys

from program_file import LOAD_CONFIG, LOAD_CONFIG_SIZE, ProgramFile

MARK = struct.pack("<II", LOAD_CONFIG_SIZE, 0x6F6C6D69)


def commit_time(source):
    if "SOURCE_DATE_EPOCH" in os.environ:
        return int(os.environ["SOURCE_DATE_EPOCH"])
    asked = subprocess.run(["git", "log", "-1", "--format=%ct"], cwd=source, capture_output=True, text=True)
    return int(asked.stdout) if asked.returncode == 0 else 0


def finish(data, when):
    program = ProgramFile(data)
    if program.data.count(MARK) != 1:
        raise ValueError("the load configuration does not stand there once")
    place = program.data.index(MARK)
    program.put("<II", program.directory_offset(LOAD_CONFIG), program.address_of(place), LOAD_CONFIG_SIZE)
    program.put("<I", place + 4, 0)
    program.put("<I", program.time_offset, when)
    program.set_checksum()
    return bytes(program.data)


if __name__ == "__main__":
    path = pathlib.Path(sys.argv[1])
    path.write_bytes(finish(path.read_bytes(), commit_time(sys.argv[2])))
