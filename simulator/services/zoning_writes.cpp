// The zoning library's changing calls, and the edit session of the switch server.
#include "platform/zoning_server.h"

#include "simulator/engine/Engine.h"
#include "simulator/services/session.h"
#include "simulator/services/zoning_arguments.h"

#include <new>
#include <optional>
#include <string>
#include <vector>

// What a zone set or zone is to be.
struct xpl_Zoneset
{
    char name[kZoneNameSize];
};

struct xpl_Zone
{
    char name[kZoneNameSize];
    simulator::ZoneType type;
};

namespace simulator
{
namespace
{

// Counts the call and notes the write, named as in docs/simulator.md.
std::int32_t beginWrite(Call call, xpl_Handle handle, const std::string& write)
{
    const std::int32_t begun = beginCall(call, handle);
    if (begun == XPL_OK)
        Engine::instance().probe.noteWrite("fzs " + write);
    return begun;
}

// Runs `change(ZoningDatabase&)`, which returns a status.
template <class Change>
int changeConfigured(Call call, xpl_Handle handle, const std::string& write, Change change)
{
    const std::int32_t begun = beginWrite(call, handle, write);
    if (begun != XPL_OK)
        return begun;
    return Engine::instance().write([&](FabricModel& model, std::uint64_t now)
                                    { return model.changeZoning(kDirectCall, now, change); });
}

// The members of two lists; nothing when there are no lists or one is none that the library knows.
std::optional<std::vector<ZoneMember>> membersOf(std::uint32_t count,
                                                 const xpl_fzs_zonemember_type_e* types,
                                                 const xpl_fzs_zonemember_identifier_u* identifiers)
{
    std::vector<ZoneMember> members;
    if (count != 0 && (types == nullptr || identifiers == nullptr))
        return std::nullopt;
    for (std::uint32_t i = 0; i < count; ++i)
    {
        auto member = memberOf(types[i], identifiers[i]);
        if (!member)
            return std::nullopt;
        members.push_back(std::move(*member));
    }
    return members;
}

struct GivenMembers
{
    std::uint32_t count;
    const xpl_fzs_zonemember_type_e* types;
    const xpl_fzs_zonemember_identifier_u* identifiers;
};

int addMembers(Call call, xpl_Handle handle, MemberHolder kind, const char* holder, const GivenMembers& given)
{
    const auto members = membersOf(given.count, given.types, given.identifiers);
    std::string list;
    for (const ZoneMember& member : members.value_or(std::vector<ZoneMember>()))
        list += (list.empty() ? "" : ",") + memberText(member);
    const std::string name(nameOf(holder));
    return changeConfigured(
        call,
        handle,
        "add members " + list + " to " + (kind == MemberHolder::zone ? "zone " : "alias ") + name,
        [&](ZoningDatabase& database) {
            return members ? database.addMembers(kind, name, *members) : std::int32_t{XPL_INVALID_PARAMETER};
        });
}

// An object of the library with its name; null when the name does not fit or memory ran out.
template <class Object>
Object* createObject(Call call, const char* name)
{
    const bool fits = name != nullptr && nameOf(name).size() < kZoneNameSize;
    void* block = beginCall(call) == XPL_OK && fits ? allocateBlock(sizeof(Object)) : nullptr;
    if (block == nullptr)
        return nullptr;
    auto* object = new (block) Object();
    putName(nameOf(name), object->name);
    return object;
}

// A test's failure is counted, but cannot keep the object.
template <class Object>
void destroyObject(Call call, Object* object)
{
    beginCall(call);
    if (object != nullptr)
        freeBlock(object);
}

template <class Object>
std::string nameIn(const Object* object)
{
    return object != nullptr ? object->name : "";
}

// Calls of the edit session return 0 or a negative number.
int sessionResult(bool done)
{
    return done ? 0 : -1;
}

int endSession(Call call, const char* write, bool save)
{
    const std::int32_t begun = beginWrite(call, hSwitch, write);
    const bool saves = save && begun == XPL_OK;
    // One that fails ends the session too: nobody else would, and the administrative mode would stay taken.
    const bool ended = Engine::instance().write([saves](FabricModel& model, std::uint64_t now)
                                                { return model.endZoningEdit(saves, now); });
    return sessionResult(ended && begun == XPL_OK);
}

} // namespace
} // namespace simulator

using namespace simulator;

extern "C" xpl_Zoneset* xpl_ZonesetCreate(const char* name)
{
    return createObject<xpl_Zoneset>(Call::zonesetCreate, name);
}

extern "C" void xpl_ZonesetDestroy(xpl_Zoneset* zoneset)
{
    destroyObject(Call::zonesetDestroy, zoneset);
}

extern "C" xpl_Zone* xpl_ZoneCreate(const char* name)
{
    auto* zone = createObject<xpl_Zone>(Call::zoneCreate, name);
    if (zone != nullptr)
        zone->type = ZoneType::soft;
    return zone;
}

