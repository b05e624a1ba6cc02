// The switch server's helper functions.
#include "platform/switch_server.h"

#include "simulator/engine/Engine.h"
#include "simulator/model/hex.h"
#include "simulator/services/session.h"

#include <cstring>

namespace simulator
{
namespace
{

template <class WhichSwitch> // const Switch*(const FabricModel&)
char** wwnCell(Call call, WhichSwitch whichSwitch)
{
    if (beginCall(call) != XPL_OK)
        return allocateTextCell(std::nullopt);
    return Engine::instance().read(
        [&](const FabricModel& model, std::uint64_t)
        {
            const Switch* found = whichSwitch(model);
            return found != nullptr ? allocateTextCell(found->facts.wwn) : allocateTextCell(std::nullopt);
        });
}

// The walk's token is the node's address, so the walk goes on from there whoever came or went meanwhile.
int attachedPort(Call call, const char* domainId, int previous, char* address)
{
    int domain = 0;
    if (beginCall(call) != XPL_OK || domainId == nullptr || address == nullptr || previous < 0 ||
        !parseDecimal(domainId, domain))
        return 0;
    return Engine::instance().read(
        [&](const FabricModel& model, std::uint64_t)
        {
            const NodeScenario* node = model.nodeAfter(domain, static_cast<std::uint32_t>(previous));
            if (node == nullptr)
                return 0;
            const std::string text = hexOf(node->address, 6);
            std::memcpy(address, text.c_str(), text.size() + 1);
            return static_cast<int>(node->address);
        });
}

} // namespace
} // namespace simulator

using namespace simulator;

char** get_Local_Switch_World_Wide_Name()
{
    return wwnCell(Call::localWwn, [](const FabricModel& model) { return &model.local(); });
}

char** get_Principal_Switch_World_Wide_Name()
{
    return wwnCell(Call::principalWwn, [](const FabricModel& model) { return model.principal(); });
}

int get_first_attached_port(const char* domainId, char* address)
{
    return attachedPort(Call::firstAttachedPort, domainId, 0, address);
}

int get_next_attached_port(const char* domainId, int previous, char* address)
{
    return attachedPort(Call::nextAttachedPort, domainId, previous, address);
}

bool isErrors(const xpl_smlEntry* entries, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i)
        if (entries[i].status != XPL_OK && entries[i].status != XPL_NOT_AVAILABLE)
            return true;
    return false;
}

char* toUpper(char* text)
{
    for (char* c = text; c != nullptr && *c != '\0'; ++c)
        *c = (*c >= 'a' && *c <= 'z') ? static_cast<char>(*c - 'a' + 'A') : *c;
    return text;
}
