// The delays that failed log-ins earn an address.
#include "agent/auth/GuessDelay.h"

#include <gtest/gtest.h>
#include <vector>

namespace cimd
{
namespace
{

using std::chrono::milliseconds;

constexpr milliseconds kLongest{3000};
const std::string kPeer = "192.0.2.7:40000";

TEST(GuessDelayTest, GrowsUntilASuccess)
{
    GuessDelay delay(10, kLongest);
    const GuessDelay::Time now{};
    EXPECT_EQ(milliseconds(0), delay.present(kPeer, now));
    for (const int expected : {250, 500, 1000, 2000, 3000, 3000})
    {
        EXPECT_EQ(milliseconds(expected), delay.failed(kPeer, now));
        EXPECT_EQ(milliseconds(expected), delay.present(kPeer, now));
    }
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(kLongest, delay.failed(kPeer, now));
    delay.succeeded(kPeer);
    EXPECT_EQ(milliseconds(0), delay.present(kPeer, now));
    EXPECT_EQ(milliseconds(250), delay.failed(kPeer, now));
}

TEST(GuessDelayTest, GoesByAddressWithoutThePort)
{
    const struct
    {
        const char* one;
        const char* other;
        bool isSame;
    } rows[] = {
        {"192.0.2.7:1", "192.0.2.7:2", true},
        {"192.0.2.7:1", "192.0.2.8:1", false},
        {"[2001:db8:0:1::1]:1", "[2001:db8:0:1:ffff:ffff:ffff:ffff]:2", true},
        {"[2001:db8:0:1::1]:1", "[2001:db8:0:2::1]:1", false},
        {"[fe80::1%eth0]:1", "[fe80::2%eth0]:1", true},
        {"[::1]:1", "127.0.0.1:1", false},
        {"unknown", "unknown", true},
    };
    for (const auto& row : rows)
    {
        GuessDelay delay(10, kLongest);
        delay.failed(row.one, {});
        EXPECT_EQ(row.isSame, delay.present(row.other, {}) != milliseconds(0)) << row.one << " " << row.other;
        EXPECT_EQ(row.isSame, delay.hasFailed(row.other, {}));
    }
}

TEST(GuessDelayTest, ForgetsWithTimeAndForLackOfRoom)
{
    GuessDelay delay(2, kLongest);
    const GuessDelay::Time start{};
    delay.failed("a:1", start);
    delay.failed("a:1", start + std::chrono::minutes(14));
    EXPECT_EQ(milliseconds(500), delay.present("a:1", start + std::chrono::minutes(28)));
    EXPECT_EQ(milliseconds(0), delay.present("a:1", start + std::chrono::minutes(29)));

    delay.failed("b:1", start);
    delay.failed("c:1", start);
    delay.failed("b:1", start);
    delay.failed("d:1", start);
    EXPECT_EQ(milliseconds(0), delay.present("c:1", start)) << "failed longest ago";
    EXPECT_EQ(milliseconds(500), delay.present("b:1", start));
    EXPECT_EQ(milliseconds(250), delay.present("d:1", start));
}

} // namespace
} // namespace cimd
