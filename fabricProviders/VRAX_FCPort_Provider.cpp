// The Fibre Channel ports: of the local switch, of the fabric's other switches, and of attached nodes.
#include "fabricProviders/VRAX_FCPort_Provider.h"

#include "common/results.h"
#include "common/topology_keys.h"
#include "switchaccess/Attribute.h"
#include "switchaccess/CacheLock.h"
#include "switchaccess/Record.h"
#include "switchaccess/Repeated_Text.h"
#include "switchaccess/fabric_walk.h"
#include "switchaccess/local_switch.h"
#include "switchaccess/port_hardware.h"
#include "switchaccess/string_helpers.h"
#include "switchaccess/value_translation.h"

#include <cstdio>

#include <strings.h>

namespace cimple
{

namespace
{

using Is = VRAX_FCPort;

// Of a local port, by its index, its computed WWN and the attribute that tells its hardware's speed.
constexpr Attribute<Is> kLocalAttributes[] = {
    {"Oper.UserPort.0.%1$s.SymPortName", put<&Is::ElementName>},
    {"Oper.UserPort.0.%1$s.OperState"}, // together with the administrative state
    {"Oper.UserPort.0.%1$s.AdminState", put<&Is::EnabledState, smlPortStateToCIMEnabledState>},
    {"Oper.UserPort.0.%1$s.WWN", put<&Is::PermanentAddress, inUpperCase>},
    {"Oper.UserPort.0.%1$s.RunningType", put<&Is::PortType, smlPortTypeToCIMPortType>},
    {"Oper.UserPort.0.%1$s.LinkSpeed", put<&Is::Speed, smlSpeedToCIMSpeed>},
    {"Oper.UserPort.0.%1$s.%3$s", put<&Is::MaxSpeed, smlSpeedToCIMSpeed>},
    {"Oper.UserPort.0.%1$s.IOStreamGuardMode",
     put<&Is::IOStreamGuardState, smlIOStreamGuardModeToCIMIOStreamGuardState>},
    {"Oper.UserPort.0.%1$s.PerfTuningMode",
     put<&Is::PerformanceTuningMode, smlPerfTuningModeToCIMPerformanceTuningMode>},
    {"Oper.UserPort.0.%1$s.MaxCredit", put<&Is::BBCredits, decimal16>},
    // A port that has not been tested is as good as any other.
    {"Oper.UserPort.0.%1$s.DiagStatus", put<&Is::HealthState, smlDiagStatusToCIMHealthState>, "Unknown"},
    {"Oper.Switch.Echo.%1$s", put<&Is::PortNumber, decimal16>},
    {"Oper.Switch.Echo.%2$s"}, // in place of a WWN that the port does not tell
};
constexpr std::size_t kOperState = entryOf(kLocalAttributes, ".OperState");
constexpr std::size_t kAdminState = entryOf(kLocalAttributes, ".AdminState");
constexpr std::size_t kWwn = entryOf(kLocalAttributes, ".WWN");
constexpr std::size_t kComputedWwn = entryOf(kLocalAttributes, ".Echo.%2$s");

// Of a port of another switch, by domain and topology entry.
constexpr Attribute<Is> kRemoteAttributes[] = {
    {"Oper.TopologyAll.%d.Entry.%d.PortState"},
    {"Oper.TopologyAll.%d.Entry.%d.PortType", put<&Is::PortType, smlPortTypeToCIMPortType>},
    {"Oper.TopologyAll.%d.Entry.%d.PortWwn", put<&Is::PermanentAddress, inUpperCase>},
    {"Oper.TopologyAll.%d.Entry.%d.PortNumber", put<&Is::PortNumber, decimal16>},
};
constexpr std::size_t kPortState = entryOf(kRemoteAttributes, ".PortState");
constexpr std::size_t kPortNumber = entryOf(kRemoteAttributes, ".PortNumber");

// Of a node port, by domain and address.
constexpr Attribute<Is> kAttachedAttributes[] = {
    {"Oper.NameServerAll.%1$d.Entry.%2$s.PortWwn", put<&Is::PermanentAddress, inUpperCase>},
    {"Oper.NameServerAll.%1$d.Entry.%2$s.SymPortName", put<&Is::ElementName>},
    {"Oper.NameServerAll.%1$d.Entry.%2$s.PortType", put<&Is::PortType, smlPortTypeToCIMPortType>},
    {"Oper.NameServerAll.%1$d.Entry.%2$s.COSList", put<&Is::SupportedCOS, smlSupportedCosToCIMSupportedCos>},
    {"Oper.NameServerAll.%1$d.Entry.%2$s.FC4StdTypeList",
     put<&Is::SupportedFC4Types, smlSupportedFC4TypeToCIMSupportedFC4Type>},
    {"Oper.Switch.Echo.%2$s"},      // the address, in upper case
    {"Oper.Switch.WhoIsPrincipal"}, // the system of all node ports, in upper case
};
constexpr std::size_t kAddress = entryOf(kAttachedAttributes, ".Echo.%2$s");
constexpr std::size_t kPrincipal = entryOf(kAttachedAttributes, ".WhoIsPrincipal");

// Values of the CIM schema.
constexpr uint16 kUnknown = 0;               // OperationalStatus
constexpr uint16 kEnabled = 2;               // EnabledState, EnabledDefault
constexpr uint16 kDisabled = 3;              // EnabledDefault
constexpr uint16 kNotApplicable = 5;         // EnabledState, EnabledDefault
constexpr uint16 kNoChange = 5;              // RequestedState
constexpr uint16 kRequestNotApplicable = 12; // RequestedState
constexpr uint16 kLinkTechnologyFC = 4;

// The Fibre Channel address of a switch port: domain and area, with no loop behind it (FC-SW-3).
String addressOf(int domain, uint16 portNumber)
{
    char text[2 * 8 + 2 + 1];
    std::snprintf(text, sizeof(text), "%02x%02x00", static_cast<unsigned>(domain), unsigned{portNumber});
    return strToUpper(text);
}

} // namespace

// Reads one port after the other, each in one batch, and gives instances what was read.
class VRAX_FCPort_Provider::Port_Reader
{
  public:
    explicit Port_Reader(const DataCache& cache) : _cache(cache) {}

