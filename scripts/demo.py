"""Starts the agent on the shipped scenarios, reads it with pywbem as a management client would, and stops it.

Usage: demo.py <build directory>. Exit status 0 when everything a client needs was there.
"""

import sys

import pywbem

from agent_process import CHASSIS_SCENARIO, NAMESPACE, AgentProcess


def heading(text):
    print(f"\n{text}\n{'-' * len(text)}")


def show(instance, *names):
    print(f"  {instance.classname}")
    for name in names:
        value = instance[name]
        text = ", ".join(str(int(one)) for one in value) if isinstance(value, list) else value
        print(f"    {name:<28} {text}")


def without_host(path):
    """Only answers to association requests name the host."""
    plain = path.copy()
    plain.host = None
    return plain


def one(connection, class_name):
    """The single instance of a class; more or fewer is an error of the agent."""
    instances = connection.EnumerateInstances(class_name)
    if len(instances) != 1:
        raise SystemExit(f"demo: expected one instance of {class_name}, got {len(instances)}")
    return instances[0]


def walk_server(connection):
    heading("Who answers")
    manager = one(connection, "CIM_ObjectManager")
    show(manager, "ElementName", "Description", "Name", "Started", "OperationalStatus")
    show(one(connection, "CIM_Namespace"), "Name", "ClassType", "ClassTypeVersion", "ObjectManagerName")
    show(one(connection, "CIM_ObjectManagerCommunicationMechanism"),
         "ElementName", "CommunicationMechanism", "Version", "FunctionalProfilesSupported")
    return manager


def walk_associations(connection, manager):
    heading("What belongs to the object manager")
    for association in ("VRAX_NamespaceInManager", "VRAX_CIMXMLCommMechanismForManager"):
        associated = connection.Associators(manager.path, AssocClass=association)
        if len(associated) != 1:
            raise SystemExit(f"demo: {association} leads to {len(associated)} instances, expected one")
        print(f"  {association} -> {associated[0].path.classname}, Name {associated[0]['Name']!r}")
        back = connection.AssociatorNames(associated[0].path, AssocClass=association)
        if [without_host(path) for path in back] != [without_host(manager.path)]:
            raise SystemExit(f"demo: {association} does not lead back to the object manager: {back}")


SPEED_NAMES = {1062500000: "1 Gb/s", 2125000000: "2 Gb/s", 4250000000: "4 Gb/s", 8500000000: "8 Gb/s",
               12750000000: "10 Gb/s", 25500000000: "20 Gb/s"}
MAPPED = {}  # (class, property) -> value -> its name in the class's value map


def name_of(connection, instance, property_name):
    """The name that the class gives to the property's value."""
    value = instance[property_name]
    value = value[0] if isinstance(value, list) and value else value
    if value is None or value == []:
        return "-"
    key = (instance.classname, property_name)
    if key not in MAPPED:
        mapping = pywbem.ValueMapping.for_property(connection, NAMESPACE, *key)
        MAPPED[key] = dict(mapping.items())
    return MAPPED[key].get(value, str(value))


def attached_to(connection, port):
    """What is at the other end of a port's link: the far endpoint's instance, or None."""
    for endpoint in connection.AssociatorNames(port.path, AssocClass="CIM_DeviceSAPImplementation"):
        for far in connection.Associators(endpoint, AssocClass="CIM_ActiveConnection"):
            yield far


def describe_far_end(connection, far):
    nodes = connection.Associators(far.path, ResultClass="CIM_LogicalDevice")
    for port in nodes:
        for node in connection.Associators(port.path, ResultClass="VRAX_FCNode"):
            return f"{node['ElementName'] or '(no name)'}, port {node['InstanceID']}, node {node['Name']}"
        for switch in connection.Associators(port.path, ResultClass="VRAX_FCSwitch"):
            return f"switch {switch['ElementName']}, {port['ElementName']}"
    return far["Name"]


def walk_fabric(connection):
    heading("The fabric")
    fabric = one(connection, "VRAX_Fabric")
    print(f"  fabric {fabric['Name']}")
    for switch in connection.Associators(fabric.path, AssocClass="CIM_SystemComponent", ResultClass="VRAX_FCSwitch"):
        print(f"  +- switch {switch['ElementName']}  {switch['Name']}  domain {switch['OtherIdentifyingInfo'][0]}  "
              f"{name_of(connection, switch, 'OperationalStatus')}")
        for port in connection.Associators(switch.path, AssocClass="VRAX_FCSwitchFCPort"):
            print(f"  |  +- port {port['PortNumber']:<3} {port['ElementName']:<26} "
                  f"{name_of(connection, port, 'PortType'):<8} {SPEED_NAMES.get(port['Speed'], '-'):<8} "
                  f"{name_of(connection, port, 'OperationalStatus')}")
            for far in attached_to(connection, port):
                print(f"  |  |     `- {describe_far_end(connection, far)}")


