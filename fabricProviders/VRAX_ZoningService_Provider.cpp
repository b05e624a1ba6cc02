// The service through which clients change the zoning of the fabric.
#include "fabricProviders/VRAX_ZoningService_Provider.h"

#include "common/results.h"
#include "common/zoning_ids.h"
#include "fabricProviders/VRAX_MemberOfZoneSet_Provider.h"
#include "fabricProviders/VRAX_ZoneMembership_Provider.h"
#include "fabricProviders/zoning_method.h"
#include "switchaccess/Zoning_Edit.h"
#include "switchaccess/zone_members.h"

#include "CIM_NamedAddressCollection.h"
#include "CIM_SystemSpecificCollection.h"
#include "CIM_Zone.h"
#include "CIM_ZoneMembershipSettingData.h"
#include "CIM_ZoneSet.h"

#include <memory>

namespace cimple
{

using namespace zoning_method;

namespace
{

typedef VRAX_ZoningService_Provider Provider;

// Values of CIM_Service and CIM_ZoneService.
constexpr uint16 kOk = 2;                   // OperationalStatus
constexpr uint16 kSessionNotApplicable = 4; // SessionState
constexpr uint16 kNoChange = 5;             // RequestedSessionState
constexpr uint16 kUnknown = 0;              // DefaultZoningState
constexpr uint16 kAllow = 2;
constexpr uint16 kDeny = 3;

constexpr char kLockedLine[] = "Admin mode is locked\n";
constexpr char kInvalidLine[] = "Invalid Parameter\n";

constexpr Method_Result kActivations[] = {{0, "Activating  ZoneSet Succeeded\n", kDone},
                                          {XPL_FZS_LOCKED, kLockedLine, kLocked},
                                          {kAnyOther, "Activating  ZoneSet failed = %d\n", kFailed}};
constexpr Method_Result kDeactivations[] = {{0, "Deactivating  ZoneSet Succeeded\n", kDone},
                                            {XPL_FZS_LOCKED, kLockedLine, kLocked},
                                            {kAnyOther, "Deactivating  ZoneSet failed\n", kFailed}};
constexpr Method_Result kZoneSetCreations[] = {{0, "Successfully created and added ZoneSet to db\n", kDone},
                                               {XPL_FZS_LOCKED, kLockedLine, kLocked},
                                               {XPL_INVALID_PARAMETER, kInvalidLine, kInvalid},
                                               {kAnyOther, "Failed to Create ZoneSet\n", kFailed}};
constexpr Method_Result kZoneCreations[] = {{0, "Created Zone successfully\n", kDone},
                                            {XPL_FZS_LOCKED, kLockedLine, kLocked},
                                            {XPL_INVALID_PARAMETER, kInvalidLine, kInvalid},
                                            {kAnyOther, "Error creating zone:xpl_fzsCreateZone\n", kFailed}};
constexpr Method_Result kAliasCreations[] = {
    {0, nullptr, kDone},
    {XPL_FZS_LOCKED, kLockedLine, kLocked},
    {XPL_INVALID_PARAMETER, kInvalidLine, kInvalid},
    {kAnyOther, "Failed to Create ZoneAlias with error %d\n", kFailed}};
constexpr Method_Result kZoneAdditions[] = {{0, nullptr, kDone},
                                            {XPL_FZS_LOCKED, kLockedLine, kLocked},
                                            {kAnyOther, "Failed to Add Zone to ZoneSet\n", kFailed}};
constexpr Method_Result kAliasAdditions[] = {{0, nullptr, kDone},
                                             {XPL_INVALID_PARAMETER, "Invalid parameter\n", kInvalid},
                                             {XPL_FZS_EXISTS_ALREADY, "Member already exists\n", kExists},
                                             {kAnyOther, "xpl_smlSetV Failed\n", kFailed}};
constexpr Method_Result kMemberCreations[] = {{0, nullptr, kDone},
                                              {kAnyOther, "xpl_smlSetV Failed\n", kFailed}};
constexpr Method_Result kMemberAdditions[] = {{0, nullptr, kDone},
                                              {XPL_FZS_LOCKED, kLockedLine, kLocked},
                                              {XPL_FZS_MEMBER_EXISTS, nullptr, kExists},
                                              {XPL_FZS_ALIAS_MEMBER_EXISTS, nullptr, kExists},
                                              {kAnyOther, nullptr, kFailed}};

const char* idOf(const Property<String>* id)
{
    return id != nullptr ? id->value.c_str() : "null";
}

} // namespace

void Provider::fill(VRAX_ZoningService& service, const char* localWwn)
{
    char defaultZone[kXplSmlTextSize] = "";
    char activeSet[kXplSmlTextSize] = "";
    std::int32_t error = 0;
    if (xpl_smlGet(hSwitch, "Config.Zoning.DefaultZone", defaultZone, &error) != 0 ||
        xpl_smlGet(hSwitch, "Oper.Zoning.ActiveZoneSet", activeSet, &error) != 0)
        fail("xpl_smlGet failed for \"Config.Zoning.DefaultZone\"");
    service.SystemCreationClassName.set("VRAX_Switch"); // unlike all else that belongs to the switch
    service.SystemName.set(localWwn);
    service.CreationClassName.set("VRAX_ZoningService");
    service.Name.set(localWwn);
    service.OperationalStatus.set(Array_uint16::make(kOk));
    service.SessionState.set(kSessionNotApplicable);
    service.RequestedSessionState.set(kNoChange);
    uint16 state = kUnknown;
    if (std::strcmp(defaultZone, "True") == 0)
        state = kAllow;
    else if (std::strcmp(defaultZone, "False") == 0) // a fabric without zoning is open
        state = activeSet[0] != '\0' ? kDeny : kAllow;
    service.DefaultZoningState.set(state);
}

Invoke_Method_Status Provider::ActivateZoneSet(const VRAX_ZoningService* self,
                                               const CIM_ZoneSet* ZoneSet,
                                               const Property<boolean>& Activate,
                                               Property<uint32>& return_value)
{
    const auto body = [&](Method& op, const Map_View<VRAX_ZoningService>& services)
    {
        requireLoaded<Provider>(op, kFailed, "VRAX_ZoningService_Provider load failed\n");
        requireService(op, services, self, kInvalid, "Error looking up Zoning Service\n");
        const std::string name = requireName(op, ZoneSet, "ZoneSet Name not found in InstanceID\n");
        // Nothing is taken out of force by a client that forgot to say what it wants.
        if (Activate.null)
            end(op, kInvalid, "Activate is missing\n");
        if (!Activate.value)
            return conclude(kDeactivations, xpl_fzsDeactivateZoneset(hSwitch));
        cim_log(kLogInfo, "Activating  ZoneSet %s\n", name.c_str());
        return conclude(kActivations, xpl_fzsActivateZoneset(hSwitch, name.c_str()));
    };
    return perform(__func__, return_value, body);
}

Invoke_Method_Status Provider::CreateZoneSet(const VRAX_ZoningService* self,
                                             const Property<String>& ZoneSetName,
                                             CIM_ZoneSet*& ZoneSet,
                                             Property<uint32>& return_value)
{
    const auto body = [&](Method& op, const Map_View<VRAX_ZoningService>& services)
    {
        const char* const name = ZoneSetName.value.c_str();
        requireLoaded<Provider>(op, kNoService, "VRAX_ZoningService load failed\n");
        cim_log(kLogInfo, "ZoneSetName=%s\n", name);
        const VRAX_ZoningService& service =
            requireService(op, services, self, kNoService, "Error looking up Zoning Service\n");
        const std::unique_ptr<xpl_Zoneset, decltype(&xpl_ZonesetDestroy)> object(xpl_ZonesetCreate(name),
                                                                                 &xpl_ZonesetDestroy);
        if (!object)
            end(op, kFailed, "Error creating zoneset \n");
        const uint32 code = conclude(kZoneSetCreations, xpl_fzsAddZoneset(hSwitch, object.get()));
        if (code != kDone)
            return code;

        Owned<VRAX_ZoneSet> created = makeNull<VRAX_ZoneSet>();
        if (!created)
            end(op, kFailed, "Failed to create VRAX_ZoneSet instance");
        created->InstanceID.set(zoningId(kInactive, service.SystemName.value.c_str(), name));
        cim_log(kLogInfo, "\n Zone Set Name : %s", created->InstanceID.value.c_str());
        handOut(created, ZoneSet);
        return code;
    };
    return perform(__func__, return_value, body);
}

Invoke_Method_Status Provider::CreateZone(const VRAX_ZoningService* self,
                                          const Property<String>& ZoneName,
                                          const Property<uint16>& ZoneType,
                                          const Property<uint16>&,
                                          CIM_Zone*& Zone,
                                          Property<uint32>& return_value)
{
    const auto body = [&](Method& op, const Map_View<VRAX_ZoningService>& services)
    {
        const char* const name = ZoneName.value.c_str();
        const uint16 type = ZoneType.null ? uint16{0} : ZoneType.value;
        cim_log(kLogInfo, "ZoneName=%s\n", name);
        cim_log(kLogInfo, "ZoneType=%d\n", int{type});
        requireLoaded<Provider>(op, kFailed, "VRAX_ZoningService load failed\n");
        if (type != kZoneIsOther && type != kZoneIsDefault)
            end(op, kInvalid, "Invalid ZoneType\n");
        const VRAX_ZoningService& service =
            requireService(op, services, self, kNoService, "Error looking up Zoning Service REF\n");
        const std::unique_ptr<xpl_Zone, decltype(&xpl_ZoneDestroy)> object(xpl_ZoneCreate(name),
                                                                           &xpl_ZoneDestroy);
        if (!object)
            end(op, kFailed, "Error creating zone\n");
        if (xpl_ZoneSetType(object.get(), type == kZoneIsOther ? XPL_ZT_HARD_ACL : XPL_ZT_SOFT) != 0)
            end(op, kFailed, "Error setting ZoneType\n");
        const uint32 code = conclude(kZoneCreations, xpl_fzsCreateZone(hSwitch, object.get()));
        if (code != kDone)
            return code;

        Owned<VRAX_Zone> created = makeNull<VRAX_Zone>();
        if (!created)
            end(op, kFailed, "Failed to create VRAX_Zone instance");
        created->InstanceID.set(zoningId(kInactive, service.SystemName.value.c_str(), name));
        cim_log(kLogInfo, "\nZone InstanceID= : %s", created->InstanceID.value.c_str());
        created->ElementName.set(name);
        created->ZoneType.set(type);
        handOut(created, Zone);
        return code;
    };
    return perform(__func__, return_value, body);
}

Invoke_Method_Status Provider::CreateZoneAlias(const VRAX_ZoningService* self,
                                               const Property<String>& CollectionAlias,
                                               CIM_NamedAddressCollection*& ZoneAlias,
                                               Property<uint32>& return_value)
{
    const auto body = [&](Method& op, const Map_View<VRAX_ZoningService>& services)
    {
        const char* const name = CollectionAlias.value.c_str();
        requireLoaded<Provider>(op, kFailed, "VRAX_ZoningService load failed");
        const VRAX_ZoningService& service =
            requireService(op, services, self, kNotFound, "Error looking up Zoning Service Ref\n");
        cim_log(kLogInfo, "CreateZoneAlias:ZoneAlias =%s", name);
        const uint32 code = conclude(kAliasCreations, xpl_fzsAddZoneAlias(hSwitch, name));
        if (code != kDone)
            return code;

        Owned<VRAX_ZoneAlias> created = makeNull<VRAX_ZoneAlias>();
        if (!created)
            end(op, kFailed, "Failed to create zoneAlias\n");
        created->InstanceID.set(aliasId(service.SystemName.value.c_str(), name));
        created->CollectionAlias.set(name);
        handOut(created, ZoneAlias);
        cim_log(kLogInfo, "Successfully Created ZoneAlias - %s\n", name);
        return code;
    };
    return perform(__func__, return_value, body);
}

Invoke_Method_Status Provider::AddZone(const VRAX_ZoningService* self,
                                       const CIM_ZoneSet* ZoneSet,
                                       const CIM_Zone* Zone,
                                       Property<uint32>& return_value)
{
    const auto body = [&](Method& op, const Map_View<VRAX_ZoningService>& services)
    {
        cim_log(kLogInfo, "\nZoningService =%p", static_cast<const void*>(self));
        cim_log(kLogInfo,
                "\nZoneSet =%p \n %s",
                static_cast<const void*>(ZoneSet),
                idOf(ZoneSet != nullptr ? &ZoneSet->InstanceID : nullptr));
        cim_log(kLogInfo,
                "\nZone =%p \n%s",
                static_cast<const void*>(Zone),
                idOf(Zone != nullptr ? &Zone->InstanceID : nullptr));
        requireLoaded<Provider>(op, kNoService, "VRAX_ZoningService load failed\n");
        requireLoaded<VRAX_ZoneSet_Provider>(op, kFailed, "VRAX_ZoneSet_Provider load failed\n");
        requireLoaded<VRAX_Zone_Provider>(op, kFailed, "VRAX_Zone_Provider load failed\n");
        requireService(op, services, self, kNoService, "Error looking up Zoning Service\n");
        const Ref<const VRAX_Zone> zone = referred<VRAX_Zone>(Zone);
        if (!zone.ptr())
            end(op, kNotFound, "Referenced zone not found\n");
        const std::string zoneName = requireName(op, zone.ptr());
        const std::string setName = requireName(op, ZoneSet);
        cim_log(kLogInfo, "Adding zone %s to zoneset %s\n", zoneName.c_str(), setName.c_str());
        const uint32 code =
            conclude(kZoneAdditions, xpl_fzsAddZone(hSwitch, zoneName.c_str(), setName.c_str()));
        if (code != kDone)
            return code;
        const Ref<const VRAX_ZoneSet> zoneSet = referred<VRAX_ZoneSet>(ZoneSet);
        if (zoneSet.ptr())
            VRAX_MemberOfZoneSet_Provider::addPair(*zoneSet, *zone);
        cim_log(kLogInfo, "Adding zone %s to zoneset %s Successful\n", zoneName.c_str(), setName.c_str());
        return code;
    };
    return perform(__func__, return_value, body);
}

Invoke_Method_Status Provider::AddZoneAlias(const VRAX_ZoningService* self,
                                            const CIM_Zone* Zone,
                                            const CIM_NamedAddressCollection* ZoneAlias,
                                            Property<uint32>& return_value)
{
    const auto body = [&](Method& op, const Map_View<VRAX_ZoningService>& services)
    {
        requireLoaded<Provider>(op, kNotLoaded, "Error VRAX_ZoningService Update \n");
        requireZonesAndAliases(op);
        requireService(op, services, self, kNotFound, "Error looking up Zoning Service Ref\n");
        const Ref<const VRAX_Zone> zone = referred<VRAX_Zone>(Zone);
        if (!zone.ptr())
            end(op, kNotFound, "VRAX_Zone Ref not found\n");
        const Ref<const VRAX_ZoneAlias> alias = referred<VRAX_ZoneAlias>(ZoneAlias);
        if (!alias.ptr())
            end(op, kNotFound, "VRAX_ZoneAliasi Ref not found\n");
        const std::string aliasName = requireName(op, alias.ptr());

        Zoning_Edit edit;
        if (!edit.begun())
            return uint32{kLocked};
        const int result = edit.command("Cmd.Zoning.Zone.%s.AddZoneMember.%s",
                                        {zone->ElementName.value.c_str(), aliasName.c_str()});
        const uint32 code = conclude(kAliasAdditions, result);
        if (code != kDone)
            return edit.cancel(), code;
        if (!edit.save())
            return uint32{kFailed};
        cim_log(kLogInfo, "Successfully Added  ZoneAlias %s\n", aliasName.c_str());
        return code;
    };
    return perform(__func__, return_value, body);
}

Invoke_Method_Status
Provider::CreateZoneMembershipSettingData(const VRAX_ZoningService* self,
                                          const Property<uint16>& ConnectivityMemberType,
                                          const Property<String>& ConnectivityMemberID,
                                          const CIM_SystemSpecificCollection* SystemSpecificCollection,
                                          CIM_ZoneMembershipSettingData*& ZoneMembershipSettingData,
                                          Property<uint32>& return_value)
{
    const auto body = [&](Method& op, const Map_View<VRAX_ZoningService>& services)
    {
        const uint16 type = ConnectivityMemberType.null ? uint16{0} : ConnectivityMemberType.value;
        const String& id = ConnectivityMemberID.value;
        if (type < kMemberIsWwn || type > kMemberIsSwitchPort)
            end(op, kInvalid, "Invalid Parameter: ConnectivityMemberType\n");
        const std::string member = memberOfCommand(type, id);
        if (member.empty())
            end(op, kInvalid, "Invalid Parameter: ConnectivityMemberID\n");
        requireLoaded<Provider>(op, kFailed, "VRAX_ZoningService load failed\n");
        requireZonesAndAliases(op);
        const VRAX_ZoningService& service =
            requireService(op, services, self, kFailed, "Error looking up Zoning Service\n");
        const Holder holder = requireHolder(op, SystemSpecificCollection, kInvalid);
        holder.name(op); // the commands go by other properties, but a key without a name is refused

        Zoning_Edit edit;
        if (!edit.begun())
            return uint32{kLocked};
        const int result = holder.isZone()
                               ? edit.command("Cmd.Zoning.Zone.%s.AddZoneMember.%s",
                                              {holder.zone->ElementName.value.c_str(), member.c_str()})
                               : edit.command("Cmd.Zoning.Alias.%s.AddZoneMember.%s",
                                              {holder.alias->CollectionAlias.value.c_str(), member.c_str()});
        const uint32 code = conclude(kMemberCreations, result);
        if (code != kDone)
            return edit.cancel(), code;
        if (!edit.save())
            return uint32{kFailed};

        // Every membership may have another holder now.
        VRAX_ZoneMembership_Provider().unload();
        Owned<VRAX_ZoneMembership> created = makeNull<VRAX_ZoneMembership>();
        if (!created)
            end(op, kFailed, "Failed to create VRAX_ZoneMembership instance\n");
        created->InstanceID.set(zoningId(kInactive, service.SystemName.value.c_str(), id.c_str()));
        created->ConnectivityMemberID.set(id);
        created->ConnectivityMemberType.set(type);
        ZoneMembershipSettingData = reinterpret_cast<CIM_ZoneMembershipSettingData*>(created.release());
        return code;
    };
    return perform(__func__, return_value, body);
}

Invoke_Method_Status
Provider::AddZoneMembershipSettingData(const VRAX_ZoningService* self,
                                       const CIM_SystemSpecificCollection* SystemSpecificCollection,
                                       const CIM_ZoneMembershipSettingData* ZoneMembershipSettingData,
                                       Property<uint32>& return_value)
{
    // Before the service's lock is taken, since it waits for loads that wait for that lock. When it fails,
    // the membership is not found.
    VRAX_ZoneMembership_Provider().load();
    const auto body = [&](Method& op, const Map_View<VRAX_ZoningService>& services)
    {
        requireLoaded<Provider>(op, kFailed, "VRAX_ZoningService_Provider load failed\n");
        requireZonesAndAliases(op);
        requireService(op, services, self, kInvalid, "Error looking up Zoning Service\n");
        const Holder holder = requireHolder(
            op, SystemSpecificCollection, kNotFound, "Neither Zone Ref nor ZoneAlias Ref correct\n");
        const Ref<const VRAX_ZoneMembership> membership =
            referred<VRAX_ZoneMembership>(ZoneMembershipSettingData);
        if (!membership.ptr())
            end(op, kNotFound, "Referenced ZoneMembershipSettingData not found\n");

        const uint16 type =
            membership->ConnectivityMemberType.null ? uint16{0} : membership->ConnectivityMemberType.value;
        cim_log(kLogInfo, "memberType = %d\n", int{type});
        if (type < kMemberIsWwn || type > kMemberIsSwitchPort)
            end(op, kInvalid, "Invalid ConnectivityMemberType passed (2,3,4 are valid)\n");
        const String& id = membership->ConnectivityMemberID.value;
        cim_log(kLogInfo, "ConnectivityMemberID=%s\n", id.c_str());
        Member_Record member;
        if (!memberRecord(type, id, member))
            op.failWith(
                kInvalid,
                Failure_Text::plain("Invalid ConnectivityMemberID passed for ConnectivityMemberType %s\n"),
                {std::to_string(type).c_str()});
        const std::string name = holder.name(op);
        const auto add = holder.isZone() ? xpl_fzsAddZoneMembers : xpl_fzsAddZoneAliasMembers;
        return conclude(kMemberAdditions, add(hSwitch, name.c_str(), 1, &member.type, &member.identifier));
    };
    return perform(__func__, return_value, body);
}

} // namespace cimple
