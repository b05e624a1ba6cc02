"""Options and fixtures of the tests written in Python."""

import pathlib
import sys

import pytest

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / folder) for folder in ("scripts", "tests/wire", "toolkit/genclass")]


def pytest_addoption(parser):
    parser.addoption("--build-dir", default=str(ROOT / "build" / "dev"), help="build tree that holds bin/cimd")


@pytest.fixture(scope="session")
def build_dir(request):
    return pathlib.Path(request.config.getoption("--build-dir")).resolve()
