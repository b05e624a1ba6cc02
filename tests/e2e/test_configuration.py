"""Backing up the switch's configuration, and restoring it from an image that a client has changed."""

import json
import os
import pathlib
import stat

import pywbem
import pytest

from agent_process import CHASSIS_SCENARIO, NAMESPACE, AgentProcess

CLASS = "VRAX_ConfigurationData"
RUNNING, INITIAL, UNKNOWN = (pywbem.Uint16(n) for n in (2, 3, 7))


def connected(agent):
    return pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, timeout=120)


@pytest.fixture
def agent(build_dir, tmp_path):
    """An agent of its own for every test, whose files are all below one directory."""
    with AgentProcess(build_dir, environment={"TMPDIR": str(tmp_path)}) as running:
        yield running


@pytest.fixture
def connection(agent):
    return connected(agent)


def images(connection):
    """The images by their type."""
    return {one["InstanceID"].rsplit(":", 1)[1]: one for one in connection.EnumerateInstances(CLASS)}


def text_of(image):
    data = bytes(image["ConfigurationInformation"])
    assert data[-1:] == b"\0" and b"\0" not in data[:-1]
    return data[:-1].decode()


def upload(connection, text):
    name = connection.EnumerateInstanceNames(CLASS)[0]["InstanceID"].replace("DEFAULT", "NEW")
    data = [pywbem.Uint8(byte) for byte in text.encode()]
    return connection.CreateInstance(pywbem.CIMInstance(CLASS, {
        "InstanceID": name, "ConfigurationInformation": pywbem.CIMProperty("ConfigurationInformation", data, "uint8")}))


def apply(connection, path, kind=RUNNING, validate_only=False):
    switch = connection.EnumerateInstanceNames("VRAX_FCSwitch")[0]
    return connection.InvokeMethod("ApplyConfiguration", path, ValidateOnly=validate_only,
                                   TypeOfConfiguration=kind, ManagedElement=switch)[0]


def error_of(call, *args, **kwargs):
    with pytest.raises(pywbem.CIMError) as error:
        call(*args, **kwargs)
    return error.value.status_code, error.value.status_description


def names(connection):
    """Of the local switch, its ports and the zones that are configured."""
    local = text_of_local(connection)
    ports = {one["PortNumber"]: one["ElementName"] for one in connection.EnumerateInstances("VRAX_FCPort")
             if one["SystemName"].upper() == local["Name"].upper()}
    zones = {one["ElementName"] for one in connection.EnumerateInstances("VRAX_Zone") if not one["Active"]}
    return local["ElementName"], ports, zones


def text_of_local(connection):
    wwn = connection.EnumerateInstanceNames(CLASS)[0]["InstanceID"].split(":")[2]
    return next(one for one in connection.EnumerateInstances("VRAX_FCSwitch") if one["Name"].upper() == wwn.upper())


def changed(text):
    """The image with another name of the switch, of port 3, and one zone more."""
    image = json.loads(text)
    local = image["switches"][0]
    local["name"] = "restored"
    next(port for port in local["ports"] if port["number"] == 3)["name"] = "restored port"
    image["zoning"]["zones"].append({"name": "restored-zone", "members": [{"domain": 1, "port": 8}]})
    return json.dumps(image)


