// Tests of the test handle itself: counts, failures, values and hooks.
#include "platform/data_cache.h"
#include "platform/switch_server.h"
#include "simulator/testing/sim_switch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <future>

using namespace simulator;

namespace
{

TEST(Counts, OneBatchAPortAndNothingAfterIsProvable)
{
    SimSwitch sim = SimSwitch::make().ports(8);
    DataCache* cache = DataCache::instance();
    ASSERT_EQ(0, cache->dcRdLock());
    for (std::string index = cache->getFirstRootPortIndex(); !index.empty();
         index = cache->getNextRootPortIndex(index))
    {
        auto entries =
            batchOf({"Oper.UserPort.0." + index + ".OperState", "Oper.UserPort.0." + index + ".WWN"});
        ASSERT_EQ(0, getBatch(entries));
    }
    cache->dcRdUnlock();
    EXPECT_EQ(8u, sim.calls("xpl_smlGetBatch"));
    EXPECT_EQ(16u, sim.entries("xpl_smlGetBatch"));
    EXPECT_EQ(1u, sim.calls("DataCache::dcRdLock"));
    EXPECT_EQ(8u, sim.calls("DataCache::getNextRootPortIndex"));
    EXPECT_EQ(1u, sim.keyUses("Oper.UserPort.0.7.WWN"));
    ASSERT_EQ(8u, sim.batches().size());
    EXPECT_EQ((std::vector<std::string>{"Oper.UserPort.0.3.OperState", "Oper.UserPort.0.3.WWN"}),
              sim.batches()[3]);
    EXPECT_EQ(8u + 1u + 1u + 8u, sim.platformCalls());

    sim.mark();
    EXPECT_EQ(0u, sim.platformCalls());
    EXPECT_EQ(0u, sim.keyUses("Oper.UserPort.0.7.WWN"));
    EXPECT_TRUE(sim.batches().empty());
    sim.recordKeys(false);
    valueOf("Oper.Switch.WWN");
    EXPECT_EQ(1u, sim.calls("xpl_smlGetV"));
    EXPECT_EQ(0u, sim.keyUses("Oper.Switch.WWN"));
    EXPECT_THROW(sim.calls("xpl_smlGetBach"), std::invalid_argument);
    EXPECT_THROW(sim.failNext("dcRdLock"), std::invalid_argument);
    EXPECT_THROW(sim.setCounter(0, "TotalLip", 1), std::invalid_argument);
    EXPECT_THROW(sim.portDown(8), std::invalid_argument);
}

// The statuses of ten reads of a key.
std::vector<std::string> tenReads(const std::string& key)
{
    std::vector<std::string> result;
    for (int i = 0; i < 10; ++i)
    {
        const std::string value = valueOf(key);
        result.push_back(value.rfind("status ", 0) == 0 ? value.substr(7) : "ok");
    }
    return result;
}

TEST(Failures, ComeAsOftenAndAsLateAsAsked)
{
    SimSwitch sim = SimSwitch::make();
    sim.failNext("Oper.Switch.", 2, 99, 3);
    EXPECT_EQ((std::vector<std::string>{"ok", "ok", "ok", "99", "99", "ok", "ok", "ok", "ok", "ok"}),
              tenReads("Oper.Switch.WWN"));
    sim.failNext("xpl_smlGetV", 1, 42, 1);
    EXPECT_EQ((std::vector<std::string>{"ok", "42", "ok", "ok", "ok", "ok", "ok", "ok", "ok", "ok"}),
              tenReads("Oper.Switch.WWN"));
    sim.failKey("Oper.Switch.WWN", 77);
    EXPECT_EQ(std::vector<std::string>(10, "77"), tenReads("Oper.Switch.WWN"));
    EXPECT_EQ("sim-switch", valueOf("Config.Switch.SymName")) << "only the key that was named";
    EXPECT_EQ("1", valueOf("Oper.Switch.DomainID")) << "not keys that begin like it";
    sim.restore();
    EXPECT_EQ(std::vector<std::string>(10, "ok"), tenReads("Oper.Switch.WWN"));
}

TEST(Failures, OfAKeyFailItsEntryAndOfABatchTheCall)
{
    SimSwitch sim = SimSwitch::make().ports(3);
    sim.failKey("Oper.UserPort.0.1.DiagStatus", 16);
    auto entries = batchOf({"Oper.UserPort.0.1.WWN", "Oper.UserPort.0.1.DiagStatus"});
    EXPECT_EQ(0, getBatch(entries));
    EXPECT_EQ(16, entries[1].status);
    EXPECT_STREQ("", entries[1].value);
    EXPECT_EQ(0, entries[0].status);

    sim.failBatchWith("Oper.UserPort.0.2.");
    auto port1 = batchOf({"Oper.Switch.Echo.1", "Oper.UserPort.0.1.WWN"});
    auto port2 = batchOf({"Oper.Switch.Echo.2", "Oper.UserPort.0.2.WWN"});
    EXPECT_EQ(0, getBatch(port1));
    EXPECT_EQ(XPL_UNREACHABLE, getBatch(port2));

    sim.failKey("Config.UserPort.0.1.Type.E", 9);
    EXPECT_EQ(9, setKey("Config.UserPort.0.1.Type.E"));
    EXPECT_EQ("GL", valueOf("Config.UserPort.0.1.Type")) << "the write did not happen";
}

TEST(Failures, OfCallsWithoutStatusLeaveThemEmptyHanded)
{
    SimSwitch sim = SimSwitch::make().node(1, 0, "210002a5c0de0001");
    DataCache* cache = DataCache::instance();
    const Wwn root = cache->getRootSwitchWwn();
    for (const char* call : {"DataCache::calcPortWwn",
                             "DataCache::getFirstRootPortIndex",
                             "DataCache::getFabric",
                             "get_first_attached_port",
                             "FabricCache::getFirstSwitch"})
    {
        sim.failNext(call);
    }
    char address[kAttachedPortAddressSize];
    EXPECT_TRUE(cache->calcPortWwn(root, "0").empty());
    EXPECT_EQ("", cache->getFirstRootPortIndex());
    EXPECT_EQ(nullptr, cache->getFabric(1));
    EXPECT_EQ(0, get_first_attached_port("1", address));
    EXPECT_EQ(nullptr, cache->getFabric(1)->getFirstSwitch());
    EXPECT_FALSE(cache->calcPortWwn(root, "0").empty()) << "once was asked for";
}

TEST(Answers, TakeTheModelsPlace)
{
    SimSwitch sim = SimSwitch::make().ports(1);
    sim.answer("Oper.UserPort.0.0.RxBytePerf", "10");
    sim.answer("Oper.UserPort.0.9.OperState", "Odd"); // no such port
    EXPECT_EQ("10", valueOf("Oper.UserPort.0.0.RxBytePerf"));
    EXPECT_EQ("Odd", valueOf("Oper.UserPort.0.9.OperState"));
    sim.restore();
    EXPECT_EQ("status 2", valueOf("Oper.UserPort.0.9.OperState"));
}

TEST(Hooks, HoldACallWithoutHoldingTheSwitch)
{
    SimSwitch sim = SimSwitch::make().ports(2);
    std::promise<void> entered, release;
    auto released = release.get_future().share();
    sim.onCall("xpl_smlGetBatch",
               [&entered, released]
               {
                   entered.set_value();
                   released.wait();
               });
    auto held = std::async(std::launch::async,
                           []
                           {
                               auto entries = batchOf({"Oper.UserPort.0.1.OperState"});
                               getBatch(entries);
                               return std::string(entries[0].value);
                           });
    entered.get_future().wait();
    sim.portDown(1); // possible while the other call is held, and seen by it
    release.set_value();
    EXPECT_EQ("Offline", held.get());
    sim.onCall("xpl_smlGetBatch", nullptr);
    auto entries = batchOf({"Oper.UserPort.0.1.OperState"});
    EXPECT_EQ(0, getBatch(entries));
}

TEST(SimSwitch, EachTestStartsAfresh)
{
    {
        SimSwitch sim = SimSwitch::make().ports(9).uptimeSeconds(5);
        sim.failKey("Oper.Switch.WWN");
        sim.advance(std::chrono::seconds(1));
        EXPECT_EQ(6000u, sim.now());
    }
    const SimSwitch sim = SimSwitch::make().ports(2);
    EXPECT_EQ(0u, sim.now());
    EXPECT_EQ(0u, sim.platformCalls());
    EXPECT_EQ("100002a5c0de0001", valueOf("Oper.Switch.WWN"));
    EXPECT_EQ("status 2", valueOf("Oper.UserPort.0.2.WWN"));
    EXPECT_DEATH(SimSwitch(SimSwitch::make()), "two SimSwitch objects");
}

} // namespace
