// How the switch tells of the listeners and subscriptions of its CIM agent: what the classes and the delivery
// both read.
#ifndef SWITCHACCESS_SUBSCRIPTION_KEYS_H
#define SWITCHACCESS_SUBSCRIPTION_KEYS_H

#include "switchaccess/Sml_Walk.h"

namespace cimple::subscription_keys
{

// Of a listener, by its name.
constexpr const char* kType = "Oper.Cim.Listener.%s.Type"; // "Permanent", or the listener is transient
constexpr const char* kDestination = "Oper.Cim.Listener.%s.Destination"; // a URL

// Of a subscription, by its name.
constexpr const char* kFilterId = "Oper.Cim.Subscription.%s.FilterID";       // the filter's name
constexpr const char* kEnableState = "Oper.Cim.Subscription.%s.EnableState"; // "True", or it is disabled
constexpr const char* kDuration = "Oper.Cim.Subscription.%s.Duration";       // seconds; 0: it does not end
constexpr const char* kStartTime = "Oper.Cim.Subscription.%s.StartTime";     // see time_translation.h
constexpr const char* kFirstListener = "Oper.Cim.Subscription.%s.FirstListener"; // empty: it has none

// What is said when these cannot be read.
constexpr const char* kListenerMissing = "Unable to get Listener Type and/or Destination";
constexpr const char* kSubscriptionMissing = "Unable to get subscription info";

// All subscriptions. Operators know both failures by this text.
constexpr const char* kWalkFailed = "Unable to get first subscription info";
inline constexpr Walk_Keys kSubscriptions = {
    "Oper.Cim.FirstSubscription", kWalkFailed, "Oper.Cim.NextSubscription.%s", kWalkFailed, XPL_END_OF_WALK};

// The listeners of a subscription, which owns the walk. The first one comes with the attributes.
inline constexpr Walk_Keys kListenersOfSubscription = {kFirstListener,
                                                       kSubscriptionMissing,
                                                       "Oper.Cim.Subscription.%s.NextListener.%s",
                                                       "Unable to get next listener info",
                                                       XPL_END_OF_WALK};

} // namespace cimple::subscription_keys

#endif
