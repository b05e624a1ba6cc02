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
    static constexpr std::pair<ProviderKind, const char*> kNames[] = {
        {ProviderKind::Instance, "instance"},
        {ProviderKind::Association, "association"},
        {ProviderKind::Method, "method"}};
    std::string text;
    const auto add = [&text](const char* name) { text += (text.empty() ? "" : ", ") + std::string(name); };
    for (const auto& [kind, name] : kNames)
        if (registration.has(kind))
            add(name);
    if (registration.indication)
        add("indication");
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
