// The switch hosts the way to reach its object manager.
#ifndef SERVERPROVIDERS_VRAX_FCSWITCHCIMXMLCOMMMECHANISM_PROVIDER_H
#define SERVERPROVIDERS_VRAX_FCSWITCHCIMXMLCOMMMECHANISM_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "serverProviders/VRAX_CIMXMLCommunicationMechanism_Provider.h"

#include "VRAX_FCSwitchCIMXMLCommMechanism_Methods.h"

namespace cimple
{

class VRAX_FCSwitchCIMXMLCommMechanism_Provider
    : public Association_Provider_Base<VRAX_FCSwitchCIMXMLCommMechanism_Provider,
                                       VRAX_FCSwitchCIMXMLCommMechanism,
                                       VRAX_FCSwitch_Provider,
                                       VRAX_CIMXMLCommunicationMechanism_Provider>
{
  public:
    static constexpr const char* kSource = "serverProviders/VRAX_FCSwitchCIMXMLCommMechanism_Provider";
    static constexpr auto kFirstRole = &VRAX_FCSwitchCIMXMLCommMechanism::Antecedent;
    static constexpr auto kSecondRole = &VRAX_FCSwitchCIMXMLCommMechanism::Dependent;

    void build(Map_Writer<VRAX_FCSwitchCIMXMLCommMechanism>& map);
};

} // namespace cimple

#endif
