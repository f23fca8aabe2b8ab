"""Photographs every page in every language and puts the pictures on one sheet: contact_sheets.py SHEET.png"""

import subprocess
import sys

from driver import ABOUT_TAB, CLOUD_TAB, DIAGNOSE_TAB, FIX_TAB, OUTPUT, Desktop, Mirelo, Practice, WineBox, closing

LANGUAGES = 14


def save_small(picture, path):
    """Few colours and no dithering: text on plain areas looks the same and takes a third of the bytes."""
    subprocess.run(["convert", picture, "-strip", "+dither", "-colors", "64", "-define", "png:compression-level=9",
                    f"PNG8:{path}"], check=True)


def photograph(wine, language, width_px, height_px):
    pictures = []
    with closing(Mirelo(wine, language=language)) as mirelo:
        if (width_px, height_px) != mirelo.size():
            mirelo.resize(width_px, height_px)
        mirelo.settle()
        for tab in (DIAGNOSE_TAB, FIX_TAB, CLOUD_TAB, ABOUT_TAB):
            mirelo.show(tab)
            pictures.append(mirelo.screenshot(f"language-{language:02}-{tab}-{width_px}"))
    return pictures


def main(sheet, width_px=1032, height_px=853):
    pictures = []
    with closing(Desktop(1200, 1000)) as desktop:
        wine = WineBox(desktop)
        with closing(Practice(wine, "responsive")):
            for language in range(LANGUAGES):
                print(f"-- language {language + 1} of {LANGUAGES}", flush=True)
                pictures += photograph(wine, language, width_px, height_px)
        wine.shut_down()
    whole = OUTPUT / "languages.miff"
    subprocess.run(["montage", *pictures, "-tile", "4x", "-geometry", "460x+6+6", "-background", "#D0D4DA", "-depth", "8",
                    whole], check=True)
    save_small(whole, sheet)
    print(f"-- {len(pictures)} pictures in {OUTPUT}, together in {sheet}")


if __name__ == "__main__":
    main(sys.argv[1], *map(int, sys.argv[2:4]))
