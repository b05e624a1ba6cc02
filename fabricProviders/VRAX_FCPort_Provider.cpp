// The Fibre Channel ports: of the local switch, of the fabric's other switches, and of attached nodes.
#include "fabricProviders/VRAX_FCPort_Provider.h"

#include "common/CacheLock.h"
#include "common/XPL_Mem.h"
#include "fabricProviders/FCPort_Writer.h"
#include "platform/switch_config.h"
#include "platform/switch_server.h"

#include <cstdio>

namespace cimple
{

void VRAX_FCPort_Provider::build(Map_Writer<VRAX_FCPort>& map)
{
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    DataCache& cache = *DataCache::instance();
    Port_Writer writer(cache, map);
    walkAllPorts(cache, writer);
}

namespace
{

// Only the local switch knows of a port how healthy it is. The numbers of other ports mean nothing here: its
// own port of that number is another one.
bool isLocal(const VRAX_FCPort& port)
{
    return !port.HealthState.null;
}

// A port's configuration record. Fields that are not known here go back as they were read.
class Port_Record
{
  public:
    explicit Port_Record(const VRAX_FCPort& localPort) : _port(localPort.PortNumber.value) {}

    bool read() { return xpl_swPortGetConfig(hSwitch, _port, 0, &_record) == 0; }
    bool write() const { return xpl_swPortSetConfig(hSwitch, _port, &_record) == 0; }

    // The name is cut to what the record holds.
    void setName(const String& name)
    {
        std::snprintf(_record.symbolicName, sizeof(_record.symbolicName), "%s", name.c_str());
    }
    void setAdminState(xpl_AdminState state) { _record.adminState = state; }

  private:
    std::int32_t _port;
    xpl_swPortConfig _record{};
};

// Values of RequestStateChange's return value.
constexpr uint32 kCompleted = 0;
constexpr uint32 kRefused = 1;
constexpr uint32 kFailed = 4;
constexpr uint32 kInvalidParameter = 5;

// A state that can be requested, and what becomes of the record.
struct State_Change
{
    uint16 requested;
    const char* logged;
    void (*apply)(Port_Record& record);
};

constexpr State_Change kStateChanges[] = {
    {2, "Setting port Online", [](Port_Record& record) { record.setAdminState(XPL_ADMIN_ONLINE); }},
    {3, "Setting port Offline", [](Port_Record& record) { record.setAdminState(XPL_ADMIN_OFFLINE); }},
    {7,
     "Setting port to Diagnostics",
     [](Port_Record& record) { record.setAdminState(XPL_ADMIN_DIAGNOSTICS); }},
    // The switch resets the link of a port whose record is written unchanged.
    {11, "Setting port to RESET", [](Port_Record&) {}},
};

const State_Change* stateChange(uint16 requested)
{
    for (const State_Change& change : kStateChanges)
    {
        if (change.requested == requested)
            return &change;
    }
    return nullptr;
}

} // namespace

Modify_Instance_Status VRAX_FCPort_Provider::modify_instance(const VRAX_FCPort* model,
                                                             const VRAX_FCPort* instance)
{
    trace(kSource, __func__, __LINE__);
    const MapWrLock lock(kIndex);
    const XPL_Mem<char*> localWwn(get_Local_Switch_World_Wide_Name());
    if (localWwn.empty() || *localWwn == nullptr)
    {
        logFailure(__func__, "Unable to retrieve localWWN");
        return MODIFY_INSTANCE_NOT_FOUND;
    }
    if (!model->SystemName.null && !instance->SystemName.value.equali(*localWwn))
        return MODIFY_INSTANCE_INVALID_PARAMETER;

    const auto* cached = static_cast<const VRAX_FCPort*>(map()._lookup(instance));
    if (cached == nullptr)
    {
        logFailure(__func__, "Required instance not found in the map");
        return MODIFY_INSTANCE_NOT_FOUND;
    }
    // A node port bears the local switch's name as well, when that switch is the principal one.
    if (!isLocal(*cached))
        return MODIFY_INSTANCE_INVALID_PARAMETER;
    if (model->ElementName.null)
        return MODIFY_INSTANCE_OK;

    Port_Record record(*cached);
    if (!record.read())
    {
        logFailure(__func__, "xpl_swPortGetConfig Failed");
        return MODIFY_INSTANCE_NOT_FOUND;
    }
    record.setName(instance->ElementName.value);
    if (!record.write())
    {
        logFailure(__func__, "xpl_swPortSetConfig Failed");
        return MODIFY_INSTANCE_NOT_FOUND;
    }
    changeCached(cached, &VRAX_FCPort::ElementName, instance->ElementName);
    return MODIFY_INSTANCE_OK;
}

uint32 VRAX_FCPort_Provider::changeState(const VRAX_FCPort& port, uint16 requestedState, const char* function)
{
    cim_log(kLogInfo, "Found VRAX_FCPort instance\n");
    if (!isLocal(port))
    {
        logFailure(function, "Not a port of the local switch");
        return kRefused;
    }
    cim_log(kLogInfo, "PortID = %d\n", int{port.PortNumber.value});
    Port_Record record(port);
    if (!record.read())
        return kRefused;

    const State_Change* change = stateChange(requestedState);
    if (change == nullptr)
    {
        cim_log(kLogInfo, "Invalid Requested State\n");
        return kInvalidParameter;
    }
    cim_log(kLogInfo, "%s\n", change->logged);
    change->apply(record);
    if (!record.write())
    {
        logFailure(function, "Failed to  change the port state");
        return kRefused;
    }
    cim_log(kLogInfo, "Successfully changed the port state\n");
    return kCompleted;
}

Invoke_Method_Status VRAX_FCPort_Provider::RequestStateChange(const VRAX_FCPort* self,
                                                              const Property<uint16>& RequestedState,
                                                              CIM_ConcreteJob*&,
                                                              const Property<Datetime>&,
                                                              Property<uint32>& return_value)
{
    trace(kSource, __func__, __LINE__);
    const MapWrLock lock(kIndex);
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
    const auto* cached = static_cast<const VRAX_FCPort*>(map()._lookup(self));
    if (cached == nullptr)
    {
        logFailure(__func__, "\n VRAX FCPort not found");
        return_value.set(kInvalidParameter);
        return INVOKE_METHOD_OK;
    }
    return_value.set(changeState(*cached, requestedState, __func__));
    return INVOKE_METHOD_OK;
}

} // namespace cimple
