// The shape of a class with one instance, which is named by the fabric's principal switch.
#ifndef COMMON_PRINCIPAL_SWITCH_PROVIDER_H
#define COMMON_PRINCIPAL_SWITCH_PROVIDER_H

#include "common/Map_Provider.h"
#include "switchaccess/principal_switch.h"

namespace cimple
{

// PROVIDER supplies
//   static void fill(CLASS& instance, const char* principalWwn): sets the keys and all other properties;
//   static constexpr Failure_Text kNoPrincipal: what is said while the fabric has no principal switch.
template <class PROVIDER, class CLASS>
class Principal_Switch_Provider_Base : public Instance_Provider_Base<PROVIDER, CLASS>
{
  public:
    void build(Map_Writer<CLASS>& map)
    {
        Owned<CLASS> instance = PROVIDER::make();
        const Principal_Switch_Wwn wwn;
        if (wwn.text() == nullptr)
            PROVIDER::fail(PROVIDER::kNoPrincipal);
        PROVIDER::fill(*instance, wwn.text());
        PROVIDER::add(map, instance);
    }
};

template <class CLASS>
using Principal_Switch_Provider = Principal_Switch_Provider_Base<typename Registered<CLASS>::Provider, CLASS>;

} // namespace cimple

#endif
