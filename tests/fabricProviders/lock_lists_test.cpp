// The maps that the load of each association locks, in order: what keeps loads of different classes from
// waiting for each other for ever.
#include "common/Composite_Provider.h"
#include "providers_includes.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

template <class PROVIDER>
auto locksOf(int) -> decltype(PROVIDER::lockList(), std::vector<int>())
{
    constexpr Map_List list = PROVIDER::lockList();
    std::vector<int> maps;
    for (std::size_t i = 0; i < list.size(); ++i)
        maps.push_back(list[i]);
    return maps;
}
// Other classes lock their own map only, if they have one.
template <class PROVIDER>
std::vector<int> locksOf(...)
{
    return {};
}

TEST(LockLists, AreTheseForEveryClassThatIsBuiltFromOthers)
{
    const std::map<std::string, std::vector<int>> expected = {
        {"CIM_IndicationSubscription", {104, 102, 103}},
        {"VRAX_ActiveConnection", {76, 72}},
        {"VRAX_CIMXMLCommMechanismForManager", {7, 1, 2}},
        {"VRAX_ContainedDomain", {77, 66, 67}},
        {"VRAX_DeviceSAPImplementation", {78, 69, 72}},
        {"VRAX_FCPortElementCapabilities", {37, 69, 23}},
        {"VRAX_FCPortElementSettingData", {36, 69, 22}},
        {"VRAX_FCPortRateStatisticalData", {29, 69, 17}},
        {"VRAX_FCPortStatisticalData", {28, 69, 16}},
        {"VRAX_FCSwitchAccessPoint", {41, 70, 40}},
        {"VRAX_FCSwitchCIMXMLCommMechanism", {12, 70, 2}},
        {"VRAX_FCSwitchConfigurationData", {38, 70}},
        {"VRAX_FCSwitchConformsToProfile", {10, 3, 70}},
        {"VRAX_FCSwitchConformsToSubProfile", {11, 4, 3, 70}},
        {"VRAX_FCSwitchElementCapabilities", {35, 70, 25}},
        {"VRAX_FCSwitchElementSettingData", {34, 70, 24}},
        {"VRAX_FCSwitchFCPort", {84, 70, 69}},
        {"VRAX_FCSwitchLogicalIOBlade", {47, 70, 43}},
        {"VRAX_FCSwitchObjectManager", {5, 70, 1}},
        {"VRAX_FCSwitchPackage", {32, 19, 70}},
        {"VRAX_FCSwitchPhysicalIOBlade", {48, 44, 70}},
        {"VRAX_FCSwitchProtocolEndPoint", {85, 70, 72}},
        {"VRAX_FCSwitchSoftware", {27, 70, 21}},
        {"VRAX_FCSwitchStatisticsCollection", {30, 70, 18}},
        {"VRAX_FCSwitchUseOfLog", {62, 58, 70}},
        {"VRAX_FCSwitchZone", {91, 70, 74}},
        {"VRAX_FCSwitchZoneAlias", {99, 70, 98}},
        {"VRAX_FCSwitchZoneSet", {89, 70, 73}},
        {"VRAX_FCSwitchZoningCapabilities", {97, 70, 94}},
        {"VRAX_FCSwitchZoningService", {96, 70, 95}},
        {"VRAX_FabricConformsToProfile", {9, 3, 67}},
        {"VRAX_FabricFCNode", {79, 67, 68}},
        {"VRAX_FabricFCPort", {80, 67, 69}},
        {"VRAX_FabricFCSwitch", {81, 67, 70}},
        {"VRAX_FabricLogicalNetwork", {82, 67, 71}},
        {"VRAX_FabricProtocolEndPoint", {83, 67, 72}},
        {"VRAX_FabricZone", {90, 67, 74}},
        {"VRAX_FabricZoneSet", {88, 67, 73}},
        {"VRAX_LogManagesRecord", {63, 58, 61}},
        {"VRAX_LogicalIOBladeFCPort", {45, 43, 69}},
        {"VRAX_ManagerConformsToProfile", {13, 3, 1}},
        {"VRAX_MemberOfFCNode", {87, 68, 69}},
        {"VRAX_MemberOfLogicalNetwork", {86, 71, 72}},
        {"VRAX_MemberOfStatisticsCollection", {31, 18, 16, 17}},
        {"VRAX_MemberOfZone", {100, 74, 98}},
        {"VRAX_MemberOfZoneSet", {92, 73, 74}},
        {"VRAX_NamespaceInManager", {6, 1, 0}},
        {"VRAX_PassThroughMapEntry", {39, 69}},
        {"VRAX_PhysicalChassisLocation", {57, 19, 56}},
        {"VRAX_PhysicalChassisRealizesPowerSupply", {55, 19, 54}},
        {"VRAX_PhysicalChassisRealizesTemperatureSensor", {51, 19, 50}},
        {"VRAX_PhysicalChassisRealizesVoltageSensor", {53, 19, 52}},
        {"VRAX_PhysicalIOBladeContainer", {49, 19, 44}},
        {"VRAX_ProductPhysicalChassis", {33, 20, 19}},
        {"VRAX_ProfileElementSoftwareIdentity", {14, 3, 21}},
        {"VRAX_RealizesLogicalIOBlade", {46, 44, 43}},
        {"VRAX_RecordLogConformsToProfile", {65, 3, 58}},
        {"VRAX_RecordLogElementCapabilities", {60, 58, 59}},
        {"VRAX_RegisteredSubProfile", {4, 3}},
        {"VRAX_SAPAvailableForFCSwitch", {42, 70, 40}},
        {"VRAX_SubProfileElementSoftwareIdentity", {15, 4, 3, 21}},
        {"VRAX_SubProfileRequiresProfile", {8, 4, 3}},
        {"VRAX_ZoneAliasElementSettingData", {101, 75, 74, 98}},
        {"VRAX_ZoneElementSettingData", {93, 75, 74, 98}},
        {"VRAX_ZoneMembership", {75, 74, 98}},
    };
    std::size_t found = 0;
#define VRAX_PROVIDER(kind, folder, cls)                                                                     \
    {                                                                                                        \
        const std::vector<int> locks = locksOf<cls##_Provider>(0);                                           \
        const auto row = expected.find(#cls);                                                                \
        found += row != expected.end();                                                                      \
        EXPECT_EQ(locks, row != expected.end() ? row->second : std::vector<int>()) << #cls;                  \
    }
#include "common/providers.def"
#undef VRAX_PROVIDER
    EXPECT_EQ(found, expected.size());
}

} // namespace
} // namespace cimple
