"""What a client does with the switch's logs: reads them, clears them, stops and starts them."""

import json

import pywbem
import pytest

from agent_process import DEFAULT_SCENARIO, NAMESPACE, AgentProcess

START, STOP = 2, 6
INVALID = 5
USER_LOG = [
    ("3", "Wed Dec 31 23:59:59.999999 UTC 2025", "[port]", "port 1 Offline"),
    ("4", "Thu Jan 01 00:00:00.000000 UTC 2026", "[port]", "port 1 Online"),
    ("5", "Thu Jan 01 00:00:00.000000 UTC 2026", "", "port 2 Online"),
    ("9", "Thu Jan 01 00:00:00 UTC 2026", "[config]", "no microseconds"),
    ("10", "Thu Jan 01 00:00:01.5 UTC 2026", "[a] between [b]", "[in brackets"),
]
MALFORMED = "[7][no more than this]"
ALARM_LOG = [("2", "Thu Jan 01 00:00:00.000000 UTC 2026", "", "port 1 Downed")]


def texts(entries):
    return [f"[{number}][{time}]{between}[{message}]" for number, time, between, message in entries]


@pytest.fixture
def start(build_dir, tmp_path):
    """Starts agents on switches with those logs."""
    agents = []

    def run():
        scenario = json.loads(DEFAULT_SCENARIO.read_text())
        local = next(switch for switch in scenario["switches"] if switch.get("local"))
        user = texts(USER_LOG)
        local.update(userLog=user[:3] + [MALFORMED] + user[3:], alarmLog=texts(ALARM_LOG))
        path = tmp_path / "scenario.json"
        path.write_text(json.dumps(scenario))
        agents.append(AgentProcess(build_dir, path))
        agents[-1].__enter__()
        return pywbem.WBEMConnection(agents[-1].url, default_namespace=NAMESPACE, timeout=60)

    yield run
    for agent in agents:
        agent.stop()


def logs(connection):
    """The user log and the alarm log."""
    return connection.EnumerateInstances("VRAX_RecordLog")


def entries(connection, name):
    return [(one["RecordID"], one["RecordData"]) for one in connection.EnumerateInstances("VRAX_LogEntry")
            if one["LogName"] == name]


def call(connection, log, method, **parameters):
    return connection.InvokeMethod(method, log.path, **{k: pywbem.Uint16(v) for k, v in parameters.items()})[0]


def rename_a_port(connection, name):
    port = next(p for p in connection.EnumerateInstances("VRAX_FCPort") if p["RequestedState"] == 5)
    change = pywbem.CIMInstance(port.classname, {"ElementName": name}, path=port.path)
    connection.ModifyInstance(change, PropertyList=["ElementName"])
    return f"written: port/{port['PortNumber']}"


def expected(log):
    return [(number, message) for number, _, _, message in log]


def test_both_logs_and_their_entries_in_order(start):
    connection = start()
    user, alarm = logs(connection)
    sizes = [(log["Name"], log["CurrentNumberOfRecords"]) for log in (user, alarm)]
    assert sizes == [("User Log", 6), ("Alarm Log", 1)]
    assert entries(connection, "User Log") == expected(USER_LOG)
    assert entries(connection, "Alarm Log") == expected(ALARM_LOG)

    for entry in connection.EnumerateInstances("VRAX_LogEntry"):
        if entry["RecordData"] != "no microseconds":
            assert connection.GetInstance(entry.path) == entry
    [timeless] = [one.path for one in connection.EnumerateInstances("VRAX_LogEntry") if one["RecordID"] == "9"]
    with pytest.raises(pywbem.CIMError) as error:
        connection.GetInstance(timeless)
    assert error.value.status_code == pywbem.CIM_ERR_NOT_FOUND
    assert "bad time format (usec)" in error.value.status_description

    switch = next(s for s in connection.EnumerateInstances("VRAX_FCSwitch") if s["RequestedState"] == 5)
    for log, held in [(user, USER_LOG), (alarm, ALARM_LOG)]:
        ends = {(one.classname, one.get("RecordID") or one.get("InstanceID") or one["Name"])
                for one in connection.Associators(log.path)}
        wwn = switch["Name"]
        assert ends == {("VRAX_FCSwitch", switch["Name"]), ("VRAX_RegisteredProfile", "VRAX:Record Log"),
                        ("VRAX_RecordLogCapabilities", log["InstanceID"].replace("RecordLog", "RecordLogCapabilities")),
                        *(("VRAX_LogEntry", number) for number, _ in expected(held))}


@pytest.mark.parametrize("cleared, kept", [(0, 1), (1, 0)], ids=["user", "alarm"])
def test_a_log_is_cleared(start, cleared, kept):
    connection = start()
    both = logs(connection)
    before = connection.EnumerateInstances("VRAX_LogEntry")
    assert call(connection, both[cleared], "ClearLog") == 0
    assert [log["CurrentNumberOfRecords"] > 0 for log in logs(connection)] == [one == kept for one in (0, 1)]
    assert entries(connection, both[cleared]["Name"]) == []
    assert connection.AssociatorNames(both[cleared].path, AssocClass="VRAX_LogManagesRecord") == []
    assert connection.AssociatorNames(both[kept].path, AssocClass="VRAX_LogManagesRecord") != []
    for entry in before:
        if entry["LogName"] == both[cleared]["Name"]:
            with pytest.raises(pywbem.CIMError) as error:
                connection.GetInstance(entry.path)
            assert error.value.status_code == pywbem.CIM_ERR_NOT_FOUND
    written = rename_a_port(connection, "after the clearing")
    call(connection, both[kept], "RequestStateChange", RequestedState=START)  # logs are read again then
    assert ("11", written) in entries(connection, "User Log")


def test_a_stopped_log_takes_no_entry(start):
    connection = start()
    user, alarm = logs(connection)
    assert call(connection, alarm, "RequestStateChange", RequestedState=STOP) == 0
    assert [log["EnabledState"] for log in logs(connection)] == [STOP, START]
    rename_a_port(connection, "while it was off")
    assert entries(connection, "User Log") == expected(USER_LOG)
    assert call(connection, user, "RequestStateChange", RequestedState=START) == 0
    assert [log["EnabledState"] for log in logs(connection)] == [START, START]
    written = rename_a_port(connection, "while it was on")
    assert entries(connection, "User Log")[5:] == [("11", written)]
    assert call(connection, user, "RequestStateChange", RequestedState=3) == INVALID
    user.path["InstanceID"] += "s"
    assert call(connection, user, "ClearLog") == INVALID
    assert len(entries(connection, "User Log")) == 6
