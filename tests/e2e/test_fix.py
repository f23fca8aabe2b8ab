"""The Fix page: every button with Yes and with No, on staged printers, files, settings and documents."""

import os
import shutil
import subprocess
import zipfile

import pytest

from driver import (BUILD, CLEANUP, CLEAR, FIX_TAB, PRINTER, RESTORE, ROOT, SCAN, SETTINGS, SLIM, closing, wait_for,
                    windows_path)

MACHINE = "HKEY_LOCAL_MACHINE"
PRINTERS = rf"{MACHINE}\System\CurrentControlSet\Control\Print\Printers"
FONTS = rf"{MACHINE}\Software\Microsoft\Windows NT\CurrentVersion\Fonts"
QUOTA = rf"{MACHINE}\Software\Microsoft\Windows NT\CurrentVersion\Windows"
VIRTUAL = "Microsoft Print to PDF"
DEVICES = r"HKEY_CURRENT_USER\Software\Microsoft\Windows NT\CurrentVersion\Devices"
DEFAULT = r"HKEY_CURRENT_USER\Software\Microsoft\Windows NT\CurrentVersion\Windows"
PREFERENCES = r"HKCU\Software\Corel\CorelDRAW\25.0\Draw\Application Preferences\Framework"


@pytest.fixture
def fix_page(wine, mirelo):
    def start():
        app = mirelo()
        app.show(FIX_TAB)
        return app

    return start


def import_registry(wine, tmp_path, *lines):
    path = tmp_path / "staged.reg"
    path.write_text("\r\n".join(("\ufeffWindows Registry Editor Version 5.00", "", *lines, "")), "utf-16-le", newline="")
    wine.run("reg", "import", windows_path(path))


def quoted(text):
    return '"' + text.replace("\\", "\\\\") + '"'


class Spooler:
    """Wine's spooler lives in the registry, so printers can be staged. It reports no status: offline is an attribute."""

    PRINTERS = {"Studio": ("LPT1:", 0), "Studio Queue": (r"\\server\queue", 0), "Direct": ("IP_192.168.0.9", 0),
                "Shared": ("LPT1:", 0x10), "Asleep": ("LPT1:", 0x400), VIRTUAL: ("PORTPROMPT:", 0)}

    def __init__(self, wine, tmp_path):
        self._wine, self._folder = wine, tmp_path
        lines = []
        for name, (port, attributes) in self.PRINTERS.items():
            lines += [f"[{PRINTERS}\\{name}]", f'"Name"={quoted(name)}', f'"Port"={quoted(port)}',
                      '"Printer Driver"="wineps.drv"', '"Print Processor"="WinPrint"',
                      f'"Attributes"=dword:{attributes:08x}', '"Status"=dword:00000000']
        ports = [f'"{name}"={quoted("winspool," + port)}' for name, (port, _) in self.PRINTERS.items()]
        import_registry(wine, tmp_path, *lines, f"[{DEVICES}]", *ports, f"[{DEFAULT}]", '"Device"=-')

    def close(self):
        import_registry(self._wine, self._folder, *(f"[-{PRINTERS}\\{name}]" for name in self.PRINTERS),
                        f"[{DEVICES}]", *(f'"{name}"=-' for name in self.PRINTERS), f"[{DEFAULT}]", '"Device"=-')

    def accept(self, name):
        self._wine.set_registry(DEVICES, name, f"winspool,{self.PRINTERS[name][0]}")

    def refuse(self, name):
        """From now on nobody can make it the default printer."""
        self._wine.delete_registry(DEVICES, name)

    @property
    def default(self):
        text = self._wine.run("reg", "query", DEFAULT, "/v", "Device")
        return text.split("REG_SZ")[1].strip().split(",")[0] if "REG_SZ" in text else None

    @default.setter
    def default(self, name):
        if name:
            self._wine.set_registry(DEFAULT, "Device", f"{name},winspool,LPT1:")
        else:
            self._wine.delete_registry(DEFAULT, "Device")


@pytest.fixture
def spooler(wine, tmp_path):
    with closing(Spooler(wine, tmp_path)) as printers:
        yield printers


def scan(app):
    app.click(CLEAR)
    app.click(SCAN)
    head, *lines, last = app.wait_for_report("Physical memory").splitlines()
    assert head == "===== Environment Check =====" and last == ""
    return lines


def test_the_environment_check_rates_every_printer(fix_page, spooler):
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
        spooler.default = name
        assert scan(app) == [f"{tag} Default printer: {name}{suffix}", *advice, *rest]
    for name in ("n" * 256, None):
        spooler.default = name
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


