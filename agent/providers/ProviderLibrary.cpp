// Loading of provider libraries.
#include "agent/providers/ProviderLibrary.h"

#include "agent/log/log.h"

#include <dlfcn.h>
#include <stdexcept>

namespace cimd
{
namespace
{

constexpr int kTrace = 1;
constexpr int kInformation = 2;
constexpr int kCritical = 4;

using LogSink = void (*)(int level, const char* text);
using ConfigureLog = void (*)(int level, LogSink sink);

int libraryLevel(LogLevel level)
{
    switch (level)
    {
    case LogLevel::Debug:
        return kTrace;
    case LogLevel::Info:
        return kInformation;
    case LogLevel::Warning:
    case LogLevel::Error:
        return kCritical;
    }
    return kCritical;
}

extern "C" void writeLibraryLog(int level, const char* text)
{
    const LogLevel mapped = level <= kTrace     ? LogLevel::Debug
                            : level < kCritical ? LogLevel::Info
                                                : LogLevel::Error;
    log(mapped, "module", text ? text : "");
}

} // namespace

ProviderLibrary::ProviderLibrary(const std::string& directory, const std::string& location)
    : _file(directory + "/lib" + location + ".so"), _handle(dlopen(_file.c_str(), RTLD_NOW | RTLD_LOCAL))
{
    if (!_handle)
    {
        const char* reason = dlerror();
        throw std::runtime_error(reason ? reason : _file + ": cannot be loaded");
    }
    connectLog();
}

void* ProviderLibrary::symbol(const std::string& name) const
{
    return dlsym(_handle, name.c_str());
}

void ProviderLibrary::connectLog() const
{
    if (const auto configure = reinterpret_cast<ConfigureLog>(symbol("cim_log_configure")))
        configure(libraryLevel(logLevel()), writeLibraryLog);
}

} // namespace cimd
