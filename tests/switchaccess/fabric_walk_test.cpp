// Tests of a walk that the simulated fabric cannot show; the tables of the endpoints show the others.
#include "switchaccess/fabric_walk.h"

#include <vector>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

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

TEST(FabricWalk, ATopologyPortWithoutAWwnEndsItsWalk)
{
    const Half_Known_Switch owner;
    std::vector<int> entries;
    for (const PortCache& port : Topology_Ports(owner))
        entries.push_back(port.getEntryNumber());
    EXPECT_EQ(entries, (std::vector<int>{5, 6}));
}

} // namespace
} // namespace cimple
