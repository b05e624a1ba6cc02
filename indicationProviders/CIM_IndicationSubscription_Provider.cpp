// Who gets which indications: one filter and one listener each.
#include "indicationProviders/CIM_IndicationSubscription_Provider.h"

#include "common/local_system.h"
#include "indicationProviders/subscription_commands.h"
#include "switchaccess/Attribute.h"
#include "switchaccess/subscription_keys.h"
#include "switchaccess/time_translation.h"

#include <cstdlib>
#include <mutex>
#include <random>
#include <string_view>
#include <unordered_map>

namespace cimple
{

namespace
{

namespace keys = subscription_keys;

// Values of SubscriptionState and OnFatalErrorPolicy.
constexpr uint16 kEnabled = 2;
constexpr uint16 kEnabledDegraded = 3;
constexpr uint16 kDisabled = 4;
constexpr uint16 kIgnore = 2;

// No subscription is made for longer: 200 hours, in seconds.
constexpr uint64 kLongestDuration = 720000;

uint16 asState(const char* word)
{
    return isTrue(word) ? kEnabled : kDisabled;
}

Datetime asTime(const char* text)
{
    return smlTimeToCIMDatetime(text);
}

constexpr Attribute<CIM_IndicationSubscription> kAttributes[] = {
    {keys::kFilterId},
    {keys::kEnableState, put<&CIM_IndicationSubscription::SubscriptionState, asState>},
    {"Oper.Cim.Subscription.%s.EnableStateChange"},
    {keys::kDuration, put<&CIM_IndicationSubscription::SubscriptionDuration, decimal>},
    {keys::kStartTime, put<&CIM_IndicationSubscription::SubscriptionStartTime, asTime>},
    {keys::kFirstListener},
};
constexpr std::size_t kFilterId = entryOf(kAttributes, ".FilterID");
constexpr std::size_t kFirstListener = entryOf(kAttributes, ".FirstListener");

constexpr Failure_Text kNameMissing = "Failed to get subscription name";
constexpr Walk_Keys kSubscriptionsOfListener = {
    "Oper.Cim.Listener.%s.FirstSub",
    kNameMissing,
    "Oper.Cim.Listener.%s.NextSub.%s",
    kNameMissing,
    XPL_END_OF_WALK,
};

constexpr Failure_Text kWriteFailed = "xpl_smlBatchCimSet failed";

void makeStale()
{
    VRAX_Maps::getInstance()->InstMapForceUnload(CIM_IndicationSubscription_Provider::kIndex);
}

// The instances of a map by their names, which are borrowed.
template <class CLASS>
std::unordered_map<std::string_view, const CLASS*> byName(const Map_View<CLASS>& all)
{
    std::unordered_map<std::string_view, const CLASS*> found;
    for (const CLASS* one : all)
        found.emplace(one->Name.value.c_str(), one);
    return found;
}

template <class CLASS>
const CLASS* find(const std::unordered_map<std::string_view, const CLASS*>& all, std::string_view name)
{
    const auto place = all.find(name);
    return place != all.end() ? place->second : nullptr;
}

// What is left of a subscription, in seconds.
uint64 remaining(const CIM_IndicationSubscription& subscription)
{
    const uint64 end = subscription.SubscriptionStartTime.value.usec() / Datetime::SEC +
                       subscription.SubscriptionDuration.value;
    const uint64 now = Datetime::now().usec() / Datetime::SEC;
    return end > now ? end - now : 0;
}

bool hasEnds(const CIM_IndicationSubscription* instance)
{
    return instance != nullptr && instance->Filter != nullptr && instance->Handler != nullptr;
}

// Lets the references of a request name the systems that the published instances name.
void normalise(CIM_IndicationSubscription& request)
{
    request.Filter->SystemCreationClassName.set(kLocalSystemClass);
    request.Handler->SystemCreationClassName.set(kLocalSystemClass);
    request.Handler->SystemName.set(request.Filter->SystemName.value);
}

Owned<CIM_IndicationSubscription> normalised(const CIM_IndicationSubscription& request)
{
    Owned<CIM_IndicationSubscription> copy(static_cast<CIM_IndicationSubscription*>(clone(&request)));
    if (hasEnds(copy.get()))
        normalise(*copy);
    return copy;
}

// The host's sequence of random numbers begins anew with the process, the switch's subscriptions do not.
std::string newName()
{
    static std::once_flag seeded;
    std::call_once(seeded, [] { std::srand(std::random_device()()); });
    return "Auto_" + std::to_string(static_cast<unsigned>(std::rand()));
}

// Empty when the switch has done so, otherwise what it refused.
std::string detach(const char* listener, const char* subscription)
{
    Sml_Writes writes;
    writes.add("Cmd.Cim.Listener.%s.RemoveSubscription.%s", {listener, subscription});
    return sendCommands(writes) ? "" : writes.failure();
}

} // namespace

void CIM_IndicationSubscription_Provider::build(Pairs& pairs)
{
    const auto filters = byName(pairs.all<CIM_IndicationFilter>());
    const auto listeners = byName(pairs.all<CIM_ListenerDestinationCIMXML>());
    Attribute_Reader<CIM_IndicationSubscription> attributes(kAttributes);
    for (const std::string& name : Sml_Walk(keys::kSubscriptions, {kSource, "load"}))
    {
        if (!attributes.read({name.c_str()}))
            fail(kReadFailed);
        const CIM_IndicationFilter* filter = find(filters, attributes.text(kFilterId));
        if (filter == nullptr)
            fail("Bad filter mapping");
        const char* const first = attributes.text(kFirstListener);
        for (const std::string& each :
             Sml_Walk::from(first, keys::kListenersOfSubscription, {kSource, "load"}, name.c_str()))
        {
            const CIM_ListenerDestinationCIMXML* listener = find(listeners, each);
            if (listener == nullptr)
                fail("Bad ListenerDestination mapping");
            Owned<CIM_IndicationSubscription> pair = pairs.make(*filter, *listener);
            pair->OnFatalErrorPolicy.set(kIgnore);
            attributes.fill(*pair);
            if (pair->SubscriptionDuration.value != 0)
                pair->SubscriptionTimeRemaining.set(remaining(*pair));
            pairs.add(pair);
        }
    }
}

Get_Instance_Status CIM_IndicationSubscription_Provider::get_instance(const CIM_IndicationSubscription* model,
                                                                      CIM_IndicationSubscription*& instance)
{
    return Association_Provider_Base::get_instance(normalised(*model).get(), instance);
}

Create_Instance_Status
CIM_IndicationSubscription_Provider::create_instance(CIM_IndicationSubscription* instance)
{
    const auto body = [&](Operation<Create_Instance_Status>& op)
    {
        // Shows which pairs the switch has, so that it gets none twice; when it fails, nothing is known of
        // them. The lock order allows no load under the map's lock.
        load();
        Write_Guard<CIM_IndicationSubscription> guard;
        if (!hasEnds(instance))
            op.failWith(CREATE_INSTANCE_INVALID_PARAMETER, "Instance provided is not valid");
        normalise(*instance);
        if (guard.view().find(*instance) != nullptr)
            op.fail("Subscription of this type already exists");
        uint64 duration = 0;
        if (!instance->SubscriptionDuration.null)
            duration = instance->SubscriptionDuration.value;
        if (duration > kLongestDuration)
        {
            duration = kLongestDuration;
            instance->SubscriptionDuration.set(duration);
        }
        const char* state = "";
        if (!instance->SubscriptionState.null && instance->SubscriptionState.value == kEnabled)
            state = "True";
        else if (!instance->SubscriptionState.null && instance->SubscriptionState.value == kEnabledDegraded)
            state = "False";

        const std::string chosen = newName();
        const char* const name = chosen.c_str();
        const char* const listener = instance->Handler->Name.value.c_str();
        Sml_Writes writes;
        writes.add("Cmd.Cim.Subscription.%s.Create", {name});
        writes.add("Cmd.Cim.Subscription.%s.FilterID.%s", {name, instance->Filter->Name.value.c_str()});
        writes.add("Cmd.Cim.Subscription.%s.EnableState.%s", {name, state});
        writes.add("Cmd.Cim.Subscription.%s.Duration.%s", {name, std::to_string(duration).c_str()});
        writes.add("Cmd.Cim.Subscription.%s.StartTime.%s",
                   {name, CIMDatetimeTosmlTime(Datetime::now()).c_str()});
        writes.add("Cmd.Cim.Listener.%s.AddSubscription.%s", {listener, name});
        constexpr std::size_t kCreate = 0, kFilter = 1, kAttach = 5;
        sendCommands(writes);
        if (!writes.carriedOut())
            op.failOn(writes.failure(), kWriteFailed);
        if (writes.status(kCreate) == XPL_SUBSCRIPTION_EXISTS)
            op.fail("Subscription Name already exists");
        if (writes.status(kCreate) == XPL_INVALID_NAME)
            op.fail("Invalid Subscription name");
        // The others say how it is; where the switch refuses one, it has an answer of its own.
        for (const std::size_t needed : {kCreate, kFilter, kAttach})
        {
            if (writes.status(needed) == XPL_OK)
                continue;
            if (writes.status(kAttach) == XPL_OK)
                detach(listener, name);
            op.failOn(writes.failure(), kWriteFailed);
        }

        Owned<CIM_IndicationSubscription> copy(static_cast<CIM_IndicationSubscription*>(clone(instance)));
        if (!guard.insert(copy))
            op.fail(kInsertionFailed);
        makeStale();
        return CREATE_INSTANCE_OK;
    };
    return operation("create_instance", CREATE_INSTANCE_FAILED, body, makeStale);
}

Delete_Instance_Status
CIM_IndicationSubscription_Provider::delete_instance(const CIM_IndicationSubscription* instance)
{
    const auto body = [&](Operation<Delete_Instance_Status>& op)
    {
        const Owned<CIM_IndicationSubscription> request = normalised(*instance);
        // What the switch has twice, or of a filter that nobody knows, keeps the class from being loaded. It
        // can be deleted all the same.
        const bool isLoaded = load() == LOAD_OK;
        const Write_Guard<CIM_IndicationSubscription> guard;
        if (!hasEnds(request.get()) || (isLoaded && guard.view().find(*request) == nullptr))
            op.fail("Instance not found");
        const char* const listener = request->Handler->Name.value.c_str();
        constexpr const char* kFilterKeys[] = {keys::kFilterId};
        Sml_Batch filter(kFilterKeys);
        bool isFound = isLoaded;
        for (const std::string& each :
             Sml_Walk(kSubscriptionsOfListener, {kSource, "delete_instance"}, listener))
        {
            if (!filter.read({each.c_str()}))
                op.failWith(DELETE_INSTANCE_FAILED, "Failed to get filter\n");
            if (request->Filter->Name.value != filter.text(0))
                continue;
            const std::string refused = detach(listener, each.c_str());
            if (!refused.empty())
                op.failOn(refused, kWriteFailed);
            isFound = true;
        }
        if (!isFound) // the load has said why
            op.failWith(DELETE_INSTANCE_FAILED, Failure_Text::silent());
        makeStale();
        return DELETE_INSTANCE_OK;
    };
    return operation("delete_instance", DELETE_INSTANCE_NOT_FOUND, body, makeStale);
}

} // namespace cimple
