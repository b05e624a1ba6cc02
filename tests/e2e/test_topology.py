"""The fabric as a client follows it: Fabric to Switch to Port to Endpoint to Node and back, against the scenario."""

import json

import pytest

from agent_process import DEFAULT_SCENARIO


@pytest.fixture(scope="module")
def scenario():
    return json.loads(DEFAULT_SCENARIO.read_text())


def plain(path):
    """A path as the enumeration gives it: only association answers name the host."""
    copy = path.copy()
    copy.host = None
    return str(copy)


def test_walk_from_the_fabric_to_a_node_and_back(connection, scenario):
    [san] = connection.EnumerateInstances("VRAX_SAN")
    [fabric] = connection.Associators(san.path, AssocClass="CIM_ContainedDomain", ResultRole="PartComponent")
    assert fabric["Name"].upper() == scenario["switches"][1]["wwn"].upper()

    switches = connection.Associators(fabric.path, AssocClass="CIM_SystemComponent",
                                      ResultClass="VRAX_FCSwitch", Role="GroupComponent")
    assert len(switches) == len(scenario["switches"])
    local = next(s for s in switches if s["RequestedState"] == 5)
    ports = connection.Associators(local.path, AssocClass="VRAX_FCSwitchFCPort")
    assert len(ports) == 24
    [port] = [p for p in ports if p["PortNumber"] == 3]

    [endpoint] = connection.Associators(port.path, ResultClass="CIM_ProtocolEndpoint")
    [far] = connection.Associators(endpoint.path, AssocClass="VRAX_ActiveConnection", ResultRole="Dependent")
    [far_port] = connection.Associators(far.path, AssocClass="CIM_DeviceSAPImplementation")
    [node] = connection.Associators(far_port.path, ResultClass="VRAX_FCNode", ResultRole="Collection")
    assert node["ElementName"] == "DB-OSLO-01"

    [back] = connection.Associators(node.path, AssocClass="VRAX_MemberOfFCNode")
    assert plain(back.path) == plain(far_port.path)
    for association, expected in [("VRAX_DeviceSAPImplementation", far), ("VRAX_ActiveConnection", endpoint),
                                  ("VRAX_DeviceSAPImplementation", port), ("VRAX_FCSwitchFCPort", local),
                                  ("VRAX_FabricFCSwitch", fabric), ("VRAX_ContainedDomain", san)]:
        [back] = connection.AssociatorNames(getattr(back, "path", back), AssocClass=association)
        assert plain(back) == plain(expected.path)
    back = far_port
    [owner] = connection.AssociatorNames(back.path, ResultClass="VRAX_Fabric")
    assert plain(owner) == plain(fabric.path)
    assert plain(fabric.path) in {plain(p) for p in connection.AssociatorNames(node.path, ResultClass="VRAX_Fabric")}
