// Sends indications to the destinations that have subscribed to them.
#ifndef DELIVERY_DELIVERY_H
#define DELIVERY_DELIVERY_H

namespace cimple
{

// The switch's listeners or subscriptions are others now. Does not wait; from any thread, under any lock.
void subscriptionsChanged();

} // namespace cimple

#endif
