// A switch has its own ports.
#ifndef FABRICPROVIDERS_VRAX_FCSWITCHFCPORT_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCSWITCHFCPORT_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"

#include "VRAX_FCSwitchFCPort_Methods.h"

namespace cimple
{

class VRAX_FCSwitchFCPort_Provider : public Association_Provider_Base<VRAX_FCSwitchFCPort_Provider,
                                                                      VRAX_FCSwitchFCPort,
                                                                      VRAX_FCSwitch_Provider,
                                                                      VRAX_FCPort_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_FCSwitchFCPort_Provider";
    static constexpr auto kFirstRole = &VRAX_FCSwitchFCPort::GroupComponent;
    static constexpr auto kSecondRole = &VRAX_FCSwitchFCPort::PartComponent;

    void build(Map_Writer<VRAX_FCSwitchFCPort>& map);
};

} // namespace cimple

#endif