def test_an_image_is_read_changed_uploaded_and_applied(connection):
    switch, ports, zones = names(connection)
    assert set(images(connection)) == {"DEFAULT"}
    default = images(connection)["DEFAULT"]
    assert default["ElementName"] == "Switch Configuration Image"
    text = text_of(default)
    new = upload(connection, changed(text) + "\0what follows a zero is not part of it")

    listed = images(connection)
    assert set(listed) == {"DEFAULT", "NEW"}
    assert text_of(listed["NEW"]) == changed(text)
    assert text_of(connection.GetInstance(new)) == changed(text)
    pulled = connection.OpenEnumerateInstances(CLASS, MaxObjectCount=2).instances
    assert [text_of(one) for one in pulled] == [text_of(listed[kind]) for kind in ("DEFAULT", "NEW")]
    assert {p.keybindings["SettingData"]["InstanceID"] for p in
            connection.EnumerateInstanceNames("VRAX_FCSwitchConfigurationData")} == \
        {one["InstanceID"] for one in listed.values()}
    assert error_of(upload, connection, text) == (pywbem.CIM_ERR_ALREADY_EXISTS, error_of(upload, connection, text)[1])
    assert names(connection) == (switch, ports, zones), "nothing is applied yet"

    assert apply(connection, new) == 0
    assert names(connection) == ("restored", {**ports, 3: "restored port"}, zones | {"restored-zone"})
    assert set(images(connection)) == {"DEFAULT"}
    assert error_of(connection.GetInstance, new)[0] == pywbem.CIM_ERR_NOT_FOUND
    assert connection.EnumerateInstances("VRAX_LogEntry"), "the switch serves on"

    assert apply(connection, upload(connection, text)) == 0
    assert names(connection) == (switch, ports, zones)


def test_the_image_of_a_chassis_goes_through_with_the_limits_as_they_are(build_dir, tmp_path):
    with AgentProcess(build_dir, CHASSIS_SCENARIO, environment={"TMPDIR": str(tmp_path)}) as agent:
        connection = connected(agent)
        image = json.loads(text_of(images(connection)["DEFAULT"]))
        next(one for one in image["switches"] if one.get("local"))["name"] = "restored"
        text = json.dumps(image).ljust(300_000)
        new = upload(connection, text)
        assert text_of(connection.GetInstance(new)) == text
        assert apply(connection, new) == 0
        assert text_of_local(connection)["ElementName"] == "restored"


def test_what_is_refused_changes_nothing(connection):
    before = names(connection)
    text = text_of(images(connection)["DEFAULT"])
    new = upload(connection, changed(text))
    for kind, validate_only, reason in [(RUNNING, True, "ValidateOnly"), (INITIAL, False, "TypeOfConfiguration"),
                                        (UNKNOWN, False, "TypeOfConfiguration")]:
        code, description = error_of(apply, connection, new, kind, validate_only)
        assert code == pywbem.CIM_ERR_FAILED
        assert description.endswith("Invalid input parameter : " + reason)
    default = images(connection)["DEFAULT"].path
    assert apply(connection, default) == 0
    assert names(connection) == before
    assert set(images(connection)) == {"DEFAULT", "NEW"}
    assert error_of(connection.DeleteInstance, new)[0] == pywbem.CIM_ERR_NOT_SUPPORTED
    assert apply(connection, new) == 0

    damaged = upload(connection, changed(text)[:-20])
    before = names(connection)
    code, description = error_of(apply, connection, damaged)
    assert code == pywbem.CIM_ERR_FAILED and description.endswith("restoreConfig failed")
    assert names(connection) == before
    assert set(images(connection)) == {"DEFAULT"}
    newest = max((one["RecordData"] for one in connection.EnumerateInstances("VRAX_LogEntry")
                  if "restore refused" in one["RecordData"]), default="")
    assert newest, "the switch's log says why"


def test_the_switch_keeps_its_files_to_itself(build_dir, tmp_path):
    """In a directory that goes with the process, or in the one that is named, which stays."""
    made = tmp_path / "made"
    made.mkdir()
    with AgentProcess(build_dir, environment={"TMPDIR": str(made)}) as agent:
        text = text_of(images(connected(agent))["DEFAULT"])
        (directory,) = made.glob("simulated-switch-*")
        assert stat.S_IMODE(directory.stat().st_mode) == 0o700
        assert (directory / "norvik/conf/images/configdata").read_text() == text
    assert os.listdir(made) == []
    assert not pathlib.Path("/norvik").exists()

    named = tmp_path / "named" / "switch"
    with AgentProcess(build_dir, environment={"VRAX_IMAGE_DIR": str(named)}) as agent:
        upload(connected(agent), "waits")
    assert stat.S_IMODE(named.stat().st_mode) == 0o700
    with AgentProcess(build_dir, environment={"VRAX_IMAGE_DIR": str(named)}) as agent:
        assert text_of(images(connected(agent))["NEW"]) == "waits"
