"""Enumerations that a client opens and pulls in pieces, and what it is told when it does so wrongly."""

import pywbem
import pytest

from agent_process import NAMESPACE, AgentProcess

PORTS = "VRAX_FCPort"


def pulled(connection, opened, pull, batch):
    """All that an enumeration gives, in pieces of at most `batch`."""
    found = list(opened[0])
    state = opened
    while not state.eos:
        state = pull(state.context, MaxObjectCount=batch)
        assert len(state[0]) <= batch
        found += state[0]
    return found


def plain(path):
    copy = path.copy()
    copy.host = None
    return copy


@pytest.mark.parametrize("batch", [1, 7, 1000])
def test_pulled_equals_enumerated(connection, batch):
    whole = connection.EnumerateInstances(PORTS)
    opened = connection.OpenEnumerateInstances(PORTS, MaxObjectCount=batch)
    instances = pulled(connection, opened, connection.PullInstancesWithPath, batch)
    assert [(plain(i.path), i.properties) for i in instances] == [(i.path, i.properties) for i in whole]
    opened = connection.OpenEnumerateInstancePaths(PORTS, MaxObjectCount=batch)
    paths = pulled(connection, opened, connection.PullInstancePaths, batch)
    assert [plain(path) for path in paths] == [i.path for i in whole]
    opened = connection.OpenEnumerateInstances(PORTS)
    assert opened[0] == [] and not opened.eos
    assert [i.properties for i in pulled(connection, opened, connection.PullInstances, batch)] == \
        [i.properties for i in whole]


def test_iterators_use_pull_operations(agent):
    connection = pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, use_pull_operations=True,
                                       timeout=60)
    whole = connection.EnumerateInstances(PORTS)
    assert [i.properties for i in connection.IterEnumerateInstances(PORTS, MaxObjectCount=5)] == \
        [i.properties for i in whole]
    assert len(list(connection.IterEnumerateInstancePaths(PORTS, MaxObjectCount=5))) == len(whole)
    [fabric] = connection.EnumerateInstanceNames("VRAX_Fabric")
    for iterate, at_once in [(connection.IterAssociatorInstances, connection.Associators),
                             (connection.IterReferenceInstances, connection.References)]:
        assert [i.properties for i in iterate(fabric, MaxObjectCount=5)] == [i.properties for i in at_once(fabric)]
    for iterate, at_once in [(connection.IterAssociatorInstancePaths, connection.AssociatorNames),
                             (connection.IterReferenceInstancePaths, connection.ReferenceNames)]:
        assert list(iterate(fabric, MaxObjectCount=5)) == at_once(fabric)


def status_of(call, *args, **kwargs):
    with pytest.raises(pywbem.CIMError) as error:
        call(*args, **kwargs)
    return error.value.status_code


def test_large_results_wait_in_a_file_and_their_number_is_bounded(build_dir, tmp_path):
    arguments = ["--max-enumerations", "2", "--max-spool-memory-bytes", "1000", "--spool-directory", str(tmp_path)]
    with AgentProcess(build_dir, extra_args=arguments) as agent:
        connection = pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, timeout=60)
        whole = connection.EnumerateInstances(PORTS)
        first = connection.OpenEnumerateInstances(PORTS, MaxObjectCount=2)
        second = connection.OpenEnumerateInstancePaths(PORTS)
        assert list(tmp_path.iterdir()) == [], "files for results have no name"
        assert status_of(connection.OpenEnumerateInstances, PORTS) == pywbem.CIM_ERR_SERVER_LIMITS_EXCEEDED
        connection.CloseEnumeration(second.context)
        assert [i.properties for i in pulled(connection, first, connection.PullInstancesWithPath, 3)] == \
            [i.properties for i in whole]
        tmp_path.rmdir()
        assert status_of(connection.OpenEnumerateInstances, PORTS) == pywbem.CIM_ERR_FAILED


def test_a_client_may_change_what_it_is_pulling(build_dir):
    with AgentProcess(build_dir) as agent:
        connection = pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, timeout=60)
        opened = connection.OpenEnumerateInstances(PORTS, PropertyList=["ElementName", "RequestedState"])
        renamed = 0
        while not opened.eos:
            opened = connection.PullInstancesWithPath(opened.context, MaxObjectCount=1)
            for port in opened.instances:
                if port["RequestedState"] == 12 or renamed == 3:
                    continue  # not of the local switch
                change = pywbem.CIMInstance(PORTS, {"ElementName": f"renamed {renamed}"}, path=port.path)
                connection.ModifyInstance(change, PropertyList=["ElementName"])
                renamed += 1
        names = [port["ElementName"] for port in connection.EnumerateInstances(PORTS)]
        assert [f"renamed {i}" for i in range(3)] == [name for name in names if name.startswith("renamed")]
