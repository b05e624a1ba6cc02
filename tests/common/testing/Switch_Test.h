// Fixture of tests that drive real providers against a simulated switch.
#ifndef TESTS_COMMON_TESTING_SWITCH_TEST_H
#define TESTS_COMMON_TESTING_SWITCH_TEST_H

#include "common/map_locks.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/common/testing/Served.h"
#include "tests/common/testing/described.h"
#include "tests/common/testing/failures.h"
#include "tests/support/Log_Capture.h"
#include "tests/support/Manual_Clock.h"

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// The World Wide Name of the simulated switch as it comes.
inline const std::string kLocalWwn = "100002a5c0de0001";

// A switch of four ports; every map of the module is stale at the start.
class Switch_Test : public testing::Test
{
  protected:
    typedef std::map<std::string, std::string> Description;

    Switch_Test() : sim(simulator::SimSwitch::make()) { makeMapsStale(); }
    ~Switch_Test() override
    {
        makeMapsStale();
        // Whatever a test did, nothing of the platform's stays with the providers.
        EXPECT_EQ(sim.heldCacheLocks(), 0);
        EXPECT_EQ(sim.outstandingBlocks(), 0u);
    }

    // Every instance that the provider serves, described; a failed enumeration fails the test.
    template <class PROVIDER>
    std::vector<Description> instances()
    {
        std::vector<Description> result;
        const Served served = serve<PROVIDER>([&](const typename PROVIDER::Class& instance)
                                              { result.push_back(described(instance)); });
        EXPECT_EQ(served.status, 0);
        return result;
    }

    // A load of the stale map fails with this log line (without its line number; empty: with none), leaves
    // the map stale and gives back everything that it took from the platform.
    template <class PROVIDER>
    void expectLoadFails(const std::string& logged)
    {
        cimple::VRAX_Maps::getInstance()->InstMapForceUnload(PROVIDER::kIndex);
        const Log_Capture log;
        EXPECT_EQ(PROVIDER().load(), 30) << logged;
        EXPECT_EQ(log.texts(),
                  logged.empty() ? std::vector<std::string>() : std::vector<std::string>{logged});
        EXPECT_FALSE(cimple::VRAX_Maps::getInstance()->InstMapIsFresh(PROVIDER::kIndex));
        EXPECT_EQ(sim.heldCacheLocks(), 0) << logged;
        EXPECT_EQ(sim.outstandingBlocks(), 0u) << logged;
    }

    // Writes down which of these calls come from a thread that holds the map's write lock: it is refused the
    // read lock.
    void noteCallsUnderLock(cimple::providerEnum_t map,
                            const std::vector<std::string>& calls,
                            std::vector<std::string>& noted)
    {
        for (const std::string& call : calls)
        {
            sim.onCall(call,
                       [map, call, &noted]
                       {
                           if (!cimple::MapRdLock(map).obtained())
                               noted.push_back(call);
                       });
        }
    }

    // From here on a walk that does not end fails its load, until the switch's next restore() or open().
    void boundWalks()
    {
        for (const char* call : {"DataCache::getNextRootPortIndex",
                                 "FabricCache::getNextSwitch",
                                 "SwitchCache::getNextPort",
                                 "get_next_attached_port",
                                 "xpl_smlGetBatch"})
        {
            sim.onCall(call,
                       [count = 0]() mutable
                       {
                           if (++count > 1000)
                               throw std::runtime_error("a walk without an end");
                       });
        }
    }

    simulator::SimSwitch sim;
    Manual_Clock clock;
};

#endif
