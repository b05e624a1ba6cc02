// The switches of the fabric: the local one in full, the others as far as the local one knows them.
#include "fabricProviders/VRAX_FCSwitch_Provider.h"

#include "common/CacheLock.h"
#include "common/Sml_Batch.h"
#include "common/XPL_Mem.h"
#include "common/fabric_walk.h"
#include "common/string_helpers.h"
#include "common/value_translation.h"
#include "platform/switch_config.h"
#include "platform/switch_server.h"
#include "platform/vpd.h"

#include <cctype>
#include <cstring>
#include <string>

namespace cimple
{

namespace
{

constexpr const char* kLocalKeys[] = {
    "Oper.Switch.WWN",
    "Config.Switch.SymName",
    "Oper.Switch.OperState",
    "Oper.Switch.AdminState",
    "Config.Switch.AdminState",
    "Oper.Switch.DomainID",
    "Oper.Switch.Type",
};
enum LocalEntry
{
    kOperState = 2,
    kAdminState,
    kConfiguredAdminState,
    kDomainId,
    kType
};

constexpr const char* kRemoteKeys[] = {
    "Oper.Fabric.Entry.%d.WWN",
    "Oper.Fabric.Entry.%d.SymNodeName",
    "Oper.Switch.Echo.%d",
};
enum RemoteEntry
{
    kEchoedDomainId = 2
};

// Both batches begin with these.
enum CommonEntry
{
    kWwn,
    kName
};

// Values of EnabledState, EnabledDefault and RequestedState.
constexpr uint16 kStateNotApplicable = 5;
constexpr uint16 kNoChangeRequested = 5;
constexpr uint16 kRequestNotApplicable = 12;

// Values of Dedicated.
constexpr uint16 kDedicatedOther = 2;
constexpr uint16 kDedicatedSwitch = 5;

// Values of RequestStateChange's RequestedState and result (CIM_EnabledLogicalElement).
enum Requested
{
    kEnable = 2,
    kDisable = 3,
    kShutDown = 4,
    kGoOffline = 6,
    kTest = 7,
    kDefer = 8,
    kQuiesce = 9,
    kReboot = 10,
    kReset = 11
};
constexpr uint32 kCompleted = 0;
constexpr uint32 kNotSupported = 1;
constexpr uint32 kRefused = 5;

// In place of an xpl_AdminState: the request asks for none.
constexpr int kNoState = 0;

// The model of blade whose product name says more than its kind.
constexpr const char* kNamedByProduct = "Rowan Blade";

// What a switch that forwards its ports to another fabric calls itself.
constexpr const char* kTransparentSwitch = "FC-T Switch";

void fillLocal(VRAX_FCSwitch& one, const Sml_Batch& batch, const DataCache& cache)
{
    const std::vector<std::uint16_t> faults = cache.getSwitchFaults();
    one.OtherIdentifyingInfo.set(Array_String::make(batch.text(kDomainId)));
    one.OperationalStatus.set(smlSwitchStateToCIMOperationalStatus(
        batch.text(kOperState), Array_uint16(faults.data(), faults.size())));
    one.EnabledState.set(smlSwitchStateToCIMEnabledState(batch.text(kAdminState)));
    one.RequestedState.set(kNoChangeRequested);
    one.EnabledDefault.set(smlSwitchStateToCIMEnabledState(batch.text(kConfiguredAdminState)));
}

void fillRemote(VRAX_FCSwitch& one, const Sml_Batch& batch)
{
    one.OtherIdentifyingInfo.set(Array_String::make(batch.text(kEchoedDomainId)));
    one.OperationalStatus.set(Array_uint16::make(0)); // Unknown
    one.EnabledState.set(kStateNotApplicable);
    one.RequestedState.set(kRequestNotApplicable);
    one.EnabledDefault.set(kStateNotApplicable);
}

// Remote switches count as what the local one is: a transparent switch sees its fabric through others.
void fillKind(VRAX_FCSwitch& one, bool isTransparent)
{
    if (isTransparent)
    {
        one.Dedicated.set(Array_uint16::make(kDedicatedOther));
        one.OtherDedicatedDescriptions.set(Array_String::make(kTransparentSwitch));
        one.Description.set(kTransparentSwitch);
    }
    else
    {
        one.Dedicated.set(Array_uint16::make(kDedicatedSwitch));
        one.IdentifyingDescriptions.set(Array_String::make("DomainID"));
        one.Description.set("FibreChannel Switch");
    }
}

// Replaces the description by the product name, if that can be read, without the blanks that fill its field.
void describeByProduct(VRAX_FCSwitch& one)
{
    char name[kVpdProductNameSize] = "";
    if (VPD_Client::read_product_name(name, sizeof(name)) != 0)
        return;
    std::size_t length = std::strlen(name);
    while (length > 0 && std::isspace(static_cast<unsigned char>(name[length - 1])) != 0)
        --length;
    one.Description.set(String(name, length));
}

// Puts a name into its field of the record; false, and nothing is done, when it does not fit.
bool putName(xpl_swSwitchConfig& record, const String& name)
{
    const std::size_t size = std::strlen(name.c_str()) + 1;
    if (size > sizeof(record.symbolicName))
        return false;
    std::memcpy(record.symbolicName, name.c_str(), size);
    return true;
}

} // namespace

void VRAX_FCSwitch_Provider::build(Map_Writer<VRAX_FCSwitch>& map)
{
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    DataCache& cache = *DataCache::instance();
    const Wwn rootWwn = cache.getRootSwitchWwn();
    const bool isTransparent = cache.isTransparentSwitch();
    Sml_Batch localBatch(kLocalKeys);
    Sml_Batch remoteBatch(kRemoteKeys);

    for (const SwitchCache& one : Fabric_Switches(cache))
    {
        const bool isLocal = one.getWwn() == rootWwn;
        const Domain_Text domain(one.getDomainID());
        Sml_Batch& batch = isLocal ? localBatch : remoteBatch;
        if (!batch.read({domain.c_str()}))
            failLoad("Unable to obtain FCSwitch attributes");
        Owned<VRAX_FCSwitch> instance = makeNull<VRAX_FCSwitch>();
        if (!instance)
            failLoad("VRAX_FCSwitch instance creation failed");

        instance->CreationClassName.set("VRAX_FCSwitch");
        instance->Name.set(upperCased(batch.text(kWwn)).c_str());
        instance->ElementName.set(batch.text(kName));
        instance->NameFormat.set("WWN");
        if (isLocal)
            fillLocal(*instance, batch, cache);
        else
            fillRemote(*instance, batch);
        fillKind(*instance, isTransparent);
        if (isLocal && std::strcmp(batch.text(kType), kNamedByProduct) == 0)
            describeByProduct(*instance);

        insertChecked(map,
                      instance,
                      "VRAX_FCSwitch::One or more Key Properties are not populated",
                      "Failed to insert instance in the map");
    }
}

Modify_Instance_Status VRAX_FCSwitch_Provider::modify_instance(const VRAX_FCSwitch* model,
                                                               const VRAX_FCSwitch* instance)
{
    trace(kSource, __func__, __LINE__);
    const MapWrLock lock(kIndex);
    const XPL_Mem<char*> localWwn(get_Local_Switch_World_Wide_Name());
    if (localWwn.empty() || *localWwn == nullptr)
    {
        logFailure(__func__, "Unable to retrieve localWWN");
        return MODIFY_INSTANCE_NOT_FOUND;
    }
    if (!instance->Name.value.equali(*localWwn))
        return MODIFY_INSTANCE_INVALID_PARAMETER;
    const auto* cached = static_cast<const VRAX_FCSwitch*>(map()._lookup(instance));
    if (cached == nullptr)
    {
        logFailure(__func__, "Required instance not found in the map");
        return MODIFY_INSTANCE_NOT_FOUND;
    }
    if (model->ElementName.null)
        return MODIFY_INSTANCE_OK;

    xpl_swSwitchConfig record{};
    if (xpl_swSwitchGetConfig(hSwitch, 0, &record) != 0)
    {
        logFailure(__func__, "xpl_swSwitchGetConfig Failed");
        return MODIFY_INSTANCE_NOT_FOUND;
    }
    if (!putName(record, instance->ElementName.value))
    {
        logFailure(__func__, "ElementName is longer than the 32 characters of a switch's name");
        return MODIFY_INSTANCE_NOT_FOUND;
    }
    if (xpl_swSwitchSetConfig(hSwitch, &record) != 0)
    {
        logFailure(__func__, "xpl_swSwitchSetConfig Failed");
        return MODIFY_INSTANCE_NOT_FOUND;
    }
    Property<String> name;
    name.set(instance->ElementName.value);
    changeCached(cached, &VRAX_FCSwitch::ElementName, name);
    return MODIFY_INSTANCE_OK;
}

Invoke_Method_Status VRAX_FCSwitch_Provider::reset(const char* function, Property<uint32>& result)
{
    // A critical line for each attempt, though nothing has failed: it tells why the switch went down.
    logCritical(function, "Querying for \"xpl_swSwitchForceReset\"");
    if (xpl_swSwitchForceReset(hSwitch) != 0)
    {
        logFailure(function, "Switch Reset failed");
        result.set(kRefused);
        return INVOKE_METHOD_FAILED;
    }
    result.set(kCompleted);
    return INVOKE_METHOD_OK;
}

Invoke_Method_Status
VRAX_FCSwitch_Provider::setAdminState(const char* function, int state, Property<uint32>& result)
{
    xpl_swSwitchConfig record{};
    int error = xpl_swSwitchGetConfig(hSwitch, 0, &record);
    if (error != 0)
    {
        logFailure(function, ("GetConfig Failed with error " + std::to_string(error)).c_str());
        return INVOKE_METHOD_FAILED;
    }
    if (state == kNoState)
        return INVOKE_METHOD_OK;

    record.adminState = state;
    logCritical(function, "Querying for \"xpl_swSwitchSetConfig\""); // for each attempt, as above
    error = xpl_swSwitchSetConfig(hSwitch, &record);
    if (error != 0)
    {
        logFailure(function, ("SetConfig Failed with error " + std::to_string(error)).c_str());
        result.set(kRefused);
        return INVOKE_METHOD_FAILED;
    }
    result.set(kCompleted);
    return INVOKE_METHOD_OK;
}

Invoke_Method_Status VRAX_FCSwitch_Provider::RequestStateChange(const VRAX_FCSwitch*,
                                                                const Property<uint16>& RequestedState,
                                                                CIM_ConcreteJob*&,
                                                                const Property<Datetime>&,
                                                                Property<uint32>& return_value)
{
    trace(kSource, __func__, __LINE__);
    const MapWrLock lock(kIndex);
    const unsigned requested = RequestedState.null ? 0U : RequestedState.value;
    cim_log(kLogInfo, "%s:%s[%d] RequestedState = %u\n", kSource, __func__, __LINE__, requested);
    return_value.clear();
    switch (requested)
    {
    case kReset:
        return reset(__func__, return_value);
    case kEnable:
        return setAdminState(__func__, XPL_ADMIN_ONLINE, return_value);
    case kDisable:
        return setAdminState(__func__, XPL_ADMIN_OFFLINE, return_value);
    case kTest:
        return setAdminState(__func__, XPL_ADMIN_DIAGNOSTICS, return_value);
    case kShutDown:
    case kGoOffline:
    case kDefer:
    case kQuiesce:
    case kReboot:
        cim_log(kLogInfo, "State Not Supported\n");
        return_value.set(kNotSupported);
        return INVOKE_METHOD_OK;
    default:
        return setAdminState(__func__, kNoState, return_value);
    }
}

uint16 VRAX_FCSwitch_Provider::findFault(const String& name)
{
    for (const char* const fault :
         {"HW_MP_ACCESS_CPU0", "HW_MP_ACCESS_CPU1", "HW_MP_DATA_MISMATCH", "HW_MP_ACCESS"})
    {
        if (name == fault)
            return kAccessFault;
    }
    return name == "FW_POST_FAIL" ? kSelfTestFault : uint16{0};
}

} // namespace cimple
