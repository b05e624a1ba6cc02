// The attribute store's calls.
#include "platform/xpl_sml.h"

#include "simulator/engine/Engine.h"
#include "simulator/keys/attribute_keys.h"
#include "simulator/services/session.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace simulator
{
namespace
{

// The key of an entry; empty when the text does not end within its field.
std::string_view keyOf(const xpl_smlEntry& entry)
{
    const void* end = std::memchr(entry.key, '\0', sizeof entry.key);
    return end != nullptr ? std::string_view(entry.key) : std::string_view();
}

std::int32_t readKey(const FabricModel& model, std::string_view key, std::uint64_t now, char* value)
{
    Probe& probe = Engine::instance().probe;
    Answer answer(value);
    const std::int32_t injected = probe.enterKey(key);
    if (injected != XPL_OK)
        return injected;
    std::string given;
    if (probe.overridden(key, given))
        return answer.text(given);
    KeyArguments arguments;
    const ReadHandler* handler = readKeys().find(key, arguments);
    return handler != nullptr ? (*handler)(model, arguments, now, answer) : std::int32_t{XPL_UNKNOWN_KEY};
}

// Whom a write is for: each takes its own keys only.
enum class Receiver
{
    switchServices,
    cimAgent
};

// What is kept over a restart.
constexpr std::string_view kConfiguration = "Config.";

Receiver receiverOf(std::string_view key)
{
    constexpr std::string_view kCimAgent = "Cmd.Cim.";
    return key.substr(0, kCimAgent.size()) == kCimAgent ? Receiver::cimAgent : Receiver::switchServices;
}

std::int32_t writeKey(FabricModel& model, Receiver receiver, std::string_view key, std::uint64_t now)
{
    Probe& probe = Engine::instance().probe;
    probe.noteWrite(key);
    const std::int32_t injected = probe.enterKey(key);
    if (injected != XPL_OK)
        return injected;
    if (receiverOf(key) != receiver)
        return XPL_UNKNOWN_KEY;
    KeyArguments arguments;
    const WriteHandler* handler = writeKeys().find(key, arguments);
    const std::int32_t status =
        handler != nullptr ? (*handler)(model, arguments, now) : std::int32_t{XPL_UNKNOWN_KEY};
    if (status == XPL_OK && key.substr(0, kConfiguration.size()) == kConfiguration)
        model.configurationWritten(key, now);
    return status;
}

// What the batch calls check and count before they touch the model.
std::int32_t beginBatch(Call call, xpl_Handle handle, const xpl_smlEntry* entries, std::uint32_t count)
{
    const std::int32_t begun = beginCall(call, handle);
    if (begun != XPL_OK)
        return begun;
    if (entries == nullptr && count != 0)
        return XPL_INVALID_PARAMETER;
    for (std::uint32_t i = 0; i < count; ++i)
        if (keyOf(entries[i]).empty())
            return XPL_INVALID_PARAMETER;
    return Engine::instance().probe.enterBatch(call, entries, count);
}

std::int32_t
writeBatch(Call call, Receiver receiver, xpl_Handle handle, xpl_smlEntry* entries, std::uint32_t count)
{
    const std::int32_t begun = beginBatch(call, handle, entries, count);
    if (begun != XPL_OK)
        return begun;
    Engine::instance().write(
        [&](FabricModel& model, std::uint64_t now)
        {
            for (std::uint32_t i = 0; i < count; ++i)
            {
                entries[i].value[0] = '\0';
                entries[i].status = writeKey(model, receiver, entries[i].key, now);
            }
        });
    return XPL_OK;
}

// Formats the key of a single access into `key`; false when it is empty or does not fit.
[[gnu::format(printf, 2, 0)]] bool
formatKey(char (&key)[kXplSmlTextSize], const char* format, va_list arguments)
{
    const int length = format != nullptr ? std::vsnprintf(key, sizeof key, format, arguments) : 0;
    return length > 0 && static_cast<std::size_t>(length) < sizeof key;
}

std::int32_t keep(std::int32_t* error, std::int32_t status)
{
    if (error != nullptr)
        *error = status;
    return status;
}

// An empty key is one that cannot be read.
std::int32_t readSingle(Call call, xpl_Handle handle, std::string_view key, char* value, std::int32_t* error)
{
    const std::int32_t begun = beginCall(call, handle);
    if (begun != XPL_OK || key.empty() || value == nullptr)
        return keep(error, begun != XPL_OK ? begun : std::int32_t{XPL_INVALID_PARAMETER});
    return keep(error,
                Engine::instance().read([&](const FabricModel& model, std::uint64_t now)
                                        { return readKey(model, key, now, value); }));
}

} // namespace
} // namespace simulator

using namespace simulator;

extern "C" int xpl_smlGetBatch(xpl_Handle handle, xpl_smlEntry* entries, std::uint32_t count)
{
    const std::int32_t begun = beginBatch(Call::smlGetBatch, handle, entries, count);
    if (begun != XPL_OK)
        return begun;
    Engine::instance().read(
        [&](const FabricModel& model, std::uint64_t now)
        {
            for (std::uint32_t i = 0; i < count; ++i)
                entries[i].status = readKey(model, entries[i].key, now, entries[i].value);
        });
    return XPL_OK;
}

extern "C" int xpl_smlBatchSet(xpl_Handle handle, xpl_smlEntry* entries, std::uint32_t count)
{
    return writeBatch(Call::smlBatchSet, Receiver::switchServices, handle, entries, count);
}

extern "C" int xpl_smlBatchCimSet(xpl_Handle handle, xpl_smlEntry* entries, std::uint32_t count)
{
    return writeBatch(Call::smlBatchCimSet, Receiver::cimAgent, handle, entries, count);
}

extern "C" int xpl_smlGetV(xpl_Handle handle, char* value, std::int32_t* error, const char* keyFormat, ...)
{
    char key[kXplSmlTextSize];
    va_list arguments;
    va_start(arguments, keyFormat);
    const bool formatted = formatKey(key, keyFormat, arguments);
    va_end(arguments);
    return readSingle(Call::smlGetV, handle, formatted ? key : "", value, error);
}

extern "C" int xpl_smlGet(xpl_Handle handle, const char* key, char* value, std::int32_t* error)
{
    const bool fits = key != nullptr && ::strnlen(key, kXplSmlTextSize) < kXplSmlTextSize;
    return readSingle(Call::smlGet, handle, fits ? key : "", value, error);
}

extern "C" int xpl_smlSetV(xpl_Handle handle, std::int32_t* error, const char* keyFormat, ...)
{
    char key[kXplSmlTextSize];
    va_list arguments;
    va_start(arguments, keyFormat);
    const bool formatted = formatKey(key, keyFormat, arguments);
    va_end(arguments);
    const std::int32_t begun = beginCall(Call::smlSetV, handle);
    if (begun != XPL_OK || !formatted)
        return keep(error, begun != XPL_OK ? begun : std::int32_t{XPL_INVALID_PARAMETER});
    return keep(error,
                Engine::instance().write([&](FabricModel& model, std::uint64_t now)
                                         { return writeKey(model, Receiver::switchServices, key, now); }));
}
