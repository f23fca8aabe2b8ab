"""A working day in one process: every page, every button, and what is left afterwards on disk, in the registry and
of the default printer."""

import json
import pathlib
import signal
import sys
import zipfile
from contextlib import closing

import pytest

from driver import (ABOUT_TAB, BUILD, CAPTURE, CLEANUP, CLEAR, CLOUD_TAB, COPY, DASHBOARD, DIAGNOSE_TAB, FIX_TAB,
                    LANGUAGE, NETWORK, PANEL, PRINTER, RESTORE, SCAN, SETTINGS, SLIM, SUBMIT, UPDATE, Mirelo, Practice,
                    wait_for)
from staging import VIRTUAL, coreldraw, document, printers

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "cloud" / "https_e2e"))
from servers import OddServer  # noqa: E402

PROGRAM = BUILD / "tests" / "mirelo_local.exe"
FONTS, QUOTA = (rf"HKLM\Software\Microsoft\Windows NT\CurrentVersion\{key}" for key in ("Fonts", "Windows"))
GERMAN = 6
PLUGIN = ["[Stuck in a third-party plugin] (severity: high)",
          "The block happens inside a plugin module. Temporarily move its .cpg file out of the Plugins folder to verify, "
          "then contact the plugin author or find a replacement."]
OWN_CODE = ["[Blocked in a CDR core module]  Suspect module: coreldrw",
            "Please submit this stack signature so we can analyze and add it."]
DIAGNOSES = {
    "plugin-sleep": PLUGIN,
    "own-code": OWN_CODE,
    "lock-held": OWN_CODE,
    "third-party": ["[Stuck in a screen-capture hook] (severity: high)", "Close the capture tool."],
}
NO_MATCH = "  (No signature matched - you may click 'Submit Unknown' to feed the community database anonymously.)"


def rule_document(version, *titles):
    return json.dumps({"version": version, "rules": [
        {"id": f"hook-{number:03}", "category": "third_party", "module": "screenhook", "title": title,
         "severity": "high", "advice": "Close the capture tool."} for number, title in enumerate(titles)]})


def forget_the_service(wine):
    """No rule cache, and the network switch as after installation."""
    wine.delete_registry(r"HKCU\Software\Mirelo")
    (wine.tool_folder / "signatures.cache.json").unlink(missing_ok=True)


def diagnose_every_hang(app, stage):
    for way, diagnosis in DIAGNOSES.items():
        hung = stage.enter_context(closing(Practice(app.wine, way)))
        app.refresh()
        app.click(CLEAR)
        app.click(CAPTURE)
        report = app.wait_for_report("--- Top 8 frames ---").replace("\r", "").split("\n")
        assert report[0].startswith(f"[Capture] Target: PID {hung.pid}"), way
        start, frames = report.index("===== Diagnosis ====="), report.index("--- Top 8 frames ---")
        explanation = report[start + 1:frames]
        assert explanation[:len(diagnosis)] == diagnosis, way
        assert (NO_MATCH in explanation) == ("severity" not in diagnosis[0]), way
        stack = [line for line in report[frames + 1:] if line.startswith("  ")]
        assert 1 <= len(stack) <= 8 and all("!" in line for line in stack), way
        assert report.index("===== Evidence =====") == frames + len(stack) + 2, way
        held = [line for line in report if line.startswith("[Evidence] Thread ") and "holder.cpg!" in line]
        assert len(held) == (way == "lock-held"), way
        assert hung.process.poll() is None, way
        if way != "third-party":
            hung.close()
    return hung


def ask_the_service(app, server, rules):
    app.click(DASHBOARD)
    assert "  Responsive: NO" in app.wait_for_report("[Dashboard] GDI handles: ")
    app.show(CLOUD_TAB)
    app.click(SUBMIT)
    app.answer("Anonymous Submission", "y")
    app.wait_for_report("[Submit] Anonymously submitted ")
    assert [method for method, *_ in server.requests].count("POST") == 1
    rules.write_text(rule_document(8, "Stuck in a hook", "Another"))
    app.click(UPDATE)
    app.wait_for_report("[Cloud] Signatures updated to v8 (6 rules)")
    app.click(NETWORK)
    app.wait_for_report("[Cloud] Network disabled. Signature updates and submissions stop")


def tidy_up(app, default_printer, caches):
    app.show(FIX_TAB)
    app.wine.set_registry(QUOTA, "GDIProcessHandleQuota", 12345, "REG_DWORD")
    app.click(SCAN)
    found = app.wait_for_report("Physical memory: ")
    app.wine.delete_registry(QUOTA, "/v", "GDIProcessHandleQuota")
    fonts = app.wine.run("reg", "query", FONTS).count("REG_SZ")
    assert "[HIGH RISK] Default printer: Studio Queue" in found and "[OK] GDI handle quota: 12345" in found
    assert f"Installed fonts: {fonts} fonts" in found
    app.click(PRINTER)
    app.answer("Confirm Temp Switch", "y")
    app.wait_for_report("[Printer] Switched. Original default: Studio Queue (auto-restored on exit)")
    assert VIRTUAL in default_printer()
    app.click(CLEANUP)
    app.answer("Confirm Cache Cleanup", "y")
    app.wait_for_report("[Cleanup] [OK] 2 files")
    assert sum(path.exists() for path in caches) == 1
    app.click(RESTORE)
    app.wait_for_report("[Restore] [OK] 2 files")
    app.click(SETTINGS)
    app.answer("Confirm Settings Optimization", "y")
    app.wait_for_report("[Settings] [OK] 2 of 2 settings changed")


