// Tests of the data cache: walks, names of ports, and its lock.
#include "platform/data_cache.h"

#include "simulator/engine/CacheLock.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

using namespace simulator;

namespace
{

TEST(DataCache, WalksPortsInNumericOrder)
{
    const SimSwitch sim = SimSwitch::make().ports(12);
    EXPECT_EQ((std::vector<std::string>{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"}),
              portWalk());
    for (const char* bad : {"", "11", "x", "-1", "01", "99999999999"})
        EXPECT_EQ("", DataCache::instance()->getNextRootPortIndex(bad)) << bad;
}

TEST(DataCache, WalksSwitchesByDomainAndTheirPortsByEntry)
{
    SimSwitch sim = SimSwitch::make().domain(5).ports(1).remote(239, 2).remote(2, 1);
    const FabricCache* fabric = DataCache::instance()->getFabric(1);
    EXPECT_EQ(nullptr, DataCache::instance()->getFabric(0));
    EXPECT_EQ(nullptr, DataCache::instance()->getFabric(2));
    EXPECT_EQ(nullptr, fabric->getNextSwitch(nullptr));

    const std::vector<SwitchCache*> walk = switchWalk();
    ASSERT_EQ(3u, walk.size());
    const auto [two, five, last] = std::make_tuple(walk[0], walk[1], walk[2]);
    EXPECT_EQ(2, two->getDomainID());
    EXPECT_EQ(5, five->getDomainID());
    EXPECT_TRUE(five->isLocal());
    EXPECT_FALSE(two->isLocal());
    EXPECT_EQ(DataCache::instance()->getRootSwitchWwn(), five->getWwn());
    EXPECT_EQ(two->getWwn(), fabric->getFabricWwn()) << "the lowest domain is the principal";

    const PortCache first = last->getFirstPort();
    const PortCache second = last->getNextPort(first);
    EXPECT_EQ(0, first.getEntryNumber());
    EXPECT_EQ("200102a5c0de1239", second.getWwn().toString());
    EXPECT_TRUE(last->getNextPort(second).isNull());

    sim.removeSwitch(2);
    EXPECT_TRUE(two->getWwn().empty()) << "a switch that left has nothing to tell";
    EXPECT_EQ(five, fabric->getFirstSwitch());
}

TEST(DataCache, ConvertsBetweenIndexAndWwn)
{
    const SimSwitch sim = SimSwitch::make()
                              .wwn("100002A5C0DE00aB")
                              .ports(300)
                              .port(299, [](PortScenario& port) { port.hardware = PortHardware::ethernet; });
    DataCache* cache = DataCache::instance();
    const Wwn root = cache->getRootSwitchWwn();
    struct
    {
        const char* switchWwn;
        const char* index;
        const char* portWwn;
    } const rows[] = {
        {"100002A5C0DE00aB", "0", "200002A5C0DE00aB"},
        {"100002a5c0de00ab", "10", "200a02A5C0DE00aB"}, // in the cache's letter case, whatever the question's
        {"100002A5C0DE00aB", "299", "212b02A5C0DE00aB"},
        {"100002A5C0DE00aB", "300", ""},
        {"100002A5C0DE00aB", "", ""},
        {"100002A5C0DE00aC", "0", ""},
        {"", "0", ""},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(row.portWwn, cache->calcPortWwn(Wwn(row.switchWwn), row.index).toString()) << row.index;
        if (*row.portWwn != '\0')
            EXPECT_EQ(row.index, cache->calcPortIndex(Wwn(row.switchWwn), Wwn(row.portWwn)));
    }
    for (const char* bad :
         {"212C02a5c0de00ab", "100002A5C0DE00aB", "212b02a5c0de00ac", "212b", "", "2xxx02A5C0DE00aB"})
        EXPECT_EQ("", cache->calcPortIndex(root, Wwn(bad))) << bad;
    EXPECT_EQ("43", cache->calcPortIndex(root, Wwn("202B02a5c0DE00AB")));
    EXPECT_EQ(kPortHWTypeEthernet, cache->getPortHWType("299"));
    EXPECT_EQ(kPortHWTypeFibreChannel, cache->getPortHWType("0"));
    EXPECT_EQ(0, cache->getPortHWType("300"));
}

// Starts a writer and returns once it waits for the readers to leave.
std::future<void> waitingWriter(SimSwitch& sim)
{
    auto done = std::async(std::launch::async, [&sim] { sim.removeSwitch(2); });
    while (sim.cacheWriters() == 0)
        std::this_thread::yield();
    return done;
}

TEST(CacheReadLock, IsGrantedAgainToItsHolderWhileAWriterWaits)
{
    SimSwitch sim = SimSwitch::make().remote(2, 1);
    DataCache* cache = DataCache::instance();
    ASSERT_EQ(0, cache->dcRdLock());
    auto writer = waitingWriter(sim);
    ASSERT_EQ(0, cache->dcRdLock()) << "would hang if the holder queued behind the writer";
    EXPECT_EQ(2u, switchWalk().size()) << "the fabric stands still";
    cache->dcRdUnlock();
    EXPECT_EQ(2u, switchWalk().size()) << "and until the last unlock";
    EXPECT_EQ(1, sim.heldCacheLocks());
    cache->dcRdUnlock();
    writer.get();
    EXPECT_EQ(1u, switchWalk().size());
    EXPECT_EQ(0, sim.heldCacheLocks());
}

TEST(CacheReadLock, LetsAWaitingWriterGoBeforeNewReaders)
{
    SimSwitch sim = SimSwitch::make().remote(2, 1);
    DataCache* cache = DataCache::instance();
    ASSERT_EQ(0, cache->dcRdLock());
    auto writer = waitingWriter(sim);
    const auto countSwitches = [cache]
    {
        cache->dcRdLock();
        const std::size_t count = switchWalk().size();
        cache->dcRdUnlock();
        return count;
    };
    auto reader = std::async(std::launch::async, countSwitches);
    // Room for a reader that does not wait as it should.
    for (int i = 0; i < 10000 && sim.heldCacheLocks() == 1; ++i)
        std::this_thread::yield();
    cache->dcRdUnlock();
    EXPECT_EQ(1u, reader.get()) << "after the writer";
    writer.get();
}

TEST(CacheReadLockDeathTest, MisuseStopsTheProgram)
{
    EXPECT_DEATH(DataCache::instance()->dcRdUnlock(),
                 "dcRdUnlock by a thread that does not hold the read lock");
    SimSwitch sim = SimSwitch::make().remote(2, 1);
    EXPECT_DEATH(
        {
            DataCache::instance()->dcRdLock();
            sim.removeSwitch(2);
        },
        "changes the fabric while it holds the read lock");
}

} // namespace
