// What the local ports can be configured to be.
#include "switchProviders/VRAX_FCPortCapabilities_Provider.h"

#include "switchaccess/value_translation.h"

namespace cimple
{

using Is = VRAX_FCPortCapabilities;

// By the port's index and the attribute that tells its hardware's speed.
const Attribute<Is> VRAX_FCPortCapabilities_Provider::kAttributes[1] = {
    {"Oper.UserPort.0.%1$s.%2$s", put<&Is::RequestedSpeedsSupported, smlSpeedToCIMSpeedsUpTo>, kStaysNull},
};

namespace
{

constexpr uint16 kMaxPortName = 255;
constexpr uint16 kRequestedStates[] = {2, 3, 7, 11}; // enabled, disabled, in diagnostics, reset
constexpr uint16 kLinkTechnologies[] = {4};          // FC
// Those of CIM_FCPortSettings.RequestedType that a setting can be given. A switch that forwards its ports to
// another fabric knows ports towards hosts and towards that fabric only.
constexpr uint16 kTypes[] = {2, 3, 4, 5, 6, 16000};    // G, GL, E, F, FL, Donor
constexpr uint16 kTransparentTypes[] = {16001, 16002}; // TH, TF
constexpr uint16 kIOStreamGuardStates[] = {1, 2, 3};   // automatic, on, off
constexpr uint16 kTuningModes[] = {1, 2, 3, 4, 5, 6};  // automatic, normal, MFS, VI, LCF, LCF and VI

template <std::size_t N>
Array_uint16 listOf(const uint16 (&values)[N])
{
    return Array_uint16(values, N);
}

} // namespace

void VRAX_FCPortCapabilities_Provider::fill(Is& capabilities, const Attribute_Reader<Is>&, const Datetime&)
{
    capabilities.ElementNameEditSupported.set(true);
    capabilities.MaxElementNameLen.set(kMaxPortName);
    capabilities.RequestedStatesSupported.set(listOf(kRequestedStates));
    capabilities.AutoSenseSpeedConfigurable.set(true);
    capabilities.LinkTechnologiesSupported.set(listOf(kLinkTechnologies));
    capabilities.RequestedTypesSupported.set(
        DataCache::instance()->isTransparentSwitch() ? listOf(kTransparentTypes) : listOf(kTypes));
    capabilities.RequestedIOStreamGuardStatesSupported.set(listOf(kIOStreamGuardStates));
    capabilities.RequestedPerformanceTuningModesSupported.set(listOf(kTuningModes));
    capabilities.DeviceScanConfigurable.set(true);
    // A port that does not tell how fast it is makes no promise.
    if (capabilities.RequestedSpeedsSupported.value.size() == 0)
        capabilities.RequestedSpeedsSupported.clear();
}

} // namespace cimple
