// What the local switch can be configured to be.
#include "switchProviders/VRAX_FCSwitchCapabilities_Provider.h"

#include "platform/switch_config.h"

namespace cimple
{

namespace
{

constexpr uint16 kMaxSwitchName = sizeof(xpl_swSwitchConfig::symbolicName) - 1;
constexpr uint16 kRequestedStates[] = {2, 3, 7, 11}; // enabled, disabled, in diagnostics, reset
constexpr uint8 kFirstDomain = 1;                    // FC-SW-3
constexpr uint8 kLastDomain = 239;
constexpr uint16 kPriorities[] = {2, 3, 4}; // principal, subordinate, any

} // namespace

void VRAX_FCSwitchCapabilities_Provider::fill(VRAX_FCSwitchCapabilities& capabilities, const char* localWwn)
{
    capabilities.InstanceID.set((std::string("VRAX:FCSwitchCapabilities:") + localWwn).c_str());
    capabilities.ElementName.set("FC Switch Capabilities");
    capabilities.ElementNameEditSupported.set(true);
    capabilities.MaxElementNameLen.set(kMaxSwitchName);
    capabilities.RequestedStatesSupported.set(Array_uint16(kRequestedStates, std::size(kRequestedStates)));
    capabilities.DomainIDConfigureable.set(true);
    capabilities.MinDomainID.set(kFirstDomain);
    capabilities.MaxDomainID.set(kLastDomain);
    capabilities.DomainIDLockedSupported.set(true);
    capabilities.PrincipalPrioritiesSupported.set(Array_uint16(kPriorities, std::size(kPriorities)));
}

} // namespace cimple
