"""A switch in transparent mode: how it forwards its ports, changed by a client and read back from the switch."""

import json
import pathlib
import re

import pywbem
import pytest

from agent_process import NAMESPACE, TRANSPARENT_SCENARIO
from kept_agent import KeptAgent

ENTRY = "VRAX_PassThroughMapEntry"
PROVIDERS = pathlib.Path(__file__).resolve().parents[2] / "common" / "providers.def"
CLASSES = re.findall(r"VRAX_PROVIDER\((?:INSTANCE|ASSOCIATION), \w+, (\w+)\)", PROVIDERS.read_text())


class Switch:
    """The pass-through map of an agent, by port numbers: (host port, fabric port, primary)."""

    def __init__(self, agent):
        self.agent = agent
        self.ports = {one["PortNumber"]: one.path for one in self.connection.EnumerateInstances("VRAX_FCPort")
                      if one["RequestedState"] == 5}

    @property
    def connection(self):
        return self.agent.connection

    def has(self, entries):
        """Whether the module publishes these entries, and the switch forwards so."""
        return self.entries() == entries == configured(self.agent.state())

    def key(self, path):
        numbers = {end: number for number, port in self.ports.items()
                   for end in ("Antecedent", "Dependent") if path[end] == port}
        return numbers["Antecedent"], numbers["Dependent"], path["PrimaryMapping"]

    def entries(self):
        paths = self.connection.EnumerateInstanceNames(ENTRY)
        assert [one.path for one in self.connection.EnumerateInstances(ENTRY)] == paths
        return sorted(self.key(path) for path in paths)

    def properties(self, host, fabric, primary):
        return {"Antecedent": self.ports[host], "Dependent": self.ports[fabric], "PrimaryMapping": primary}

    def path(self, *entry):
        return pywbem.CIMInstanceName(ENTRY, self.properties(*entry), namespace=NAMESPACE)

    def create(self, *entry):
        return self.connection.CreateInstance(pywbem.CIMInstance(ENTRY, self.properties(*entry)))

    def delete(self, *entry):
        self.connection.DeleteInstance(self.path(*entry))

    def last_events(self, count):
        """The newest entries of the switch's user log, without time and component."""
        entries = self.connection.EnumerateInstances("VRAX_LogEntry")
        return [one["RecordData"] for one in entries if ":User:" in one["InstanceID"]][-count:]


def refusal(call, *entry):
    with pytest.raises(pywbem.CIMError) as refused:
        call(*entry)
    assert refused.value.status_code == pywbem.CIM_ERR_NOT_SUPPORTED
    return refused.value.status_description


def configured(scenario):
    """What the scenario says of the map."""
    ports = scenario["switches"][0]["ports"]
    return sorted((port["number"], listed, field == "primaryTfPorts") for port in ports
                  for field in ("primaryTfPorts", "backupTfPorts") for listed in port.get(field, []))


@pytest.fixture
def switch(build_dir, tmp_path):
    """A switch of its own for every test: what is changed here must not be seen elsewhere."""
    with KeptAgent(build_dir, tmp_path, TRANSPARENT_SCENARIO) as agent:
        yield Switch(agent)


def test_the_whole_story(switch):
    before = switch.entries()
    assert before == configured(json.loads(TRANSPARENT_SCENARIO.read_text()))

    # Port 8 forwards to nothing yet; port 6 has one uplink and gets another one.
    for entry in ((8, 15, True), (8, 15, False), (6, 15, True)):
        assert switch.key(switch.create(*entry)) == entry
        assert switch.key(switch.connection.GetInstance(switch.path(*entry)).path) == entry
    added = sorted(before + [(8, 15, True), (8, 15, False), (6, 15, True)])
    assert switch.has(added)
    assert "Already contains the primary TF mapping" in refusal(switch.create, 6, 15, True)
    assert "Already contains the backup TF mapping" in refusal(switch.create, 8, 15, False)
    assert "Antecedent port type not TH" in refusal(switch.create, 15, 14, True)
    assert "Dependent port type not TF" in refusal(switch.create, 8, 9, True)
    switch.agent.restart()
    assert switch.has(added)  # read again
    assert switch.last_events(2) == ["written: Config.UserPort.0.6.PrimaryTFPortMap.14,15", "activated"]

    # The entries of the two lists are taken away one by one.
    switch.delete(8, 15, True)
    assert switch.has([one for one in added if one != (8, 15, True)])
    assert "No primary TF PortMap defined for this port" in refusal(switch.delete, 8, 15, True)
    switch.delete(8, 15, False)
    switch.delete(6, 15, True)
    assert "Failed to find TF port" in refusal(switch.delete, 6, 15, True)
    switch.delete(6, 14, True)
    removed = [one for one in before if one[0] != 6]
    assert switch.has(removed)
    switch.agent.restart()
    assert switch.has(removed)
    assert switch.last_events(2) == ["written: Config.UserPort.0.6.PrimaryTFPortMap.None", "activated"]


def test_every_class_answers(switch):
    connection = switch.connection
    counts = {name: len(connection.EnumerateInstances(name)) for name in CLASSES}
    of_every_port = ("VRAX_FCPort", "VRAX_FCPortStatistics", "VRAX_FCPortSettings", "VRAX_FCSwitchFCPort")
    assert {counts[name] for name in of_every_port} == {16}
    assert not any(count for name, count in counts.items() if "IOBlade" in name or re.search("Zone|FCNode", name))
    profiles = {one["InstanceID"].split(":")[-1] for name in ("VRAX_RegisteredProfile", "VRAX_RegisteredSubProfile")
                for one in connection.EnumerateInstances(name)}
    assert {"Switch", "Server"} <= profiles
    assert not profiles & {"Fabric", "Blades", "Zone Control", "Enhanced Zoning and Enhanced Zoning Control"}
    assert {one["RequestedTypesSupported"][0] for one in connection.EnumerateInstances("VRAX_FCPortCapabilities")} == {16001}
