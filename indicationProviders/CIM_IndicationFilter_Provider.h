// The indications that clients can subscribe to.
#ifndef INDICATIONPROVIDERS_CIM_INDICATIONFILTER_PROVIDER_H
#define INDICATIONPROVIDERS_CIM_INDICATIONFILTER_PROVIDER_H

#include "common/Map_Provider.h"

#include "CIM_IndicationFilter_Methods.h"

namespace cimple
{

class CIM_IndicationFilter_Provider : public Instance_Provider<CIM_IndicationFilter>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create CIM_IndicationFilter instance";
    static constexpr Failure_Text kInsertionFailed = "Failed to insert instance in the map";

    void build(Map_Writer<CIM_IndicationFilter>& map);
};

} // namespace cimple

#endif
