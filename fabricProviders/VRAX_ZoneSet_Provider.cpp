// The zone sets: those that are configured, and the one that the fabric enforces.
#include "fabricProviders/VRAX_ZoneSet_Provider.h"

#include "common/zoning_delete.h"
#include "switchaccess/zoning_list.h"

namespace cimple
{

void VRAX_ZoneSet_Provider::build(Map_Writer<VRAX_ZoneSet>& map)
{
    const Active_Zone_Set active;
    const Local_Switch_Wwn switchWwn({kSource, "load"});
    const Zoning_Names names(xpl_fzsGetZonesetList);
    if (names.error() != 0)
        fail("xpl_fzsGetZonesetList Failed\n");
    cim_log(kLogInfo, "Number of ZoneSet = %d\n", static_cast<int>(names.size()));

    const auto publish = [&](const char* name, bool isActive)
    {
        Owned<VRAX_ZoneSet> zoneSet = make();
        zoneSet->InstanceID.set(zoningId(isActive ? kActive : kInactive, switchWwn.text(), name));
        zoneSet->ElementName.set(name);
        zoneSet->Active.set(isActive);
        add(map, zoneSet);
    };
    for (const char* name : names)
    {
        if (std::strcmp(name, active.name()) == 0)
            publish(name, true);
        publish(name, false);
    }
}

Delete_Instance_Status VRAX_ZoneSet_Provider::delete_instance(const VRAX_ZoneSet* instance)
{
    const auto body = [&](Operation<Delete_Instance_Status>& op)
    {
        Write_Guard<VRAX_ZoneSet> guard;
        return deleteByName(
            op, guard, *instance, xpl_fzsRemoveZoneset, Failure_Text::line("xpl_fzsRemoveZoneset fialed"));
    };
    return operation("delete_instance", DELETE_INSTANCE_NOT_FOUND, body);
}

} // namespace cimple