    // The port's attributes; false when it cannot be read.
    bool readLocal(const Local_Port& port)
    {
        return _local.read({port.index.c_str(), port.wwn.c_str(), speedCapabilityKey(_cache, port.index)});
    }
    bool readRemote(const Walked_Switch& owner, const PortCache& port)
    {
        const std::string entry = std::to_string(port.getEntryNumber());
        return _remote.read({owner.domainText.c_str(), entry.c_str()});
    }
    bool readAttached(const Walked_Switch& at, const char* address)
    {
        return _attached.read({at.domainText.c_str(), address});
    }

    // The keys of a switch's port.
    void setKeys(VRAX_FCPort& instance, const Walked_Switch& owner, const Wwn& portWwn)
    {
        instance.CreationClassName.set(_class);
        instance.SystemCreationClassName.set(_switchClass);
        instance.SystemName.set(_switch.of(owner.wwn.c_str()));
        instance.DeviceID.set(String(owner.wwn.c_str(), ":", portWwn.c_str()));
    }

    // What was read last, as properties.
    void fillLocal(VRAX_FCPort& instance, const Walked_Switch& owner, const Local_Port& port)
    {
        fill(instance, _local);
        setKeys(instance, owner, port.wwn);
        instance.OperationalStatus.set(
            smlPortStateToCIMOperationalStatus(_local.text(kOperState), _local.text(kAdminState)));
        instance.RequestedState.set(kNoChange);
        instance.EnabledDefault.set(instance.EnabledState.value == kEnabled ? kEnabled : kDisabled);
        if (isNoWwn(_local.text(kWwn)))
            instance.PermanentAddress.set(inUpperCase(_local.text(kComputedWwn)));
        instance.NetworkAddresses.set(Array_String::make(addressOf(owner.domain, instance.PortNumber.value)));
    }
    // False when the topology knows of the port, but nobody has told it the port's name yet.
    bool fillRemote(VRAX_FCPort& instance, const Walked_Switch& owner, const PortCache& port)
    {
        fill(instance, _remote);
        if (instance.PermanentAddress.value == kZeroWwn)
            return false;
        setKeys(instance, owner, port.getWwn());
        instance.ElementName.set(String("Port ", _remote.text(kPortNumber)));
        const char* state = _remote.text(kPortState);
        instance.OperationalStatus.set(smlPortStateToCIMOperationalStatus(state, state));
        instance.EnabledState.set(kNotApplicable);
        instance.RequestedState.set(kRequestNotApplicable);
        instance.EnabledDefault.set(kNotApplicable);
        instance.Speed.set(0);
        instance.MaxSpeed.set(0);
        return true;
    }
    void fillAttached(VRAX_FCPort& instance)
    {
        fill(instance, _attached);
        instance.CreationClassName.set(_class);
        instance.SystemCreationClassName.set(_fabricClass);
        instance.SystemName.set(_principal.of(upperCased(_attached.text(kPrincipal)).c_str()));
        instance.DeviceID.set(instance.PermanentAddress.value);
        instance.OperationalStatus.set(Array_uint16::make(kUnknown));
        instance.NetworkAddresses.set(Array_String::make(inUpperCase(_attached.text(kAddress))));
    }

