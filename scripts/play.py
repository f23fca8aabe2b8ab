"""Plays the central job on a virtual display: a CorelDRAW hangs in a plug-in, Refresh, Capture Now, the report."""

import pathlib
import sys
import time
from contextlib import closing

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "tests" / "e2e"))

from driver import CAPTURE, Desktop, Mirelo, Practice, WineBox
from pictures import settle


def main():
    sys.dont_write_bytecode = True
    print("-- no display: playing the job on a virtual one")
    with closing(Desktop()) as desktop:
        wine = WineBox(desktop)
        with closing(Mirelo(wine)) as mirelo:
            print("-- Mirelo is open; a practice CorelDRAW starts and hangs in a plug-in")
            with closing(Practice(wine, "plugin-sleep")):
                mirelo.refresh()
                began = time.monotonic()
                mirelo.click(CAPTURE)
                report = mirelo.wait_for_report("--- Top 8 frames ---")
                took = time.monotonic() - began
                settle(mirelo)
                picture = desktop.screenshot("capture-now", mirelo.window)
        wine.shut_down()
    print("-- the report, read back through the clipboard:\n")
    print(report)
    print(f"-- from the click to the copied report: {took:.1f} s, 0.8 s of it the probe")
    print(f"-- screenshot: {picture}")


if __name__ == "__main__":
    main()
