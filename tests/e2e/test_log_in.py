"""User names and passwords, as clients and guessers send them to a running agent."""

import base64
import os
import pathlib
import re
import signal
import subprocess

import pytest
import pywbem
import requests

from agent_process import NAMESPACE, AgentProcess
from indications import wait_until

JOE = ("joe", "se:cret \u00e9")


def set_user(build_dir, file, user, password):
    program = pathlib.Path(build_dir) / "bin" / "cimd-passwd"
    subprocess.run([str(program), "--stdin", str(file), user], input=password + "\n", text=True, check=True)


@pytest.fixture
def users(build_dir, tmp_path):
    file = tmp_path / "users"
    set_user(build_dir, file, *JOE)
    return file


@pytest.fixture
def guarded(build_dir, users):
    with AgentProcess(build_dir, extra_args=["--password-file", str(users), "--log-level", "debug",
                                             "--max-guess-delay-ms", "0"]) as running:
        yield running


def connect(agent, credentials):
    return pywbem.WBEMConnection(agent.url, credentials, default_namespace=NAMESPACE, timeout=60)


def test_lets_known_users_in_and_nobody_else(build_dir, guarded, users):
    joe = connect(guarded, JOE)
    assert joe.EnumerateInstanceNames("CIM_ObjectManager")
    assert joe.EnumerateInstanceNames("CIM_ObjectManager")
    strangers = [None, ("joe", "secret"), ("joe", JOE[1] + "x"), ("Joe", JOE[1]), ("joe", ""), ("eve", JOE[1])]
    for credentials in strangers:
        with pytest.raises(pywbem.AuthError):
            connect(guarded, credentials).EnumerateInstanceNames("CIM_ObjectManager")

    set_user(build_dir, users, "joe", "changed")
    with pytest.raises(pywbem.AuthError):
        joe.EnumerateInstanceNames("CIM_ObjectManager")
    assert connect(guarded, ("joe", "changed")).EnumerateInstanceNames("CIM_ObjectManager")

    users.write_text("nonsense\n")
    os.kill(guarded.process.pid, signal.SIGHUP)
    wait_until(lambda: "the users stay as they were" in guarded.log())  # nobody has to log in for that
    assert connect(guarded, ("joe", "changed")).EnumerateInstanceNames("CIM_ObjectManager")

    # A process that takes over cannot know who was in the file, and must not go by what was in it at the start.
    serving = guarded.serving_pid
    os.kill(serving, signal.SIGKILL)
    while os.path.exists(f"/proc/{serving}"):  # until then it may still take a connection along
        os.sched_yield()
    for credentials in [JOE, ("joe", "changed")]:
        with pytest.raises(pywbem.AuthError):
            connect(guarded, credentials).EnumerateInstanceNames("CIM_ObjectManager")
    users.unlink()
    set_user(build_dir, users, *JOE)
    assert connect(guarded, JOE).EnumerateInstanceNames("CIM_ObjectManager")
    guarded.stop()
    log = guarded.log()
    assert "log-in refused: user \"eve\": no such user" in log
    assert "log-in refused: user \"joe\": wrong password" in log
    assert "request refused: it has no credentials" in log
    assert f"error auth: {users}:1: name:hash expected; the users stay as they were" in log
    for credentials in [JOE, ("joe", "changed"), *filter(None, strangers)]:
        text = ":".join(credentials).encode()
        assert base64.b64encode(text).decode() not in log
        assert credentials[1] == "" or credentials[1] not in log
    assert "Authorization" not in log


def test_challenges_as_http_demands(guarded):
    headers = {"Content-Type": "application/xml", "CIMOperation": "MethodCall", "CIMMethod": "GetClass",
               "CIMObject": "root%2Finterop"}
    url = guarded.url + "/cimom"
    answer = requests.post(url, data="<CIM/>", headers=headers, timeout=60)
    assert answer.status_code == 401
    assert answer.headers["WWW-Authenticate"] == 'Basic realm="cimd"'
    # A large body is taken from those who are let in, also when it comes with their first request.
    user = (JOE[0].encode(), JOE[1].encode())
    for _ in range(2):
        answer = requests.post(url, data=" " * 700_000, headers=headers, auth=user, timeout=60)
        assert (answer.status_code, answer.headers["CIMError"]) == (400, "request-not-well-formed")
    assert requests.post(url, data="x" * 700_000, headers=headers, auth=("joe", "x"), timeout=60).status_code == 401
    assert requests.post(url, data="<CIM/>", headers=headers, auth=user, timeout=60).status_code == 400
    assert requests.options(url, timeout=60).status_code == 200


def test_changes_are_audited_at_every_log_level(build_dir, users):
    with AgentProcess(build_dir, extra_args=["--password-file", str(users), "--log-level", "error"]) as agent:
        joe = connect(agent, JOE)
        port = joe.EnumerateInstances("VRAX_FCPort", PropertyList=["ElementName"])[0]
        port["ElementName"] = "quiet name"
        joe.ModifyInstance(port, PropertyList=["ElementName"])
        joe.InvokeMethod("RequestStateChange", port.path, RequestedState=pywbem.Uint16(2))
        with pytest.raises(pywbem.CIMError):
            joe.DeleteInstance(port.path)
        agent.stop()
        lines = agent.log_lines
    patterns = [r"ModifyInstance result=ok object=\"root/interop:VRAX_FCPort\..*\" properties=ElementName",
                r"InvokeMethod result=ok returned=\d+ object=\".*\" method=RequestStateChange parameters=RequestedState",
                r"DeleteInstance result=CIM_ERR_NOT_SUPPORTED object=\"root/interop:VRAX_FCPort\..*\""]
    assert len(lines) == len(patterns), lines
    for line, pattern in zip(lines, patterns):
        assert re.fullmatch(r"\S+ audit cim: user=\"joe\" from=127\.0\.0\.1:\d+ operation=" + pattern + "\n", line), line


def test_starts_open_on_the_loopback_address_only(build_dir, users):
    for listen in (["0.0.0.0"], ["::"], ["0.0.0.0", "--password-file", str(users) + "x"]):
        with pytest.raises(RuntimeError, match="--listen: .* --password-file is needed, or --no-auth|users.*: cannot open"):
            AgentProcess(build_dir, extra_args=["--listen", *listen]).__enter__()
    for more, warns in ((["--no-authentication"], False), (["--password-file", str(users)], True)):
        with AgentProcess(build_dir, extra_args=["--listen", "0.0.0.0", *more]) as agent:
            agent.stop()
            assert ("passwords come over HTTP, readable on the way" in agent.log()) == warns
