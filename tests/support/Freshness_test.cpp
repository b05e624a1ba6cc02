// Tests of a map's freshness: its states, what leads from one to the other, and loads that are overtaken.
#include "support/Freshness.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

typedef Freshness::State State;

constexpr std::uint64_t kNow = 5000;

TEST(Freshness, EveryEventLeadsFromEveryStateToTheOneState)
{
    typedef void (*Event)(Freshness&);
    const Event begin = [](Freshness& map) { map.loadBegan(0); };
    const Event succeed = [](Freshness& map) { map.loadSucceeded(kNow); };
    const Event fail = [](Freshness& map) { map.loadFailed(); };
    const Event force = [](Freshness& map) { map.forceStale(); };
    const std::vector<Event> reach[] = {
        {}, {begin}, {begin, force}, {begin, succeed, force}, {begin, fail}, {begin, succeed}};
    const State E = State::Empty, L = State::Loading, O = State::Overtaken, S = State::Stale,
                F = State::Failed, R = State::Fresh;
    struct Row
    {
        const char* event;
        Event happen;
        State from[6]; // empty, loading, overtaken, stale, failed, fresh
    };
    const Row rows[] = {
        {"nothing", [](Freshness&) {}, {E, L, O, S, F, R}},
        {"forced stale", force, {E, O, O, S, F, S}},
        {"load began", begin, {L, L, L, L, L, L}},
        {"load succeeded", succeed, {S, R, S, S, S, S}},
        {"load failed", fail, {F, F, F, F, F, F}},
        {"changed", [](Freshness& map) { map.changed(); }, {E, L, O, S, F, R}},
        {"cleared", [](Freshness& map) { map.cleared(); }, {E, E, E, E, E, E}},
    };
    for (const Row& row : rows)
    {
        for (std::size_t i = 0; i < std::size(reach); ++i)
        {
            Freshness map;
            for (const Event event : reach[i])
                event(map);
            row.happen(map);
            const State state = row.from[i];
            EXPECT_EQ(map.state(), state) << row.event << " from state " << i;
            EXPECT_EQ(map.isFresh(kNow), state == R) << row.event << " from state " << i;
            EXPECT_EQ(map.isComplete(), state == R || state == S) << row.event << " from state " << i;
        }
    }
}

TEST(Freshness, SurvivesTheWrapOfTheClock)
{
    // The 32-bit count of tenths of a second starts again after 13 years and a half.
    constexpr std::uint64_t kWrap = (std::uint64_t{1} << 32) * 100;
    for (std::uint64_t at = kWrap - 2 * kFreshnessMilliseconds; at < kWrap + kFreshnessMilliseconds;
         at += 100)
    {
        Freshness map;
        map.loadBegan(0);
        map.loadSucceeded(at);
        EXPECT_EQ(map.state(), State::Fresh) << at;
        EXPECT_TRUE(map.isFresh(at)) << at;
        EXPECT_TRUE(map.isFresh(at + kFreshnessMilliseconds - 100)) << at;
        EXPECT_FALSE(map.isFresh(at + kFreshnessMilliseconds)) << at;
    }
}

// The event comes between the load's beginning and its success, in no agreed order with the latter: whoever
// looks on never sees the map fresh after it.
TEST(Freshness, AnOvertakenLoadIsNeverFreshNotForAnInstant)
{
    constexpr int kRounds = 1000;
    Freshness map;
    std::atomic<int> began{0}, forced{0}, ended{0}, seen{0};
    std::atomic<int> wrong{0};
    const auto wait = [](const std::atomic<int>& event, int round)
    {
        while (event < round)
            std::this_thread::yield();
    };
    std::thread forcing(
        [&]
        {
            for (int round = 1; round <= kRounds; ++round)
            {
                wait(began, round);
                map.forceStale();
                forced = round;
                while (ended < round)
                    wrong += map.isFresh(kNow);
                wrong += map.state() != State::Stale;
                seen = round;
            }
        });
    for (int round = 1; round <= kRounds; ++round)
    {
        map.loadBegan(0);
        began = round;
        // Every other load ends for certain after it was overtaken.
        wait(forced, round % 2 == 0 ? round : 0);
        map.loadSucceeded(kNow);
        ended = round;
        wait(seen, round);
    }
    forcing.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace cimple
