// What time alone brings about: sensors reach a threshold, subscriptions end.
#include "simulator/model/hardware.h"
#include "simulator/model/hex.h"

#include <algorithm>

namespace simulator
{
namespace
{

constexpr std::uint64_t kLookEvery = 1000; // milliseconds between two looks at the sensors

// The sensors of one kind.
struct Watched
{
    const char* name; // in the log
    const char* kind; // in events
    const char* unit;
    int decimals;
};
constexpr Watched kTemperatures{"temperature sensor ", "Temperature", " C", kTemperatureDecimals};
constexpr Watched kVoltages{"voltage sensor ", "Voltage", " V", kVoltageDecimals};

} // namespace

bool FabricModel::sensorsChanged(std::uint64_t now)
{
    _lastLook = now;
    bool changed = false;
    const auto look = [&](SensorKind kind, const Watched& watched, const auto& sensors, auto readingOf)
    {
        std::vector<SensorState>& told = _toldSensors[kind];
        told.resize(sensors.size(), SensorState::normal);
        for (std::size_t i = 0; i < sensors.size(); ++i)
        {
            const std::optional<int> reading = readingOf(*_local, i, now);
            const SensorState state = stateAt(sensors[i], reading);
            if (std::exchange(told[i], state) == state)
                continue;
            changed = true;
            const std::string value =
                reading ? decimalText(*reading, watched.decimals) + watched.unit : "no reading";
            const std::string name = watched.name + std::to_string(i + 1);
            const bool fine = state == SensorState::normal;
            _history.log("chassis",
                         name + " " + std::string(toText(state)) + ": " + value,
                         now,
                         fine ? Gravity::notice : Gravity::failure);
            if (fine)
                continue;
            SwitchEvent problem = event(XPL_EVENT_ENVIRONMENT);
            problem.subject = watched.kind;
            problem.value = value;
            problem.location = sensors[i].description.empty() ? name : sensors[i].description;
            _history.raise(std::move(problem));
        }
    };
    look(SensorKind::temperature, kTemperatures, _local->facts.temperatureSensors, temperatureOf);
    look(SensorKind::voltage, kVoltages, _local->facts.voltageSensors, voltageOf);
    return changed;
}

std::int32_t
FabricModel::changeCim(std::uint64_t now,
                       const std::function<std::int32_t(CimSubscriptions& cim, std::int64_t seconds)>& change)
{
    const std::uint64_t before = _cim.changes();
    const std::int32_t status = change(_cim, _history.wallClock().seconds(now));
    if (_cim.changes() != before)
        _history.raise(event(XPL_EVENT_SUBSCRIPTIONS_CHANGED));
    return status;
}

bool FabricModel::catchUp(std::uint64_t now)
{
    const std::uint64_t before = _cim.changes();
    changeCim(now,
              [](CimSubscriptions& cim, std::int64_t seconds)
              {
                  cim.dropEnded(seconds);
                  return std::int32_t{XPL_OK};
              });
    return sensorsChanged(now) || _cim.changes() != before;
}

std::uint64_t FabricModel::nextCatchUp() const
{
    std::uint64_t next = UINT64_MAX;
    if (!local().facts.temperatureSensors.empty() || !local().facts.voltageSensors.empty())
        next = _lastLook + kLookEvery;
    if (const auto end = _cim.nextEnd())
        next = std::min(next, _history.wallClock().modelTime(*end));
    return next;
}

} // namespace simulator
