// The switches of the fabric: the local one in full, the others as far as the local one knows them.
#include "fabricProviders/VRAX_FCSwitch_Provider.h"

#include "common/results.h"
#include "platform/vpd.h"
#include "switchaccess/Attribute.h"
#include "switchaccess/CacheLock.h"
#include "switchaccess/Record.h"
#include "switchaccess/fabric_walk.h"
#include "switchaccess/local_switch.h"
#include "switchaccess/value_translation.h"

#include <cctype>
#include <cstring>
#include <string>

namespace cimple
{

namespace
{

using Is = VRAX_FCSwitch;

constexpr Attribute<Is> kLocalAttributes[] = {
    {"Oper.Switch.WWN", put<&Is::Name, inUpperCase>},
    {"Config.Switch.SymName", put<&Is::ElementName>},
    {"Oper.Switch.OperState"}, // together with the switch's faults
    {"Oper.Switch.AdminState", put<&Is::EnabledState, smlSwitchStateToCIMEnabledState>},
    {"Config.Switch.AdminState", put<&Is::EnabledDefault, smlSwitchStateToCIMEnabledState>},
    {"Oper.Switch.DomainID", put<&Is::OtherIdentifyingInfo, asOnlyElement>},
    {"Oper.Switch.Type"}, // decides on the description
};
constexpr std::size_t kOperState = entryOf(kLocalAttributes, ".OperState");
constexpr std::size_t kType = entryOf(kLocalAttributes, ".Type");

// By domain ID.
constexpr Attribute<Is> kRemoteAttributes[] = {
    {"Oper.Fabric.Entry.%d.WWN", put<&Is::Name, inUpperCase>},
    {"Oper.Fabric.Entry.%d.SymNodeName", put<&Is::ElementName>},
    {"Oper.Switch.Echo.%d", put<&Is::OtherIdentifyingInfo, asOnlyElement>},
};

// Values of EnabledState, EnabledDefault and RequestedState.
constexpr uint16 kStateNotApplicable = 5;
constexpr uint16 kNoChangeRequested = 5;
constexpr uint16 kRequestNotApplicable = 12;

// Values of Dedicated.
constexpr uint16 kDedicatedOther = 2;
constexpr uint16 kDedicatedSwitch = 5;

// The states of RequestStateChange (CIM_EnabledLogicalElement). Any other asks for nothing.
constexpr char kNotSupportedLine[] = "State Not Supported\n";
constexpr State_Change kStateChanges[] = {
    {2, State_Action::SetAdminState, XPL_ADMIN_ONLINE, nullptr},
    {3, State_Action::SetAdminState, XPL_ADMIN_OFFLINE, nullptr},
    {4, State_Action::Refuse, 0, kNotSupportedLine}, // shut down
    {6, State_Action::Refuse, 0, kNotSupportedLine}, // offline
    {7, State_Action::SetAdminState, XPL_ADMIN_DIAGNOSTICS, nullptr},
    {8, State_Action::Refuse, 0, kNotSupportedLine},  // defer
    {9, State_Action::Refuse, 0, kNotSupportedLine},  // quiesce
    {10, State_Action::Refuse, 0, kNotSupportedLine}, // reboot
    {11, State_Action::ForceReset, 0, nullptr},
};
constexpr State_Change kNothingRequested = {0, State_Action::RewriteRecord, 0, nullptr};

// Its results.
constexpr uint32 kCompleted = 0;
constexpr uint32 kNotSupported = 1;
constexpr uint32 kRefused = 5;

// The model of blade whose product name says more than its kind.
constexpr const char* kNamedByProduct = "Rowan Blade";

// What a switch that forwards its ports to another fabric calls itself.
constexpr const char* kTransparentSwitch = "FC-T Switch";

void fillLocal(VRAX_FCSwitch& one, const Attribute_Reader<VRAX_FCSwitch>& attributes, const DataCache& cache)
{
    const std::vector<std::uint16_t> faults = cache.getSwitchFaults();
    one.OperationalStatus.set(smlSwitchStateToCIMOperationalStatus(
        attributes.text(kOperState), Array_uint16(faults.data(), faults.size())));
    one.RequestedState.set(kNoChangeRequested);
}

void fillRemote(VRAX_FCSwitch& one)
{
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

} // namespace

void VRAX_FCSwitch_Provider::build(Map_Writer<VRAX_FCSwitch>& map)
{
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    DataCache& cache = *DataCache::instance();
    const Wwn rootWwn = cache.getRootSwitchWwn();
    const bool isTransparent = cache.isTransparentSwitch();
    Attribute_Reader<VRAX_FCSwitch> local(kLocalAttributes);
    Attribute_Reader<VRAX_FCSwitch> remote(kRemoteAttributes);

    for (const SwitchCache& one : Fabric_Switches(cache))
    {
        const bool isLocal = one.getWwn() == rootWwn;
        const Domain_Text domain(one.getDomainID());
        Attribute_Reader<VRAX_FCSwitch>& attributes = isLocal ? local : remote;
        if (!attributes.read({domain.c_str()}))
            fail("Unable to obtain FCSwitch attributes");

        Owned<VRAX_FCSwitch> instance = make();
        instance->CreationClassName.set("VRAX_FCSwitch");
        instance->NameFormat.set("WWN");
        attributes.fill(*instance);
        if (isLocal)
            fillLocal(*instance, attributes, cache);
        else
            fillRemote(*instance);
        fillKind(*instance, isTransparent);
        if (isLocal && std::strcmp(attributes.text(kType), kNamedByProduct) == 0)
            describeByProduct(*instance);
        add(map, instance);
    }
}

Modify_Instance_Status VRAX_FCSwitch_Provider::modify_instance(const VRAX_FCSwitch* model,
                                                               const VRAX_FCSwitch* instance)
{
    const auto body = [&](Operation<Modify_Instance_Status>& op)
    {
        Write_Guard<VRAX_FCSwitch> guard;
        const Local_Switch_Wwn localWwn({kSource, "modify_instance"},
                                        Failure_Text::line(kLocalWwnMissing.text));
        if (!instance->Name.value.equali(localWwn.text()))
            return MODIFY_INSTANCE_INVALID_PARAMETER;
        const VRAX_FCSwitch* cached = guard.view().find(*instance);
        if (cached == nullptr)
            op.fail(Failure_Text::line("Required instance not found in the map"));
        if (model->ElementName.null)
            return MODIFY_INSTANCE_OK;

        Record<xpl_swSwitchConfig> record;
        if (record.read() != 0)
            op.fail(Failure_Text::line("xpl_swSwitchGetConfig Failed"));
        if (!putText(record->symbolicName, instance->ElementName.value))
            op.fail(Failure_Text::line("ElementName is longer than the 32 characters of a switch's name"));
        if (record.write() != 0)
            op.fail(Failure_Text::line("xpl_swSwitchSetConfig Failed"));
        changeCached(guard, *cached, &VRAX_FCSwitch::ElementName, record->symbolicName);
        return MODIFY_INSTANCE_OK;
    };
    return operation("modify_instance", MODIFY_INSTANCE_NOT_FOUND, body);
}

Invoke_Method_Status VRAX_FCSwitch_Provider::RequestStateChange(const VRAX_FCSwitch*,
                                                                const Property<uint16>& RequestedState,
                                                                CIM_ConcreteJob*&,
                                                                const Property<Datetime>&,
                                                                Property<uint32>& return_value)
{
    const char* const function = __func__;
    const auto reset = [&](Operation<Invoke_Method_Status>& op)
    {
        // A critical line for each attempt, though nothing has failed: it tells why the switch went down.
        logCritical(kSource, function, "Querying for \"xpl_swSwitchForceReset\"", __LINE__);
        return_value.set(kRefused);
        if (xpl_swSwitchForceReset(hSwitch) != 0)
            op.fail(Failure_Text::line("Switch Reset failed"));
        return_value.set(kCompleted);
        return INVOKE_METHOD_OK;
    };
    const auto body = [&](Operation<Invoke_Method_Status>& op)
    {
        const Write_Guard<VRAX_FCSwitch> guard;
        const uint16 requested = RequestedState.null ? uint16{0} : RequestedState.value;
        cim_log(kLogInfo, "%s:%s[%d] RequestedState = %d\n", kSource, function, __LINE__, int{requested});
        return_value.clear();
        const State_Change* known = stateChange(kStateChanges, requested);
        const State_Change& change = known != nullptr ? *known : kNothingRequested;
        if (change.action == State_Action::ForceReset)
            return reset(op);
        if (change.action == State_Action::Refuse)
        {
            return_value.set(kNotSupported);
            return INVOKE_METHOD_OK;
        }

        // The record is read for every request, though only some change it.
        Record<xpl_swSwitchConfig> record;
        int error = record.read();
        if (error != 0)
            op.fail(Failure_Text::line("GetConfig Failed with error %d"), {std::to_string(error).c_str()});
        if (change.action != State_Action::SetAdminState)
            return INVOKE_METHOD_OK;
        record->adminState = change.adminState;
        logCritical(kSource, function, "Querying for \"xpl_swSwitchSetConfig\"", __LINE__); // as above
        error = record.write();
        return_value.set(error == 0 ? kCompleted : kRefused);
        if (error != 0)
            op.fail(Failure_Text::line("SetConfig Failed with error %d"), {std::to_string(error).c_str()});
        return INVOKE_METHOD_OK;
    };
    return operation(function, INVOKE_METHOD_FAILED, body);
}

uint16 VRAX_FCSwitch_Provider::findFault(const String& name)
{
    for (const char* const fault :
         {"HW_MP_ACCESS_CPU0", "HW_MP_ACCESS_CPU1", "HW_MP_DATA_MISMATCH", "HW_MP_ACCESS"})
        if (name == fault)
            return kAccessFault;
    return name == "FW_POST_FAIL" ? kSelfTestFault : uint16{0};
}

} // namespace cimple