def known_nodes(connection):
    """WWN of a port or node, or Fibre Channel address of a port -> the name of the node behind it."""
    names = {}
    for node in connection.EnumerateInstances("VRAX_FCNode"):
        names[node["InstanceID"].upper()] = names[node["Name"].upper()] = node["ElementName"] or "(no name)"
    for port in connection.EnumerateInstances("VRAX_FCPort"):
        if port["SystemCreationClassName"] == "VRAX_Fabric":
            names[port["NetworkAddresses"][0]] = names.get(port["DeviceID"].upper(), "(no name)")
    return names


def meaning_of(member, names):
    """What a zone member stands for at present."""
    identifier = member["ConnectivityMemberID"].upper()
    if member["ConnectivityMemberType"] != 4:
        return names.get(identifier, "nobody at present")
    domain, port = (int(part, 16) for part in identifier.split(":"))
    behind = {name for address, name in names.items() if len(address) == 6 and address.startswith(f"{domain:02X}{port:02X}")}
    return f"domain {domain}, port {port}: {', '.join(sorted(behind)) or 'nobody at present'}"


def show_members(connection, indent, holder, association, names, left_out=()):
    """The memberships of a zone or alias; returns their identifiers."""
    shown = []
    for member in connection.Associators(holder.path, AssocClass=association):
        identifier = member["ConnectivityMemberID"]
        shown.append(identifier)
        if identifier in left_out:
            continue
        print(f"{indent}- {identifier:<18} {meaning_of(member, names)}")
    return shown


def walk_zoning(connection):
    heading("Zoning")
    names = known_nodes(connection)
    fabric = one(connection, "VRAX_Fabric")
    in_force = [zone_set["ElementName"] for zone_set in connection.Associators(fabric.path, AssocClass="VRAX_FabricZoneSet")]
    switch = connection.Associators(one(connection, "VRAX_ZoningService").path, AssocClass="VRAX_FCSwitchZoningService")[0]
    for zone_set in connection.Associators(switch.path, AssocClass="VRAX_FCSwitchZoneSet"):
        if zone_set["Active"]:
            continue
        enforced = ", in force" if zone_set["ElementName"] in in_force else ""
        print(f"  zone set {zone_set['ElementName']}{enforced}")
        for zone in connection.Associators(zone_set.path, AssocClass="VRAX_MemberOfZoneSet"):
            print(f"  +- zone {zone['ElementName']}")
            of_aliases = []
            for alias in connection.Associators(zone.path, AssocClass="VRAX_MemberOfZone"):
                print(f"  |  +- alias {alias['CollectionAlias']}")
                of_aliases += show_members(connection, "  |  |  ", alias, "VRAX_ZoneAliasElementSettingData", names)
            show_members(connection, "  |  ", zone, "VRAX_ZoneElementSettingData", names, of_aliases)


def walk_statistics(connection):
    heading("Port statistics")
    collection = one(connection, "VRAX_StatisticsCollection")
    show(collection, "ElementName", "InstanceID", "TimeLastSampled", "SampleInterval")
    rates = {rate["InstanceID"].lower(): rate for rate in connection.EnumerateInstances("VRAX_FCPortRateStatistics")}
    ports = connection.EnumerateInstances("VRAX_FCPortStatistics")
    if not ports or len(rates) != len(ports):
        raise SystemExit(f"demo: {len(ports)} port statistics but {len(rates)} rate statistics")
    print(f"\n  {'port WWN':<18}{'received GB':>14}{'sent GB':>14}{'frames in':>20}{'frames out':>20}"
          f"{'CRC errors':>12}{'in MB/s':>9}{'out MB/s':>9}")
    for port in ports:
        identity = port["InstanceID"].removeprefix("VRAX:FCPortStatistics:")
        rate = rates[identity.lower()]
        print(f"  {identity.split(':')[1]:<18}{port['BytesReceived'] / 1e9:>14,.1f}"
              f"{port['BytesTransmitted'] / 1e9:>14,.1f}{port['PacketsReceived']:>20,}"
              f"{port['PacketsTransmitted']:>20,}{port['CRCErrors']:>12,}{rate['RxRate'] / 1e6:>9.1f}{rate['TxRate'] / 1e6:>9.1f}")
    print(f"\n  {len(ports)} ports, sampled {ports[0]['StatisticTime']}")


