"""The central job: a really hung program, real clicks, the diagnosis in the report."""

import time

import pytest

from driver import BUILD, CAPTURE, DASHBOARD, INSTANCE, SCAN, FIX_TAB, wait_for

PLUGIN_ADVICE = ("The block happens inside a plugin module. Temporarily move its .cpg file out of the Plugins folder to "
                 "verify, then contact the plugin author or find a replacement.")
SUBMIT = "  (No signature matched - you may click 'Submit Unknown' to feed the community database anonymously.)"

DIAGNOSES = {
    "plugin-sleep": ["[Stuck in a third-party plugin] (severity: high)", PLUGIN_ADVICE],
    "plugin-spin": ["[Stuck in a third-party plugin] (severity: high)", PLUGIN_ADVICE],
    "print": ["[Stuck in print spooling] (severity: high)"],
    "font": ["[Stuck in font enumeration/rendering] (severity: high)"],
    "core-dll": ["[Blocked in a CDR core module]  Suspect module: crlgeometry",
                 "Please submit this stack signature so we can analyze and add it.", SUBMIT],
    "third-party": ["[Blocked in a third-party component]  Suspect module: screenhook"],
    "system-wait": ["[Could not classify automatically]  Suspect module: System-level wait (submit to analyze further)"],
}


def diagnosis_of(report):
    lines = report.split("\n")
    start = lines.index("===== Diagnosis =====")
    frames = lines.index("--- Top 8 frames ---", start)
    return lines[start + 1:frames], [line for line in lines[frames + 1:] if line.startswith("  ")]


@pytest.mark.parametrize("way", DIAGNOSES)
def test_a_hang_is_explained(practice, mirelo, way):
    hung = practice(way)
    app = mirelo()
    app.click(CAPTURE)
    report = app.wait_for_report("--- Top 8 frames ---").replace("\r", "")
    assert f"[Capture] Target: PID " in report and "  Version 25.0.0.230\n" in report
    explanation, frames = diagnosis_of(report)
    assert explanation[:len(DIAGNOSES[way])] == DIAGNOSES[way]
    assert 1 <= len(frames) <= 8 and all("!" in frame for frame in frames)
    assert hung.process.poll() is None


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


def test_the_environment_is_checked_on_the_fix_page(mirelo):
    app = mirelo()
    app.show(FIX_TAB)
    app.click(SCAN)
    report = app.wait_for_report("Physical memory: ")
    for text in ("===== Environment Check =====", "Installed fonts: ", "GDI handle quota: "):
        assert text in report


def test_from_click_to_diagnosis(practice, mirelo, record_property):
    practice("plugin-sleep")
    app = mirelo()
    began = time.monotonic()
    app.click(CAPTURE)
    app.wait_for_report("--- Top 8 frames ---")
    record_property("click_to_diagnosis_s", round(time.monotonic() - began, 2))
