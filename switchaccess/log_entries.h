// The entries of the switch's logs: how they are read one by one, and what their texts say.
#ifndef SWITCHACCESS_LOG_ENTRIES_H
#define SWITCHACCESS_LOG_ENTRIES_H

#include "platform/xpl_sml.h"
#include "switchaccess/Switch_Text.h"
#include "switchaccess/fabric_walk.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace cimple
{

// --- Texts

// Splits the text in place: each "[field]" goes, terminated, into the next slot, and what stands outside of
// brackets is skipped. Ends behind the last whole field, or behind the field that fills the last of `max`
// slots, which is set to null then. Returns where it ended; `count` is the number of fields found, the one
// that was in the last slot included.
char* tokenizeLog(char* text, char** fields, std::size_t max, std::size_t& count);

// As timeval, but of one size on every machine, however wide its time_t is.
struct Log_Time
{
    std::int64_t tv_sec = 0; // since the epoch
    std::int64_t tv_usec = 0;
};

// Reads a time as entries have it, "Tue Mar 04 10:22:31.123456 UTC 2008": local time whatever the zone says.
// Null, or what is wrong with the text; `time` is left alone then.
const char* timestringToTimeval(const char* text, Log_Time& time);

// Negative, zero or positive as `a` is before, at or after `b`: the difference in seconds, or in microseconds
// within one second.
std::int64_t tv_cmp(const Log_Time& a, const Log_Time& b);

// What follows the third colon of "VRAX:RecordLog:<wwn>:User"; nothing when there are fewer.
std::optional<std::string> getLogNameFromInstanceID(const std::string& id);

// The sum of the bytes. With a log and a time it names an entry.
std::uint32_t messageChecksum(const char* message);

// --- Entries

// The values of `log_type` below. Any other is thrown as a failure.
constexpr int kUserLog = 1;
constexpr int kAlarmLog = 2;

// "User" or "Alarm"; `function` is named by the failure.
const char* logWord(int log_type, const char* function, const Caller& caller);

// The text of the newest entry. Throws when it cannot be read, or there is none.
std::string getLastEntry(int log_type, const Caller& caller);
// The text of the first entry with a number above `number`; nothing behind the last one. Throws when it
// cannot be read.
std::optional<std::string> getNextEntry(int log_type, std::uint32_t number, const Caller& caller);

// An entry in its fields: its number, its time, whatever the switch adds, and the message. Valid as long as
// the object, which stays where it is.
class Log_Entry
{
  public:
    Log_Entry() = default;
    Log_Entry(const Log_Entry&) = delete;
    Log_Entry& operator=(const Log_Entry&) = delete;

    // False when the text is no entry: it has fewer than three fields, or the first is no number.
    bool parse(std::string text);

    std::uint32_t number() const { return _number; }
    const char* time() const { return _fields[1]; }
    char** fields() { return _fields; }
    std::size_t count() const { return _count; }

  private:
    // More than any entry has.
    static constexpr std::size_t kMaxFields = kXplSmlTextSize / 2 + 1;

    std::string _text;
    char* _fields[kMaxFields] = {};
    std::size_t _count = 0;
    std::uint32_t _number = 0;
};

// The highest number that an entry can have and still be walked over: a key of the switch names it.
constexpr std::uint32_t kHighestEntry = std::numeric_limits<std::int32_t>::max();

// The entries of a log from the first to the last. What cannot be parsed costs a line in the log and nothing
// else: the walk goes on behind it. Throws as getNextEntry().
//     for (Log_Entry& entry : Log_Walk(kUserLog, {kSource, "load"}))
class Log_Walk : public Walk<Log_Walk>
{
  public:
    // `unparsed`: the line. The walk begins behind entry `number`.
    Log_Walk(int log_type,
             const Caller& caller,
             const char* unparsed = "logging entry unable to be parsed\n",
             std::uint32_t number = 0)
        : _type(log_type), _caller(caller), _unparsed(unparsed), _number(number)
    {
    }

    void start() { advance(); }
    void advance();
    bool atEnd() const { return _atEnd; }
    Log_Entry& current() { return _entry; }

  private:
    bool arrive(const std::string& text);
    void skip(const std::string& text);

    int _type;
    Caller _caller;
    const char* _unparsed;
    Log_Entry _entry;
    std::uint32_t _number; // entries up to this one are done with
    bool _atEnd = false;
};

} // namespace cimple

#endif
