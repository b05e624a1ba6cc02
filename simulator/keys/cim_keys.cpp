// Keys of the listeners and subscriptions of the CIM agent, and the agent's own commands on them.
//
// Names may contain points: a name ends where the first word of the keys stands between two points
// ("Oper.Cim.Listener.a.b.NextSub.c": listener "a.b"). What follows the word is its argument, points and all.
#include "platform/xpl_fzs.h"
#include "simulator/keys/attribute_keys.h"
#include "simulator/model/switch_time.h"

namespace simulator
{
namespace
{

// A key behind "Listener." or "Subscription.".
struct Addressed
{
    std::string_view name;
    std::string_view word; // empty: the key has none
    std::optional<std::string_view> argument;
};

Addressed addressedBy(CimKind kind, std::string_view text)
{
    for (std::size_t point = text.find('.'); point != std::string_view::npos;)
    {
        const std::size_t next = text.find('.', point + 1);
        const std::string_view word = text.substr(point + 1, next - point - 1);
        if (isCimWord(kind, word))
        {
            const bool more = next != std::string_view::npos;
            return {text.substr(0, point),
                    word,
                    more ? std::optional<std::string_view>(text.substr(next + 1)) : std::nullopt};
        }
        point = next;
    }
    return {text, {}, {}};
}

// --- Reading ---

std::int32_t tellNext(const CimNames& names, std::string_view before, Answer& answer)
{
    const auto next = names.upper_bound(before);
    return next != names.end() ? answer.text(*next) : std::int32_t{XPL_END_OF_WALK};
}

std::int32_t tellListener(const CimListener& one, const Addressed& key, Answer& answer)
{
    if (key.word == "NextSub" && key.argument)
        return tellNext(one.subscriptions, *key.argument, answer);
    if (key.argument)
        return XPL_UNKNOWN_KEY;
    if (key.word == "Type")
        return answer.text(one.permanent ? "Permanent" : "Transient");
    if (key.word == "Destination")
        return answer.text(one.destination);
    return key.word == "FirstSub" ? tellNext(one.subscriptions, "", answer) : std::int32_t{XPL_UNKNOWN_KEY};
}

std::int32_t tellSubscription(const CimSubscription& one, const Addressed& key, Answer& answer)
{
    if (key.word == "NextListener" && key.argument)
        return tellNext(one.listeners, *key.argument, answer);
    if (key.argument)
        return XPL_UNKNOWN_KEY;
    if (key.word == "FilterID")
        return answer.text(one.filter);
    if (key.word == "EnableState")
        return answer.text(one.enableState);
    if (key.word == "EnableStateChange")
        return answer.text(switchTimeText(one.enableStateChange));
    if (key.word == "Duration")
        return answer.decimal(static_cast<std::uint64_t>(one.duration));
    if (key.word == "StartTime")
        return answer.text(switchTimeText(one.start));
    if (key.word == "FirstListener")
        return answer.text(one.listeners.empty() ? std::string() : *one.listeners.begin());
    return XPL_UNKNOWN_KEY;
}

// The keys of all elements of one kind: the walk, and what each tells.
template <class Elements, class Tell> // const Elements& of(const CimSubscriptions&)
void addReads(ReadKeys& keys,
              CimKind kind,
              const std::string& name,
              const Elements& (CimSubscriptions::*of)() const,
              Tell tell)
{
    keys.add("Oper.Cim.First" + name,
             [of](const FabricModel& model, const KeyArguments&, std::uint64_t, Answer& answer)
             {
                 const Elements& elements = (model.cim().*of)();
                 return answer.text(elements.empty() ? std::string() : elements.begin()->first);
             });
    keys.add("Oper.Cim.Next" + name + ".%*",
             [of](const FabricModel& model, const KeyArguments& arguments, std::uint64_t, Answer& answer)
             {
                 const Elements& elements = (model.cim().*of)();
                 const auto next = elements.upper_bound(arguments[0]);
                 return next != elements.end() ? answer.text(next->first) : std::int32_t{XPL_END_OF_WALK};
             });
    keys.add("Oper.Cim." + name + ".%*",
             [kind, of, tell](
                 const FabricModel& model, const KeyArguments& arguments, std::uint64_t, Answer& answer)
             {
                 const Addressed key = addressedBy(kind, arguments[0]);
                 const Elements& elements = (model.cim().*of)();
                 const auto found = elements.find(key.name);
                 return found != elements.end() ? tell(found->second, key, answer)
                                                : std::int32_t{XPL_UNKNOWN_KEY};
             });
}

// --- Commands ---

using Command = std::int32_t (*)(CimSubscriptions& cim,
                                 std::string_view name,
                                 std::string_view argument,
                                 std::int64_t now);

struct NamedCommand
{
    std::string_view word;
    bool takesArgument;
    Command command;
};

using Text = std::string_view;
using Cim = CimSubscriptions;

constexpr NamedCommand kListenerCommands[] = {
    {"Create", false, [](Cim& cim, Text name, Text, std::int64_t) { return cim.createListener(name); }},
    {"Delete", false, [](Cim& cim, Text name, Text, std::int64_t) { return cim.deleteListener(name); }},
    {"Type",
     true,
     [](Cim& cim, Text name, Text type, std::int64_t)
     {
         const bool known = type == "Permanent" || type == "Transient";
         return known ? cim.setPermanent(name, type == "Permanent") : std::int32_t{XPL_INVALID_PARAMETER};
     }},
    {"Destination",
     true,
     [](Cim& cim, Text name, Text text, std::int64_t) { return cim.setDestination(name, text); }},
    {"AddSubscription",
     true,
     [](Cim& cim, Text name, Text subscription, std::int64_t) { return cim.attach(name, subscription); }},
    {"RemoveSubscription",
     true,
     [](Cim& cim, Text name, Text subscription, std::int64_t) { return cim.detach(name, subscription); }},
};

constexpr NamedCommand kSubscriptionCommands[] = {
    {"Create",
     false,
     [](Cim& cim, Text name, Text, std::int64_t now) { return cim.createSubscription(name, now); }},
    {"FilterID",
     true,
     [](Cim& cim, Text name, Text filter, std::int64_t) { return cim.setFilter(name, filter); }},
    {"EnableState",
     true,
     [](Cim& cim, Text name, Text state, std::int64_t now) { return cim.setEnableState(name, state, now); }},
    {"Duration",
     true,
     [](Cim& cim, Text name, Text seconds, std::int64_t) { return cim.setDuration(name, seconds); }},
    {"StartTime",
     true,
     [](Cim& cim, Text name, Text time, std::int64_t now) { return cim.setStart(name, time, now); }},
};

template <std::size_t N>
void addCommands(WriteKeys& keys, CimKind kind, const char* pattern, const NamedCommand (&commands)[N])
{
    keys.add(pattern,
             [kind, &commands](FabricModel& model, const KeyArguments& arguments, std::uint64_t now)
             {
                 const Addressed key = addressedBy(kind, arguments[0]);
                 for (const NamedCommand& one : commands)
                 {
                     if (one.word != key.word)
                         continue;
                     if (one.takesArgument != key.argument.has_value())
                         return std::int32_t{one.takesArgument ? XPL_UNKNOWN_KEY : XPL_INVALID_NAME};
                     return model.changeCim(
                         now,
                         [&](CimSubscriptions& cim, std::int64_t seconds)
                         { return one.command(cim, key.name, key.argument.value_or(""), seconds); });
                 }
                 return std::int32_t{XPL_UNKNOWN_KEY};
             });
}

} // namespace

void addCimKeys(ReadKeys& reads, WriteKeys& writes)
{
    addReads(reads, CimKind::listener, "Listener", &CimSubscriptions::listeners, tellListener);
    addReads(
        reads, CimKind::subscription, "Subscription", &CimSubscriptions::subscriptions, tellSubscription);
    addCommands(writes, CimKind::listener, "Cmd.Cim.Listener.%*", kListenerCommands);
    addCommands(writes, CimKind::subscription, "Cmd.Cim.Subscription.%*", kSubscriptionCommands);
}

} // namespace simulator
