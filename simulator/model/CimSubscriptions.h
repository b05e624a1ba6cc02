// The listeners and subscriptions that the switch keeps for its CIM agent, with the rules of their changes.
#ifndef SIMULATOR_MODEL_CIMSUBSCRIPTIONS_H
#define SIMULATOR_MODEL_CIMSUBSCRIPTIONS_H

#include "simulator/scenario/cim_scenario.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace simulator
{

// What is listed is listed by rising name, so that a walk goes on from any name, also from one that is gone.
using CimNames = std::set<std::string, std::less<>>;

struct CimListener
{
    bool permanent = false;
    std::string destination;
    CimNames subscriptions;
};

// Moments are seconds since the epoch.
struct CimSubscription
{
    std::string filter;
    std::string enableState = "True";
    std::int64_t enableStateChange = 0;
    std::int64_t created = 0;
    std::int64_t start = 0;
    int duration = 0; // seconds; 0: for ever
    CimNames listeners;
};

// The words by which keys go on behind a name. A name has none of them between two points, where a key would
// not show its end.
enum class CimKind
{
    listener,
    subscription
};
bool isCimWord(CimKind kind, std::string_view part);

// Names are compared exactly. Changes return 0 or the status with which the switch refuses; nothing is
// changed then.
class CimSubscriptions
{
  public:
    using Listeners = std::map<std::string, CimListener, std::less<>>;
    using Subscriptions = std::map<std::string, CimSubscription, std::less<>>;

    CimSubscriptions() = default;
    // Begins with those of a scenario. Throws ScenarioError with their place, which begins with `place`.
    CimSubscriptions(const std::vector<ListenerScenario>& listeners,
                     const std::vector<SubscriptionScenario>& subscriptions,
                     const std::string& place,
                     std::int64_t now);

    const Listeners& listeners() const { return _listeners; }
    const Subscriptions& subscriptions() const { return _subscriptions; }
    std::vector<ListenerScenario> listenerScenarios() const;
    std::vector<SubscriptionScenario> subscriptionScenarios() const;

    std::int32_t createListener(std::string_view name);
    // It goes from all subscriptions; one that had no other goes, too.
    std::int32_t deleteListener(std::string_view name);
    std::int32_t setPermanent(std::string_view listener, bool permanent);
    std::int32_t setDestination(std::string_view listener, std::string_view destination);

    std::int32_t createSubscription(std::string_view name, std::int64_t now);
    std::int32_t setFilter(std::string_view subscription, std::string_view filter);
    // An empty state leaves it as it is.
    std::int32_t
    setEnableState(std::string_view subscription, std::string_view enableState, std::int64_t now);
    std::int32_t setDuration(std::string_view subscription, std::string_view seconds);
    std::int32_t setStart(std::string_view subscription, std::string_view time, std::int64_t now);

    std::int32_t attach(std::string_view listener, std::string_view subscription);
    // A subscription without listeners goes.
    std::int32_t detach(std::string_view listener, std::string_view subscription);

    // Drops the subscriptions whose time is over, and those that are of no use a minute after their creation.
    void dropEnded(std::int64_t now);
    // When that is next; nothing: never as things are.
    std::optional<std::int64_t> nextEnd() const { return _nextEnd; }

    // Rises with every change.
    std::uint64_t changes() const { return _changes; }

  private:
    template <class Elements, class Change> // int32_t(element)
    std::int32_t change(Elements& elements, std::string_view name, Change change);
    std::int32_t changed();
    void drop(Subscriptions::iterator subscription);

    Listeners _listeners;
    Subscriptions _subscriptions;
    std::optional<std::int64_t> _nextEnd;
    std::uint64_t _changes = 0;
};

} // namespace simulator

#endif
