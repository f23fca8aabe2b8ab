"""The Slim button from its file dialog to the summary, with selections of every kind."""

import shutil
import zipfile

import pytest

from driver import BUILD, SLIM, windows_path

QUESTION = "File Slimming Confirmation"


@pytest.fixture(scope="module")
def samples(wine, tmp_path_factory):
    folder = tmp_path_factory.mktemp("samples")
    wine.run(BUILD / "tests" / "slim" / "slim_tool.exe", "documents", windows_path(folder))
    return folder


def choose(app, *selection):
    app.click(SLIM)
    app.choose_files(*selection)


def test_sound_damaged_old_and_clean_documents(fix_page, samples, tmp_path):
    documents = {name: tmp_path / f"{name}.cdr" for name in ("x6", "x7", "x7-560-views", "x7-clean")}
    for name, path in documents.items():
        shutil.copy(samples / path.name, path)
    before = {name: path.read_bytes() for name, path in documents.items()}
    (tmp_path / "damaged.cdr").write_bytes(b"PK\3\4 and nothing more")
    (tmp_path / "legacy.cdr").write_bytes(b"RIFF\4\0\0\0CDRA")
    names = sorted(path.name for path in tmp_path.glob("*.cdr"))

    app = fix_page()
    choose(app)
    choose(app, tmp_path, *names)
    app.answer(QUESTION, "n")
    assert not list(tmp_path.glob("*.mirelobak")) and "[Slim]" not in app.report()
    choose(app, tmp_path, *names)
    app.answer(QUESTION, "y")
    report = app.wait_for_report("  Tip: open one slimmed file in CDR", 60)
    assert "[Slim] Done: succeeded 3 / already clean 1 / failed or skipped 2." in report
    assert "[Slim] damaged.cdr: Not a recognizable CDR file (neither ZIP container nor legacy RIFF)" in report
    assert "[Slim] legacy.cdr: old format (riffData, X5-). Skipped - save as X6+ first." in report
    for name in ("x6", "x7", "x7-560-views"):
        assert report.count(f"[Check] {name}.cdr: views ") == 1 and report.count(f"  [OK] {name}.cdr: ") == 1
        (backup,) = tmp_path.glob(f"{name}.cdr.*.mirelobak")
        assert backup.read_bytes() == before[name] != documents[name].read_bytes()
        assert zipfile.ZipFile(documents[name]).testzip() is None
    assert documents["x7-clean"].read_bytes() == before["x7-clean"]
    choose(app, tmp_path, "x6.cdr")
    app.answer(QUESTION, "y")
    app.wait_for_report("[Slim] x6.cdr: already clean, nothing to do.")


def test_a_hundred_documents_and_a_selection_that_is_too_long(fix_page, samples, tmp_path):
    hundred = [f"plan {number}.cdr" for number in range(100)]
    too_many = [f"{number:090}.cdr" for number in range(100)]
    for name in hundred + too_many:
        shutil.copy(samples / "x7.cdr", tmp_path / name)
    app = fix_page()
    choose(app, tmp_path, *too_many)
    report = app.wait_for_report("[Slim] Selection too long: the file names together exceed 8192 characters.")
    assert "[Check]" not in report and not app.desktop.windows(QUESTION)
    choose(app, tmp_path, *hundred)
    app.answer(QUESTION, "y")
    app.wait_for_report("[Slim] Done: succeeded 100 / already clean 0 / failed or skipped 0.", 60)
    assert len(list(tmp_path.glob("plan *.cdr.*.mirelobak"))) == 100
    assert len(list(tmp_path.glob("*.mirelobak"))) == 100
