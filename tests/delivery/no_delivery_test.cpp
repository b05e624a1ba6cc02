// What becomes of indications in a build that cannot send any.
#include "delivery/delivery.h"

#include "tests/delivery/test_indications.h"
#include "tests/support/Log_Capture.h"

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

TEST(NoDeliveryTest, TheFirstLossIsSaid)
{
    const Log_Capture log;
    startDelivery(nullptr);
    sendIndication(alert("to nobody").ptr(), {});
    EXPECT_TRUE(log.take().empty());
    for (int i = 0; i < 2; ++i)
        sendIndication(alert("lost").ptr(), {"http://127.0.0.1/"});
    stopDelivery();
    EXPECT_EQ(
        log.texts(),
        std::vector<std::string>{"Indications are lost: this build has no delivery, for want of libcurl"});
}

} // namespace
} // namespace cimple
