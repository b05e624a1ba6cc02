// Tests of the load of associations and composites: end maps, staleness, locks and failures.
#include "tests/common/testing/Served.h"
#include "tests/common/testing/fake_providers.h"
#include "tests/support/Manual_Clock.h"

#include <thread>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

typedef Script<VRAX_ObjectManager> Managers;
typedef Script<VRAX_Namespace> Names;
typedef Pairs_Provider::Played Pairs;
typedef Script<VRAX_FCPortStatistics> Ports;
typedef Script<VRAX_StatisticsCollection> Collections;
typedef Nested_Provider::Played Nested;

constexpr providerEnum_t kMaps[] = {Pairs_Provider::kIndex,
                                    Nested_Provider::kIndex,
                                    Manager_Provider::kIndex,
                                    Names_Provider::kIndex,
                                    Collection_Provider::kIndex,
                                    Ports_Provider::kIndex};

// Fails by not returning when another thread cannot have the association-load mutex.
void expectAssociationLoadMutexIsFree()
{
    std::thread([] { Association_Load_Lock lock; }).join();
}

// The same for every lock.
void expectAllLocksAreFree()
{
    expectAssociationLoadMutexIsFree();
    std::thread(
        []
        {
            for (const providerEnum_t map : kMaps)
                EXPECT_TRUE(MapWrLock(map).obtained()) << mapClassName(map);
        })
        .join();
}

class AssociationProvider : public testing::Test
{
  protected:
    void SetUp() override { resetFakeProviders(); }
    void TearDown() override
    {
        expectAllLocksAreFree();
        resetFakeProviders();
    }
    static VRAX_Maps& maps() { return *VRAX_Maps::getInstance(); }

    Manual_Clock clock;
};

// What makes the pairs stale, and what is then built again.
TEST_F(AssociationProvider, IsBuiltAgainWhenAnEndIs)
{
    struct Row
    {
        const char* what;
        std::function<void()> happen;
        int managers, names, pairs; // further builds
    };
    const Row rows[] = {
        {"nothing", [] {}, 0, 0, 0},
        {"first end stale", [] { maps().InstMapForceUnload(Manager_Provider::kIndex); }, 1, 0, 1},
        {"second end stale", [] { maps().InstMapForceUnload(Names_Provider::kIndex); }, 0, 1, 1},
        {"own map stale", [] { maps().InstMapForceUnload(Pairs_Provider::kIndex); }, 0, 0, 1},
        {"end unloaded by the server", [] { Names_Provider().unload(); }, 0, 1, 1},
        {"all out of date", [] { Manual_Clock::outlive(); }, 1, 1, 1},
        {"end stale and loaded by a request of its own",
         []
         {
             maps().InstMapForceUnload(Names_Provider::kIndex);
             serve<Names_Provider>();
         },
         0,
         1,
         1},
    };
    for (const Row& row : rows)
    {
        resetFakeProviders();
        ASSERT_EQ(serve<Pairs_Provider>().count, 1u);
        row.happen();
        EXPECT_EQ(serve<Pairs_Provider>().count, 1u) << row.what;
        EXPECT_EQ(Managers::builds, 1 + row.managers) << row.what;
        EXPECT_EQ(Names::builds, 1 + row.names) << row.what;
        EXPECT_EQ(Pairs::builds, 1 + row.pairs) << row.what;
    }
}

TEST_F(AssociationProvider, BuildsWithoutTheMutexButUnderItsMapLocks)
{
    Pairs::instead = [](auto&)
    {
        expectAssociationLoadMutexIsFree();
        for (const providerEnum_t map :
             {Pairs_Provider::kIndex, Manager_Provider::kIndex, Names_Provider::kIndex})
            EXPECT_FALSE(MapWrLock(map).obtained()) << mapClassName(map);
    };
    EXPECT_EQ(Pairs_Provider().load(), LOAD_OK);
    EXPECT_EQ(Pairs::builds, 1);
}

TEST_F(AssociationProvider, AnswersNoAssociationRequestsItself)
{
    Pairs_Provider provider;
    EXPECT_EQ(provider.enum_associator_names(nullptr, "", "", "", nullptr), 111);
    EXPECT_EQ(provider.enum_references(nullptr, nullptr, "", nullptr), 121);
    EXPECT_EQ(provider.enum_associators(nullptr, "", "", "", nullptr), 171);
    EXPECT_EQ(Pairs::builds, 0);
}

// The end is itself built from another class, and asks for the mutex and for locks that are held already.
TEST_F(AssociationProvider, LoadsACompositeEnd)
{
    constexpr Map_List locks = Nested_Provider::lockList();
    static_assert(locks.size() == 4 && locks[0] == Nested_Provider::kIndex &&
                      locks[1] == Manager_Provider::kIndex && locks[2] == Collection_Provider::kIndex &&
                      locks[3] == Ports_Provider::kIndex,
                  "own map first, then by rank, the end of the composite among them");
    EXPECT_EQ(Nested_Provider().load(), LOAD_OK);
    EXPECT_EQ(Ports::builds, 1);
    EXPECT_EQ(Collections::builds, 1);
    EXPECT_EQ(Nested::builds, 1);
}

// A composite that looks fresh is stale when its own end is.
TEST_F(AssociationProvider, IsBuiltAgainWhenTheEndOfACompositeEndIs)
{
    ASSERT_EQ(Nested_Provider().load(), LOAD_OK);
    maps().InstMapForceUnload(Ports_Provider::kIndex);
    EXPECT_TRUE(maps().InstMapIsFresh(Collection_Provider::kIndex));
    EXPECT_EQ(Nested_Provider().load(), LOAD_OK);
    EXPECT_EQ(Ports::builds, 2);
    EXPECT_EQ(Collections::builds, 2);
    EXPECT_EQ(Nested::builds, 2);
}

TEST_F(AssociationProvider, AFailureInsideACompositeEndFreesTheMutexAsOftenAsItWasTaken)
{
    Ports::instead = [](Map_Writer<VRAX_FCPortStatistics>&) { failSilently(); };
    EXPECT_EQ(Nested_Provider().load(), LOAD_FAILED);
    EXPECT_EQ(Collections::builds, 0);
    expectAllLocksAreFree();
    Ports::instead = nullptr;
    Collections::instead = [](Map_Writer<VRAX_StatisticsCollection>&) { failSilently(); };
    EXPECT_EQ(Nested_Provider().load(), LOAD_FAILED);
    EXPECT_EQ(Nested::builds, 0);
}

// Associations with common ends, their ends and unloads, all at once: no deadlock, and whole answers.
TEST_F(AssociationProvider, LoadsInParallelWithItsEndsAndOtherAssociations)
{
    constexpr int kRounds = 100;
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    const auto run = [&](auto work)
    {
        threads.emplace_back(
            [work]
            {
                for (int round = 0; round < kRounds; ++round)
                    work();
            });
    };
    for (int i = 0; i < 2; ++i)
    {
        run(
            [&]
            {
                const Served served =
                    serve<Pairs_Provider>([&](const VRAX_NamespaceInManager& pair)
                                          { wrong += pair.Antecedent->Description.value != "manager"; });
                wrong += served.status != ENUM_INSTANCES_OK || served.count != 1;
            });
        run([&] { wrong += serve<Nested_Provider>().status != ENUM_INSTANCES_OK; });
    }
    run([&] { wrong += serve<Manager_Provider>().count != 1; });
    run([&] { wrong += serve<Collection_Provider>().count != 1; });
    run([&] { Manager_Provider().unload(); });
    run([&] { clock.outlive(); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace cimple