  private:
    static void fill(VRAX_FCPort& instance, const Attribute_Reader<VRAX_FCPort>& attributes)
    {
        instance.LinkTechnology.set(kLinkTechnologyFC);
        attributes.fill(instance);
    }

    const DataCache& _cache;
    Attribute_Reader<VRAX_FCPort> _local{kLocalAttributes};
    Attribute_Reader<VRAX_FCPort> _remote{kRemoteAttributes};
    Attribute_Reader<VRAX_FCPort> _attached{kAttachedAttributes};
    const String _class{"VRAX_FCPort"};
    const String _switchClass{"VRAX_FCSwitch"};
    const String _fabricClass{"VRAX_Fabric"};
    Repeated_Text _switch;
    Repeated_Text _principal;
};

// The visitor of walkAllPorts() that publishes each port that it is shown: one batch, one instance. A port
// that cannot be read is left out; any other failure is thrown.
class VRAX_FCPort_Provider::Port_Writer
{
  public:
    Port_Writer(const DataCache& cache, Map_Writer<VRAX_FCPort>& map) : _reader(cache), _map(map) {}

    void localPort(const Walked_Switch& owner, const Local_Port& port)
    {
        if (!_reader.readLocal(port))
            return;
        Owned<VRAX_FCPort> instance = make();
        _reader.fillLocal(*instance, owner, port);
        add(_map, instance, {"local_port_entry"});
    }

    void remotePort(const Walked_Switch& owner, const PortCache& port)
    {
        if (!_reader.readRemote(owner, port))
            return;
        Owned<VRAX_FCPort> instance = make();
        if (_reader.fillRemote(*instance, owner, port))
            add(_map, instance, {"port_entry"});
    }

    void attachedPort(const Walked_Switch& at, const char* address)
    {
        if (!_reader.readAttached(at, address))
            return;
        Owned<VRAX_FCPort> instance = make();
        _reader.fillAttached(*instance);
        add(_map, instance, {"attached_port_entry"});
    }

