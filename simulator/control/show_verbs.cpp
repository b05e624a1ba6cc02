// What a person can see of the simulated switch and its fabric.
#include "simulator/control/Columns.h"
#include "simulator/control/Verb.h"
#include "simulator/engine/Engine.h"
#include "simulator/model/hardware.h"
#include "simulator/model/hex.h"

namespace simulator
{
namespace
{

template <std::string (*TEXT)(const FabricModel& model, std::uint64_t now)>
std::string show(const Words&)
{
    return Engine::instance().read(TEXT);
}

// "domain 2 port 4", or the WWNs of the nodes.
std::string otherEnd(const Switch& owner, const Port& port)
{
    if (port.peer)
        return "domain " + std::to_string(port.peer->domain) + " port " + std::to_string(port.peer->port);
    std::string text;
    for (const std::uint32_t address : port.attached)
        text.append(text.empty() ? "" : " ").append(owner.nodes.at(address).text(&NodeScenario::portWwn));
    return text;
}

std::string ports(const FabricModel& model, std::uint64_t)
{
    Columns columns({"PORT", "STATE", "ADMIN", "TYPE", "SPEED", "NAME", "OTHER END"});
    const Switch& local = model.local();
    for (const Port& port : local.ports)
    {
        columns.add({std::to_string(port.facts.number),
                     std::string(operState(local, port)),
                     std::string(toText(port.facts.adminState)),
                     std::string(runningType(local, port)),
                     std::string(toText(linkSpeed(local, port))),
                     port.facts.name,
                     otherEnd(local, port)});
    }
    return columns.text();
}

std::string fabric(const FabricModel& model, std::uint64_t)
{
    Columns columns({"DOMAIN", "WWN", "NAME", "PORTS", "ONLINE", "NODES", ""});
    for (const auto& [domain, one] : model.switches())
    {
        const auto online = std::count_if(one.ports.begin(),
                                          one.ports.end(),
                                          [&one = one](const Port& port) { return isOnline(one, port); });
        std::string role = &one == &model.local() ? "this switch" : "";
        if (&one == model.principal())
            role += role.empty() ? "principal" : ", principal";
        columns.add({std::to_string(domain),
                     one.facts.wwn,
                     one.facts.name,
                     std::to_string(one.ports.size()),
                     std::to_string(online),
                     std::to_string(one.nodes.size()),
                     role});
    }
    return columns.text();
}

std::string membersText(const ZoneMembers& members)
{
    std::string text;
    for (const auto& [age, member] : members.elements())
        text += (text.empty() ? "" : ", ") + memberText(member.key);
    return text.empty() ? "-" : text;
}

std::string zoning(const FabricModel& model, std::uint64_t)
{
    const ZoningDatabase& configured = model.zoning().configured;
    std::string text;
    for (const auto& [age, set] : configured.zoneSets().elements())
    {
        text += "zone set " + set.key + '\n';
        for (const auto& [zoneAge, zone] : set.value->elements())
            text += "  zone " + zone.key + '\n';
    }
    for (const auto& [age, zone] : configured.zones().elements())
        text += "zone " + zone.key + ": " + membersText(zone.value->members) + '\n';
    for (const auto& [age, alias] : configured.aliases().elements())
        text += "alias " + alias.key + ": " + membersText(*alias.value) + '\n';
    const auto& active = model.local().activeZoneSet;
    text += active != nullptr ? "in force: " + active->name + '\n' : "none in force\n";
    if (active != nullptr)
        for (const auto& [age, zone] : active->zones.elements())
            text += "  zone " + zone.key + ": " + membersText(zone.value.members) + '\n';
    const std::string& holder = model.adminMode().holder();
    text += "administrative mode: " + (holder.empty() ? std::string("free") : holder) + '\n';
    return text;
}

template <class Sensors, class Reading>
void addSensors(Columns& columns, const char* kind, const Sensors& sensors, int decimals, Reading readingOf)
{
    for (std::size_t i = 0; i < sensors.size(); ++i)
    {
        const std::optional<int> reading = readingOf(i);
        const SensorState state = stateAt(sensors[i], reading);
        columns.add({std::string("sensor ") + kind,
                     std::to_string(i + 1),
                     std::string(toText(state)),
                     (reading ? decimalText(*reading, decimals) : "-") + "  " + sensors[i].description});
    }
}

std::string hardware(const FabricModel& model, std::uint64_t now)
{
    const Switch& local = model.local();
    Columns columns({"PART", "NUMBER", "STATE", ""});
    const auto addParts = [&columns](const char* kind, const auto& parts)
    {
        for (std::size_t i = 0; i < parts.size(); ++i)
            columns.add({kind, std::to_string(i + 1), std::string(toText(parts[i].state)), ""});
    };
    addParts("supply", local.facts.powerSupplies);
    addParts("fan", local.facts.fans);
    addParts("cpu", local.facts.cpus);
    for (std::size_t i = 0; i < local.facts.blades.size(); ++i)
    {
        const BladeScenario& blade = local.facts.blades[i];
        const std::string_view state = operState(blade);
        columns.add(
            {"blade", std::to_string(i + 1), state.empty() ? "not there" : std::string(state), blade.model});
    }
    addSensors(columns,
               "temperature",
               local.facts.temperatureSensors,
               kTemperatureDecimals,
               [&](std::size_t index) { return temperatureOf(local, index, now); });
    addSensors(columns,
               "voltage",
               local.facts.voltageSensors,
               kVoltageDecimals,
               [&](std::size_t index) { return voltageOf(local, index, now); });
    return columns.text();
}

std::string users(const FabricModel& model, std::uint64_t)
{
    std::string text;
    for (const std::string& user : model.local().facts.users)
        text += user + '\n';
    return text;
}

std::string listeners(const FabricModel& model, std::uint64_t)
{
    Columns columns({"LISTENER", "TYPE", "DESTINATION"});
    for (const auto& [name, listener] : model.cim().listeners())
        columns.add({name, listener.permanent ? "Permanent" : "Transient", listener.destination});
    return columns.text();
}

std::string subscriptions(const FabricModel& model, std::uint64_t)
{
    Columns columns({"SUBSCRIPTION", "ENABLED", "SECONDS", "FILTER", "LISTENERS"});
    for (const auto& [name, one] : model.cim().subscriptions())
    {
        std::string to;
        for (const std::string& listener : one.listeners)
            to += (to.empty() ? "" : ", ") + listener;
        columns.add({name, one.enableState, std::to_string(one.duration), one.filter, to});
    }
    return columns.text();
}

template <LogKind KIND>
std::string log(const FabricModel& model, std::uint64_t)
{
    std::string text;
    for (const std::string& entry : model.logs()[KIND].texts())
        text += entry + '\n';
    return text;
}

} // namespace

std::vector<Verb> showVerbs()
{
    return {
        {"show ports", "the ports of the switch", show<ports>},
        {"show fabric", "the switches of the fabric", show<fabric>},
        {"show hardware", "supplies, fans, processors, blades and sensors", show<hardware>},
        {"show zoning", "what is configured and what is in force", show<zoning>},
        {"show users", "who may log in", show<users>},
        {"show listeners", "where indications go", show<listeners>},
        {"show subscriptions", "what listeners have subscribed to", show<subscriptions>},
        {"show log", "the user log", show<log<LogKind::user>>},
        {"show alarms", "the alarm log", show<log<LogKind::alarm>>},
        {kWatch, "events as they happen, until it is interrupted", nullptr},
    };
}

} // namespace simulator
