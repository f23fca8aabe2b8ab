"""The environment check on the spooler, the fonts and the registry as they are."""

from driver import CLEAR, SCAN
from staging import FONTS, QUOTA, VIRTUAL, import_registry


def scan(app):
    app.click(CLEAR)
    app.click(SCAN)
    head, *lines, last = app.wait_for_report("Physical memory").splitlines()
    assert head == "===== Environment Check =====" and last == ""
    return lines


def test_the_environment_check_reads_the_machine_as_it_is(fix_page, wine, printers, tmp_path):
    app = fix_page()
    rest = scan(app)
    for name, line in (("Studio", "[OK] Default printer: Studio"),
                       (VIRTUAL, f"[OK] Default printer: {VIRTUAL} (virtual printer - best practice)"),
                       ("Studio Queue", "[HIGH RISK] Default printer: Studio Queue"),
                       ("Asleep", "[HIGH RISK] Default printer: Asleep")):
        printers.default = name
        lines = scan(app)
        assert lines[0] == line and lines[-len(rest):] == rest
    installed = wine.run("reg", "query", FONTS).count("REG_SZ")
    try:
        import_registry(wine, tmp_path, f"[{FONTS}]", *(f'"Staged {i}"="x.ttf"' for i in range(1501 - installed)))
        wine.set_registry(QUOTA, "GDIProcessHandleQuota", 10001, "REG_DWORD")
        lines = scan(app)
        assert "[HIGH RISK] Installed fonts: 1501 fonts" in lines and "[OK] GDI handle quota: 10001" in lines
        wine.set_registry(QUOTA, "GDIProcessHandleQuota", 20000, "REG_SZ")
        assert "[WARN] GDI handle quota: 10000" in scan(app)
    finally:
        import_registry(wine, tmp_path, f"[{FONTS}]", *(f'"Staged {i}"=-' for i in range(1501)))
        wine.delete_registry(QUOTA, "GDIProcessHandleQuota")
