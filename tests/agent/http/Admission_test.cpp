// Who has to go when connections run out.
#include "agent/http/Admission.h"

#include <gtest/gtest.h>
#include <map>

namespace cimd
{
namespace
{

TEST(AdmissionTest, StrangersGoFirstThenThoseServedLongestAgoAndNobodyWhoIsBeingServed)
{
    const Time start = timeNow();
    const std::chrono::seconds patience(30);
    Admission admission(6, 6, patience);
    std::map<std::uint64_t, Admission::Place> places;
    for (std::uint64_t id = 1; id <= 6; ++id)
    {
        EXPECT_FALSE(admission.isFull());
        places[id] = admission.enter(id, id == 5 ? "192.0.2.5" : "192.0.2.1");
    }
    EXPECT_TRUE(admission.isFull());
    EXPECT_EQ("192.0.2.1 (5)", admission.most());
    for (const std::uint64_t id : {2U, 1U, 4U, 2U}) // the last time: 1, 4, 2
        admission.served(places[id]);
    places[3]->isBusy = places[4]->isBusy = true;
    places[3]->behindSince = start + std::chrono::seconds(2);
    places[4]->behindSince = start + std::chrono::seconds(1);

    EXPECT_EQ(6U, admission.next("192.0.2.1")->id);
    EXPECT_EQ(nullptr, admission.next("192.0.2.9"));
    for (const std::uint64_t id : {5U, 6U, 1U, 2U})
    {
        ASSERT_NE(nullptr, admission.next(start + 2 * patience)) << id;
        EXPECT_EQ(id, admission.next(start + 2 * patience)->id);
        admission.leave(places[id]);
    }
    EXPECT_EQ(nullptr, admission.next("192.0.2.1"));
    // Then those who have long been behind with taking their answers.
    EXPECT_EQ(nullptr, admission.next(start + patience));
    EXPECT_EQ(4U, admission.next(start + patience + std::chrono::seconds(1))->id);
    EXPECT_EQ(4U, admission.next(start + 2 * patience)->id);
}

TEST(AdmissionTest, CountsByAddress)
{
    Admission admission(10, 2, std::chrono::seconds(30));
    const auto first = admission.enter(1, "2001:db8::/64");
    admission.enter(2, "2001:db8::/64");
    EXPECT_TRUE(admission.isFullFor("2001:db8::/64"));
    EXPECT_FALSE(admission.isFullFor("2001:db8:0:1::/64"));
    admission.leave(first);
    EXPECT_FALSE(admission.isFullFor("2001:db8::/64"));
}

} // namespace
} // namespace cimd
