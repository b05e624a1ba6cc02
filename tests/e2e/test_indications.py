"""Indications from end to end: something happens to the switch, and those who subscribed to it are told."""

import json
import signal
import subprocess
import sys

import pywbem
import pytest

from agent_process import DEFAULT_SCENARIO, ROOT, AgentProcess
from indications import (
    FILTER, LISTENER, SUBSCRIPTION, WATCHDOG_SECONDS, Hand, Listeners, Subscriber, dead_url, filter_named,
    wait_until)
from kept_agent import KeptAgent
from test_listeners import listening

LOCAL, FABRIC, OTHER = "100002a5c41d02e0", "100002A5C41D0477", "100002a5c0de0099"
SWITCH_OF_FABRIC, OTHER_PORT, JOINED_PORT = FABRIC, "200002a5c0de0099", "201402A5C41D0477"
OK, ERROR, STOPPED = 2, 6, 10
ALL_ALERTS = 16

# What all alerts of an identifier share: AlertType, PerceivedSeverity, class of the element, Description, Message.
ALERTS = {
    "Core1": (5, 4, "VRAX_FCSwitch", "Redundancy", "Switch %s had redundancy failure for %s at %s"),
    "Core2": (6, 4, "VRAX_FCSwitch", "Environmental", "Switch %s had an environmental problem of type %s of %s at %s"),
    "Core3": (5, 4, "VRAX_FCSwitch", "FRU Operation", "Switch %s had a Field Replaceable Unit (FRU) %s on %s at %s"),
    "Core4": (8, 2, "VRAX_FCSwitch", "Password change", "Switch %s password has changed for user %s"),
    "Core5": (8, 2, "VRAX_FCSwitch", "User or Account Operation", "Switch %s user %s %s"),
    "Core9": (8, 3, "VRAX_FCSwitch", "User Login Failure", "Switch %s had the user %s attempted login fail"),
    "Core12": (5, 3, "VRAX_FCSwitch", "Port Status Changed", "Switch %s has FC Port %s in Fabric %s status changed to %s"),
    "FC1": (6, 2, "VRAX_FCSwitch", "Zone Database Change", "Zone database changed for Switch %s"),
    "FC2": (6, 4, "VRAX_Fabric", "ZoneSet Activated", "Zoneset %s was activated for fabric %s"),
    "FC5": (5, 5, "VRAX_Fabric", "Switch Status Changed", "Switch %s in Fabric %s status changed to %s"),
    "FC6": (5, 4, "VRAX_SAN", "Fabric Merge/Segmentation", "%s has detected a %s"),
    "FC7": (5, 4, "VRAX_Fabric", "Switch Added/Removed", "The fabric %s has detected switch %s has been %s"),
    "FC8": (5, 5, "VRAX_SAN", "Fabric Added/Removed", "Fabric %s was %s"),
}
SNIA_FILTERS = dict(zip(ALERTS, range(17, 30)))


def alert(kind, *arguments, number=None):
    """The numbers of the filters that select it, and how it looks. An alert of zoning has a number beside its name."""
    severity_and_type, (element_class, description, message) = ALERTS[kind][:2], ALERTS[kind][2:]
    of_switch = element_class == "VRAX_FCSwitch"
    element = next(word for word in arguments if len(word) == 16)
    path = f'{element_class}.CreationClassName="{element_class}",Name="{element.upper() if of_switch else FABRIC}"'
    filters = {"32": (12, 13), "33": (14, 15)}.get(number, (SNIA_FILTERS[kind],))
    return (*filters, ALL_ALERTS), ("CIM_AlertIndication", "SNIA", number or kind, *severity_and_type, path, description,
                                    message % arguments, [*["Switch"] * of_switch, *arguments])


def switch_life(indication_class, filters, switch, *statuses):
    look = {"Name": switch.upper(), "CreationClassName": "VRAX_FCSwitch:" + switch.upper()}
    return filters, (indication_class, "VRAX:" + switch, *appearances("CIM_ComputerSystem", look, statuses))


