// The agent's log: one line per event with time, level and area.
#ifndef AGENT_LOG_LOG_H
#define AGENT_LOG_LOG_H

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace cimd
{

// Error: the agent failed its clients: it crashed, gave up, left a request behind or lost something. Warning:
// a client or a provider did something wrong that was answered, an operation that failed among them. Info:
// the life of the agent, one line per operation. Debug: everything else.
enum class LogLevel
{
    Error,
    Warning,
    Info,
    Debug
};

std::string_view levelName(LogLevel level);
std::optional<LogLevel> levelFromName(std::string_view name);

// Lines above the level are not written. The default is Info.
void setLogLevel(LogLevel level);
LogLevel logLevel();
inline bool logEnabled(LogLevel level)
{
    return level <= logLevel();
}

// Gets whole lines without the newline, one at a time; empty: standard error. The writer must not log.
using LogWriter = std::function<void(LogLevel level, std::string_view line)>;
void setLogWriter(LogWriter writer);

// Writes "2026-01-31T12:00:00.000Z warning area: text". Line breaks and other control characters in the text
// are replaced, so that nobody can forge a line, and a text of more than 2000 bytes is cut. Safe from any
// thread; never throws.
void log(LogLevel level, std::string_view area, std::string_view text) noexcept;

// The same whatever the log level is, with another word for the level: "audit", "notice".
void logAlways(std::string_view word, std::string_view area, std::string_view text) noexcept;

// UTC: "2026-01-31T12:00:00.000Z"
std::string timeStamp();

// "0.250 s"
std::string secondsText(std::chrono::milliseconds time);

// A text that somebody else chose, cut to a bearable length between two characters: "Aaaa...".
std::string clipped(std::string_view text, std::size_t most = 128);

// The start of a line about an operation: "GetInstance VRAX_FCPort: ", or "EnumerateQualifiers: ".
std::string operationText(std::string_view operation, std::string_view className);

} // namespace cimd

#endif
