// Zoning is read by many while it is changed by some: nobody waits for ever, and no answer is half of one.
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "providers_includes.h"
#include "tests/fabricProviders/Zoning.h"

#include <atomic>
#include <thread>

namespace cimple
{
namespace
{

constexpr int kReaders = 8;
constexpr int kRounds = 100;

// Reads a class once. What another thread deletes between two calls to the switch fails the load, which is an
// answer; what is served is whole.
template <class PROVIDER>
void read()
{
    const Served served = serve<PROVIDER>(
        [](const typename PROVIDER::Class& instance)
        {
            for (const auto& [name, value] : described(instance))
                EXPECT_NE(value, "-> ") << name;
        });
    EXPECT_TRUE(served.status == ENUM_INSTANCES_OK || served.status == ENUM_INSTANCES_FAILED)
        << served.status;
}

constexpr void (*kReads[])() = {
    read<VRAX_ZoneSet_Provider>,
    read<VRAX_Zone_Provider>,
    read<VRAX_ZoneAlias_Provider>,
    read<VRAX_ZoneMembership_Provider>,
    read<VRAX_ZoningService_Provider>,
    read<VRAX_ZoningCapabilities_Provider>,
    read<VRAX_FabricZoneSet_Provider>,
    read<VRAX_FabricZone_Provider>,
    read<VRAX_FCSwitchZoneSet_Provider>,
    read<VRAX_FCSwitchZone_Provider>,
    read<VRAX_FCSwitchZoneAlias_Provider>,
    read<VRAX_FCSwitchZoningService_Provider>,
    read<VRAX_FCSwitchZoningCapabilities_Provider>,
    read<VRAX_MemberOfZoneSet_Provider>,
    read<VRAX_MemberOfZone_Provider>,
    read<VRAX_ZoneElementSettingData_Provider>,
    read<VRAX_ZoneAliasElementSettingData_Provider>,
};

class Zoning_Concurrency : public Switch_Test
{
  protected:
    // A client that builds zoning of its own, puts it in force, and takes it apart again.
    void change(const std::string& name)
    {
        Service service;
        const std::string zoneSet = inactive(name + "_set"), zone = inactive(name + "_zone");
        const std::string alias = kLocalWwn + ":" + name + "_alias";
        for (int round = 0; round < kRounds; ++round)
        {
            service.createZoneSet(name + "_set");
            service.createZone(name + "_zone", 2);
            service.createAlias(name + "_alias");
            service.createMember<VRAX_Zone>(3, "01ab03", zone);
            service.addMember<VRAX_ZoneAlias>(alias, inactive("01AB03"));
            service.addAlias(zone, alias);
            service.addZone(zoneSet, zone);
            _activated += service.activate(zoneSet, true) == "0 0";
            service.activate(zoneSet, false);
            remove<VRAX_ZoneMembership>(inactive("01AB03"));
            remove<VRAX_ZoneSet>(zoneSet);
            remove<VRAX_Zone>(zone);
            remove<VRAX_ZoneAlias>(alias);
            clock.outlive();
        }
    }

    std::atomic<int> _activated{0};
};

TEST_F(Zoning_Concurrency, ReadersAndWritersComeToTheirEnd)
{
    sim.open(simulator::SimSwitch::make()
                 .zoning(simulator::ZoningSetup()
                             .alias("host", {"2100026E1A40B7C1"})
                             .zone("z1", {"host", "1:A"})
                             .zone("z2", {"010203"})
                             .zoneSet("prod", {"z1", "z2"})
                             .active("prod"))
                 .scenario());
    sim.recordKeys(false);
    makeMapsStale();
    const Log_Capture log; // of what was deleted under a load
    std::atomic<bool> changing{true};
    std::vector<std::thread> threads;
    for (int reader = 0; reader < kReaders; ++reader)
    {
        threads.emplace_back(
            [&changing, reader]
            {
                for (std::size_t next = static_cast<std::size_t>(reader); changing; ++next)
                    kReads[next % std::size(kReads)]();
            });
    }
    std::thread one([this] { change("one"); });
    std::thread other([this] { change("other"); });
    one.join();
    other.join();
    changing = false;
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_GT(_activated, 0);
    EXPECT_EQ(sim.adminModeHolder(), "");
    makeMapsStale();
    for (void (*readOne)() : kReads)
        readOne();
    // What is published is what the two left; a deletion is refused while the other has an edit session.
    const auto left = sim.zoning();
    std::size_t pairs = 0;
    for (const auto& [name, zones] : left.zoneSets)
        pairs += zones.size() * (name == left.active.name ? 2 : 1);
    EXPECT_GE(pairs, 2U);
    EXPECT_EQ(instances<VRAX_MemberOfZoneSet_Provider>().size(), pairs);
}

} // namespace
} // namespace cimple
