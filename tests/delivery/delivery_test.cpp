// Delivery as a whole: from the switch's subscriptions to a listener.
#include "delivery/delivery.h"

#include "simulator/testing/SimSwitch.h"
#include "tests/delivery/Test_Listener.h"
#include "tests/delivery/test_indications.h"
#include "tests/support/Log_Capture.h"

#include <gtest/gtest.h>
#include <string>

namespace cimple
{
namespace
{

class DeliveryTest : public testing::Test
{
  protected:
    DeliveryTest() { subscriptionsChanged(); }

    Test_Listener listener;
    simulator::SimSwitch sim{
        simulator::SimSwitch::make().listener("l", listener.url()).subscription("s", "CQL:Alert:All", {"l"})};
    const Log_Capture log;
};

void raise(const std::string& text)
{
    Destinations list;
    filterToDestinations(16, list);
    sendIndication(alert(text).ptr(), list);
}

TEST_F(DeliveryTest, StartsAndStopsAnyNumberOfTimes)
{
    startDelivery(nullptr);
    stopDelivery();
    stopDelivery();
    for (std::size_t round = 1; round <= 2; ++round)
    {
        raise("nobody sends this");
        raise("nor this");
        startDelivery(nullptr);
        startDelivery(nullptr);
        raise("round");
        listener.waitFor(round);
        stopDelivery();
        stopDelivery();
    }
    EXPECT_EQ(listener.requests().size(), 2u);
    EXPECT_EQ(log.texts(), (std::vector<std::string>(2, "Indications are lost: their delivery does not run")))
        << "once each time that it does not run";
    startDelivery(nullptr);
    sendIndication(nullptr, {listener.url().c_str()});
    stopDelivery();
    EXPECT_EQ(listener.requests().size(), 2u);
}

} // namespace
} // namespace cimple
