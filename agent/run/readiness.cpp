// Messages to the service manager.
#include "agent/run/readiness.h"

#include "agent/log/log.h"

#include <cerrno>
#include <chrono>
#include <system_error>
#include <systemd/sd-daemon.h>

namespace cimd
{

namespace
{

void tell(const std::string& message)
{
    if (const int result = sd_notify(0, message.c_str()); result < 0)
        log(LogLevel::Warning,
            "cimd",
            "NOTIFY_SOCKET: cannot tell the service manager: " + std::generic_category().message(-result));
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