def reading(sensor, property_name="CurrentReading"):
    value = sensor[property_name]
    return "-" if value is None else f"{value * 10 ** sensor['UnitModifier']:.2f}"


def show_sensors(connection, chassis, association, unit, *limits):
    for sensor in connection.Associators(chassis.path, AssocClass=association):
        bounds = ", ".join(f"{label} {reading(sensor, name)}" for label, name in limits if sensor[name] is not None)
        print(f"  +- {sensor['ElementName']:<30} {reading(sensor):>7} {unit:<2} {sensor['CurrentState']:<9} {bounds}")


def ranges(numbers):
    """[0, 1, 2, 5] -> "0-2, 5"."""
    runs = []
    for number in sorted(numbers):
        if runs and number == runs[-1][1] + 1:
            runs[-1][1] = number
        else:
            runs.append([number, number])
    return ", ".join(str(first) if first == last else f"{first}-{last}" for first, last in runs)


def show_blades(connection, chassis):
    for card in connection.Associators(chassis.path, AssocClass="VRAX_PhysicalIOBladeContainer"):
        for blade in connection.Associators(card.path, AssocClass="VRAX_RealizesLogicalIOBlade"):
            ports = connection.Associators(blade.path, AssocClass="VRAX_LogicalIOBladeFCPort")
            online = sum(name_of(connection, port, "OperationalStatus") == "OK" for port in ports)
            print(f"  +- {blade['ElementName']:<30} {name_of(connection, blade, 'OperationalStatus'):<9} "
                  f"{card['Model']}, serial {card['SerialNumber']}, "
                  f"ports {ranges(port['PortNumber'] for port in ports) or 'none'}, {online} online")


def walk_hardware(connection):
    heading("The hardware")
    chassis = one(connection, "VRAX_PhysicalChassis")
    switch = connection.Associators(chassis.path, AssocClass="VRAX_FCSwitchPackage")[0]
    for product in connection.Associators(chassis.path, AssocClass="VRAX_ProductPhysicalChassis"):
        print(f"  {product['ElementName']}, {product['Name']} {product['IdentifyingNumber']} of {product['Vendor']}")
    print(f"  chassis of {switch['ElementName']}: model {chassis['Model']}, serial {chassis['SerialNumber']}, "
          f"part {chassis['PartNumber']}, made by {chassis['Manufacturer']}")
    for place in connection.Associators(chassis.path, AssocClass="VRAX_PhysicalChassisLocation"):
        print(f"  at {place['PhysicalPosition']}")
    for software in connection.Associators(switch.path, AssocClass="VRAX_FCSwitchSoftware"):
        standby = " (standby)" if software["InstanceID"].endswith(":Standby") else ""
        print(f"  +- {software['ElementName'] + standby:<30} {software['VersionString']}")
    for supply in connection.Associators(chassis.path, AssocClass="VRAX_PhysicalChassisRealizesPowerSupply"):
        power = supply["TotalOutputPower"]
        print(f"  +- {supply['ElementName']:<30} {name_of(connection, supply, 'OperationalStatus'):<9} "
              f"{'' if power is None else f'{power / 1000:.0f} W'}")
    show_sensors(connection, chassis, "VRAX_PhysicalChassisRealizesTemperatureSensor", "C",
                 ("warm above", "UpperThresholdNonCritical"), ("hot above", "UpperThresholdCritical"))
    show_sensors(connection, chassis, "VRAX_PhysicalChassisRealizesVoltageSensor", "V",
                 ("nominal", "NominalReading"), ("from", "LowerThresholdCritical"), ("to", "UpperThresholdCritical"))
    show_blades(connection, chassis)
    for access in connection.Associators(switch.path, AssocClass="VRAX_FCSwitchAccessPoint"):
        print(f"  +- {access['AccessInfo']:<30} {name_of(connection, access, 'EnabledState')}")


def main():
    if len(sys.argv) != 2:
        raise SystemExit("usage: demo.py <build directory>")
    with AgentProcess(sys.argv[1]) as agent:
        print(f"The agent listens on {agent.url}, namespace {NAMESPACE}.")
        connection = pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE)
        manager = walk_server(connection)
        walk_associations(connection, manager)
        walk_fabric(connection)
        walk_zoning(connection)
        walk_statistics(connection)
        walk_hardware(connection)
    with AgentProcess(sys.argv[1], CHASSIS_SCENARIO) as agent:
        print(f"\nAnother switch: {CHASSIS_SCENARIO.name}.")
        walk_hardware(pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE))
    print("\nThe agent stopped.")


if __name__ == "__main__":
    main()
