"""Stages what the Fix page finds, for tests and for pictures."""

import contextlib
import io
import random
import shutil
import struct
import zipfile

from driver import windows_path

MACHINE = "HKEY_LOCAL_MACHINE"
PRINTERS = rf"{MACHINE}\System\CurrentControlSet\Control\Print\Printers"
FONTS = rf"{MACHINE}\Software\Microsoft\Windows NT\CurrentVersion\Fonts"
QUOTA = rf"{MACHINE}\Software\Microsoft\Windows NT\CurrentVersion\Windows"
VIRTUAL = "Microsoft Print to PDF"
DEVICES = r"HKEY_CURRENT_USER\Software\Microsoft\Windows NT\CurrentVersion\Devices"
DEFAULT = r"HKEY_CURRENT_USER\Software\Microsoft\Windows NT\CurrentVersion\Windows"
PREFERENCES = r"HKCU\Software\Corel\CorelDRAW\25.0\Draw\Application Preferences\Framework"


def import_registry(wine, tmp_path, *lines):
    path = tmp_path / "staged.reg"
    path.write_text("\r\n".join(("\ufeffWindows Registry Editor Version 5.00", "", *lines, "")), "utf-16-le", newline="")
    wine.run("reg", "import", windows_path(path))


def quoted(text):
    return '"' + text.replace("\\", "\\\\") + '"'


class Spooler:
    """Wine's spooler lives in the registry, so printers can be staged. It reports no status: offline is an attribute."""

    PRINTERS = {"Studio": ("LPT1:", 0), "Studio Queue": (r"\\server\queue", 0), "Asleep": ("LPT1:", 0x400),
                VIRTUAL: ("PORTPROMPT:", 0)}

    def __init__(self, wine, tmp_path):
        self._wine, self._folder = wine, tmp_path
        lines = []
        for name, (port, attributes) in self.PRINTERS.items():
            lines += [f"[{PRINTERS}\\{name}]", f'"Name"={quoted(name)}', f'"Port"={quoted(port)}',
                      '"Printer Driver"="wineps.drv"', '"Print Processor"="WinPrint"',
                      f'"Attributes"=dword:{attributes:08x}', '"Status"=dword:00000000']
        ports = [f'"{name}"={quoted("winspool," + port)}' for name, (port, _) in self.PRINTERS.items()]
        import_registry(wine, tmp_path, *lines, f"[{DEVICES}]", *ports, f"[{DEFAULT}]", '"Device"=-')

    def close(self):
        import_registry(self._wine, self._folder, *(f"[-{PRINTERS}\\{name}]" for name in self.PRINTERS),
                        f"[{DEVICES}]", *(f'"{name}"=-' for name in self.PRINTERS), f"[{DEFAULT}]", '"Device"=-')

    @property
    def default(self):
        text = self._wine.run("reg", "query", DEFAULT, "/v", "Device")
        return text.split("REG_SZ")[1].strip().split(",")[0] if "REG_SZ" in text else None

    @default.setter
    def default(self, name):
        if name:
            self._wine.set_registry(DEFAULT, "Device", f"{name},winspool,LPT1:")
        else:
            self._wine.delete_registry(DEFAULT, "Device")


def backups_folder(wine):
    return wine.tool_folder.parents[1] / "Local" / "Mirelo" / "backups"


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
def caches_of_coreldraw(wine):
    """Files that are worth cleaning and one that is not; gives their contents."""
    local = wine.tool_folder.parents[1] / "Local"
    contents = {
        local / "CrashDumps" / "CorelDRW.exe.4711.dmp": b"dump" * 1000,
        local / "Corel" / "CorelDRAW Graphics Suite X7" / "Draw" / "PreviewCache" / "bild 中.tmp": b"preview",
        local / "CrashDumps" / "other.exe.1.dmp": b"foreign",
    }
    for path, content in contents.items():
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
    try:
        yield contents
    finally:
        for path in contents:
            path.unlink(missing_ok=True)
        shutil.rmtree(backups_folder(wine), ignore_errors=True)


@contextlib.contextmanager
def settings_of_coreldraw(wine):
    """Settings as they slow CorelDRAW down; gives a reader of them."""
    wine.set_registry(PREFERENCES, "UndoLevels", "150")
    wine.set_registry(PREFERENCES, "ShowWelcomeScreen", "1", "REG_DWORD")

    def read():
        words = wine.run("reg", "query", PREFERENCES).split()
        return {name: words[words.index(name) + 2] for name in ("UndoLevels", "ShowWelcomeScreen")}

    try:
        yield read
    finally:
        wine.delete_registry(r"HKCU\Software\Corel")
        shutil.rmtree(backups_folder(wine), ignore_errors=True)
