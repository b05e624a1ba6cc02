// Tests of the map registry: freshness, locks and the maps themselves.
#include "support/VRAX_Maps.h"

#include "Manual_Clock.h"

#include "VRAX_Namespace.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

VRAX_Maps& maps()
{
    return *VRAX_Maps::getInstance();
}

// Holds a map's write lock, as whoever loads it does.
class Writing
{
  public:
    explicit Writing(providerEnum_t map) : _map(map) { EXPECT_EQ(maps().wrLock(_map), 0); }
    ~Writing() { maps().unlock(_map); }
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

    void load(std::uint32_t builtFrom = 0) const
    {
        maps().InstMapLoadBegan(_map, builtFrom);
        maps().InstMapLoadSetOK(_map);
    }

  private:
    providerEnum_t _map;
};

Instance* nameSpace(const char* name)
{
    VRAX_Namespace* const instance = VRAX_Namespace::create(false);
    instance->Name.set(name);
    return instance;
}

TEST(VraxMaps, FreshFromASuccessfulLoadUntilThePeriodIsOver)
{
    const Manual_Clock clock;
    const providerEnum_t map = VRAX_Zone_Idx;
    const Writing writing(map);
    EXPECT_FALSE(maps().InstMapIsFresh(map)) << "before the first load";

    writing.load();
    EXPECT_TRUE(maps().InstMapIsFresh(map));
    clock.advance(kFreshnessMilliseconds - 100);
    EXPECT_TRUE(maps().InstMapIsFresh(map));
    clock.advance(100);
    EXPECT_FALSE(maps().InstMapIsFresh(map));

    writing.load();
    EXPECT_TRUE(maps().InstMapIsFresh(map));
    maps().InstMapForceUnload(map);
    EXPECT_FALSE(maps().InstMapIsFresh(map));
    EXPECT_FALSE(maps().InstMapIsFresh(VRAX_ZoneSet_Idx)) << "another map";
}

// What a load brought stays until the next one; what a failed load left behind is gone at once.
TEST(VraxMaps, OnlyAFailedLoadOrAClearEmptiesTheMap)
{
    const providerEnum_t index = VRAX_Namespace_Idx;
    Inst_Map& map = maps().map<VRAX_Namespace>();
    struct Row
    {
        const char* what;
        void (*happen)(VRAX_Maps&, providerEnum_t);
        bool emptied;
    };
    const Row rows[] = {
        {"made stale", [](VRAX_Maps& m, providerEnum_t i) { m.InstMapForceUnload(i); }, false},
        {"changed", [](VRAX_Maps& m, providerEnum_t i) { m.InstMapChanged(i); }, false},
        {"failed", [](VRAX_Maps& m, providerEnum_t i) { m.InstMapLoadSetFailed(i); }, true},
        {"cleared", [](VRAX_Maps& m, providerEnum_t i) { m.InstMapClear(i); }, true},
    };
    const Writing writing(index);
    for (const Row& row : rows)
    {
        maps().InstMapClear(index);
        map._insert(nameSpace("root/interop"));
        writing.load();
        row.happen(maps(), index);
        EXPECT_EQ(map.size(), row.emptied ? 0u : 1u) << row.what;
        EXPECT_EQ(maps().InstMapIsComplete(index), !row.emptied) << row.what;
    }
    maps().InstMapClear(index);
}

TEST(VraxMaps, CountsContentsAndKeepsTheMarkOfTheLastLoad)
{
    const providerEnum_t map = VRAX_ZoneAlias_Idx;
    const Writing writing(map);
    const std::uint32_t before = maps().loadCount(map);
    writing.load(7);
    EXPECT_EQ(maps().loadCount(map), before + 1);
    EXPECT_EQ(maps().builtFrom(map), 7u);
    maps().InstMapForceUnload(map);
    maps().InstMapLoadBegan(map);
    maps().InstMapLoadSetFailed(map);
    EXPECT_EQ(maps().loadCount(map), before + 1);
    maps().InstMapChanged(map);
    EXPECT_EQ(maps().loadCount(map), before + 2);
    EXPECT_FALSE(maps().InstMapIsFresh(map)) << "a change is no load";
}

