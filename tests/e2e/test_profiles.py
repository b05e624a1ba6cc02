"""What a client learns of the switch from its registered profiles, as pywbem's WBEMServer asks for them."""

import pywbem
import pytest

SUB_PROFILES = {
    "Switch": ["Switch Configuration Data", "Access Points", "Location", "Physical Package", "Software", "Blades"],
    "Fabric": ["Zone Control", "Enhanced Zoning and Enhanced Zoning Control"],
    "Server": ["Indication"],
    "Record Log": [],
}


@pytest.fixture
def server(connection):
    return pywbem.WBEMServer(connection)


def profile_named(server, name):
    [profile] = server.get_selected_profiles(registered_name=name)
    return profile


def first(connection, class_name):
    """As associations name it: with the host."""
    path = connection.EnumerateInstanceNames(class_name)[0]
    path.host = connection.host
    return path


def test_profiles_by_organisation_name_and_version(connection, server):
    organisation = pywbem.ValueMapping.for_property(server, server.interop_ns, "CIM_RegisteredProfile",
                                                    "RegisteredOrganization")
    named = [(profile.classname, organisation.tovalues(profile["RegisteredOrganization"]), profile["RegisteredName"],
              profile["RegisteredVersion"]) for profile in server.profiles]
    assert named == [
        ("VRAX_RegisteredProfile", "SNIA", "Fabric", "1.1.0"),
        ("VRAX_RegisteredProfile", "SNIA", "Switch", "1.1.0"),
        ("VRAX_RegisteredProfile", "SNIA", "Server", "1.1.0"),
        ("VRAX_RegisteredProfile", "DMTF", "Record Log", "1.0.0"),
        *(("VRAX_RegisteredSubProfile", "SNIA", name, "1.1.0") for names in SUB_PROFILES.values() for name in names)]
    [server_profile] = server.get_selected_profiles("snia", "server", "1.1.0")
    assert server_profile["InstanceID"] == "VRAX:Server"
    assert [one["RegisteredName"] for one in server.get_selected_profiles("DMTF")] == ["Record Log"]
    assert server.get_selected_profiles("SNIA", "Server", "1.2.0") == []
    with pytest.raises(pywbem.CIMError) as refused:
        connection.InvokeMethod("GetCentralInstances", server_profile.path)
    assert refused.value.status_code == pywbem.CIM_ERR_METHOD_NOT_FOUND


@pytest.mark.parametrize("name", SUB_PROFILES)
def test_central_instances_of_profiles(connection, server, name):
    central = server.get_central_instances(profile_named(server, name).path)
    common = [first(connection, one) for one in ("VRAX_ObjectManager", "VRAX_Fabric", "VRAX_FCSwitch")]
    assert central[:3] == common
    assert {path.classname for path in central[3:]} == ({"VRAX_RecordLog"} if name == "Record Log" else set())
