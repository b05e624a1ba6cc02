// The platform calls by name.
#ifndef SIMULATOR_ENGINE_CALLS_H
#define SIMULATOR_ENGINE_CALLS_H

#include <cstddef>
#include <optional>
#include <string_view>

namespace simulator
{

enum class Call
{
    smlGetBatch,
    smlBatchSet,
    smlBatchCimSet,
    smlGetV,
    smlGet,
    smlSetV,
    switchGetConfig,
    switchSetConfig,
    switchForceReset,
    portGetConfig,
    portSetConfig,
    localWwn,
    principalWwn,
    chassisPartNumber,
    chassisSerialNumber,
    planarPartNumber,
    brandName,
    productInfo,
    firstAttachedPort,
    nextAttachedPort,
    readProductName,
    fcsGetSwitchList,
    fcsGetPortList,
    fcsGetPortTopology,
    dcRdLock,
    getFabric,
    getFabricWwn,
    getFirstSwitch,
    getNextSwitch,
    getWwn,
    getDomainId,
    isLocal,
    getFirstPort,
    getNextPort,
    getRootSwitchWwn,
    isTransparentSwitch,
    getSwitchFaults,
    getFirstRootPortIndex,
    getNextRootPortIndex,
    getPortHWType,
    calcPortWwn,
    calcPortIndex,
    getActiveZoneSet,
    formatMemberId,
    getZoningEditMode,
    saveZoningEdit,
    cancelZoningEdit,
    fzsGetZonesetList,
    fzsGetZoneList,
    fzsGetZoneAliasList,
    fzsGetZonesetZoneList,
    fzsGetZoneType,
    fzsGetZoneMemberList,
    fzsGetZoneAliasMemberList,
    fzsGetActiveZonesetName,
    fzsGetZoningLimitations,
    zonesetCreate,
    zonesetDestroy,
    zoneCreate,
    zoneSetType,
    zoneDestroy,
    fzsAddZoneset,
    fzsCreateZone,
    fzsAddZoneAlias,
    fzsAddZone,
    fzsAddZoneMembers,
    fzsAddZoneAliasMembers,
    fzsRemoveZoneset,
    fzsDeleteZone,
    fzsActivateZoneset,
    fzsDeactivateZoneset,
    receiveEvents,
};

// In the order of the enumeration.
constexpr std::string_view kCallNames[] = {
    "xpl_smlGetBatch",
    "xpl_smlBatchSet",
    "xpl_smlBatchCimSet",
    "xpl_smlGetV",
    "xpl_smlGet",
    "xpl_smlSetV",
    "xpl_swSwitchGetConfig",
    "xpl_swSwitchSetConfig",
    "xpl_swSwitchForceReset",
    "xpl_swPortGetConfig",
    "xpl_swPortSetConfig",
    "get_Local_Switch_World_Wide_Name",
    "get_Principal_Switch_World_Wide_Name",
    "get_Switch_ChassisPartNum",
    "get_Switch_ChassisSerialNum",
    "get_Switch_PlanarPartNum",
    "get_Switch_Brand_Name",
    "get_Product_Info",
    "get_first_attached_port",
    "get_next_attached_port",
    "VPD_Client::read_product_name",
    "xpl_fcsGetSwitchList",
    "xpl_fcsGetPortList",
    "xpl_fcsGetPortTopology",
    "DataCache::dcRdLock",
    "DataCache::getFabric",
    "FabricCache::getFabricWwn",
    "FabricCache::getFirstSwitch",
    "FabricCache::getNextSwitch",
    "SwitchCache::getWwn",
    "SwitchCache::getDomainID",
    "SwitchCache::isLocal",
    "SwitchCache::getFirstPort",
    "SwitchCache::getNextPort",
    "DataCache::getRootSwitchWwn",
    "DataCache::isTransparentSwitch",
    "DataCache::getSwitchFaults",
    "DataCache::getFirstRootPortIndex",
    "DataCache::getNextRootPortIndex",
    "DataCache::getPortHWType",
    "DataCache::calcPortWwn",
    "DataCache::calcPortIndex",
    "get_Active_ZoneSet",
    "formatMemberId",
    "getZoningEditMode",
    "saveZoningEdit",
    "cancelZoningEdit",
    "xpl_fzsGetZonesetList",
    "xpl_fzsGetZoneList",
    "xpl_fzsGetZoneAliasList",
    "xpl_fzsGetZonesetZoneList",
    "xpl_fzsGetZoneType",
    "xpl_fzsGetZoneMemberList",
    "xpl_fzsGetZoneAliasMemberList",
    "xpl_fzsGetActiveZonesetName",
    "xpl_fzsGetZoningLimitations",
    "xpl_ZonesetCreate",
    "xpl_ZonesetDestroy",
    "xpl_ZoneCreate",
    "xpl_ZoneSetType",
    "xpl_ZoneDestroy",
    "xpl_fzsAddZoneset",
    "xpl_fzsCreateZone",
    "xpl_fzsAddZoneAlias",
    "xpl_fzsAddZone",
    "xpl_fzsAddZoneMembers",
    "xpl_fzsAddZoneAliasMembers",
    "xpl_fzsRemoveZoneset",
    "xpl_fzsDeleteZone",
    "xpl_fzsActivateZoneset",
    "xpl_fzsDeactivateZoneset",
    "xpl_swReceiveEvents",
};

constexpr std::size_t kCallCount = sizeof kCallNames / sizeof kCallNames[0];
static_assert(kCallCount == static_cast<std::size_t>(Call::receiveEvents) + 1, "one name for each call");

constexpr std::string_view nameOf(Call call)
{
    return kCallNames[static_cast<std::size_t>(call)];
}

constexpr std::optional<Call> callNamed(std::string_view name)
{
    for (std::size_t i = 0; i < kCallCount; ++i)
        if (kCallNames[i] == name)
            return static_cast<Call>(i);
    return std::nullopt;
}

} // namespace simulator

#endif
