"""The Fix page: its buttons with Yes and with No, on staged printers, files and settings."""

import os

from driver import CLEANUP, CLEAR, PRINTER, RESTORE, SCAN, SETTINGS, wait_for, windows_path
from staging import FONTS, QUOTA, VIRTUAL, backups_folder, import_registry


def scan(app):
    app.click(CLEAR)
    app.click(SCAN)
    head, *lines, last = app.wait_for_report("Physical memory").splitlines()
    assert head == "===== Environment Check =====" and last == ""
    return lines


def test_the_environment_check_rates_every_printer(fix_page, printers):
    far = ["    -> Your default printer is a network printer or offline - the No.1 cause of slow startup and random "
           "freezes. Temporarily switch to Microsoft Print to PDF via the Fix tab."]
    best = " (virtual printer - best practice)"
    app = fix_page()
    rest = scan(app)
    assert "[OK] Installed fonts: " in rest[0]
    for name, tag, suffix, advice in (
            ("Studio", "[OK]", "", []), (VIRTUAL, "[OK]", best, []), ("Print to PDF of nobody", "[OK]", best, []),
            ("Studio Queue", "[HIGH RISK]", "", far), ("studio queue", "[OK]", "", []), ("Direct", "[HIGH RISK]", "", far),
            ("Shared", "[HIGH RISK]", "", far), ("Asleep", "[HIGH RISK]", "", far), ("n" * 255, "[OK]", "", [])):
        printers.default = name
        assert scan(app) == [f"{tag} Default printer: {name}{suffix}", *advice, *rest]
    for name in ("n" * 256, None):
        printers.default = name
        assert scan(app) == rest


def test_the_environment_check_rates_fonts_quota_and_memory(fix_page, wine, tmp_path):
    megabytes = os.sysconf("SC_PHYS_PAGES") * os.sysconf("SC_PAGE_SIZE") >> 20
    memory = f"[OK] Physical memory: {megabytes} MB"
    warned = ["[WARN] GDI handle quota: 10000",
              "    -> Large documents can hit this ceiling (watch it on the Dashboard). Advanced users may raise the "
              "registry value GDIProcessHandleQuota to 20000 and reboot."]
    many = ["    -> Font count is on the high side; consider trimming if startup feels slow."]
    too_many = ["    -> Too many fonts significantly slow down CDR startup and text operations. Uninstall unused fonts."]
    installed = wine.run("reg", "query", FONTS).count("REG_SZ")
    app = fix_page()
    try:
        for count, tag, advice in ((installed, "[OK]", []), (800, "[OK]", []), (801, "[WARN]", many),
                                   (1500, "[WARN]", many), (1501, "[HIGH RISK]", too_many)):
            import_registry(wine, tmp_path, f"[{FONTS}]", *(f'"Staged {i}"="x.ttf"' for i in range(count - installed)))
            fonts = [f"{tag} Installed fonts: {count} fonts", *advice]
            assert scan(app) == [*fonts, *warned, memory]
        for kind, quota, lines in (("REG_DWORD", 10001, ["[OK] GDI handle quota: 10001"]), ("REG_DWORD", 10000, warned),
                                   ("REG_DWORD", 4294967295, ["[OK] GDI handle quota: 4294967295"]),
                                   ("REG_SZ", 20000, warned), ("REG_BINARY", "204E0000", warned)):
            wine.set_registry(QUOTA, "GDIProcessHandleQuota", quota, kind)
            assert scan(app) == [*fonts, *lines, memory]
    finally:
        import_registry(wine, tmp_path, f"[{FONTS}]", *(f'"Staged {i}"=-' for i in range(1501)))
        wine.delete_registry(QUOTA, "GDIProcessHandleQuota")


def test_the_printer_is_switched_and_put_back(fix_page, printers):
    switched = "[Printer] Switched. Original default: Studio Queue (auto-restored on exit)"
    restored = "[Printer] Restored default printer: Studio Queue"
    failed = "[Printer] Switch failed (already a virtual printer, or blocked by policy)."
    app = fix_page()

    def press(answer, line):
        app.click(CLEAR)
        app.click(PRINTER)
        if answer:
            app.answer("Confirm Temp Switch", answer)
        if line:
            assert app.wait_for_report("[Printer]").splitlines() == [line]
        else:
            wait_for(app.has_no_report, "an empty report")
        return printers.default

    assert press("y", failed) is None
    printers.default = VIRTUAL
    assert press("y", failed) == VIRTUAL
    printers.default = "Studio Queue"
    assert press("n", None) == "Studio Queue"
    printers.refuse(VIRTUAL)
    assert press("y", failed) == "Studio Queue"
    printers.accept(VIRTUAL)
    assert press("y", switched) == VIRTUAL
    printers.refuse("Studio Queue")
    assert press(None, None) == VIRTUAL
    printers.accept("Studio Queue")
    printers.default = "Studio"
    assert press(None, restored) == "Studio Queue"

    assert press("y", switched) == VIRTUAL
    printers.default = "Studio"
    assert app.close_politely() == 0
    assert printers.default == "Studio Queue"


def test_caches_go_to_a_backup_and_come_back(fix_page, caches):
    app = fix_page()
    app.click(CLEANUP)
    app.answer("Confirm Cache Cleanup", "n")
    app.wait_for_report("[Cleanup] Cancelled, nothing was moved.")
    assert all(path.exists() for path in caches)
    app.click(CLEANUP)
    app.answer("Confirm Cache Cleanup", "y")
    report = app.wait_for_report("[Cleanup] [OK] 2 files")
    assert "[Cleanup] Crash reports: 1 file moved" in report
    assert [path.name for path in caches if path.exists()] == ["other.exe.1.dmp"]
    app.click(CLEANUP)
    app.wait_for_report("[Cleanup] Nothing to clean up: no crash reports, temporary files or thumbnail caches of "
                        "CorelDRAW were found.")
    app.click(RESTORE)
    app.wait_for_report("[Restore] [OK] 2 files")
    assert {path: path.read_bytes() for path in caches} == caches
    app.click(RESTORE)
    app.wait_for_report("[Restore] There is no backup to restore.")


def test_settings_are_exported_before_they_change(fix_page, wine, practice, settings):
    app = fix_page()
    running = practice("responsive")
    app.click(SETTINGS)
    app.wait_for_report("[Settings] [WARN] CorelDRAW is running")
    running.close()
    app.click(SETTINGS)
    app.answer("Confirm Settings Optimization", "n")
    app.wait_for_report("[Settings] Cancelled, nothing was changed.")
    before = settings()
    app.click(SETTINGS)
    app.answer("Confirm Settings Optimization", "y")
    app.wait_for_report("[Settings] [OK] 2 of 2 settings changed")
    assert settings() == {"UndoLevels": "30", "ShowWelcomeScreen": "0x0"}
    app.click(SETTINGS)
    app.wait_for_report("[Settings] [OK] What was found is optimal already, nothing was changed.")
    wine.run("reg", "import", windows_path(next(backups_folder(wine).rglob("settings.reg"))))
    assert settings() == before == {"UndoLevels": "150", "ShowWelcomeScreen": "0x1"}