def port_life(indication_class, filters, switch, port, *statuses):
    look = {"DeviceID": f"{switch}:{port}", "SystemName": switch, "CreationClassName": "VRAX_FCPort",
            "SystemCreationClassName": "VRAX_FCSwitch"}
    return filters, (indication_class, f"VRAX:{switch}:{port}", *appearances("VRAX_FCPort", look, statuses))


def appearances(element_class, look, statuses):
    """Of the element, and when it was changed of the one before: the last status first."""
    if not statuses:
        return [(element_class, look)]
    return [(element_class, {**look, "OperationalStatus": [status]}) for status in statuses]


def port_changed(switch, port, now, before):
    words = {OK: "Ok", STOPPED: "Stopped", ERROR: "Error"}
    return [alert("Core12", switch, port, FABRIC, words[now]),
            port_life("CIM_InstModification", (10, 11), switch, port, now, before)]


def switch_changed(switch, now, before):
    return [alert("FC5", switch, FABRIC, {OK: "Ok", STOPPED: "Stopped"}[now]),
            switch_life("CIM_InstModification", (4, 5), switch, now, before)]


def zoning_changed():
    return [alert("FC1", LOCAL, number="32"), alert("FC1", LOCAL)]


# What is done, and what is told of it.
EVENTS = [
    ("switch 2 principal", [alert("FC8", FABRIC, "added")]),
    ("fabric remove", [alert("FC8", FABRIC, "removed")]),
    ("switch 2 principal", [alert("FC8", FABRIC, "added")]),
    ("port 3 down", port_changed(LOCAL, "200302a5c41d02e0", STOPPED, OK)),
    ("port 3 up", port_changed(LOCAL, "200302a5c41d02e0", OK, STOPPED)),
    ("port 3 fail", port_changed(LOCAL, "200302a5c41d02e0", ERROR, OK)),
    ("port 3 repair", port_changed(LOCAL, "200302a5c41d02e0", OK, ERROR)),
    (f"switch add 9 {OTHER} 1", [alert("FC7", FABRIC, OTHER, "added"),
                                 switch_life("CIM_InstCreation", (0, 1), OTHER),
                                 port_life("CIM_InstCreation", (6, 7), OTHER, OTHER_PORT)]),
    ("link add 9 0 2 20", [*port_changed(OTHER, OTHER_PORT, OK, STOPPED),
                           *port_changed(SWITCH_OF_FABRIC, JOINED_PORT, OK, STOPPED), alert("FC6", FABRIC, "merged")]),
    ("switch 9 offline", [*switch_changed(OTHER, STOPPED, OK), *port_changed(OTHER, OTHER_PORT, STOPPED, OK),
                          *port_changed(SWITCH_OF_FABRIC, JOINED_PORT, STOPPED, OK), alert("FC6", FABRIC, "segmented")]),
    ("switch 9 online", [*switch_changed(OTHER, OK, STOPPED), *port_changed(OTHER, OTHER_PORT, OK, STOPPED),
                         *port_changed(SWITCH_OF_FABRIC, JOINED_PORT, OK, STOPPED), alert("FC6", FABRIC, "merged")]),
    ("switch remove 9", [*port_changed(SWITCH_OF_FABRIC, JOINED_PORT, STOPPED, OK),
                         port_life("CIM_InstDeletion", (8, 9), OTHER, OTHER_PORT),
                         switch_life("CIM_InstDeletion", (2, 3), OTHER)]),
    ("blade 1 pull", [alert("Core3", LOCAL, "removed", "IOBlade", "blade 1")]),
    ("blade 1 insert", [alert("Core3", LOCAL, "added", "IOBlade", "blade 1")]),
    *((f"{part} 1 {change}", [alert(kind, LOCAL, *words, place) for kind, *words in told])
      for part, name, place in [("cpu", "CPU", "CPU 1"), ("fan", "Fan", "fan 1"), ("supply", "PowerSupply", "power supply 1")]
      for change, told in [
          ("fail", [("Core1", f"{name.replace('Supply', '')} Component")]),
          ("repair", [("Core3", "added", name)]),
          ("pull", [("Core1", f"{name.replace('Supply', '')} Component"), ("Core3", "removed", name)]),
          ("insert", [("Core3", "added", name)])]),
    ("user add eva", [alert("Core5", LOCAL, "eva", "added")]),
    ("user password eva", [alert("Core4", LOCAL, "eva")]),
    ("user refuse eva", [alert("Core9", LOCAL, "eva")]),
    ("user remove eva", [alert("Core5", LOCAL, "eva", "removed")]),
    ("zoning add zone lab2", zoning_changed()),
    ("zoning activate maintenance", [alert("FC2", "maintenance", FABRIC, number="33"), alert("FC2", "maintenance", FABRIC)]),
    ("sensor temperature 1 pin 91.5", [alert("Core2", LOCAL, "Temperature", "91.50 C", "Intake")]),
    ("sensor voltage 2 break", [alert("Core2", LOCAL, "Voltage", "no reading", "3.3 V")]),
]


