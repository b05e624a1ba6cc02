// Who may go on with an enumeration, for how long, and how many there may be.
#include "agent/pull/Enumerations.h"

#include "agent/cim/CimError.h"

#include <future>
#include <gtest/gtest.h>
#include <set>
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
    const struct
    {
        std::string name;
        EnumerationOwner owner;
        PullContent content;
        int status;
    } rows[] = {
        {name + "0", kOwner, PullContent::Instances, 21},
        {"", kOwner, PullContent::Instances, 21},
        {name, {"bert", kOwner.nameSpace}, PullContent::Instances, 21},
        {name, {"", kOwner.nameSpace}, PullContent::Instances, 21},
        {name, {kOwner.principal, "root/cimv2"}, PullContent::Instances, 3},
        {name, kOwner, PullContent::Paths, 21},
        {name, {kOwner.principal, "ROOT/Interop"}, PullContent::Instances, 0},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(&row - rows);
        EXPECT_EQ(row.status, statusOfUse(row.name, row.owner, row.content));
        if (row.content == PullContent::Instances && row.status != 0)
            EXPECT_EQ(row.status, statusOf([&] { _all.close(row.name, row.owner); }));
    }
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
    const EnumerationOwner anna{"anna", "root/interop", "192.0.2.7"};
    const struct
    {
        EnumerationOwner owner;
        int status;
    } rows[] = {
        {anna, 0},
        {anna, 0},
        {anna, 0},
        {{anna.principal, "root/cimv2", anna.address}, 27},
        {{anna.principal, anna.nameSpace, "192.0.2.8"}, 0},
        {{"bert", anna.nameSpace, anna.address}, 0},
        {{"bert", anna.nameSpace, anna.address}, 27}, // there are five now
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.status, statusOf([&] { open(2, 60s, row.owner); })) << &row - rows;
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
    std::promise<void> start;
    std::shared_future<void> started = start.get_future();
    std::vector<std::future<int>> pullers;
    for (int i = 0; i < 4; ++i)
        pullers.push_back(std::async(std::launch::async,
                                     [&, started]
                                     {
                                         started.wait();
                                         int pulled = 0;
                                         for (int status = 0; status == 0 || status == 1;)
                                         {
                                             status = statusOf([&] { pull(name); });
                                             pulled += status == 0 ? 1 : 0;
                                         }
                                         return pulled;
                                     }));
    start.set_value();
    int pulled = 0;
    for (auto& puller : pullers)
        pulled += puller.get();
    EXPECT_EQ(kResults, pulled);
    EXPECT_EQ(0U, _all.size());
}

} // namespace
} // namespace cimd
