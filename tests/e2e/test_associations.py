"""Every association class of the repository, walked from both ends in all the ways the protocol has."""

import collections
import json
import pathlib
import re
import xml.etree.ElementTree as ET

import pywbem
import pytest

from agent_process import DEFAULT_SCENARIO, AgentProcess
from freshness import agree

PROVIDERS = pathlib.Path(__file__).resolve().parents[2] / "common" / "providers.def"
AT_ONCE = 1000000  # more results than there are


@pytest.fixture(scope="module")
def agent(build_dir, tmp_path_factory):
    """The switch of the default scenario with its ports on two I/O blades, one of which it forwards to another, and a
    listener, so that every association has instances."""
    scenario = json.loads(DEFAULT_SCENARIO.read_text())
    local = next(switch for switch in scenario["switches"] if switch.get("local"))
    local["blades"] = [{"ports": [0, 11]}, {"ports": [12, 23]}]
    local["transparent"] = True
    local["ports"][20].update(type="TF")
    local["ports"][21].update(type="TH", primaryTfPorts=[20], backupTfPorts=[20])
    local["listeners"] = [{"name": "one", "destination": "http://127.0.0.1:50000"}]
    local["subscriptions"] = [{"name": "alerts", "filter": "CQL:Alert:All", "listeners": ["one"]}]
    path = tmp_path_factory.mktemp("scenario") / "blades.json"
    path.write_text(json.dumps(scenario))
    with AgentProcess(build_dir, path) as running:
        yield running


def association_classes(connection):
    """Every association of the module with its two ends. Each must have instances, or it is not tested here."""
    registered = re.findall(r"VRAX_PROVIDER\(ASSOCIATION, \w+, (\w+)\)", PROVIDERS.read_text())
    for name in registered:
        assert any(path.classname == name for path in connection.EnumerateInstanceNames(name)), f"{name} has no instances"
    declared = {name: connection.GetClass(name, LocalOnly=False, IncludeQualifiers=True) for name in registered}
    assert all("Association" in one.qualifiers for one in declared.values())
    return {name: [p.name for p in one.properties.values() if p.type == "reference"] for name, one in declared.items()}


def plain(path):
    """The text of a path without the host, which only some answers name."""
    copy = path.copy()
    copy.host = None
    return str(copy)


def plain_paths(results):
    """Of paths, or of instances."""
    return sorted(plain(result.path if isinstance(result, pywbem.CIMInstance) else result) for result in results)


