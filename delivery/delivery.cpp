// Delivery of indications: nobody is subscribed to anything.
#include "delivery/delivery.h"

namespace cimple
{

void startDelivery(Expire_Listener) {}
void stopDelivery() {}
void subscriptionsChanged() {}
void filterToDestinations(std::uint16_t, Destinations&) {}
void sendIndication(const Instance*, const Destinations&) {}

} // namespace cimple
