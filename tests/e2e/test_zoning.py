"""Zoning as an administrator changes it: built, activated, changed, activated again and taken apart. After each step
the databases of the switch itself are looked at."""

import pywbem
import pytest

from agent_process import NAMESPACE
from indications import Hand
from kept_agent import KeptAgent, six_ways

DONE, INVALID, LOCKED, EXISTS = 0, 5, 6, 8
WWN = "2100026E1A40B7C1"
IN_FORCE = "prod-2026"  # on the default scenario


class Databases:
    """What a switch has configured, and what its fabric enforces: the name of a zone set and its zones, or None.
    Zones and aliases are sets of members."""

    def __init__(self, zoning):
        self.aliases = {one["name"]: members_of(one) for one in zoning.get("aliases", ())}
        self.zones = {one["name"]: members_of(one) for one in zoning.get("zones", ())}
        self.sets = {one["name"]: list(one.get("zones", ())) for one in zoning.get("zoneSets", ())}
        self.enforced = None
        if "active" in zoning:
            self.activate(zoning["active"])
        elif "activeSet" in zoning:
            copy = zoning["activeSet"]
            self.enforced = copy["name"], {zone["name"]: members_of(zone) for zone in copy["zones"]}

    def activate(self, name):
        """Enforces a copy with the members of aliases in the place of these."""
        self.enforced = name, {zone: {one for member in self.zones[zone] for one in self.aliases.get(member, [member])}
                               for zone in self.sets[name]}


def members_of(holder):
    """As clients write them: 2100026E1A40B7C1, 01AB03, 1:A, or the name of an alias."""
    return {f"{one['domain']}:{one['port']:X}" if "domain" in one else
            one["alias"] if "alias" in one else next(iter(one.values())).upper() for one in holder.get("members", ())}


class Zoning:
    """The zoning of an agent: its service, what it publishes, and what the switch should have."""

    def __init__(self, agent):
        self.agent = agent
        self.service = self.paths("VRAX_ZoningService")[0]
        self.switch = self.service["Name"]
        self.expected = Databases(agent.state()["zoning"])

    def paths(self, class_name):
        return self.agent.connection.EnumerateInstanceNames(class_name)

    def ids(self, class_name):
        return {path["InstanceID"] for path in self.paths(class_name)}

    def is_as_expected(self):
        assert vars(Databases(self.agent.state()["zoning"])) == vars(self.expected)

    def call(self, method, **arguments):
        result, out = self.agent.connection.InvokeMethod(method, self.service, **arguments)
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

    def add_member(self, member, holder):
        return self.call("AddZoneMembershipSettingData", SystemSpecificCollection=holder,
                         ZoneMembershipSettingData=member)

    def add_alias(self, alias, zone):
        return self.call("AddZoneAlias", Zone=zone, ZoneAlias=alias)

    def add_zone(self, zone, zone_set):
        return self.call("AddZone", ZoneSet=zone_set, Zone=zone)

    def activate(self, zone_set, on=True):
        return self.call("ActivateZoneSet", ZoneSet=zone_set, Activate=on)

    def path(self, class_name, identity):
        return pywbem.CIMInstanceName(class_name, {"InstanceID": identity}, namespace=NAMESPACE)

    def inactive(self, name):
        return f"Inactive:{self.switch}:{name}"

    def active(self, name):
        return f"Active:{self.switch}:{name}"


@pytest.fixture
def socket(tmp_path):
    return tmp_path / "switch.sock"


@pytest.fixture
def zoning(build_dir, tmp_path, socket):
    with KeptAgent(build_dir, tmp_path, extra_args=["--switch-socket", str(socket)]) as agent:
        yield Zoning(agent)


