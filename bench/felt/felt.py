"""What a user feels, measured under Wine on a virtual display: felt.py [ROUNDS]. Prints a table in Markdown."""

import ctypes
import pathlib
import statistics
import sys
import tempfile
import time
from contextlib import closing

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "e2e"))
from driver import BUILD, Desktop, Practice, WineBox, stop, windows_path  # noqa: E402

ALL_PLANES, Z_PIXMAP = ctypes.c_ulong(-1), 2


class Pixel:
    """One pixel of a display, read within a fraction of a millisecond."""

    def __init__(self, display, x, y):
        self._x11 = ctypes.CDLL("libX11.so.6")
        self._x11.XOpenDisplay.restype = self._x11.XGetImage.restype = ctypes.c_void_p
        self._x11.XDefaultRootWindow.restype = self._x11.XGetPixel.restype = ctypes.c_ulong
        self._display = ctypes.c_void_p(self._x11.XOpenDisplay(display.encode()))
        self._root = ctypes.c_ulong(self._x11.XDefaultRootWindow(self._display))
        self._place = x, y

    def colour(self):
        image = ctypes.c_void_p(self._x11.XGetImage(self._display, self._root, *self._place, 1, 1, ALL_PLANES, Z_PIXMAP))
        colour = self._x11.XGetPixel(image, 0, 0)
        self._x11.XDestroyImage(image)
        return colour & 0xFFFFFF

    def seconds_until(self, condition, limit_s=60):
        start = time.perf_counter()
        while not condition(self.colour()):
            if time.perf_counter() - start > limit_s:
                raise AssertionError("nothing was painted")
            time.sleep(0.001)
        return time.perf_counter() - start


def start_to_paint(wine, pixel, program):
    """From the start of the process until the middle of the screen shows what the program painted."""
    pixel.seconds_until(lambda colour: colour == 0)
    process = wine.start(program)
    try:
        return pixel.seconds_until(lambda colour: colour != 0) * 1000
    finally:
        stop(process)


def row(what, ours, other, other_ms, ratio):
    print(f"| {what} | {ours:.0f} ms | {other}, {other_ms:.0f} ms | {ratio:.2f} |", flush=True)


def main(rounds=9):
    print("| what | Mirelo | compared with | ratio |\n|---|---:|---|---:|")
    program = BUILD / "mirelo.exe"
    with closing(Desktop(1400, 1100)) as desktop:
        wine = WineBox(desktop)
        pixel = Pixel(desktop.environment["DISPLAY"], 700, 500)
        # What was started for another display would keep every window invisible. From then on the
        # prefix itself, which the first program starts, stays alive.
        wine.shut_down()
        keeper = wine.start("cmd.exe", "/c", "pause")
        programs = {"Mirelo": program, "Wine's notepad": "notepad.exe",
                    "the least Direct2D window": BUILD / "bench" / "felt" / "bench_felt_bare.exe"}
        times = {name: [] for name in programs}
        for number in range(rounds + 1):
            for name, command in programs.items():
                took = start_to_paint(wine, pixel, command)
                if number > 0:
                    times[name].append(took)
        ours = times.pop("Mirelo")
        for name, taken in times.items():
            ratio = statistics.median(mine / theirs for mine, theirs in zip(ours, taken))
            row("start to first paint", statistics.median(ours), name, statistics.median(taken), ratio)

        with closing(Practice(wine, "plugin-sleep")), closing(Practice(wine, "print")):
            practice = windows_path(BUILD / "practice" / "CorelDRW.exe")
            with tempfile.TemporaryDirectory() as folder:
                for bench, argument in (("bench_felt", None), ("bench_felt_stand", practice),
                                        ("bench_felt_moves", windows_path(folder))):
                    arguments = [] if argument is None else [argument]
                    for line in wine.run(BUILD / "bench" / "felt" / f"{bench}.exe", *arguments).splitlines():
                        what, ours, other, other_ms, ratio = line.split("|")
                        row(what, float(ours), other, float(other_ms), float(ratio))
        stop(keeper)
        wine.shut_down()
    print(f"| size of the program | {program.stat().st_size / 1e6:.2f} MB | at most 1.6 MB | |")


if __name__ == "__main__":
    main(*map(int, sys.argv[1:2]))
