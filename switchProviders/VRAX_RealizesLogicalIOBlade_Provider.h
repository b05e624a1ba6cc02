// A card is an I/O blade: both bear one name.
#ifndef SWITCHPROVIDERS_VRAX_REALIZESLOGICALIOBLADE_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_REALIZESLOGICALIOBLADE_PROVIDER_H

#include "common/Association_Provider.h"
#include "switchProviders/VRAX_LogicalIOBlade_Provider.h"
#include "switchProviders/VRAX_PhysicalIOBlade_Provider.h"

#include "VRAX_RealizesLogicalIOBlade_Methods.h"

namespace cimple
{

class VRAX_RealizesLogicalIOBlade_Provider
    : public Association_Provider<&VRAX_RealizesLogicalIOBlade::Antecedent,
                                  &VRAX_RealizesLogicalIOBlade::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.equal<VRAX_PhysicalIOBlade, VRAX_LogicalIOBlade>(tagOf, deviceOf); }

  private:
    static const char* tagOf(const VRAX_PhysicalIOBlade& card) { return card.Tag.value.c_str(); }
    static const char* deviceOf(const VRAX_LogicalIOBlade& blade) { return blade.DeviceID.value.c_str(); }
};

} // namespace cimple

#endif
