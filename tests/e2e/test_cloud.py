"""The Cloud page against a real HTTPS server on this machine, whose certificate nobody signed."""

import pytest

from driver import CAPTURE, CLOUD_TAB, DIAGNOSE_TAB, NETWORK, SUBMIT, UPDATE, wait_for
from signature_server import PROGRAM, rule, rule_document, signature_server

SWITCHED = ". Signature updates and submissions stop; local features are unaffected."


@pytest.fixture
def server(tmp_path, wine):
    with signature_server(tmp_path, wine) as running:
        yield running


def test_rules_arrive_in_the_background_and_on_request(server, wine, mirelo):
    server.offer(rule_document(7, rule("hook-001", "Stuck in a screen-capture hook")))
    app = mirelo(program=PROGRAM)
    report = app.wait_for_report("hot-updated")
    assert "[Signatures] 0 (4 rules)" in report
    assert "[Cloud] Signatures hot-updated to v7 in background (5 rules)." in report
    cache = wine.tool_folder / "signatures.cache.json"
    assert cache.read_bytes() == server.document.read_bytes()

    app.show(CLOUD_TAB)
    server.offer(rule_document(8, rule("hook-001", "Stuck in a hook"), rule("hook-002", "Another")))
    app.click(UPDATE)
    app.wait_for_report("[Cloud] Signatures updated to v8 (6 rules)")
    newest = cache.read_bytes()
    for text in ('{"version":3,"rules":[{"id":"old","title":"old"}]}', '{"version":9}', "no JSON"):
        server.offer(text)
        before = app.report().count("[Cloud] Cloud data format invalid, ignored")
        app.click(UPDATE)
        wait_for(lambda: app.report().count("[Cloud] Cloud data format invalid, ignored") == before + 1, "a refusal")
    server.document.unlink()
    app.click(UPDATE)
    app.wait_for_report("[Cloud] Cloud unreachable, keeping current signatures")
    assert cache.read_bytes() == newest
    app.close()

    again = mirelo(program=PROGRAM)
    assert "[Signatures] 8 (6 rules)" in again.report()


def test_nothing_is_sent_without_a_capture_a_yes_and_the_network(server, practice, mirelo):
    server.offer(rule_document(7, rule("hook-001", "Stuck in a screen-capture hook")))
    practice("own-code")
    app = mirelo(program=PROGRAM)
    app.wait_for_report("hot-updated")
    app.show(CLOUD_TAB)
    app.click(SUBMIT)
    app.wait_for_report("[Submit] No capture data yet. Use 'Capture Now' first; submit when no signature matched.")
    app.show(DIAGNOSE_TAB)
    app.click(CAPTURE)
    app.wait_for_report("--- Top 8 frames ---")
    asked = len(server.requests)

    app.show(CLOUD_TAB)
    app.click(SUBMIT)
    app.answer("Anonymous Submission", "n")
    app.click(NETWORK)
    app.wait_for_report("[Cloud] Network disabled" + SWITCHED)
    app.click(UPDATE)
    app.wait_for_report("[Cloud] Network disabled (can be enabled in settings)")
    app.click(SUBMIT)
    app.answer("Anonymous Submission", "y")
    app.wait_for_report("[Submit] Network disabled, cannot submit")
    app.close()

    again = mirelo(program=PROGRAM)
    assert "[Signatures] 7 (5 rules)" in again.report() and "[Cloud]" not in again.report()
    again.show(CLOUD_TAB)
    again.click(NETWORK)
    again.wait_for_report("[Cloud] Network enabled" + SWITCHED)
    assert len(server.requests) == asked
