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

using Facts = SwitchScenario;

// A text that is empty is one that the switch does not have.
char** optionalTextCell(const std::string& text)
{
    return text.empty() ? allocateTextCell(std::nullopt) : allocateTextCell(text);
}

char** factCell(Call call, std::string (*tell)(const Facts&))
{
    if (beginCall(call) != XPL_OK)
        return allocateTextCell(std::nullopt);
    return optionalTextCell(Engine::instance().read([tell](const FabricModel& model, std::uint64_t)
                                                    { return tell(model.local().facts); }));
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
            const Node* node = model.nodeAfter(domain, static_cast<std::uint32_t>(previous));
            if (node == nullptr)
                return 0;
            const std::string text = hexOf(node->address(), 6);
            std::memcpy(address, text.c_str(), text.size() + 1);
            return static_cast<int>(node->address());
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

char** get_Switch_ChassisPartNum()
{
    return factCell(Call::chassisPartNumber, [](const Facts& one) { return one.chassisPartNumber; });
}

char** get_Switch_ChassisSerialNum()
{
    return factCell(Call::chassisSerialNumber,
                    [](const Facts& one) { return one.chassisSerialNumber.value_or(""); });
}

char** get_Switch_PlanarPartNum()
{
    return factCell(Call::planarPartNumber, [](const Facts& one) { return one.planarPartNumber; });
}

char** get_Switch_Brand_Name()
{
    return factCell(Call::brandName, [](const Facts& one) { return one.brand; });
}

void get_Product_Info(char*** name, char*** elementName, char*** identifyingNumber, char*** vendor)
{
    ProductTexts product;
    if (beginCall(Call::productInfo) == XPL_OK)
    {
        product = Engine::instance().read([](const FabricModel& model, std::uint64_t)
                                          { return model.local().facts.product; });
    }
    const auto fill = [](char*** cell, const std::optional<std::string>& text)
    {
        if (cell != nullptr)
            *cell = optionalTextCell(text.value_or(""));
    };
    fill(name, product.name);
    fill(elementName, product.elementName);
    fill(identifyingNumber, product.identifyingNumber);
    fill(vendor, product.vendor);
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
