// The I/O blades that are present in the local switch, as the cards that they are.
#ifndef SWITCHPROVIDERS_VRAX_PHYSICALIOBLADE_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_PHYSICALIOBLADE_PROVIDER_H

#include "common/IO_Blade_Provider.h"

#include "VRAX_PhysicalIOBlade_Methods.h"

namespace cimple
{

class VRAX_PhysicalIOBlade_Provider : public IO_Blade_Provider<VRAX_PhysicalIOBlade>,
                                      public VRAX_PhysicalIOBlade_Methods<VRAX_PhysicalIOBlade_Provider>
{
    using Is = VRAX_PhysicalIOBlade;

  public:
    static constexpr Attribute<Is> kAttributes[] = {
        kPresent,
        {"Oper.Switch.IOBlade.%d.Model", put<&Is::Model>},
        {"Oper.Switch.IOBlade.%d.PartNumber", put<&Is::PartNumber>},
        {"Oper.Switch.IOBlade.%d.SerialNumber", put<&Is::SerialNumber>},
    };

    void build(Map_Writer<VRAX_PhysicalIOBlade>& map);
};

} // namespace cimple

#endif
