import contextlib

import pytest

from driver import Desktop, WineBox


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    """Takes a picture of what is seen when a test fails."""
    yield
    if call.excinfo and "wine" in item.funcargs:
        item.funcargs["wine"].desktop.screenshot(f"failed-{item.name}")


@pytest.fixture(scope="session")
def wine():
    with contextlib.closing(Desktop()) as desktop:
        box = WineBox(desktop)
        yield box
        box.shut_down()


@pytest.fixture
def stage():
    """What it enters ends with the test."""
    with contextlib.ExitStack() as stack:
        yield stack
