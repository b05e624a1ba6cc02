"""What a client may change: names of the local switch and its ports, read back after the change."""

import pywbem
import pytest

from agent_process import NAMESPACE, AgentProcess
from kept_agent import KeptAgent


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


def test_what_was_changed_outlives_a_crash_and_a_restart(build_dir, tmp_path):
    with KeptAgent(build_dir, tmp_path) as agent:
        rename(agent.connection, local_switch(agent.connection), "kept")
        agent.crash()
        assert local_switch(agent.connection)["ElementName"] == "kept"
        rename(agent.connection, local_port(agent.connection, 3), "kept, too")
        agent.restart()
        assert local_switch(agent.connection)["ElementName"] == "kept"
        assert local_port(agent.connection, 3)["ElementName"] == "kept, too"
