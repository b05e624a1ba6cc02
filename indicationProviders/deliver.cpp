// From an event to its listeners: one indication.
#include "indicationProviders/deliver.h"

#include "common/Operation.h"
#include "delivery/delivery.h"
#include "support/VRAX_Except.h"

#include <exception>

namespace cimple
{

void deliver(const char* source,
             const char* function,
             const Filters& filters,
             const std::function<Owned<Instance>()>& build)
{
    try
    {
        Destinations destinations;
        for (const std::uint16_t filter : filters)
            filterToDestinations(filter, destinations);
        if (destinations.empty())
            return;
        const Owned<Instance> indication = build();
        sendIndication(indication.get(), destinations);
    }
    catch (const VRAX_Except& failure)
    {
        failure.print();
    }
    catch (const std::exception& failure)
    {
        logCritical(source, function, failure.what(), __LINE__);
    }
}

} // namespace cimple
