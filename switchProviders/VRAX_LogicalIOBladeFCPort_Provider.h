// A port of the local switch is on an I/O blade.
#ifndef SWITCHPROVIDERS_VRAX_LOGICALIOBLADEFCPORT_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_LOGICALIOBLADEFCPORT_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "switchProviders/VRAX_LogicalIOBlade_Provider.h"

#include "VRAX_LogicalIOBladeFCPort_Methods.h"

namespace cimple
{

class VRAX_LogicalIOBladeFCPort_Provider
    : public Association_Provider<&VRAX_LogicalIOBladeFCPort::GroupComponent,
                                  &VRAX_LogicalIOBladeFCPort::PartComponent>
{
  public:
    // A port of which the switch does not tell the blade is left out, as ports are that cannot be read.
    static constexpr std::initializer_list<const char*> kDoesWithout = {"xpl_smlGetBatch"};

    void build(Pairs& pairs);
};

} // namespace cimple

#endif
