"""The window on the screens of the trade, with a taskbar: all of it in sight, and no button that seems dead."""

import contextlib
import re

import pytest

from driver import ABOUT_TAB, CLOUD_TAB, DIAGNOSE_TAB, FIX_TAB, SCAN, Desktop, Mirelo, Practice, WineBox, wait_for

DPI_KEY = r"HKCU\Control Panel\Desktop"
MARGINS = '<openbox_config xmlns="http://openbox.org/3.4/rc"><margins><bottom>{}</bottom></margins></openbox_config>'
SUCCESS = "#2B8A3E"
GERMAN = 6


@contextlib.contextmanager
def wine_at(dpi, desktop):
    """A Wine that was started for this DPI on this desktop."""
    wine = WineBox(desktop)
    wine.shut_down()
    wine.set_registry(DPI_KEY, "LogPixels", dpi, "REG_DWORD")
    wine.shut_down()
    try:
        yield wine
    finally:
        wine.delete_registry(DPI_KEY, "/v", "LogPixels")
        wine.shut_down()


@pytest.mark.parametrize("width, height, dpi", [(1366, 768, 96), (1920, 1080, 120), (1920, 1080, 144)])
def test_the_first_window_lies_on_the_screen_and_shows_what_a_click_did(stage, tmp_path, width, height, dpi):
    taskbar = 40 * dpi // 96
    (tmp_path / "margins.xml").write_text(MARGINS.format(taskbar))
    desktop = stage.enter_context(contextlib.closing(Desktop(width, height, "--config-file", tmp_path / "margins.xml")))
    wine = stage.enter_context(wine_at(dpi, desktop))
    stage.enter_context(contextlib.closing(Practice(wine, "responsive")))
    app = stage.enter_context(contextlib.closing(Mirelo(wine, language=GERMAN, dpi=dpi)))
    told = desktop.run("xwininfo", "-id", app.window)
    left, top = (int(re.search(rf"Absolute upper-left {axis}: +(-?[0-9]+)", told)[1]) for axis in "XY")
    client_width, client_height = app.size()
    assert left >= 0 and top > 0 and left + client_width <= width and top + client_height <= height - taskbar
    for tab in (ABOUT_TAB, CLOUD_TAB, DIAGNOSE_TAB, FIX_TAB):
        app.show(tab)
    app.click(SCAN)
    wait_for(lambda: SUCCESS in desktop.colours(app.window), "a line of success in sight")
