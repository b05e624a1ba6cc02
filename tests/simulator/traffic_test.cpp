// Tests of counters and rates: monotone, consistent with one another, standing still without a link.
#include "simulator/model/TrafficMeter.h"
#include "simulator/model/made_up.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

using namespace simulator;
using namespace std::chrono_literals;

namespace
{

PortScenario busyPort()
{
    PortScenario port;
    port.link = LinkState::up;
    port.rxLoadPercent = 40;
    port.txLoadPercent = 95; // at its peak more than the link carries
    port.class2Percent = 10;
    port.errorsPerHour = 5000;
    return port;
}

struct Sample
{
    explicit Sample(int port)
    {
        for (const CounterName& counter : kCounters)
            values.push_back(counterOf(port, std::string(counter.name)));
    }

    std::uint64_t operator[](const char* name) const { return values[*counterNamed(name)]; }

    std::vector<std::uint64_t> values;
};

TEST(Traffic, CountersGrowByTheReportedRateInEverySecond)
{
    SimSwitch sim = SimSwitch::make().ports(1).everyPort(busyPort());
    constexpr std::uint64_t kLineBytes = 850000000; // 8.5 Gbit/s at 10 bits a byte
    Sample before(0);
    for (int second = 0; second < 150; ++second)
    {
        const std::uint64_t rx = rateOf(0, "RxBytePerf");
        const std::uint64_t tx = rateOf(0, "TxBytePerf");
        const std::uint64_t rxFrames = rateOf(0, "RxFramePerf");
        const std::uint64_t txFrames = rateOf(0, "TxFramePerf");
        sim.advance(1s);
        const Sample after(0);
        ASSERT_EQ(rx, 4 * (after["TotalRxWords"] - before["TotalRxWords"])) << "second " << second;
        ASSERT_EQ(tx, 4 * (after["TotalTxWords"] - before["TotalTxWords"])) << "second " << second;
        ASSERT_EQ(rxFrames, after["TotalRxFrames"] - before["TotalRxFrames"]) << "second " << second;
        ASSERT_EQ(txFrames, after["TotalTxFrames"] - before["TotalTxFrames"]) << "second " << second;
        ASSERT_GT(rxFrames, 0u);
        ASSERT_LE(tx, kLineBytes) << "a link carries no more than its rate";
        ASSERT_EQ(after["TotalRxFrames"], after["Class2FramesIn"] + after["Class3FramesIn"]);
        ASSERT_EQ(after["TotalTxFrames"], after["Class2FramesOut"] + after["Class3FramesOut"]);
        before = after;
    }
    const double share = static_cast<double>(before["TotalRxWords"]) * 4 / (150.0 * kLineBytes);
    EXPECT_NEAR(0.40, share, 0.03) << "the mean load";
}

TEST(Traffic, NoCounterRunsBackwardsWhateverHappens)
{
    SimSwitch sim = SimSwitch::make().ports(1).everyPort(busyPort());
    Sample before(0);
    const std::function<void()> events[] = {
        [&] { sim.advance(17ms); },
        [&] { sim.portDown(0); },
        [&] { sim.advance(3s); },
        [&] { sim.portUp(0); },
        [&] { setKey("Config.UserPort.0.0.LinkSpeed.1Gb/s"); },
        [&] { sim.advance(999ms); },
        [&]
        { sim.changePort(0, [](PortScenario& port) { port.rxLoadPercent = 1, port.errorsPerHour = 1; }); },
        [&] { sim.advance(1h); },
        [&] { setKey("Config.UserPort.0.0.LinkSpeed.Auto"); },
        [&] { sim.changePort(0, [](PortScenario& port) { port.errorsPerHour = 100000; }); },
        [&] { sim.advance(24h * 365 * 20); },
    };
    for (int i = 0; i < 44; ++i)
    {
        events[static_cast<std::size_t>(i * 7) % std::size(events)]();
        const Sample after(0);
        for (std::size_t c = 0; c < kCounterCount; ++c)
            ASSERT_GE(after.values[c], before.values[c]) << kCounters[c].name << " after event " << i;
        before = after;
    }
    EXPECT_GT(before["InvalidCRCs"], 0u);
}

TEST(Traffic, APortWithoutLinkCountsNothing)
{
    SimSwitch sim = SimSwitch::make().ports(1).everyPort(busyPort()).uptimeSeconds(100);
    EXPECT_GT(counterOf(0, "TotalRxWords"), 0u) << "has run since before the start";
    sim.portDown(0);
    const Sample before(0);
    sim.advance(1h);
    EXPECT_EQ(before.values, Sample(0).values);
    EXPECT_EQ(0u, rateOf(0, "RxBytePerf"));
    EXPECT_EQ(0u, rateOf(0, "TxFramePerf"));
    sim.portUp(0);
    EXPECT_EQ(before.values, Sample(0).values) << "the time without link is not made up for";
    sim.advance(2s);
    EXPECT_GT(counterOf(0, "TotalRxWords"), before["TotalRxWords"]);
}

TEST(Traffic, CountersAreHexadecimalRatesDecimal)
{
    SimSwitch sim = SimSwitch::make().ports(2).port(1,
                                                    [](PortScenario& port)
                                                    {
                                                        port.speedCapability = port.speed = LinkSpeed::gb1;
                                                        port.rxLoadPercent = 100;
                                                        port.frameBytes = 2000;
                                                    });
    sim.setCounter(0, "TotalLIPRecv", 0x1f);
    EXPECT_EQ("1f", valueOf("Oper.UserPort.0.0.C64.TotalLIPRecv"));
    sim.setCounter(0, "InvalidCRCs", ~std::uint64_t{0});
    EXPECT_EQ("ffffffffffffffff", valueOf("Oper.UserPort.0.0.C64.InvalidCRCs"));
    sim.portDown(0);
    EXPECT_EQ("0", valueOf("Oper.UserPort.0.0.RxBytePerf"));
    EXPECT_EQ(valueOf("Oper.UserPort.0.1.RxBytePerf"), std::to_string(rateOf(1, "RxBytePerf")));
    EXPECT_EQ(rateOf(1, "RxBytePerf") / 2000, rateOf(1, "RxFramePerf"));
}

TEST(Traffic, TheSeedDecidesEverything)
{
    const auto run = [](int seed)
    {
        Scenario scenario = SimSwitch::make().ports(2).everyPort(busyPort()).uptimeSeconds(86400).scenario();
        scenario.seed = seed;
        const SimSwitch sim(scenario);
        return std::make_pair(Sample(0).values, Sample(1).values);
    };
    const auto one = run(1);
    EXPECT_EQ(one, run(1));
    EXPECT_NE(one, run(2));
    EXPECT_NE(one.first, one.second) << "ports differ though their facts do not";
}

TEST(Traffic, IsTheSameOnEveryMachine)
{
    EXPECT_EQ(0x63CBE1E459320DD7ULL, mix(7, 0));
    TrafficMeter meter(7, {40, 100, 1000, 10, 3600});
    meter.setLink(LinkSpeed::gb8, 0);
    // Whole minutes carry the mean load to the word, in any phase.
    EXPECT_EQ(85000000ULL * 60 * 7, meter.counter(*counterNamed("TotalRxWords"), 7 * 60000));
    EXPECT_EQ(212500000u, meter.rates(123456789).txBytes / 4) << "a full link has nowhere to swell to";
    EXPECT_EQ(850000u, meter.rates(0).txFrames);
}

} // namespace
