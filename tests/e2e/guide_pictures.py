"""Remakes every picture of the documentation from the real window: guide_pictures.py [--without-languages]"""

import contextlib
import os
import shutil
import sys

import contact_sheets
import staging
from driver import (ABOUT_TAB, BUILD, CAPTURE, CLEANUP, CLOUD_TAB, FIX_TAB, OUTPUT, ROOT, SCAN, SLIM, Desktop,
                    Mirelo, Practice, WineBox, closing, windows_path)

PICTURES = ROOT / "docs" / "images"
WIDTH_PX = 1032
CACHES = {
    "Local/CrashDumps/CorelDRW.exe.4711.dmp": 24_310_000,
    "Local/CrashDumps/CorelDRW.exe.5120.dmp": 19_870_000,
    "Local/Temp/Corel/import.log": 3_400_000,
    "Local/Temp/Corel/export.log": 1_200_000,
    "Local/Corel/CorelDRAW Graphics Suite 2024/Draw/PreviewCache/page1.tmp": 640_000,
}
DOCUMENTS = {"catalogue.cdr": "x7-560-views", "poster.cdr": "x7-large", "logo.cdr": "x7-clean"}


def take(mirelo, name):
    mirelo.settle()
    contact_sheets.save_small(mirelo.screenshot(name), PICTURES / f"{name}.png")
    print(f"-- docs/images/{name}.png")


def capture(wine):
    with closing(Mirelo(wine)) as mirelo, closing(Practice(wine, "plugin-sleep")):
        mirelo.resize(WIDTH_PX, 720)
        mirelo.refresh()
        mirelo.click(CAPTURE)
        mirelo.wait_for_report("--- Top 8 frames ---")
        take(mirelo, "capture-now")


def check_and_clean(wine):
    for name, size in CACHES.items():
        path = wine.tool_folder.parents[1] / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.touch()
        os.truncate(path, size)
    with closing(staging.Spooler(wine, OUTPUT)) as printers, closing(Mirelo(wine)) as mirelo:
        printers.default = "Studio Queue"
        mirelo.resize(WIDTH_PX, 960)
        mirelo.show(FIX_TAB)
        mirelo.click(SCAN)
        mirelo.wait_for_report("Physical memory")
        mirelo.click(CLEANUP)
        mirelo.answer("Confirm Cache Cleanup", "y")
        mirelo.wait_for_report("[Cleanup] [OK]")
        take(mirelo, "fix")


def slim(wine):
    folder = OUTPUT / "documents"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    wine.run(BUILD / "tests" / "slim" / "slim_tool.exe", "documents", windows_path(folder))
    for name, shape in DOCUMENTS.items():
        (folder / f"{shape}.cdr").rename(folder / name)
    (folder / "letterhead.cdr").write_bytes(b"RIFF\4\0\0\0CDRA")
    with closing(Mirelo(wine)) as mirelo:
        mirelo.resize(WIDTH_PX, 910)
        mirelo.show(FIX_TAB)
        mirelo.click(SLIM)
        mirelo.choose_files(folder, *DOCUMENTS, "letterhead.cdr")
        mirelo.answer("File Slimming Confirmation", "y")
        mirelo.wait_for_report("  Tip: ", 60)
        take(mirelo, "slim")


def quiet_pages(wine):
    with closing(Mirelo(wine)) as mirelo:
        mirelo.resize(WIDTH_PX, 720)
        for tab, name in ((CLOUD_TAB, "cloud"), (ABOUT_TAB, "about")):
            mirelo.show(tab)
            take(mirelo, name)


@contextlib.contextmanager
def a_user_of_their_own():
    """The Wine of a user with a name, without what earlier runs left."""
    with closing(Desktop(1200, 1000)) as desktop:
        wine = WineBox(desktop)
        wine.environment["USER"] = "Ada"
        home = wine.tool_folder.parents[2]
        shutil.rmtree(home, ignore_errors=True)
        for folder in ("AppData/Roaming", "AppData/Local/Temp", "Desktop", "Documents"):
            (home / folder).mkdir(parents=True)
        yield wine
        wine.shut_down()
        shutil.rmtree(home)


def main(with_languages):
    with a_user_of_their_own() as wine:
        for scene in (capture, check_and_clean, slim, quiet_pages):
            scene(wine)
    if with_languages:
        contact_sheets.main(PICTURES / "languages.png")


if __name__ == "__main__":
    main("--without-languages" not in sys.argv)
