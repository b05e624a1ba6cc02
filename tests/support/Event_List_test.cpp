// Tests of the lists of waiting events, and of the receiver that fills them.
#include "support/receiveSwitchEvent.h"

#include "tests/support/Log_Capture.h"
#include "tests/support/Manual_Clock.h"

#include <atomic>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

xpl_SwitchEvent eventOf(std::int32_t type, const char* subject = "")
{
    xpl_SwitchEvent event = {};
    event.type = type;
    event.switchWwn = "100002a5c0de0001";
    event.subject = subject;
    return event;
}

class EventLists : public testing::Test
{
  protected:
    ~EventLists() override
    {
        for (std::size_t i = 0; i < kMapCount; ++i)
            maps().InstMapForceUnload(static_cast<providerEnum_t>(i));
    }

    static VRAX_Maps& maps() { return *VRAX_Maps::getInstance(); }
    static Event_List& list(std::size_t kind) { return maps().eventList(static_cast<Indication_Kind>(kind)); }
    static void receive(const xpl_SwitchEvent& event) { receiveSwitchEvent(&event); }
    static std::vector<std::string> subjects(Event_List& from)
    {
        std::vector<std::string> result;
        while (const auto event = from.take())
            result.push_back(event->subject);
        return result;
    }
    Manual_Clock clock;
};

TEST_F(EventLists, GiveEachProviderTheEventsThatItKnowsWhileItIsRegistered)
{
    receive(eventOf(6, "before"));
    list(0).open("a", eventType(6) | eventType(31) | eventType(0));
    list(3).open("b", eventType(6) | eventType(12));
    list(3).open("b", eventType(6) | eventType(12)); // counted
    for (const std::int32_t type : {6, 12, 31, 10, 32, 38, -1, 0x7fffffff})
        receive(eventOf(type, std::to_string(type).c_str()));
    receiveSwitchEvent(nullptr);
    list(0).close();
    list(3).close();
    receive(eventOf(6, "later"));
    list(3).close();
    receive(eventOf(6, "after"));
    EXPECT_EQ(subjects(list(0)), (std::vector<std::string>{"6", "31"}));
    EXPECT_EQ(subjects(list(1)), (std::vector<std::string>{}));
    EXPECT_EQ(subjects(list(3)), (std::vector<std::string>{"6", "12", "later"}));
}

TEST_F(EventLists, KeepCopiesOfWhatTheFirmwareTakesBack)
{
    list(0).open("a", eventType(12));
    xpl_SwitchEvent damaged = {};
    damaged.type = 12;
    damaged.statusCount = 7;
    receive(damaged);
    {
        std::string text(1000, 'x');
        const std::vector<std::uint16_t> values(100, 2), former{6, 10};
        xpl_SwitchEvent event = eventOf(12, text.c_str());
        event.status = values.data();
        event.statusCount = 100;
        event.previousStatus = former.data();
        event.previousStatusCount = 2;
        event.isLocal = true;
        receive(event);
        text.assign(1000, 'y');
    }
    list(0).close();
    const auto first = list(0).take(), second = list(0).take();
    EXPECT_TRUE(first->switchWwn.empty() && first->location.empty());
    EXPECT_EQ(first->status.size(), 0U);
    EXPECT_EQ(second->switchWwn.toString(), "100002a5c0de0001");
    EXPECT_EQ(second->subject, std::string(Switch_Event::kLongestText, 'x'));
    EXPECT_EQ(second->status.size(), Switch_Event::kMostValues);
    EXPECT_EQ(second->previousStatus, Array_uint16::make(6, 10));
    EXPECT_TRUE(second->isLocal);
}

TEST_F(EventLists, LoseWhatFindsNoRoomAndSaySoOnceAMinute)
{
    const Log_Capture log;
    list(1).open("testProviders/any", eventType(10));
    const auto overfill = [&](std::size_t more)
    {
        for (std::size_t i = 0; i < more; ++i)
            receive(eventOf(10, "too many"));
    };
    const auto logged = [](std::size_t count)
    {
        const std::vector<Log_Capture::Line> lines = Log_Capture::take();
        if (count == 0)
            return lines.empty();
        const std::string start = "CRIT:testProviders/any:report[";
        return lines.size() == 1 && lines[0].second.compare(0, start.size(), start) == 0 &&
               lines[0].second.find("] " + std::to_string(count) + " switch events lost") !=
                   std::string::npos;
    };
    overfill(Event_List::kCapacity);
    EXPECT_TRUE(logged(0));
    overfill(3);
    EXPECT_TRUE(logged(1));
    clock.advance(Event_List::kLossReportMilliseconds - 1);
    overfill(4);
    EXPECT_TRUE(logged(0));
    clock.advance(1);
    EXPECT_EQ(list(1).clear(), Event_List::kCapacity);
    EXPECT_TRUE(logged(6)) << "by the thread that takes them, when no other is lost";
    overfill(1);
    clock.advance(Event_List::kLossReportMilliseconds);
    EXPECT_EQ(subjects(list(1)).size(), 1U);
    EXPECT_TRUE(logged(0));
    list(1).close();
}

