// The zone aliases, which are configured only.
#include "fabricProviders/VRAX_ZoneAlias_Provider.h"

#include "common/zoning_ids.h"
#include "switchaccess/Zoning_Edit.h"
#include "switchaccess/zoning_list.h"

namespace cimple
{

void VRAX_ZoneAlias_Provider::build(Map_Writer<VRAX_ZoneAlias>& map)
{
    const Local_Switch_Wwn switchWwn({kSource, "load"});
    const Zoning_Names names(xpl_fzsGetZoneAliasList);
    if (names.error() != 0)
        fail("xpl_fzsGetZoneAliasList Failed");
    for (const char* name : names)
    {
        Owned<VRAX_ZoneAlias> alias = make();
        alias->InstanceID.set(aliasId(switchWwn.text(), name));
        alias->CollectionAlias.set(name);
        add(map, alias);
    }
}

Delete_Instance_Status VRAX_ZoneAlias_Provider::delete_instance(const VRAX_ZoneAlias* instance)
{
    const auto body = [&](Operation<Delete_Instance_Status>& op)
    {
        const Write_Guard<VRAX_ZoneAlias> guard;
        const char* name = afterColon(instance->InstanceID.value, 1);
        if (name == nullptr)
            op.fail(Failure_Text::unlogged("The InstanceID names no alias"));
        Zoning_Edit edit;
        if (!edit.begun())
            op.fail(Failure_Text::unlogged(kNoZoningEdit));
        if (const int status = edit.command("Cmd.Zoning.Alias.%s.Delete", {name}); status != 0)
        {
            edit.cancel();
            op.failOn("status " + std::to_string(status),
                      Failure_Text::unlogged("The switch does not delete the alias"));
        }
        if (!edit.save())
            op.fail(Failure_Text::unlogged("The switch does not save its zoning"));
        return DELETE_INSTANCE_OK;
    };
    return operation("delete_instance", DELETE_INSTANCE_FAILED, body);
}

} // namespace cimple
