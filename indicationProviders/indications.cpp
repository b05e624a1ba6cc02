// Indications as a whole: their delivery, the four providers, and the switch's events that feed them.
#include "common/indications.h"

#include "delivery/delivery.h"
#include "indicationProviders/CIM_AlertIndication_Provider.h"
#include "indicationProviders/CIM_InstCreation_Provider.h"
#include "indicationProviders/CIM_InstDeletion_Provider.h"
#include "indicationProviders/CIM_InstModification_Provider.h"
#include "indicationProviders/CIM_ListenerDestinationCIMXML_Provider.h"
#include "support/VRAX_Maps.h"
#include "support/receiveSwitchEvent.h"

#include <exception>
#include <mutex>
#include <optional>
#include <stdexcept>

namespace cimple
{

namespace
{

constexpr const char* kSource = "indicationProviders/indications";

// The map may be cold: no client need have asked for the listeners since the switch started.
std::uint32_t expireListener(const String& destination)
{
    CIM_ListenerDestinationCIMXML_Provider().load();
    return CIM_ListenerDestinationCIMXML_Provider::expire_listener_destination(destination);
}

extern "C" void receiveEvent(const xpl_SwitchEvent* event, void*)
{
    receiveSwitchEvent(event);
    if (event != nullptr && event->type == XPL_EVENT_SUBSCRIPTIONS_CHANGED)
        subscriptionsChanged();
}

constexpr const char* kNotAvailable = "Indications are not available";

struct Delivery
{
    Delivery()
    {
        if (!startDelivery(expireListener))
            throw std::runtime_error(kNotAvailable);
    }
    ~Delivery() { stopDelivery(); }
};

template <class PROVIDER>
struct Enabled
{
    Enabled()
    {
        if (provider.enable_indications() != ENABLE_INDICATIONS_OK)
            throw std::runtime_error(kNotAvailable);
    }
    ~Enabled() { provider.disable_indications(); }

    PROVIDER provider;
};

struct Receiver
{
    Receiver() { xpl_swReceiveEvents(receiveEvent, nullptr); }
    ~Receiver() { xpl_swReceiveEvents(nullptr, nullptr); }
};

// Against the stream of events, so that what follows is there when the first one comes, and the other way
// around at the end.
struct Running
{
    Delivery delivery;
    Enabled<CIM_AlertIndication_Provider> alerts;
    Enabled<CIM_InstCreation_Provider> creations;
    Enabled<CIM_InstDeletion_Provider> deletions;
    Enabled<CIM_InstModification_Provider> modifications;
    Receiver receiver;
};

// Not destroyed: a host that forgets to stop must not wait for threads while it exits.
struct State
{
    std::mutex mutex;
    std::optional<Running> running;
};

State& state()
{
    static State* const only = new State;
    return *only;
}

} // namespace

bool startIndications() noexcept
{
    trace(kSource, __func__, __LINE__);
    State& now = state();
    const std::lock_guard<std::mutex> lock(now.mutex);
    if (now.running)
        return true;
    try
    {
        now.running.emplace();
    }
    catch (const std::exception& failure)
    {
        logCritical(kSource, __func__, failure.what(), __LINE__);
        return false;
    }
    // Nobody told of what has changed until now.
    subscriptionsChanged();
    return true;
}

void stopIndications() noexcept
{
    trace(kSource, __func__, __LINE__);
    State& now = state();
    const std::lock_guard<std::mutex> lock(now.mutex);
    now.running.reset();
}

void indicationCounters(Counter_Sink sink, void* context) noexcept
{
    const Delivery_Counts counts = deliveryCounts();
    sink(context, "delivered", "", counts.delivered);
    for (std::size_t reason = 0; reason < kLossReasons; ++reason)
        sink(context, "lost", lossName(static_cast<Loss>(reason)), counts.lost[reason]);
    sink(context, "queued", "", counts.queued);
    sink(context, "queued_bytes", "", counts.queuedBytes);
    static constexpr const char* kKinds[kIndicationKinds] = {"alert", "creation", "deletion", "modification"};
    for (std::size_t kind = 0; kind < kIndicationKinds; ++kind)
    {
        const Event_List::Counts events =
            VRAX_Maps::getInstance()->eventList(static_cast<Indication_Kind>(kind)).counts();
        sink(context, "events_waiting", kKinds[kind], events.waiting);
        sink(context, "events_lost", kKinds[kind], events.lost);
    }
}

} // namespace cimple
