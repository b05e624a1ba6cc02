// Switches and ports that go.
#ifndef INDICATIONPROVIDERS_CIM_INSTDELETION_PROVIDER_H
#define INDICATIONPROVIDERS_CIM_INSTDELETION_PROVIDER_H

#include "indicationProviders/Event_Provider.h"

#include "CIM_InstDeletion_Methods.h"

namespace cimple
{

class CIM_InstDeletion_Provider : public Event_Provider<CIM_InstDeletion>
{
  public:
    static const Event_Handling& handling();
};

} // namespace cimple

#endif
