// The logs of the local switch: what happens to it, as numbered lines of which the oldest go.
#include "simulator/model/EventLog.h"

#include "simulator/model/hex.h"
#include "simulator/scenario/Scenario.h"

#include <algorithm>
#include <ctime>
#include <utility>

namespace simulator
{
namespace
{

constexpr int kMicroseconds = 1000000;

// The number in the first brackets; 0 when there is none.
int numberOf(const std::string& text)
{
    const std::size_t end = text.find(']');
    int number = 0;
    const bool numbered = end != std::string::npos && text.front() == '[' &&
                          parseDecimal(std::string_view(text).substr(1, end - 1), number);
    return numbered ? number : 0;
}

// "Tue Mar 04 10:22:31.123456 UTC 2008"
std::string timeText(std::int64_t microseconds)
{
    const auto seconds = static_cast<std::time_t>(microseconds / kMicroseconds);
    std::tm fields{};
    gmtime_r(&seconds, &fields);
    char day[32];
    char year[16];
    std::strftime(day, sizeof day, "%a %b %d %T", &fields);
    std::strftime(year, sizeof year, "%Y", &fields);
    // The digits of a number that has one more in front.
    const std::string fraction = std::to_string(kMicroseconds + microseconds % kMicroseconds).substr(1);
    return std::string(day) + "." + fraction + " UTC " + year;
}

std::string withoutBrackets(std::string_view text)
{
    std::string result(text);
    std::replace(result.begin(), result.end(), '[', '(');
    std::replace(result.begin(), result.end(), ']', ')');
    return result;
}

} // namespace

EventLog::EventLog(int capacity, const std::vector<std::string>& texts, const std::string& place)
    : _capacity(static_cast<std::size_t>(capacity))
{
    if (texts.size() > _capacity)
        throw ScenarioError(place, "the log holds " + std::to_string(capacity) + " entries at most");
    for (const std::string& text : texts)
    {
        const int number = numberOf(text);
        if (number <= _lastNumber)
        {
            throw ScenarioError(place + "/" + std::to_string(_entries.size()),
                                "expected an entry that begins with a number in brackets above " +
                                    std::to_string(_lastNumber));
        }
        _entries.push_back({number, text});
        _lastNumber = number;
    }
}

void EventLog::append(std::string_view time, std::string_view component, std::string_view message)
{
    ++_lastNumber;
    std::string text = "[" + std::to_string(_lastNumber) + "][" + std::string(time) + "][" +
                       withoutBrackets(component) + "][" + withoutBrackets(message);
    text.resize(std::min(text.size(), kLogEntrySize - 1));
    _entries.push_back({_lastNumber, text + "]"});
    if (_entries.size() > _capacity)
        _entries.pop_front();
}

const std::string* EventLog::after(int number) const
{
    const auto found = std::upper_bound(_entries.begin(),
                                        _entries.end(),
                                        number,
                                        [](int wanted, const Entry& entry) { return wanted < entry.number; });
    return found != _entries.end() ? &found->text : nullptr;
}

std::vector<std::string> EventLog::texts() const
{
    std::vector<std::string> result;
    result.reserve(_entries.size());
    for (const Entry& entry : _entries)
        result.push_back(entry.text);
    return result;
}

SwitchLogs::SwitchLogs(bool enabled, EventLog user, EventLog alarm)
    : _user(std::move(user)), _alarm(std::move(alarm)), _enabled(enabled)
{
}

void SwitchLogs::write(LogKind kind, std::string_view component, std::string_view message, std::int64_t time)
{
    if (kind == LogKind::user && !_enabled)
        return;
    // No two entries have the same time: what happens at the same moment is in order all the same.
    _last = std::max(_last + 1, time);
    (*this)[kind].append(timeText(_last), component, message);
}

} // namespace simulator
