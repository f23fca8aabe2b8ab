"""Capture Now and the dashboard where there is no hang to explain, or no instance, or a choice of them."""

from driver import BUILD, CAPTURE, DASHBOARD, INSTANCE


def test_a_responsive_instance_is_left_alone(practice, mirelo):
    practice("responsive")
    app = mirelo()
    app.click(CAPTURE)
    report = app.wait_for_report("responsive right now")
    assert "[Capture] CDR main thread is responsive right now. Click 'Capture Now' again while it hangs." in report
    assert "Diagnosis" not in report


def test_without_an_instance_the_buttons_ask_for_one(mirelo):
    app = mirelo()
    app.click(CAPTURE)
    app.wait_for_report("[Capture] Please select a CDR instance first.")
    app.click(DASHBOARD)
    app.wait_for_report("[Dashboard] Please select a CDR instance first.")


def test_an_instance_that_has_gone_is_said_to_be_out_of_reach(practice, mirelo):
    gone = practice("responsive")
    app = mirelo()
    gone.close()
    app.click(CAPTURE)
    app.wait_for_report("[Capture] Failed: Cannot open the CDR process (insufficient rights). Make sure CDR and this tool "
                        "run as the same user.")
    app.click(DASHBOARD)
    app.wait_for_report("[Dashboard] Cannot read CDR process metrics.")
    app.refresh()
    app.click(CAPTURE)
    app.wait_for_report("[Capture] Please select a CDR instance first.")


def test_rows_are_selected_by_clicks_and_survive_a_refresh(practice, mirelo):
    practice("responsive")
    practice("font", program=BUILD / "practice" / "plain" / "CorelDRW.exe")
    app = mirelo()
    assert app.instances == 2
    app.click(CAPTURE)
    app.wait_for_report("responsive right now")
    app.click(INSTANCE + 1)
    app.refresh()
    app.click(CAPTURE)
    assert "  Version (unknown)" in app.wait_for_report("===== Diagnosis =====")
    app.click(DASHBOARD)
    report = app.wait_for_report("[Dashboard] GDI handles: ", 60)
    assert "  Responsive: NO" in report
