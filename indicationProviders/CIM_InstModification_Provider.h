// Switches and ports whose status changes.
#ifndef INDICATIONPROVIDERS_CIM_INSTMODIFICATION_PROVIDER_H
#define INDICATIONPROVIDERS_CIM_INSTMODIFICATION_PROVIDER_H

#include "indicationProviders/Event_Provider.h"

#include "CIM_InstModification_Methods.h"

namespace cimple
{

class CIM_InstModification_Provider : public Event_Provider<CIM_InstModification>
{
  public:
    static const Event_Handling& handling();
};

} // namespace cimple

#endif
