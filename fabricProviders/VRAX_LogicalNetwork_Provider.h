// The Fibre Channel network that the fabric forms.
#ifndef FABRICPROVIDERS_VRAX_LOGICALNETWORK_PROVIDER_H
#define FABRICPROVIDERS_VRAX_LOGICALNETWORK_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_LogicalNetwork_Methods.h"

namespace cimple
{

class VRAX_LogicalNetwork_Provider
    : public Instance_Provider_Base<VRAX_LogicalNetwork_Provider, VRAX_LogicalNetwork>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_LogicalNetwork_Provider";

    void build(Map_Writer<VRAX_LogicalNetwork>& map);
};

} // namespace cimple

#endif
