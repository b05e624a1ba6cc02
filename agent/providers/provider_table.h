// What an operator sees of the providers.
#ifndef AGENT_PROVIDERS_PROVIDER_TABLE_H
#define AGENT_PROVIDERS_PROVIDER_TABLE_H

#include "agent/providers/ProviderManager.h"

#include <string>

namespace cimd
{

// Lines: each entry with its class, kinds, calls and failed ones since the start, library, and state.
std::string providerTable(const ProviderManager& providers);

} // namespace cimd

#endif
