// Tests of the switch server's helpers: memory and the walk of attached ports.
#include "platform/switch_server.h"

#include "platform/xpl_lib.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

using namespace simulator;

namespace
{

TEST(TextCellsDeathTest, ForeignBlocksAreNotTakenBack)
{
    int foreign = 0;
    EXPECT_DEATH(xpl_libFreeMemory(&foreign), "a block that the library did not hand out");
}

TEST(AttachedPorts, AreWalkedByAddress)
{
    NodeScenario fixed;
    fixed.domain = 1;
    fixed.port = 0;
    fixed.address = 0x01FFEE;
    fixed.portWwn = "210002a5c0de0004";
    SimSwitch sim = SimSwitch::make()
                        .ports(12)
                        .remote(2, 1)
                        .node(fixed)
                        .node(1, 11, "210002a5c0de0001")
                        .node(1, 3, "210002a5c0de0002")
                        .node(1, 3, "210002a5c0de0003"); // a second one on the same port
    EXPECT_EQ((std::vector<std::string>{"010300", "010301", "010b00", "01ffee"}), attachedTo("1"));
    EXPECT_TRUE(attachedTo("2").empty());
    for (const char* bad : {"3", "", "x", "-1"})
        EXPECT_TRUE(attachedTo(bad).empty()) << bad;
    sim.portDown(3);
    EXPECT_EQ((std::vector<std::string>{"010b00", "01ffee"}), attachedTo("1"));
}

TEST(AttachedPorts, GivenAddressesComeBeforeThoseThatAreFoundWhateverTheOrder)
{
    NodeScenario given;
    given.domain = 1;
    given.port = 0;
    given.address = 0x010300; // the first of port 3
    given.portWwn = "210002a5c0de0002";
    SimSwitch sim = SimSwitch::make().node(1, 3, "210002a5c0de0001").node(given);
    EXPECT_EQ((std::vector<std::string>{"010300", "010301"}), attachedTo("1"));
    given.portWwn = "210002a5c0de0003";
    EXPECT_EQ("address 010300 is taken: 210002a5c0de0003 in domain 1",
              errorFrom([&] { sim.addNode(given); }));
}

TEST(AttachedPorts, AWalkSurvivesLogouts)
{
    SimSwitch sim = SimSwitch::make()
                        .node(1, 0, "210002a5c0de0001")
                        .node(1, 1, "210002a5c0de0002")
                        .node(1, 2, "210002a5c0de0003");
    char address[kAttachedPortAddressSize];
    const int first = get_first_attached_port("1", address);
    sim.removeNode("210002a5c0de0001"); // where the walk stands
    sim.removeNode("210002a5c0de0002"); // where it would go next
    EXPECT_NE(0, get_next_attached_port("1", first, address));
    EXPECT_STREQ("010200", address);
}

} // namespace
