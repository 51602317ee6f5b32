import os
import pathlib
import sys

import pytest

sys.path.insert(0, os.path.dirname(__file__))
from session import Session  # noqa: E402

BUILD = pathlib.Path(os.environ.get(
    "QUILLET_BUILD_DIR", pathlib.Path(__file__).parents[2] / "build" / "test"))


@pytest.fixture
def desktop():
    """A fresh desktop for one test."""
    with Session() as session:
        yield session


@pytest.fixture(scope="module")
def shared_desktop():
    """One desktop for all tests of a module that leave no trace on it."""
    with Session() as session:
        yield session


@pytest.fixture(scope="session")
def build():
    """The build tree whose programs are tested."""
    return BUILD
