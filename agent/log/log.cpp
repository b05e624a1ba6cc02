// Formatting and writing of log lines.
#include "agent/log/log.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <mutex>

namespace cimd
{
namespace
{

constexpr std::array<std::string_view, 4> kLevelNames{"error", "warning", "info", "debug"};

// Clients choose much of what is logged: names and paths may be as long as a request.
constexpr std::size_t kMaxText = 2000;

std::atomic<LogLevel> currentLevel{LogLevel::Info};

struct Writer
{
    std::mutex mutex;
    LogWriter write;
};

// Never destroyed: provider threads may log while the process ends.
Writer& writer()
{
    static auto& instance = *new Writer;
    return instance;
}

void writeLine(LogLevel level, std::string_view word, std::string_view area, std::string_view text) noexcept
try
{
    std::string line = timeStamp();
    line.append(1, ' ').append(word).append(1, ' ').append(area).append(": ");
    for (const char c : text.substr(0, kMaxText))
    {
        const auto code = static_cast<unsigned char>(c);
        line.append(1, code < 0x20 || code == 0x7f ? ' ' : c);
    }
    while (line.back() == ' ')
        line.pop_back();
    if (text.size() > kMaxText)
        line.append("...");
    Writer& target = writer();
    const std::lock_guard lock(target.mutex);
    if (target.write)
    {
        target.write(level, line);
        return;
    }
    line.append(1, '\n');
    std::fwrite(line.data(), 1, line.size(), stderr);
}
catch (...)
{
    // Out of memory or a broken writer: there is nowhere left to tell.
}

} // namespace

std::string_view levelName(LogLevel level)
{
    return kLevelNames[static_cast<std::size_t>(level)];
}

std::optional<LogLevel> levelFromName(std::string_view name)
{
    for (std::size_t i = 0; i < kLevelNames.size(); ++i)
        if (kLevelNames[i] == name)
            return static_cast<LogLevel>(i);
    return std::nullopt;
}

void setLogLevel(LogLevel level)
{
    currentLevel.store(level, std::memory_order_relaxed);
}

LogLevel logLevel()
{
    return currentLevel.load(std::memory_order_relaxed);
}

void setLogWriter(LogWriter write)
{
    Writer& target = writer();
    const std::lock_guard lock(target.mutex);
    target.write = std::move(write);
}

void log(LogLevel level, std::string_view area, std::string_view text) noexcept
{
    if (logEnabled(level))
        writeLine(level, levelName(level), area, text);
}

void logAlways(std::string_view word, std::string_view area, std::string_view text) noexcept
{
    writeLine(LogLevel::Error, word, area, text);
}

std::string timeStamp()
{
    using namespace std::chrono;
    const auto now = system_clock::now().time_since_epoch();
    const std::time_t seconds =
        system_clock::to_time_t(system_clock::time_point(duration_cast<std::chrono::seconds>(now)));
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    std::array<char, 16> fraction{};
    std::snprintf(fraction.data(),
                  fraction.size(),
                  ".%03dZ",
                  static_cast<int>(duration_cast<milliseconds>(now).count() % 1000));
    return std::string(text.data(), length) + fraction.data();
}

std::string secondsText(std::chrono::milliseconds time)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3f s", static_cast<double>(time.count()) / 1000);
    return text.data();
}

std::string clipped(std::string_view text, std::size_t most)
{
    if (text.size() <= most)
        return std::string(text);
    const auto continues = [&](std::size_t i)
    { return (static_cast<unsigned char>(text[i]) & 0xc0) == 0x80; };
    while (most > 0 && continues(most))
        --most;
    return std::string(text.substr(0, most)).append("...");
}

std::string operationText(std::string_view operation, std::string_view className)
{
    return clipped(operation).append(className.empty() ? "" : " ").append(clipped(className)).append(": ");
}

} // namespace cimd
