// Tests of the walks over switches and ports: what they visit, where they end, how often they ask.
#include "switchaccess/fabric_walk.h"

#include "switchaccess/CacheLock.h"
#include "tests/common/testing/Switch_Test.h"

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

// Writes down what it is shown.
struct Diary
{
    void localPort(const Walked_Switch& owner, const Local_Port& port)
    {
        visits.push_back("local " + owner.wwn.toString() + " " + port.index + " " + port.wwn.toString());
    }
    void remotePort(const Walked_Switch& owner, const PortCache& port)
    {
        visits.push_back("remote " + std::to_string(owner.domain) + " " +
                         std::to_string(port.getEntryNumber()));
    }
    void attachedPort(const Walked_Switch& at, const char* address)
    {
        visits.push_back(std::string("attached ") + at.domainText.c_str() + " " + address);
    }
    Texts visits;
};

class FabricWalk : public Switch_Test
{
  protected:
    static Texts walk()
    {
        const CacheLock lock;
        Diary diary;
        walkAllPorts(*DataCache::instance(), diary);
        return diary.visits;
    }
};

TEST_F(FabricWalk, VisitsOfEachSwitchItsOwnPortsThenTheAttachedOnes)
{
    sim.open(simulator::SimSwitch::make()
                 .domain(26)
                 .ports(2)
                 .remote(3, 2)
                 .remote(200, 1)
                 .node(26, 1, "2100000000000001")
                 .node(3, 0, "2100000000000002")
                 .node(3, 1, "2100000000000003")
                 .scenario());
    EXPECT_EQ(walk(),
              (Texts{"remote 3 0",
                     "remote 3 1",
                     "attached 3 030000",
                     "attached 3 030100",
                     "local 100002a5c0de0001 0 200002a5c0de0001",
                     "local 100002a5c0de0001 1 200102a5c0de0001",
                     "attached 26 1a0100",
                     "remote 200 0"}));
    // Every step is asked for once, the one that ends a walk included.
    const std::map<std::string, std::size_t> calls = {
        {"FabricCache::getFirstSwitch", 1},
        {"FabricCache::getNextSwitch", 3},
        {"DataCache::getFirstRootPortIndex", 1},
        {"DataCache::getNextRootPortIndex", 2},
        {"DataCache::calcPortWwn", 2},
        {"SwitchCache::getFirstPort", 2},
        {"SwitchCache::getNextPort", 3},
        {"get_first_attached_port", 3},
        {"get_next_attached_port", 3},
    };
    for (const auto& [call, times] : calls)
        EXPECT_EQ(sim.calls(call), times) << call;
}

TEST_F(FabricWalk, EndsWhereThePlatformHasNothingMore)
{
    sim.open(simulator::SimSwitch::make()
                 .ports(2)
                 .remote(2, 2)
                 .node(1, 0, "2100000000000001")
                 .node(1, 1, "2100000000000002")
                 .scenario());
    const std::string local = "local 100002a5c0de0001 ";
    const Texts all = {local + "0 200002a5c0de0001",
                       local + "1 200102a5c0de0001",
                       "attached 1 010000",
                       "attached 1 010100",
                       "remote 2 0",
                       "remote 2 1"};
    ASSERT_EQ(walk(), all);
    struct Row
    {
        const char* call; // that comes back empty-handed
        int afterSkipping;
        std::size_t from; // the visits that are left out
        std::size_t to;
    };
    const Row rows[] = {
        {"DataCache::getFabric", 0, 0, 6},
        {"FabricCache::getFirstSwitch", 0, 0, 6},
        {"FabricCache::getNextSwitch", 0, 4, 6},
        {"DataCache::getFirstRootPortIndex", 0, 0, 2},
        {"DataCache::getNextRootPortIndex", 0, 1, 2},
        {"DataCache::calcPortWwn", 0, 0, 2},
        {"DataCache::calcPortWwn", 1, 1, 2},
        {"get_first_attached_port", 0, 2, 4},
        {"get_next_attached_port", 0, 3, 4},
        {"SwitchCache::getFirstPort", 0, 4, 6},
        {"SwitchCache::getNextPort", 0, 5, 6},
    };
    for (const Row& row : rows)
    {
        Texts expected = all;
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(row.from),
                       expected.begin() + static_cast<std::ptrdiff_t>(row.to));
        sim.failNext(row.call, 1, XPL_UNREACHABLE, row.afterSkipping);
        EXPECT_EQ(walk(), expected) << row.call << " after " << row.afterSkipping;
    }
    EXPECT_EQ(walk(), all);
}

// A switch whose topology has a port without a name in its middle, which the simulated fabric has not.
class Half_Known_Switch final : public SwitchCache
{
  public:
    Wwn getWwn() const override { return Wwn("100002a5c0de0009"); }
    int getDomainID() const override { return 9; }
    bool isLocal() const override { return false; }
    PortCache getFirstPort() const override { return PortCache(5, Wwn("2000000000000000")); }
    PortCache getNextPort(const PortCache& previous) const override
    {
        return PortCache(previous.getEntryNumber() + 1,
                         previous.getEntryNumber() == 6 ? Wwn() : Wwn("2000000000000001"));
    }
};

TEST_F(FabricWalk, ATopologyPortWithoutAWwnEndsItsWalk)
{
    const Half_Known_Switch owner;
    std::vector<int> entries;
    for (const PortCache& port : Topology_Ports(owner))
        entries.push_back(port.getEntryNumber());
    EXPECT_EQ(entries, (std::vector<int>{5, 6}));
}

TEST_F(FabricWalk, TheLocalPortsCanBeWalkedWithoutTheirNames)
{
    Texts indexes;
    for (const std::string& index : Root_Ports(*DataCache::instance()))
        indexes.push_back(index);
    EXPECT_EQ(indexes, (Texts{"0", "1", "2", "3"}));
    EXPECT_EQ(sim.calls("DataCache::calcPortWwn"), 0u);
}

} // namespace
} // namespace cimple
