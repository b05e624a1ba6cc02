// Cost of the zoning classes as the database grows tenfold: their cold loads, per instance, and the calls to
// the switch that they make.
#include "tests/bench/benches.h"

#include "fabricProviders/VRAX_FCSwitchZoneAlias_Provider.h"
#include "fabricProviders/VRAX_FCSwitchZoneSet_Provider.h"
#include "fabricProviders/VRAX_FCSwitchZone_Provider.h"
#include "fabricProviders/VRAX_FabricZone_Provider.h"
#include "fabricProviders/VRAX_MemberOfZoneSet_Provider.h"
#include "fabricProviders/VRAX_MemberOfZone_Provider.h"
#include "fabricProviders/VRAX_ZoneAliasElementSettingData_Provider.h"
#include "fabricProviders/VRAX_ZoneElementSettingData_Provider.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/bench/cold_load.h"
#include "tests/bench/report.h"

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench
{

namespace
{

using namespace cimple;

constexpr double kMicro = 1e6;

// A tenth of a large site, and the site.
struct Size
{
    int zoneSets;
    int zones;
    int aliases;
    int membersOfZone; // besides two aliases; the aliases have two members each
};
constexpr Size kSizes[] = {{6, 100, 200, 16}, {64, 1000, 2000, 16}};
constexpr int kZonesOfSet = 32;

std::string wwn(int number)
{
    char text[17];
    std::snprintf(text, sizeof(text), "2100026E%08X", static_cast<unsigned>(number));
    return text;
}

simulator::SimSwitchSetup zoned(const Size& size)
{
    simulator::ZoningSetup zoning;
    int next = 0;
    for (int i = 0; i < size.aliases; ++i)
    {
        zoning.alias("alias" + std::to_string(i), {wwn(next), wwn(next + 1)});
        next += 2;
    }
    for (int i = 0; i < size.zones; ++i)
    {
        std::vector<std::string> members = {"alias" + std::to_string(2 * i),
                                            "alias" + std::to_string(2 * i + 1)};
        for (int member = 0; member < size.membersOfZone; ++member)
            members.push_back(wwn(next++));
        zoning.zone("zone" + std::to_string(i), members);
    }
    for (int i = 0; i < size.zoneSets; ++i)
    {
        std::vector<std::string> zones;
        for (int zone = 0; zone < kZonesOfSet; ++zone)
            zones.push_back("zone" + std::to_string((i * kZonesOfSet + zone) % size.zones));
        zoning.zoneSet("set" + std::to_string(i), zones);
    }
    return simulator::SimSwitch::make().zoning(zoning.active("set0"));
}

template <class PROVIDER, class... END_PROVIDERS>
void benchLoad(const char* className)
{
    Table table(std::string("Cold load: ") + className, "zones", "us per instance");
    double smallest = 0;
    for (const Size& size : kSizes)
    {
        simulator::SimSwitch sim(zoned(size));
        sim.recordKeys(false);
        const auto stale = [](providerEnum_t map) { VRAX_Maps::getInstance()->InstMapForceUnload(map); };
        (stale(END_PROVIDERS::kIndex), ...);
        const auto prepare = [stale]
        {
            (load<END_PROVIDERS>(), ...);
            stale(PROVIDER::kIndex);
        };
        prepare();
        sim.mark();
        load<PROVIDER>();
        const std::size_t calls = sim.platformCalls();
        const std::size_t instances = Read_Guard<typename PROVIDER::Class>().view().size();
        const double each = processorSeconds(load<PROVIDER>, prepare) / static_cast<double>(instances);
        smallest = smallest == 0 ? each : smallest;
        char remark[96];
        std::snprintf(remark,
                      sizeof(remark),
                      "%zu instances, %.2f of the smallest, %zu platform calls",
                      instances,
                      each / smallest,
                      calls);
        table.row(static_cast<std::size_t>(size.zones), each * kMicro, remark);
    }
    table.print();
}

} // namespace

void benchZoning()
{
    typedef VRAX_ZoneSet_Provider Sets;
    typedef VRAX_Zone_Provider Zones;
    typedef VRAX_ZoneAlias_Provider Aliases;
    typedef VRAX_ZoneMembership_Provider Memberships;
    typedef VRAX_FCSwitch_Provider Switches;
    benchLoad<Sets>("VRAX_ZoneSet");
    benchLoad<Zones>("VRAX_Zone");
    benchLoad<Aliases>("VRAX_ZoneAlias");
    benchLoad<Memberships, Zones, Aliases>("VRAX_ZoneMembership");
    benchLoad<VRAX_FabricZone_Provider, VRAX_Fabric_Provider, Zones>("VRAX_FabricZone");
    benchLoad<VRAX_FCSwitchZoneSet_Provider, Switches, Sets>("VRAX_FCSwitchZoneSet");
    benchLoad<VRAX_FCSwitchZone_Provider, Switches, Zones>("VRAX_FCSwitchZone");
    benchLoad<VRAX_FCSwitchZoneAlias_Provider, Switches, Aliases>("VRAX_FCSwitchZoneAlias");
    benchLoad<VRAX_MemberOfZoneSet_Provider, Sets, Zones>("VRAX_MemberOfZoneSet");
    benchLoad<VRAX_MemberOfZone_Provider, Zones, Aliases>("VRAX_MemberOfZone");
    benchLoad<VRAX_ZoneElementSettingData_Provider, Zones, Aliases, Memberships>(
        "VRAX_ZoneElementSettingData");
    benchLoad<VRAX_ZoneAliasElementSettingData_Provider, Zones, Aliases, Memberships>(
        "VRAX_ZoneAliasElementSettingData");
}

} // namespace bench
