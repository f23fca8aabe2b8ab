import shutil

import pytest

import staging
from driver import Desktop, Mirelo, Practice, WineBox

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
    with staging.network_printer(wine) as default_printer:
        yield default_printer


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
