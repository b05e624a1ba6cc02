// The Fibre Channel ports: of the local switch, of the fabric's other switches, and of attached nodes.
#ifndef FABRICPROVIDERS_VRAX_FCPORT_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCPORT_PROVIDER_H

#include "common/Map_Provider.h"
#include "platform/data_cache.h"

#include "VRAX_FCPort_Methods.h"

namespace cimple
{

class VRAX_FCPort_Provider : public Instance_Provider<VRAX_FCPort>,
                             public VRAX_FCPort_Methods<VRAX_FCPort_Provider>
{
  public:
    static constexpr Failure_Text kKeysMissing = "VRAXFCPort::One or more Key Properties not populated";
    // With the kind of the port.
    static constexpr Failure_Text kInsertionFailed = "Failed to insert into VRAX_FCPort_map (%s)";
    // A port that cannot be read is left out.
    static constexpr std::initializer_list<const char*> kDoesWithout = {"xpl_smlGetBatch"};

    void build(Map_Writer<VRAX_FCPort>& map);

    // Gives the instance what is published of one port of a switch, read anew; its keys alone when the port
    // cannot be read. False when the fabric has no such port. WWNs are compared without regard to case.
    // Throws the failure to lock the data cache.
    static bool describe(const Wwn& switchWwn, const Wwn& wwn, VRAX_FCPort& instance);

    // Renames a local port; nothing else of a port can be changed. Ports that are not local are refused:
    // their numbers would lead to the local port of the same number.
    Modify_Instance_Status modify_instance(const VRAX_FCPort* model, const VRAX_FCPort* instance);

    // Changes the administrative state of a local port, or resets its link. The outcome is in return_value,
    // as in CIM_EnabledLogicalElement: 0 done, 1 refused by the switch or not a local port, 4 the ports
    // cannot be read, 5 no such port or state. The cached port shows its new state from the next load on.
    Invoke_Method_Status RequestStateChange(const VRAX_FCPort* self,
                                            const Property<uint16>& RequestedState,
                                            CIM_ConcreteJob*& Job,
                                            const Property<Datetime>& TimeoutPeriod,
                                            Property<uint32>& return_value);

  private:
    class Port_Reader;
    class Port_Writer;

    // Carries out a request on a port of the map; what it returns to the client. `function` is named in the
    // log.
    static uint32 changeState(const VRAX_FCPort& port, uint16 requestedState, const char* function);
};

} // namespace cimple

#endif
