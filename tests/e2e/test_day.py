"""A working day in one process: every page, every button, and what is left afterwards on disk, in the registry and
of the default printer."""

import zipfile

import pytest

from driver import (ABOUT_TAB, CAPTURE, CLEANUP, CLEAR, CLOUD_TAB, COPY, DASHBOARD, DIAGNOSE_TAB, FIX_TAB, NETWORK,
                    PRINTER, RESTORE, SCAN, SETTINGS, SLIM, SUBMIT, UPDATE, wait_for)
from signature_server import PROGRAM, rule, rule_document, signature_server
from staging import VIRTUAL, document

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


def diagnose_every_hang(app, practice):
    for way, diagnosis in DIAGNOSES.items():
        hung = practice(way)
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


def ask_the_service(app, server):
    app.click(DASHBOARD)
    assert "  Responsive: NO" in app.wait_for_report("[Dashboard] GDI handles: ")
    app.show(CLOUD_TAB)
    app.click(SUBMIT)
    app.answer("Anonymous Submission", "y")
    app.wait_for_report("[Submit] Anonymously submitted ")
    assert len(server.submissions()) == 1
    server.offer(rule_document(8, rule("hook-001", "Stuck in a hook"), rule("hook-002", "Another")))
    app.click(UPDATE)
    app.wait_for_report("[Cloud] Signatures updated to v8 (6 rules)")
    app.click(NETWORK)
    app.wait_for_report("[Cloud] Network disabled. Signature updates and submissions stop")


def tidy_up(app, printers, caches):
    app.show(FIX_TAB)
    app.click(SCAN)
    app.wait_for_report("Physical memory: ")
    app.click(PRINTER)
    app.answer("Confirm Temp Switch", "y")
    app.wait_for_report("[Printer] Switched. Original default: Studio Queue (auto-restored on exit)")
    assert printers.default == VIRTUAL
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
    names = sorted(path.name for path in folder.glob("*.cdr"))
    app.click(SLIM)
    app.choose_files(folder, *names)
    app.answer("File Slimming Confirmation", "y")
    app.wait_for_report("[Slim] Done: succeeded 3 / already clean 1 / failed or skipped 2.", 60)


def look_around(app):
    panel = app.kind("panel")
    if not app.by_keyboard:
        for _ in range(80):
            app.click_at(panel.x + 40, panel.y + 15, button=4)
        wait_for(lambda: app.click_at(panel.x + 40, panel.y + 15) or
                 app.report("ctrl+c").startswith(("[Dashboard]", "[Capture]")), "an old line at the top")
    for tab in (DIAGNOSE_TAB, ABOUT_TAB):
        app.show(tab)
    english = app.title()
    for position in (6, 0, 4):
        before = app.title()
        app.choose_language(position)
        wait_for(lambda: app.title() != before, "a title in the new language")
    assert app.title() == english
    whole = app.report()
    app.click(COPY)
    wait_for(lambda: app.desktop.clipboard() == whole, "the whole report")
    app.click(CLEAR)
    wait_for(app.has_no_report, "an empty report")


def end_the_session(app):
    """As a log-off does: the window is told that the session ends, and nobody closes it."""
    app.wine.run("wineboot", "--end-session")
    wait_for(lambda: app.process.poll() is not None, "the program's end")


def stage_documents(folder):
    documents = {"poster": document(), "catalogue": document(views=560), "inks": document(views=0, previews=0),
                 "clean": document(0, 0, 0), "damaged": b"PK\3\4 and nothing more", "legacy": b"RIFF\4\0\0\0CDRA"}
    for name, contents in documents.items():
        (folder / f"{name}.cdr").write_bytes(contents)
    return {path: path.read_bytes() for path in folder.glob("*.cdr")}


@pytest.mark.parametrize("hand", ["mouse", "keyboard"])
def test_a_working_day(hand, wine, mirelo, practice, printers, settings, caches, tmp_path):
    folder = tmp_path / "documents"
    folder.mkdir()
    documents = stage_documents(folder)
    printers.default = "Studio Queue"
    with signature_server(tmp_path, wine) as server:
        cache = wine.tool_folder / "signatures.cache.json"
        cache.parent.mkdir(parents=True, exist_ok=True)
        cache.write_text(rule_document(5, rule("hook-001", "Stuck in an old hook")))
        server.offer(rule_document(7, rule("hook-001", "Stuck in a screen-capture hook")))

        app = mirelo(program=PROGRAM, by_keyboard=hand == "keyboard")
        assert "[Signatures] 5 (5 rules)" in app.report()
        app.wait_for_report("[Cloud] Signatures hot-updated to v7 in background (5 rules).")
        hung = diagnose_every_hang(app, practice)
        ask_the_service(app, server)
        hung.close()
        tidy_up(app, printers, caches)
        slim_documents(app, folder)
        look_around(app)
        if hand == "mouse":
            end_the_session(app)
        else:
            assert app.close_politely() == 0

        assert cache.read_bytes() == server.document.read_bytes()
        assert (wine.tool_folder / "config.json").read_text() == '{"lang":4}\n'
        assert "NetworkEnabled    REG_SZ    0" in wine.run("reg", "query", r"HKCU\Software\Mirelo")
    assert printers.default == "Studio Queue"
    assert {path: path.read_bytes() for path in caches} == caches
    assert settings() == {"UndoLevels": "30", "ShowWelcomeScreen": "0x0"}
    for path, before in documents.items():
        backups = list(folder.glob(f"{path.name}.*.mirelobak"))
        if path.name in ("damaged.cdr", "legacy.cdr", "clean.cdr"):
            assert path.read_bytes() == before and not backups
        else:
            assert [backup.read_bytes() for backup in backups] == [before] and path.read_bytes() != before
            assert zipfile.ZipFile(path).testzip() is None
