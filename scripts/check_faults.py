#!/usr/bin/env python3
"""Plants faults, one at a time, and asks the tests whether they notice.

    check_faults.py [PATTERN]     only the faults whose place or story holds PATTERN

scripts/faults/*.faults lists them. A fault is four lines:

    # what it would do to somebody
    in: the file
    - an expression, or a whole statement, that stands once in the file
    + what takes its place

and two more where needed: "tests: REGEX" names the ctest tests that must notice it (core-native without saying);
"on: windows" takes the Windows build, under Wine.

All faults are built at once, each behind a switch that one variable of the environment turns on: an expression
E becomes (plantedFault(n) ? (F) : (E)), a statement an if with two branches."""
import concurrent.futures
import dataclasses
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "faults"
SOURCE = BUILD / "source"
TEST_SECONDS = 120


@dataclasses.dataclass
class Fault:
    number: int = 0
    story: str = ""
    file: str = ""
    original: str = ""
    planted: str = ""
    tests: str = "^core-native$"
    preset: str = "native"


def read_faults():
    faults = []
    for path in sorted((ROOT / "scripts" / "faults").glob("*.faults")):
        for block in re.split(r"\n\s*\n", path.read_text(encoding="utf-8").strip()):
            fault = Fault(number=len(faults) + 1)
            for line in block.splitlines():
                key, text = re.match(r"(#|-|\+|in:|tests:|on:) ?(.*)", line).groups()
                name = {"#": "story", "-": "original", "+": "planted", "in:": "file", "tests:": "tests",
                        "on:": "preset"}[key]
                setattr(fault, name, (fault.story + " " + text).strip() if key == "#" else text)
            faults.append(fault)
    return faults


def plant(faults):
    """A copy of the tree with every fault behind its switch; what has not changed keeps its time."""
    texts = {}
    for fault in faults:
        text = texts.get(fault.file) or (ROOT / fault.file).read_text(encoding="utf-8")
        if text.count(fault.original) != 1:
            sys.exit(f"{fault.file} does not hold once: {fault.original}")
        switch = f"plantedFault({fault.number})"
        if fault.original.endswith((";", "}")):
            both = f"if ({switch}) {{ {fault.planted} }} else {{ {fault.original} }}"
        else:
            both = f"({switch} ? ({fault.planted}) : ({fault.original}))"
        texts[fault.file] = text.replace(fault.original, both)
    listed = subprocess.check_output(["git", "ls-files"], cwd=ROOT, text=True).split("\n")
    for name in filter(None, listed):
        source, target = ROOT / name, SOURCE / name
        if not source.is_file():
            continue
        target.parent.mkdir(parents=True, exist_ok=True)
        new = texts[name].encode() if name in texts else source.read_bytes()
        if not target.exists() or target.read_bytes() != new:
            target.write_bytes(new)
            shutil.copymode(source, target)


def build(preset):
    print(f"-- building {preset} with every fault in it", flush=True)
    include = ROOT / "scripts" / "faults" / "planted_fault.h"
    subprocess.check_call(["cmake", "--preset", preset, f"-DCMAKE_CXX_FLAGS=-w -include {include}",
                           "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"], cwd=SOURCE, stdout=subprocess.DEVNULL)
    subprocess.check_call(["cmake", "--build", "--preset", preset, "--", "--quiet"], cwd=SOURCE)


def pass_with(fault, preset, tests):
    """True when all these tests pass with this fault planted."""
    done = subprocess.run(["ctest", "--test-dir", str(SOURCE / "build" / preset), "--no-tests=error",
                           "--stop-on-failure", "--timeout", str(TEST_SECONDS), "-R", tests],
                          env={**os.environ, "MIRELO_FAULT": str(fault), "GTEST_FAIL_FAST": "1"}, capture_output=True, text=True)
    if "No tests were found" in done.stderr + done.stdout:
        sys.exit(f"no test is named {tests}")
    return done.returncode == 0


def main():
    faults = read_faults()
    plant(faults)
    pattern = sys.argv[1] if len(sys.argv) > 1 else ""
    chosen = [fault for fault in faults if re.search(pattern, fault.file + " " + fault.story)]
    survivors = []

    def ask(fault):
        start = time.monotonic()
        survived = pass_with(fault.number, fault.preset, fault.tests)
        print(f"{'SURVIVED' if survived else 'noticed '} {time.monotonic() - start:5.1f} s  {fault.file}: {fault.story}",
              flush=True)
        if survived:
            survivors.append(fault)

    for preset in ("native", "windows"):
        here = [fault for fault in chosen if fault.preset == preset]
        if not here:
            continue
        build(preset)
        for tests in sorted({fault.tests for fault in here}):
            if not pass_with(0, preset, tests):
                sys.exit(f"{tests} fails without a fault")
        # One Wine prefix serves one test at a time.
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count() if preset == "native" else 1) as pool:
            list(pool.map(ask, here))
    print(f"{len(chosen) - len(survivors)} of {len(chosen)} faults noticed")
    return 1 if survivors or not chosen else 0


if __name__ == "__main__":
    sys.exit(main())
