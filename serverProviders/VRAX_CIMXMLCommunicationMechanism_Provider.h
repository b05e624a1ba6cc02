// How clients reach the object manager: CIM-XML.
#ifndef SERVERPROVIDERS_VRAX_CIMXMLCOMMUNICATIONMECHANISM_PROVIDER_H
#define SERVERPROVIDERS_VRAX_CIMXMLCOMMUNICATIONMECHANISM_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_CIMXMLCommunicationMechanism_Methods.h"

namespace cimple
{

class VRAX_CIMXMLCommunicationMechanism_Provider
    : public Instance_Provider_Base<VRAX_CIMXMLCommunicationMechanism_Provider,
                                    VRAX_CIMXMLCommunicationMechanism>,
      public VRAX_CIMXMLCommunicationMechanism_Methods<VRAX_CIMXMLCommunicationMechanism_Provider>
{
  public:
    static constexpr const char* kSource = "serverProviders/VRAX_CIMXMLCommunicationMechanism_Provider";

    void build(Map_Writer<VRAX_CIMXMLCommunicationMechanism>& map);
};

} // namespace cimple

#endif
