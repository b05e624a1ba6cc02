// How long objects live, and which thread may have them.
#include "tests/agent/broker/BrokerFixture.h"

#include <thread>

namespace cimd::test
{
namespace
{

using LifeTime = BrokerFixture;

TEST_F(LifeTime, ClonesOutliveTheCall)
{
    CMPIString* clone = nullptr;
    {
        Results inner;
        ProviderCall nested(broker, {request, "root/test", 0, {}, "Nested"}, inner);
        CMPIString* original = CMNewString(mb, "kept", nullptr);
        clone = CMClone(original, nullptr);
        EXPECT_EQ(CMRelease(original).rc, CMPI_RC_OK); // early release of a factory's object
        CMNewString(mb, "left to the broker", nullptr);
    }
    EXPECT_EQ(text(clone), "kept");
    std::thread other([&] { EXPECT_EQ(CMRelease(clone).rc, CMPI_RC_OK); });
    other.join();
}

TEST_F(LifeTime, ObjectsOfACallStayOnItsThread)
{
    CMPIString* string = CMNewString(mb, "mine", nullptr);
    CMPIStatus created{CMPI_RC_OK, nullptr};
    CMPIStatus released{CMPI_RC_OK, nullptr};
    std::thread other(
        [&]
        {
            EXPECT_EQ(CMNewString(mb, "theirs", &created), nullptr);
            released = CMRelease(string);
        });
    other.join();
    EXPECT_EQ(created.rc, CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(released.rc, CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(text(string), "mine");
}

TEST_F(LifeTime, LevelsNestAndEndInOrder)
{
    const CMPIBrokerMemFT& memory = *mb->mft;
    CMPIGcStat* outer = memory.mark(mb, nullptr);
    CMPIString* kept = CMClone(CMNewString(mb, "kept", nullptr), nullptr);
    CMPIGcStat* inner = memory.mark(mb, nullptr);
    memory.freeString(mb, CMNewString(mb, "freed at once", nullptr));
    EXPECT_EQ(memory.release(mb, kept).rc, CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(memory.release(mb, outer).rc, CMPI_RC_OK);
    EXPECT_EQ(memory.release(mb, inner).rc, CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(text(kept), "kept");
    CMRelease(kept);
    memory.cmpiFree(mb, memory.cmpiRealloc(mb, memory.cmpiStrDup(mb, "text"), 100));
}

TEST_F(LifeTime, ThreadsAttachOnceWithAPreparedContext)
{
    CMPIContext* prepared = CBPrepareAttachThread(mb, call.context());
    ASSERT_NE(prepared, nullptr);
    EXPECT_EQ(CBAttachThread(mb, call.context()).rc, CMPI_RC_ERR_INVALID_HANDLE); // not a prepared one
    EXPECT_EQ(CBDetachThread(mb, prepared).rc, CMPI_RC_ERR_INVALID_HANDLE);       // not attached yet
    std::thread other(
        [&]
        {
            EXPECT_EQ(CBAttachThread(mb, prepared).rc, CMPI_RC_OK);
            EXPECT_EQ(CBAttachThread(mb, prepared).rc, CMPI_RC_ERR_INVALID_HANDLE);
            EXPECT_EQ(text(CMNewString(mb, "here", nullptr)), "here");
            EXPECT_EQ(text(CMGetContextEntry(prepared, CMPIPrincipal, nullptr)), "alice");
            EXPECT_EQ(CBDetachThread(mb, prepared).rc, CMPI_RC_OK);
            EXPECT_EQ(CMNewString(mb, "gone", nullptr), nullptr);
        });
    other.join();
    CBPrepareAttachThread(mb, call.context()); // for a thread that never came: freed with the broker
}

TEST_F(LifeTime, CallsNestToALimit)
{
    std::vector<std::unique_ptr<ProviderCall>> calls;
    const auto nest = [&]
    {
        while (calls.size() < 2 * CallScope::kMaxDepth)
            calls.push_back(std::make_unique<ProviderCall>(
                broker, ProviderCall::Origin{request, "root/test", 0, {}, "Deep"}, results));
    };
    EXPECT_EQ(outcome(nest), "27 providers called each other more than 32 levels deep");
    EXPECT_EQ(calls.size(), CallScope::kMaxDepth - 1); // the fixture's own is the first
    while (!calls.empty())
        calls.pop_back();
    EXPECT_EQ(text(CMNewString(mb, "still here", nullptr)), "still here");
}

} // namespace
} // namespace cimd::test
