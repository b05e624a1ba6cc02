// How clients reach the object manager: CIM-XML.
#ifndef SERVERPROVIDERS_VRAX_CIMXMLCOMMUNICATIONMECHANISM_PROVIDER_H
#define SERVERPROVIDERS_VRAX_CIMXMLCOMMUNICATIONMECHANISM_PROVIDER_H

#include "common/Local_Switch_Provider.h"

#include "VRAX_CIMXMLCommunicationMechanism_Methods.h"

namespace cimple
{

class VRAX_CIMXMLCommunicationMechanism_Provider
    : public Local_Switch_Provider<VRAX_CIMXMLCommunicationMechanism>,
      public VRAX_CIMXMLCommunicationMechanism_Methods<VRAX_CIMXMLCommunicationMechanism_Provider>
{
  public:
    static constexpr bool kPublishesDefaults = true;
    static constexpr Failure_Text kCreationFailed =
        Failure_Text::line("Unable to create VRAX_CIMXMLCommunicationMechanism");

    static void fill(VRAX_CIMXMLCommunicationMechanism& instance, const char* localWwn);
};

} // namespace cimple

#endif
