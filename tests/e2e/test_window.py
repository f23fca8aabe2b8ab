"""The window on the screens of the trade, with a taskbar: all of it in sight, and no button that seems dead."""

import re

import pytest

from driver import ABOUT_TAB, CLOUD_TAB, DIAGNOSE_TAB, FIX_TAB, SCAN, Desktop, Mirelo, Practice, WineBox, closing, wait_for

DPI_KEY = r"HKCU\Control Panel\Desktop"
SUCCESS = "#2B8A3E"
GERMAN = 6


@pytest.fixture(params=[(1366, 768, 96), (1920, 1080, 120), (1920, 1080, 144)], ids=str)
def screen(request, wine):
    width, height, dpi = request.param
    wine.set_registry(DPI_KEY, "LogPixels", dpi, "REG_DWORD")
    wine.shut_down()
    with closing(Desktop(width, height, taskbar=40 * dpi // 96)) as desktop:
        box = WineBox(desktop)
        yield box, width, height - 40 * dpi // 96, dpi
        box.shut_down()
    wine.delete_registry(DPI_KEY, "LogPixels")
    wine.shut_down()


def test_the_first_window_lies_on_the_screen_and_shows_what_a_click_did(screen):
    wine, width, height, dpi = screen
    with closing(Practice(wine, "responsive")), closing(Mirelo(wine, language=GERMAN, dpi=dpi)) as app:
        told = wine.desktop.run("xwininfo", "-id", app.window)
        left, top = (int(re.search(rf"Absolute upper-left {axis}: +(-?[0-9]+)", told)[1]) for axis in "XY")
        client_width, client_height = app.size()
        assert left >= 0 and top > 0 and left + client_width <= width and top + client_height <= height
        for tab in (ABOUT_TAB, CLOUD_TAB, DIAGNOSE_TAB, FIX_TAB):
            app.show(tab)
            app.screenshot(f"page-{tab}-{width}-{dpi}")
        app.click(SCAN)
        wait_for(lambda: SUCCESS in app.colours(), "a line of success in sight")
        app.screenshot(f"checked-{width}-{dpi}")
