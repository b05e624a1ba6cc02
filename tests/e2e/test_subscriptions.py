"""Clients subscribe: filters, listeners and subscriptions as pywbem's subscription manager and plain requests see them."""

import pywbem
import pytest

import indications
from agent_process import NAMESPACE
from indications import FILTER, LISTENER, SUBSCRIPTION, filter_named, subscription
from kept_agent import KeptAgent, six_ways

URL = "http://127.0.0.1:50000"


@pytest.fixture
def agent(build_dir, tmp_path):
    with KeptAgent(build_dir, tmp_path) as running:
        yield running


def listener(name, **properties):
    return indications.listener(name, URL, **properties)


def error_of(call, *args, **kwargs):
    with pytest.raises(pywbem.CIMError) as error:
        call(*args, **kwargs)
    return error.value.status_code, error.value.status_description


def without_host(path):
    path = path.copy()
    path.host = None
    return path


def test_a_subscription_manager_finds_its_way(agent):
    server = pywbem.WBEMServer(agent.connection)
    manager = pywbem.WBEMSubscriptionManager("me")
    server_id = manager.add_server(server)
    destination = manager.add_destination(server_id, URL, destination_id="one")
    alerts = next(one for one in manager.get_all_filters(server_id) if one["Name"] == "CQL:Alert:All")
    subscribed, = manager.add_subscriptions(server_id, alerts.path, destination.path)
    assert destination["PersistenceType"] == 3
    assert (subscribed["SubscriptionState"], subscribed["OnFatalErrorPolicy"]) == (2, 2)
    kept = agent.local_switch()
    assert kept["listeners"] == [{"name": "pywbemdestination:me:one", "permanent": False, "destination": URL}]
    assert [(one["filter"], one["listeners"]) for one in kept["subscriptions"]] == [
        ("CQL:Alert:All", ["pywbemdestination:me:one"])]
    # Made, found and fetched, everything is called the same.
    assert [without_host(path) for path in agent.connection.EnumerateInstanceNames(LISTENER)] == [destination.path]
    assert [without_host(path) for path in agent.connection.EnumerateInstanceNames(SUBSCRIPTION)] == [subscribed.path]
    assert not six_ways(agent.connection, SUBSCRIPTION, alerts.path, destination.path)
    with pytest.raises(pywbem.CIMError, match="referenced by subscriptions"):
        manager.remove_destinations(server_id, destination.path)

    # Another manager of the same name takes over where the first one stopped, also after a restart.
    agent.restart()
    manager = pywbem.WBEMSubscriptionManager("me")
    server_id = manager.add_server(pywbem.WBEMServer(agent.connection))
    assert [one["Name"] for one in manager.get_owned_destinations(server_id)] == [destination["Name"]]
    assert len(manager.get_owned_subscriptions(server_id)) == 1
    second = manager.add_destination(server_id, "https://host.example:50001", destination_id="two")
    manager.add_subscriptions(server_id, filter_named(agent.connection, "Create:FCPort"), second.path)
    assert len(agent.connection.EnumerateInstances(SUBSCRIPTION)) == 2
    manager.remove_all_servers()
    assert not agent.connection.EnumerateInstanceNames(SUBSCRIPTION)
    assert not agent.connection.EnumerateInstanceNames(LISTENER)


def test_paths_as_clients_make_them_up(agent):
    """Another system, a host, no namespace: what is meant is clear."""
    connection = agent.connection
    made = connection.CreateInstance(listener("l", SystemCreationClassName="CIM_ComputerSystem", SystemName="host",
                                              PersistenceType=pywbem.Uint16(2)))
    assert connection.GetInstance(made)["PersistenceType"] == 2
    alerts = filter_named(connection, "Alert:ActivateZoneSet")
    bare, foreign = alerts.copy(), made.copy()
    bare.host = bare.namespace = None
    foreign.host = "client.example"
    foreign["SystemCreationClassName"] = "CIM_ComputerSystem"
    foreign["SystemName"] = "host"
    path = connection.CreateInstance(subscription(bare, foreign, SubscriptionDuration=pywbem.Uint64(10 ** 6),
                                                  SubscriptionState=pywbem.Uint16(2)))
    assert path["Handler"].keybindings == made.keybindings
    meant = pywbem.CIMInstanceName(SUBSCRIPTION, {"Filter": bare, "Handler": foreign}, namespace=NAMESPACE)
    for name in (path, meant):
        assert connection.GetInstance(name)["SubscriptionDuration"] == 720000
    connection.DeleteInstance(meant)
    assert not connection.EnumerateInstanceNames(SUBSCRIPTION)


def test_mistakes_are_told(agent):
    connection = agent.connection
    made = connection.CreateInstance(listener("l"))
    alerts = filter_named(connection, "CQL:Alert:All")
    path = connection.CreateInstance(subscription(alerts, made))
    unknown = made.copy()
    unknown["Name"] = "unknown"
    no_subscription = pywbem.CIMInstanceName(SUBSCRIPTION, {"Filter": alerts, "Handler": unknown}, namespace=NAMESPACE)
    other = listener("other")
    other["CreationClassName"] = "CIM_ListenerDestination"
    of_filter = pywbem.CIMInstance(FILTER, {"Name": "x", "Query": "SELECT * FROM CIM_Error", "QueryLanguage": "CQL"})
    change = {"Destination": "http://elsewhere"}
    for call, argument, status, text in (
            (connection.CreateInstance, listener("l"), 11, "Listener already exists"),
            (connection.CreateInstance, other, 4, "CreationClassName not equal to CIM_ListenerDestinationCIMXML"),
            (connection.CreateInstance, subscription(alerts, made), 1, "Subscription of this type already exists"),
            (connection.CreateInstance, pywbem.CIMInstance(SUBSCRIPTION, {"Filter": alerts}), 4, "not valid"),
            (connection.CreateInstance, of_filter, 7, ""),
            (connection.ModifyInstance, pywbem.CIMInstance(LISTENER, change, path=made), 7, ""),
            (connection.ModifyInstance,
             pywbem.CIMInstance(SUBSCRIPTION, {"SubscriptionState": pywbem.Uint16(4)}, path=path), 7, ""),
            (connection.GetInstance, unknown, 6, ""),
            (connection.DeleteInstance, unknown, 6, "Listener to be deleted does not exist"),
            (connection.DeleteInstance, no_subscription, 6, "Instance not found"),
            (connection.DeleteInstance, alerts, 7, "")):
        code, description = error_of(call, argument)
        assert code == status and text in description, (argument, code, description)
    # Nothing of it has left a trace.
    assert [without_host(name) for name in connection.EnumerateInstanceNames(LISTENER)] == [made]
    assert [without_host(name) for name in connection.EnumerateInstanceNames(SUBSCRIPTION)] == [path]
    # The subscriptions of a listener go with it.
    connection.DeleteInstance(made)
    assert not connection.EnumerateInstanceNames(SUBSCRIPTION)
    assert error_of(connection.DeleteInstance, made)[0] == 6
