"""What a restart keeps, and what goes out while the network is switched off, before a real HTTPS server."""

from driver import ABOUT_TAB, CAPTURE, CLOUD_TAB, DIAGNOSE_TAB, NETWORK, SUBMIT, UPDATE
from signature_server import PROGRAM, rule, rule_document, signature_server

SWITCHED = ". Signature updates and submissions stop; local features are unaffected."


def test_nothing_is_sent_without_the_network_and_a_restart_keeps_what_was_chosen(tmp_path, wine, practice, mirelo):
    with signature_server(tmp_path, wine) as server:
        server.offer(rule_document(7, rule("hook-001", "Stuck in a screen-capture hook")))
        practice("own-code")
        app = mirelo(program=PROGRAM)
        app.wait_for_report("hot-updated")
        app.click(CAPTURE)
        app.wait_for_report("--- Top 8 frames ---")
        asked = len(server.requests)
        app.show(CLOUD_TAB)
        app.click(NETWORK)
        app.wait_for_report("[Cloud] Network disabled" + SWITCHED)
        app.click(UPDATE)
        app.wait_for_report("[Cloud] Network disabled (can be enabled in settings)")
        app.click(SUBMIT)
        app.answer("Anonymous Submission", "y")
        app.wait_for_report("[Submit] Network disabled, cannot submit")
        app.show(ABOUT_TAB)
        app.choose_language(6)
        app.show(DIAGNOSE_TAB)
        german = app.title()
        assert app.close_politely() == 0

        again = mirelo(program=PROGRAM, language=None)
        assert again.title() == german and "CDR Hang Diagnosis" not in german
        assert "[Signatures] 7 (5 rules)" in again.report() and "[Cloud]" not in again.report()
        assert len(server.requests) == asked