def test_the_whole_story(zoning):
    expected = zoning.expected
    before = {name: zoning.ids(name) for name in ("VRAX_ZoneSet", "VRAX_Zone", "VRAX_ZoneAlias", "VRAX_ZoneMembership")}
    assert expected.enforced[0] == IN_FORCE

    def step(answer, result=DONE, identity=None):
        """The answer is this, and on the switch stands what is expected."""
        assert answer[0] == result
        assert identity is None or answer[1]["InstanceID"] == identity
        zoning.is_as_expected()
        return answer[1]

    # What is handed out can be used as it comes.
    expected.sets["story"] = []
    zone_set = step(zoning.create_set("story"), identity=zoning.inactive("story"))
    zones = {}
    for name in ("story_a", "story_b"):
        expected.zones[name] = set()
        zones[name] = step(zoning.create_zone(name), identity=zoning.inactive(name))
    expected.aliases["story_alias"] = set()
    alias = step(zoning.create_alias("story_alias"), identity=f"{zoning.switch}:story_alias")
    assert zoning.create_set("story")[0] not in (DONE, LOCKED)
    zoning.is_as_expected()

    for holder, members in ((zones["story_a"], expected.zones["story_a"]), (alias, expected.aliases["story_alias"])):
        for kind, identifier, member in ((2, WWN, WWN), (3, "01ab03", "01AB03"), (4, "1:10", "1:A")):
            members.add(member)
            step(zoning.create_member(kind, identifier, holder))
    step(zoning.create_member(4, "1:0a", alias), INVALID)
    step(zoning.add_member(zoning.path("VRAX_ZoneMembership", zoning.inactive(WWN)), zones["story_a"]), EXISTS)
    expected.zones["story_b"].add("story_alias")
    step(zoning.add_alias(alias, zones["story_b"]))
    step(zoning.add_alias(alias, zones["story_b"]), EXISTS)
    for name, zone in zones.items():
        expected.sets["story"].append(name)
        step(zoning.add_zone(zone, zone_set))
    expected.activate("story")
    step(zoning.activate(zone_set))

    zoning.agent.restart()
    the_copies_are_published(zoning, before, zone_set, zones, alias)

    # The configured zone changes, what is enforced does not; then it is put in force again.
    enforced = dict(expected.enforced[1])
    expected.zones["story_a"].add("01AB04")
    step(zoning.create_member(3, "01ab04", zones["story_a"]))
    assert expected.enforced[1] == enforced
    zoning.agent.restart()
    zoning.is_as_expected()
    assert zoning.inactive("01AB04") in zoning.ids("VRAX_ZoneMembership")
    expected.activate("story")
    step(zoning.activate(zone_set))

    # A member of what is enforced stays; what is deactivated can be taken apart.
    with pytest.raises(pywbem.CIMError) as refused:
        zoning.agent.connection.DeleteInstance(zoning.path("VRAX_ZoneMembership", zoning.inactive("1:A")))
    assert "Cannot delete an active member" in refused.value.status_description
    zoning.is_as_expected()
    expected.enforced = None
    step(zoning.activate(zone_set, on=False))
    zoning.agent.restart()
    assert not any(one.startswith("Active") for name in before for one in zoning.ids(name))
    for path, forget in ((zone_set, lambda: expected.sets.pop("story")),
                         (zones["story_a"], lambda: expected.zones.pop("story_a")),
                         (zones["story_b"], lambda: expected.zones.pop("story_b")),
                         (alias, lambda: expected.aliases.pop("story_alias"))):
        forget()
        zoning.agent.connection.DeleteInstance(path)
        zoning.is_as_expected()
        # An alias stays published until the aliases are read again.
        assert path is alias or path["InstanceID"] not in zoning.ids(path.classname)
    zoning.agent.restart()
    for name, ids in before.items():
        assert zoning.ids(name) == {one for one in ids if not one.startswith("Active")}, name


def test_somebody_else_has_the_administrative_mode(zoning, socket):
    """Each step of the story answers that it is locked, and leaves the switch and what is published as they were."""
    zone_set, zone = zoning.create_set("story")[1], zoning.create_zone("story_a")[1]
    other_zone, alias = zoning.create_zone("story_b")[1], zoning.create_alias("story_alias")[1]
    for result, _ in (zoning.create_member(2, WWN, zone), zoning.add_zone(zone, zone_set)):
        assert result == DONE
    zoning.agent.restart()
    in_force, member = zoning.path("VRAX_ZoneSet", zoning.inactive(IN_FORCE)), zoning.path("VRAX_ZoneMembership",
                                                                                          zoning.inactive(WWN))
    connection = zoning.agent.connection
    names = ("VRAX_ZoneSet", "VRAX_Zone", "VRAX_ZoneAlias", "VRAX_ZoneMembership", "VRAX_MemberOfZoneSet",
             "VRAX_MemberOfZone", "VRAX_ZoneElementSettingData")

    def held():
        return zoning.agent.state()["zoning"], {name: set(zoning.paths(name)) for name in names}

    before = held()
    steps = [lambda: zoning.create_set("other"), lambda: zoning.create_zone("other"), lambda: zoning.create_alias("other"),
             *(lambda holder=holder, one=one: zoning.create_member(*one, holder)
               for holder in (zone, alias) for one in ((2, "2100026e1a40b7d9"), (3, "01ab03"), (4, "1:10"))),
             lambda: zoning.add_member(member, other_zone), lambda: zoning.add_alias(alias, zone),
             lambda: zoning.add_zone(other_zone, zone_set), lambda: zoning.activate(zone_set),
             lambda: zoning.activate(in_force, on=False)]
    hand = Hand(socket)
    hand("zoning hold console")
    for number, step in enumerate(steps):
        assert step() == (LOCKED, None), number
        assert zoning.agent.state()["zoning"] == before[0], number
    for path in (zone_set, zone, alias):
        with pytest.raises(pywbem.CIMError):
            connection.DeleteInstance(path)
    assert held() == before
    hand("zoning release")
    for number, step in enumerate(steps):
        assert step()[0] == DONE, number


