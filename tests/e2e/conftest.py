"""A running agent on the default scenario and a pywbem connection to it, shared by the end-to-end tests."""

import pywbem
import pytest

from agent_process import NAMESPACE, AgentProcess
from cimxml import check_answer


class AnswerCheck(pywbem.BaseOperationRecorder):
    """Checks the structure of every answer that a connection gets."""

    def stage_http_response2(self, payload):
        super().stage_http_response2(payload)
        if payload:
            check_answer(payload)

    def record(self, pywbem_args, pywbem_result, http_request, http_response):
        pass


@pytest.fixture(scope="session")
def agent(build_dir):
    with AgentProcess(build_dir) as running:
        yield running


@pytest.fixture
def connection(agent):
    checked = pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, timeout=60)
    checked.add_operation_recorder(AnswerCheck())
    return checked
