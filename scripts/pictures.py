"""Photographs the real window for the documents: pictures.py [SCENE...]; scripts/pictures.sh builds first.

The window is drawn at 192 DPI and the pictures are halved, so that letters stay clear at the size in which they are read."""

import contextlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time
from contextlib import closing

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path += [str(ROOT / "tests" / "e2e"), str(ROOT / "packaging")]

import first_aid
import staging
from driver import (ABOUT_TAB, BUILD, CAPTURE, CLEANUP, CLOUD_TAB, FIX_TAB, OUTPUT, PANEL, SCAN, SLIM, Desktop, Mirelo,
                    Practice, WineBox, wait_for)

PICTURES = ROOT / "docs" / "images"
SCALE = 2
DPI = 96 * SCALE
SELECTED, UNSELECTED = "#FDEEE6", "#E9EDF2"
WIDTH = 1032
FONT = "WenQuanYi-Micro-Hei"
DESKTOP_KEY = r"HKCU\Control Panel\Desktop"
CACHES = {
    "Local/CrashDumps/CorelDRW.exe.4711.dmp": 24_310_000,
    "Local/CrashDumps/CorelDRW.exe.5120.dmp": 19_870_000,
    "Local/Temp/Corel/import.log": 3_400_000,
    "Local/Temp/Corel/export.log": 1_200_000,
    "Local/Corel/CorelDRAW Graphics Suite 2024/Draw/PreviewCache/page1.tmp": 640_000,
}
AGE_S = 30 * 24 * 3600  # what is younger than a day stays
PROGRAM_FOLDER = "Program Files/Corel/CorelDRAW Graphics Suite 2024/Programs64"
DOCUMENTS = {
    "catalogue.cdr": staging.document(560, 200, payload=900_000, leaves=5000),
    "poster.cdr": staging.document(40, payload=800_000),
    "logo.cdr": staging.document(0, 0, 0),
}

# A quiet frame in the window manager, as large as the letters.
THEME = """border.width: 2
border.color: #9AA5B1
padding.width: 14
padding.height: 16
window.handle.width: 0
window.client.padding.width: 0
window.active.title.bg: flat solid
window.active.title.bg.color: #FFFFFF
window.active.label.bg: parentrelative
window.active.label.text.color: #1F2933
window.active.button.*.bg: parentrelative
window.active.button.*.image.color: #1F2933
window.active.title.separator.color: #FFFFFF
window.label.text.justify: left
"""
GLYPHS = {
    "iconify": lambda x, y: y in (10, 11),
    "max": lambda x, y: min(x, y, 21 - x, 21 - y) < 2,
    "close": lambda x, y: abs(x - y) < 2 or abs(x + y - 21) < 2,
}


def bitmap(name, is_set):
    """A 22 x 22 bitmap in X's text format, low bit first."""
    rows = [sum(1 << x for x in range(22) if is_set(x, y)) for y in range(22)]
    octets = ", ".join(f"0x{byte:02x}" for row in rows for byte in row.to_bytes(3, "little"))
    return f"#define {name}_width 22\n#define {name}_height 22\nstatic unsigned char {name}_bits[] = {{\n{octets}\n}};\n"


def dress_windows(folder):
    """Lets the window manager that is started next draw a title bar for 192 DPI."""
    theme = folder / "data" / "themes" / "Pictures" / "openbox-3"
    theme.mkdir(parents=True, exist_ok=True)
    (theme / "themerc").write_text(THEME)
    for name, is_set in GLYPHS.items():
        (theme / f"{name}.xbm").write_text(bitmap(name, is_set))
    settings = pathlib.Path("/etc/xdg/openbox/rc.xml").read_text("utf-8")
    settings = re.sub(r"<name>Clearlooks</name>", "<name>Pictures</name>", settings)
    settings = re.sub(r"<titleLayout>.*?</titleLayout>", "<titleLayout>NLIMC</titleLayout>", settings)
    settings = re.sub(r"(<font place=\"\w+\">\s*<name>).*?(</name>\s*<size>)\d+(</size>)(\s*<!--.*?-->)?\s*<weight>\w+",
                      r"\1WenQuanYi Micro Hei\g<2>18\3<weight>normal", settings)
    (folder / "config" / "openbox").mkdir(parents=True, exist_ok=True)
    (folder / "config" / "openbox" / "rc.xml").write_text(settings, "utf-8")
    os.environ.update(XDG_DATA_HOME=str(folder / "data"), XDG_CONFIG_HOME=str(folder / "config"))


def convert(*arguments):
    subprocess.run(["convert", *map(str, arguments)], check=True)


