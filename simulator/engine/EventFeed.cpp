// The switch's events as lines for those who watch them beside their receiver.
#include "simulator/engine/EventFeed.h"

namespace simulator
{

EventFeed::Watch::Watch(EventFeed& feed) : _feed(feed)
{
    const std::lock_guard<std::mutex> guard(_feed._mutex);
    _feed._watches.insert(this);
}

EventFeed::Watch::~Watch()
{
    const std::lock_guard<std::mutex> guard(_feed._mutex);
    _feed._watches.erase(this);
}

std::string EventFeed::Watch::next(std::chrono::milliseconds patience)
{
    std::unique_lock<std::mutex> lock(_feed._mutex);
    _feed._came.wait_for(lock, patience, [this] { return !_lines.empty(); });
    std::string text;
    if (_lost != 0)
        text = "(" + std::to_string(_lost) + " events are lost)\n";
    for (const std::string& line : _lines)
        text += line + '\n';
    _lines.clear();
    _lost = 0;
    return text;
}

void EventFeed::put(const std::vector<SwitchEvent>& events)
{
    const std::lock_guard<std::mutex> guard(_mutex);
    for (Watch* watch : _watches)
    {
        for (const SwitchEvent& event : events)
            watch->_lines.push_back(textOf(event));
        for (; watch->_lines.size() > Watch::kMostLines; ++watch->_lost)
            watch->_lines.pop_front();
    }
    if (!_watches.empty())
        _came.notify_all();
}

} // namespace simulator
