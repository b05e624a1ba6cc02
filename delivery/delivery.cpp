// Sends indications to the destinations that have subscribed to them.
#include "delivery/delivery.h"

namespace cimple
{

void subscriptionsChanged() {}

} // namespace cimple
