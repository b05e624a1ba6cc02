// The interop namespace.
#ifndef SERVERPROVIDERS_VRAX_NAMESPACE_PROVIDER_H
#define SERVERPROVIDERS_VRAX_NAMESPACE_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_Namespace_Methods.h"

namespace cimple
{

class VRAX_Namespace_Provider : public Instance_Provider_Base<VRAX_Namespace_Provider, VRAX_Namespace>
{
  public:
    static constexpr const char* kSource = "serverProviders/VRAX_Namespace_Provider";

    void build(Map_Writer<VRAX_Namespace>& map);
};

} // namespace cimple

#endif
