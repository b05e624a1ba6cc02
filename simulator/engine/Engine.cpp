// The process's one simulated switch.
#include "simulator/engine/Engine.h"

#include "simulator/default_scenario.h"
#include "simulator/scenario/scenario_json.h"

#include <cstdio>
#include <cstdlib>

namespace simulator
{
namespace
{

// What a process starts with when it opened nothing. A wrong file stops it: going on with another fabric than
// the one asked for would be worse, and no call has room for the message.
Scenario initialScenario()
{
    const char* path = std::getenv("VRAX_SCENARIO");
    if (path == nullptr || *path == '\0')
        return parseScenario(kDefaultScenario, "built-in default.json");
    try
    {
        return readScenario(path);
    }
    catch (const ScenarioError& error)
    {
        std::fprintf(stderr, "simulated switch: VRAX_SCENARIO: %s\n", error.what());
        std::abort();
    }
}

} // namespace

Engine& Engine::instance()
{
    // Never destroyed: other threads may be within a call while the process exits. Its own thread ends then.
    static Engine& engine = *new Engine;
    struct AtExit
    {
        ~AtExit() { engine.events.endAtExit(); }
    };
    static const AtExit atExit;
    return engine;
}

void Engine::open(const Scenario& scenario, bool manualClock)
{
    auto model = std::make_unique<FabricModel>(scenario);
    const Locked<CacheLock> quiet(cacheLock);
    const KeptAtEnd kept(*this);
    const Locked<SharedMutex> guard(_mutex);
    clock.start(model->startTime(), manualClock);
    _model = std::move(model);
    _opened = true;
}

void Engine::keepIn(const std::string& path)
{
    stopKeeping(); // what is opened here is not of the file kept so far
    try
    {
        if (_stateFile.claim(path))
            open(readScenario(path));
        _stateFile.keepIn(path, [this] { return formatScenario(durablePart()); });
    }
    catch (...)
    {
        stopKeeping();
        throw;
    }
}

void Engine::stopKeeping()
{
    _stateFile.stop();
}

void Engine::keep() noexcept
{
    _stateFile.update([this] { return formatScenario(durablePart()); });
}

// The present state as it is: catching up would ask to keep the state in its turn.
Scenario Engine::durablePart()
{
    openInitial();
    const SharedLocked guard(_mutex);
    return _model->toScenario();
}

void Engine::catchUp()
{
    if (!_opened)
        return;
    bool changed = false;
    {
        const Locked<SharedMutex> guard(_mutex);
        const RaisedAtEnd raised(*this, *_model);
        changed = _model->catchUp(clock.now());
    }
    if (changed)
        keep();
}

void Engine::handOut(std::vector<SwitchEvent> raised)
{
    if (raised.empty())
        return;
    for (const SwitchEvent& event : raised)
        probe.noteEvent(event);
    feed.put(raised);
    events.put(std::move(raised));
}

void Engine::openInitial()
{
    if (_opened)
        return;
    // Made outside the lock; of several threads that come first at once, one wins.
    auto model = std::make_unique<FabricModel>(initialScenario());
    const Locked<SharedMutex> guard(_mutex);
    if (!_opened)
    {
        clock.start(model->startTime(), false);
        _model = std::move(model);
        _opened = true;
    }
}

} // namespace simulator