def the_copies_are_published(zoning, before, zone_set, zones, alias):
    """The configured objects and the copies in force, and every association from them, read from the switch."""
    connection = zoning.agent.connection
    of_before = {name: {one for one in ids if not one.startswith("Active")} for name, ids in before.items()}
    new_sets = {zoning.inactive("story"), zoning.active("story")}
    assert zoning.ids("VRAX_ZoneSet") - of_before["VRAX_ZoneSet"] == new_sets
    new_zones = {state(name) for name in zones for state in (zoning.inactive, zoning.active)}
    assert zoning.ids("VRAX_Zone") - of_before["VRAX_Zone"] == new_zones
    assert zoning.ids("VRAX_ZoneAlias") - before["VRAX_ZoneAlias"] == {alias["InstanceID"]}
    assert [one["ElementName"] for one in connection.EnumerateInstances("VRAX_ZoneSet") if one["Active"]] == ["story"]
    members = {state(name) for name in (WWN, "01AB03", "1:A") for state in (zoning.inactive, zoning.active)}
    assert members <= zoning.ids("VRAX_ZoneMembership")

    active_set = zoning.path("VRAX_ZoneSet", zoning.active("story"))
    active_zones = [zoning.path("VRAX_Zone", zoning.active(name)) for name in zones]
    member = zoning.path("VRAX_ZoneMembership", zoning.inactive("1:A"))
    enforced_member = zoning.path("VRAX_ZoneMembership", zoning.active("1:A"))
    fabric = zoning.paths("VRAX_Fabric")[0]
    switch = next(path for path in zoning.paths("VRAX_FCSwitch") if path["Name"].lower() == zoning.switch)
    capabilities = zoning.paths("VRAX_ZoningCapabilities")[0]
    pairs = [("VRAX_FabricZoneSet", fabric, active_set), ("VRAX_FCSwitchZoneSet", switch, zone_set),
             ("VRAX_FCSwitchZoneAlias", switch, alias), ("VRAX_FCSwitchZoningService", switch, zoning.service),
             ("VRAX_FCSwitchZoningCapabilities", switch, capabilities),
             ("VRAX_MemberOfZone", zones["story_b"], alias),
             ("VRAX_ZoneElementSettingData", zones["story_a"], member),
             ("VRAX_ZoneElementSettingData", zones["story_b"], member),
             # The first membership of the member counts.
             ("VRAX_ZoneAliasElementSettingData", alias, enforced_member)]
    pairs += [("VRAX_FabricZone", fabric, zone) for zone in active_zones]
    pairs += [("VRAX_FCSwitchZone", switch, zone) for zone in zones.values()]
    pairs += [("VRAX_MemberOfZoneSet", active_set, zone) for zone in active_zones]
    pairs += [("VRAX_MemberOfZoneSet", zone_set, zone) for zone in zones.values()]
    for association, near, far in pairs:
        assert not six_ways(connection, association, near, far), (association, near, far)
    in_force = connection.AssociatorNames(fabric, AssocClass="VRAX_FabricZoneSet")
    assert [path["InstanceID"] for path in in_force] == [active_set["InstanceID"]]
    mixed = "VRAX_MemberOfZoneSet", zone_set, active_zones[0]
    assert len(six_ways(connection, *mixed)) == 10, "a configured set has no zone of the copy"
