// The local switch is packaged in its chassis.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHPACKAGE_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHPACKAGE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "switchProviders/VRAX_PhysicalChassis_Provider.h"

#include "VRAX_FCSwitchPackage_Methods.h"

namespace cimple
{

class VRAX_FCSwitchPackage_Provider
    : public Association_Provider<&VRAX_FCSwitchPackage::Antecedent, &VRAX_FCSwitchPackage::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withFirst<VRAX_PhysicalChassis>(); }
};

} // namespace cimple

#endif
