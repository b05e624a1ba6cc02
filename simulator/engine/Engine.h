// The process's one simulated switch: the model with its lock, its clock and its probe.
#ifndef SIMULATOR_ENGINE_ENGINE_H
#define SIMULATOR_ENGINE_ENGINE_H

#include "simulator/engine/CacheLock.h"
#include "simulator/engine/EventDelivery.h"
#include "simulator/engine/ModelClock.h"
#include "simulator/engine/Probe.h"
#include "simulator/engine/StateFile.h"
#include "simulator/model/FabricModel.h"
#include "simulator/thread_annotations.h"

#include <memory>
#include <utility>

namespace simulator
{

// Locks, outermost first: the data cache's lock, the state file's, the model's, that of the events' delivery.
// Platform calls hold the model's lock only for their own duration.
class Engine
{
  public:
    static Engine& instance();

    // Replaces the fabric. Throws ScenarioError and keeps the old one.
    void open(const Scenario& scenario, bool manualClock = false);

    // From now on a file holds the durable part of the fabric whenever a change has ended; a fabric that the
    // file already holds replaces the present one. Throws ScenarioError; the file is as before, and nothing
    // is kept.
    void keepIn(const std::string& path);
    void stopKeeping();

    // Runs `use(const FabricModel&, now)` on one state of the model, together with other readers. The first
    // use of any kind opens the scenario that VRAX_SCENARIO names, else the built-in one, if nothing was
    // opened.
    template <class Use>
    auto read(Use use)
    {
        openInitial();
        {
            const SharedLocked guard(_mutex);
            if (const std::uint64_t now = clock.now(); now < _model->nextCatchUp())
                return use(static_cast<const FabricModel&>(*_model), now);
        }
        catchUp();
        const SharedLocked guard(_mutex);
        return use(static_cast<const FabricModel&>(*_model), clock.now());
    }

    // Runs `change(FabricModel&, now)` alone. For settings: what the data cache shows must not change.
    template <class Change>
    auto write(Change change)
    {
        openInitial();
        const KeptAtEnd kept(*this); // after the lock is given back
        const Locked<SharedMutex> guard(_mutex);
        const RaisedAtEnd raised(*this, *_model); // before it is given back: in the order of the changes
        _model->catchUp(clock.now());
        return change(*_model, clock.now());
    }

    // Runs `change(FabricModel&, now)` alone while nobody holds the data cache: for switches and nodes that
    // come and go. The calling thread must not hold the cache's read lock.
    template <class Change>
    auto changeFabric(Change change)
    {
        const Locked<CacheLock> quiet(cacheLock);
        return write(std::move(change));
    }

    // Brings about what time alone does. Every use of the model does so when it is due.
    void catchUp();

    CacheLock cacheLock;
    ModelClock clock;
    Probe probe;
    EventDelivery events{[this] { catchUp(); }};

  private:
    class KeptAtEnd
    {
      public:
        explicit KeptAtEnd(Engine& engine) : _engine(engine) {}
        ~KeptAtEnd() { _engine.keep(); }
        KeptAtEnd(const KeptAtEnd&) = delete;
        KeptAtEnd& operator=(const KeptAtEnd&) = delete;

      private:
        Engine& _engine;
    };

    // Hands on what a change of the model has raised.
    class RaisedAtEnd
    {
      public:
        RaisedAtEnd(Engine& engine, FabricModel& model) : _engine(engine), _model(model) {}
        ~RaisedAtEnd() { _engine.handOut(_model.takeEvents()); }
        RaisedAtEnd(const RaisedAtEnd&) = delete;
        RaisedAtEnd& operator=(const RaisedAtEnd&) = delete;

      private:
        Engine& _engine;
        FabricModel& _model;
    };

    Engine() = default;
    void openInitial();
    void keep() noexcept;
    void handOut(std::vector<SwitchEvent> raised);
    Scenario durablePart();

    SharedMutex _mutex;
    std::unique_ptr<FabricModel> _model VRAX_GUARDED_BY(_mutex);
    std::atomic<bool> _opened{false};
    StateFile _stateFile;
};

} // namespace simulator

#endif
