// Switches and ports that go.
#include "indicationProviders/CIM_InstDeletion_Provider.h"

#include "indicationProviders/lifecycle.h"

namespace cimple
{

namespace
{

constexpr const char* kSource = CIM_InstDeletion_Provider::kSource;

// Of an element that is gone nothing is left to tell but its keys.
template <class ELEMENT>
Owned<Instance> indicateDelete(const Build_Place& place, const Switch_Event& event, const char* failure)
{
    cim_log(kLogInfo, "Creating Deletion Instance: %s\n", event.switchWwn.c_str());
    Owned<CIM_InstDeletion> indication = startIndication<CIM_InstDeletion, ELEMENT>(place, event, failure);
    Owned<ELEMENT> element = makeAt<ELEMENT>(place, "Unable to create %s instance");
    setKeys(*element, event);
    indication->SourceInstance = element.release();
    return indication;
}

// The text is known to operators by the name of the creation.
Owned<Instance> indicateDeleteFCPort(const Build_Place& place, const Switch_Event& event)
{
    return indicateDelete<VRAX_FCPort>(place, event, "Unable to create instance for indicateCreateFCPort");
}

Owned<Instance> indicateDeleteComputerSystem(const Build_Place& place, const Switch_Event& event)
{
    return indicateDelete<CIM_ComputerSystem>(place, event, "Unable to create instance for InstDeletion");
}

constexpr Lifecycle_Event kEvents[] = {
    {XPL_EVENT_PORT_DELETED, {8, 9}, "indicateDeleteFCPort", indicateDeleteFCPort},
    {XPL_EVENT_SWITCH_REMOVED, {2, 3}, "indicateDeleteComputerSystem", indicateDeleteComputerSystem},
};

void handle(const Switch_Event& event)
{
    handleLifecycle(kSource, kEvents, event);
}

constexpr Event_Handling kHandling = {kSource,
                                      "_inst_deletion_thread",
                                      Indication_Kind::Deletion,
                                      knownEvents(kEvents),
                                      handle,
                                      "Inst Deletion indications are enabled\n",
                                      "Inst deletion indications are disabled\n"};

} // namespace

const Event_Handling& CIM_InstDeletion_Provider::handling()
{
    return kHandling;
}

} // namespace cimple
