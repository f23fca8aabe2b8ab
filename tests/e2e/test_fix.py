"""The Fix page: its buttons with Yes and with No, on staged printers, files and settings."""

import shutil

import pytest

from driver import CLEANUP, PRINTER, RESTORE, SETTINGS, wait_for, windows_path

PRINTERS = r"HKLM\System\CurrentControlSet\Control\Print\Printers"
DEVICES = r"HKCU\Software\Microsoft\Windows NT\CurrentVersion\Devices"
DEFAULT = r"HKCU\Software\Microsoft\Windows NT\CurrentVersion\Windows"
PREFERENCES = r"HKCU\Software\Corel\CorelDRAW\25.0\Draw\Application Preferences\Framework"


@pytest.fixture
def printers(wine):
    names = {"Studio Queue": r"\\server\queue", "Microsoft Print to PDF": "PORTPROMPT:"}
    for name, port in names.items():
        for value, text in {"Name": name, "Port": port, "Printer Driver": "wineps.drv",
                            "Print Processor": "WinPrint"}.items():
            wine.set_registry(rf"{PRINTERS}\{name}", value, text)
        for value in ("Attributes", "Status"):
            wine.set_registry(rf"{PRINTERS}\{name}", value, 0, "REG_DWORD")
        wine.set_registry(DEVICES, name, f"winspool,{port}")
    wine.set_registry(DEFAULT, "Device", r"Studio Queue,winspool,\\server\queue")
    wine.shut_down()
    yield lambda: wine.run("reg", "query", DEFAULT, "/v", "Device")
    for name in names:
        wine.delete_registry(rf"{PRINTERS}\{name}")
        wine.delete_registry(DEVICES, name)
    wine.delete_registry(DEFAULT, "Device")
    wine.shut_down()


def test_the_printer_is_switched_and_put_back(fix_page, printers):
    app = fix_page()
    app.click(PRINTER)
    app.answer("Confirm Temp Switch", "n")
    assert "Studio Queue" in printers()
    app.click(PRINTER)
    app.answer("Confirm Temp Switch", "y")
    app.wait_for_report("[Printer] Switched. Original default: Studio Queue (auto-restored on exit)")
    assert "Microsoft Print to PDF" in printers()
    app.click(PRINTER)
    app.wait_for_report("[Printer] Restored default printer: Studio Queue")
    assert "Studio Queue" in printers()
    app.click(PRINTER)
    app.answer("Confirm Temp Switch", "y")
    wait_for(lambda: "Microsoft Print to PDF" in printers(), "the switch")
    assert app.close_politely() == 0
    assert "Studio Queue" in printers()


def test_caches_go_to_a_backup_and_come_back(fix_page, wine):
    local = wine.tool_folder.parents[1] / "Local"
    dump = local / "CrashDumps" / "CorelDRW.exe.4711.dmp"
    preview = local / "Corel" / "CorelDRAW Graphics Suite X7" / "Draw" / "PreviewCache" / "bild 中.tmp"
    foreign = local / "CrashDumps" / "other.exe.1.dmp"
    contents = {dump: b"dump" * 1000, preview: b"preview", foreign: b"foreign"}
    for path, content in contents.items():
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
    backups = wine.tool_folder / "Backups"
    try:
        app = fix_page()
        app.click(CLEANUP)
        app.answer("Confirm Cache Cleanup", "n")
        app.wait_for_report("[Cleanup] Cancelled, nothing was moved.")
        assert dump.exists() and preview.exists()
        app.click(CLEANUP)
        app.answer("Confirm Cache Cleanup", "y")
        report = app.wait_for_report("[Cleanup] [OK] 2 files")
        assert "[Cleanup] Crash reports: 1 file moved" in report
        assert not dump.exists() and not preview.exists() and foreign.exists()
        app.click(RESTORE)
        app.wait_for_report("[Restore] [OK] 2 files")
        assert {path: path.read_bytes() for path in contents} == contents
        app.click(RESTORE)
        app.wait_for_report("[Restore] There is no backup to restore.")
    finally:
        for path in contents:
            path.unlink(missing_ok=True)
        shutil.rmtree(backups, ignore_errors=True)


def test_settings_are_exported_before_they_change(fix_page, wine, practice):
    def value(name):
        return wine.run("reg", "query", PREFERENCES, "/v", name)

    wine.set_registry(PREFERENCES, "UndoLevels", "150")
    wine.set_registry(PREFERENCES, "ShowWelcomeScreen", "1", "REG_DWORD")
    try:
        app = fix_page()
        running = practice("responsive")
        app.click(SETTINGS)
        app.wait_for_report("[Settings] [WARN] CorelDRAW is running")
        running.close()
        app.click(SETTINGS)
        app.answer("Confirm Settings Optimization", "n")
        app.wait_for_report("[Settings] Cancelled, nothing was changed.")
        assert "150" in value("UndoLevels")
        app.click(SETTINGS)
        app.answer("Confirm Settings Optimization", "y")
        app.wait_for_report("[Settings] [OK] 2 of 2 settings changed")
        assert "30" in value("UndoLevels") and "0x0" in value("ShowWelcomeScreen")
        app.click(SETTINGS)
        app.wait_for_report("[Settings] [OK] What was found is optimal already, nothing was changed.")
        export = next(wine.tool_folder.rglob("settings.reg"))
        wine.run("reg", "import", windows_path(export))
        assert "150" in value("UndoLevels") and "0x1" in value("ShowWelcomeScreen")
    finally:
        wine.delete_registry(r"HKCU\Software\Corel")
        shutil.rmtree(wine.tool_folder / "Backups", ignore_errors=True)
