// What happens to the switch and its fabric.
#include "simulator/model/History.h"

namespace simulator
{

void History::log(std::string_view component, std::string_view message, std::uint64_t now, Gravity gravity)
{
    if (!_started)
        return;
    const std::int64_t time = _wallClock.microseconds(now);
    _logs.write(LogKind::user, component, message, time);
    if (gravity == Gravity::failure)
        _logs.write(LogKind::alarm, component, message, time);
}

void History::raise(SwitchEvent event)
{
    const bool again = event.type == XPL_EVENT_SUBSCRIPTIONS_CHANGED && !_events.empty() &&
                       _events.back().type == event.type;
    if (_started && !again)
        _events.push_back(std::move(event));
}

} // namespace simulator
