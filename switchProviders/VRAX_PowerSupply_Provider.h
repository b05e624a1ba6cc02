// The power supplies that are installed in the local switch.
#ifndef SWITCHPROVIDERS_VRAX_POWERSUPPLY_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_POWERSUPPLY_PROVIDER_H

#include "common/Numbered_Provider.h"

#include "VRAX_PowerSupply_Methods.h"

namespace cimple
{

class VRAX_PowerSupply_Provider : public Numbered_Provider<VRAX_PowerSupply>,
                                  public VRAX_PowerSupply_Methods<VRAX_PowerSupply_Provider>
{
    using Is = VRAX_PowerSupply;

  public:
    static constexpr const char* kCountKey = "Oper.Switch.PowerSupply.Count";
    static constexpr Attribute<Is> kAttributes[] = {
        {"Oper.Switch.PowerSupply.%d.State"}, // stands for several properties
        {"Oper.Switch.PowerSupply.%d.OutputPower", putUnlessEmpty<&Is::TotalOutputPower, decimal32>},
    };
    static constexpr const char* kIdKind = "PowerSupply";
    static constexpr const char* kElementName = "Power Supply";

    static bool isPublished(const Attribute_Reader<Is>& attributes);
    static void fill(Is& supply, std::uint16_t number, const Attribute_Reader<Is>& attributes);
};

} // namespace cimple

#endif
