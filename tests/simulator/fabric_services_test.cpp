// Tests of the fabric services: lists of switches, ports and links, their memory and their failures.
#include "platform/xpl_fcs.h"

#include "platform/data_cache.h"
#include "platform/xpl_lib.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace simulator;

namespace
{

using Texts = std::vector<std::string>;

// Lists elements as "WWN number" texts and gives all memory back; "error n" when it failed.
template <class Element, class List>
Texts listed(std::int32_t Element::*number, List list)
{
    std::uint32_t count = 99;
    std::int32_t error = 99;
    Element** cell = list(&count, &error);
    if (cell == nullptr)
    {
        EXPECT_EQ(0u, count);
        return {"error " + std::to_string(error)};
    }
    EXPECT_EQ(0, error);
    Texts texts;
    for (std::uint32_t i = 0; i < count; ++i)
        texts.push_back(std::string((*cell)[i].wwn) + " " + std::to_string((*cell)[i].*number));
    std::free(*cell);
    xpl_libFreeMemory(cell);
    return texts;
}

Texts switches()
{
    return listed(&xpl_fcsSwitch::domainId,
                  [](auto... results) { return xpl_fcsGetSwitchList(hSwitch, results...); });
}

Texts ports(std::int32_t domain)
{
    return listed(&xpl_fcsPort::number,
                  [=](auto... results) { return xpl_fcsGetPortList(hSwitch, domain, results...); });
}

Texts linkedTo(std::int32_t domain, std::int32_t port)
{
    return listed(&xpl_fcsAttached::kind,
                  [=](auto... results) { return xpl_fcsGetPortTopology(hSwitch, domain, port, results...); });
}

// Domain 1 with ports 0 to 3, 2 with 0 to 2; 1/0 - 2/1 linked, two nodes on 1/3, one on 2/2.
class FabricServices : public testing::Test
{
  protected:
    SimSwitch sim = SimSwitch::make()
                        .wwn("100002A5C0de0001")
                        .port(1, [](PortScenario& port) { port.wwn = "0000000000000000"; })
                        .remote(2, 3)
                        .isl({1, 0, 2, 1, false})
                        .node(1, 3, "2100AAc5c0de0009")
                        .node(1, 3, "2100aac5c0de0001")
                        .node(2, 2, "2100aac5c0de0002");

    ~FabricServices() override { EXPECT_EQ(0u, sim.outstandingBlocks()); }
};

TEST_F(FabricServices, ListSwitchesAndPortsByTheNamesOfTheDataCache)
{
    EXPECT_EQ((Texts{"100002A5C0de0001 1", "100002a5c0de1002 2"}), switches());
    EXPECT_EQ((Texts{"200002A5C0de0001 0", "200102A5C0de0001 1", "200202A5C0de0001 2", "200302A5C0de0001 3"}),
              ports(1));
    const FabricCache* fabric = DataCache::instance()->getFabric(1);
    const PortCache first = fabric->getNextSwitch(fabric->getFirstSwitch())->getFirstPort();
    EXPECT_EQ(first.getWwn().toString() + " 0", ports(2).at(0));
    sim.removeSwitch(2);
    EXPECT_EQ((Texts{"100002A5C0de0001 1"}), switches());
    EXPECT_EQ((Texts{"error 2"}), ports(2));
}

TEST_F(FabricServices, TellWhatAPortIsLinkedTo)
{
    struct
    {
        int domain;
        int port;
        Texts linked;
    } const rows[] = {
        {1, 0, {"200102a5c0de1002 1"}},
        {2, 1, {"200002A5C0de0001 1"}},
        {1, 3, {"2100AAc5c0de0009 2", "2100aac5c0de0001 2"}},
        {2, 2, {"2100aac5c0de0002 2"}},
        {1, 2, {}}, // up with nothing attached
        {1, 4, {"error 2"}},
        {1, -1, {"error 2"}},
        {3, 0, {"error 2"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.linked, linkedTo(row.domain, row.port)) << row.domain << "/" << row.port;
}

TEST_F(FabricServices, ShowALinkWhileBothItsEndsAreUp)
{
    const auto seen = [&](bool up)
    {
        EXPECT_EQ(up ? 1u : 0u, linkedTo(1, 0).size());
        EXPECT_EQ(up ? 1u : 0u, linkedTo(2, 1).size());
    };
    sim.portDown(0);
    seen(false);
    EXPECT_EQ((Texts{}), linkedTo(1, 0));
    sim.changePort(0, [](PortScenario& port) { port.link = LinkState::automatic; });
    seen(true);
    sim.changeSwitch([](SwitchScenario& one) { one.adminState = AdminState::offline; });
    seen(false);
    sim.changeSwitch([](SwitchScenario& one) { one.adminState = AdminState::online; });
    sim.failPort(0);
    seen(false);
    sim.failPort(0, false);
    sim.portDown(3);
    EXPECT_EQ((Texts{}), linkedTo(1, 3));
    sim.portUp(3);
    sim.removeNode("2100AAC5C0DE0009");
    EXPECT_EQ((Texts{"2100aac5c0de0001 2"}), linkedTo(1, 3));
    sim.removeSwitch(2);
    EXPECT_EQ((Texts{}), linkedTo(1, 0));

    sim.open(SimSwitch::make().remote(2, 2).isl({1, 0, 2, 1, true}).scenario());
    seen(false); // isolated
}

TEST(LinksBetweenSwitches, GoDownAtBothEndsWhenOneIsSwitchedOff)
{
    PortScenario automatic;
    SimSwitch sim = SimSwitch::make().ports(1).everyPort(automatic).remote(2, 0).uptimeSeconds(60);
    Scenario scenario = sim.scenario();
    scenario.switches[1].ports.push_back(automatic);
    scenario.isls.push_back({1, 0, 2, 0, false});
    sim.open(scenario);
    const auto states = [](const char* local, const char* remote)
    {
        EXPECT_EQ(local, valueOf("Oper.UserPort.0.0.OperState"));
        EXPECT_EQ(remote, valueOf("Oper.TopologyAll.2.Entry.0.PortState"));
    };
    states("Online", "Online");
    EXPECT_NE(0u, counterOf(0, "TotalRxWords"));
    sim.changePort(0, [](PortScenario& port) { port.adminState = AdminState::diagnostics; });
    states("Diagnostics", "Offline");
    sim.changePort(0, [](PortScenario& port) { port.adminState = AdminState::online; });
    states("Online", "Online");

    scenario.switches[1].ports[0].adminState = AdminState::offline;
    sim.open(scenario);
    states("Offline", "Offline");
    EXPECT_EQ(0u, counterOf(0, "TotalRxWords"));
}

} // namespace
