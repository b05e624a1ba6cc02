// The members of zones and aliases.
#include "fabricProviders/VRAX_ZoneMembership_Provider.h"

#include "common/zoning_ids.h"
#include "switchaccess/Sml_Walk.h"
#include "switchaccess/Zoning_Edit.h"
#include "switchaccess/string_helpers.h"
#include "switchaccess/zone_members.h"
#include "switchaccess/zoning_list.h"

#include <strings.h>

namespace cimple
{

namespace
{

// CIM_ZoneMembershipSettingData.ConnectivityMemberType, by the library's type and the attribute store's word.
struct Member_Type
{
    std::int32_t library;
    const char* word;
    uint16 value;
};
constexpr Member_Type kMemberTypes[] = {{XPL_ZMT_NODEPORTNAME, "WWN", kMemberIsWwn},
                                        {XPL_ZMT_NODEPORTID, "PortID", kMemberIsAddress},
                                        {XPL_ZMT_DOMAINPORT, "DomainPort", kMemberIsSwitchPort}};

const Member_Type* memberType(std::int32_t library)
{
    for (const Member_Type& one : kMemberTypes)
        if (one.library == library)
            return &one;
    return nullptr;
}

const Member_Type* memberType(const char* word)
{
    for (const Member_Type& one : kMemberTypes)
        if (strcasecmp(one.word, word) == 0)
            return &one;
    return nullptr;
}

// The members of the active set are read in upper case, and so named in further keys.
std::string asUpperCase(std::string& member)
{
    member = upperCased(member.c_str());
    return member;
}

constexpr Walk_Keys kActiveZones = {
    "Oper.Zoning.ActiveZoneSet.FirstZone",
    "xpl_smlGetV failed for Oper.Zoning.ActiveZoneSet.FirstZone",
    "Oper.Zoning.ActiveZoneSet.NextZone.%s",
    "xpl_smlGetV failed for Oper.Zoning.ActiveZoneSet.NextZone",
    XPL_FZS_NO_MORE,
    Walk_Keys::readAlone,
};
constexpr Walk_Keys kActiveMembers = {
    "Oper.Zoning.ActiveZone.%s.FirstZoneMember",
    kActiveZones.nextFailed,
    "Oper.Zoning.ActiveZone.%s.NextZoneMember.%s",
    kActiveZones.nextFailed,
    XPL_FZS_NO_MORE,
    Walk_Keys::readAlone,
    asUpperCase,
};

} // namespace

// Publishes memberships.
class VRAX_ZoneMembership_Provider::Writer
{
  public:
    explicit Writer(Map_Writer<VRAX_ZoneMembership>& map) : _map(map) {}

    // `prefix` is the InstanceID but for the member.
    void
    publish(const std::string& prefix, const std::string& member, const Member_Type* type, const char* holder)
    {
        Owned<VRAX_ZoneMembership> membership = make();
        membership->ConnectivityMemberID.set(member.c_str());
        if (type != nullptr)
            membership->ConnectivityMemberType.set(type->value);
        membership->InstanceID.set((prefix + member).c_str());
        membership->ElementName.set(holder);
        add(_map, membership);
    }

    void publishAll(const std::string& prefix, const Zone_Members& members, const char* holder)
    {
        for (std::uint32_t i = 0; i < members.size(); ++i)
            if (!members.isAlias(i))
                publish(prefix, members.text(i), memberType(members.type(i)), holder);
    }

