import pytest

import staging
from driver import FIX_TAB, Desktop, Mirelo, Practice, WineBox, closing


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
def fix_page(wine, mirelo):
    def start():
        app = mirelo()
        app.show(FIX_TAB)
        return app

    return start


@pytest.fixture
def printers(wine, tmp_path):
    with closing(staging.Spooler(wine, tmp_path)) as spooler:
        yield spooler


@pytest.fixture
def caches(wine):
    with staging.caches_of_coreldraw(wine) as contents:
        yield contents


@pytest.fixture
def settings(wine):
    with staging.settings_of_coreldraw(wine) as read:
        yield read
