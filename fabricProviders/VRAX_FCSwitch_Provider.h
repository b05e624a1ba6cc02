// The switches of the fabric: the local one in full, the others as far as the local one knows them.
#ifndef FABRICPROVIDERS_VRAX_FCSWITCH_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCSWITCH_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_FCSwitch_Methods.h"

namespace cimple
{

class VRAX_FCSwitch_Provider : public Instance_Provider<VRAX_FCSwitch>,
                               public VRAX_FCSwitch_Methods<VRAX_FCSwitch_Provider>
{
  public:
    static constexpr Failure_Text kCreationFailed = "VRAX_FCSwitch instance creation failed";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_FCSwitch::One or more Key Properties are not populated";
    static constexpr Failure_Text kInsertionFailed = "Failed to insert instance in the map";

    void build(Map_Writer<VRAX_FCSwitch>& map);

    // Renames the local switch. Only ElementName can be changed; other properties of the request are ignored.
    Modify_Instance_Status modify_instance(const VRAX_FCSwitch* model, const VRAX_FCSwitch* instance);

    // Sets the administrative state of the local switch or resets it, whichever switch it is called on. What
    // changes shows at the next load. `return_value`: 0 done, 1 state not supported, 5 the switch refused;
    // null for requests that ask for nothing.
    Invoke_Method_Status RequestStateChange(const VRAX_FCSwitch* self,
                                            const Property<uint16>& RequestedState,
                                            CIM_ConcreteJob*& Job,
                                            const Property<Datetime>& TimeoutPeriod,
                                            Property<uint32>& return_value);

    // The fault code, a value of OperationalStatus, that a fault of this name is published as; 0 for other
    // names.
    static uint16 findFault(const String& name);
};

} // namespace cimple

#endif