TEST(VraxMaps, TheWriterOfAMapIsToldWhenItAsksAgain)
{
    ASSERT_EQ(maps().wrLock(VRAX_ZoneAlias_Idx), 0);
    EXPECT_EQ(maps().wrLock(VRAX_ZoneAlias_Idx), EDEADLK);
    EXPECT_EQ(maps().rdLock(VRAX_ZoneAlias_Idx), EDEADLK);
    maps().unlock(VRAX_ZoneAlias_Idx);

    // Free again, also for others.
    int result = -1;
    std::thread(
        [&]
        {
            result = maps().wrLock(VRAX_ZoneAlias_Idx);
            maps().unlock(VRAX_ZoneAlias_Idx);
        })
        .join();
    EXPECT_EQ(result, 0);
}

TEST(VraxMaps, TheAssociationLoadMutexCountsItsOwnersRequests)
{
    Association_Load_Mutex& mutex = maps().associationLoadMutex();
    mutex.lock();
    mutex.lock();
    mutex.unlock();
    mutex.unlock();
    bool entered = false;
    std::thread(
        [&]
        {
            mutex.lock();
            entered = true;
            mutex.unlock();
        })
        .join();
    EXPECT_TRUE(entered);
}

// A reader holds the lock all the time. A writer that asks now gets in before readers that ask later.
TEST(VraxMaps, AWriterGoesBeforeReadersThatAskAfterIt)
{
    constexpr int kTries = 100000;
    const providerEnum_t map = VRAX_ZoneAlias_Idx;
    ASSERT_EQ(maps().rdLock(map), 0);
    std::atomic<bool> written{false};
    std::thread writer(
        [&]
        {
            const Writing writing(map);
            written = true;
        });
    // Readers overlap until the writer has asked.
    bool writerWaits = false;
    for (int i = 0; i < kTries && !writerWaits; ++i)
    {
        writerWaits = maps().lockOf(map).tryRead() == EBUSY;
        if (!writerWaits)
            maps().lockOf(map).unlock();
        std::this_thread::yield();
    }
    EXPECT_TRUE(writerWaits) << "readers still get in";
    bool writtenBefore = false;
    std::thread reader(
        [&]
        {
            maps().rdLock(map);
            writtenBefore = written;
            maps().unlock(map);
        });
    EXPECT_FALSE(written);
    maps().unlock(map);
    reader.join();
    writer.join();
    EXPECT_TRUE(writtenBefore);
}

