#!/usr/bin/env python3
"""The order of the folders: every include between two of them must be one of the edges below, and the edges
make no circle. The architecture page shows the same picture."""
import graphlib
import pathlib
import re
import subprocess
import sys

# Each room and what it may include, beside itself.
ALLOWED = {
    "base": set(),
    "base/files": {"base"},
    "cdr": {"base"},
    "cloud/json": {"base"},
    "diagnosis": {"base", "cdr", "cloud/json"},
    "cloud": {"base", "base/files", "cloud/json", "diagnosis"},
    "fixes/cleanup": {"base", "base/files", "cloud/json"},
    "fixes/settings": {"base", "base/files", "fixes/cleanup"},
    "fixes/health": {"base"},
    "slim": {"base", "base/files"},
}
ALLOWED["app"] = set(ALLOWED)


def room_of(path):
    return max((room for room in ALLOWED if path.startswith(room + "/")), key=len, default=None)


def main():
    graphlib.TopologicalSorter(ALLOWED).prepare()  # raises where the edges make a circle
    wrong = []
    for name in subprocess.check_output(["git", "ls-files", "*.cpp", "*.h"], text=True).split():
        room = room_of(name)
        if room is None:
            continue
        text = pathlib.Path(name).read_text(encoding="utf-8")
        for included in re.findall(r'^#include "([^"]+)"', text, re.MULTILINE):
            below = room_of(included)
            if below is not None and below != room and below not in ALLOWED[room]:
                wrong.append(f"{name}: {room}/ must not know {included}")
            header_sees_windows = included.endswith("_win.h") and "_win." not in name
            if header_sees_windows:
                wrong.append(f"{name}: only *_win files may include {included}")
    print("\n".join(wrong))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
