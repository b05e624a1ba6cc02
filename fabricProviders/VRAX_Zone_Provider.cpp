// The zones: those that are configured, and those that the fabric enforces.
#include "fabricProviders/VRAX_Zone_Provider.h"

#include "common/zoning_delete.h"
#include "switchaccess/zoning_list.h"

namespace cimple
{

void VRAX_Zone_Provider::build(Map_Writer<VRAX_Zone>& map)
{
    const Local_Switch_Wwn switchWwn({kSource, "load"});
    const auto publish = [&](const char* name, bool isActive)
    {
        std::int32_t type = 0;
        if (xpl_fzsGetZoneType(hSwitch, name, &type) != 0)
            fail("xpl_fzsGetZoneType Failed");
        Owned<VRAX_Zone> zone = make();
        zone->InstanceID.set(zoningId(isActive ? kActive : kInactive, switchWwn.text(), name));
        zone->ElementName.set(name);
        zone->Active.set(isActive);
        zone->ZoneType.set(type == XPL_ZT_SOFT ? kZoneIsDefault : kZoneIsOther);
        zone->OtherZoneTypeDescription.set(type == XPL_ZT_SOFT ? "" : "HardACL");
        add(map, zone);
    };

    if (const Active_Zone_Set active; !active.isNone())
    {
        const Zoning_Names zones(xpl_fzsGetZonesetZoneList, active.name());
        if (zones.error() != 0)
            fail("xpl_fzsGetZonesetZoneList failed");
        for (const char* name : zones)
            publish(name, true);
    }
    const Zoning_Names zones(xpl_fzsGetZoneList);
    if (zones.error() != 0)
        fail(Failure_Text::line("xpl_fzsGetZoneList Failed"));
    for (const char* name : zones)
        publish(name, false);
}

Delete_Instance_Status VRAX_Zone_Provider::delete_instance(const VRAX_Zone* instance)
{
    const auto body = [&](Operation<Delete_Instance_Status>& op)
    {
        Write_Guard<VRAX_Zone> guard;
        return deleteByName(
            op, guard, *instance, xpl_fzsDeleteZone, Failure_Text::line("xpl_fzsDeleteZone fialed"));
    };
    return operation("delete_instance", DELETE_INSTANCE_NOT_FOUND, body);
}

} // namespace cimple
