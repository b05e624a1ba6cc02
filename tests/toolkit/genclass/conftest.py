"""Fixtures of the class generator's tests."""

import pytest

from genclass_run import Scratch


@pytest.fixture
def scratch(tmp_path):
    return Scratch(tmp_path)
