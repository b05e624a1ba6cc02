"""Zoning as an administrator changes it: built, activated, changed, activated again and taken apart."""

import json
import time

import pywbem
import pytest

from agent_process import DEFAULT_SCENARIO, NAMESPACE, AgentProcess

DONE, INVALID, LOCKED, NOT_FOUND, EXISTS = 0, 5, 6, 7, 8
FRESH_SECONDS = 30  # for so long the module answers without asking the switch again
WWN = "2100026E1A40B7C1"


class Zoning:
    """The zoning service of an agent, and what is published of zoning."""

    def __init__(self, connection):
        self.connection = connection
        self.service = connection.EnumerateInstanceNames("VRAX_ZoningService")[0]
        self.switch = self.service["Name"]

    def call(self, method, **arguments):
        result, out = self.connection.InvokeMethod(method, self.service, **arguments)
        return result, next(iter(out.values()), None)

    def create_set(self, name):
        return self.call("CreateZoneSet", ZoneSetName=name)

    def create_zone(self, name):
        return self.call("CreateZone", ZoneName=name, ZoneType=pywbem.Uint16(2), ZoneSubType=pywbem.Uint16(0))

    def create_alias(self, name):
        return self.call("CreateZoneAlias", CollectionAlias=name)

    def create_member(self, kind, identifier, holder):
        return self.call("CreateZoneMembershipSettingData", ConnectivityMemberType=pywbem.Uint16(kind),
                         ConnectivityMemberID=identifier, SystemSpecificCollection=holder)

    def activate(self, zone_set, on=True):
        return self.call("ActivateZoneSet", ZoneSet=zone_set, Activate=on)[0]

    def ids(self, class_name):
        return {path["InstanceID"] for path in self.connection.EnumerateInstanceNames(class_name)}

    def pairs(self, association):
        """The keys of both ends of every pair."""
        return {tuple(end["InstanceID"] for end in path.keybindings.values())
                for path in self.connection.EnumerateInstanceNames(association)}

    def path(self, class_name, identity):
        return pywbem.CIMInstanceName(class_name, {"InstanceID": identity}, namespace=NAMESPACE)

    def inactive(self, name):
        return f"Inactive:{self.switch}:{name}"

    def active(self, name):
        return f"Active:{self.switch}:{name}"


@pytest.fixture
def zoning(build_dir):
    with AgentProcess(build_dir) as agent:
        yield Zoning(pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, timeout=60))


def read_from_the_switch_again():
    time.sleep(FRESH_SECONDS + 1)


def six_ways(connection, association, near, far):
    """Whether the pair is found from both of its ends, by every operation on associations."""
    for source, target in ((near, far), (far, near)):
        found = [connection.AssociatorNames(source, AssocClass=association),
                 [one.path for one in connection.Associators(source, AssocClass=association)]]
        ends = [{end["InstanceID"] for end in path.keybindings.values()}
                for path in connection.ReferenceNames(source, ResultClass=association)]
        whole = [{end["InstanceID"] for end in one.path.keybindings.values()}
                 for one in connection.References(source, ResultClass=association)]
        wanted = {source["InstanceID"], target["InstanceID"]}
        if any(target["InstanceID"] not in {path["InstanceID"] for path in paths} for paths in found):
            return False
        if wanted not in ends or wanted not in whole:
            return False
    return True


