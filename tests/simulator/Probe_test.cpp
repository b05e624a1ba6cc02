// Tests of the test handle itself: its counts, from which tests conclude what did not happen, and failures.
#include "platform/data_cache.h"
#include "platform/switch_config.h"
#include "simulator/testing/SimSwitch.h"
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
    for (const std::string& index : portWalk())
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

TEST(Failures, OfAKeyFailItsEntryAndOfABatchTheCall)
{
    SimSwitch sim = SimSwitch::make().ports(3);
    sim.failKey("Oper.UserPort.0.1.DiagStatus", 16);
    sim.failBatchWith("Oper.UserPort.0.2.");
    auto entries = batchOf({"Oper.UserPort.0.1.WWN", "Oper.UserPort.0.1.DiagStatus"});
    EXPECT_EQ(0, getBatch(entries));
    EXPECT_EQ(16, entries[0].status + entries[1].status);
    EXPECT_STREQ("", entries[1].value);
    entries = batchOf({"Oper.Switch.Echo.2", "Oper.UserPort.0.2.WWN"});
    EXPECT_EQ(XPL_UNREACHABLE, getBatch(entries));
}

template <class Call>
auto writeBatch(Call call, const char* key)
{
    return [=]
    {
        auto entries = batchOf({key});
        const int status = call(hSwitch, entries.data(), 1);
        return status != 0 ? status : entries[0].status;
    };
}

TEST(Writes, FailOnDemandAndAreCountedAndListedWhateverTheCall)
{
    constexpr const char* kCim = "Cmd.Cim.Listener.l1.Delete";
    constexpr const char* kOff = "Config.UserPort.0.0.ScanEnable.False";
    static const xpl_swSwitchConfig ofSwitch{};
    static const xpl_swPortConfig ofPort{};
    const struct
    {
        const char* call;
        std::string subject; // a key, or the name of a record
        std::function<int()> write;
    } ways[] = {
        {"xpl_smlBatchSet", kOff, writeBatch(xpl_smlBatchSet, kOff)},
        {"xpl_smlBatchCimSet", kCim, writeBatch(xpl_smlBatchCimSet, kCim)},
        {"xpl_smlSetV", kOff, [] { return setKey(kOff); }},
        {"xpl_swSwitchSetConfig", "switch", [] { return xpl_swSwitchSetConfig(hSwitch, &ofSwitch); }},
        {"xpl_swPortSetConfig", "port/1", [] { return xpl_swPortSetConfig(hSwitch, 1, &ofPort); }},
    };
    for (const auto& way : ways)
    {
        SCOPED_TRACE(way.call);
        const std::vector<std::string> once = {way.subject};
        const bool isRecord = way.subject.find('.') == std::string::npos;
        SimSwitch sim = SimSwitch::make();
        sim.failNext(way.call, 1, 101, 1); // the second one
        EXPECT_NE(101, way.write());
        EXPECT_EQ(101, way.write());
        EXPECT_EQ(once, sim.writes()) << "a call that fails writes nothing";
        EXPECT_EQ(2u, sim.calls(way.call));

        isRecord ? sim.failRecord(way.subject, 102) : sim.failKey(way.subject, 102);
        sim.mark();
        EXPECT_EQ(102, way.write());
        EXPECT_EQ(once, sim.writes()) << "what is refused is listed";
        EXPECT_EQ(isRecord ? 0u : 1u, sim.keyUses(way.subject));

        sim.restore();
        bool called = false;
        sim.onCall(way.call, [&called] { called = true; });
        sim.setLatency(way.call, std::chrono::milliseconds(3));
        const auto start = std::chrono::steady_clock::now();
        EXPECT_NE(102, way.write());
        EXPECT_LE(std::chrono::milliseconds(3), std::chrono::steady_clock::now() - start);
        EXPECT_TRUE(called);
    }
}

} // namespace
