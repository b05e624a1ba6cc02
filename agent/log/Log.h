// The agent's log: one line per event with time, level and area.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace cimd
{

// Error: an expected answer could not be given. Warning: a client or a provider made a mistake that was
// answered. Info: life of the agent, one line per operation. Debug: everything else.
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

// The start of a line about an operation: "GetInstance VRAX_FCPort: ", or "EnumerateQualifiers: ".
std::string operationText(std::string_view operation, std::string_view className);

} // namespace cimd
