// What a serving process is made of, and its end.
#include "agent/serving.h"

#include "agent/control/ControlServer.h"
#include "agent/http/HttpServer.h"
#include "agent/log/log.h"
#include "agent/metrics/MetricsServer.h"
#include "agent/named_files.h"
#include "agent/ops/FrontEnd.h"
#include "agent/ops/LogInGate.h"
#include "agent/platform.h"
#include "agent/providers/provider_table.h"
#include "agent/run/exit_status.h"
#include "agent/service/AgentCore.h"
#include "agent/waiting.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <unistd.h>
#include <vector>

namespace cimd
{

namespace
{

std::vector<CimName> classNames(const ClassRepository& repository)
{
    std::vector<CimName> names;
    for (const auto& info : repository.classes())
        names.push_back(info->name());
    return names;
}

// Ends the process in spite of providers that hang and cannot be joined.
[[noreturn]] void leave(const Setting& setting, int status)
{
    for (const InFlight::Request& request : setting.inFlight.list())
        log(LogLevel::Error, "cimd", request.text());
    _exit(status);
}

[[noreturn]] void endHung(const Setting& setting)
{
    log(LogLevel::Error,
        "cimd",
        "more than " + std::to_string(setting.settings.options().limits.hungWorkers) +
            " operations hang in their providers; ending the process");
    leave(setting, kExitHung);
}

constexpr std::chrono::milliseconds kLeastTimeToStop{1000};

// What is left until the deadline; a little more when that is near, for a supervisor does not kill at once.
std::chrono::milliseconds timeToStop(std::chrono::steady_clock::time_point deadline)
{
    const auto left = deadline - std::chrono::steady_clock::now();
    return std::max(kLeastTimeToStop, std::chrono::duration_cast<std::chrono::milliseconds>(left));
}

// The libraries' indications; they end here at the latest, should the start fail.
class Indications
{
  public:
    explicit Indications(ProviderManager& providers) : _providers(providers)
    {
        _providers.startIndications();
    }
    ~Indications() { _providers.stopIndications(kLeastTimeToStop); }
    Indications(const Indications&) = delete;
    Indications& operator=(const Indications&) = delete;

    // False when they do not end in time. Once is enough.
    bool stop(std::chrono::milliseconds atMost) { return _providers.stopIndications(atMost); }

  private:
    ProviderManager& _providers;
};

// The simulated switch, if the options ask something of it.
void startSwitch(const Settings& settings)
{
    const Options& options = settings.options();
    if (options.scenario)
        starting(settings, "scenario", [&] { openScenario(options.providerDir, *options.scenario); });
    if (options.state)
        starting(settings, "state", [&] { keepState(options.providerDir, *options.state); });
    if (options.switchSocket)
        starting(settings,
                 "switch-socket",
                 [&] { takeSwitchCommands(options.providerDir, *options.switchSocket); });
}

} // namespace

int serve(const Setting& setting)
{
    // Before the first thread, so that signals are taken here alone.
    SignalSet signals({SIGTERM, SIGINT, SIGHUP, SIGUSR1});
    const Settings& settings = setting.settings;
    const Options& options = settings.options();
    const Limits& limits = options.limits;
    startSwitch(settings);
    AgentCore core(
        starting(settings, "repository", [&] { return ClassRepository::load(options.repository); }),
        starting(settings, "registration", [&] { return loadRegistrations(options.registration); }),
        options.providerDir);
    Counters counters(classNames(core.repository()));
    const Watch watch{&setting.inFlight, &counters, setting.trace};
    FrontEnd frontEnd(core.service(), limits, watch, options.spoolDirectory);
    std::optional<Authenticator> authenticator;
    std::optional<LogInGate> gate;
    if (options.passwordFile)
    {
        const bool isReplacement = setting.supervisor != nullptr && setting.supervisor->hasBeenReady();
        const FirstRead firstRead = isReplacement ? FirstRead::MayFail : FirstRead::MustSucceed;
        starting(settings,
                 "password-file",
                 [&] { return &authenticator.emplace(*options.passwordFile, limits, firstRead); });
        gate.emplace(frontEnd, *authenticator, limits);
    }
    // Before the first client, whose changes may be worth an indication already.
    Indications indications(core.providers());
    HttpHandler& handler = gate ? static_cast<HttpHandler&>(*gate) : frontEnd;
    HttpServer server(handler,
                      limits,
                      std::move(setting.sockets.operations),
                      {setting.tls, options.spoolDirectory, [&setting] { endHung(setting); }});
    std::optional<MetricsServer> metrics;
    if (setting.sockets.metrics)
        metrics.emplace(AgentParts{core.service(),
                                   core.providers(),
                                   counters,
                                   setting.inFlight,
                                   frontEnd.enumerations(),
                                   server,
                                   limits,
                                   setting.supervisor != nullptr ? setting.supervisor->restarts() : 0},
                        std::move(*setting.sockets.metrics),
                        ServerOptions{setting.tls, options.spoolDirectory, [&setting] { endHung(setting); }},
                        authenticator ? &*authenticator : nullptr);
    std::optional<ControlServer> control;
    if (setting.control != nullptr)
        control.emplace(*setting.control,
                        std::vector<ControlCommand>{
                            {kListProviders, [&core] { return providerTable(core.providers()); }}});
    if (sayReady(setting))
    {
        std::printf("cimd: listening on %s\n", setting.urls.c_str());
        std::fflush(stdout);
    }

    waitForStop(signals,
                setting,
                {server, metrics, authenticator, core.providers(), counters, frontEnd.enumerations()});
    const auto deadline = std::chrono::steady_clock::now() + limits.stopGrace;
    bool isDone = server.stop(limits.stopGrace);
    if (metrics)
        isDone = metrics->stop(timeToStop(deadline)) && isDone;
    if (!isDone)
        log(LogLevel::Error, "cimd", "a request did not finish in time; leaving it behind");
    // After the requests, for what these do may be worth an indication.
    if (!indications.stop(timeToStop(deadline)))
    {
        log(LogLevel::Error, "cimd", "indications did not stop in time; leaving them behind");
        isDone = false;
    }
    for (const std::string& line : counters.table())
        log(LogLevel::Info, "counters", line);
    if (isDone)
        return EXIT_SUCCESS;
    leave(setting, kExitUnfinished);
}

} // namespace cimd
