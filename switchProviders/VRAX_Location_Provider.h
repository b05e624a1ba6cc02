// Where the local switch stands.
#ifndef SWITCHPROVIDERS_VRAX_LOCATION_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_LOCATION_PROVIDER_H

#include "common/Local_Switch_Provider.h"

#include "VRAX_Location_Methods.h"

namespace cimple
{

class VRAX_Location_Provider : public Local_Switch_Provider<VRAX_Location>
{
  public:
    static void fill(VRAX_Location& location, const char* localWwn);
};

} // namespace cimple

#endif
