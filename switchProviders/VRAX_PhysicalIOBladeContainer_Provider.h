// The chassis contains the cards of the I/O blades.
#ifndef SWITCHPROVIDERS_VRAX_PHYSICALIOBLADECONTAINER_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_PHYSICALIOBLADECONTAINER_PROVIDER_H

#include "common/Association_Provider.h"
#include "switchProviders/VRAX_PhysicalChassis_Provider.h"
#include "switchProviders/VRAX_PhysicalIOBlade_Provider.h"

#include "VRAX_PhysicalIOBladeContainer_Methods.h"

#include <cstring>

namespace cimple
{

class VRAX_PhysicalIOBladeContainer_Provider
    : public Association_Provider<&VRAX_PhysicalIOBladeContainer::GroupComponent,
                                  &VRAX_PhysicalIOBladeContainer::PartComponent>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_PhysicalChassis>().withEach<VRAX_PhysicalIOBlade>(); }

    // The blade's number, which ends its Tag, is that of its slot.
    static void
    fill(VRAX_PhysicalIOBladeContainer& pair, const VRAX_PhysicalChassis&, const VRAX_PhysicalIOBlade& blade)
    {
        pair.LocationWithinContainer.set(std::strrchr(blade.Tag.value.c_str(), ':') + 1);
    }
};

} // namespace cimple

#endif
