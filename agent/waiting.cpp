// Signals, and the reload that one of them asks for.
#include "agent/waiting.h"

#include "agent/log/log.h"
#include "agent/named_files.h"
#include "agent/run/readiness.h"
#include "agent/settings/StartError.h"

#include <chrono>
#include <csignal>
#include <exception>
#include <malloc.h>
#include <string>

namespace cimd
{

namespace
{

// How often what clients have left behind goes back to the system.
constexpr std::chrono::seconds kTidyPeriod{10};

// The next signal. Until it comes, abandoned enumerations and the memory of past answers are given back every
// now and then, whether or not there are other clients.
int nextSignal(const SignalSet& signals, Enumerations& enumerations)
{
    for (;;)
    {
        if (const int signal = signals.wait(kTidyPeriod))
            return signal;
        enumerations.expire();
        malloc_trim(0);
    }
}

// The certificate may have been renewed. Faulty files change nothing.
void renewTls(const Settings& settings, Servers servers)
try
{
    if (!settings.options().certificate)
        return;
    const TlsIdentity tls = readTlsIdentity(settings);
    servers.operations.setTls(tls);
    if (servers.metrics)
        servers.metrics->setTls(tls);
    log(LogLevel::Info, "cimd", "SIGHUP: certificate and key were read again");
}
catch (const std::exception& error)
{
    log(LogLevel::Error, "cimd", std::string(error.what()) + "; certificate and key stay as they were");
}

// The configuration file may say another log level. A faulty file changes nothing.
void renewLogLevel(const Settings& settings, ProviderManager& providers)
try
{
    const Settings now = settings.readAgain();
    const LogLevel level = now.options().logLevel;
    const bool isNew = level != logLevel();
    setLogLevel(level); // before anybody reads that it counts
    if (isNew)
        logAlways("notice", "cimd", "SIGHUP: the log level is " + std::string(levelName(level)));
    providers.followLogLevel();
    for (const OptionRow* row : settings.differences(now))
        if (row != findOption("log-level"))
            log(LogLevel::Warning,
                "cimd",
                now.place(row->name) + ": another value than at the start; it counts from the next start on");
}
catch (const StartError& error)
{
    for (const std::string& fault : error.faults())
        log(LogLevel::Error, "cimd", fault + "; the log level stays as it was");
}

void showWork(const Setting& setting, Servers servers)
{
    for (const std::string& line : servers.counters.table())
        logAlways("notice", "counters", line);
    const std::size_t most = setting.settings.options().limits.connections;
    for (const std::string& line : connectionLines(servers.operations.state().clients, most))
        logAlways("notice", "counters", line);
    const auto requests = setting.inFlight.list();
    logAlways("notice", "counters", "requests in flight: " + std::to_string(requests.size()));
    for (const InFlight::Request& request : requests)
        logAlways("notice", "counters", request.text());
}

} // namespace

bool sayReady(const Setting& setting)
{
    if (setting.supervisor != nullptr)
        return setting.supervisor->becomeReady();
    tellReady("listening on " + setting.urls);
    return true;
}

void waitForStop(SignalSet& signals, const Setting& setting, Servers servers)
{
    int signal = nextSignal(signals, servers.enumerations);
    for (; signal == SIGUSR1 || (signal == SIGHUP && !setting.terminal.hasGone());
         signal = nextSignal(signals, servers.enumerations))
    {
        if (signal == SIGUSR1)
        {
            showWork(setting, servers);
            continue;
        }
        if (setting.supervisor == nullptr)
            tellReloading();
        renewTls(setting.settings, servers);
        if (servers.authenticator)
            servers.authenticator->readUsers();
        renewLogLevel(setting.settings, servers.providers);
        sayReady(setting);
    }
    log(LogLevel::Info, "cimd", signalName(signal) + ": stopping");
    // Whoever sends a second one does not want to wait. A supervisor sees to that itself, and all processes
    // of a service may have been sent the first.
    if (setting.supervisor == nullptr)
    {
        tellStopping();
        std::signal(SIGUSR1, SIG_IGN); // its default is to kill
        signals.unblock();
    }
}

} // namespace cimd
