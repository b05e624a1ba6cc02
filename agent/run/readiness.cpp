// Messages to the service manager.
#include "agent/run/readiness.h"

#include "agent/log/log.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <dlfcn.h>
#include <system_error>
#include <systemd/sd-daemon.h>

namespace cimd
{

namespace
{

// Loaded where a service manager wants to be told: other systems need not have the library, nor the memory
// for it and the six that it brings.
decltype(&sd_notify) loadNotify(std::string& fault)
{
    if (void* const library = dlopen(CIMD_LIBSYSTEMD_FILE, RTLD_NOW | RTLD_LOCAL))
        if (void* const function = dlsym(library, "sd_notify"))
            return reinterpret_cast<decltype(&sd_notify)>(function);
    fault = dlerror();
    return nullptr;
}

void tell(const std::string& message)
{
    if (std::getenv("NOTIFY_SOCKET") == nullptr)
        return;
    std::string fault;
    static const auto notify = loadNotify(fault);
    const int result = notify != nullptr ? notify(0, message.c_str()) : 0;
    if (result < 0)
        fault = std::generic_category().message(-result);
    if (!fault.empty())
        log(LogLevel::Warning, "cimd", "NOTIFY_SOCKET: cannot tell the service manager: " + fault);
}

} // namespace

void tellReady(const std::string& status)
{
    tell("READY=1\nSTATUS=" + status);
}

void tellReloading()
{
    // The time lets the manager tell this reload from one before.
    const std::chrono::microseconds now = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
    tell("RELOADING=1\nMONOTONIC_USEC=" + std::to_string(now.count()) + "\nSTATUS=reloading");
}

void tellStopping()
{
    tell("STOPPING=1\nSTATUS=stopping");
}

} // namespace cimd
