"""The window itself: pages, report, languages, sizes."""

import pytest

from driver import (ABOUT_TAB, CAPTURE, CLEAR, CLOUD_TAB, COPY, DIAGNOSE_TAB, FIX_TAB, wait_for)

TABS = {DIAGNOSE_TAB: "diagnose", FIX_TAB: "fix", CLOUD_TAB: "cloud", ABOUT_TAB: "about"}


def test_the_report_is_copied_selected_and_cleared(mirelo):
    app = mirelo()
    whole = app.report()
    assert whole.startswith("Mirelo ready. When CDR hangs, switch to the Diagnose tab and click Capture Now.")
    assert "[Signatures] 0 (4 rules)" in whole

    panel = app.kind("panel")
    app.click_at(panel.x + 40, panel.y + 15)
    first = app.report("ctrl+c")
    assert first.strip() == whole.splitlines()[0].strip()

    app.click_at(panel.x + 40, panel.y + panel.height - 5)
    app.click(COPY)
    wait_for(lambda: app.desktop.clipboard() == whole, "the whole report again")

    app.click(CLEAR)
    wait_for(app.has_no_report, "an empty report")
    app.click(CAPTURE)
    assert app.wait_for_report("[Capture]").strip() == "[Capture] Please select a CDR instance first."


def test_the_wheel_shows_older_lines(mirelo):
    app = mirelo()
    for _ in range(60):
        app.click(CAPTURE)
    app.wait_for_report("[Capture]")
    panel = app.kind("panel")
    top_line = (panel.x + 40, panel.y + 15)

    def first_visible():
        app.click_at(*top_line)
        return app.report("ctrl+c").strip()

    assert first_visible().startswith("[Capture]")
    for _ in range(70):
        app.click_at(*top_line, button=4)
    wait_for(lambda: first_visible().startswith("Mirelo ready."), "the oldest line at the top")
    for _ in range(70):
        app.click_at(*top_line, button=5)
    wait_for(lambda: first_visible().startswith("[Capture]"), "the newest lines again")


def test_a_language_is_chosen_and_survives_a_restart(wine, mirelo):
    app = mirelo()
    assert app.title() == "Mirelo v0.2 - CDR Hang Diagnosis & File Slimming - mirelo.example"
    app.show(ABOUT_TAB)
    app.choose_language(6)
    wait_for(lambda: "CDR Hang Diagnosis" not in app.title() and app.title().startswith("Mirelo v0.2 - "), "a German title")
    german = app.title()
    assert (wine.tool_folder / "config.json").read_text() == '{"lang":6}\n'
    assert app.close_politely() == 0
    assert mirelo(language=None).title() == german


def test_closing_stores_the_language_even_without_a_folder(wine, mirelo):
    app = mirelo()
    config = wine.tool_folder / "config.json"
    config.unlink()
    assert app.close_politely() == 0
    assert config.read_text() == '{"lang":4}\n'


@pytest.mark.parametrize("dpi", [96, 144, 192])
def test_every_page_at_every_size(wine, mirelo, practice, dpi):
    """The screenshots are for the eye; that every page keeps within the window is for the layout's own tests."""
    wine.set_registry(r"HKCU\Control Panel\Desktop", "LogPixels", dpi, "REG_DWORD")
    wine.shut_down()
    try:
        practice("responsive")
        app = mirelo(dpi=dpi)
        width, height = app.size()
        assert abs(width * 96 / dpi - 1032) < 12 and abs(height * 96 / dpi - 850) < 30
        app.settle()
        for tab, name in TABS.items():
            app.show(tab)
            app.screenshot(f"page-{name}-{dpi}")
        app.resize(round(872 * dpi / 96), round(613 * dpi / 96))
        wait_for(lambda: app.size() != (width, height), "the smallest size")
        for tab, name in TABS.items():
            app.show(tab)
            app.screenshot(f"page-{name}-{dpi}-smallest")
    finally:
        wine.delete_registry(r"HKCU\Control Panel\Desktop", "LogPixels")
        wine.shut_down()
