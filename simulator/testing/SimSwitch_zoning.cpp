// The test handle's verbs and views of zoning and the administrative mode.
#include "simulator/engine/Engine.h"
#include "simulator/model/hex.h"
#include "simulator/testing/SimSwitch.h"

#include <stdexcept>

namespace simulator
{
namespace
{

// A text that has the form of no member is the name of an alias.
ZoneMemberScenario memberNamed(const std::string& text)
{
    ZoneMemberScenario facts;
    const auto member = memberOfText(text);
    if (!member)
        facts.alias = text;
    else if (member->type == XPL_ZMT_NODEPORTNAME)
        facts.wwn = text;
    else if (member->type == XPL_ZMT_NODEPORTID)
        facts.address = static_cast<std::uint32_t>(member->number);
    else
    {
        facts.domain = static_cast<int>(member->number >> 8);
        facts.port = static_cast<int>(member->number & 0xFF);
    }
    return facts;
}

std::vector<ZoneMemberScenario> membersNamed(const std::vector<std::string>& texts)
{
    std::vector<ZoneMemberScenario> members;
    members.reserve(texts.size());
    for (const std::string& text : texts)
        members.push_back(memberNamed(text));
    return members;
}

std::vector<std::string> textsOf(const ZoneMembers& members)
{
    std::vector<std::string> texts;
    for (const auto& [age, member] : members.elements())
        texts.push_back(memberText(member.key));
    return texts;
}

ActiveZoneSetView viewOf(const ActiveZoneSet* active)
{
    ActiveZoneSetView view;
    if (active == nullptr)
        return view;
    view.name = active->name;
    for (const auto& [age, zone] : active->zones.elements())
        view.zones.emplace_back(zone.key, textsOf(zone.value.members));
    return view;
}

} // namespace

ZoningSetup& ZoningSetup::alias(std::string name, const std::vector<std::string>& members)
{
    _scenario.aliases.push_back({std::move(name), membersNamed(members)});
    return *this;
}

ZoningSetup& ZoningSetup::zone(std::string name, const std::vector<std::string>& members, ZoneType type)
{
    _scenario.zones.push_back({std::move(name), type, membersNamed(members)});
    return *this;
}

ZoningSetup& ZoningSetup::activeZone(std::string name, const std::vector<std::string>& members)
{
    copy().zones.push_back({std::move(name), ZoneType::soft, membersNamed(members)});
    return *this;
}

void SimSwitch::holdAdminMode(const std::string& holder)
{
    const bool taken =
        !holder.empty() && Engine::instance().write([&holder](FabricModel& model, std::uint64_t)
                                                    { return model.takeAdminMode(holder); });
    if (!taken)
        throw std::invalid_argument("the administrative mode is held already, or by nobody's name");
}

void SimSwitch::releaseAdminMode()
{
    if (adminModeHolder().empty() || adminModeHolder() == kEditSession)
        throw std::invalid_argument("nobody but an edit session holds the administrative mode");
    adminOwnerGoes();
}

void SimSwitch::adminOwnerGoes()
{
    Engine::instance().write([](FabricModel& model, std::uint64_t) { model.abandonAdminMode(); });
}

std::string SimSwitch::adminModeHolder() const
{
    return Engine::instance().read([](const FabricModel& model, std::uint64_t)
                                   { return model.adminMode().holder(); });
}

ZoningView SimSwitch::zoning() const
{
    return Engine::instance().read(
        [](const FabricModel& model, std::uint64_t)
        {
            const ZoningDatabase& configured = model.zoning().configured;
            ZoningView view;
            for (const auto& [age, alias] : configured.aliases().elements())
                view.aliases.emplace_back(alias.key, textsOf(*alias.value));
            for (const auto& [age, zone] : configured.zones().elements())
                view.zones.emplace_back(zone.key, textsOf(zone.value->members));
            for (const auto& [age, set] : configured.zoneSets().elements())
            {
                view.zoneSets.emplace_back(set.key, std::vector<std::string>());
                for (const auto& [zoneAge, zone] : set.value->elements())
                    view.zoneSets.back().second.push_back(zone.key);
            }
            view.active = viewOf(model.local().activeZoneSet.get());
            if (model.zoning().lastChange)
                view.lastChange = textOf(*model.zoning().lastChange);
            return view;
        });
}

ActiveZoneSetView SimSwitch::activeZoneSetOf(int domain) const
{
    return Engine::instance().read(
        [domain](const FabricModel& model, std::uint64_t)
        {
            const Switch* one = model.switchOf(domain);
            if (one == nullptr)
                throw std::invalid_argument("no switch has domain " + std::to_string(domain));
            return viewOf(one->activeZoneSet.get());
        });
}

} // namespace simulator