def test_the_whole_story(zoning):
    connection = zoning.connection
    before = {name: zoning.ids(name) for name in ("VRAX_ZoneSet", "VRAX_Zone", "VRAX_ZoneAlias")}

    # What is handed out can be used as it comes.
    result, zone_set = zoning.create_set("story")
    assert result == DONE and zone_set["InstanceID"] == zoning.inactive("story")
    zones = {}
    for name in ("story_a", "story_b"):
        result, zones[name] = zoning.create_zone(name)
        assert result == DONE and zones[name]["InstanceID"] == zoning.inactive(name)
    result, alias = zoning.create_alias("story_alias")
    assert result == DONE and alias["InstanceID"] == f"{zoning.switch}:story_alias"
    assert zoning.create_set("story")[0] not in (DONE, LOCKED)

    for holder in (zones["story_a"], alias):
        for kind, identifier in ((2, WWN), (3, "01ab03"), (4, "1:10")):
            assert zoning.create_member(kind, identifier, holder)[0] == DONE
    assert zoning.create_member(4, "1:0a", alias)[0] == INVALID
    member = zoning.path("VRAX_ZoneMembership", zoning.inactive(WWN))
    assert zoning.call("AddZoneMembershipSettingData", SystemSpecificCollection=zones["story_a"],
                       ZoneMembershipSettingData=member)[0] == EXISTS
    assert zoning.call("AddZoneAlias", Zone=zones["story_b"], ZoneAlias=alias)[0] == DONE
    assert zoning.call("AddZoneAlias", Zone=zones["story_b"], ZoneAlias=alias)[0] == EXISTS
    for zone in zones.values():
        assert zoning.call("AddZone", ZoneSet=zone_set, Zone=zone)[0] == DONE
    assert zoning.activate(zone_set) == DONE

    read_from_the_switch_again()
    assert zoning.ids("VRAX_ZoneSet") - before["VRAX_ZoneSet"] == {zoning.inactive("story"), zoning.active("story")}
    assert zoning.ids("VRAX_ZoneAlias") - before["VRAX_ZoneAlias"] == {alias["InstanceID"]}
    assert {zoning.active("story_a"), zoning.active("story_b")} <= zoning.ids("VRAX_Zone")
    assert [one["ElementName"] for one in connection.EnumerateInstances("VRAX_ZoneSet") if one["Active"]] == ["story"]
    members = {zoning.inactive(WWN), zoning.inactive("01AB03"), zoning.inactive("1:A")}
    assert members <= zoning.ids("VRAX_ZoneMembership")
    assert {one.replace("Inactive", "Active") for one in members} <= zoning.ids("VRAX_ZoneMembership")

    fabric = connection.EnumerateInstanceNames("VRAX_Fabric")[0]
    in_force = connection.AssociatorNames(fabric, AssocClass="VRAX_FabricZoneSet")
    assert [path["InstanceID"] for path in in_force] == [zoning.active("story")]
    paths = {"set": zone_set, "active set": zoning.path("VRAX_ZoneSet", zoning.active("story")), "alias": alias,
             "a": zones["story_a"], "b": zones["story_b"],
             "active b": zoning.path("VRAX_Zone", zoning.active("story_b")),
             "member": zoning.path("VRAX_ZoneMembership", zoning.inactive("1:A")),
             "enforced member": zoning.path("VRAX_ZoneMembership", zoning.active("1:A"))}
    for association, near, far in (("VRAX_MemberOfZoneSet", "set", "a"), ("VRAX_MemberOfZoneSet", "active set", "active b"),
                                   ("VRAX_MemberOfZone", "b", "alias"), ("VRAX_ZoneElementSettingData", "a", "member"),
                                   ("VRAX_ZoneElementSettingData", "b", "member"),
                                   # The first membership of the member counts.
                                   ("VRAX_ZoneAliasElementSettingData", "alias", "enforced member")):
        assert six_ways(connection, association, paths[near], paths[far]), (association, near, far)
    assert (zone_set["InstanceID"], zoning.active("story_a")) not in zoning.pairs("VRAX_MemberOfZoneSet")

    # The configured zone may change, and is put in force again.
    assert zoning.create_member(3, "01ab04", zones["story_a"])[0] == DONE
    assert zoning.inactive("01AB04") in zoning.ids("VRAX_ZoneMembership")
    assert zoning.activate(zone_set) == DONE

    # A member of what is enforced stays; what is deactivated can be taken apart.
    with pytest.raises(pywbem.CIMError) as refused:
        connection.DeleteInstance(zoning.path("VRAX_ZoneMembership", zoning.inactive("1:A")))
    assert "Cannot delete an active member" in refused.value.status_description
    assert zoning.activate(zone_set, on=False) == DONE
    connection.DeleteInstance(zone_set)
    assert zone_set["InstanceID"] not in zoning.ids("VRAX_ZoneSet")
    for zone in zones.values():
        connection.DeleteInstance(zone)
    connection.DeleteInstance(alias)
    read_from_the_switch_again()
    assert not any(one.startswith("Active") for one in zoning.ids("VRAX_ZoneSet") | zoning.ids("VRAX_Zone"))
    assert zoning.ids("VRAX_ZoneAlias") == before["VRAX_ZoneAlias"]
    assert not any("story" in one for name in before for one in zoning.ids(name))


def test_somebody_else_has_the_administrative_mode(build_dir, tmp_path):
    scenario = json.loads(DEFAULT_SCENARIO.read_text())
    next(one for one in scenario["switches"] if one.get("local"))["adminModeHolder"] = "console"
    path = tmp_path / "held.json"
    path.write_text(json.dumps(scenario))
    with AgentProcess(build_dir, path) as agent:
        zoning = Zoning(pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, timeout=60))
        names = ("VRAX_ZoneSet", "VRAX_Zone", "VRAX_ZoneAlias", "VRAX_ZoneMembership", "VRAX_MemberOfZoneSet",
                 "VRAX_MemberOfZone")
        before = {name: zoning.connection.EnumerateInstanceNames(name) for name in names}
        zone_set = next(path for path in before["VRAX_ZoneSet"] if path["InstanceID"].startswith("Inactive"))
        zone = next(path for path in before["VRAX_Zone"] if path["InstanceID"].startswith("Inactive"))
        alias = before["VRAX_ZoneAlias"][0]
        member = next(path for path in before["VRAX_ZoneMembership"] if path["InstanceID"].startswith("Inactive"))
        assert zoning.create_set("story") == (LOCKED, None)
        assert zoning.create_zone("story") == (LOCKED, None)
        assert zoning.create_alias("story") == (LOCKED, None)
        assert zoning.create_member(3, "01ab03", zone) == (LOCKED, None)
        assert zoning.create_member(3, "01ab03", alias) == (LOCKED, None)
        assert zoning.call("AddZoneMembershipSettingData", SystemSpecificCollection=zone,
                           ZoneMembershipSettingData=member)[0] == LOCKED
        assert zoning.call("AddZoneAlias", Zone=zone, ZoneAlias=alias)[0] == LOCKED
        assert zoning.call("AddZone", ZoneSet=zone_set, Zone=zone)[0] == LOCKED
        assert zoning.activate(zone_set) == LOCKED
        assert zoning.activate(zone_set, on=False) == LOCKED
        for path in (zone_set, zone, alias, member):
            with pytest.raises(pywbem.CIMError):
                zoning.connection.DeleteInstance(path)
        assert {name: zoning.connection.EnumerateInstanceNames(name) for name in names} == before
