// The chassis stands at its place.
#ifndef SWITCHPROVIDERS_VRAX_PHYSICALCHASSISLOCATION_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_PHYSICALCHASSISLOCATION_PROVIDER_H

#include "common/Association_Provider.h"
#include "switchProviders/VRAX_Location_Provider.h"
#include "switchProviders/VRAX_PhysicalChassis_Provider.h"

#include "VRAX_PhysicalChassisLocation_Methods.h"

namespace cimple
{

class VRAX_PhysicalChassisLocation_Provider
    : public Association_Provider<&VRAX_PhysicalChassisLocation::Element,
                                  &VRAX_PhysicalChassisLocation::PhysicalLocation>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_PhysicalChassis>().withFirst<VRAX_Location>(); }
};

} // namespace cimple

#endif
