// Reading the switch's subscriptions and asking them.
#include "delivery/Subscriptions.h"

#include "delivery/filter_table.h"
#include "support/VRAX_Except.h"
#include "support/cim_log.h"
#include "switchaccess/Sml_Batch.h"
#include "switchaccess/subscription_keys.h"
#include "switchaccess/time_translation.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace cimple
{

namespace
{

namespace keys = subscription_keys;

constexpr const char* kSource = "delivery/Subscriptions";

enum Subscription_Entry
{
    kFilter,
    kState,
    kDuration,
    kStart,
    kFirstListener
};
constexpr const char* kSubscriptionKeys[] = {
    keys::kFilterId, keys::kEnableState, keys::kDuration, keys::kStartTime, keys::kFirstListener};

enum Listener_Entry
{
    kType,
    kDestination
};
constexpr const char* kListenerKeys[] = {keys::kType, keys::kDestination};

// A subscription that goes while its listeners are read has no more of them.
bool readUnlessGone(xpl_smlEntry& entry)
{
    const bool answered = Walk_Keys::readInBatch(entry);
    if (entry.status == XPL_UNKNOWN_KEY)
        entry.status = XPL_END_OF_WALK;
    return answered;
}

constexpr Walk_Keys listenersOfSubscription()
{
    Walk_Keys walk = keys::kListenersOfSubscription;
    walk.read = readUnlessGone;
    return walk;
}
constexpr Walk_Keys kListeners = listenersOfSubscription();

constexpr std::int64_t kForEver = std::numeric_limits<std::int64_t>::max();

// When a subscription runs out, in seconds since the epoch. One whose start cannot be understood is left to
// the switch, which ends subscriptions itself.
std::int64_t endOf(const char* duration, const char* start)
{
    const unsigned long long seconds = std::strtoull(duration, nullptr, 10);
    const Datetime from = smlTimeToCIMDatetime(start);
    if (seconds == 0 || !from.is_timestamp())
        return kForEver;
    const auto begin = static_cast<std::int64_t>(from.usec() / Datetime::SEC);
    return seconds > static_cast<std::uint64_t>(kForEver - begin)
               ? kForEver
               : begin + static_cast<std::int64_t>(seconds);
}

} // namespace

struct Subscriptions::Snapshot
{
    struct Subscriber
    {
        String destination;
        std::int64_t end;
    };
    struct Listener
    {
        String destination;
        bool isPermanent;
    };

    std::vector<std::vector<Subscriber>> byFilter =
        std::vector<std::vector<Subscriber>>(filterTableSize); // by number
    std::map<std::string, std::optional<Listener>>
        listeners; // by name; none: the switch has no such listener
};

// Reads one snapshot. Throws VRAX_Except when the switch does not answer.
class Subscriptions::Reader
{
  public:
    std::shared_ptr<const Snapshot> read()
    {
        for (const std::string& subscription : Sml_Walk(keys::kSubscriptions, {kSource, __func__}))
            add(subscription);
        return _result;
    }

  private:
    void add(const std::string& subscription)
    {
        const char* const name = subscription.c_str();
        const bool answered = _subscription.read({name});
        if (_subscription.status(kFilter) == XPL_UNKNOWN_KEY)
            return; // it has gone since the walk came by
        if (!answered)
            throw VRAX_Except(kSource, __func__, __LINE__, keys::kSubscriptionMissing);
        if (std::strcmp(_subscription.text(kState), "True") != 0)
            return;
        const std::optional<std::uint16_t> filter = filterNumber(_subscription.text(kFilter));
        if (!filter)
        {
            cim_log(kLogCritical,
                    "Subscription %s is left out: there is no filter \"%s\"\n",
                    name,
                    _subscription.text(kFilter));
            return;
        }
        const std::int64_t end = endOf(_subscription.text(kDuration), _subscription.text(kStart));
        const char* const first = _subscription.text(kFirstListener);
        for (const std::string& listener : Sml_Walk::from(first, kListeners, {kSource, __func__}, name))
            if (const auto& known = find(listener))
                _result->byFilter[*filter].push_back({known->destination, end});
            else
                cim_log(kLogCritical,
                        "Subscription %s is left out: there is no listener \"%s\" with a destination\n",
                        name,
                        listener.c_str());
    }

    const std::optional<Snapshot::Listener>& find(const std::string& name)
    {
        const auto [place, isNew] = _result->listeners.try_emplace(name);
        if (!isNew)
            return place->second;
        const bool answered = _listener.read({name.c_str()});
        const bool isThere = _listener.status(kDestination) != XPL_UNKNOWN_KEY;
        if (!answered && isThere)
            throw VRAX_Except(kSource, __func__, __LINE__, keys::kListenerMissing);
        if (answered && *_listener.text(kDestination) != '\0')
            place->second = {_listener.text(kDestination),
                             std::strcmp(_listener.text(kType), "Permanent") == 0};
        return place->second;
    }

    std::shared_ptr<Snapshot> _result = std::make_shared<Snapshot>();
    Sml_Batch _subscription{kSubscriptionKeys};
    Sml_Batch _listener{kListenerKeys};
};

Subscriptions::Subscriptions(Clock clock) : _clock(clock), _snapshot(std::make_shared<Snapshot>()) {}

Subscriptions::~Subscriptions() = default;

std::shared_ptr<const Subscriptions::Snapshot> Subscriptions::snapshot() const
{
    const std::lock_guard<std::mutex> lock(_guard);
    return _snapshot;
}

void Subscriptions::refresh()
{
    const std::lock_guard<std::mutex> lock(_reading);
    // Changes while the switch is read may come too late for what was read: they count as new ones.
    const std::uint32_t changes = _changes.load(std::memory_order_acquire);
    if (changes == _read)
        return;
    try
    {
        readAnew(changes);
    }
    catch (const VRAX_Except& failure)
    {
        if (!_failed)
            failure.print();
        _failed = true;
    }
}

void Subscriptions::readAnew(std::uint32_t changes)
{
    std::shared_ptr<const Snapshot> read = Reader().read();
    _read = changes;
    _failed = false;
    const std::lock_guard<std::mutex> lock(_guard);
    _snapshot.swap(read);
}

void Subscriptions::append(std::uint16_t filter, Destinations& list)
{
    refresh();
    const std::shared_ptr<const Snapshot> known = snapshot();
    if (filter >= known->byFilter.size() || known->byFilter[filter].empty())
        return;
    const std::int64_t now = _clock();
    for (const Snapshot::Subscriber& subscriber : known->byFilter[filter])
        if (now < subscriber.end && std::find(list.begin(), list.end(), subscriber.destination) == list.end())
            list.push_back(subscriber.destination);
}

Persistence Subscriptions::persistenceOf(const String& destination) const
{
    const std::shared_ptr<const Snapshot> known = snapshot();
    Persistence found = Persistence::Unknown;
    for (const auto& [name, listener] : known->listeners)
        if (listener && listener->destination == destination)
        {
            if (listener->isPermanent)
                return Persistence::Permanent;
            found = Persistence::Transient;
        }
    return found;
}

} // namespace cimple
