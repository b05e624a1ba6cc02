// Tests of what owns the platform's memory and locks.
#include "platform/switch_server.h"
#include "support/VRAX_Except.h"
#include "switchaccess/CacheLock.h"
#include "switchaccess/XPL_Mem.h"
#include "switchaccess/local_switch.h"
#include "switchaccess/principal_switch.h"
#include "tests/common/testing/Switch_Test.h"

// Asked instead of the platform's function; see CMakeLists.txt.
extern "C" char** __real__Z32get_Local_Switch_World_Wide_Namev();
extern "C" char** __wrap__Z32get_Local_Switch_World_Wide_Namev();
static bool outOfMemory = false;
char** __wrap__Z32get_Local_Switch_World_Wide_Namev()
{
    return outOfMemory ? nullptr : __real__Z32get_Local_Switch_World_Wide_Namev();
}

namespace cimple
{
namespace
{

class PlatformMemory : public Switch_Test
{
};

TEST_F(PlatformMemory, ACellAndItsValueAreGivenBack)
{
    {
        const XPL_Mem<char*> wwn(get_Local_Switch_World_Wide_Name());
        ASSERT_FALSE(wwn.empty());
        EXPECT_STREQ(*wwn, "100002a5c0de0001");
        EXPECT_EQ(sim.outstandingBlocks(), 1u);
        // The value may be exchanged for another one that free() takes.
        std::free(*wwn);
        *wwn = nullptr;
    }
    EXPECT_EQ(sim.outstandingBlocks(), 0u);
    const XPL_Mem<char*> nothing(nullptr);
    EXPECT_TRUE(nothing.empty());
}

TEST_F(PlatformMemory, ASwitchWithoutANameIsToldFromOneWithIt)
{
    EXPECT_STREQ(Local_Switch_Wwn({"x/Y", "load"}).text(), "100002a5c0de0001");
    sim.failNext("get_Local_Switch_World_Wide_Name");
    EXPECT_THROW(Local_Switch_Wwn({"x/Y", "load"}), VRAX_Except) << "no value in the cell";
    outOfMemory = true;
    try
    {
        Local_Switch_Wwn({"x/Y", "Change", 5}, Failure_Text::line("no WWN"));
        ADD_FAILURE() << "there is no cell";
    }
    catch (const VRAX_Except& failure)
    {
        EXPECT_STREQ(failure.file, "x/Y");
        EXPECT_STREQ(failure.function, "Change");
        EXPECT_STREQ(failure.message, "no WWN");
    }
    outOfMemory = false;
    EXPECT_STREQ(Principal_Switch_Wwn().text(), "100002a5c0de0001");
    sim.setPrincipal(0);
    EXPECT_EQ(Principal_Switch_Wwn().text(), nullptr);
}

TEST_F(PlatformMemory, LookingIntoNoCellStopsTheProgram)
{
    const XPL_Mem<char*> nothing(nullptr);
    EXPECT_DEATH(*nothing, "apps/cimd/XPL_Mem:.*T& XPL_Mem<T>::operator.*_p != 0");
}

TEST_F(PlatformMemory, TheCacheLockReleasesWhatItObtainedAndNothingElse)
{
    {
        const CacheLock outer;
        const CacheLock inner;
        EXPECT_TRUE(outer.obtained());
        EXPECT_TRUE(inner.obtained());
        sim.refuseCacheLock();
        const CacheLock refused;
        EXPECT_FALSE(refused.obtained());
        EXPECT_THROW(requireCacheLock(refused, "x"), VRAX_Except);
        EXPECT_EQ(sim.heldCacheLocks(), 2);
    }
    EXPECT_EQ(sim.heldCacheLocks(), 0);
}

} // namespace
} // namespace cimple
