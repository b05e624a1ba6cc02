// Who gets which indications: one filter and one listener each.
#ifndef INDICATIONPROVIDERS_CIM_INDICATIONSUBSCRIPTION_PROVIDER_H
#define INDICATIONPROVIDERS_CIM_INDICATIONSUBSCRIPTION_PROVIDER_H

#include "common/Association_Provider.h"
#include "indicationProviders/CIM_IndicationFilter_Provider.h"
#include "indicationProviders/CIM_ListenerDestinationCIMXML_Provider.h"
#include "switchaccess/subscription_keys.h"

#include "CIM_IndicationSubscription_Methods.h"

namespace cimple
{

// A subscription of the switch may have several listeners; each is an instance of its own. Clients may take
// filter and listener to belong to a system of their making: whatever they say of it, the local switch is
// meant.
class CIM_IndicationSubscription_Provider
    : public Association_Provider<&CIM_IndicationSubscription::Filter,
                                  &CIM_IndicationSubscription::Handler,
                                  Ends<CIM_IndicationFilter, CIM_ListenerDestinationCIMXML>>
{
  public:
    static constexpr Failure_Text kReadFailed = subscription_keys::kSubscriptionMissing;
    static constexpr Failure_Text kCreationFailed = "Failed to create CIM_IndicationSubscription instance";
    static constexpr Failure_Text kInsertionFailed = "Failed to insert into CIM_IndicationSubscription_map";

    void build(Pairs& pairs);

    Get_Instance_Status get_instance(const CIM_IndicationSubscription* model,
                                     CIM_IndicationSubscription*& instance);

    // Makes a subscription in the switch and attaches it to the listener. 82 for an instance without filter
    // or listener, 84 when there is such a subscription already or the switch refuses it. Afterwards the
    // references are those of the published instance.
    Create_Instance_Status create_instance(CIM_IndicationSubscription* instance);

    // Detaches every subscription with this filter from the listener. 90 when there is none or the switch
    // refuses, 93 when a filter cannot be read, or the class cannot be loaded and there is none.
    Delete_Instance_Status delete_instance(const CIM_IndicationSubscription* instance);
};

} // namespace cimple

#endif
