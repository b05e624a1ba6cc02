// The product consists of the chassis.
#ifndef SWITCHPROVIDERS_VRAX_PRODUCTPHYSICALCHASSIS_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_PRODUCTPHYSICALCHASSIS_PROVIDER_H

#include "common/Association_Provider.h"
#include "switchProviders/VRAX_PhysicalChassis_Provider.h"
#include "switchProviders/VRAX_Product_Provider.h"

#include "VRAX_ProductPhysicalChassis_Methods.h"

namespace cimple
{

class VRAX_ProductPhysicalChassis_Provider
    : public Association_Provider<&VRAX_ProductPhysicalChassis::GroupComponent,
                                  &VRAX_ProductPhysicalChassis::PartComponent>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_Product>().withFirst<VRAX_PhysicalChassis>(); }
};

} // namespace cimple

#endif
