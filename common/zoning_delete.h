// Deleting what the zoning library deletes by its name: zone sets and zones.
#ifndef COMMON_ZONING_DELETE_H
#define COMMON_ZONING_DELETE_H

#include "common/Operation.h"
#include "common/map_access.h"
#include "common/zoning_ids.h"

namespace cimple
{

// Removes the object that the instance names, whatever its state, and then this one instance from the map,
// whose write lock `guard` holds. `failed` is said when the library refuses.
template <class CLASS>
Delete_Instance_Status deleteByName(Operation<Delete_Instance_Status>& operation,
                                    Write_Guard<CLASS>& guard,
                                    const CLASS& instance,
                                    int (*remove)(xpl_Handle, const char*),
                                    const Failure_Text& failed)
{
    const char* name = afterColon(instance.InstanceID.value, 2);
    const int status = name != nullptr ? remove(hSwitch, name) : int{XPL_INVALID_PARAMETER};
    if (status != 0)
        operation.failOn("status " + std::to_string(status), failed);
    for (const CLASS* cached : guard.view())
    {
        if (!cached->InstanceID.value.equali(instance.InstanceID.value))
            continue;
        cim_log(kLogInfo, "Deleting Requested instance\n");
        const Owned<CLASS> keys(static_cast<CLASS*>(key_clone(cached)));
        guard.remove(*keys);
        return DELETE_INSTANCE_OK;
    }
    operation.fail(Failure_Text::line("Requested Instance not found, delete instance Failed"));
}

} // namespace cimple

#endif
