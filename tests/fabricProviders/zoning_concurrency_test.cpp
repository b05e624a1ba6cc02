// Zoning is read by many while it is changed by some: nobody waits for ever, and no answer is half of one.
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "providers_includes.h"
#include "tests/common/testing/Switch_Test.h"

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
        Property<uint32> result;
        const auto text = [](const std::string& value)
        {
            Property<String> property;
            property.set(value.c_str());
            return property;
        };
        const auto number = [](uint16 value)
        {
            Property<uint16> property;
            property.set(value);
            return property;
        };
        Owned<VRAX_ZoningService> service = makeNull<VRAX_ZoningService>();
        service->SystemCreationClassName.set("VRAX_Switch");
        service->SystemName.set("100002a5c0de0001");
        service->CreationClassName.set("VRAX_ZoningService");
        service->Name.set("100002a5c0de0001");
        VRAX_ZoningService_Provider provider;
        for (int round = 0; round < kRounds; ++round)
        {
            CIM_ZoneSet* zoneSet = nullptr;
            CIM_Zone* zone = nullptr;
            CIM_NamedAddressCollection* alias = nullptr;
            CIM_ZoneMembershipSettingData* member = nullptr;
            provider.CreateZoneSet(service.get(), text(name + "_set"), zoneSet, result);
            provider.CreateZone(service.get(), text(name + "_zone"), number(2), number(0), zone, result);
            provider.CreateZoneAlias(service.get(), text(name + "_alias"), alias, result);
            provider.CreateZoneMembershipSettingData(service.get(),
                                                     number(3),
                                                     text("01ab03"),
                                                     reinterpret_cast<CIM_SystemSpecificCollection*>(zone),
                                                     member,
                                                     result);
            provider.AddZoneMembershipSettingData(
                service.get(), reinterpret_cast<CIM_SystemSpecificCollection*>(alias), member, result);
            provider.AddZoneAlias(service.get(), zone, alias, result);
            provider.AddZone(service.get(), zoneSet, zone, result);
            Property<boolean> on;
            on.set(true);
            provider.ActivateZoneSet(service.get(), zoneSet, on, result);
            _activated += result.value == 0;
            on.set(false);
            provider.ActivateZoneSet(service.get(), zoneSet, on, result);
            if (member != nullptr)
                VRAX_ZoneMembership_Provider().delete_instance(
                    reinterpret_cast<VRAX_ZoneMembership*>(member));
            if (zoneSet != nullptr)
                VRAX_ZoneSet_Provider().delete_instance(reinterpret_cast<VRAX_ZoneSet*>(zoneSet));
            if (zone != nullptr)
                VRAX_Zone_Provider().delete_instance(reinterpret_cast<VRAX_Zone*>(zone));
            if (alias != nullptr)
                VRAX_ZoneAlias_Provider().delete_instance(reinterpret_cast<VRAX_ZoneAlias*>(alias));
            for (Instance* made : {reinterpret_cast<Instance*>(zoneSet),
                                   reinterpret_cast<Instance*>(zone),
                                   reinterpret_cast<Instance*>(alias),
                                   reinterpret_cast<Instance*>(member)})
                unref(made);
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