def some(many, most=4):
    """A few of many, spread evenly."""
    many = list(many)
    return many[::max(1, len(many) // most)]


def grouped(results, near, far):
    """The paths of the associations and of their far ends by the near end's path."""
    found = collections.defaultdict(lambda: ([], []))
    for result in results:
        path = result.path if isinstance(result, pywbem.CIMInstance) else result
        found[plain(result[near])][0].append(plain(path))
        found[plain(result[near])][1].append(plain(result[far]))
    return {source: (sorted(links), sorted(ends)) for source, (links, ends) in found.items()}


def test_every_way_of_walking_finds_the_same_pairs(connection):
    for association, (left, right) in association_classes(connection).items():
        instances = connection.EnumerateInstances(association)
        for near, far in [(left, right), (right, left)]:
            expected = grouped(instances, near, far)
            assert grouped(connection.EnumerateInstanceNames(association), near, far) == expected, association
            for source, (links, ends) in expected.items():
                start = pywbem.CIMInstanceName.from_wbem_uri(source)
                to_links = {"ResultClass": association, "Role": near}
                to_ends = {"AssocClass": association, "Role": near, "ResultRole": far}
                assert plain_paths(connection.ReferenceNames(start, **to_links)) == links
                assert plain_paths(connection.AssociatorNames(start, **to_ends)) == ends
                references = connection.References(start, **to_links)
                assert grouped(references, near, far) == {source: (links, ends)}
                assert plain_paths(connection.Associators(start, **to_ends)) == ends
            for source in some(expected):
                check_other_ways(connection, association, near, far, source, *expected[source])


def check_other_ways(connection, association, near, far, source, links, ends):
    """Without filters but filtered by hand, and opened for pulling."""
    start = pywbem.CIMInstanceName.from_wbem_uri(source)
    for results in [connection.References(start), connection.ReferenceNames(start)]:
        paths = [(r, r.path if isinstance(r, pywbem.CIMInstance) else r) for r in results]
        own = [r for r, path in paths if path.classname == association and plain(r[near]) == source]
        assert grouped(own, near, far) == {source: (links, ends)}
    for results in [connection.Associators(start), connection.AssociatorNames(start)]:
        assert set(ends) <= set(plain_paths(results))
    to_links = {"ResultClass": association, "Role": near, "MaxObjectCount": AT_ONCE}
    to_ends = {"AssocClass": association, "Role": near, "ResultRole": far, "MaxObjectCount": AT_ONCE}
    assert plain_paths(connection.OpenReferenceInstances(start, **to_links).instances) == links
    assert plain_paths(connection.OpenReferenceInstancePaths(start, **to_links).paths) == links
    assert plain_paths(connection.OpenAssociatorInstances(start, **to_ends).instances) == ends
    assert plain_paths(connection.OpenAssociatorInstancePaths(start, **to_ends).paths) == ends


def identity(name):
    """What an INSTANCENAME names, without regard to letter case and to the form of its key values."""
    keys = [(key.get("NAME").lower(), *(identity(end) for end in key.iter("INSTANCENAME")),
             *(value.text.lower() for value in key.findall("KEYVALUE"))) for key in name.findall("KEYBINDING")]
    return name.get("CLASSNAME").lower(), tuple(sorted(keys))


class PathRecorder(pywbem.BaseOperationRecorder):
    """Collects the spellings of every INSTANCENAME of every answer, by what it names."""

    def __init__(self):
        super().__init__()
        self.spellings = collections.defaultdict(set)

    def record(self, pywbem_args, pywbem_result, http_request, http_response):
        for element in ET.fromstring(http_response.payload).iter("INSTANCENAME"):
            self.spellings[identity(element)].add(ET.tostring(element))


def test_a_path_is_the_same_to_the_byte_in_every_answer(agent, connection):
    recorder = PathRecorder()
    recording = pywbem.WBEMConnection(agent.url, default_namespace=connection.default_namespace, timeout=60)
    recording.add_operation_recorder(recorder)
    served = {path.classname for root in ("CIM_ManagedElement", *association_classes(connection))
              for path in recording.EnumerateInstanceNames(root)}
    for class_name in served:
        paths = [instance.path for instance in recording.EnumerateInstances(class_name)]
        for path in some(paths, most=3):
            assert agree(lambda: recording.GetInstance(path),
                         lambda: next(i for i in recording.EnumerateInstances(class_name) if i.path == path))
            recording.Associators(path)
            recording.References(path)
            recording.OpenAssociatorInstancePaths(path, MaxObjectCount=AT_ONCE)
            recording.OpenReferenceInstances(path, MaxObjectCount=AT_ONCE)
        recording.OpenEnumerateInstancePaths(class_name, MaxObjectCount=AT_ONCE)
    assert len(recorder.spellings) > len(served)
    assert [found for found in recorder.spellings.values() if len(found) > 1] == []


def test_what_several_associations_lead_to_is_found_once(connection):
    [switch] = [path for path in connection.EnumerateInstanceNames("VRAX_FCSwitch") if connection.AssociatorNames(
        path, AssocClass="VRAX_FCSwitchUseOfLog")]
    each = [found for name in association_classes(connection)
            for found in plain_paths(connection.AssociatorNames(switch, AssocClass=name))]
    assert len(set(each)) < len(each), "nothing is led to twice"
    assert plain_paths(connection.AssociatorNames(switch)) == sorted(set(each))
    assert plain_paths(connection.Associators(switch)) == sorted(set(each))
