// Tests of the port counters, the port rates and the statistics collection.
#include "platform/data_cache.h"
#include "switchProviders/VRAX_FCPortRateStatistics_Provider.h"
#include "switchProviders/VRAX_FCPortStatistics_Provider.h"
#include "switchProviders/VRAX_StatisticsCollection_Provider.h"
#include "tests/common/testing/Switch_Test.h"

#include <ctime>

namespace cimple
{
namespace
{

constexpr std::size_t kPorts = 4;
const std::string kRootWwn = "100002a5c0de0001";

std::string counterKey(int port, const std::string& counter)
{
    return "Oper.UserPort.0." + std::to_string(port) + ".C64." + counter;
}

class Statistics : public Switch_Test
{
  protected:
    // The instance of one port, without the properties that tests do not know beforehand.
    template <class PROVIDER>
    Description port(std::size_t number)
    {
        Description instance = instances<PROVIDER>().at(number);
        EXPECT_EQ(instance.erase("StatisticTime"), 1u);
        return instance;
    }
    static std::string portWwn(const std::string& index)
    {
        return DataCache::instance()->calcPortWwn(Wwn(kRootWwn), index).toString();
    }
};

// Every counter of a port with a value of its own: its place in the list, in hexadecimal.
TEST_F(Statistics, PublishesEachCounterInItsPropertyAndNoOtherProperty)
{
    struct Row
    {
        const char* counter;
        const char* property;
        unsigned factor;
    };
    const Row rows[] = {
        {"TotalLIPRecv", "LIPCount", 1},
        {"RxLinkResets", "LinkResetsReceived", 1},
        {"TxLinkResets", "LinkResetsTransmitted", 1},
        {"PrimSeqErrors", "PrimitiveSeqProtocolErrCount", 1},
        {"InvDestAddr", "AddressErrors", 1},
        {"Class3FramesIn", "RXClass3Frames", 1},
        {"Class3FramesOut", "TXClass3Frames", 1},
        {"Class2FramesIn", "RXClass2Frames", 1},
        {"Class2FramesOut", "TXClass2Frames", 1},
        {"DecodeErrors", "InvalidTransmissionWords", 1},
        {"LinkFailures", "LinkFailures", 1},
        {"LossOfSyncs", "LossOfSyncCounter", 1},
        {"InvalidCRCs", "CRCErrors", 1},
        {"TotalRxWords", "BytesReceived", 4},
        {"TotalTxWords", "BytesTransmitted", 4},
        {"TotalRxFrames", "PacketsReceived", 1},
        {"TotalTxFrames", "PacketsTransmitted", 1},
        {"FBusys", "FBSYFrames", 1},
        {"ShortFramesIn", "FramesTooShort", 1},
        {"LongFramesIn", "FramesTooLong", 1},
        {"FRejects", "FRJTFrames", 1},
        {"BBCR_FrameFailures", "BufferCreditNotProvided", 1},
        {"BBCR_RRDYFailures", "BufferCreditNotReceived", 1},
    };
    Description expected = {
        {"InstanceID", "VRAX:FCPortStatistics:" + kRootWwn + ":" + portWwn("2")},
        {"ElementName", "FC Port Statistics"},
    };
    std::vector<std::string> keys;
    unsigned value = 0x1f; // 31: decimal and hexadecimal reading differ from here on
    for (const Row& row : rows)
    {
        keys.push_back(counterKey(2, row.counter));
        char text[16];
        std::snprintf(text, sizeof(text), "%x", value);
        sim.answer(keys.back(), text);
        expected[row.property] = std::to_string(value * row.factor);
        ++value;
    }
    sim.mark();
    EXPECT_EQ(port<VRAX_FCPortStatistics_Provider>(2), expected);
    EXPECT_EQ(sim.batches().at(2), keys) << "the order of the batch";
}

TEST_F(Statistics, ParsesCountersAsHexadecimalOf64BitsAndRatesAsDecimal)
{
    struct Row
    {
        const char* text;
        const char* count;
        const char* bytes; // of a word counter
    };
    const Row rows[] = {
        {"1f", "31", "124"},
        {"10", "16", "64"},
        {"0", "0", "0"},
        {"1000000000", "68719476736", "274877906944"},
        {"ffffffffffffffff", "18446744073709551615", "18446744073709551612"},
        {"", "0", "0"},
    };
    for (const Row& row : rows)
    {
        sim.answer(counterKey(0, "LinkFailures"), row.text);
        sim.answer(counterKey(0, "TotalRxWords"), row.text);
        clock.outlive();
        Description statistics = port<VRAX_FCPortStatistics_Provider>(0);
        EXPECT_EQ(statistics["LinkFailures"], row.count) << row.text;
        EXPECT_EQ(statistics["BytesReceived"], row.bytes) << row.text;
    }
    sim.answer("Oper.UserPort.0.0.RxBytePerf", "10");
    EXPECT_EQ(port<VRAX_FCPortRateStatistics_Provider>(0)["RxRate"], "10");
}

TEST_F(Statistics, ACounterWithoutAValueAtPresentIsNull)
{
    sim.failKey(counterKey(1, "FBusys"), XPL_NOT_AVAILABLE);
    EXPECT_EQ(port<VRAX_FCPortStatistics_Provider>(1).count("FBSYFrames"), 0u);
    EXPECT_EQ(port<VRAX_FCPortStatistics_Provider>(2).count("FBSYFrames"), 1u);
}

TEST_F(Statistics, PublishesRates)
{
    const char* const attributes[] = {"RxBytePerf", "TxBytePerf", "RxFramePerf", "TxFramePerf"};
    const char* const properties[] = {"RxRate", "TxRate", "RxFrameRate", "TxFrameRate"};
    Description expected = {
        {"InstanceID", kRootWwn + ":" + portWwn("3")},
        {"ElementName", "FCPort Rate Statistics"},
        {"SampleInterval", "00000000000001.000000:000"},
    };
    std::vector<std::string> keys;
    for (std::size_t i = 0; i < 4; ++i)
    {
        keys.push_back(std::string("Oper.UserPort.0.3.") + attributes[i]);
        sim.answer(keys.back(), std::to_string(12345678901 + i));
        expected[properties[i]] = std::to_string(12345678901 + i);
    }
    sim.mark();
    EXPECT_EQ(port<VRAX_FCPortRateStatistics_Provider>(3), expected);
    EXPECT_EQ(sim.batches().at(3), keys) << "the order of the batch";
}

TEST_F(Statistics, PublishesTheCollectionWithLocalTimeAndZeroOffset)
{
    setenv("TZ", "Asia/Kolkata", 1); // no whole hours from UTC
    tzset();
    const std::time_t before = std::time(nullptr);
    std::vector<Description> all = instances<VRAX_StatisticsCollection_Provider>();
    const std::time_t after = std::time(nullptr);
    ASSERT_EQ(all.size(), 1u);
    const std::string sampled = all[0]["TimeLastSampled"];
    all[0].erase("TimeLastSampled");
    EXPECT_EQ(all[0],
              (Description{{"ElementName", "FC Switch Statistics Collection"},
                           {"InstanceID", kRootWwn},
                           {"SampleInterval", "00000000000001.000000:000"}}));
    const auto localText = [](std::time_t time)
    {
        std::tm fields{};
        localtime_r(&time, &fields);
        char text[32];
        std::strftime(text, sizeof(text), "%Y%m%d%H%M%S.000000+000", &fields);
        return std::string(text);
    };
    EXPECT_GE(sampled, localText(before));
    EXPECT_LE(sampled, localText(after));
    unsetenv("TZ");
    tzset();
}

TEST_F(Statistics, EveryLoadIsANewSample)
{
    const auto times = [&]
    {
        Description statistics = instances<VRAX_FCPortStatistics_Provider>().at(0);
        Description rates = instances<VRAX_FCPortRateStatistics_Provider>().at(0);
        return statistics["StatisticTime"] + " " + rates["StatisticTime"];
    };
    const std::string first = times();
    EXPECT_EQ(times(), first) << "a fresh map";
    clock.outlive();
    EXPECT_NE(times(), first);
}

TEST_F(Statistics, AnEmptyPortWwnEndsTheWalk)
{
    sim.failNext("DataCache::calcPortWwn", 1, XPL_UNREACHABLE, 2);
    EXPECT_EQ(instances<VRAX_FCPortStatistics_Provider>().size(), 2u);
    EXPECT_EQ(sim.calls("xpl_smlGetBatch"), 3u);
    sim.failNext("DataCache::calcPortWwn", 1, XPL_UNREACHABLE, 1);
    EXPECT_EQ(instances<VRAX_FCPortRateStatistics_Provider>().size(), 1u);
}

TEST_F(Statistics, FailuresOfTheCounterLoad)
{
    const std::string origin = "Exception[CRIT]:switchProviders/VRAX_FCPortStatistics_Provider:load[] ";
    sim.refuseCacheLock();
    expectLoadFails<VRAX_FCPortStatistics_Provider>(origin + "Unable to obtaion datacache rdlock");
    sim.failNext("xpl_smlGetBatch", 1, XPL_UNREACHABLE, 1);
    expectLoadFails<VRAX_FCPortStatistics_Provider>(origin + "Unable to get port settings, portIdx=1");
    sim.failKey(counterKey(3, "BBCR_RRDYFailures"));
    expectLoadFails<VRAX_FCPortStatistics_Provider>(origin + "Unable to get port settings, portIdx=3");
    sim.restore();
    const std::string refused = "Failed to insert into VRAX_FCPortStatistics_map, PortIdx=2, InstanceID="
                                "VRAX:FCPortStatistics:" +
                                kRootWwn + ":" + portWwn("2");
    expectStepsFail<VRAX_FCPortStatistics_Provider>(
        origin,
        {"Unable to get port statistics, portIdx=2",
         "VRAX_FCPortStatistics::One or more Key Properties are not Populated, PortIdx=2",
         refused.c_str()},
        2);
    EXPECT_EQ(instances<VRAX_FCPortStatistics_Provider>().size(), kPorts);
}

TEST_F(Statistics, FailuresOfTheRateLoad)
{
    const std::string origin = "Exception[CRIT]:switchProviders/VRAX_FCPortRateStatistics_Provider:load[] ";
    sim.refuseCacheLock();
    expectLoadFails<VRAX_FCPortRateStatistics_Provider>(origin + "Unable to obtaion datacache rdlock");
    sim.failKey("Oper.UserPort.0.1.TxFramePerf");
    expectLoadFails<VRAX_FCPortRateStatistics_Provider>(origin + "Unable to get port rate statistics");
    sim.restore();
    expectStepsFail<VRAX_FCPortRateStatistics_Provider>(
        origin,
        {"Unable to create instance of VRAX_FCPortRateStatistics",
         "VRAX_FCPortRateStatistics::One or more Key Properties are not Populated",
         "Failed to insert into VRAX_FCPortRateStatistics_map"},
        1);
    EXPECT_EQ(instances<VRAX_FCPortRateStatistics_Provider>().size(), kPorts);
}

TEST_F(Statistics, FailuresOfTheCollectionLoad)
{
    const std::string origin = "Exception[CRIT]:switchProviders/VRAX_StatisticsCollection_Provider:load[] ";
    sim.failNext("get_Local_Switch_World_Wide_Name");
    expectLoadFails<VRAX_StatisticsCollection_Provider>(origin + "Unable to retrieve localWWN");
    expectStepsFail<VRAX_StatisticsCollection_Provider>(
        origin,
        {"Failed to create instance VRAX_StatisticsCollection",
         "VRAX_statisticsCollection::One or more Key Properties are not Populated",
         "Failed to insert instance in map"});
    EXPECT_EQ(instances<VRAX_StatisticsCollection_Provider>().size(), 1u);
}

} // namespace
} // namespace cimple
