// Cost of the switch's logs as they grow tenfold: the cold load of the entries and of what holds them, and
// the search for the newest entry.
#include "tests/bench/benches.h"

#include "simulator/testing/SimSwitch.h"
#include "switchProviders/VRAX_LogManagesRecord_Provider.h"
#include "tests/bench/cold_load.h"
#include "tests/bench/report.h"

#include <cstdio>
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

void getNewest()
{
    const Owned<VRAX_LogEntry> keys = makeNull<VRAX_LogEntry>();
    {
        const Read_Guard<VRAX_LogEntry> guard;
        const VRAX_LogEntry* newest = nullptr;
        for (const VRAX_LogEntry* one : guard.view())
            newest = one;
        keys->InstanceID.set(newest->InstanceID.value);
    }
    VRAX_LogEntry* found = nullptr;
    if (VRAX_LogEntry_Provider().get_instance(keys.get(), found) != GET_INSTANCE_OK)
        throw std::runtime_error("the entry is not found");
    unref(found);
}

template <class RUN, class PREPARE>
void bench(const char* title, RUN run, PREPARE prepare)
{
    Table table(title, "entries", "us per entry");
    for (const int size : kSizes)
    {
        simulator::SimSwitch sim(logged(size));
        sim.recordKeys(false);
        VRAX_Maps::getInstance()->InstMapForceUnload(Map_Index<VRAX_LogEntry>::value);
        VRAX_Maps::getInstance()->InstMapForceUnload(Map_Index<VRAX_RecordLog>::value);
        load<VRAX_LogEntry_Provider>();
        prepare();
        sim.mark();
        run();
        const std::string remark = std::to_string(sim.platformCalls()) + " platform calls";
        table.row(static_cast<std::size_t>(size), processorSeconds(run, prepare) / size * kMicro, remark);
    }
    table.print();
}

} // namespace

void benchLogs()
{
    const auto stale = [](providerEnum_t map)
    { return [map] { VRAX_Maps::getInstance()->InstMapForceUnload(map); }; };
    bench("Cold load: VRAX_LogEntry", load<VRAX_LogEntry_Provider>, stale(Map_Index<VRAX_LogEntry>::value));
    bench("Cold load: VRAX_LogManagesRecord",
          load<VRAX_LogManagesRecord_Provider>,
          stale(Map_Index<VRAX_LogManagesRecord>::value));
    bench("GetInstance: the newest VRAX_LogEntry", getNewest, [] {});
}

} // namespace bench
