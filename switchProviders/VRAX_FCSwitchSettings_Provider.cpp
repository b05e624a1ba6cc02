// How the local switch takes part in its fabric.
#include "switchProviders/VRAX_FCSwitchSettings_Provider.h"

#include "switchaccess/Record.h"

namespace cimple
{

namespace
{

// CIM_FCSwitchSettings.PrincipalPriority and the codes of the configuration record.
struct Priority
{
    uint16 value;
    std::uint8_t code;
};
constexpr Priority kPriorities[] = {{2, 1}, {3, 0xFF}, {4, 0xFE}}; // principal, subordinate, any

const Priority* priorityOf(uint16 value)
{
    for (const Priority& one : kPriorities)
        if (one.value == value)
            return &one;
    return nullptr;
}

const Priority* priorityOfCode(std::uint8_t code)
{
    for (const Priority& one : kPriorities)
        if (one.code == code)
            return &one;
    return nullptr;
}

// Gives a field of the record a value; what it is called joins the list of what changes.
template <class FIELD>
void change(FIELD& field, FIELD value, const char* property, std::string& changes)
{
    if (field == value)
        return;
    field = value;
    changes += (changes.empty() ? "" : ", ") + std::string(property) + " = " + std::to_string(value);
}

} // namespace

void VRAX_FCSwitchSettings_Provider::fill(VRAX_FCSwitchSettings& settings, const char* localWwn)
{
    Record<xpl_swSwitchConfig> record;
    if (record.read() != 0)
        fail("xpl_swSwitchGetConfig Failed");
    settings.InstanceID.set((std::string("VRAX:FCSwitchSettings:") + localWwn).c_str());
    settings.ElementName.set("FC Switch Settings");
    settings.PreferredDomainID.set(record->preferredDomainId);
    settings.DomainIDLocked.set(record->domainIdLock != 0);
    const Priority* priority = priorityOfCode(record->principalPriority);
    if (priority == nullptr)
        fail("Invalid value for PrincipalPriority");
    settings.PrincipalPriority.set(priority->value);
    print(&settings, true); // its key, on the diagnostic output
}

Modify_Instance_Status VRAX_FCSwitchSettings_Provider::modify_instance(const VRAX_FCSwitchSettings* model,
                                                                       const VRAX_FCSwitchSettings* instance)
{
    const auto body = [&](Operation<Modify_Instance_Status>& op)
    {
        Write_Guard<VRAX_FCSwitchSettings> guard;
        if (load() != LOAD_OK)
            op.fail("VRAX_FCSwitchSettings load failed");
        if (guard.view().find(*instance) == nullptr)
            op.fail("Required instance was not found in the map");
        Record<xpl_swSwitchConfig> record;
        if (record.read() != 0)
            op.fail("xpl_swSwitchGetConfig failed");

        // A request without a value is no wish.
        if (!model->DomainIDLocked.null && instance->DomainIDLocked.null)
            op.failWith(MODIFY_INSTANCE_INVALID_PARAMETER,
                        Failure_Text::unlogged("DomainIDLocked is true or false"));
        std::string changes;
        if (!model->PreferredDomainID.null)
            change(
                record->preferredDomainId, instance->PreferredDomainID.value, "PreferredDomainID", changes);
        if (!model->DomainIDLocked.null && (record->domainIdLock != 0) != instance->DomainIDLocked.value)
            change(record->domainIdLock,
                   std::int32_t{instance->DomainIDLocked.value},
                   "DomainIDLocked",
                   changes);
        if (!model->PrincipalPriority.null)
        {
            const Priority* wanted = priorityOf(instance->PrincipalPriority.value);
            if (wanted == nullptr)
                op.failWith(
                    MODIFY_INSTANCE_INVALID_PARAMETER,
                    Failure_Text::unlogged("PrincipalPriority is 2 (principal), 3 (subordinate) or 4 (any)"));
            change(record->principalPriority, wanted->code, "PrincipalPriority", changes);
        }
        if (changes.empty())
        {
            cim_log(kLogInfo, "Nothing to modify\n");
            return MODIFY_INSTANCE_OK;
        }
        if (const int status = record.write(); status != 0)
            op.failOn(changes + ": status " + std::to_string(status), "xpl_swSwitchSetConfig Failed");
        guard.change(*model, *instance);
        return MODIFY_INSTANCE_OK;
    };
    return operation("modify_instance", MODIFY_INSTANCE_FAILED, body);
}

} // namespace cimple
