// What happens to the switch and its fabric: entries of the switch's logs, and events for who receives them.
#ifndef SIMULATOR_MODEL_HISTORY_H
#define SIMULATOR_MODEL_HISTORY_H

#include "simulator/model/EventLog.h"
#include "simulator/model/SwitchEvent.h"
#include "simulator/model/WallClock.h"

#include <utility>

namespace simulator
{

enum class Gravity
{
    notice,
    failure // the alarm log has it too
};

class History
{
  public:
    History(SwitchLogs logs, std::uint64_t now) : _logs(std::move(logs)), _wallClock(now) {}

    // From here on things happen: what a scenario brings about is nothing that happened.
    void start() { _started = true; }
    bool started() const { return _started; }

    // `now` is model time. An event that only says that something changed is raised once, not twice in a row.
    void log(std::string_view component,
             std::string_view message,
             std::uint64_t now,
             Gravity gravity = Gravity::notice);
    void raise(SwitchEvent event);

    // The events raised since they were last taken, in order.
    std::vector<SwitchEvent> takeEvents() { return std::exchange(_events, {}); }

    SwitchLogs& logs() { return _logs; }
    const SwitchLogs& logs() const { return _logs; }
    const WallClock& wallClock() const { return _wallClock; }

  private:
    SwitchLogs _logs;
    WallClock _wallClock;
    bool _started = false;
    std::vector<SwitchEvent> _events;
};

} // namespace simulator

#endif
