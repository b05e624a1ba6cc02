// Switches and ports whose status changes.
#include "indicationProviders/CIM_InstModification_Provider.h"

#include "indicationProviders/lifecycle.h"

namespace cimple
{

namespace
{

constexpr const char* kSource = CIM_InstModification_Provider::kSource;

template <class ELEMENT>
Instance* elementWith(const Build_Place& place,
                      const Switch_Event& event,
                      const Array_uint16& status,
                      const char* failure,
                      int line = __builtin_LINE())
{
    Owned<ELEMENT> element = makeAt<ELEMENT>(place, failure, line);
    setKeys(*element, event);
    element->OperationalStatus.set(status);
    return element.release();
}

template <class ELEMENT>
Owned<Instance> indicateStatusChange(const Build_Place& place, const Switch_Event& event)
{
    cim_log(kLogInfo, "Creating Modification Instance: %s\n", event.switchWwn.c_str());
    Owned<CIM_InstModification> indication = startIndication<CIM_InstModification, ELEMENT>(
        place, event, "Unable to create instance for InstModification");
    // Misspelled as operators know it.
    indication->SourceInstance =
        elementWith<ELEMENT>(place, event, event.status, "Uanble to create \"new\" %s instance");
    indication->PreviousInstance =
        elementWith<ELEMENT>(place, event, event.previousStatus, "Uanble to create \"old\" %s instance");
    return indication;
}

constexpr Lifecycle_Event kEvents[] = {
    {XPL_EVENT_PORT_STATUS, {10, 11}, "indicatePortStatusChange", indicateStatusChange<VRAX_FCPort>},
    {XPL_EVENT_SWITCH_STATUS, {4, 5}, "indicateSwitchStatusChange", indicateStatusChange<CIM_ComputerSystem>},
};

void handle(const Switch_Event& event)
{
    handleLifecycle(kSource, kEvents, event);
}

constexpr Event_Handling kHandling = {kSource,
                                      "_inst_modification_thread",
                                      Indication_Kind::Modification,
                                      knownEvents(kEvents),
                                      handle,
                                      "Inst Modification indications are enabled\n",
                                      "Inst Modification indications are disabled\n"};

} // namespace

const Event_Handling& CIM_InstModification_Provider::handling()
{
    return kHandling;
}

} // namespace cimple
