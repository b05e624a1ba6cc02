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
    : public Association_Provider<&VRAX_FCSwitchCIMXMLCommMechanism::Antecedent,
                                  &VRAX_FCSwitchCIMXMLCommMechanism::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_FCSwitch>().withFirst<VRAX_CIMXMLCommunicationMechanism>(); }
};

} // namespace cimple

#endif
