// Reading the classes of the table, and joining them by World Wide Names for labels that people understand.
#include "agent/metrics/SwitchMetrics.h"

#include "agent/log/log.h"

#include <algorithm>
#include <utility>

namespace cimd
{

namespace
{

constexpr const char* kSwitchClass = "VRAX_FCSwitch";
constexpr const char* kConnectionClass = "VRAX_ActiveConnection";

constexpr MetricFamily kSwitchInfo{
    "vrax_switch", MetricType::Info, "", "A switch of the fabric, with the domain that it has there."};
constexpr MetricFamily kPortInfo{
    "vrax_port", MetricType::Info, "", "A port of a switch of the fabric, with its type and address."};
constexpr MetricFamily kLogIns{
    "vrax_port_logins", MetricType::Gauge, "", "Devices that are logged in to the fabric at a port."};
constexpr MetricFamily kLogIn{
    "vrax_port_login", MetricType::Info, "", "A device that is logged in to the fabric, and its port."};

// CIM_FCPort.PortType.
std::string typeName(const CimValue* type)
{
    static const std::map<std::string, const char*> kNames{{"0", "Unknown"},
                                                           {"1", "Other"},
                                                           {"10", "N"},
                                                           {"11", "NL"},
                                                           {"12", "F/NL"},
                                                           {"13", "Nx"},
                                                           {"14", "E"},
                                                           {"15", "F"},
                                                           {"16", "FL"},
                                                           {"17", "B"},
                                                           {"18", "G"}};
    const std::string number = textOf(type);
    const auto known = kNames.find(number);
    return known != kNames.end() ? known->second : number;
}

std::string text(const Instance& instance, const char* property)
{
    return textOf(firstOf(valueOf(instance, property)));
}

} // namespace

// False when the class could not be read; what was taken is then to be forgotten.
template <class Take>
bool SwitchMetrics::read(const std::string& className, const std::vector<CimName>& properties, Take take)
{
    const auto start = std::chrono::steady_clock::now();
    ClassRead outcome{className, "", {}};
    try
    {
        _reader.read(className, properties, take);
    }
    catch (const CimError& error)
    {
        outcome.fault = std::string(statusName(error.status())) + ": " + error.what();
    }
    outcome.time =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    _reads.push_back(outcome);
    return outcome.fault.empty();
}

std::vector<ClassRead> SwitchMetrics::write()
{
    for (const SwitchClass& table : switchClasses())
    {
        SwitchRows rows(table);
        std::vector<CimName> properties = rows.properties();
        properties.emplace_back("ElementName");
        if (table.part == SwitchPart::Switch)
            properties.emplace_back("OtherIdentifyingInfo");
        if (table.part == SwitchPart::Port)
            for (const char* more : {"PortNumber", "PortType", "PermanentAddress", "NetworkAddresses"})
                properties.emplace_back(more);
        const auto take = [&](const Instance& instance) { rows.add(rowOf(instance, table), instance); };
        if (!read(table.className, properties, take))
            rows = SwitchRows(table);
        rows.write(_out);
        if (table.part == SwitchPart::Switch)
            writeInfo(kSwitchInfo, rows);
        if (table.part != SwitchPart::Port)
            continue;
        writeInfo(kPortInfo, rows);
        _ports.emplace(std::move(rows));
        _ports->sort();
    }
    writeLogIns();
    return std::move(_reads);
}

SwitchRow SwitchMetrics::rowOf(const Instance& instance, const SwitchClass& table)
{
    switch (table.part)
    {
    case SwitchPart::Switch:
        return switchRow(instance);
    case SwitchPart::Port:
        return portRow(instance);
    case SwitchPart::NumberedPart:
        return partRow(instance, table.label);
    case SwitchPart::OfPort:
        break;
    }
    SwitchRow row;
    const std::string id = text(instance, "InstanceID");
    row.key = portKeyOf(id);
    if (const SwitchRow* const port = _ports ? _ports->find(row.key) : nullptr)
    {
        row.labels = port->labels;
        row.lasting = port->lasting;
        return row;
    }
    appendLabel(row.labels, "wwn", lastPart(id)); // the port came after the ports were read
    row.lasting = row.labels.size();
    return row;
}

SwitchRow SwitchMetrics::switchRow(const Instance& instance)
{
    SwitchRow row;
    const std::string wwn = text(instance, "Name");
    std::string& name = _switches[wwnOf(wwn)];
    name = text(instance, "ElementName");
    if (name.empty())
        name = wwn;
    appendLabel(row.labels, "switch", name);
    appendLabel(row.labels, "wwn", wwn);
    row.lasting = row.labels.size();
    appendLabel(row.more, "domain", text(instance, "OtherIdentifyingInfo"));
    return row;
}

SwitchRow SwitchMetrics::portRow(const Instance& instance) const
{
    SwitchRow row;
    const std::string system = text(instance, "SystemName");
    row.key = {wwnOf(system), wwnOf(lastPart(text(instance, "DeviceID")))};
    row.isDevice = CimName(text(instance, "SystemCreationClassName")) != kSwitchClass;
    const std::string prefix = row.isDevice ? "device_" : "";
    if (!row.isDevice)
    {
        appendLabel(row.labels, "switch", nameOf(system));
        appendLabel(row.labels, "port", text(instance, "PortNumber"));
    }
    appendLabel(row.labels, row.isDevice ? "device" : "port_name", text(instance, "ElementName"));
    appendLabel(row.labels, prefix + "wwn", text(instance, "PermanentAddress"));
    row.lasting = row.labels.size();
    appendLabel(row.labels, prefix + "type", typeName(valueOf(instance, "PortType")));
    appendLabel(row.more, prefix + "address", text(instance, "NetworkAddresses"));
    return row;
}

SwitchRow SwitchMetrics::partRow(const Instance& instance, const char* label) const
{
    SwitchRow row;
    appendLabel(row.labels, "switch", nameOf(text(instance, "SystemName")));
    appendLabel(row.labels, label, lastPart(text(instance, "DeviceID")));
    appendLabel(row.labels, std::string(label) + "_name", text(instance, "ElementName"));
    row.lasting = row.labels.size();
    return row;
}

// A switch that has no name goes by its World Wide Name.
std::string SwitchMetrics::nameOf(const std::string& wwn) const
{
    const auto known = _switches.find(wwnOf(wwn));
    return known != _switches.end() ? known->second : wwn;
}

void SwitchMetrics::writeInfo(const MetricFamily& family, const SwitchRows& rows)
{
    _out.begin(family);
    for (const SwitchRow& row : rows.all())
        if (!row.isDevice)
            _out.sample(row.labels + ',' + row.more, {1});
}

void SwitchMetrics::writeLogIns()
{
    using Pairing = std::pair<const SwitchRow*, const SwitchRow*>; // a switch's port and a device
    std::vector<Pairing> logIns;
    const auto take = [&](const Instance& connection)
    {
        const auto end = [&](const char* role) -> const SwitchRow*
        {
            const CimValue* const endpoint = valueOf(connection, role);
            const PortKey key{wwnOf(keyOf(endpoint, "SystemName")), wwnOf(keyOf(endpoint, "Name"))};
            return _ports ? _ports->find(key) : nullptr;
        };
        const SwitchRow* const port = end("Antecedent");
        const SwitchRow* const device = end("Dependent");
        if (port != nullptr && device != nullptr && !port->isDevice && device->isDevice)
            logIns.emplace_back(port, device);
    };
    const bool isRead = read(kConnectionClass, {"Antecedent", "Dependent"}, take);
    if (!isRead)
        logIns.clear();
    std::stable_sort(
        logIns.begin(), logIns.end(), [](const Pairing& a, const Pairing& b) { return a.first < b.first; });

    _out.begin(kLogIns);
    auto next = logIns.begin();
    if (isRead && _ports)
        for (const SwitchRow& port : _ports->all())
        {
            std::uint64_t count = 0;
            for (; next != logIns.end() && next->first == &port; ++next)
                ++count;
            if (!port.isDevice)
                _out.sample(port.labels, {count});
        }
    _out.begin(kLogIn);
    for (const auto& [port, device] : logIns)
        _out.sample(port->labels.substr(0, port->lasting) + ',' + device->labels + ',' + device->more, {1});
}

} // namespace cimd