def test_the_printer_is_switched_and_put_back(fix_page, spooler):
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
        return spooler.default

    assert press("y", failed) is None
    spooler.default = VIRTUAL
    assert press("y", failed) == VIRTUAL
    spooler.default = "Studio Queue"
    assert press("n", None) == "Studio Queue"
    spooler.refuse(VIRTUAL)
    assert press("y", failed) == "Studio Queue"
    spooler.accept(VIRTUAL)
    assert press("y", switched) == VIRTUAL
    spooler.refuse("Studio Queue")
    assert press(None, None) == VIRTUAL
    spooler.accept("Studio Queue")
    spooler.default = "Studio"
    assert press(None, restored) == "Studio Queue"

    assert press("y", switched) == VIRTUAL
    spooler.default = "Studio"
    assert app.close_politely() == 0
    assert spooler.default == "Studio Queue"


def test_caches_go_to_a_backup_and_come_back(fix_page, wine):
    local = wine.tool_folder.parents[1] / "Local"
    dump = local / "CrashDumps" / "CorelDRW.exe.4711.dmp"
    preview = local / "Corel" / "CorelDRAW Graphics Suite X7" / "Draw" / "PreviewCache" / "bild 中.tmp"
    foreign = local / "CrashDumps" / "other.exe.1.dmp"
    contents = {dump: b"dump" * 1000, preview: b"preview", foreign: b"foreign"}
    for path, content in contents.items():
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
    backups = wine.tool_folder / "backups"
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
        app.click(CLEANUP)
        app.wait_for_report("[Cleanup] Nothing to clean up: no crash reports, temporary files or thumbnail caches of "
                            "CorelDRAW were found.")
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
        shutil.rmtree(wine.tool_folder / "backups", ignore_errors=True)


def choose(app, folder, *names):
    """Answers the file dialog: the folder first, then the names."""
    title = r"^Select CDR files to slim"
    box = wait_for(lambda: app.desktop.windows(title), "the file dialog")[0]
    for text in (windows_path(folder), " ".join(f'"{name}"' for name in names)):
        app.desktop.run("xdotool", "windowfocus", "--sync", box, "type", "--delay", "20", text)
        app.desktop.run("xdotool", "key", "Return")
    wait_for(lambda: not app.desktop.windows(title), "the end of the file dialog")


def test_documents_are_slimmed_from_the_dialog_on(fix_page, tmp_path):
    subprocess.run([ROOT / "build" / "native" / "tests" / "slim" / "slim_tool", "documents", tmp_path], check=True)
    documents = {path.stem: path for path in tmp_path.glob("*.cdr")}
    (tmp_path / "damaged.cdr").write_bytes(b"PK\3\4 and nothing more")
    (tmp_path / "legacy.cdr").write_bytes(b"RIFF\4\0\0\0CDRA")
    names = ["x6", "x7", "x7-560-views"]
    before = {name: documents[name].read_bytes() for name in names}

    app = fix_page()
    app.click(SLIM)
    choose(app, tmp_path, *(f"{name}.cdr" for name in names), "damaged.cdr", "legacy.cdr")
    app.answer("File Slimming Confirmation", "n")
    assert not list(tmp_path.glob("*.mirelobak"))
    app.click(SLIM)
    choose(app, tmp_path, *(f"{name}.cdr" for name in names), "damaged.cdr", "legacy.cdr")
    app.answer("File Slimming Confirmation", "y")
    report = app.wait_for_report("  Tip: open one slimmed file in CDR", 60)
    assert "[Slim] Done: succeeded 3 / already clean 0 / failed or skipped 2." in report
    assert "[Slim] damaged.cdr: Not a recognizable CDR file (neither ZIP container nor legacy RIFF)" in report
    assert "[Slim] legacy.cdr: old format (riffData, X5-). Skipped - save as X6+ first." in report
    for name in names:
        assert report.count(f"[Check] {name}.cdr: views ") == 1 and report.count(f"  [OK] {name}.cdr: ") == 1
        (backup,) = tmp_path.glob(f"{name}.cdr.*.mirelobak")
        assert backup.read_bytes() == before[name] != documents[name].read_bytes()
        assert zipfile.ZipFile(documents[name]).testzip() is None
    app.click(SLIM)
    choose(app, tmp_path, f"{names[0]}.cdr")
    app.answer("File Slimming Confirmation", "y")
    app.wait_for_report(f"[Slim] {names[0]}.cdr: already clean, nothing to do.")
