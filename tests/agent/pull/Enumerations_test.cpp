// Who may go on with an enumeration, for how long, and how many there may be.
#include "agent/pull/Enumerations.h"

#include "agent/cim/CimError.h"

#include <atomic>
#include <gtest/gtest.h>
#include <set>
#include <thread>
#include <vector>

namespace cimd
{
namespace
{

using namespace std::chrono_literals;

Limits smallLimits()
{
    Limits limits;
    limits.enumerations = 5;
    limits.clientEnumerations = 3;
    return limits;
}

const EnumerationOwner kOwner{"anna", "root/interop"};

class EnumerationsTest : public ::testing::Test
{
  protected:
    // Opens an enumeration of so many results and leaves it to be pulled.
    std::string
    open(std::size_t results, std::chrono::seconds timeout = 60s, const EnumerationOwner& owner = kOwner)
    {
        Spool spool = _all.spool();
        for (std::size_t i = 0; i < results; ++i)
            spool.add({"", std::to_string(i)});
        spool.seal();
        auto use = _all.add({std::move(spool), PullContent::Instances, owner, "Test_Echo", timeout});
        use.keep();
        return use.name();
    }

    // What one pull of one result gives; empty at the end.
    std::string pull(const std::string& name)
    {
        auto use = _all.use(name, kOwner, PullContent::Instances);
        std::string result(use.spool().take().body);
        if (use.spool().size() > 0)
            use.keep();
        return result;
    }

    template <class Body>
    static int statusOf(Body body)
    {
        try
        {
            body();
        }
        catch (const CimError& error)
        {
            return error.code();
        }
        return 0;
    }

    int statusOfUse(const std::string& name,
                    const EnumerationOwner& owner = kOwner,
                    PullContent content = PullContent::Instances)
    {
        return statusOf([&] { _all.use(name, owner, content).keep(); });
    }

    Limits _limits = smallLimits();
    Enumerations::Time _now{};
    Enumerations _all{_limits, "/tmp", [this] { return _now; }};
};

TEST_F(EnumerationsTest, IsNotForOthers)
{
    const std::string name = open(2);
    const std::string space = kOwner.nameSpace;
    const auto expect = [&](int status, const std::string& asked, const EnumerationOwner& owner)
    {
        EXPECT_EQ(status, statusOfUse(asked, owner)) << asked << owner.principal << owner.nameSpace;
        EXPECT_EQ(status, statusOf([&] { _all.close(asked, owner); }));
    };
    expect(21, name + "0", kOwner);
    expect(21, "", kOwner);
    expect(21, name, {"bert", space});
    expect(21, name, {"", space});
    expect(3, name, {kOwner.principal, "root/cimv2"});
    EXPECT_EQ(21, statusOfUse(name, kOwner, PullContent::Paths));
    EXPECT_EQ(0, statusOfUse(name, {kOwner.principal, "ROOT/Interop"}));
    EXPECT_EQ("0", pull(name)) << "somebody's mistake must not cost its owner anything";
}

TEST_F(EnumerationsTest, ExpiresWhenNothingIsAskedOfIt)
{
    const std::string brief = open(3, 10s);
    const std::string lasting = open(3, 60s);
    _now += 9s;
    EXPECT_EQ("0", pull(brief));
    _now += 9s; // counted from the last pull
    EXPECT_EQ("1", pull(brief));
    {
        const auto use = _all.use(lasting, kOwner, PullContent::Instances);
        _now += 100s;
        _all.expire();
        EXPECT_EQ(1U, _all.size()) << "one in use does not expire, the other one does";
    }
    EXPECT_EQ(0U, _all.size());
    EXPECT_EQ(21, statusOfUse(brief));
    EXPECT_EQ(21, statusOf([&] { _all.close(brief, kOwner); }));
}

TEST_F(EnumerationsTest, TimeoutsAreBounded)
{
    const std::uint32_t most = _limits.enumerationMostSeconds;
    EXPECT_EQ(std::chrono::seconds(_limits.enumerationSeconds), _all.timeout(std::nullopt));
    EXPECT_EQ(1s, _all.timeout(1));
    EXPECT_EQ(std::chrono::seconds(most), _all.timeout(most));
    for (const std::uint32_t wrong : {0U, most + 1, 4294967295U})
        EXPECT_EQ(22, statusOf([&] { _all.timeout(wrong); })) << wrong;
}

TEST_F(EnumerationsTest, AreBoundedInNumber)
{
    std::set<std::string> names;
    for (int i = 0; i < 3; ++i)
        names.insert(open(2, std::chrono::seconds(10 + i)));
    EXPECT_EQ(3U, names.size());
    EXPECT_EQ(27, statusOf([&] { open(2); }));
    _all.close(*names.begin(), kOwner);
    open(2);
    EXPECT_EQ(27, statusOf([&] { open(2); }));
    _now += 11s; // one of those left is over
    EXPECT_EQ(0, statusOf([&] { open(2); }));
}

TEST_F(EnumerationsTest, LeaveRoomForOtherClients)
{
    const auto statusOfOpen = [&](const EnumerationOwner& owner)
    { return statusOf([&] { open(2, 60s, owner); }); };
    const EnumerationOwner anna{"anna", "root/interop", "192.0.2.7"};
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(0, statusOfOpen(anna));
    EXPECT_EQ(27, statusOfOpen({"anna", "root/cimv2", anna.address}));
    EXPECT_EQ(0, statusOfOpen({"anna", anna.nameSpace, "192.0.2.8"}));
    EXPECT_EQ(0, statusOfOpen({"bert", anna.nameSpace, anna.address}));
    EXPECT_EQ(27, statusOfOpen({"bert", anna.nameSpace, anna.address})) << "there are five now";
}

TEST_F(EnumerationsTest, OneOperationAtATime)
{
    const std::string name = open(2);
    {
        auto use = _all.use(name, kOwner, PullContent::Instances);
        EXPECT_EQ(1, statusOfUse(name));
        EXPECT_EQ(24, statusOf([&] { _all.close(name, kOwner); }));
        use.keep();
    }
    EXPECT_EQ("0", pull(name));
    {
        const auto failed = _all.use(name, kOwner, PullContent::Instances);
    }
    EXPECT_EQ(21, statusOfUse(name)) << "a pull that failed has lost results";
}

TEST_F(EnumerationsTest, ThreadsShareTheResultsOfOne)
{
    constexpr int kResults = 2000;
    const std::string name = open(kResults);
    std::atomic<int> pulled{0};
    std::vector<std::thread> pullers;
    for (int i = 0; i < 4; ++i)
        pullers.emplace_back(
            [&]
            {
                for (int status = 0; status == 0 || status == 1;) // 1: another one is pulling
                {
                    status = statusOf([&] { pull(name); });
                    pulled += status == 0 ? 1 : 0;
                }
            });
    for (std::thread& puller : pullers)
        puller.join();
    EXPECT_EQ(kResults, pulled);
    EXPECT_EQ(0U, _all.size());
}

} // namespace
} // namespace cimd
