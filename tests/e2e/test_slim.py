"""The Slim button: many documents at once, and documents, disks and programs that stand in the way."""

import os
import struct
import subprocess

import pytest

from driver import SLIM
from staging import document

QUESTION = "File Slimming Confirmation"
REFUSED = "failed: Repack verification failed: {}. File not modified, backup kept."
EMBED = "embed/embedding1.png"


def slim(app, folder, *names):
    app.click(SLIM)
    app.choose_files(folder, *names)
    app.answer(QUESTION, "y")
    return app.wait_for_report("  Tip: open one slimmed file in CDR", 60)


def changed(where, value, form="<I"):
    """A document with one field of the embedded picture's headers changed, or of the end record, from its end."""
    data = bytearray(document())
    central = data.rindex(b"PK\1\2")
    local = struct.unpack_from("<I", data, central + 42)[0]
    struct.pack_into(form, data, {"central": central, "local": local, "end": len(data)}[where[0]] + where[1], value)
    return bytes(data)


DAMAGED = {
    "zip64": (changed(("central", 20), 0xFFFFFFFF), f'"{EMBED}" has 64-bit sizes (ZIP64)'),
    "encrypted": (changed(("central", 8), 1, "<H"), f'"{EMBED}" is encrypted'),
    "central": (changed(("central", 0), 0x02014B51), "the directory of the archive is damaged"),
    "local": (changed(("local", 0), 0x04034B51), f'"{EMBED}" has no usable data'),
    "size": (changed(("central", 24), 199), f'"{EMBED}" does not match its checksum'),
    "count": (changed(("end", -12), 7, "<H"), "the directory of the archive is damaged"),
    "sum": (changed(("central", 16), 0), f'"{EMBED}" does not match its checksum'),
}


def test_damaged_documents_stay_as_they_are(fix_page, tmp_path):
    for name, (contents, _) in DAMAGED.items():
        (tmp_path / f"{name}.cdr").write_bytes(contents)
    report = slim(fix_page(), tmp_path, *(f"{name}.cdr" for name in DAMAGED))
    assert f"succeeded 0 / already clean 0 / failed or skipped {len(DAMAGED)}." in report
    for name, (contents, detail) in DAMAGED.items():
        assert f"[Slim] {name}.cdr {REFUSED.format(detail)}" in report
        assert (tmp_path / f"{name}.cdr").read_bytes() == contents


@pytest.mark.skipif(os.geteuid() != 0, reason="no right to mount a small disk")
def test_a_disk_that_fills_up(fix_page, tmp_path):
    # Its drawing is stored when it is slimmed: the new contents need far more room than the old.
    former = document(leaves=20000)
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=128k", "tmpfs", tmp_path], check=True)
    try:
        (tmp_path / "plan.cdr").write_bytes(former)
        report = slim(fix_page(), tmp_path, "plan.cdr")
        assert "[Slim] plan.cdr failed: Failed to write back (file may be held by CDR). Backup kept: " in report
        (backup,) = tmp_path.glob("*.mirelobak")
        assert (tmp_path / "plan.cdr").read_bytes() == former == backup.read_bytes()
    finally:
        subprocess.run(["umount", "-l", tmp_path], check=True)


def test_a_hundred_documents_and_a_selection_that_is_too_long(fix_page, tmp_path):
    hundred = [f"plan {number}.cdr" for number in range(100)]
    too_many = [f"{number:090}.cdr" for number in range(100)]
    for name in hundred + too_many:
        (tmp_path / name).write_bytes(document())
    app = fix_page()
    app.click(SLIM)
    app.choose_files(tmp_path, *too_many)
    report = app.wait_for_report("[Slim] Selection too long: the file names together exceed 8192 characters.")
    assert "[Check]" not in report and not app.desktop.windows(QUESTION)
    assert "succeeded 100 / already clean 0 / failed or skipped 0." in slim(app, tmp_path, *hundred)
    assert len(list(tmp_path.glob("plan *.cdr.*.mirelobak"))) == len(list(tmp_path.glob("*.mirelobak"))) == 100
