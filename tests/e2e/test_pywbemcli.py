"""pywbemcli, what an operator types, against a running agent."""

import os
import pathlib
import subprocess
import sys

import pytest

PROGRAM = pathlib.Path(sys.executable).parent / "pywbemcli"
FABRIC = "VRAX_Fabric.?"  # a question mark takes the only instance, or asks


def pywbemcli(agent, *words):
    return subprocess.run([PROGRAM, "--server", agent.url, "--default-namespace", "root/interop", *words],
                          stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=120,
                          env={**os.environ, "PYWBEMTOOLS_TERMWIDTH": "120"})


@pytest.mark.parametrize("words, expected", [
    ("namespace list", "root/interop"),
    ("server brand", "Tarvel CIMAgent"),
    ("profile list --organization DMTF", "Record Log"),
    ("profile centralinsts --organization SNIA --profile Server", "VRAX_ObjectManager."),
    ("class get VRAX_Namespace", "class VRAX_Namespace : CIM_Namespace {"),
    ("class find VRAX_FCPortR*", "root/interop: VRAX_FCPortRateStatistics"),
    ("class tree CIM_StatisticalData", "VRAX_FCPortStatistics"),
    ("qualifier get Key", "Scope(property, reference)"),
    ("-o table instance enumerate VRAX_FCSwitch --pl Name,ElementName", '"core-a"'),
    ("--use-pull yes --pull-max-cnt 7 instance enumerate VRAX_FCPort --names-only --summary", "returned"),
    (f"instance get {FABRIC}", 'CreationClassName = "VRAX_Fabric"'),
    (f"instance associators {FABRIC} --assoc-class VRAX_ContainedDomain --names-only", "VRAX_SAN."),
    (f"instance references {FABRIC} --result-class VRAX_ContainedDomain --summary", "1 CIMInstance(s) returned"),
    (f"instance shrub {FABRIC}", "VRAX_FabricFCNode(AssocClass)"),
])
def test_reads(agent, words, expected):
    done = pywbemcli(agent, *words.split())
    assert done.returncode == 0, done.stdout + done.stderr
    assert expected in done.stdout


def test_changes_a_port_and_calls_its_method(agent, connection):
    path, *_ = connection.EnumerateInstanceNames("VRAX_FCPort")
    name = connection.GetInstance(path)["ElementName"]
    port = path.to_wbem_uri(format="historical").split("root/interop:", 1)[1]
    for text in ("spare <1> & \u00e9", name):
        done = pywbemcli(agent, "instance", "modify", port, "--property", f"ElementName={text}")
        assert done.returncode == 0, done.stdout + done.stderr
        assert connection.GetInstance(path)["ElementName"] == text
    done = pywbemcli(agent, "instance", "invokemethod", port, "RequestStateChange", "-p", "RequestedState=2")
    assert (done.returncode, done.stdout.strip()) == (0, "ReturnValue=0"), done.stderr


def test_subscribes_and_leaves(agent, connection):
    for words in ("add-destination mine --listener-url http://127.0.0.1:50000", "add-subscription mine CQL:Alert:All",
                  "list-subscriptions", "remove-server"):
        done = pywbemcli(agent, "subscription", *words.split())
        assert done.returncode == 0, done.stdout + done.stderr
        if words == "list-subscriptions":
            assert "mine(owned)" in done.stdout and "CQL:Alert:All(permanent)" in done.stdout
    assert not connection.EnumerateInstanceNames("CIM_ListenerDestinationCIMXML")


@pytest.mark.parametrize("words, status", [
    (("class", "get", "VRAX_Nope"), "CIM_ERR_INVALID_CLASS"),
    (("instance", "delete", FABRIC), "CIM_ERR_NOT_SUPPORTED"),
    (("instance", "query", "select * from VRAX_Fabric"), "CIM_ERR_NOT_SUPPORTED"),
    (("class", "associators", "VRAX_Fabric"), "CIM_ERR_NOT_SUPPORTED"),
])
def test_errors_reach_the_user(agent, words, status):
    done = pywbemcli(agent, *words)
    assert done.returncode != 0 and status in done.stdout + done.stderr