def keep(picture, path, *changes, percent=100 // SCALE):
    """Halves a picture and keeps it with few colours and no dithering: text on plain areas looks the same and takes a
    third of the bytes."""
    path.parent.mkdir(parents=True, exist_ok=True)
    convert(picture, "-filter", "box", "-resize", f"{percent}%", *changes, "-strip", "+dither", "-colors", "128",
            "-define", "png:compression-level=9", f"PNG8:{path}")
    print(f"-- {path.relative_to(ROOT)}", flush=True)


def photograph_with_frame(mirelo, name):
    """The window with its title bar, cut out of the screen."""
    desktop, window = mirelo.desktop, mirelo.window
    place = dict(re.findall(r"(Absolute upper-left [XY]|Width|Height): +(-?\d+)", desktop.run("xwininfo", "-id", window)))
    x, y, width, height = map(int, place.values())
    left, right, top, bottom = map(int, re.findall(r"\d+", desktop.run("xprop", "-id", window, "_NET_FRAME_EXTENTS")))
    screen = desktop.screenshot(f"{name}-screen")
    cut = OUTPUT / f"{name}-framed.png"
    convert(screen, "-crop", f"{width + left + right}x{height + top + bottom}+{x - left}+{y - top}", "+repage", cut)
    return cut


def open_mirelo(wine, height, language=4):
    mirelo = Mirelo(wine, language=language, dpi=DPI)
    mirelo.desktop.run("xdotool", "windowsize", mirelo.window, WIDTH * SCALE, height * SCALE)
    return mirelo


def settle(mirelo):
    """Selects nothing, points at nothing and waits until that is painted."""
    panel = mirelo.element(PANEL)
    x, y = (round(value * mirelo.dpi / 96) for value in (panel.x + 5, panel.y + 14))

    def shows(colour):
        return colour in mirelo.desktop.colours(mirelo.window, "-crop", f"1x1+{x}+{y}")

    def shows_selection():
        mirelo.key("ctrl+a")
        return shows(SELECTED)

    # The selection's end can be seen, and whatever happened before it is painted by then.
    wait_for(shows_selection, "a selected report")
    mirelo.click_at(panel.x + 40, panel.y + panel.height - 5)
    wait_for(lambda: shows(UNSELECTED), "a report without a selection")


def take(mirelo, name):
    settle(mirelo)
    keep(mirelo.desktop.screenshot(name, mirelo.window), PICTURES / f"{name}.png")


@contextlib.contextmanager
def installed_practice(wine):
    """The practice program where a CorelDRAW lies, for the paths in the report."""
    suite = wine.prefix / "drive_c" / "Program Files" / "Corel"
    shutil.copytree(BUILD / "practice", wine.prefix / "drive_c" / PROGRAM_FOLDER, dirs_exist_ok=True,
                    ignore=shutil.ignore_patterns("CMakeFiles", "*.cmake"))
    try:
        yield "C:\\" + PROGRAM_FOLDER.replace("/", "\\") + "\\CorelDRW.exe"
    finally:
        shutil.rmtree(suite, ignore_errors=True)


def capture(wine):
    with installed_practice(wine) as program, closing(open_mirelo(wine, 810)) as mirelo, \
            closing(Practice(wine, "plugin-sleep", program)):
        mirelo.refresh()
        mirelo.click(CAPTURE)
        mirelo.wait_for_report("--- Top 8 frames ---")
        settle(mirelo)
        keep(photograph_with_frame(mirelo, "capture-now"), PICTURES / "capture-now.png")


def check_and_clean(wine):
    for name, size in CACHES.items():
        path = wine.tool_folder.parents[1] / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.touch()
        os.truncate(path, size)
        os.utime(path, (time.time() - AGE_S,) * 2)
    with staging.printers(wine, OUTPUT), closing(open_mirelo(wine, 960)) as mirelo:
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
    for name, contents in DOCUMENTS.items():
        (folder / name).write_bytes(contents)
    (folder / "letterhead.cdr").write_bytes(b"RIFF\4\0\0\0CDRA")
    with closing(open_mirelo(wine, 910)) as mirelo:
        mirelo.show(FIX_TAB)
        mirelo.click(SLIM)
        mirelo.choose_files(folder, *DOCUMENTS, "letterhead.cdr")
        mirelo.answer("File Slimming Confirmation", "y")
        mirelo.wait_for_report("  Tip: ", 60)
        take(mirelo, "slim")


def quiet_pages(wine):
    with closing(open_mirelo(wine, 720)) as mirelo:
        for tab, name in ((CLOUD_TAB, "cloud"), (ABOUT_TAB, "about")):
            mirelo.show(tab)
            take(mirelo, name)


def languages(wine):
    """The Fix page in every language: one picture each, and all of them on one sheet."""
    pages = []
    for language, (name, stem) in enumerate(first_aid.languages()):
        with closing(open_mirelo(wine, 853, language)) as mirelo:
            mirelo.show(FIX_TAB)
            settle(mirelo)
            page = PICTURES / "languages" / f"{stem}.png"
            picture = mirelo.desktop.screenshot(f"language-{stem}", mirelo.window)
            keep(picture, page, "-background", "#D0D4DA", "-gravity", "north", "-splice", "0x40",
                 "-font", FONT, "-pointsize", "22", "-fill", "#1F2933", "-annotate", "+0+7", name)
            pages.append(page)
    whole = OUTPUT / "languages.miff"
    subprocess.run(["montage", *pages, "-tile", "3x", "-geometry", "500x+10+10", "-background", "#D0D4DA",
                    "-depth", "8", whole], check=True)
    keep(whole, PICTURES / "languages.png", percent=100)


SCENES = {scene.__name__: scene for scene in (capture, check_and_clean, slim, quiet_pages, languages)}


@contextlib.contextmanager
def a_user_of_their_own():
    """The Wine of a user with a name, at 192 DPI, without what earlier runs left."""
    OUTPUT.mkdir(parents=True, exist_ok=True)
    dress_windows(OUTPUT / "frame")
    with closing(Desktop(WIDTH * SCALE + 200, 1000 * SCALE)) as desktop:
        wine = WineBox(desktop)
        wine.environment["USER"] = "Ada"
        home = wine.tool_folder.parents[2]
        shutil.rmtree(home, ignore_errors=True)
        for folder in ("AppData/Roaming", "AppData/Local/Temp", "Desktop", "Documents"):
            (home / folder).mkdir(parents=True)
        wine.set_registry(DESKTOP_KEY, "LogPixels", DPI, "REG_DWORD")
        wine.shut_down()
        try:
            yield wine
        finally:
            wine.delete_registry(DESKTOP_KEY, "/v", "LogPixels")
            wine.shut_down()
            shutil.rmtree(home)


def main(names):
    with a_user_of_their_own() as wine:
        for name in names or SCENES:
            SCENES[name](wine)


if __name__ == "__main__":
    main(sys.argv[1:])
