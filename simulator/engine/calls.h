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
};

// In the order of the enumeration.
constexpr std::string_view kCallNames[] = {
    "xpl_smlGetBatch",
    "xpl_smlBatchSet",
    "xpl_smlBatchCimSet",
    "xpl_smlGetV",
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
};

constexpr std::size_t kCallCount = sizeof kCallNames / sizeof kCallNames[0];
static_assert(kCallCount == static_cast<std::size_t>(Call::calcPortIndex) + 1, "one name for each call");

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
