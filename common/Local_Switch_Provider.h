// The shape of a class with one instance, which is named by the local switch's WWN.
#ifndef COMMON_LOCAL_SWITCH_PROVIDER_H
#define COMMON_LOCAL_SWITCH_PROVIDER_H

#include "common/Map_Provider.h"
#include "switchaccess/local_switch.h"

namespace cimple
{

// PROVIDER supplies
//   static void fill(CLASS& instance, const char* localWwn): sets the keys and all other properties;
//     a failure is thrown, see fail();
// and hides, where it differs,
//   kPublishesDefaults: true for a class that is published with the defaults of the schema;
//   kCreatesFirst: true for a class whose instance is made before the switch is asked;
//   kWwnMissing: what is said when the switch does not tell its WWN.
template <class PROVIDER, class CLASS>
class Local_Switch_Provider_Base : public Instance_Provider_Base<PROVIDER, CLASS>
{
  public:
    static constexpr bool kPublishesDefaults = false;
    static constexpr bool kCreatesFirst = false;
    static constexpr Failure_Text kWwnMissing = kLocalWwnMissing;

    void build(Map_Writer<CLASS>& map)
    {
        Owned<CLASS> instance;
        if (PROVIDER::kCreatesFirst)
            instance = create();
        const Local_Switch_Wwn wwn({PROVIDER::kSource, "load"}, PROVIDER::kWwnMissing);
        if (!instance)
            instance = create();
        PROVIDER::fill(*instance, wwn.text());
        PROVIDER::add(map, instance);
    }

  private:
    static Owned<CLASS> create()
    {
        return PROVIDER::kPublishesDefaults ? PROVIDER::makeDefaulted() : PROVIDER::make();
    }
};

template <class CLASS>
using Local_Switch_Provider = Local_Switch_Provider_Base<typename Registered<CLASS>::Provider, CLASS>;

} // namespace cimple

#endif
