// The product that the local switch is.
#ifndef SWITCHPROVIDERS_VRAX_PRODUCT_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_PRODUCT_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_Product_Methods.h"

namespace cimple
{

class VRAX_Product_Provider : public Instance_Provider<VRAX_Product>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_Product instance";

    void build(Map_Writer<VRAX_Product>& map);
};

} // namespace cimple

#endif
