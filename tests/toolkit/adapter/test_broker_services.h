// The function tables of the test broker. Internal.
#pragma once

#include <cmpift.h>

namespace test_broker
{

// A CMPIBroker with all tables; `hdl` is to be set to the Broker.
CMPIBroker services();

} // namespace test_broker
