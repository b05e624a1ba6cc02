// The logs of the local switch: what happens to it, as numbered lines of which the oldest go.
#ifndef SIMULATOR_MODEL_EVENTLOG_H
#define SIMULATOR_MODEL_EVENTLOG_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace simulator
{

// Bytes of an entry's text, without the terminator: what an attribute's value holds.
constexpr std::size_t kLogEntrySize = 255;

// Entries by rising number, each "[number][time][component][message]".
class EventLog
{
  public:
    // Begins with the entries of a scenario, which need no more than the number. Throws ScenarioError with
    // their place when numbers do not rise, or when there are more entries than the log holds.
    EventLog(int capacity, const std::vector<std::string>& texts, const std::string& place);

    // Fields of the entry have parentheses in the place of brackets, and a message that is too long is cut.
    void append(std::string_view time, std::string_view component, std::string_view message);
    // Numbers go on where they were.
    void clear() { _entries.clear(); }

    // Null when there is none.
    const std::string* last() const { return _entries.empty() ? nullptr : &_entries.back().text; }
    // The first entry with a number above `number`, in O(log n); null when there is none.
    const std::string* after(int number) const;

    std::size_t capacity() const { return _capacity; }
    std::size_t size() const { return _entries.size(); }
    std::vector<std::string> texts() const;

  private:
    struct Entry
    {
        int number;
        std::string text;
    };

    std::size_t _capacity;
    int _lastNumber = 0;
    std::deque<Entry> _entries;
};

enum class LogKind
{
    user, // all that happens
    alarm // what has failed
};

// Both logs. Only the user log can be off.
class SwitchLogs
{
  public:
    SwitchLogs(bool enabled, EventLog user, EventLog alarm);

    // `time` is in microseconds since the epoch.
    void write(LogKind kind, std::string_view component, std::string_view message, std::int64_t time);

    EventLog& operator[](LogKind kind) { return kind == LogKind::user ? _user : _alarm; }
    const EventLog& operator[](LogKind kind) const { return kind == LogKind::user ? _user : _alarm; }

    bool enabled() const { return _enabled; }
    void enable(bool on) { _enabled = on; }

  private:
    EventLog _user;
    EventLog _alarm;
    bool _enabled;
    std::int64_t _last = 0; // the time of the last entry
};

} // namespace simulator

#endif