def seen(indication):
    """An indication in the form of the table."""
    assert indication["IndicationTime"] is not None
    if indication.classname == "CIM_AlertIndication":
        assert indication["ProbableCause"] == 0
        return (indication.classname, *(indication[name] for name in (
            "OwningEntity", "MessageID", "AlertType", "PerceivedSeverity", "AlertingManagedElement", "Description",
            "Message", "MessageArguments")))
    elements = [indication[name] for name in ("SourceInstance", "PreviousInstance") if indication.get(name) is not None]
    of_interest = ["DeviceID", "SystemName", "SystemCreationClassName", "Name", "CreationClassName"]
    if indication.classname == "CIM_InstModification":
        of_interest.append("OperationalStatus")
    if elements[0].classname == "VRAX_FCPort":
        of_interest.remove("Name")
    return (indication.classname, indication["IndicationIdentifier"],
            *((element.classname, {name: element[name] for name in of_interest if element.get(name) is not None})
              for element in elements))


@pytest.fixture
def listeners():
    with Listeners() as running:
        yield running


@pytest.fixture
def socket(tmp_path):
    return tmp_path / "switch.sock"


@pytest.fixture
def agent(build_dir, socket, listeners):
    with AgentProcess(build_dir, extra_args=["--switch-socket", str(socket)]) as running:
        yield running


@pytest.fixture
def switch(agent, socket):
    return Hand(socket)


@pytest.fixture
def connection(agent):
    return pywbem.WBEMConnection(agent.url, default_namespace="root/interop", timeout=60)


@pytest.fixture
def subscribe(connection):
    return Subscriber(connection)


@pytest.fixture
def forming_agent(build_dir, tmp_path, socket, listeners):
    """Its fabric has no principal switch yet, and its switch has a blade."""
    scenario = json.loads(DEFAULT_SCENARIO.read_text())
    del scenario["principal"]
    scenario["noPrincipal"] = True
    scenario["switches"][0]["blades"] = [{"ports": [20, 21]}]
    (tmp_path / "scenario.json").write_text(json.dumps(scenario))
    with AgentProcess(build_dir, tmp_path / "scenario.json", ["--switch-socket", str(socket)]) as running:
        yield running


