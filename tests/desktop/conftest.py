# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
import os
import pathlib
import sys

import pytest

sys.path.insert(0, os.path.dirname(__file__))
from chat_server import ChatServer  # noqa: E402
from session import Session  # noqa: E402

BUILD = pathlib.Path(
    os.environ.get("QUILLET_BUILD_DIR", pathlib.Path(__file__).parents[2] / "build" / "test")
)


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport():
    """Where a test fails, names the programs that have ended on desktops that still run."""
    report = (yield).get_result()
    if report.failed:
        for session in Session.running:
            report.sections.append(("Ended programs", session.ended_programs()))


@pytest.fixture
def desktop():
    """A fresh desktop for one test."""
    with Session() as session:
        yield session


@pytest.fixture
def chat():
    """The language model behind Quillet's backend."""
    with ChatServer("The answer, naïvely.") as server:
        yield server


@pytest.fixture(scope="session")
def build():
    """The build tree whose programs are tested."""
    return BUILD