  private:
    Port_Reader _reader;
    Map_Writer<VRAX_FCPort>& _map;
};

void VRAX_FCPort_Provider::build(Map_Writer<VRAX_FCPort>& map)
{
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    DataCache& cache = *DataCache::instance();
    Port_Writer writer(cache, map);
    walkAllPorts(cache, writer);
}

bool VRAX_FCPort_Provider::describe(const Wwn& switchWwn, const Wwn& wwn, VRAX_FCPort& instance)
{
    const auto same = [](const Wwn& a, const Wwn& b) { return strcasecmp(a.c_str(), b.c_str()) == 0; };
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    DataCache& cache = *DataCache::instance();
    Port_Reader reader(cache);
    for (const SwitchCache& one : Fabric_Switches(cache))
    {
        if (!same(one.getWwn(), switchWwn))
            continue;
        const int domain = one.getDomainID();
        const Walked_Switch owner{domain, Domain_Text(domain), one.getWwn()};
        if (one.isLocal())
        {
            for (const Local_Port port : Local_Ports(cache, owner.wwn))
            {
                if (!same(port.wwn, wwn))
                    continue;
                reader.setKeys(instance, owner, port.wwn);
                if (reader.readLocal(port))
                    reader.fillLocal(instance, owner, port);
                return true;
            }
        }
        else
        {
            for (const PortCache& port : Topology_Ports(one))
            {
                if (!same(port.getWwn(), wwn))
                    continue;
                reader.setKeys(instance, owner, port.getWwn());
                if (reader.readRemote(owner, port))
                    reader.fillRemote(instance, owner, port);
                return true;
            }
        }
    }
    return false;
}

namespace
{

constexpr State_Change kStateChanges[] = {
    {2, State_Action::SetAdminState, XPL_ADMIN_ONLINE, "Setting port Online\n"},
    {3, State_Action::SetAdminState, XPL_ADMIN_OFFLINE, "Setting port Offline\n"},
    {7, State_Action::SetAdminState, XPL_ADMIN_DIAGNOSTICS, "Setting port to Diagnostics\n"},
    {11, State_Action::RewriteRecord, 0, "Setting port to RESET\n"},
};

// Values of RequestStateChange's return value.
constexpr uint32 kCompleted = 0;
constexpr uint32 kRefused = 1;
constexpr uint32 kFailed = 4;
constexpr uint32 kInvalidParameter = 5;

} // namespace

Modify_Instance_Status VRAX_FCPort_Provider::modify_instance(const VRAX_FCPort* model,
                                                             const VRAX_FCPort* instance)
{
    const auto body = [&](Operation<Modify_Instance_Status>& op)
    {
        Write_Guard<VRAX_FCPort> guard;
        const Local_Switch_Wwn localWwn({kSource, "modify_instance"},
                                        Failure_Text::line(kLocalWwnMissing.text));
        if (!model->SystemName.null && !instance->SystemName.value.equali(localWwn.text()))
            return MODIFY_INSTANCE_INVALID_PARAMETER;
        const VRAX_FCPort* cached = guard.view().find(*instance);
        if (cached == nullptr)
            op.fail(Failure_Text::line("Required instance not found in the map"));
        if (model->ElementName.null)
            return MODIFY_INSTANCE_OK;
        // A node port bears the local switch's name as well, when that switch is the principal one.
        if (!isLocal(*cached))
            return MODIFY_INSTANCE_INVALID_PARAMETER;

        Record<xpl_swPortConfig> record(cached->PortNumber.value);
        if (record.read() != 0)
            op.fail(Failure_Text::line("xpl_swPortGetConfig Failed"));
        putTextCut(record->symbolicName, instance->ElementName.value);
        if (record.write() != 0)
            op.fail(Failure_Text::line("xpl_swPortSetConfig Failed"));
        changeCached(guard, *cached, &VRAX_FCPort::ElementName, record->symbolicName);
        return MODIFY_INSTANCE_OK;
    };
    return operation("modify_instance", MODIFY_INSTANCE_NOT_FOUND, body);
}

uint32 VRAX_FCPort_Provider::changeState(const VRAX_FCPort& port, uint16 requestedState, const char* function)
{
    const auto refuse = [function](const char* why, int line = __builtin_LINE())
    {
        report(VRAX_Except(kSource, function, line, Failure_Text::line(why)));
        return kRefused;
    };
    cim_log(kLogInfo, "Found VRAX_FCPort instance\n");
    if (!isLocal(port))
        return refuse("Not a port of the local switch");
    cim_log(kLogInfo, "PortID = %d\n", int{port.PortNumber.value});
    Record<xpl_swPortConfig> record(port.PortNumber.value);
    if (record.read() != 0)
        return kRefused;

    const State_Change* change = stateChange(kStateChanges, requestedState);
    if (change == nullptr)
    {
        cim_log(kLogInfo, "Invalid Requested State\n");
        return kInvalidParameter;
    }
    if (change->action == State_Action::SetAdminState)
        record->adminState = change->adminState;
    if (record.write() != 0)
        return refuse("Failed to  change the port state");
    cim_log(kLogInfo, "Successfully changed the port state\n");
    return kCompleted;
}

Invoke_Method_Status VRAX_FCPort_Provider::RequestStateChange(const VRAX_FCPort* self,
                                                              const Property<uint16>& RequestedState,
                                                              CIM_ConcreteJob*&,
                                                              const Property<Datetime>&,
                                                              Property<uint32>& return_value)
{
    const char* const function = __func__;
    const auto body = [&](Operation<Invoke_Method_Status>&)
    {
        const Write_Guard<VRAX_FCPort> guard;
        const uint16 requestedState = RequestedState.null ? uint16{0} : RequestedState.value;
        cim_log(kLogInfo,
                "RequestedState = %d, CreationClassName = %s, DeviceID = %s\n",
                int{requestedState},
                self->CreationClassName.value.c_str(),
                self->DeviceID.value.c_str());
        if (load() == LOAD_FAILED)
        {
            cim_log(kLogInfo, "VRAX_FCPort_Provider load failed\n");
            return_value.set(kFailed);
            return INVOKE_METHOD_OK;
        }
        const VRAX_FCPort* cached = guard.view().find(*self);
        if (cached == nullptr)
        {
            report(VRAX_Except(kSource, function, __LINE__, Failure_Text::line("\n VRAX FCPort not found")));
            return_value.set(kInvalidParameter);
            return INVOKE_METHOD_OK;
        }
        return_value.set(changeState(*cached, requestedState, function));
        return INVOKE_METHOD_OK;
    };
    return operation(function, INVOKE_METHOD_FAILED, body);
}

} // namespace cimple
