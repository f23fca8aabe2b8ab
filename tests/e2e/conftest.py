import pytest

from driver import FIX_TAB, Desktop, Mirelo, Practice, WineBox


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
