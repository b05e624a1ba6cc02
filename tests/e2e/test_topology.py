"""The fabric as a client follows it: Fabric to Switch to Port to Endpoint to Node and back, against the scenario."""

import json

import pytest

from agent_process import DEFAULT_SCENARIO

ZERO_WWN = "0" * 16


@pytest.fixture(scope="module")
def scenario():
    return json.loads(DEFAULT_SCENARIO.read_text())


def by_name(instances, key="Name"):
    return {instance[key].upper(): instance for instance in instances}


def plain(path):
    """A path as the enumeration gives it: only association answers name the host."""
    copy = path.copy()
    copy.host = None
    return str(copy)


def test_every_switch_of_the_fabric(connection, scenario):
    switches = by_name(connection.EnumerateInstances("VRAX_FCSwitch"))
    assert set(switches) == {one["wwn"].upper() for one in scenario["switches"]}
    for facts in scenario["switches"]:
        switch = switches[facts["wwn"].upper()]
        assert switch["ElementName"] == facts["name"]
        assert switch["OtherIdentifyingInfo"] == [str(facts["domain"])]
        assert switch["IdentifyingDescriptions"] == ["DomainID"]
        assert switch["Dedicated"] == [5]
        local = facts.get("local", False)
        assert switch["RequestedState"] == (5 if local else 12)
        assert switch["EnabledState"] == (2 if local else 5)


def test_every_kind_of_port(connection, scenario):
    ports = connection.EnumerateInstances("VRAX_FCPort")
    attached = [p for p in ports if p["SystemCreationClassName"] == "VRAX_Fabric"]
    assert {p["DeviceID"] for p in attached} == {n["portWwn"].upper() for n in scenario["nodes"]}
    local_wwn = next(s["wwn"] for s in scenario["switches"] if s.get("local"))
    local = {p["PortNumber"]: p for p in ports if p["SystemName"] == local_wwn}
    assert sorted(local) == list(range(24))
    for facts in next(s["ports"] for s in scenario["switches"] if s.get("local")):
        port = local[facts["number"]]
        assert port["ElementName"] == facts.get("name", f"Port{facts['number']}")
        assert port["NetworkAddresses"] == [f"01{facts['number']:02X}00"]
        if facts.get("wwn") == ZERO_WWN:
            assert port["PermanentAddress"] == port["DeviceID"].split(":")[1].upper()
    remote = [p for p in ports if p not in attached and p["SystemName"] != local_wwn]
    assert remote and all(p["PermanentAddress"] != ZERO_WWN for p in remote)
    assert all(p["Speed"] == 0 and p["RequestedState"] == 12 for p in remote)


def test_nodes_and_endpoints(connection, scenario):
    nodes = by_name(connection.EnumerateInstances("VRAX_FCNode"), "InstanceID")
    assert set(nodes) == {n["portWwn"].upper() for n in scenario["nodes"]}
    for facts in scenario["nodes"]:
        assert nodes[facts["portWwn"].upper()]["ElementName"] == facts.get("nodeName", "").upper()
    endpoints = by_name(connection.EnumerateInstances("VRAX_ProtocolEndpoint"))
    assert set(nodes) <= set(endpoints)


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


def test_an_inter_switch_link_is_published_once(connection, scenario):
    links = connection.EnumerateInstances("VRAX_ActiveConnection")
    ends = [(link["Antecedent"]["Name"].upper(), link["Dependent"]["Name"].upper()) for link in links]
    assert len(ends) == len(set(ends))
    node_ports = {n["portWwn"].upper() for n in scenario["nodes"]}
    between_switches = [pair for pair in ends if not node_ports & set(pair)]
    assert len(between_switches) == len(scenario["isls"])
    assert all(low < high for low, high in between_switches)
    assert all(dependent in node_ports for antecedent, dependent in ends if (antecedent, dependent) not in between_switches)


def test_the_switch_hosts_the_object_manager(connection):
    [manager] = connection.EnumerateInstances("VRAX_ObjectManager")
    [switch] = connection.Associators(manager.path, AssocClass="CIM_HostedService")
    assert switch.classname == "VRAX_FCSwitch"
    [mechanism] = connection.Associators(switch.path, ResultClass="CIM_ObjectManagerCommunicationMechanism")
    assert mechanism["Version"] == "1.1"
