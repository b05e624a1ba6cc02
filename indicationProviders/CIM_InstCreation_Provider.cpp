// Switches and ports that come.
#include "indicationProviders/CIM_InstCreation_Provider.h"

#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "indicationProviders/lifecycle.h"

namespace cimple
{

namespace
{

constexpr const char* kSource = CIM_InstCreation_Provider::kSource;

// The port as it is published, read anew: clients need not ask for it.
Owned<Instance> indicateCreateFCPort(const Build_Place& place, const Switch_Event& event)
{
    Owned<CIM_InstCreation> indication = startIndication<CIM_InstCreation, VRAX_FCPort>(
        place, event, "Unable to create instance for indicateCreateFCPort");
    Owned<VRAX_FCPort> port = makeAt<VRAX_FCPort>(place, "Unable to create %s instance");
    if (!VRAX_FCPort_Provider::describe(event.switchWwn, event.portWwn, *port))
        throw VRAX_Except(place.source, place.function, __LINE__, "Unable to find expected FCPort entry");
    indication->SourceInstance = port.release();
    return indication;
}

Owned<Instance> indicateCreateComputerSystem(const Build_Place& place, const Switch_Event& event)
{
    Owned<CIM_InstCreation> indication = startIndication<CIM_InstCreation, CIM_ComputerSystem>(
        place, event, "Unable to create instance for indicateCreateComputerSystem");
    Owned<CIM_ComputerSystem> system = makeAt<CIM_ComputerSystem>(place, "Unable to create %s instance");
    setKeys(*system, event);
    indication->SourceInstance = system.release();
    return indication;
}

constexpr Lifecycle_Event kEvents[] = {
    {XPL_EVENT_PORT_CREATED, {6, 7}, "indicateCreateFCPort", indicateCreateFCPort},
    {XPL_EVENT_SWITCH_ADDED, {0, 1}, "indicateCreateComputerSystem", indicateCreateComputerSystem},
};

void handle(const Switch_Event& event)
{
    handleLifecycle(kSource, kEvents, event);
}

constexpr Event_Handling kHandling = {kSource,
                                      "_instcreateindication_thread",
                                      Indication_Kind::Creation,
                                      knownEvents(kEvents),
                                      handle,
                                      "InstCreation indications are enabled\n",
                                      "InstCreation indications are disabled\n"};

} // namespace

const Event_Handling& CIM_InstCreation_Provider::handling()
{
    return kHandling;
}

} // namespace cimple
