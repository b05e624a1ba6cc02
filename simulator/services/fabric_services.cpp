// Fabric services: lists of switches, ports and links, copied out of the model.
#include "platform/xpl_fcs.h"

#include "simulator/engine/Engine.h"
#include "simulator/services/session.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace simulator
{
namespace
{

template <class Element>
Element named(std::string_view wwn, std::int32_t Element::*field, std::int32_t value)
{
    Element element{};
    std::copy_n(wwn.data(), std::min(wwn.size(), kXplWwnSize - 1), element.wwn);
    element.*field = value;
    return element;
}

// A cell that owns a copy of the elements; null when memory ran out.
template <class Element>
Element** allocateArrayCell(const std::vector<Element>& elements)
{
    auto* cell = static_cast<Element**>(allocateBlock(sizeof(Element*)));
    if (cell == nullptr)
        return nullptr;
    *cell = nullptr;
    if (!elements.empty())
    {
        *cell = static_cast<Element*>(std::malloc(elements.size() * sizeof(Element)));
        if (*cell == nullptr)
        {
            freeBlock(cell);
            return nullptr;
        }
        std::copy(elements.begin(), elements.end(), *cell);
    }
    return cell;
}

// Hands out what `list(const FabricModel&, std::vector<Element>&)` lists; it returns an xpl_Status.
template <class Element, class List>
Element** handOut(Call call, xpl_Handle handle, std::uint32_t* count, std::int32_t* error, List list)
{
    std::int32_t status = beginCall(call, handle);
    if (count == nullptr || error == nullptr)
        return nullptr;
    std::vector<Element> elements;
    if (status == XPL_OK)
    {
        status = Engine::instance().read([&](const FabricModel& model, std::uint64_t)
                                         { return list(model, elements); });
    }
    Element** cell = status == XPL_OK ? allocateArrayCell(elements) : nullptr;
    if (status == XPL_OK && cell == nullptr)
        status = XPL_UNREACHABLE;
    *count = cell != nullptr ? static_cast<std::uint32_t>(elements.size()) : 0;
    *error = status;
    return cell;
}

void addPeer(const FabricModel& model, const PortPlace& place, std::vector<xpl_fcsAttached>& attached)
{
    const Switch& owner = *model.switchOf(place.domain);
    const Port& peer = *owner.port(place.port);
    if (isOnline(owner, peer))
    {
        attached.push_back(
            named(fabricWwn(owner, peer), &xpl_fcsAttached::kind, std::int32_t{XPL_FCS_SWITCH_PORT}));
        attached.back().domainId = place.domain;
    }
}

} // namespace
} // namespace simulator

using namespace simulator;

extern "C" xpl_fcsSwitch** xpl_fcsGetSwitchList(xpl_Handle handle, std::uint32_t* count, std::int32_t* error)
{
    return handOut<xpl_fcsSwitch>(
        Call::fcsGetSwitchList,
        handle,
        count,
        error,
        [](const FabricModel& model, std::vector<xpl_fcsSwitch>& switches)
        {
            for (const auto& one : model.switches())
                switches.push_back(named(one.second.facts.wwn, &xpl_fcsSwitch::domainId, one.first));
            return std::int32_t{XPL_OK};
        });
}

extern "C" xpl_fcsPort**
xpl_fcsGetPortList(xpl_Handle handle, std::int32_t domainId, std::uint32_t* count, std::int32_t* error)
{
    return handOut<xpl_fcsPort>(
        Call::fcsGetPortList,
        handle,
        count,
        error,
        [domainId](const FabricModel& model, std::vector<xpl_fcsPort>& ports)
        {
            const Switch* owner = model.switchOf(domainId);
            if (owner == nullptr)
                return std::int32_t{XPL_UNKNOWN_KEY};
            for (const Port& port : owner->ports)
                ports.push_back(named(fabricWwn(*owner, port), &xpl_fcsPort::number, port.facts.number));
            return std::int32_t{XPL_OK};
        });
}

extern "C" xpl_fcsAttached** xpl_fcsGetPortTopology(
    xpl_Handle handle, std::int32_t domainId, std::int32_t port, std::uint32_t* count, std::int32_t* error)
{
    return handOut<xpl_fcsAttached>(
        Call::fcsGetPortTopology,
        handle,
        count,
        error,
        [domainId, port](const FabricModel& model, std::vector<xpl_fcsAttached>& attached)
        {
            const Switch* owner = model.switchOf(domainId);
            const Port* found = owner != nullptr ? owner->port(port) : nullptr;
            if (found == nullptr)
                return std::int32_t{XPL_UNKNOWN_KEY};
            if (!isOnline(*owner, *found))
                return std::int32_t{XPL_OK};
            if (found->peer)
                addPeer(model, *found->peer, attached);
            for (const std::uint32_t address : found->attached)
                attached.push_back(named(owner->nodes.at(address).text(&NodeScenario::portWwn),
                                         &xpl_fcsAttached::kind,
                                         std::int32_t{XPL_FCS_NODE_PORT}));
            return std::int32_t{XPL_OK};
        });
}
