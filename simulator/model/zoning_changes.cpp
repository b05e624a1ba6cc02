// Changes of the fabric's zoning: the configured database, its edit session, what is active on which switch.
#include "simulator/model/FabricModel.h"

#include <set>
#include <utility>

namespace simulator
{

std::string textOf(const ZoningChange& change)
{
    const auto verb = [&change]
    {
        switch (change.kind)
        {
        case ZoningChange::Kind::activated:
            return "activated";
        case ZoningChange::Kind::deactivated:
            return "deactivated";
        default:
            return "database changed";
        }
    };
    return std::string(verb()) + " by " + change.by;
}

void FabricModel::zoningChanged(ZoningChange::Kind kind, std::string_view by, std::uint64_t now)
{
    _zoning.lastChange = ZoningChange{kind, std::string(by), now};
    _history.log("zoning", textOf(*_zoning.lastChange), now);
    if (kind == ZoningChange::Kind::databaseChanged)
        _history.raise(event(XPL_EVENT_ZONING_CHANGED));
    if (kind == ZoningChange::Kind::activated)
    {
        SwitchEvent activated = fabricEvent(XPL_EVENT_ZONE_SET_ACTIVATED);
        activated.subject = local().activeZoneSet->name;
        _history.raise(std::move(activated));
    }
}

std::int32_t FabricModel::changeZoning(std::string_view by,
                                       std::uint64_t now,
                                       const std::function<std::int32_t(ZoningDatabase& configured)>& change)
{
    const AdminMode::Turn turn(_adminMode, by);
    if (!turn.taken())
        return XPL_FZS_LOCKED;
    const std::int32_t status = change(_zoning.configured);
    if (status == XPL_OK)
        zoningChanged(ZoningChange::Kind::databaseChanged, by, now);
    return status;
}

std::int32_t FabricModel::activateZoneSet(std::string_view name, std::string_view by, std::uint64_t now)
{
    const AdminMode::Turn turn(_adminMode, by);
    if (!turn.taken())
        return XPL_FZS_LOCKED;
    const std::int32_t fault = checkZoneName(name);
    if (fault != XPL_OK)
        return fault;
    const Shared<ZoneNames>* set = _zoning.configured.zoneSets().find(name);
    if (set == nullptr)
        return XPL_FZS_UNKNOWN_NAME;
    if ((*set)->empty())
        return XPL_INVALID_PARAMETER;
    setActiveZoneSet(
        local(), std::make_shared<const ActiveZoneSet>(activeCopy(_zoning.configured, name)), Reach::all);
    zoningChanged(ZoningChange::Kind::activated, by, now);
    return XPL_OK;
}

std::int32_t FabricModel::deactivateZoneSet(std::string_view by, std::uint64_t now)
{
    const AdminMode::Turn turn(_adminMode, by);
    if (!turn.taken())
        return XPL_FZS_LOCKED;
    if (local().activeZoneSet == nullptr)
        return XPL_FZS_NO_ACTIVE_ZONESET;
    setActiveZoneSet(local(), nullptr, Reach::all);
    zoningChanged(ZoningChange::Kind::deactivated, by, now);
    return XPL_OK;
}

bool FabricModel::beginZoningEdit()
{
    if (!_adminMode.take(kEditSession))
        return false;
    _zoning.pending = _zoning.configured;
    return true;
}

bool FabricModel::endZoningEdit(bool save, std::uint64_t now)
{
    if (!_zoning.pending)
        return false;
    if (save)
    {
        _zoning.configured = std::move(*_zoning.pending);
        zoningChanged(ZoningChange::Kind::databaseChanged, kEditSession, now);
    }
    abandonAdminMode();
    return true;
}

void FabricModel::abandonAdminMode()
{
    _zoning.pending.reset();
    _adminMode.release();
}

void FabricModel::setActiveZoneSet(Switch& first,
                                   const std::shared_ptr<const ActiveZoneSet>& set,
                                   Reach reach)
{
    std::set<Switch*> reached{&first};
    std::vector<Switch*> next{&first};
    while (!next.empty())
    {
        Switch& one = *next.back();
        next.pop_back();
        one.activeZoneSet = set;
        for (const Port& port : one.ports)
        {
            if (!port.peer || !isOnline(one, port))
                continue;
            Switch* other = switchOf(port.peer->domain);
            const bool wanted = reach == Reach::all || other->activeZoneSet == nullptr;
            if (wanted && reached.insert(other).second)
                next.push_back(other);
        }
    }
}

void FabricModel::mergeZoning(Switch& owner, const Port& port, std::uint64_t now)
{
    Switch& other = *switchOf(port.peer->domain);
    const bool differ = (owner.activeZoneSet == nullptr) != (other.activeZoneSet == nullptr);
    if (!differ || !isOnline(owner, port))
        return;
    const bool localHad = local().activeZoneSet != nullptr;
    const bool ownerHas = owner.activeZoneSet != nullptr;
    setActiveZoneSet(
        ownerHas ? other : owner, (ownerHas ? owner : other).activeZoneSet, Reach::withoutActiveSet);
    if (!localHad && local().activeZoneSet != nullptr)
        zoningChanged(ZoningChange::Kind::activated, kFabric, now);
}

} // namespace simulator
