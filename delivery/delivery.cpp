// The process's delivery: subscriptions, and the sender while it runs.
#include "delivery/delivery.h"

#include "delivery/Sender.h"
#include "delivery/Subscriptions.h"
#include "support/cim_log.h"

#include <cstdlib>
#include <ctime>
#include <exception>
#include <memory>
#include <mutex>

namespace cimple
{

namespace
{

std::int64_t secondsNow()
{
    return std::time(nullptr);
}

// A text of the environment; empty when it is not set.
std::string environment(const char* name)
{
    const char* const text = std::getenv(name);
    return text != nullptr ? text : "";
}

struct Delivery
{
    Subscriptions subscriptions{secondsNow};
    std::mutex starting; // held while the sender starts or stops
    std::mutex lock;     // leaf; guards what follows
    std::shared_ptr<Sender> sender;
    bool hasComplained = false; // that there is none, since there was one
};

// Never destroyed: events may flow while the process exits.
Delivery& delivery()
{
    static Delivery& only = *new Delivery;
    return only;
}

Sender::Hooks hooks(Expire_Listener expire)
{
    const auto persistenceOf = [](const String& destination)
    { return delivery().subscriptions.persistenceOf(destination); };
    const auto expireIfKnown = [expire](const String& destination)
    { return expire != nullptr ? expire(destination) : 0; };
    return {persistenceOf, expireIfKnown};
}

// Runs what must not throw; false, with a line in the log, when it does.
template <class WORK>
bool guarded(const char* what, WORK work) noexcept
{
    try
    {
        work();
        return true;
    }
    catch (const std::exception& problem)
    {
        cim_log(kLogCritical, "%s: %s\n", what, problem.what());
        return false;
    }
}

} // namespace

bool startDelivery(Expire_Listener expire)
{
    return guarded("Unable to start the delivery of indications",
                   [expire]
                   {
                       Delivery& all = delivery();
                       const std::lock_guard<std::mutex> one(all.starting);
                       const bool runs = [&all]
                       {
                           const std::lock_guard<std::mutex> lock(all.lock);
                           return all.sender != nullptr;
                       }();
                       if (runs || !Http_Client::isAvailable())
                           return;
                       Sender_Settings settings;
                       settings.http.caFile = environment("VRAX_INDICATION_CA");
                       settings.http.acceptsAnyCertificate = !environment("VRAX_INDICATION_INSECURE").empty();
                       auto sender = std::make_shared<Sender>(settings, hooks(expire));
                       const std::lock_guard<std::mutex> lock(all.lock);
                       all.sender = std::move(sender);
                       all.hasComplained = false;
                   });
}

void stopDelivery()
{
    guarded("Unable to stop the delivery of indications",
            []
            {
                Delivery& all = delivery();
                const std::lock_guard<std::mutex> one(all.starting);
                std::shared_ptr<Sender> ending;
                {
                    const std::lock_guard<std::mutex> lock(all.lock);
                    ending.swap(all.sender);
                }
                if (ending)
                    ending->stop();
            });
}

void subscriptionsChanged()
{
    delivery().subscriptions.changed();
}

void filterToDestinations(std::uint16_t filter, Destinations& list)
{
    guarded("Unable to read the subscriptions", [&] { delivery().subscriptions.append(filter, list); });
}

void sendIndication(const Instance* indication, const Destinations& list)
{
    guarded("An indication is lost",
            [&]
            {
                Delivery& all = delivery();
                std::unique_lock<std::mutex> lock(all.lock);
                const std::shared_ptr<Sender> sender = all.sender;
                const bool complains = !sender && !list.empty() && !all.hasComplained;
                all.hasComplained = complains || all.hasComplained;
                lock.unlock();
                if (sender && indication != nullptr)
                    sender->send(*indication, list);
                else if (complains)
                    cim_log(kLogCritical,
                            "Indications are lost: %s\n",
                            Http_Client::isAvailable() ? "their delivery does not run"
                                                       : "this build has no delivery, for want of libcurl");
            });
}

Delivery_Counts deliveryCounts()
{
    Delivery& all = delivery();
    std::unique_lock<std::mutex> lock(all.lock);
    const std::shared_ptr<Sender> sender = all.sender;
    lock.unlock();
    return sender ? sender->counts() : Delivery_Counts();
}

} // namespace cimple