def test_every_event_is_told_to_those_who_want_it_and_to_nobody_else(forming_agent, socket, listeners):
    connection = pywbem.WBEMConnection(forming_agent.url, default_namespace="root/interop", timeout=60)
    subscribe, switch = Subscriber(connection), Hand(socket)
    filters = [path["Name"] for path in connection.EnumerateInstanceNames(FILTER)]
    assert len(filters) == 30
    for number, name in enumerate(filters):
        subscribe(listeners.url(f"keep-{number}"), name)
    for command, told in EVENTS:
        switch(command)
        for number in range(len(filters)):
            expected = [look for wanted_by, look in told if number in wanted_by]
            got = [seen(one) for one in listeners.next_ones(f"keep-{number}", len(expected))]
            assert got == expected, f"{command}, filter {number}"
    # Nothing more came to anybody: the next thing is what all get, once, however many filters select it.
    for number in range(len(filters)):
        for name in (filters[ALL_ALERTS], "CQL:Alert:SNIA:Core9"):
            if name != filters[number]:
                subscribe(listeners.url(f"keep-{number}"), name)
    switch("user refuse one")
    switch("user refuse another")
    for number in range(len(filters)):
        assert [one["MessageArguments"][-1] for one in listeners.next_ones(f"keep-{number}", 2)] == ["one", "another"]


def ups_and_downs(switch, count, ports=(3, 4, 5, 6, 7)):
    """Changes ports so often; what is told of it, as short texts."""
    for number in range(count):
        switch(f"port {ports[number % len(ports)]} {'up' if number // len(ports) % 2 else 'down'}")
    return [f"20{ports[number % len(ports)]:02x}02a5c41d02e0 {OK if number // len(ports) % 2 else STOPPED}"
            for number in range(count)]


def short(indication):
    if indication.classname == "CIM_AlertIndication":
        port, status = indication["MessageArguments"][2], indication["MessageArguments"][4]
        return f"{port} {OK if status == 'Ok' else STOPPED}"
    port = indication["SourceInstance"]
    return f"{port['DeviceID'].split(':')[1]} {port['OperationalStatus'][0]}"


def check_told(listeners, name, expected):
    assert [short(one) for one in listeners.next_ones(name, len(expected))] == expected, name


@pytest.mark.parametrize("what, count", [("keep", 200), ("close", 1000)])
def test_many_events_arrive_complete_and_in_order(switch, subscribe, listeners, what, count):
    subscribe(listeners.url(f"{what}-alerts"), "CQL:Alert:SNIA:Core12")
    subscribe(listeners.url(f"{what}-changes"), "Modify:FCPort")
    expected = ups_and_downs(switch, count)
    check_told(listeners, f"{what}-alerts", expected)
    check_told(listeners, f"{what}-changes", expected)
    # Nothing came twice.
    last = ups_and_downs(switch, 1, [8])
    check_told(listeners, f"{what}-alerts", last)
    check_told(listeners, f"{what}-changes", last)


def test_the_largest_switch_comes_and_goes_at_once(switch, subscribe, listeners):
    ports = [f"{OTHER}:2{number:03x}{OTHER[4:]}" for number in range(1536)]
    for what in ("Create", "Delete"):
        subscribe(listeners.url(f"keep-{what}"), f"{what}:FCPort")
    for command, name in [(f"switch add 9 {OTHER} {len(ports)}", "keep-Create"), ("switch remove 9", "keep-Delete")]:
        switch(command)
        assert [one["SourceInstance"]["DeviceID"] for one in listeners.next_ones(name, len(ports))] == ports


def test_listeners_that_fail_hold_nobody_up(switch, subscribe, listeners):
    names = ["close-a", "keep-b", "error-c", "hang-d"]
    with dead_url() as dead:
        for url in [dead, *(listeners.url(name) for name in names)]:
            subscribe(url, "CQL:Modify:FCPort")
        expected = ups_and_downs(switch, 100)
        for name in ("close-a", "keep-b"):
            check_told(listeners, name, expected)
        # An answer is an answer: what was refused is not sent again.
        check_told(listeners, "error-c", expected)
        check_told(listeners, "hang-d", expected[:1])


