"""What a client may change: names and states of the local switch and its ports, read back after the change."""

import pywbem
import pytest

from agent_process import NAMESPACE, AgentProcess
from kept_agent import KeptAgent

ENABLED, DISABLED, TEST, RESET = 2, 3, 7, 11


@pytest.fixture
def connection(build_dir):
    """An agent of its own for every test: what is changed here must not be seen elsewhere."""
    with AgentProcess(build_dir) as agent:
        yield pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, timeout=60)


def local_switch(connection):
    return next(s for s in connection.EnumerateInstances("VRAX_FCSwitch") if s["RequestedState"] == 5)


def local_port(connection, number):
    wwn = local_switch(connection)["Name"].upper()
    return next(p for p in connection.EnumerateInstances("VRAX_FCPort")
                if p["SystemName"].upper() == wwn and p["PortNumber"] == number)


def rename(connection, instance, name):
    change = pywbem.CIMInstance(instance.classname, {"ElementName": name}, path=instance.path)
    connection.ModifyInstance(change, PropertyList=["ElementName"])


def failure_of(call, *args, **kwargs):
    return error_of(call, *args, **kwargs).status_code


def error_of(call, *args, **kwargs):
    with pytest.raises(pywbem.CIMError) as error:
        call(*args, **kwargs)
    return error.value


@pytest.mark.parametrize("find", [local_switch, lambda c: local_port(c, 3)], ids=["switch", "port"])
def test_rename_is_read_back(connection, find):
    before = find(connection)
    rename(connection, before, "renamed by a client")
    assert connection.GetInstance(before.path)["ElementName"] == "renamed by a client"
    after = find(connection)
    assert after["ElementName"] == "renamed by a client"
    unchanged = {name for name in before.properties if name != "ElementName"}
    assert all(after[name] == before[name] for name in unchanged if name not in ("Speed",))

    fabric = connection.EnumerateInstanceNames("VRAX_Fabric")[0]
    switches = connection.Associators(fabric, AssocClass="VRAX_FabricFCSwitch")
    ports = [p for s in switches for p in connection.Associators(s.path, AssocClass="VRAX_FCSwitchFCPort")]
    assert "renamed by a client" in {i["ElementName"] for i in switches + ports}


def test_only_the_local_switch_and_its_ports_can_be_renamed(connection):
    remote = next(s for s in connection.EnumerateInstances("VRAX_FCSwitch") if s["RequestedState"] == 12)
    assert failure_of(rename, connection, remote, "x") == pywbem.CIM_ERR_INVALID_PARAMETER
    remote_port = next(p for p in connection.EnumerateInstances("VRAX_FCPort") if p["RequestedState"] == 12)
    assert failure_of(rename, connection, remote_port, "x") == pywbem.CIM_ERR_INVALID_PARAMETER


def test_a_switch_name_that_does_not_fit_is_refused(connection):
    switch = local_switch(connection)
    error = error_of(rename, connection, switch, "x" * 33)
    assert error.status_code == pywbem.CIM_ERR_NOT_FOUND
    assert "longer than the 32 characters" in error.status_description
    assert local_switch(connection)["ElementName"] == switch["ElementName"]
    rename(connection, switch, "y" * 32)
    assert local_switch(connection)["ElementName"] == "y" * 32


@pytest.mark.parametrize("find", [local_switch, lambda c: local_port(c, 3)], ids=["switch", "port"])
@pytest.mark.parametrize("state", [ENABLED, DISABLED, TEST, RESET])
def test_state_changes_are_accepted(connection, find, state):
    result, _ = connection.InvokeMethod("RequestStateChange", find(connection).path,
                                        RequestedState=pywbem.Uint16(state))
    assert result == 0


def test_a_method_that_is_not_supported(connection):
    assert failure_of(connection.InvokeMethod, "SetPowerState", local_port(connection, 3).path,
                      PowerState=pywbem.Uint16(1)) == pywbem.CIM_ERR_NOT_SUPPORTED


def test_what_was_changed_outlives_a_crash_and_a_restart(build_dir, tmp_path):
    with KeptAgent(build_dir, tmp_path) as agent:
        rename(agent.connection, local_switch(agent.connection), "kept")
        agent.crash()
        assert local_switch(agent.connection)["ElementName"] == "kept"
        rename(agent.connection, local_port(agent.connection, 3), "kept, too")
        agent.restart()
        assert local_switch(agent.connection)["ElementName"] == "kept"
        assert local_port(agent.connection, 3)["ElementName"] == "kept, too"
