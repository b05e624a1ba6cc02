// The shape of a class that keeps no instance map.
#ifndef COMMON_UNMAPPED_PROVIDER_H
#define COMMON_UNMAPPED_PROVIDER_H

#include "common/Map_Provider.h"

namespace cimple
{

// Nothing to load, nothing to enumerate, and no instance to get, unless PROVIDER hides enum_instances() or
// get_instance() with its own, which make their instances anew for each request.
template <class PROVIDER, class CLASS>
class Unmapped_Provider_Base : public Provider_Base<PROVIDER, CLASS>
{
  public:
    static constexpr bool kHasMap = false;

    Load_Status load()
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        return LOAD_OK;
    }
    Unload_Status unload()
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        return UNLOAD_OK;
    }
    Get_Instance_Status get_instance(const CLASS*, CLASS*&)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        return GET_INSTANCE_UNSUPPORTED;
    }
    Enum_Instances_Status enum_instances(const CLASS*, Enum_Instances_Handler<CLASS>*)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        return ENUM_INSTANCES_OK;
    }
};

template <class CLASS>
using Unmapped_Provider = Unmapped_Provider_Base<typename Registered<CLASS>::Provider, CLASS>;

} // namespace cimple

#endif
