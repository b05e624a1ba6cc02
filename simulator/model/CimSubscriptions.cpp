// The listeners and subscriptions that the switch keeps for its CIM agent.
#include "simulator/model/CimSubscriptions.h"

#include "platform/xpl_fzs.h"
#include "simulator/model/hex.h"
#include "simulator/model/switch_time.h"
#include "simulator/scenario/Scenario.h"

#include <algorithm>
#include <iterator>

namespace simulator
{
namespace
{

constexpr std::string_view kListenerWords[] = {"Create",
                                               "Delete",
                                               "Type",
                                               "Destination",
                                               "AddSubscription",
                                               "RemoveSubscription",
                                               "FirstSub",
                                               "NextSub"};
constexpr std::string_view kSubscriptionWords[] = {"Create",
                                                   "FilterID",
                                                   "EnableState",
                                                   "EnableStateChange",
                                                   "Duration",
                                                   "StartTime",
                                                   "FirstListener",
                                                   "NextListener"};

constexpr std::int64_t kUselessSeconds = 60; // an agent is through with a subscription in one batch

template <std::size_t N>
bool contains(const std::string_view (&words)[N], std::string_view part)
{
    return std::find(std::begin(words), std::end(words), part) != std::end(words);
}

// ASCII without control characters: what every file and key can hold.
bool isPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

bool isName(CimKind kind, std::string_view name)
{
    if (name.empty() || name.size() > kCimNameSize || !isPlain(name))
        return false;
    for (std::string_view rest = name;;)
    {
        const std::size_t point = rest.find('.');
        if (isCimWord(kind, rest.substr(0, point)))
            return false;
        if (point == std::string_view::npos)
            return true;
        rest.remove_prefix(point + 1);
    }
}

template <class Elements>
std::int32_t create(Elements& elements,
                    CimKind kind,
                    std::string_view name,
                    std::int32_t existsStatus,
                    std::size_t limit,
                    typename Elements::mapped_type element)
{
    if (!isName(kind, name))
        return XPL_INVALID_NAME;
    if (elements.find(name) != elements.end())
        return existsStatus;
    if (elements.size() == limit)
        return XPL_FZS_LIMIT_REACHED;
    elements.emplace(std::string(name), std::move(element));
    return XPL_OK;
}

// When the switch drops it; nothing: not by itself.
std::optional<std::int64_t> endOf(const CimSubscription& one)
{
    std::optional<std::int64_t> end;
    if (one.filter.empty() || one.listeners.empty())
        end = one.created + kUselessSeconds;
    if (one.duration != 0)
        end = std::min(end.value_or(one.start + one.duration), one.start + one.duration);
    return end;
}

// Turns a status into the message for what stands at `place`.
void expectTaken(std::int32_t status, const std::string& place, const std::string& text)
{
    const std::string quoted = "\"" + text + "\"";
    switch (status)
    {
    case XPL_OK:
        return;
    case XPL_LISTENER_EXISTS:
    case XPL_SUBSCRIPTION_EXISTS:
        throw ScenarioError(place, quoted + " appears twice");
    case XPL_FZS_LIMIT_REACHED:
        throw ScenarioError(place, quoted + " is more than the switch holds");
    case XPL_UNKNOWN_KEY:
        throw ScenarioError(place, "there is no " + quoted);
    case XPL_INVALID_NAME:
        throw ScenarioError(place,
                            "expected a name of 1 to " + std::to_string(kCimNameSize) +
                                " ASCII characters without a word of the keys, got " + quoted);
    default:
        throw ScenarioError(place, "the switch does not take " + quoted);
    }
}

std::int64_t momentAt(const std::string& text, std::int64_t otherwise, const std::string& place)
{
    if (text.empty())
        return otherwise;
    const auto moment = momentOfIsoText(text);
    if (!moment)
        throw ScenarioError(place, "expected a time such as \"2026-11-14T20:35:10Z\", got \"" + text + "\"");
    return *moment;
}

} // namespace

bool isCimWord(CimKind kind, std::string_view part)
{
    return kind == CimKind::listener ? contains(kListenerWords, part) : contains(kSubscriptionWords, part);
}

CimSubscriptions::CimSubscriptions(const std::vector<ListenerScenario>& listeners,
                                   const std::vector<SubscriptionScenario>& subscriptions,
                                   const std::string& place,
                                   std::int64_t now)
{
    for (std::size_t i = 0; i < listeners.size(); ++i)
    {
        const ListenerScenario& facts = listeners[i];
        const std::string here = place + "/listeners/" + std::to_string(i);
        expectTaken(createListener(facts.name), here + "/name", facts.name);
        setPermanent(facts.name, facts.permanent);
        if (!facts.destination.empty())
            expectTaken(
                setDestination(facts.name, facts.destination), here + "/destination", facts.destination);
    }
    for (std::size_t i = 0; i < subscriptions.size(); ++i)
    {
        const SubscriptionScenario& facts = subscriptions[i];
        const std::string here = place + "/subscriptions/" + std::to_string(i);
        expectTaken(createSubscription(facts.name, now), here + "/name", facts.name);
        if (!facts.filter.empty())
            expectTaken(setFilter(facts.name, facts.filter), here + "/filter", facts.filter);
        const std::int64_t enabled = momentAt(facts.enableStateChange, now, here + "/enableStateChange");
        expectTaken(
            setEnableState(facts.name, facts.enableState, enabled), here + "/enableState", facts.enableState);
        for (std::size_t j = 0; j < facts.listeners.size(); ++j)
        {
            expectTaken(attach(facts.listeners[j], facts.name),
                        here + "/listeners/" + std::to_string(j),
                        facts.listeners[j]);
        }
        CimSubscription& added = _subscriptions.find(facts.name)->second;
        added.enableStateChange = enabled;
        added.start = momentAt(facts.startTime, now, here + "/startTime");
        added.duration = facts.durationSeconds;
    }
    changed();
}

std::vector<ListenerScenario> CimSubscriptions::listenerScenarios() const
{
    std::vector<ListenerScenario> all;
    for (const auto& [name, one] : _listeners)
        all.push_back({name, one.permanent, one.destination});
    return all;
}

std::vector<SubscriptionScenario> CimSubscriptions::subscriptionScenarios() const
{
    std::vector<SubscriptionScenario> all;
    for (const auto& [name, one] : _subscriptions)
    {
        all.push_back({name,
                       one.filter,
                       one.enableState,
                       isoText(one.enableStateChange),
                       isoText(one.start),
                       one.duration,
                       {one.listeners.begin(), one.listeners.end()}});
    }
    return all;
}

std::int32_t CimSubscriptions::changed()
{
    ++_changes;
    _nextEnd.reset();
    for (const auto& [name, one] : _subscriptions)
        if (const auto end = endOf(one); end && (!_nextEnd || *end < *_nextEnd))
            _nextEnd = end;
    return XPL_OK;
}

template <class Elements, class Change>
std::int32_t CimSubscriptions::change(Elements& elements, std::string_view name, Change change)
{
    const auto found = elements.find(name);
    if (found == elements.end())
        return XPL_UNKNOWN_KEY;
    return change(found->second) ? changed() : std::int32_t{XPL_INVALID_PARAMETER};
}

std::int32_t CimSubscriptions::createListener(std::string_view name)
{
    const std::int32_t fault =
        create(_listeners, CimKind::listener, name, XPL_LISTENER_EXISTS, kMaxListeners, {});
    return fault != XPL_OK ? fault : changed();
}

std::int32_t CimSubscriptions::deleteListener(std::string_view name)
{
    const auto found = _listeners.find(name);
    if (found == _listeners.end())
        return XPL_UNKNOWN_KEY;
    const CimNames attached = found->second.subscriptions;
    for (const std::string& subscription : attached)
        detach(name, subscription);
    _listeners.erase(found);
    return changed();
}

std::int32_t CimSubscriptions::setPermanent(std::string_view listener, bool permanent)
{
    return change(_listeners,
                  listener,
                  [permanent](CimListener& one)
                  {
                      one.permanent = permanent;
                      return true;
                  });
}

std::int32_t CimSubscriptions::setDestination(std::string_view listener, std::string_view destination)
{
    return change(_listeners,
                  listener,
                  [destination](CimListener& one)
                  {
                      const bool taken = !destination.empty() && isPlain(destination);
                      if (taken)
                          one.destination = destination;
                      return taken;
                  });
}

std::int32_t CimSubscriptions::createSubscription(std::string_view name, std::int64_t now)
{
    CimSubscription fresh;
    fresh.created = fresh.start = fresh.enableStateChange = now;
    const std::int32_t fault = create(_subscriptions,
                                      CimKind::subscription,
                                      name,
                                      XPL_SUBSCRIPTION_EXISTS,
                                      kMaxSubscriptions,
                                      std::move(fresh));
    return fault != XPL_OK ? fault : changed();
}

std::int32_t CimSubscriptions::setFilter(std::string_view subscription, std::string_view filter)
{
    return change(_subscriptions,
                  subscription,
                  [filter](CimSubscription& one)
                  {
                      const bool taken = !filter.empty() && filter.size() <= kCimNameSize && isPlain(filter);
                      if (taken)
                          one.filter = filter;
                      return taken;
                  });
}

std::int32_t CimSubscriptions::setEnableState(std::string_view subscription,
                                              std::string_view enableState,
                                              std::int64_t now)
{
    return change(_subscriptions,
                  subscription,
                  [enableState, now](CimSubscription& one)
                  {
                      const bool known =
                          enableState == "True" || enableState == "False" || enableState.empty();
                      if (!known || enableState.empty() || one.enableState == enableState)
                          return known;
                      one.enableStateChange = now;
                      one.enableState = enableState;
                      return known;
                  });
}

std::int32_t CimSubscriptions::setDuration(std::string_view subscription, std::string_view seconds)
{
    return change(_subscriptions,
                  subscription,
                  [seconds](CimSubscription& one)
                  {
                      int duration = 0;
                      const bool taken = parseDecimal(seconds, duration) && duration <= kMaxDurationSeconds;
                      if (taken)
                          one.duration = duration;
                      return taken;
                  });
}

std::int32_t
CimSubscriptions::setStart(std::string_view subscription, std::string_view time, std::int64_t now)
{
    return change(_subscriptions,
                  subscription,
                  [time, now](CimSubscription& one)
                  {
                      const auto start = momentOfSwitchText(time, now);
                      one.start = start.value_or(one.start);
                      return start.has_value();
                  });
}

std::int32_t CimSubscriptions::attach(std::string_view listener, std::string_view subscription)
{
    const auto to = _listeners.find(listener);
    const auto what = _subscriptions.find(subscription);
    if (to == _listeners.end() || what == _subscriptions.end())
        return XPL_UNKNOWN_KEY;
    if (!what->second.listeners.emplace(listener).second)
        return XPL_OK;
    to->second.subscriptions.emplace(subscription);
    return changed();
}

std::int32_t CimSubscriptions::detach(std::string_view listener, std::string_view subscription)
{
    const auto from = _listeners.find(listener);
    const auto what = _subscriptions.find(subscription);
    if (from == _listeners.end() || what == _subscriptions.end())
        return XPL_UNKNOWN_KEY;
    const auto attached = what->second.listeners.find(listener);
    if (attached == what->second.listeners.end())
        return XPL_UNKNOWN_KEY;
    what->second.listeners.erase(attached);
    from->second.subscriptions.erase(what->first);
    if (what->second.listeners.empty())
        drop(what);
    return changed();
}

void CimSubscriptions::drop(Subscriptions::iterator subscription)
{
    for (const std::string& listener : subscription->second.listeners)
        _listeners.find(listener)->second.subscriptions.erase(subscription->first);
    _subscriptions.erase(subscription);
}

void CimSubscriptions::dropEnded(std::int64_t now)
{
    if (!_nextEnd || now < *_nextEnd)
        return;
    for (auto one = _subscriptions.begin(); one != _subscriptions.end();)
    {
        const auto next = std::next(one);
        if (const auto end = endOf(one->second); end && now >= *end)
            drop(one);
        one = next;
    }
    changed();
}

} // namespace simulator