extern "C" int xpl_ZoneSetType(xpl_Zone* zone, std::int32_t type)
{
    const std::int32_t begun = beginCall(Call::zoneSetType);
    if (begun != XPL_OK)
        return begun;
    if (zone == nullptr || type < XPL_ZT_SOFT || type > XPL_ZT_HARD_ACL)
        return XPL_INVALID_PARAMETER;
    zone->type = static_cast<ZoneType>(type);
    return XPL_OK;
}

extern "C" void xpl_ZoneDestroy(xpl_Zone* zone)
{
    destroyObject(Call::zoneDestroy, zone);
}

extern "C" int xpl_fzsAddZoneset(xpl_Handle handle, const xpl_Zoneset* zoneset)
{
    const std::string name = nameIn(zoneset);
    return changeConfigured(Call::fzsAddZoneset,
                            handle,
                            "create zone set " + name,
                            [&](ZoningDatabase& database) { return database.addZoneSet(name); });
}

extern "C" int xpl_fzsCreateZone(xpl_Handle handle, const xpl_Zone* zone)
{
    const std::string name = nameIn(zone);
    const ZoneType type = zone != nullptr ? zone->type : ZoneType::soft;
    return changeConfigured(Call::fzsCreateZone,
                            handle,
                            "create zone " + name,
                            [&](ZoningDatabase& database) { return database.addZone(name, type); });
}

extern "C" int xpl_fzsAddZoneAlias(xpl_Handle handle, const char* alias)
{
    const std::string name(nameOf(alias));
    return changeConfigured(Call::fzsAddZoneAlias,
                            handle,
                            "create alias " + name,
                            [&](ZoningDatabase& database) { return database.addAlias(name); });
}

extern "C" int xpl_fzsAddZone(xpl_Handle handle, const char* zone, const char* zoneset)
{
    const std::string name(nameOf(zone));
    const std::string set(nameOf(zoneset));
    return changeConfigured(Call::fzsAddZone,
                            handle,
                            "add zone " + name + " to zone set " + set,
                            [&](ZoningDatabase& database) { return database.addToZoneSet(name, set); });
}

extern "C" int xpl_fzsAddZoneMembers(xpl_Handle handle,
                                     const char* zone,
                                     std::uint32_t count,
                                     const xpl_fzs_zonemember_type_e* types,
                                     const xpl_fzs_zonemember_identifier_u* identifiers)
{
    return addMembers(Call::fzsAddZoneMembers, handle, MemberHolder::zone, zone, {count, types, identifiers});
}

extern "C" int xpl_fzsAddZoneAliasMembers(xpl_Handle handle,
                                          const char* alias,
                                          std::uint32_t count,
                                          const xpl_fzs_zonemember_type_e* types,
                                          const xpl_fzs_zonemember_identifier_u* identifiers)
{
    return addMembers(
        Call::fzsAddZoneAliasMembers, handle, MemberHolder::alias, alias, {count, types, identifiers});
}

extern "C" int xpl_fzsRemoveZoneset(xpl_Handle handle, const char* zoneset)
{
    const std::string name(nameOf(zoneset));
    return changeConfigured(Call::fzsRemoveZoneset,
                            handle,
                            "remove zone set " + name,
                            [&](ZoningDatabase& database) { return database.removeZoneSet(name); });
}

extern "C" int xpl_fzsDeleteZone(xpl_Handle handle, const char* zone)
{
    const std::string name(nameOf(zone));
    return changeConfigured(Call::fzsDeleteZone,
                            handle,
                            "delete zone " + name,
                            [&](ZoningDatabase& database) { return database.deleteZone(name); });
}

extern "C" int xpl_fzsActivateZoneset(xpl_Handle handle, const char* zoneset)
{
    const std::string name(nameOf(zoneset));
    const std::int32_t begun = beginWrite(Call::fzsActivateZoneset, handle, "activate zone set " + name);
    if (begun != XPL_OK)
        return begun;
    return Engine::instance().write([&name](FabricModel& model, std::uint64_t now)
                                    { return model.activateZoneSet(name, kDirectCall, now); });
}

extern "C" int xpl_fzsDeactivateZoneset(xpl_Handle handle)
{
    const std::int32_t begun = beginWrite(Call::fzsDeactivateZoneset, handle, "deactivate zone set");
    if (begun != XPL_OK)
        return begun;
    return Engine::instance().write([](FabricModel& model, std::uint64_t now)
                                    { return model.deactivateZoneSet(kDirectCall, now); });
}

int getZoningEditMode()
{
    if (beginWrite(Call::getZoningEditMode, hSwitch, "begin edit") != XPL_OK)
        return sessionResult(false);
    return sessionResult(
        Engine::instance().write([](FabricModel& model, std::uint64_t) { return model.beginZoningEdit(); }));
}

int saveZoningEdit()
{
    return endSession(Call::saveZoningEdit, "save edit", true);
}

int cancelZoningEdit()
{
    return endSession(Call::cancelZoningEdit, "cancel edit", false);
}