def slim_documents(app, folder):
    app.click(SLIM)
    app.choose_files(folder / "many", *(path.name for path in (folder / "many").iterdir()))
    app.wait_for_report("[Slim] Selection too long: the file names together exceed 8192 characters.")
    app.click(SLIM)
    app.choose_files(folder, *(path.name for path in folder.glob("*.cdr")))
    app.answer("File Slimming Confirmation", "y")
    app.wait_for_report("[Slim] Done: succeeded 3 / already clean 1 / failed or skipped 2.", 60)


def look_around(app):
    panel = app.element(PANEL)
    if not app.by_keyboard:
        app.click_at(panel.x + 40, panel.y + 15, button=4, times=80)
        wait_for(lambda: app.click_at(panel.x + 40, panel.y + 15) or
                 app.report("ctrl+c").startswith(("[Dashboard]", "[Capture]")), "an old line at the top")
    for tab in (DIAGNOSE_TAB, ABOUT_TAB):
        app.show(tab)
    for position in (0, GERMAN):
        before = app.title()
        app.click(LANGUAGE + position)
        app.language = position
        wait_for(lambda: app.title() != before, "a title in the new language")
    whole = app.report()
    app.click(COPY)
    wait_for(lambda: app.desktop.clipboard() == whole, "the whole report")


def stage_documents(folder):
    documents = {"poster": document(), "catalogue": document(views=560), "inks": document(views=0, previews=0),
                 "clean": document(0, 0, 0), "damaged": b"PK\3\4 and nothing more", "legacy": b"RIFF\4\0\0\0CDRA"}
    for name, contents in documents.items():
        (folder / f"{name}.cdr").write_bytes(contents)
    return {path: path.read_bytes() for path in folder.glob("*.cdr")}


@pytest.mark.parametrize("hand", ["mouse", "keyboard"])
def test_a_working_day(hand, wine, stage, tmp_path):
    folder = tmp_path / "documents"
    (folder / "many").mkdir(parents=True)
    for number in range(100):
        (folder / "many" / f"{number:090}.cdr").touch()
    documents = stage_documents(folder)
    default_printer = stage.enter_context(printers(wine, tmp_path))
    caches, settings = stage.enter_context(coreldraw(wine))
    forget_the_service(wine)
    stage.callback(forget_the_service, wine)
    server = stage.enter_context(closing(OddServer(tmp_path, port=443)))
    rules = server.www / "api" / "mirelo" / "signatures.php"
    rules.parent.mkdir(parents=True)
    cache = wine.tool_folder / "signatures.cache.json"
    cache.parent.mkdir(parents=True, exist_ok=True)
    cache.write_text(rule_document(5, "Stuck in an old hook"))
    rules.write_text(rule_document(7, "Stuck in a screen-capture hook"))

    app = stage.enter_context(closing(Mirelo(wine, program=PROGRAM, by_keyboard=hand == "keyboard")))
    assert "[Signatures] 5 (5 rules)" in app.report()
    app.wait_for_report("[Cloud] Signatures hot-updated to v7 in background (5 rules).")
    hung = diagnose_every_hang(app, stage)
    ask_the_service(app, server, rules)
    hung.close()
    tidy_up(app, default_printer, caches)
    slim_documents(app, folder)
    look_around(app)
    if hand == "mouse":
        wine.run("wineboot", "--end-session")  # a log-off: the window is told, and nobody closes it
    else:
        app.key("alt+F4")
    wait_for(lambda: app.process.poll() is not None, "the program's end")
    # Behind a log-off the system kills whoever has not ended yet; what matters was done when it was told.
    assert app.process.returncode in ((0, -signal.SIGKILL) if hand == "mouse" else (0,))

    assert cache.read_bytes() == rules.read_bytes()
    assert "NetworkEnabled    REG_SZ    0" in wine.run("reg", "query", r"HKCU\Software\Mirelo")
    asked = len(server.requests)
    tomorrow = stage.enter_context(closing(Mirelo(wine, program=PROGRAM, language=None)))
    assert "CDR Hang Diagnosis" not in tomorrow.title(), "still in German"
    assert "[Signatures] 8 (6 rules)" in tomorrow.report() and len(server.requests) == asked
    assert "Studio Queue" in default_printer()
    assert {path: path.read_bytes() for path in caches} == caches
    assert settings() == {"UndoLevels": "30", "ShowWelcomeScreen": "0x0"}
    for path, before in documents.items():
        backups = list(folder.glob(f"{path.name}.*.mirelobak"))
        if path.name in ("damaged.cdr", "legacy.cdr", "clean.cdr"):
            assert path.read_bytes() == before and not backups
        else:
            assert [backup.read_bytes() for backup in backups] == [before] and path.read_bytes() != before
            assert zipfile.ZipFile(path).testzip() is None
