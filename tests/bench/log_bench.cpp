// Cost of the switch's logs as they grow tenfold: the cold load of the entries and of what holds them, and
// the search for a single entry, whose cost should hardly grow.
#include "tests/bench/benches.h"

#include "simulator/testing/SimSwitch.h"
#include "switchProviders/VRAX_LogManagesRecord_Provider.h"
#include "tests/bench/cold_load.h"
#include "tests/bench/report.h"

#include <cstdio>
#include <functional>
#include <stdexcept>
#include <string>

namespace bench
{

namespace
{

using namespace cimple;

constexpr double kMicro = 1e6;
constexpr int kSizes[] = {2000, 20000};

simulator::SimSwitchSetup logged(int entries)
{
    return simulator::SimSwitch::make().switchFacts(
        [entries](simulator::SwitchScenario& facts)
        {
            facts.logCapacity = entries;
            for (int i = 1; i <= entries; ++i)
            {
                char text[100];
                std::snprintf(text,
                              sizeof(text),
                              "[%d][Tue Mar 04 10:22:31.%06d UTC 2008][port][port %d Online]",
                              i,
                              i,
                              i % 24);
                facts.userLog.emplace_back(text);
            }
        });
}

// The entry at this share of the log.
Owned<VRAX_LogEntry> keysAt(double share)
{
    Owned<VRAX_LogEntry> keys = makeNull<VRAX_LogEntry>();
    const Read_Guard<VRAX_LogEntry> guard;
    auto left = static_cast<std::size_t>(share * static_cast<double>(guard.view().size()));
    for (const VRAX_LogEntry* one : guard.view())
    {
        keys->InstanceID.set(one->InstanceID.value);
        if (left-- == 0)
            break;
    }
    return keys;
}

void get(const VRAX_LogEntry& keys)
{
    VRAX_LogEntry* found = nullptr;
    if (VRAX_LogEntry_Provider().get_instance(&keys, found) != GET_INSTANCE_OK)
        throw std::runtime_error("the entry is not found");
    unref(found);
}

// A switch with a log of that size, of which all is known.
template <class BODY>
void forEachSize(BODY body)
{
    for (const int size : kSizes)
    {
        simulator::SimSwitch sim(logged(size));
        sim.recordKeys(false);
        VRAX_Maps::getInstance()->InstMapForceUnload(Map_Index<VRAX_LogEntry>::value);
        VRAX_Maps::getInstance()->InstMapForceUnload(Map_Index<VRAX_RecordLog>::value);
        load<VRAX_LogEntry_Provider>();
        body(sim, size);
    }
}

std::string callsOf(simulator::SimSwitch& sim, const std::function<void()>& run)
{
    sim.mark();
    run();
    return std::to_string(sim.platformCalls()) + " platform calls";
}

void benchLoad(const char* title, const std::function<void()>& run, providerEnum_t map)
{
    Table table(title, "entries", "us per entry");
    const auto prepare = [map] { VRAX_Maps::getInstance()->InstMapForceUnload(map); };
    forEachSize(
        [&](simulator::SimSwitch& sim, int size)
        {
            prepare();
            const std::string remark = callsOf(sim, run);
            table.row(static_cast<std::size_t>(size), processorSeconds(run, prepare) / size * kMicro, remark);
        });
    table.print();
}

void benchGet(const char* title, double share)
{
    Table table(title, "entries", "us");
    forEachSize(
        [&](simulator::SimSwitch& sim, int size)
        {
            const Owned<VRAX_LogEntry> keys = keysAt(share);
            const auto run = [&] { get(*keys); };
            const std::string remark = callsOf(sim, run);
            table.row(static_cast<std::size_t>(size), processorSeconds(run, [] {}) * kMicro, remark);
        });
    table.print();
}

} // namespace

void benchLogs()
{
    benchLoad("Cold load: VRAX_LogEntry", load<VRAX_LogEntry_Provider>, Map_Index<VRAX_LogEntry>::value);
    benchLoad("Cold load: VRAX_LogManagesRecord",
              load<VRAX_LogManagesRecord_Provider>,
              Map_Index<VRAX_LogManagesRecord>::value);
    benchGet("GetInstance: a VRAX_LogEntry amid the log", 0.4);
    benchGet("GetInstance: the newest VRAX_LogEntry", 1);
}

} // namespace bench
