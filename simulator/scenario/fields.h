// The fields of a scenario, named once for the reader, the writer and whoever comes next.
//
// A visitor offers number, decimal, oneOf, text, texts, wwn, choice, flag, address, bytes, codes and range;
// each takes the field's name in the file, the value and what limits it. Required fields are passed as such;
// the others keep the value they have. `object` and `list` take a function that visits the fields inside.
#ifndef SIMULATOR_SCENARIO_FIELDS_H
#define SIMULATOR_SCENARIO_FIELDS_H

#include "simulator/model/EventLog.h"
#include "simulator/scenario/Scenario.h"

#include <cstddef>

namespace simulator
{

enum class Presence
{
    optional,
    required
};

// `Port` is PortScenario or const PortScenario; likewise below.
template <class Visitor, class Port>
void visitPort(Visitor& visit, Port& port, bool local)
{
    visit.wwn("wwn", port.wwn);
    visit.choice("adminState", port.adminState);
    visit.choice("type", port.type);
    visit.choice("link", port.link);
    visit.flag("failed", port.failed);
    if (!local)
        return;
    visit.text("name", port.name, kPortNameSize);
    visit.choice("hardware", port.hardware);
    visit.choice("speedCapability", port.speedCapability);
    visit.choice("speed", port.speed);
    visit.choice("diagnostics", port.diagnostics);
    visit.choice("rscn", port.rscn);
    visit.flag("autoPerfTuning", port.autoPerfTuning);
    visit.flag("mfs", port.mfs);
    visit.flag("lcf", port.lcf);
    visit.flag("vi", port.vi);
    visit.flag("scan", port.scan);
    visit.number("maxCredit", port.maxCredit, 0, 65535);
    visit.number("rxLoadPercent", port.rxLoadPercent, 0, 100);
    visit.number("txLoadPercent", port.txLoadPercent, 0, 100);
    visit.number(
        "frameBytes", port.frameBytes, 36, 2148); // FC-FS-3: header, CRC and delimiters up to a full frame
    visit.number("class2Percent", port.class2Percent, 0, 100);
    visit.number("errorsPerHour", port.errorsPerHour, 0, 1000000);
    visit.number("blade", port.blade, 0, kMaxLocalPorts);
    visit.bytes("reserved", port.reserved, kPortReservedSize);
}

constexpr std::size_t kHardwareTextSize = 64;

template <class Visitor, class Sensor>
void visitTemperatureSensor(Visitor& visit, Sensor& sensor)
{
    constexpr int kLow = -4000;
    constexpr int kHigh = 15000;
    visit.text("description", sensor.description, kHardwareTextSize);
    visit.decimal("base", sensor.base, kTemperatureDecimals, kLow, kHigh);
    visit.decimal("warnHigh", sensor.warnHigh, kTemperatureDecimals, kLow, kHigh);
    visit.decimal("critHigh", sensor.critHigh, kTemperatureDecimals, kLow, kHigh);
    visit.decimal("pinned", sensor.pinned, kTemperatureDecimals, kLow, kHigh);
    visit.flag("broken", sensor.broken);
}

template <class Visitor, class Sensor>
void visitVoltageSensor(Visitor& visit, Sensor& sensor)
{
    constexpr int kLow = -60000;
    constexpr int kHigh = 60000;
    visit.text("description", sensor.description, kHardwareTextSize);
    visit.decimal("nominal", sensor.nominal, kVoltageDecimals, kLow, kHigh, Presence::required);
    visit.decimal("critLow", sensor.critLow, kVoltageDecimals, kLow, kHigh);
    visit.decimal("critHigh", sensor.critHigh, kVoltageDecimals, kLow, kHigh);
    visit.decimal("pinned", sensor.pinned, kVoltageDecimals, kLow, kHigh);
    visit.flag("broken", sensor.broken);
}

template <class Visitor, class Part>
void visitPart(Visitor& visit, Part& part)
{
    visit.choice("state", part.state);
}

template <class Visitor, class Supply>
void visitPowerSupply(Visitor& visit, Supply& supply)
{
    visitPart(visit, supply);
    visit.number("outputPower", supply.outputPower, 0, 100000000);
}

template <class Visitor, class Blade>
void visitBlade(Visitor& visit, Blade& blade)
{
    visit.range("ports", blade.ports, 0, kMaxLocalPorts - 1);
    visit.flag("present", blade.present);
    visit.flag("failed", blade.failed);
    visit.choice("adminState", blade.adminState);
    visit.choice("diagnostics", blade.diagnostics);
    visit.text("model", blade.model, kHardwareTextSize);
    visit.text("partNumber", blade.partNumber, kHardwareTextSize);
    visit.text("serialNumber", blade.serialNumber, kHardwareTextSize);
}

// What the local switch says of itself, and its hardware.
template <class Visitor, class Switch>
void visitChassis(Visitor& visit, Switch& one)
{
    visit.text("brand", one.brand, kHardwareTextSize);
    visit.text("chassisPartNumber", one.chassisPartNumber, kHardwareTextSize);
    visit.text("chassisSerialNumber", one.chassisSerialNumber, kHardwareTextSize);
    visit.text("planarPartNumber", one.planarPartNumber, kHardwareTextSize);
    visit.object("product",
                 one.product,
                 [](auto& inner, auto& product)
                 {
                     inner.text("name", product.name, kHardwareTextSize);
                     inner.text("elementName", product.elementName, 2 * kHardwareTextSize);
                     inner.text("identifyingNumber", product.identifyingNumber, kHardwareTextSize);
                     inner.text("vendor", product.vendor, kHardwareTextSize);
                 });
    visit.text("firmwareVersion", one.firmwareVersion, kHardwareTextSize);
    visit.text("standbyFirmwareVersion", one.standbyFirmwareVersion, kHardwareTextSize);
    visit.text("location", one.location, kLocationSize);
    visit.text("ipAddress", one.ipAddress, kHardwareTextSize);
    visit.object("services",
                 one.services,
                 [](auto& inner, auto& services)
                 {
                     inner.flag("snmp", services.snmp);
                     inner.flag("web", services.web);
                     inner.flag("telnet", services.telnet);
                     inner.flag("ssh", services.ssh);
                 });
    visit.list("temperatureSensors",
               one.temperatureSensors,
               [](auto& inner, auto& sensor) { visitTemperatureSensor(inner, sensor); });
    visit.list("voltageSensors",
               one.voltageSensors,
               [](auto& inner, auto& sensor) { visitVoltageSensor(inner, sensor); });
    visit.list("powerSupplies",
               one.powerSupplies,
               [](auto& inner, auto& supply) { visitPowerSupply(inner, supply); });
    visit.list("fans", one.fans, [](auto& inner, auto& fan) { visitPart(inner, fan); });
    visit.list("cpus", one.cpus, [](auto& inner, auto& cpu) { visitPart(inner, cpu); });
    visit.list("blades", one.blades, [](auto& inner, auto& blade) { visitBlade(inner, blade); });
}

// What the local switch keeps for its CIM agent.
template <class Visitor, class Switch>
void visitCim(Visitor& visit, Switch& one)
{
    visit.list("listeners",
               one.listeners,
               [](auto& inner, auto& listener)
               {
                   inner.text("name", listener.name, kCimNameSize);
                   inner.flag("permanent", listener.permanent);
                   inner.text("destination", listener.destination, kCimTextSize);
               });
    visit.list("subscriptions",
               one.subscriptions,
               [](auto& inner, auto& subscription)
               {
                   inner.text("name", subscription.name, kCimNameSize);
                   inner.text("filter", subscription.filter, kCimNameSize);
                   inner.text("enableState", subscription.enableState, kCimTextSize);
                   inner.text("enableStateChange", subscription.enableStateChange, kCimTextSize);
                   inner.text("startTime", subscription.startTime, kCimTextSize);
                   inner.number("durationSeconds", subscription.durationSeconds, 0, kMaxDurationSeconds);
                   inner.texts("listeners", subscription.listeners, kCimNameSize);
               });
}

// All fields but "local", which decides what else there is, and the ports.
template <class Visitor, class Switch>
void visitSwitch(Visitor& visit, Switch& one)
{
    visit.number("domain", one.domain, kMinDomainId, kMaxDomainId, Presence::required);
    visit.wwn("wwn", one.wwn, Presence::required);
    visit.text("name", one.name, kSwitchNameSize);
    visit.choice("adminState", one.adminState);
    if (!one.local)
        return;
    visit.text("type", one.type, 64);
    visit.text("productName", one.productName, 128);
    visit.choice("configuredAdminState", one.configuredAdminState);
    visit.flag("transparent", one.transparent);
    visit.text("adminModeHolder", one.adminModeHolder, 64);
    visit.codes("faults", one.faults);
    visit.number("preferredDomain", one.preferredDomain, 0, kMaxDomainId);
    visit.flag("domainLocked", one.domainLocked);
    visit.oneOf("principalPriority", one.principalPriority, kPrincipalPriorities);
    visit.bytes("reserved", one.reserved, kSwitchReservedSize);
    visitChassis(visit, one);
    visit.texts("users", one.users, kUserNameSize);
    visit.flag("logEnabled", one.logEnabled);
    visit.number("logCapacity", one.logCapacity, 1, kMaxLogCapacity);
    visit.texts("userLog", one.userLog, kLogEntrySize);
    visit.texts("alarmLog", one.alarmLog, kLogEntrySize);
    visitCim(visit, one);
}

template <class Visitor, class Node>
void visitNode(Visitor& visit, Node& node)
{
    visit.number("domain", node.domain, kMinDomainId, kMaxDomainId, Presence::required);
    visit.number("port", node.port, 0, kMaxRemotePorts - 1, Presence::required);
    visit.address("address", node.address);
    visit.wwn("portWwn", node.portWwn, Presence::required);
    visit.wwn("nodeWwn", node.nodeWwn);
    visit.text("portName", node.portName, 255);
    visit.text("nodeName", node.nodeName, 255);
    visit.choice("role", node.role);
    visit.choice("type", node.type);
    visit.text("classes", node.classes, 63);
    visit.text("protocols", node.protocols, 255);
    visit.choice("speed", node.speed);
}

template <class Visitor, class Isl>
void visitIsl(Visitor& visit, Isl& link)
{
    visit.number("domain", link.domain, kMinDomainId, kMaxDomainId, Presence::required);
    visit.number("port", link.port, 0, kMaxRemotePorts - 1, Presence::required);
    visit.number("toDomain", link.toDomain, kMinDomainId, kMaxDomainId, Presence::required);
    visit.number("toPort", link.toPort, 0, kMaxRemotePorts - 1, Presence::required);
    visit.flag("isolated", link.isolated);
}

template <class Visitor, class Member>
void visitZoneMember(Visitor& visit, Member& member)
{
    visit.wwn("wwn", member.wwn);
    visit.address("address", member.address);
    visit.number("domain", member.domain, kMinDomainId, kMaxDomainId);
    visit.number("port", member.port, 0, 255);
    visit.text("alias", member.alias, kMaxZoneNameSize);
}

template <class Visitor, class Members>
void visitZoneMembers(Visitor& visit, Members& members)
{
    visit.list("members", members, [](auto& inner, auto& member) { visitZoneMember(inner, member); });
}

template <class Visitor, class Zones>
void visitZones(Visitor& visit, Zones& zones)
{
    visit.list("zones",
               zones,
               [](auto& inner, auto& zone)
               {
                   inner.text("name", zone.name, kMaxZoneNameSize);
                   inner.choice("type", zone.type);
                   visitZoneMembers(inner, zone.members);
               });
}

template <class Visitor, class Limits>
void visitZoningLimits(Visitor& visit, Limits& limits)
{
    constexpr ZoningLimits kMost;
    visit.number("zoneSets", limits.zoneSets, 0, kMost.zoneSets);
    visit.number("zones", limits.zones, 0, kMost.zones);
    visit.number("zoneMembers", limits.zoneMembers, 0, kMost.zoneMembers);
    visit.number("zonesPerZoneSet", limits.zonesPerZoneSet, 0, kMost.zonesPerZoneSet);
    visit.number("aliases", limits.aliases, 0, kMost.aliases);
}

template <class Visitor, class Zoning>
void visitZoning(Visitor& visit, Zoning& zoning)
{
    visit.flag("defaultZone", zoning.defaultZone);
    visit.object(
        "limits", zoning.limits, [](auto& inner, auto& limits) { visitZoningLimits(inner, limits); });
    visit.list("aliases",
               zoning.aliases,
               [](auto& inner, auto& alias)
               {
                   inner.text("name", alias.name, kMaxZoneNameSize);
                   visitZoneMembers(inner, alias.members);
               });
    visitZones(visit, zoning.zones);
    visit.list("zoneSets",
               zoning.zoneSets,
               [](auto& inner, auto& set)
               {
                   inner.text("name", set.name, kMaxZoneNameSize);
                   inner.texts("zones", set.zones, kMaxZoneNameSize);
               });
    visit.text("active", zoning.active, kMaxZoneNameSize);
    visit.object("activeSet",
                 zoning.activeSet,
                 [](auto& inner, auto& set)
                 {
                     inner.text("name", set.name, kMaxZoneNameSize);
                     visitZones(inner, set.zones);
                 });
}

template <class Visitor, class Facts>
void visitScenario(Visitor& visit, Facts& scenario)
{
    visit.number("seed", scenario.seed, 0, 1000000000);
    visit.number("uptimeSeconds", scenario.uptimeSeconds, 0, 1000000000);
    visit.number("principal", scenario.principal, 0, kMaxDomainId);
    visit.flag("noPrincipal", scenario.noPrincipal);
    visit.object("zoning", scenario.zoning, [](auto& inner, auto& zoning) { visitZoning(inner, zoning); });
}

} // namespace simulator

#endif