TEST_F(EventLists, WakeWhoeverWaits)
{
    std::atomic<int> taken{0};
    std::atomic<std::uint32_t> users{1};
    list(2).open("a", eventType(5));
    std::thread taker(
        [&]
        {
            // Longer than the test may take: only an event or the end wakes it.
            for (list(2).wait(std::chrono::hours(1), users); const auto event = list(2).take();
                 list(2).wait(std::chrono::hours(1), users))
                ++taken;
        });
    receive(eventOf(5));
    while (taken == 0)
        std::this_thread::yield();
    users = 0;
    list(2).wake();
    taker.join();
    list(2).close();
    EXPECT_EQ(taken, 1);
}

#ifdef VRAX_LOCK_CHECKS
TEST_F(EventLists, AreLockedAlone)
{
    maps().rdLock(VRAX_FCPort_Idx);
    EXPECT_DEATH(list(0).take(), "an event list asked for while holding VRAX_FCPort");
    maps().unlock(VRAX_FCPort_Idx);
}
#endif

// --- Freshness

TEST_F(EventLists, TheirEventsMakeMapsStale)
{
    const std::set<providerEnum_t> fabric = {VRAX_SAN_Idx,
                                             VRAX_Fabric_Idx,
                                             VRAX_LogicalNetwork_Idx,
                                             VRAX_FCSwitch_Idx,
                                             VRAX_FCPort_Idx,
                                             VRAX_FCNode_Idx,
                                             VRAX_ProtocolEndpoint_Idx};
    const std::set<providerEnum_t> zoning = {
        VRAX_ZoneSet_Idx, VRAX_Zone_Idx, VRAX_ZoneMembership_Idx, VRAX_ZoneAlias_Idx};
    const struct
    {
        std::int32_t type;
        std::set<providerEnum_t> stale;
    } rows[] = {
        {XPL_EVENT_SWITCH_REMOVED, fabric},
        {XPL_EVENT_PRINCIPAL_CHANGED, fabric},
        {XPL_EVENT_SWITCH_STATUS, {VRAX_FCSwitch_Idx}},
        {XPL_EVENT_BLADE_STATUS, {VRAX_LogicalIOBlade_Idx, VRAX_PhysicalIOBlade_Idx}},
        {XPL_EVENT_PORT_DELETED,
         {VRAX_FCPort_Idx,
          VRAX_ProtocolEndpoint_Idx,
          VRAX_FCPortSettings_Idx,
          VRAX_FCPortCapabilities_Idx,
          VRAX_FCPortStatistics_Idx,
          VRAX_FCPortRateStatistics_Idx}},
        {XPL_EVENT_NODE_LOGGED_OUT, {VRAX_FCPort_Idx, VRAX_FCNode_Idx, VRAX_ProtocolEndpoint_Idx}},
        {XPL_EVENT_POWER_SUPPLY_FAILED, {VRAX_PowerSupply_Idx}},
        {XPL_EVENT_ENVIRONMENT, {VRAX_TemperatureSensor_Idx, VRAX_VoltageSensor_Idx}},
        {XPL_EVENT_PORT_STATUS, {VRAX_FCPort_Idx, VRAX_ProtocolEndpoint_Idx}},
        {XPL_EVENT_ZONING_CHANGED, zoning},
        {XPL_EVENT_SUBSCRIPTIONS_CHANGED,
         {CIM_ListenerDestinationCIMXML_Idx, CIM_IndicationSubscription_Idx}},
        {XPL_EVENT_PASSWORD_CHANGED, {}},
        {33, {}},
    };
    for (const auto& row : rows)
    {
        for (std::size_t i = 0; i < kMapCount; ++i)
        {
            const auto map = static_cast<providerEnum_t>(i);
            maps().wrLock(map);
            maps().InstMapLoadBegan(map);
            maps().InstMapLoadSetOK(map);
            maps().unlock(map);
        }
        receive(eventOf(row.type));
        std::set<providerEnum_t> stale;
        for (std::size_t i = 0; i < kMapCount; ++i)
            if (!maps().InstMapIsFresh(static_cast<providerEnum_t>(i)))
                stale.insert(static_cast<providerEnum_t>(i));
        EXPECT_EQ(stale, row.stale) << row.type;
    }
}

} // namespace
} // namespace cimple
