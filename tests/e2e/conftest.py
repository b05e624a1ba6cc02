"""A running agent on the default scenario and a pywbem connection to it, shared by the end-to-end tests."""

import pywbem
import pytest

from agent_process import NAMESPACE, AgentProcess


@pytest.fixture(scope="session")
def agent(build_dir):
    with AgentProcess(build_dir) as running:
        yield running


@pytest.fixture
def connection(agent):
    return pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, timeout=60)
