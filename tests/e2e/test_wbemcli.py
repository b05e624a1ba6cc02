"""The packaged command-line client against a running agent: an independent implementation of the protocol."""

import subprocess

import pytest


def wbemcli(agent, operation, target, *more):
    return subprocess.run(["wbemcli", operation, f"{agent.url}/root/interop:{target}", *more],
                          capture_output=True, text=True, timeout=60)


@pytest.mark.parametrize("operation, target, expected", [
    ("ei", "VRAX_FCPortStatistics", "BytesReceived"),
    ("ein", "VRAX_FCPortRateStatistics", "VRAX_FCPortRateStatistics.InstanceID="),
    ("ei", "CIM_ObjectManager", "Tarvel CIMAgent"),
    ("ecn", "CIM_StatisticalData", "CIM_FCPortStatistics"),
    ("gc", "VRAX_StatisticsCollection", "TimeLastSampled"),
])
def test_reads(agent, operation, target, expected):
    done = wbemcli(agent, operation, target)
    assert done.returncode == 0, done.stderr
    assert expected in done.stdout


def test_get_and_follow_a_printed_path(agent):
    path = wbemcli(agent, "ein", "VRAX_ObjectManager").stdout.strip()
    target = path.split("root/interop:", 1)[1]
    assert "Embedded CIMAgent" in wbemcli(agent, "gi", target).stdout
    assert 'Name="root/interop"' in wbemcli(agent, "ain", target, "-ac", "VRAX_NamespaceInManager").stdout


def test_reads_and_writes_a_property_and_calls_a_method(agent):
    port = wbemcli(agent, "ein", "VRAX_FCPort").stdout.splitlines()[0].split("root/interop:", 1)[1]
    name = wbemcli(agent, "gp", port, "ElementName").stdout.strip()
    for operation, text in (("sp", "spare"), ("mi", name)):
        done = wbemcli(agent, operation, port, f"ElementName={text}")
        assert done.returncode == 0, done.stdout
        assert wbemcli(agent, "gp", port, "ElementName").stdout.strip() == text
    done = wbemcli(agent, "cm", port, "RequestStateChange.RequestedState=2")
    assert done.returncode == 0 and done.stdout.strip().endswith("RequestStateChange: 0"), done


def test_errors_reach_the_user(agent):
    done = wbemcli(agent, "ei", "VRAX_NoSuchClass")
    assert done.returncode != 0 and "VRAX_NoSuchClass" in done.stdout + done.stderr
