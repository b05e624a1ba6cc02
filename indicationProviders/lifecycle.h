// What the indications of elements that come, go and change have in common.
#ifndef INDICATIONPROVIDERS_LIFECYCLE_H
#define INDICATIONPROVIDERS_LIFECYCLE_H

#include "common/Owned.h"
#include "indicationProviders/deliver.h"
#include "support/Event_List.h"
#include "support/VRAX_Except.h"

#include "CIM_ComputerSystem.h"
#include "VRAX_FCPort.h"

#include <functional>
#include <utility>

namespace cimple
{

// Where an indication is built, for the log.
struct Build_Place
{
    const char* source;
    const char* function;
};

// One kind of event of a lifecycle provider.
struct Lifecycle_Event
{
    std::int32_t event;
    Filters filters;
    const char* builder; // the name of the function in the log
    Owned<Instance> (*build)(const Build_Place& place, const Switch_Event& event);
};

template <std::size_t N>
constexpr Event_Types knownEvents(const Lifecycle_Event (&rows)[N])
{
    Event_Types types = 0;
    for (const Lifecycle_Event& row : rows)
        types |= eventType(row.event);
    return types;
}

template <std::size_t N>
void handleLifecycle(const char* source, const Lifecycle_Event (&rows)[N], const Switch_Event& event)
{
    for (const Lifecycle_Event& row : rows)
    {
        if (row.event != event.type)
            continue;
        const auto build = [&] { return row.build({source, row.builder}, event); };
        deliver(source, row.builder, row.filters, std::cref(build));
    }
}

// A new instance with every property null; throws the failure, in which %s is the class, when there is none.
template <class CLASS>
Owned<CLASS> makeAt(const Build_Place& place, const char* failure, int line = __builtin_LINE())
{
    Owned<CLASS> instance = makeNull<CLASS>();
    if (!instance)
        throw VRAX_Except(place.source, place.function, line, failure, {CLASS::static_meta_class.name});
    return instance;
}

// The keys of the element that the event is of. A switch bears its name in upper case, as it is published; a
// port has the WWNs in its keys as the switch spells them.
void setKeys(VRAX_FCPort& port, const Switch_Event& event);
void setKeys(CIM_ComputerSystem& system, const Switch_Event& event);

// "VRAX:" and the name of the element that the event is of: the switch's WWN, or that and the port's.
template <class ELEMENT>
String identifierOf(const Switch_Event& event);
template <>
String identifierOf<VRAX_FCPort>(const Switch_Event& event);
template <>
String identifierOf<CIM_ComputerSystem>(const Switch_Event& event);

// An indication of the element that the event is of, without that element yet.
template <class INDICATION, class ELEMENT>
Owned<INDICATION> startIndication(const Build_Place& place,
                                  const Switch_Event& event,
                                  const char* failure,
                                  int line = __builtin_LINE())
{
    Owned<INDICATION> indication = makeAt<INDICATION>(place, failure, line);
    indication->IndicationIdentifier.set(identifierOf<ELEMENT>(event));
    indication->IndicationTime.set(Datetime::now());
    return indication;
}

} // namespace cimple

#endif
