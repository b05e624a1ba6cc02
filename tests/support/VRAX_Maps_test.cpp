// Tests of the map registry: freshness, locks and the maps themselves.
#include "support/VRAX_Maps.h"

#include "Manual_Clock.h"

#include "VRAX_Namespace.h"

#include <cerrno>
#include <set>
#include <string>
#include <thread>
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

TEST(VraxMaps, FreshFromASuccessfulLoadUntilThePeriodIsOver)
{
    const Manual_Clock clock;
    const providerEnum_t map = VRAX_Zone_Idx;
    EXPECT_FALSE(maps().InstMapIsFresh(map)) << "before the first load";

    maps().InstMapLoadSetOK(map);
    EXPECT_TRUE(maps().InstMapIsFresh(map));
    clock.advance(kFreshnessMilliseconds - 100);
    EXPECT_TRUE(maps().InstMapIsFresh(map));
    clock.advance(100);
    EXPECT_FALSE(maps().InstMapIsFresh(map));

    maps().InstMapLoadSetOK(map);
    EXPECT_TRUE(maps().InstMapIsFresh(map));
    maps().InstMapForceUnload(map);
    EXPECT_FALSE(maps().InstMapIsFresh(map));

    maps().InstMapLoadSetOK(map);
    maps().InstMapLoadSetFailed(map);
    EXPECT_FALSE(maps().InstMapIsFresh(map));
    EXPECT_FALSE(maps().InstMapIsFresh(VRAX_ZoneSet_Idx)) << "another map";
}

TEST(VraxMaps, FreshnessSurvivesTheWrapOfTheClock)
{
    const Manual_Clock clock;
    const providerEnum_t map = VRAX_ZoneAlias_Idx;
    // The 32-bit count of tenths of a second starts again after 13 years and a half.
    constexpr std::uint64_t kDay = 24 * 3600 * std::uint64_t(1000);
    for (int day = 0; day < 14 * 366; ++day)
    {
        clock.advance(kDay);
        maps().InstMapLoadSetOK(map);
        EXPECT_TRUE(maps().InstMapIsFresh(map));
        clock.outlive();
        EXPECT_FALSE(maps().InstMapIsFresh(map));
    }
}

TEST(VraxMaps, CountsLoadsAndChanges)
{
    const std::uint32_t before = maps().loadCount(VRAX_ZoneAlias_Idx);
    maps().InstMapLoadSetOK(VRAX_ZoneAlias_Idx);
    EXPECT_EQ(maps().loadCount(VRAX_ZoneAlias_Idx), before + 1);
    maps().InstMapForceUnload(VRAX_ZoneAlias_Idx);
    maps().InstMapLoadSetFailed(VRAX_ZoneAlias_Idx);
    EXPECT_EQ(maps().loadCount(VRAX_ZoneAlias_Idx), before + 1);
    maps().InstMapChanged(VRAX_ZoneAlias_Idx);
    EXPECT_EQ(maps().loadCount(VRAX_ZoneAlias_Idx), before + 2);
    EXPECT_FALSE(maps().InstMapIsFresh(VRAX_ZoneAlias_Idx)) << "a change is no load";
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

TEST(VraxMaps, AMapIsCompleteBetweenLoadAndClear)
{
    Inst_Map& map = maps().map<VRAX_Namespace>();
    const auto load = [&] { maps().InstMapLoadSetOK(VRAX_Namespace_Idx); };
    EXPECT_FALSE(map.complete());
    load();
    EXPECT_TRUE(map.complete());
    maps().InstMapForceUnload(VRAX_Namespace_Idx);
    EXPECT_TRUE(map.complete()) << "stale, but all there";
    map.clear();
    EXPECT_FALSE(map.complete());
    load();
    maps().InstMapLoadSetFailed(VRAX_Namespace_Idx);
    EXPECT_FALSE(map.complete());
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
    EXPECT_FALSE(VRAX_Maps::checkFlags(0));
    EXPECT_TRUE(VRAX_Maps::checkFlags(1));
    EXPECT_EQ(VRAX_Maps::formatInstanceID("Record Log"), "VRAX:Record Log");
    EXPECT_EQ(VRAX_Maps::getNameFromInstanceID("VRAX:Record Log"), "Record Log");
    for (const char* other : {"", "VRA", "Record Log", "vrax:Server"})
        EXPECT_EQ(VRAX_Maps::getNameFromInstanceID(other), "") << other;
}

TEST(ProviderEnum, EveryNumberIsAClassOfItsOwnWithARankOfItsOwn)
{
    std::set<std::string> names;
    std::set<int> ranks;
    std::size_t associations = 0;
    for (std::size_t i = 0; i < kMapCount; ++i)
    {
        const auto map = static_cast<providerEnum_t>(i);
        EXPECT_TRUE(names.insert(mapClassName(map)).second) << mapClassName(map);
        if (map == No_Class_Idx)
            continue;
        if (mapRank(map) == kAssociationRank)
            ++associations;
        else
            EXPECT_TRUE(ranks.insert(mapRank(map)).second) << mapClassName(map);
    }
    // All but VRAX_MemberOfZoneSet, which has a rank of its own, are associations without rank.
    EXPECT_EQ(associations, 62u);
    EXPECT_EQ(ranks.size(), 42u);
}

} // namespace
} // namespace cimple
