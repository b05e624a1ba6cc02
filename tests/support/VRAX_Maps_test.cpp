// Tests of the map registry: freshness, locks and the maps themselves.
#include "support/VRAX_Maps.h"

#include "Manual_Clock.h"

#include "VRAX_Namespace.h"
#include "VRAX_ObjectManager.h"

#include <cerrno>
#include <cstdlib>
#include <map>
#include <set>
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
    const std::uint32_t before = maps().loadCount(map);
    writing.load(7);
    EXPECT_EQ(maps().loadCount(map), before + 1);
    EXPECT_EQ(maps().builtFrom(map), 7u);
    clock.advance(kFreshnessMilliseconds - 100);
    EXPECT_TRUE(maps().InstMapIsFresh(map));
    EXPECT_FALSE(maps().InstMapIsFresh(VRAX_ZoneSet_Idx)) << "another map";
    clock.advance(100);
    EXPECT_FALSE(maps().InstMapIsFresh(map));
    maps().InstMapChanged(map);
    EXPECT_FALSE(maps().InstMapIsFresh(map)) << "a change is no load";
}

// What a load brought stays until the next one; what a failed load left behind is gone at once.
TEST(VraxMaps, OnlyAFailedLoadOrAClearEmptiesTheMap)
{
    const providerEnum_t index = VRAX_Namespace_Idx;
    Inst_Map& map = maps().map<VRAX_Namespace>();
    const std::pair<void (VRAX_Maps::*)(providerEnum_t), bool> rows[] = {
        {&VRAX_Maps::InstMapForceUnload, false},
        {&VRAX_Maps::InstMapChanged, false},
        {&VRAX_Maps::InstMapLoadSetFailed, true},
        {&VRAX_Maps::InstMapClear, true},
    };
    const Writing writing(index);
    for (const auto& [happen, emptied] : rows)
    {
        maps().InstMapClear(index);
        map._insert(nameSpace("root/interop"));
        writing.load();
        const std::uint32_t contents = maps().loadCount(index);
        (maps().*happen)(index);
        const bool isChange = happen == &VRAX_Maps::InstMapChanged;
        EXPECT_EQ(map.size(), emptied ? 0u : 1u);
        EXPECT_EQ(maps().InstMapIsComplete(index), !emptied);
        EXPECT_EQ(maps().InstMapIsFresh(index), isChange);
        EXPECT_EQ(maps().loadCount(index), contents + (isChange ? 1 : 0));
    }
    maps().InstMapClear(index);
}

TEST(VraxMaps, WhoHoldsALockIsToldOrCounted)
{
    ASSERT_EQ(maps().wrLock(VRAX_ZoneAlias_Idx), 0);
    EXPECT_EQ(maps().wrLock(VRAX_ZoneAlias_Idx), EDEADLK);
    EXPECT_EQ(maps().rdLock(VRAX_ZoneAlias_Idx), EDEADLK);
    maps().unlock(VRAX_ZoneAlias_Idx);
    Association_Load_Mutex& mutex = maps().associationLoadMutex();
    mutex.lock();
    mutex.lock();
    mutex.unlock();
    mutex.unlock();

    // Free again, also for others.
    int result = -1;
    const auto take = [&]
    {
        mutex.lock();
        result = maps().wrLock(VRAX_ZoneAlias_Idx);
        maps().unlock(VRAX_ZoneAlias_Idx);
        mutex.unlock();
    };
    std::thread(take).join();
    EXPECT_EQ(result, 0);
}

TEST(VraxMaps, AWriterGoesBeforeReadersThatAskAfterIt)
{
    constexpr int kTries = 100000;
    const providerEnum_t map = VRAX_ZoneAlias_Idx;
    ASSERT_EQ(maps().rdLock(map), 0);
    std::thread writer([&] { const Writing writing(map); });
    bool writerWaits = false; // readers overlap until it has asked
    for (int i = 0; i < kTries && !writerWaits; ++i)
    {
        writerWaits = maps().lockOf(map).tryRead() == EBUSY;
        if (!writerWaits)
            maps().lockOf(map).unlock();
        std::this_thread::yield();
    }
    EXPECT_TRUE(writerWaits) << "readers still get in";
    maps().unlock(map);
    writer.join();
}

TEST(VraxMaps, HandsOutOneMapPerClassToAllThreads)
{
    std::vector<std::thread> threads;
    std::vector<Inst_Map*> seen(8, nullptr);
    for (Inst_Map*& place : seen) // of a class that nobody has asked for yet
        threads.emplace_back([&place] { place = &maps().map<VRAX_ObjectManager>(); });
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

    EXPECT_EQ(VRAX_Maps::getNameFromInstanceID("VRAX:10000000C9000001:zone").value(), "zone");
    EXPECT_EQ(VRAX_Maps::getNameFromInstanceID("VRAX:").value(), "");
    EXPECT_FALSE(VRAX_Maps::getNameFromInstanceID("Record Log"));
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

// Requests go on while the process exits: this is destroyed after everything that is made after main() began.
struct Late_Request
{
    bool comes = false;
    ~Late_Request()
    {
        if (!comes)
            return;
        maps().rdLock(VRAX_Namespace_Idx);
        if (maps().map<VRAX_Namespace>().size() != 1)
            std::_Exit(1);
        maps().unlock(VRAX_Namespace_Idx);
    }
} lateRequest;

TEST(VraxMapsDeathTest, OutlivesTheExitOfTheProcess)
{
    const auto exitWhileServing = []
    {
        maps().wrLock(VRAX_Namespace_Idx);
        maps().map<VRAX_Namespace>()._insert(nameSpace("root/interop"));
        maps().unlock(VRAX_Namespace_Idx);
        lateRequest.comes = true;
        std::exit(0);
    };
    EXPECT_EXIT(exitWhileServing(), testing::ExitedWithCode(0), "");
}

// Numbers are part of what the module's users know; ranks decide which locks may be taken together. A change
// to either must be meant: the sums are over all classes, in the order of their numbers and of their ranks.
TEST(ProviderEnum, NumbersAndRanksAreTheseOfTheClasses)
{
    const auto sum = [](std::uint32_t before, const std::string& text)
    {
        for (const char c : text)
            before = (before ^ static_cast<unsigned char>(c)) * 16777619U;
        return before;
    };
    std::string numbered;
    std::map<int, std::string> ranked;
    for (std::size_t i = 0; i < kMapCount; ++i)
    {
        const auto map = static_cast<providerEnum_t>(i);
        numbered += mapClassName(map) + std::string(" ");
        std::string& ofRank = ranked[mapRank(map)];
        EXPECT_TRUE(ofRank.empty() || mapRank(map) == kAssociationRank) << mapClassName(map);
        ofRank += mapClassName(map) + std::string(" ");
    }
    std::string order;
    for (const auto& [rank, names] : ranked)
        order += names + ";";
    EXPECT_EQ(ranked.begin()->first, kAssociationRank);
    EXPECT_EQ(sum(2166136261U, numbered), 1273899251U) << numbered;
    EXPECT_EQ(sum(2166136261U, order), 3466204706U) << order;
}

} // namespace
} // namespace cimple
