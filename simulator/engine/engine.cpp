// The process's one simulated switch.
#include "simulator/engine/engine.h"

#include "simulator/default_scenario.h"
#include "simulator/scenario/scenario_json.h"

namespace simulator
{

Engine& Engine::instance()
{
    static Engine engine;
    return engine;
}

void Engine::open(const Scenario& scenario, bool manualClock)
{
    auto model = std::make_unique<FabricModel>(scenario);
    const Locked<CacheLock> quiet(cacheLock);
    const Locked<SharedMutex> guard(_mutex);
    clock.start(model->startTime(), manualClock);
    _model = std::move(model);
    _opened = true;
}

void Engine::openDefault()
{
    if (_opened)
    {
        return;
    }
    // Made outside the lock; of several threads that come first at once, one wins.
    auto model = std::make_unique<FabricModel>(parseScenario(kDefaultScenario, "built-in default.json"));
    const Locked<SharedMutex> guard(_mutex);
    if (!_opened)
    {
        clock.start(model->startTime(), false);
        _model = std::move(model);
        _opened = true;
    }
}

} // namespace simulator
