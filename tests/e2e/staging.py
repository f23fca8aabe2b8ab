"""Stages what Mirelo meets outside of its window, for tests and for pictures."""

import contextlib
import io
import random
import shutil
import struct
import zipfile

from driver import windows_path

VIRTUAL = "Microsoft Print to PDF"
PORTS = {"Studio Queue": r"\\server\queue", VIRTUAL: "PORTPROMPT:"}
PRINTERS = r"HKEY_LOCAL_MACHINE\System\CurrentControlSet\Control\Print\Printers"
WINDOWS = r"HKEY_CURRENT_USER\Software\Microsoft\Windows NT\CurrentVersion"
PREFERENCES = r"HKCU\Software\Corel\CorelDRAW\25.0\Draw\Application Preferences\Framework"


@contextlib.contextmanager
def printers(wine, folder):
    """Wine's spooler lives in the registry, so printers can be staged, a network printer as the default. Gives a
    reader of the default."""
    def import_registry(*lines):
        path = folder / "staged.reg"
        path.write_text("\r\n".join(("\ufeffWindows Registry Editor Version 5.00", *lines, "")), "utf-16-le", newline="")
        wine.run("reg", "import", windows_path(path))

    lines = []
    for name, port in PORTS.items():
        port = port.replace("\\", r"\\")
        lines += [f"[{PRINTERS}\\{name}]", f'"Name"="{name}"', f'"Port"="{port}"', '"Printer Driver"="wineps.drv"',
                  '"Print Processor"="WinPrint"', rf"[{WINDOWS}\Devices]", f'"{name}"="winspool,{port}"']
    import_registry(*lines, rf"[{WINDOWS}\Windows]", '"Device"="Studio Queue,winspool,LPT1:"')
    try:
        yield lambda: wine.run("reg", "query", rf"{WINDOWS}\Windows", "/v", "Device")
    finally:
        import_registry(*(f"[-{PRINTERS}\\{name}]" for name in PORTS), rf"[{WINDOWS}\Devices]",
                        *(f'"{name}"=-' for name in PORTS), rf"[{WINDOWS}\Windows]", '"Device"=-')


def chunk(name, data):
    return name + struct.pack("<I", len(data)) + data + b"\0" * (len(data) % 2)


def document(views=3, styles=5, previews=2, payload=200, leaves=1):
    """A document of X7 or later; `payload` bytes are for each of its large entries, `leaves` for its drawing."""
    noise = random.Random(1)
    bookmarks = chunk(b"LIST", b"bmkt" + chunk(b"bmrk", bytes(16)) * views)
    page = chunk(b"LIST", b"page" + chunk(b"loda", bytes(16)) * leaves)
    inks = '<color cs="CMYK" name="Ink" tints="0,0,0,1"/>' * styles
    entries = {
        "content/data/Bitmaps.dat": noise.randbytes(payload),
        "content/root.dat": chunk(b"RIFF", b"CDRR" + chunk(b"vrsn", bytes(2)) + chunk(b"LIST", b"doc " + bookmarks) + page),
        **{f"previews/page{number}.png": noise.randbytes(payload // 8) for number in range(previews)},
        "color/docPalette.xml": f"<palette><colors><page>{inks}</page></colors></palette>",
        "META-INF/metadata.xml": "<metadata/>",
    }
    file = io.BytesIO()
    with zipfile.ZipFile(file, "w", zipfile.ZIP_DEFLATED) as archive:
        archive.writestr("mimetype", "application/x-vnd.corel.zcf.draw.document+zip", zipfile.ZIP_STORED)
        for name, contents in entries.items():
            archive.writestr(name, contents)
        archive.writestr("embed/embedding1.png", noise.randbytes(payload), zipfile.ZIP_STORED)
    return file.getvalue()


@contextlib.contextmanager
def coreldraw(wine):
    """Files that are worth cleaning and one that is not, and settings that slow CorelDRAW down. Gives the files'
    contents and a reader of the settings."""
    local = wine.tool_folder.parents[1] / "Local"
    contents = {
        local / "CrashDumps" / "CorelDRW.exe.4711.dmp": b"dump" * 1000,
        local / "Corel" / "CorelDRAW Graphics Suite X7" / "Draw" / "PreviewCache" / "bild 中.tmp": b"preview",
        local / "CrashDumps" / "other.exe.1.dmp": b"foreign",
    }
    for path, content in contents.items():
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
    wine.set_registry(PREFERENCES, "UndoLevels", "150")
    wine.set_registry(PREFERENCES, "ShowWelcomeScreen", "1", "REG_DWORD")

    def settings():
        words = wine.run("reg", "query", PREFERENCES).split()
        return {name: words[words.index(name) + 2] for name in ("UndoLevels", "ShowWelcomeScreen")}

    try:
        yield contents, settings
    finally:
        for path in contents:
            path.unlink(missing_ok=True)
        shutil.rmtree(local / "Mirelo" / "backups", ignore_errors=True)
        wine.delete_registry(r"HKCU\Software\Corel")
