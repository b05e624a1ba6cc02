// The storage area network contains the fabric.
#include "fabricProviders/VRAX_ContainedDomain_Provider.h"

namespace cimple
{

void VRAX_ContainedDomain_Provider::build(Map_Writer<VRAX_ContainedDomain>& map)
{
    const VRAX_SAN* san = end<VRAX_SAN>().first();
    const VRAX_Fabric* fabric = end<VRAX_Fabric>().first();
    if (san == nullptr || fabric == nullptr)
        return;

    Owned<VRAX_ContainedDomain> containment = makeNull<VRAX_ContainedDomain>();
    if (!containment)
        failLoad("Failed to Create the instance");
    refer(*containment, san, fabric);

    if (!checkInstanceKeys(containment.get()))
        failLoad("VRAX_ContainedDomain::One or more Key Properties not populated");
    if (!map.insert(containment))
        failLoad("Failed to insert instance in map");
}

} // namespace cimple
