// Tests that the administrative mode is given back, if not at once then by the next one who asks for it.
#include "platform/xpl_fzs.h"
#include "simulator/testing/SimSwitch.h"
#include "switchaccess/Admin_Mode.h"

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

TEST(AdminMode, IsGivenBackAtTheNextChanceWhenTheSwitchRefuses)
{
    simulator::SimSwitch sim = simulator::SimSwitch::make();
    sim.failNext("Cmd.Switch.RelAdmin", 2);
    EXPECT_NE(Admin_Mode().leave(), 0);
    EXPECT_EQ(sim.adminModeHolder(), "admin command");
    EXPECT_EQ(Admin_Mode().entered(), XPL_FZS_LOCKED) << "it is still not taken back";
    {
        const Admin_Mode mode;
        EXPECT_EQ(mode.entered(), 0);
    }
    EXPECT_EQ(sim.adminModeHolder(), "");

    sim.failNext("Cmd.Switch.RelAdmin");
    EXPECT_NE(Admin_Mode().leave(), 0);
    sim.adminOwnerGoes(); // the switch has given it up of itself
    sim.holdAdminMode("console");
    EXPECT_EQ(Admin_Mode().entered(), XPL_FZS_LOCKED);
    EXPECT_EQ(sim.adminModeHolder(), "console");
    sim.releaseAdminMode();
    sim.mark();
    EXPECT_EQ(Admin_Mode().leave(), 0);
    EXPECT_EQ(Admin_Mode().leave(), 0);
    const std::vector<std::string> once = {
        "Cmd.Switch.RelAdmin", "Cmd.Switch.ReqAdmin", "Cmd.Switch.RelAdmin"};
    const std::vector<std::string> writes = sim.writes();
    EXPECT_EQ(std::vector<std::string>(writes.begin(), writes.begin() + 3), once);
    EXPECT_EQ(writes.size(), 5u) << "what is no longer ours is not tried again and again";
}

} // namespace
} // namespace cimple
