// The entries of the switch's logs: how they are read one by one, and what their texts say.
#include "switchaccess/log_entries.h"

#include "platform/xpl_fzs.h"
#include "support/cim_log.h"
#include "switchaccess/Sml_Writes.h"

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>
#include <utility>

namespace cimple
{

namespace
{

constexpr char kReadError[] = "xpl_smlGetV returned error";
constexpr std::size_t kLeastFields = 3; // number, time, message

struct Log_Keys
{
    const char* word;
    const char* last; // asked without a number: the conversion stays as it is
    const char* next;
};

const Log_Keys& keysOf(int log_type, const char* function, const Caller& caller)
{
    static constexpr Log_Keys kLogs[] = {
        {"User", "Oper.Switch.LastLogEntry.%d", "Oper.Switch.NextLogEntry.%d"},
        {"Alarm", "Oper.Switch.LastAlarmEntry.%d", "Oper.Switch.NextAlarmEntry.%d"},
    };
    if (log_type == kUserLog || log_type == kAlarmLog)
        return kLogs[log_type - kUserLog];
    throw VRAX_Except(
        caller.source, caller.function, caller.line, Failure_Text("Bad log_type passed to %s"), {function});
}

// The platform's status; the text in `value`.
int read(const char* format, const std::string& number, char (&value)[kXplSmlTextSize])
{
    value[0] = '\0';
    const int status = readAttribute(value, format, {number.c_str()});
    if (status == 0)
        cim_log(kLogTrace, "response=%s len=%d\n", value, static_cast<int>(std::strlen(value)));
    return status;
}

// Whether the text is a whole decimal number, which is stored.
bool parseNumber(const char* text, std::uint32_t& number)
{
    if (*text < '0' || *text > '9')
        return false;
    char* end = nullptr;
    const unsigned long long value = std::strtoull(text, &end, 10);
    number = static_cast<std::uint32_t>(value);
    return *end == '\0' && value <= std::numeric_limits<std::uint32_t>::max();
}

} // namespace

char* tokenizeLog(char* text, char** fields, std::size_t max, std::size_t& count)
{
    count = 0;
    while (count < max)
    {
        char* const open = std::strchr(text, '[');
        char* const close = open != nullptr ? std::strchr(open, ']') : nullptr;
        if (close == nullptr)
            return text;
        *close = '\0';
        fields[count++] = open + 1;
        text = close + 1;
    }
    if (max > 0)
        fields[max - 1] = nullptr;
    return text;
}

const char* timestringToTimeval(const char* text, Log_Time& time)
{
    constexpr long kMicroseconds = 1000000;
    std::tm fields{};
    const char* at = strptime(text, "%a %b %d %T", &fields);
    if (at == nullptr)
        return "bad time format (timespec)";
    if (at[0] != '.' || at[1] < '0' || at[1] > '9')
        return "bad time format (usec)";
    char* end = nullptr;
    const long microseconds = std::strtol(at + 1, &end, 10);
    if (microseconds >= kMicroseconds)
        return "bad time format (usec)";
    const char* const zone = *end == ' ' ? end + 1 : nullptr;
    const char* const year = zone != nullptr ? std::strchr(zone, ' ') : nullptr;
    if (year == nullptr || strptime(year + 1, "%Y", &fields) == nullptr)
        return "bad time format (timezone)";
    fields.tm_isdst = -1; // the text does not say
    char seconds[32];
    std::strftime(seconds, sizeof(seconds), "%s", &fields);
    time.tv_sec = std::strtoll(seconds, nullptr, 10);
    time.tv_usec = microseconds;
    return nullptr;
}

std::int64_t tv_cmp(const Log_Time& a, const Log_Time& b)
{
    const std::int64_t seconds = std::int64_t{a.tv_sec} - std::int64_t{b.tv_sec};
    return seconds != 0 ? seconds : std::int64_t{a.tv_usec} - std::int64_t{b.tv_usec};
}

std::optional<std::string> getLogNameFromInstanceID(const std::string& id)
{
    std::size_t colon = id.find(':');
    for (int more = 2; more > 0 && colon != std::string::npos; --more)
        colon = id.find(':', colon + 1);
    return colon != std::string::npos ? std::optional<std::string>(id.substr(colon + 1)) : std::nullopt;
}

std::uint32_t messageChecksum(const char* message)
{
    std::uint32_t sum = 0;
    for (; *message != '\0'; ++message)
        sum += static_cast<unsigned char>(*message);
    return sum;
}

const char* logWord(int log_type, const char* function, const Caller& caller)
{
    return keysOf(log_type, function, caller).word;
}

std::string getLastEntry(int log_type, const Caller& caller)
{
    const Log_Keys& keys = keysOf(log_type, "getLastLogEntry", caller);
    char value[kXplSmlTextSize];
    if (read(keys.last, "%d", value) != 0)
        throw VRAX_Except(caller.source, caller.function, caller.line, Failure_Text(kReadError));
    return value;
}

std::optional<std::string> getNextEntry(int log_type, std::uint32_t number, const Caller& caller)
{
    const Log_Keys& keys = keysOf(log_type, "getNextLogEntry", caller);
    char value[kXplSmlTextSize];
    const int status = read(keys.next, std::to_string(number), value);
    if (status == XPL_FZS_NO_MORE)
    {
        cim_log(kLogTrace, "End of list, log_type = %d\n", log_type);
        return std::nullopt;
    }
    if (status != 0)
    {
        cim_log(kLogInfo, "smlerror=%d\n", status);
        throw VRAX_Except(caller.source, caller.function, caller.line, Failure_Text(kReadError));
    }
    return std::string(value);
}

bool Log_Entry::parse(std::string text)
{
    _text = std::move(text);
    _number = 0;
    tokenizeLog(_text.data(), _fields, kMaxFields, _count);
    const bool numbered = _count > 0 && parseNumber(_fields[0], _number);
    return numbered && _count >= kLeastFields && _count < kMaxFields;
}

void Log_Walk::advance()
{
    while (_number <= kHighestEntry)
    {
        std::optional<std::string> text = getNextEntry(_type, _number, _caller);
        if (!text)
            break;
        if (arrive(*text))
            return;
    }
    _atEnd = true;
}

// False for an entry that cannot be parsed; it is done with all the same.
bool Log_Walk::arrive(const std::string& text)
{
    const bool parsed = _entry.parse(text);
    const bool rises = _entry.number() > _number;
    if (rises)
        _number = _entry.number();
    if (parsed && rises)
        return true;
    cim_log(kLogInfo, "%s", _unparsed);
    if (!rises)
        skip(text);
    return false;
}

// Goes behind an entry that does not tell its number: the lowest one behind which the switch has another.
void Log_Walk::skip(const std::string& text)
{
    const auto isBehind = [&](std::uint32_t number) { return getNextEntry(_type, number, _caller) != text; };
    // Mostly it is the one behind the last.
    std::uint32_t low = _number;
    std::uint32_t high = low + 1;
    if (!isBehind(high))
    {
        low = high;
        high = kHighestEntry + 1;
    }
    while (high - low > 1)
    {
        const std::uint32_t middle = low + (high - low) / 2;
        (isBehind(middle) ? high : low) = middle;
    }
    _number = high;
}

} // namespace cimple
