// Alerts of the switch and the fabric, after the message registry of the SNIA.
#ifndef INDICATIONPROVIDERS_CIM_ALERTINDICATION_PROVIDER_H
#define INDICATIONPROVIDERS_CIM_ALERTINDICATION_PROVIDER_H

#include "indicationProviders/Event_Provider.h"

#include "CIM_AlertIndication_Methods.h"

namespace cimple
{

class CIM_AlertIndication_Provider : public Event_Provider<CIM_AlertIndication>
{
  public:
    static constexpr bool kTakesHandler = true;

    static const Event_Handling& handling();
};

} // namespace cimple

#endif
