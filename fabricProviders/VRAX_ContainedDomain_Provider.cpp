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

    insertChecked(map,
                  containment,
                  "VRAX_ContainedDomain::One or more Key Properties not populated",
                  "Failed to insert instance in map");
}

} // namespace cimple
