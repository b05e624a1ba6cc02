// Switches and ports that come.
#ifndef INDICATIONPROVIDERS_CIM_INSTCREATION_PROVIDER_H
#define INDICATIONPROVIDERS_CIM_INSTCREATION_PROVIDER_H

#include "indicationProviders/Event_Provider.h"

#include "CIM_InstCreation_Methods.h"

namespace cimple
{

class CIM_InstCreation_Provider : public Event_Provider<CIM_InstCreation>
{
  public:
    static const Event_Handling& handling();
};

} // namespace cimple

#endif
