// What the load of VRAX_FCPort publishes of each port.
#include "fabricProviders/FCPort_Writer.h"

#include "common/string_helpers.h"
#include "common/value_translation.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace cimple
{

namespace
{

// Of a local port, by its index, its computed WWN and the attribute that tells its hardware's speed.
constexpr const char* kLocalKeys[] = {
    "Oper.UserPort.0.%1$s.SymPortName",
    "Oper.UserPort.0.%1$s.OperState",
    "Oper.UserPort.0.%1$s.AdminState",
    "Oper.UserPort.0.%1$s.WWN",
    "Oper.UserPort.0.%1$s.RunningType",
    "Oper.UserPort.0.%1$s.LinkSpeed",
    "Oper.UserPort.0.%1$s.%3$s",
    "Oper.UserPort.0.%1$s.IOStreamGuardMode",
    "Oper.UserPort.0.%1$s.PerfTuningMode",
    "Oper.UserPort.0.%1$s.MaxCredit",
    "Oper.UserPort.0.%1$s.DiagStatus",
    "Oper.Switch.Echo.%1$s",
    "Oper.Switch.Echo.%2$s",
};
namespace local
{
enum Entry
{
    kSymPortName,
    kOperState,
    kAdminState,
    kWwn,
    kRunningType,
    kLinkSpeed,
    kSpeedCapability,
    kIOStreamGuardMode,
    kPerfTuningMode,
    kMaxCredit,
    kDiagStatus,
    kIndex,
    kComputedWwn,
    kCount
};
}
static_assert(std::size(kLocalKeys) == local::kCount, "an entry for each key");

// Of a port of another switch, by domain and topology entry.
constexpr const char* kRemoteKeys[] = {
    "Oper.TopologyAll.%d.Entry.%d.PortState",
    "Oper.TopologyAll.%d.Entry.%d.PortType",
    "Oper.TopologyAll.%d.Entry.%d.PortWwn",
    "Oper.TopologyAll.%d.Entry.%d.PortNumber",
};
namespace remote
{
enum Entry
{
    kPortState,
    kPortType,
    kPortWwn,
    kPortNumber,
    kCount
};
}
static_assert(std::size(kRemoteKeys) == remote::kCount, "an entry for each key");

// Of a node port, by domain and address.
constexpr const char* kAttachedKeys[] = {
    "Oper.NameServerAll.%1$d.Entry.%2$s.PortWwn",
    "Oper.NameServerAll.%1$d.Entry.%2$s.SymPortName",
    "Oper.NameServerAll.%1$d.Entry.%2$s.PortType",
    "Oper.NameServerAll.%1$d.Entry.%2$s.COSList",
    "Oper.NameServerAll.%1$d.Entry.%2$s.FC4StdTypeList",
    "Oper.Switch.Echo.%2$s",
    "Oper.Switch.WhoIsPrincipal",
};
namespace attached
{
enum Entry
{
    kPortWwn,
    kSymPortName,
    kPortType,
    kCosList,
    kFc4Types,
    kAddress,
    kPrincipal,
    kCount
};
}
static_assert(std::size(kAttachedKeys) == attached::kCount, "an entry for each key");

// What the switch reports for a port that has no name of its own (yet).
constexpr const char* kZeroWwn = "0000000000000000";

// Values of the CIM schema.
constexpr uint16 kUnknown = 0;               // OperationalStatus
constexpr uint16 kEnabled = 2;               // EnabledState, EnabledDefault
constexpr uint16 kDisabled = 3;              // EnabledDefault
constexpr uint16 kNotApplicable = 5;         // EnabledState, EnabledDefault
constexpr uint16 kNoChange = 5;              // RequestedState
constexpr uint16 kRequestNotApplicable = 12; // RequestedState
constexpr uint16 kLinkTechnologyFC = 4;

// The number at the start of a value; 0 when there is none.
uint16 number(const char* text)
{
    return static_cast<uint16>(std::strtol(text, nullptr, 10));
}

// The Fibre Channel address of a switch port: domain and area, with no loop behind it (FC-SW-3).
String addressOf(int domain, uint16 portNumber)
{
    char text[2 * 8 + 2 + 1];
    std::snprintf(text, sizeof(text), "%02x%02x00", static_cast<unsigned>(domain), unsigned{portNumber});
    return strToUpper(text);
}

} // namespace

VRAX_FCPort_Provider::Port_Writer::Port_Writer(const DataCache& cache, Map_Writer<VRAX_FCPort>& map)
    : _cache(cache), _map(map), _local(kLocalKeys), _remote(kRemoteKeys), _attached(kAttachedKeys)
{
}

void VRAX_FCPort_Provider::Port_Writer::localPort(const Walked_Switch& owner, const Local_Port& port)
{
    const bool isEthernet = _cache.getPortHWType(port.index) == kPortHWTypeEthernet;
    const char* capability = isEthernet ? "EthSpeedCapability" : "SpeedCapability";
    if (!_local.read({port.index.c_str(), port.wwn.c_str(), capability}))
        return;
    // A port that has not been tested is as good as any other.
    if (_local.status(local::kDiagStatus) != 0)
        _local.substitute(local::kDiagStatus, "Unknown");
    if (_local.hasErrors())
        return;

    Owned<VRAX_FCPort> instance = make();
    setOwner(*instance, owner, port.wwn);
    fillLocal(*instance, owner.domain);
    finish(instance, "Failed to insert into VRAX_FCPort_map (local_port_entry)");
}

void VRAX_FCPort_Provider::Port_Writer::remotePort(const Walked_Switch& owner, const PortCache& port)
{
    const std::string entry = std::to_string(port.getEntryNumber());
    if (!_remote.read({owner.domainText.c_str(), entry.c_str()}))
        return;

    Owned<VRAX_FCPort> instance = make();
    setOwner(*instance, owner, port.getWwn());
    fillRemote(*instance);
    // The topology knows of the port, but nobody has told it the port's name yet.
    if (instance->PermanentAddress.value == kZeroWwn)
        return;
    finish(instance, "Failed to insert into VRAX_FCPort_map (port_entry)");
}

void VRAX_FCPort_Provider::Port_Writer::attachedPort(const Walked_Switch& at, const char* address)
{
    if (!_attached.read({at.domainText.c_str(), address}))
        return;

    Owned<VRAX_FCPort> instance = make();
    fillAttached(*instance);
    finish(instance, "Failed to insert into VRAX_FCPort_map (attached_port_entry)");
}

Owned<VRAX_FCPort> VRAX_FCPort_Provider::Port_Writer::make() const
{
    Owned<VRAX_FCPort> instance = makeNull<VRAX_FCPort>();
    if (!instance)
        failLoad("Unable to create instance of VRAX_FCPort");
    instance->CreationClassName.set(_class);
    instance->LinkTechnology.set(kLinkTechnologyFC);
    return instance;
}

void VRAX_FCPort_Provider::Port_Writer::setOwner(VRAX_FCPort& instance,
                                                 const Walked_Switch& owner,
                                                 const Wwn& portWwn)
{
    instance.SystemCreationClassName.set(_switchClass);
    instance.SystemName.set(_switch.of(owner.wwn.c_str()));
    String device(owner.wwn.c_str());
    device.append(':');
    device.append(portWwn.c_str());
    instance.DeviceID.set(device);
}

void VRAX_FCPort_Provider::Port_Writer::fillLocal(VRAX_FCPort& instance, int domain) const
{
    const char* adminState = _local.text(local::kAdminState);
    instance.ElementName.set(_local.text(local::kSymPortName));
    instance.OperationalStatus.set(
        smlPortStateToCIMOperationalStatus(_local.text(local::kOperState), adminState));
    instance.HealthState.set(smlDiagStatusToCIMHealthState(_local.text(local::kDiagStatus)));
    const uint16 enabledState = smlPortStateToCIMEnabledState(adminState);
    instance.EnabledState.set(enabledState);
    instance.RequestedState.set(kNoChange);
    instance.EnabledDefault.set(enabledState == kEnabled ? kEnabled : kDisabled);

    std::string address = upperCased(_local.text(local::kWwn));
    if (address == kZeroWwn || address.empty())
        address = upperCased(_local.text(local::kComputedWwn));
    instance.PermanentAddress.set(address.c_str());

    instance.PortType.set(smlPortTypeToCIMPortType(_local.text(local::kRunningType)));
    instance.Speed.set(smlSpeedToCIMSpeed(_local.text(local::kLinkSpeed)));
    instance.MaxSpeed.set(smlSpeedToCIMSpeed(_local.text(local::kSpeedCapability)));
    const uint16 portNumber = number(_local.text(local::kIndex));
    instance.PortNumber.set(portNumber);
    instance.NetworkAddresses.set(Array_String::make(addressOf(domain, portNumber)));
    instance.IOStreamGuardState.set(
        smlIOStreamGuardModeToCIMIOStreamGuardState(_local.text(local::kIOStreamGuardMode)));
    instance.PerformanceTuningMode.set(
        smlPerfTuningModeToCIMPerformanceTuningMode(_local.text(local::kPerfTuningMode)));
    instance.BBCredits.set(number(_local.text(local::kMaxCredit)));
}

void VRAX_FCPort_Provider::Port_Writer::fillRemote(VRAX_FCPort& instance) const
{
    const char* state = _remote.text(remote::kPortState);
    const char* portNumber = _remote.text(remote::kPortNumber);
    String name("Port ");
    name.append(portNumber);
    instance.ElementName.set(name);
    instance.OperationalStatus.set(smlPortStateToCIMOperationalStatus(state, state));
    instance.EnabledState.set(kNotApplicable);
    instance.RequestedState.set(kRequestNotApplicable);
    instance.EnabledDefault.set(kNotApplicable);
    instance.PermanentAddress.set(upperCased(_remote.text(remote::kPortWwn)).c_str());
    instance.PortType.set(smlPortTypeToCIMPortType(_remote.text(remote::kPortType)));
    instance.Speed.set(0);
    instance.MaxSpeed.set(0);
    instance.PortNumber.set(number(portNumber));
}

void VRAX_FCPort_Provider::Port_Writer::fillAttached(VRAX_FCPort& instance)
{
    const String wwn(upperCased(_attached.text(attached::kPortWwn)).c_str());
    instance.SystemCreationClassName.set(_fabricClass);
    instance.SystemName.set(_principal.of(upperCased(_attached.text(attached::kPrincipal)).c_str()));
    instance.DeviceID.set(wwn);
    instance.ElementName.set(_attached.text(attached::kSymPortName));
    instance.OperationalStatus.set(Array_uint16::make(kUnknown));
    instance.PermanentAddress.set(wwn);
    instance.PortType.set(smlPortTypeToCIMPortType(_attached.text(attached::kPortType)));
    instance.NetworkAddresses.set(Array_String::make(upperCased(_attached.text(attached::kAddress)).c_str()));
    instance.SupportedCOS.set(smlSupportedCosToCIMSupportedCos(_attached.text(attached::kCosList)));
    instance.SupportedFC4Types.set(
        smlSupportedFC4TypeToCIMSupportedFC4Type(_attached.text(attached::kFc4Types)));
}

void VRAX_FCPort_Provider::Port_Writer::finish(Owned<VRAX_FCPort>& instance,
                                               const char* insertionFailed,
                                               int line)
{
    insertChecked(
        _map, instance, "VRAXFCPort::One or more Key Properties not populated", insertionFailed, line);
}

} // namespace cimple
