// The table of the providers.
#include "agent/providers/provider_table.h"

#include "agent/base/TextTable.h"

namespace cimd
{

namespace
{

// "instance, method"
std::string kindsOf(const Registration& registration)
{
    std::string text;
    for (const auto& [kind, name] : kProviderKinds)
        if (registration.has(kind))
            text += (text.empty() ? "" : ", ") + std::string(name);
    return text;
}

} // namespace

std::string providerTable(const ProviderManager& providers)
{
    TextTable table({"CLASS", "KIND", ">CALLS", ">ERRORS", "LIBRARY", "STATE"});
    for (const ProviderEntry& entry : providers.entries())
        table.add({entry.info->name().str(),
                   kindsOf(entry.registration),
                   std::to_string(entry.calls->made()),
                   std::to_string(entry.calls->failed()),
                   entry.provider->library().file(),
                   entry.provider->state()});
    std::string text;
    for (const std::string& line : table.lines())
        text += line + '\n';
    return text;
}

} // namespace cimd