def test_subscriptions_that_are_disabled_or_over_get_nothing(switch, subscribe, connection, listeners):
    names = ["keep-disabled", "keep-over", "keep-deleted"]
    disabled, = subscribe(listeners.url("keep-disabled"), "Modify:FCPort", SubscriptionState=pywbem.Uint16(3))
    over, = subscribe(listeners.url("keep-over"), "Modify:FCPort", SubscriptionDuration=pywbem.Uint64(1))
    deleted, = subscribe(listeners.url("keep-deleted"), "Modify:FCPort")
    subscribe(listeners.url("keep-on"), "Modify:FCPort")
    assert connection.GetInstance(disabled)["SubscriptionState"] == 4
    connection.DeleteInstance(deleted)
    wait_until(lambda: "keep-over" not in switch("show subscriptions"))
    check_told(listeners, "keep-on", ups_and_downs(switch, 20))
    for name in names:
        subscribe(listeners.url(name), "CQL:Modify:FCPort")
    expected = ups_and_downs(switch, 1, [8])
    for name in names:
        check_told(listeners, name, expected)


def test_a_restart_and_a_crash_forget_nobody(build_dir, tmp_path, socket, listeners):
    with KeptAgent(build_dir, tmp_path, extra_args=["--switch-socket", str(socket)]) as agent:
        switch = Hand(socket)
        Subscriber(agent.connection)(listeners.url("keep-a"), "Modify:FCPort", "CQL:Alert:All")
        Subscriber(agent.connection)(listeners.url("close-b"), "Create:ComputerSystem")
        agent.restart()
        switch(f"switch add 9 {OTHER} 1")
        assert listeners.next("close-b")["SourceInstance"]["Name"] == OTHER.upper()
        assert listeners.next("keep-a")["MessageID"] == "FC7"
        agent.crash()
        assert len(agent.connection.EnumerateInstances(SUBSCRIPTION)) == 3
        # What happens while the next process starts is told to nobody.
        wait_until(lambda: listeners.has("keep-a") or switch("user refuse eva"))
        assert listeners.next("keep-a")["MessageID"] == "Core9"
        switch(f"switch add 10 {OTHER[:-1]}a 1")
        assert listeners.next("close-b")["SourceInstance"]["Name"] == OTHER[:-1].upper() + "A"


def test_pywbem_manages_its_subscriptions_and_listens(switch, connection):
    manager = pywbem.WBEMSubscriptionManager("me")
    server = manager.add_server(pywbem.WBEMServer(connection))
    with listening() as (port, arrived):
        destination = manager.add_destination(server, f"http://127.0.0.1:{port}", destination_id="one")
        (_, changes) = [manager.add_subscriptions(server, filter_named(connection, name), destination.path)[0]
                        for name in ("CQL:Alert:All", "CQL:Modify:FCPort")]
        switch("port 3 down")
        assert {arrived.get(timeout=WATCHDOG_SECONDS).classname for _ in range(2)} == {
            "CIM_AlertIndication", "CIM_InstModification"}
        manager.remove_subscriptions(server, changes.path)
        switch("port 3 up")
        switch("user refuse eva")
        assert [arrived.get(timeout=WATCHDOG_SECONDS)["MessageID"] for _ in range(2)] == ["Core12", "Core9"]
        manager.remove_all_servers()
    assert not connection.EnumerateInstanceNames(LISTENER)


def test_a_person_listens(switch, connection):
    command = [sys.executable, ROOT / "scripts" / "listen.py", connection.url]
    with subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as run:
        try:
            assert run.stdout.readline().startswith("Listening at http://127.0.0.1:")
            switch("user refuse eva")
            assert run.stdout.readline().endswith(
                f" CIM_AlertIndication Core9: Switch {LOCAL} had the user eva attempted login fail\n")
            switch("port 3 down")
            assert any("CIM_InstModification " + f"{LOCAL}:200302a5c41d02e0 OperationalStatus 10\n" in run.stdout.readline()
                       for _ in range(2))
        finally:
            run.send_signal(signal.SIGINT)
        assert run.wait(WATCHDOG_SECONDS) == 0
    assert not connection.EnumerateInstanceNames(LISTENER) + connection.EnumerateInstanceNames(SUBSCRIPTION)
    failed = subprocess.run([*command, "--filter", "none"], capture_output=True, text=True)
    assert failed.returncode == 1 and "there is no filter none; the switch has " in failed.stderr