TEST(VraxMaps, HandsOutOneMapPerClassToAllThreads)
{
    std::vector<std::thread> threads;
    std::vector<Inst_Map*> seen(8, nullptr);
    for (Inst_Map*& place : seen)
        threads.emplace_back([&place] { place = &maps().map<VRAX_Namespace>(); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(std::set<Inst_Map*>(seen.begin(), seen.end()).size(), 1u);
}

TEST(VraxMaps, RegisteredProfileRowsAndIds)
{
    EXPECT_FALSE(VRAX_Maps::checkFlags(0, Switch_Role::Transparent));
    EXPECT_FALSE(VRAX_Maps::checkFlags(2, Switch_Role::Transparent));
    EXPECT_TRUE(VRAX_Maps::checkFlags(3, Switch_Role::Transparent));
    EXPECT_TRUE(VRAX_Maps::checkFlags(0, Switch_Role::Domain));
    EXPECT_EQ(VRAX_Maps::formatInstanceID("Record Log"), "VRAX:Record Log");

    const std::pair<const char*, const char*> names[] = {
        {"VRAX:Record Log", "Record Log"},
        {"VRAX:10000000C9000001:zone", "zone"},
        {"VRAX:", ""},
    };
    for (const auto& [id, name] : names)
    {
        const std::optional<String> found = VRAX_Maps::getNameFromInstanceID(id);
        ASSERT_TRUE(found) << id;
        EXPECT_EQ(*found, name) << id;
    }
    for (const char* other : {"", "Record Log"})
        EXPECT_FALSE(VRAX_Maps::getNameFromInstanceID(other)) << other;
}

#ifdef VRAX_LOCK_CHECKS
TEST(VraxMapsDeathTest, StopsWhoChangesAnInstanceInPlaceOrAMapWithoutItsLock)
{
    // Each way out of a map compares.
    void (*const leave[])(Inst_Map&) = {
        [](Inst_Map& map) { map.clear(); },
        [](Inst_Map& map) { map._remove(1); },
        [](Inst_Map& map) { map._delete_instance(map.at(1)); },
        [](Inst_Map& map) { map._modify_instance(map.at(1), map.at(1)); },
        [](Inst_Map& map) { map.takeAll(); },
        [](Inst_Map& map) { map.~Inst_Map(); },
    };
    for (const auto way : leave)
    {
        const auto change = [way]
        {
            auto* const map = new Inst_Map(&VRAX_Namespace::static_meta_class);
            for (const char* name : {"root/a", "root/b"})
                map->_insert(nameSpace(name));
            static_cast<VRAX_Namespace*>(map->at(1))->Description.set("changed");
            way(*map);
        };
        EXPECT_DEATH(change(), "VRAX_Namespace.*root/b.* was changed in place");
    }
    EXPECT_DEATH(maps().InstMapLoadSetOK(VRAX_Zone_Idx), "VRAX_Zone is changed without its write lock");
}
#endif

// An instance that is replaced, or leaves while others stay, is compared with its own copy.
TEST(InstMap, KeepsTrackOfWhichInstanceIsWhich)
{
    Inst_Map map(&VRAX_Namespace::static_meta_class);
    for (const char* name : {"root/a", "root/b", "root/c", "root/c"})
    {
        Instance* const instance = nameSpace(name);
        if (map._insert(instance) == static_cast<std::size_t>(-1))
            unref(instance);
    }
    ASSERT_EQ(map.size(), 3u);
    map._delete_instance(map.at(0));
    Instance* const changed = clone(map.at(1));
    static_cast<VRAX_Namespace*>(changed)->Description.set("changed");
    EXPECT_EQ(map._modify_instance(changed, changed), MODIFY_INSTANCE_OK);
    unref(changed);
    EXPECT_EQ(map._create_instance(map.at(1)), CREATE_INSTANCE_DUPLICATE);
    Instance* const first = map.at(0);
    map._remove(0);
    unref(first);
    EXPECT_EQ(static_cast<VRAX_Namespace*>(map.at(0))->Description.value, "changed");
}

// Requests go on while the process exits: this outlives everything that is made after main() began.
struct Busy_Exit
{
    static inline std::atomic<int> enumerations{0};
    static inline std::atomic<bool> busy{false};

    ~Busy_Exit()
    {
        constexpr int kMore = 100;
        for (const int before = enumerations; busy && enumerations < before + kMore;)
            std::this_thread::yield();
    }
} busyExit;

void exitWhileServing()
{
    {
        const Writing writing(VRAX_Namespace_Idx);
        maps().map<VRAX_Namespace>()._insert(nameSpace("root/interop"));
        writing.load();
    }
    const auto receive = [](Instance* instance, Enum_Instances_Status, void*)
    {
        unref(instance);
        ++Busy_Exit::enumerations;
        return true;
    };
    for (int i = 0; i < 2; ++i)
    {
        std::thread(
            [receive]
            {
                for (;;)
                {
                    maps().rdLock(VRAX_Namespace_Idx);
                    maps().map<VRAX_Namespace>()._enum_instances(nullptr, receive, nullptr);
                    maps().unlock(VRAX_Namespace_Idx);
                }
            })
            .detach();
    }
    Busy_Exit::busy = true;
    std::exit(0);
}

TEST(VraxMapsDeathTest, OutlivesTheExitOfTheProcess)
{
    EXPECT_EXIT(exitWhileServing(), testing::ExitedWithCode(0), "");
}

std::vector<std::string> words(const char* text)
{
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

// By number, without the prefix that most have.
constexpr char kClasses[] =
    "Namespace ObjectManager CIMXMLCommunicationMechanism RegisteredProfile RegisteredSubProfile "
    "FCSwitchObjectManager NamespaceInManager CIMXMLCommMechanismForManager SubProfileRequiresProfile "
    "FabricConformsToProfile FCSwitchConformsToProfile FCSwitchConformsToSubProfile "
    "FCSwitchCIMXMLCommMechanism ManagerConformsToProfile ProfileElementSoftwareIdentity "
    "SubProfileElementSoftwareIdentity FCPortStatistics FCPortRateStatistics StatisticsCollection "
    "PhysicalChassis Product SoftwareIdentity FCPortSettings FCPortCapabilities FCSwitchSettings "
    "FCSwitchCapabilities ConfigurationData FCSwitchSoftware FCPortStatisticalData "
    "FCPortRateStatisticalData FCSwitchStatisticsCollection MemberOfStatisticsCollection FCSwitchPackage "
    "ProductPhysicalChassis FCSwitchElementSettingData FCSwitchElementCapabilities "
    "FCPortElementSettingData FCPortElementCapabilities FCSwitchConfigurationData PassThroughMapEntry "
    "RemoteServiceAccessPoint FCSwitchAccessPoint SAPAvailableForFCSwitch LogicalIOBlade PhysicalIOBlade "
    "LogicalIOBladeFCPort RealizesLogicalIOBlade FCSwitchLogicalIOBlade FCSwitchPhysicalIOBlade "
    "PhysicalIOBladeContainer TemperatureSensor PhysicalChassisRealizesTemperatureSensor VoltageSensor "
    "PhysicalChassisRealizesVoltageSensor PowerSupply PhysicalChassisRealizesPowerSupply Location "
    "PhysicalChassisLocation RecordLog RecordLogCapabilities RecordLogElementCapabilities LogEntry "
    "FCSwitchUseOfLog LogManagesRecord (none) RecordLogConformsToProfile SAN Fabric FCNode FCPort FCSwitch "
    "LogicalNetwork ProtocolEndpoint ZoneSet Zone ZoneMembership ActiveConnection ContainedDomain "
    "DeviceSAPImplementation FabricFCNode FabricFCPort FabricFCSwitch FabricLogicalNetwork "
    "FabricProtocolEndPoint FCSwitchFCPort FCSwitchProtocolEndPoint MemberOfLogicalNetwork MemberOfFCNode "
    "FabricZoneSet FCSwitchZoneSet FabricZone FCSwitchZone MemberOfZoneSet ZoneElementSettingData "
    "ZoningCapabilities ZoningService FCSwitchZoningService FCSwitchZoningCapabilities ZoneAlias "
    "FCSwitchZoneAlias MemberOfZone ZoneAliasElementSettingData CIM_IndicationFilter "
    "CIM_ListenerDestinationCIMXML CIM_IndicationSubscription";

// In the order in which a thread may lock them; all others are associations and come before these.
constexpr int kByRank[] = {4,  3,  58, 59, 61, 20, 19, 50, 52, 54, 56, 44, 66,  67,
                           68, 70, 1,  0,  2,  40, 21, 24, 25, 26, 94, 43, 71,  69,
                           72, 22, 23, 18, 16, 17, 95, 92, 75, 73, 74, 98, 102, 103};

TEST(ProviderEnum, NumbersAndRanksAreTheseOfTheClasses)
{
    const std::vector<std::string> classes = words(kClasses);
    ASSERT_EQ(classes.size(), kMapCount);
    std::set<int> unranked;
    for (std::size_t i = 0; i < kMapCount; ++i)
    {
        const bool isWhole = classes[i].rfind("CIM_", 0) == 0 || classes[i][0] == '(';
        EXPECT_EQ(mapClassName(static_cast<providerEnum_t>(i)), (isWhole ? "" : "VRAX_") + classes[i]) << i;
        unranked.insert(static_cast<int>(i));
    }
    int last = kAssociationRank;
    for (const int map : kByRank)
    {
        const auto ranked = static_cast<providerEnum_t>(map);
        EXPECT_LT(last, mapRank(ranked)) << mapClassName(ranked);
        last = mapRank(ranked);
        unranked.erase(map);
    }
    for (const int map : unranked)
    {
        const auto association = static_cast<providerEnum_t>(map);
        EXPECT_EQ(mapRank(association), kAssociationRank) << mapClassName(association);
    }
}

} // namespace
} // namespace cimple
