// The I/O blades that are present in the local switch, as what they do.
#ifndef SWITCHPROVIDERS_VRAX_LOGICALIOBLADE_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_LOGICALIOBLADE_PROVIDER_H

#include "common/IO_Blade_Provider.h"
#include "switchaccess/value_translation.h"

#include "VRAX_LogicalIOBlade_Methods.h"

namespace cimple
{

class VRAX_LogicalIOBlade_Provider : public IO_Blade_Provider<VRAX_LogicalIOBlade>,
                                     public VRAX_LogicalIOBlade_Methods<VRAX_LogicalIOBlade_Provider>
{
    using Is = VRAX_LogicalIOBlade;

    // Blades have no fault codes.
    static Array_uint16 operationalStatus(const char* state)
    {
        return smlSwitchStateToCIMOperationalStatus(state, Array_uint16());
    }

  public:
    static constexpr Attribute<Is> kAttributes[] = {
        kPresent,
        {"Oper.Switch.IOBlade.%d.OperState", put<&Is::OperationalStatus, operationalStatus>},
        {"Oper.Switch.IOBlade.%d.AdminState", put<&Is::EnabledState, smlSwitchStateToCIMEnabledState>},
        {"Oper.Switch.IOBlade.%d.DiagStatus", put<&Is::HealthState, smlDiagStatusToCIMHealthState>},
    };

    static void fill(Is& blade, std::uint16_t number, const Attribute_Reader<Is>& attributes);
};

} // namespace cimple

#endif
