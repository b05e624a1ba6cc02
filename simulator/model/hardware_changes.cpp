// What happens to the hardware of the local switch.
#include "simulator/model/hardware.h"

namespace simulator
{
namespace
{

template <class Elements>
auto& elementWith(Elements& elements, const char* what, int number)
{
    auto* found = elementOf(elements, number);
    if (found == nullptr)
        throw ScenarioError("",
                            "the local switch has no " + std::string(what) + " " + std::to_string(number));
    return *found;
}

[[noreturn]] void refuseEmpty(const char* what, int number)
{
    throw ScenarioError("", std::string(what) + " " + std::to_string(number) + " is not there");
}

// How a kind of part is called, and the events that tell what happens to it.
struct PartWords
{
    const char* name;
    xpl_SwitchEventType added;
    xpl_SwitchEventType removed;
    xpl_SwitchEventType failed;
};

const PartWords& wordsOf(PartKind kind)
{
    static constexpr PartWords kSupply{"power supply",
                                       XPL_EVENT_POWER_SUPPLY_ADDED,
                                       XPL_EVENT_POWER_SUPPLY_REMOVED,
                                       XPL_EVENT_POWER_SUPPLY_FAILED};
    static constexpr PartWords kFan{"fan", XPL_EVENT_FAN_ADDED, XPL_EVENT_FAN_REMOVED, XPL_EVENT_FAN_FAILED};
    static constexpr PartWords kCpu{"CPU", XPL_EVENT_CPU_ADDED, XPL_EVENT_CPU_REMOVED, XPL_EVENT_CPU_FAILED};
    if (kind == PartKind::powerSupply)
        return kSupply;
    return kind == PartKind::fan ? kFan : kCpu;
}

// A part is added when the slot was empty, and when one that works takes the place of one that had failed.
std::optional<xpl_SwitchEventType> eventOf(const PartWords& words, PartState before, PartState now)
{
    const auto worked = [](PartState state)
    { return state == PartState::normal || state == PartState::warning; };
    if (now == before || (worked(now) && worked(before)))
        return std::nullopt;
    if (now == PartState::notInstalled)
        return words.removed;
    return now == PartState::failed ? words.failed : words.added;
}

} // namespace

void FabricModel::warmthChanged(std::uint64_t now)
{
    _local->warmth.setTarget(heatOf(*_local), now);
}

PartScenario& FabricModel::part(PartKind kind, int number)
{
    SwitchScenario& facts = _local->facts;
    if (kind == PartKind::powerSupply)
        return elementWith(facts.powerSupplies, wordsOf(kind).name, number);
    return elementWith(kind == PartKind::fan ? facts.fans : facts.cpus, wordsOf(kind).name, number);
}

void FabricModel::setPart(PartKind kind, int number, PartState state, std::uint64_t now)
{
    PartScenario& changed = part(kind, number);
    const PartWords& words = wordsOf(kind);
    const bool goesWrong = state == PartState::warning || state == PartState::failed;
    if (goesWrong && changed.state == PartState::notInstalled)
        refuseEmpty(words.name, number);
    const PartState before = std::exchange(changed.state, state);
    const std::string name = std::string(words.name) + " " + std::to_string(number);
    _history.log("chassis",
                 name + " " + std::string(toText(state)),
                 now,
                 goesWrong ? Gravity::failure : Gravity::notice);
    warmthChanged(now);
    if (const auto type = eventOf(words, before, state))
    {
        SwitchEvent happened = event(*type);
        happened.location = name;
        _history.raise(std::move(happened));
    }
}

SensorScenario& FabricModel::sensor(SensorKind kind, int number)
{
    if (kind == SensorKind::temperature)
        return elementWith(_local->facts.temperatureSensors, "temperature sensor", number);
    return elementWith(_local->facts.voltageSensors, "voltage sensor", number);
}

void FabricModel::pinSensor(SensorKind kind, int number, int reading, std::uint64_t now)
{
    SensorScenario& found = sensor(kind, number);
    found.pinned = reading;
    found.broken = false;
    sensorsChanged(now);
}

void FabricModel::breakSensor(SensorKind kind, int number, std::uint64_t now)
{
    sensor(kind, number).broken = true;
    sensorsChanged(now);
}

void FabricModel::releaseSensor(SensorKind kind, int number, std::uint64_t now)
{
    SensorScenario& found = sensor(kind, number);
    found.pinned.reset();
    found.broken = false;
    sensorsChanged(now);
}

BladeScenario& FabricModel::blade(int number)
{
    return elementWith(_local->facts.blades, "blade", number);
}

template <class Change>
void FabricModel::changeBlade(int number, std::uint64_t now, Change change)
{
    BladeScenario& changed = blade(number);
    const std::string before(operState(changed));
    change(changed);
    const std::string_view state = operState(changed);
    const std::string name = "blade " + std::to_string(number);
    _history.log("chassis",
                 name + " " + (state.empty() ? "removed" : std::string(state)),
                 now,
                 changed.present && changed.failed ? Gravity::failure : Gravity::notice);
    if (state != before)
    {
        SwitchEvent happened = event(before.empty()  ? XPL_EVENT_BLADE_ADDED
                                     : state.empty() ? XPL_EVENT_BLADE_REMOVED
                                                     : XPL_EVENT_BLADE_STATUS);
        happened.location = name;
        if (happened.type == XPL_EVENT_BLADE_STATUS)
        {
            happened.status = statusOfBlade(state);
            happened.previousStatus = statusOfBlade(before);
        }
        _history.raise(std::move(happened));
    }
    for (Port& port : _local->ports)
        if (port.facts.blade == number)
            linkChanged(*_local, port, now);
    warmthChanged(now);
}

void FabricModel::failBlade(int number, std::uint64_t now)
{
    changeBlade(number,
                now,
                [number](BladeScenario& one)
                {
                    if (!one.present)
                        refuseEmpty("blade", number);
                    one.failed = true;
                    one.diagnostics = DiagStatus::failed;
                });
}

void FabricModel::pullBlade(int number, std::uint64_t now)
{
    changeBlade(number, now, [](BladeScenario& one) { one.present = false; });
}

void FabricModel::insertBlade(int number, std::uint64_t now)
{
    changeBlade(number,
                now,
                [](BladeScenario& one)
                {
                    one.present = true;
                    one.failed = false;
                    one.diagnostics = DiagStatus::passed;
                });
}

void FabricModel::setBladeAdminState(int number, AdminState state, std::uint64_t now)
{
    changeBlade(number, now, [state](BladeScenario& one) { one.adminState = state; });
}

} // namespace simulator
