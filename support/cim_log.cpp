// The module's log.
#include "support/cim_log.h"

#include "support/default_log.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <new>
#include <string>
#include <syslog.h>

namespace
{

void writeToStandardError(int, const char* text)
{
    std::fprintf(stderr, "%s\n", text);
}

void writeByDefault(int level, const char* text)
{
    writeDefaultLog(level, text, stderr, syslog);
}

std::atomic<int> lowestLevel{kLogCritical};
std::atomic<cim_log_sink> currentSink{writeByDefault};

// `length` characters of `text` without one closing line feed.
void deliver(int level, char* text, std::size_t length)
{
    if (length > 0 && text[length - 1] == '\n')
        text[length - 1] = '\0';
    currentSink.load(std::memory_order_acquire)(level, text);
}

} // namespace

bool cim_log_enabled(int level)
{
    return level >= lowestLevel.load(std::memory_order_relaxed);
}

void cim_log(int level, const char* format, ...)
{
    if (!cim_log_enabled(level))
        return;

    char buffer[512];
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    const int length = std::vsnprintf(buffer, sizeof(buffer), format, args);
    va_end(args);
    if (length >= 0 && static_cast<std::size_t>(length) < sizeof(buffer))
    {
        deliver(level, buffer, static_cast<std::size_t>(length));
    }
    else if (length >= 0)
    {
        const std::size_t wanted = static_cast<std::size_t>(length);
        try
        {
            std::string text(wanted, '\0');
            std::vsnprintf(text.data(), wanted + 1, format, again);
            deliver(level, text.data(), wanted);
        }
        catch (const std::bad_alloc&)
        {
            deliver(level, buffer, sizeof(buffer) - 1);
        }
    }
    va_end(again);
}

void cim_log_configure(int level, cim_log_sink sink)
{
    currentSink.store(sink ? sink : writeToStandardError, std::memory_order_release);
    lowestLevel.store(level, std::memory_order_relaxed);
}
