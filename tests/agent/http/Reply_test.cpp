// A reply without a server: orders of events that the server's threads meet too seldom.
#include "agent/http/Reply.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

class CountingOutlet : public Outlet
{
  public:
    void pause() override { ++paused; }
    void goOn() override { --paused; }
    void drop() override {}

    int paused = 0;
};

TEST(ReplyTest, LeavesNothingPausedHoweverItEnds)
{
    const Limits limits;
    SpoolArea area("/tmp", 0, 0);
    const auto now = Alarm::Clock::now();
    const struct
    {
        const char* order; // a: await, c: close, f: finish
        Reply::Start start;
    } rows[] = {
        {"af", Reply::Start::Whole},
        {"ac", Reply::Start::None},
        {"afc", Reply::Start::None},
        {"acf", Reply::Start::None},
        {"ca", Reply::Start::None},
        {"caf", Reply::Start::None},
    };
    for (const auto& row : rows)
    {
        CountingOutlet outlet;
        Reply reply(limits, area, outlet);
        for (const char* step = row.order; *step != '\0'; ++step)
            if (*step == 'a')
                reply.await();
            else if (*step == 'c')
                reply.close("the end");
            else
                reply.finish({200, {}, "body"}, now);
        EXPECT_EQ(0, outlet.paused) << row.order;
        HttpResponse head;
        EXPECT_EQ(row.start, reply.takeHead(head)) << row.order;
    }
}

} // namespace
} // namespace cimd
