"""Replays every pair of this folder's subfolders, each folder against its own agent; see replay.py for the files.

CIMD_WIRE_RECORD=1 writes the answers that differ; read the difference before it is committed.
"""

import os
import pathlib

import pytest

from agent_process import DEFAULT_SCENARIO, AgentProcess
from cimxml import StructureError, check_answer
from replay import SEPARATOR, replay

HERE = pathlib.Path(__file__).resolve().parent
RECORD = bool(os.environ.get("CIMD_WIRE_RECORD"))
TEST_CLASSES = HERE.parent / "agent" / "testproviders"
STORE = ["--repository", TEST_CLASSES / "repository.xml", "--registration", TEST_CLASSES / "providers.reg"]

# folder: (scenario, options)
AGENTS = {
    "switch": (DEFAULT_SCENARIO, []),  # the module on the simulated switch
    "store": (None, STORE),  # providers that answer with what they are given, or with a known fault
    "limits": (None, STORE + ["--max-body-bytes", "4096", "--max-xml-depth", "12", "--max-xml-attributes", "9",
                               "--max-xml-nodes", "64", "--max-array-elements", "4", "--max-byte-array-elements", "4", "--max-parameters", "3",
                               "--max-path-keys", "4", "--max-properties", "3", "--max-embedded-depth", "1"]),
}

CASES = sorted(path.relative_to(HERE).with_suffix("") for path in HERE.glob("*/*.request"))


@pytest.fixture(scope="module")
def ports(build_dir):
    """Gives the port of a folder's agent, which is started when it is first asked for."""
    running = {}

    def port(folder):
        if folder not in running:
            scenario, options = AGENTS[folder]
            running[folder] = AgentProcess(build_dir, scenario, [str(option) for option in options])
            running[folder].__enter__()
        return running[folder].port

    yield port
    for agent in running.values():
        agent.stop()


@pytest.mark.parametrize("case", CASES, ids=str)
def test_answer_is_as_recorded(ports, case):
    request, recorded = HERE / f"{case}.request", HERE / f"{case}.answer"
    # As bytes: the white space of a request is part of it.
    exchanges = list(replay(ports(case.parent.name), request.read_bytes().decode(),
                            recorded.read_bytes().decode() if recorded.exists() else None))
    for answer, _, _ in exchanges:
        if answer.is_cim:
            check_answer(answer.body)
    if RECORD and not all(agrees for _, _, agrees in exchanges):
        recorded.write_text(SEPARATOR.join(old if agrees else answer.text for answer, old, agrees in exchanges))
        pytest.skip("recorded")
    for answer, expected, agrees in exchanges:
        assert agrees or answer.text == expected


def test_every_answer_has_its_request():
    assert CASES == sorted(path.relative_to(HERE).with_suffix("") for path in HERE.glob("*/*.answer"))


ENVELOPE = ('<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLERSP>'
            '<IMETHODRESPONSE NAME="GetInstance"><IRETURNVALUE>{}</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP>'
            '</MESSAGE></CIM>')
PROPERTY = '<INSTANCE CLASSNAME="C"><PROPERTY NAME="P" TYPE="{}"><VALUE>{}</VALUE></PROPERTY></INSTANCE>'


@pytest.mark.parametrize("content, fault", [
    ('<INSTANCE CLASSNAME="C">', "not well-formed"),
    ("", "may not hold nothing"),
    ('<INSTANCENAME CLASSNAME="C"/>', "IRETURNVALUE: may not hold INSTANCENAME|may not hold INSTANCENAME"),
    ('<INSTANCE/>', "lacks the attribute CLASSNAME"),
    ('<INSTANCE CLASSNAME="C" NAME="C"/>', "may not have the attribute NAME"),
    ('<INSTANCE CLASSNAME="C">text</INSTANCE>', "may not hold text"),
    ('<INSTANCE CLASSNAME="C"><VALUE/></INSTANCE>', "may not hold VALUE"),
    (PROPERTY.format("uint8", "x"), "not of type uint8"),
    (PROPERTY.format("uint9", "1"), "not of the form"),
    (PROPERTY.format('string" EmbeddedObject="instance', "&lt;VALUE/>"), "is no embedded instance"),
])
def test_the_check_of_answers_finds_faults(content, fault):
    check_answer(ENVELOPE.format('<INSTANCE CLASSNAME="C"/>'))
    with pytest.raises(StructureError, match=fault):
        check_answer(ENVELOPE.format(content))