  private:
    Map_Writer<VRAX_ZoneMembership>& _map;
};

void VRAX_ZoneMembership_Provider::buildFrom(Map_Writer<VRAX_ZoneMembership>& map, const Locked_Ends& ends)
{
    Writer writer(map);
    std::size_t count = 0;
    for (const VRAX_Zone* zone : ends.view<VRAX_Zone>())
    {
        const char* const name = zone->ElementName.value.c_str();
        if (isDueALine(++count))
            cim_log(kLogInfo, "processed %d zones, zoneName = %s \n", static_cast<int>(count), name);
        const Zone_Members members(xpl_fzsGetZoneMemberList, name);
        if (members.error() != 0)
            fail("xpl_fzsGetZoneMemberList Failed");
        // State and switch are those of the zone.
        const char* const id = zone->InstanceID.value.c_str();
        const char* const ownName = afterColon(zone->InstanceID.value, 2);
        if (ownName == nullptr)
            fail("strtok failed");
        writer.publishAll(std::string(id, ownName), members, name);
    }

    const Local_Switch_Wwn switchWwn({kSource, "load"});
    const std::string inactive = std::string(kInactive) + ":" + switchWwn.text() + ":";
    count = 0;
    for (const VRAX_ZoneAlias* alias : ends.view<VRAX_ZoneAlias>())
    {
        const char* const name = alias->CollectionAlias.value.c_str();
        if (isDueALine(++count))
            cim_log(kLogInfo, "processed %d aliases, aliasName= %s \n", static_cast<int>(count), name);
        const Zone_Members members(xpl_fzsGetZoneAliasMemberList, name);
        if (members.error() != 0)
            fail("xpl_fzsGetZoneAliasMemberList Failed");
        writer.publishAll(inactive, members, name);
    }

    cim_log(kLogInfo, "Calling xpl_fzsGetActiveZonesetName \n");
    char activeSet[kZoneNameSize] = "";
    const int status = xpl_fzsGetActiveZonesetName(hSwitch, activeSet);
    if (status != 0 && status != XPL_FZS_NO_ACTIVE_ZONESET)
        fail(Failure_Text::line("xpl_fzsGetActiveZonesetName Failed : %s"), {std::to_string(status).c_str()});
    if (activeSet[0] == '\0')
        return;
    const std::string active = std::string(kActive) + ":" + switchWwn.text() + ":";
    for (const std::string& zone : Sml_Walk(kActiveZones, {kSource, "load"}))
    {
        for (const std::string& member : Sml_Walk(kActiveMembers, {kSource, "load"}, zone.c_str()))
        {
            char word[kXplSmlTextSize] = "";
            if (readAttribute(word,
                              "Oper.Zoning.ActiveZone.%s.ZoneMember.%s.Type",
                              {zone.c_str(), member.c_str()}) != 0)
                fail("failed to get the zone MemberType");
            cim_log(kLogInfo, "MemberType: %s \n", word);
            writer.publish(active, member, memberType(word), zone.c_str());
        }
    }
}

namespace
{

enum class Holder
{
    None,
    Zone,
    Alias
};

// Zones and aliases that bear the name; an alias of a zone's name loses.
Holder
holderNamed(const String& name, const Map_View<VRAX_Zone>& zones, const Map_View<VRAX_ZoneAlias>& aliases)
{
    bool isZone = false;
    bool isAlias = false;
    const auto compare = [&name](const String& other, bool& found)
    {
        if (!other.equali(name))
            return;
        cim_log(kLogInfo, "found the instance\n");
        found = true;
    };
    for (const VRAX_Zone* zone : zones)
        compare(zone->ElementName.value, isZone);
    for (const VRAX_ZoneAlias* alias : aliases)
        compare(alias->CollectionAlias.value, isAlias);
    if (isZone)
        return Holder::Zone;
    return isAlias ? Holder::Alias : Holder::None;
}

constexpr Failure_Text kCannotDeleteActive = Failure_Text::plain("Cannot delete an active member\n");

} // namespace

Delete_Instance_Status VRAX_ZoneMembership_Provider::delete_instance(const VRAX_ZoneMembership* instance)
{
    const auto body = [&](Operation<Delete_Instance_Status>& op)
    {
        static constexpr Map_List kLocks = lockList();
        Locked_Ends locked(kLocks);
        if (VRAX_Zone_Provider().load() != LOAD_OK)
            op.fail(Failure_Text::plain("VRAX_Zone_Provider load failed\n"));
        if (VRAX_ZoneAlias_Provider().load() != LOAD_OK)
            op.fail(Failure_Text::plain("VRAX_ZoneAlias_Provider load failed\n"));
        const VRAX_ZoneMembership* cached = locked.view<VRAX_ZoneMembership>().find(*instance);
        if (cached == nullptr)
            op.fail(Failure_Text::plain("Instance Not found \n"));
        const String& holder = cached->ElementName.value;
        cim_log(kLogInfo, "ElementName: %s\n", holder.c_str());
        const Holder kind = holderNamed(holder, locked.view<VRAX_Zone>(), locked.view<VRAX_ZoneAlias>());
        const char* member = afterColon(instance->InstanceID.value, 2);
        cim_log(kLogInfo, "NodeName: %s\n", member);

        Zoning_Edit edit;
        if (!edit.begun())
            op.failOn(kNoZoningEdit, Failure_Text::line("Failed to get in Zoning editMode"));
        if (kind == Holder::Zone)
        {
            // Only a member that the fabric enforces is kept; whatever else the switch says, the session is
            // saved.
            const int status = edit.command("Cmd.Zoning.Zone.%s.RemZoneMember.%s", {holder.c_str(), member});
            if (status == XPL_FZS_ACTIVE_MEMBER)
            {
                edit.cancel();
                op.fail(kCannotDeleteActive);
            }
        }
        else if (kind == Holder::Alias)
        {
            const int status = edit.command("Cmd.Zoning.Alias.%s.RemZoneMember.%s", {holder.c_str(), member});
            if (status != 0)
                edit.cancel();
            if (status == XPL_FZS_ACTIVE_MEMBER)
                op.fail(kCannotDeleteActive);
            if (status != 0)
                op.fail(Failure_Text::line("Failed to remove the ZoneMember error : %s"),
                        {std::to_string(status).c_str()});
        }
        if (!edit.save())
        {
            edit.cancel();
            op.fail(Failure_Text::line("Failed to save in Zoning editMode"));
        }
        return DELETE_INSTANCE_OK;
    };
    return operation("delete_instance", DELETE_INSTANCE_FAILED, body);
}

} // namespace cimple
