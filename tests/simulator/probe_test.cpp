// Tests of the test handle itself: its counts, from which tests conclude what did not happen, and failures.
#include "platform/data_cache.h"
#include "platform/switch_config.h"
#include "simulator/testing/sim_switch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

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

TEST(Failures, OfAKeyFailItsEntryAndOfABatchOrARecordTheCall)
{
    SimSwitch sim = SimSwitch::make().ports(3);
    sim.failKey("Oper.UserPort.0.1.DiagStatus", 16);
    sim.failBatchWith("Oper.UserPort.0.2.");
    auto port1 = batchOf({"Oper.UserPort.0.1.WWN", "Oper.UserPort.0.1.DiagStatus"});
    auto port2 = batchOf({"Oper.Switch.Echo.2", "Oper.UserPort.0.2.WWN"});
    EXPECT_EQ(0, getBatch(port1));
    EXPECT_EQ(0, port1[0].status);
    EXPECT_EQ(16, port1[1].status);
    EXPECT_STREQ("", port1[1].value);
    EXPECT_EQ(XPL_UNREACHABLE, getBatch(port2));

    xpl_swPortConfig record;
    sim.failRecord("port/1", 101);
    EXPECT_EQ(101, xpl_swPortGetConfig(hSwitch, 1, 0, &record));
    EXPECT_EQ(0, xpl_swPortGetConfig(hSwitch, 2, 0, &record));
    EXPECT_EQ(101, xpl_swPortSetConfig(hSwitch, 1, &record));
}

} // namespace
