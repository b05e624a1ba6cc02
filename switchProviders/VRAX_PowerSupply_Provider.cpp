// The power supplies that are installed in the local switch.
#include "switchProviders/VRAX_PowerSupply_Provider.h"

#include "switchaccess/value_translation.h"

#include <cstring>

namespace cimple
{

namespace
{

constexpr std::size_t kState = entryOf(VRAX_PowerSupply_Provider::kAttributes, ".State");

// Values of CIM_EnabledLogicalElement.
constexpr uint16 kEnabled = 2;               // EnabledState, EnabledDefault
constexpr uint16 kDisabled = 3;              // EnabledState
constexpr uint16 kNotApplicable = 5;         // EnabledState
constexpr uint16 kRequestNotApplicable = 12; // RequestedState

uint16 enabledState(const String& state)
{
    if (state == "Normal" || state == "Warning")
        return kEnabled;
    return state == "Failed" ? kDisabled : kNotApplicable;
}

} // namespace

bool VRAX_PowerSupply_Provider::isPublished(const Attribute_Reader<VRAX_PowerSupply>& attributes)
{
    return std::strcmp(attributes.text(kState), "NotInstalled") != 0;
}

void VRAX_PowerSupply_Provider::fill(VRAX_PowerSupply& supply,
                                     std::uint16_t,
                                     const Attribute_Reader<VRAX_PowerSupply>& attributes)
{
    const String state(attributes.text(kState));
    supply.OperationalStatus.set(smlPartStateToCIMOperationalStatus(state));
    supply.HealthState.set(smlPartStateToCIMHealthState(state));
    supply.EnabledState.set(enabledState(state));
    supply.RequestedState.set(kRequestNotApplicable);
    supply.EnabledDefault.set(kEnabled);
    supply.IsSwitchingSupply.set(true);
}

} // namespace cimple
