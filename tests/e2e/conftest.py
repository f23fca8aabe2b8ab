import shutil

import pytest

from driver import Desktop, Mirelo, Practice, WineBox

PRINTERS = r"HKLM\System\CurrentControlSet\Control\Print\Printers"
DEVICES = r"HKCU\Software\Microsoft\Windows NT\CurrentVersion\Devices"
DEFAULT = r"HKCU\Software\Microsoft\Windows NT\CurrentVersion\Windows"
PREFERENCES = r"HKCU\Software\Corel\CorelDRAW\25.0\Draw\Application Preferences\Framework"


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    """Takes a picture of what is seen when a test fails."""
    yield
    if call.excinfo and "wine" in item.funcargs:
        item.funcargs["wine"].desktop.screenshot(f"failed-{item.name}")


@pytest.fixture(scope="session")
def desktop():
    display = Desktop()
    yield display
    display.close()


@pytest.fixture(scope="session")
def wine(desktop):
    box = WineBox(desktop)
    box.delete_registry(r"HKCU\Software\Mirelo")
    yield box
    box.shut_down()


@pytest.fixture
def practice(wine):
    """Starts practice programs that end with the test."""
    running = []

    def start(way, **options):
        running.append(Practice(wine, way, **options))
        return running[-1]

    yield start
    for program in reversed(running):
        program.close()


@pytest.fixture
def mirelo(wine):
    """Starts the program; it ends with the test."""
    running = []

    def start(**options):
        running.append(Mirelo(wine, **options))
        return running[-1]

    yield start
    for program in reversed(running):
        program.close()


@pytest.fixture
def printers(wine):
    """A bad default printer and a virtual one; a call tells the default."""
    names = {"Studio Queue": r"\\server\queue", "Microsoft Print to PDF": "PORTPROMPT:"}
    for name, port in names.items():
        for value, text in {"Name": name, "Port": port, "Printer Driver": "wineps.drv",
                            "Print Processor": "WinPrint"}.items():
            wine.set_registry(rf"{PRINTERS}\{name}", value, text)
        for value in ("Attributes", "Status"):
            wine.set_registry(rf"{PRINTERS}\{name}", value, 0, "REG_DWORD")
        wine.set_registry(DEVICES, name, f"winspool,{port}")
    wine.set_registry(DEFAULT, "Device", r"Studio Queue,winspool,\\server\queue")
    wine.shut_down()
    yield lambda: wine.run("reg", "query", DEFAULT, "/v", "Device")
    for name in names:
        wine.delete_registry(rf"{PRINTERS}\{name}")
        wine.delete_registry(DEVICES, name)
    wine.delete_registry(DEFAULT, "Device")
    wine.shut_down()


@pytest.fixture
def caches(wine):
    """Files of CorelDRAW that are worth cleaning, with their contents."""
    local = wine.tool_folder.parents[1] / "Local"
    contents = {
        local / "CrashDumps" / "CorelDRW.exe.4711.dmp": b"dump" * 1000,
        local / "Corel" / "CorelDRAW Graphics Suite X7" / "Draw" / "PreviewCache" / "bild 中.tmp": b"preview",
    }
    for path, content in contents.items():
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
    yield contents
    for path in contents:
        path.unlink(missing_ok=True)
    shutil.rmtree(wine.tool_folder / "Backups", ignore_errors=True)


@pytest.fixture
def settings(wine):
    """CorelDRAW's settings as they slow it down; a call reads them."""
    wine.set_registry(PREFERENCES, "UndoLevels", "150")
    wine.set_registry(PREFERENCES, "ShowWelcomeScreen", "1", "REG_DWORD")

    def read():
        words = wine.run("reg", "query", PREFERENCES).split()
        return {name: words[words.index(name) + 2] for name in ("UndoLevels", "ShowWelcomeScreen")}

    yield read
    wine.delete_registry(r"HKCU\Software\Corel")
    shutil.rmtree(wine.tool_folder / "Backups", ignore_errors=True)
